#include "panel/formloader.h"

#include "command.h"
#include "panel/formwidgets.h"
#include "panel/formwire.h"
#include "panel/panelform.h"
#include "wholefile.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>

#include <utility>

namespace
{

constexpr int MaxWindowSide = 16384; ///< Pixels; several large screens beside each other.

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

/// Keeps what Qt remarks on a form while it is built; everything else is said as before.
class Remarks
{
public:
    Remarks()
    {
        kept.clear();
        sayOtherwise = qInstallMessageHandler(keep);
    }
    ~Remarks() { qInstallMessageHandler(sayOtherwise); }
    Remarks(const Remarks &) = delete;
    Remarks &operator=(const Remarks &) = delete;

    /// One line each.
    QStringList lines() const { return kept; }

private:
    static void keep(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type != QtWarningMsg)
            return sayOtherwise(type, context, text);
        const QString remark = QString(text).remove(QStringLiteral("Designer: ")).simplified();
        if (kept.size() < MaxRemarks && !kept.contains(remark))
            kept << remark;
    }

    static constexpr int MaxRemarks = 20;
    static QStringList kept;
    static QtMessageHandler sayOtherwise;
};

QStringList Remarks::kept;
QtMessageHandler Remarks::sayOtherwise = nullptr;

/// Builds the window of the form \a text. Throws when it is none, or one that no screen can show.
std::unique_ptr<QWidget> build(FormWidgets &loader, QByteArray &text, const QString &path)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    loader.setWorkingDirectory(QFileInfo(path).absoluteDir());
    std::unique_ptr<QWidget> window(loader.load(&buffer));
    if (!window)
        throw CommandError(QStringLiteral("%1: %2").arg(path, loader.errorString().simplified()));

    const QSize size = window->size().expandedTo(window->minimumSizeHint());
    if (size.width() > MaxWindowSide || size.height() > MaxWindowSide)
        throw CommandError(
            QStringLiteral("%1: it would be %2 by %3 pixels large").arg(path).arg(size.width()).arg(size.height()));
    return window;
}

} // namespace

QByteArray readFormFile(const QString &path)
{
    if (QFileInfo(path).isDir())
        throw CommandError(QStringLiteral("%1: is a folder").arg(path));
    return readWholeFile(path, PanelForm::MaxSize);
}

LoadedForm loadForm(const QString &path)
{
    FormWidgets loader;
    PanelForm form = PanelForm::fromText(readFormFile(path), path, loader.knownClasses());
    if (!form.error.isEmpty())
        throw CommandError(form.error);

    LoadedForm loaded;
    const Remarks remarks;
    loaded.window = build(loader, form.text, path);
    for (const QString &remark : remarks.lines())
        loaded.complaints << QStringLiteral("%1: %2").arg(path, remark);

    for (const FormConnection &connection : std::as_const(form.connections)) {
        const QString problem = makeConnection(*loaded.window, connection);
        if (!problem.isEmpty())
            loaded.complaints
                << QStringLiteral("%1: connection %2: %3").arg(path, describe(connection), problem).simplified();
    }
    return loaded;
}
