#include "application.h"

#include "command.h"

#include <QLoggingCategory>

namespace
{

bool hasNoDisplay = false;
QtMessageHandler printMessage = nullptr;

/// Offscreen, Qt tells of each window that there is no window manager to tell of its size.
void printUsefulMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support")))
        printMessage(type, context, text);
}

} // namespace

std::unique_ptr<QApplication> makeApplication(Program &program)
{
    hasNoDisplay = qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
                   qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (hasNoDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\ndefault.warning=false"));
    auto application = std::make_unique<QApplication>(program.argc, program.argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    printMessage = qInstallMessageHandler(printUsefulMessage);
    QApplication::setStyle(QStringLiteral("Fusion")); // its faces follow the palette, as the buttons' colours need
    return application;
}

bool isOnScreen()
{
    const QString platform = QApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

bool isWithoutDisplay()
{
    return hasNoDisplay;
}
