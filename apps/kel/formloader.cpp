#include "formloader.h"

#include "command.h"
#include "formwidgets.h"
#include "formwire.h"
#include "panelform.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace
{

QObject *findObject(QWidget &window, const QString &name)
{
    return window.objectName() == name ? &window : window.findChild<QObject *>(name);
}

/// Makes one wire; what is wrong with it, empty when it is made.
QString makeConnection(QWidget &window, const FormConnection &connection)
{
    QObject *sender = findObject(window, connection.sender);
    if (!sender)
        return missingEnd(QStringLiteral("sender"), connection.sender);
    QObject *receiver = findObject(window, connection.receiver);
    if (!receiver)
        return missingEnd(QStringLiteral("receiver"), connection.receiver);

    const FormWire wire = FormWire::find(connection, *sender->metaObject(), *receiver->metaObject());
    if (wire.fit != FormWire::Fit::Good)
        return wire.problem;
    return QObject::connect(sender, wire.signal, receiver, wire.slot) ? QString() : QStringLiteral("it cannot be made");
}

} // namespace

QByteArray readFormFile(const QString &path)
{
    QFile file(path);
    if (QFileInfo(path).isDir())
        throw CommandError(QStringLiteral("%1: is a folder").arg(path));
    if (!file.open(QIODevice::ReadOnly))
        throw CommandError(QStringLiteral("%1: %2").arg(path, file.errorString()));
    return file.read(PanelForm::MaxSize + 1);
}

LoadedForm loadForm(const QString &path)
{
    FormWidgets loader;
    PanelForm form = PanelForm::fromText(readFormFile(path), path, loader.knownClasses());
    if (!form.error.isEmpty())
        throw CommandError(form.error);

    QBuffer buffer(&form.text);
    buffer.open(QIODevice::ReadOnly);
    loader.setWorkingDirectory(QFileInfo(path).absoluteDir());
    LoadedForm loaded;
    loaded.window.reset(loader.load(&buffer));
    if (!loaded.window)
        throw CommandError(QStringLiteral("%1: %2").arg(path, loader.errorString().simplified()));

    for (const FormConnection &connection : std::as_const(form.connections)) {
        const QString problem = makeConnection(*loaded.window, connection);
        if (!problem.isEmpty())
            loaded.complaints
                << QStringLiteral("%1: connection %2: %3").arg(path, describe(connection), problem).simplified();
    }
    return loaded;
}
