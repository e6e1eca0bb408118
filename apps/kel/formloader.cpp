#include "formloader.h"

#include "command.h"
#include "panelform.h"

#include <widgetlist.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaMethod>
#include <QUiLoader>

#include <utility>

namespace
{

/// Empties the library paths until restore(): the loader would load every plugin that it finds there.
class WithoutLibraryPaths
{
public:
    WithoutLibraryPaths()
        : m_paths(QCoreApplication::libraryPaths())
    {
        QCoreApplication::setLibraryPaths({});
    }

    void restore() { QCoreApplication::setLibraryPaths(m_paths); }

private:
    QStringList m_paths;
};

/// The form loader with the widgets of this library.
class Loader : private WithoutLibraryPaths, public QUiLoader
{
public:
    Loader()
    {
        clearPluginPaths();
        restore();
    }

    QStringList knownClasses() const
    {
        QStringList classes = availableWidgets();
        classes << QStringLiteral("Line") << QStringLiteral("QLayoutWidget");
        for (const KelWidgetInfo &widget : kelWidgetList())
            classes << widget.className;
        return classes;
    }

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override
    {
        for (const KelWidgetInfo &info : kelWidgetList()) {
            if (info.className != className)
                continue;
            QWidget *widget = info.create(parent);
            widget->setObjectName(name);
            return widget;
        }
        return QUiLoader::createWidget(className, parent, name);
    }
};

QByteArray readForm(const QString &path)
{
    QFile file(path);
    if (QFileInfo(path).isDir())
        throw CommandError(QStringLiteral("%1: is a folder").arg(path));
    if (!file.open(QIODevice::ReadOnly))
        throw CommandError(QStringLiteral("%1: %2").arg(path, file.errorString()));
    return file.read(PanelForm::MaxSize + 1);
}

QObject *findObject(QWidget &window, const QString &name)
{
    return window.objectName() == name ? &window : window.findChild<QObject *>(name);
}

/// Index of the method that \a text ("clicked(bool)") names in \a object; -1 when it has none.
int findMethod(const QObject &object, const QString &text, bool wantsSignal)
{
    const QByteArray signature = QMetaObject::normalizedSignature(text.toLatin1().constData());
    const QMetaObject *meta = object.metaObject();
    const int signal = meta->indexOfSignal(signature.constData());
    // A signal may also receive: it is passed on then.
    return wantsSignal || signal >= 0 ? signal : meta->indexOfSlot(signature.constData());
}

/// Makes one wire; what is wrong with it, empty when it is made.
QString makeConnection(QWidget &window, const FormConnection &wire)
{
    QObject *sender = findObject(window, wire.sender);
    if (!sender)
        return QStringLiteral("there is no sender \"%1\"").arg(wire.sender);
    QObject *receiver = findObject(window, wire.receiver);
    if (!receiver)
        return QStringLiteral("there is no receiver \"%1\"").arg(wire.receiver);

    const int signalIndex = findMethod(*sender, wire.signal, true);
    if (signalIndex < 0)
        return QStringLiteral("%1 has no signal \"%2\"")
            .arg(QString::fromLatin1(sender->metaObject()->className()), wire.signal);
    const int slotIndex = findMethod(*receiver, wire.slot, false);
    if (slotIndex < 0)
        return QStringLiteral("%1 has no slot \"%2\"")
            .arg(QString::fromLatin1(receiver->metaObject()->className()), wire.slot);

    const QMetaMethod signal = sender->metaObject()->method(signalIndex);
    const QMetaMethod slot = receiver->metaObject()->method(slotIndex);
    if (!QMetaObject::checkConnectArgs(signal, slot))
        return QStringLiteral("%1 does not give what %2 takes").arg(wire.signal, wire.slot);
    return QObject::connect(sender, signal, receiver, slot) ? QString() : QStringLiteral("it cannot be made");
}

} // namespace

LoadedForm loadForm(const QString &path)
{
    Loader loader;
    PanelForm form = PanelForm::fromText(readForm(path), path, loader.knownClasses());
    if (!form.error.isEmpty())
        throw CommandError(form.error);

    QBuffer buffer(&form.text);
    buffer.open(QIODevice::ReadOnly);
    loader.setWorkingDirectory(QFileInfo(path).absoluteDir());
    LoadedForm loaded;
    loaded.window.reset(loader.load(&buffer));
    if (!loaded.window)
        throw CommandError(QStringLiteral("%1: %2").arg(path, loader.errorString().simplified()));

    for (const FormConnection &wire : std::as_const(form.connections)) {
        const QString problem = makeConnection(*loaded.window, wire);
        if (!problem.isEmpty())
            loaded.complaints << QStringLiteral("%1: connection %2 %3 -> %4 %5: %6")
                                     .arg(path, wire.sender, wire.signal, wire.receiver, wire.slot, problem)
                                     .simplified();
    }
    return loaded;
}
