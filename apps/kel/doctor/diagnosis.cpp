#include "doctor/diagnosis.h"

#include <QFileInfo>
#include <QMap>
#include <QVersionNumber>

namespace
{

Diagnosis good(const QString &text)
{
    return {Diagnosis::State::Good, text, QString()};
}

Diagnosis note(const QString &text, const QString &mend)
{
    return {Diagnosis::State::Note, text, mend};
}

Diagnosis broken(const QString &text, const QString &mend)
{
    return {Diagnosis::State::Broken, text, mend};
}

Diagnosis judgeQt(const MachineFacts &facts)
{
    const auto built = QVersionNumber::fromString(facts.builtQt);
    const auto running = QVersionNumber::fromString(facts.runningQt);
    if (built.majorVersion() != running.majorVersion() || running < built)
        return broken(QStringLiteral("Qt %1 runs, but this was built with Qt %2").arg(facts.runningQt, facts.builtQt),
                      QStringLiteral("upgrade Qt to %1 or newer, or build this program again here").arg(facts.builtQt));
    return good(QStringLiteral("Qt %1 (built with %2)").arg(facts.runningQt, facts.builtQt));
}

Diagnosis judgePluginPlace(const MachineFacts &facts)
{
    const QString folders = facts.pluginFolders.join(QStringLiteral(", "));
    if (facts.pluginElsewhere.isEmpty())
        return broken(QStringLiteral("no Qt Designer plugin in %1").arg(folders),
                      QStringLiteral("install it (cmake --install build/release), or see only to what a panel "
                                     "needs (kel doctor --panel)"));
    // The variable names the folder above "designer".
    const QString root = QFileInfo(QFileInfo(facts.pluginElsewhere).path()).path();
    return broken(QStringLiteral("Qt Designer does not look where its plugin is, %1").arg(facts.pluginElsewhere),
                  QStringLiteral("export QT_PLUGIN_PATH=%1").arg(root));
}

Diagnosis judgePlugin(const MachineFacts &facts)
{
    if (facts.pluginPath.isEmpty())
        return judgePluginPlace(facts);
    if (!facts.pluginError.isEmpty())
        return broken(QStringLiteral("the Qt Designer plugin does not load: %1").arg(facts.pluginError),
                      QStringLiteral("install it again, with the library and with the Qt that Designer uses; for a "
                                     "library in a folder of your own: export LD_LIBRARY_PATH=FOLDER"));
    if (!facts.pluginMissing.isEmpty())
        return broken(QStringLiteral("the Qt Designer plugin %1 is of another version: it lacks %2")
                          .arg(facts.pluginPath, facts.pluginMissing.join(QStringLiteral(", "))),
                      QStringLiteral("remove that file, or install this version in its place"));
    return good(QStringLiteral("Qt Designer plugin %1").arg(facts.pluginPath));
}

Diagnosis judgeDesigner(const MachineFacts &facts)
{
    if (facts.designerProgram.isEmpty())
        return note(QStringLiteral("Qt Designer is not installed"),
                    QStringLiteral("to draw panels here: apt-get install qttools5-dev-tools"));
    return good(QStringLiteral("Qt Designer %1").arg(facts.designerProgram));
}

Diagnosis judgeSql(const MachineFacts &facts)
{
    if (!facts.hasSqlDriver)
        return broken(QStringLiteral("Qt has no SQLite driver, so no catalogue opens"),
                      QStringLiteral("apt-get install libqt5sql5-sqlite"));
    if (!facts.sqlError.isEmpty())
        return broken(QStringLiteral("Qt's SQLite driver opens no database: %1").arg(facts.sqlError),
                      QStringLiteral("apt-get install --reinstall libqt5sql5-sqlite"));
    return good(QStringLiteral("SQLite driver"));
}

Diagnosis judgeDisplay(const MachineFacts &facts)
{
    if (!facts.isDisplayNamed)
        return broken(QStringLiteral("no display: neither DISPLAY nor WAYLAND_DISPLAY nor QT_QPA_PLATFORM is set"),
                      QStringLiteral("start the panel in a desktop session, or on a bare console with "
                                     "QT_QPA_PLATFORM=linuxfb (pictures need none: kel panel FILE --screenshot PNG)"));
    if (facts.platform.isEmpty())
        return broken(QStringLiteral("the display does not open: %1").arg(facts.displayError),
                      QStringLiteral("set DISPLAY, WAYLAND_DISPLAY and QT_QPA_PLATFORM as the desktop session has "
                                     "them, or leave the ones that do not fit unset"));
    if (facts.platform == QLatin1String("offscreen") || facts.platform == QLatin1String("minimal"))
        return note(QStringLiteral("the platform %1 shows nothing on a screen").arg(facts.platform),
                    QStringLiteral("to see panels, unset QT_QPA_PLATFORM in a desktop session"));
    return good(QStringLiteral("display (%1)").arg(facts.platform));
}

Diagnosis judgeFonts(const MachineFacts &facts)
{
    if (facts.fontFamilies < 0)
        return broken(QStringLiteral("Qt does not start, so fonts could not be counted: %1").arg(facts.displayError),
                      QStringLiteral("apt-get install --reinstall libqt5gui5"));
    if (facts.fontFamilies == 0)
        return broken(QStringLiteral("there is no font, so texts are not drawn"),
                      QStringLiteral("apt-get install fonts-dejavu-core"));
    return good(QStringLiteral("%1 font families").arg(facts.fontFamilies));
}

/// What to say of device files of one group that may not be used.
Diagnosis judgeAccess(const QVector<DeviceFile> &files, const QString &what)
{
    QStringList paths;
    for (const DeviceFile &file : files)
        paths << file.path;
    const DeviceFile &first = files.first();
    const QString text = QStringLiteral("%1 %2 may not be used: only root and the group %3 may");
    return broken(text.arg(what, paths.join(QStringLiteral(", ")), first.group),
                  first.isMemberOnPaper
                      ? QStringLiteral("log out and in again: you are in the group %1 since then").arg(first.group)
                      : QStringLiteral("sudo usermod -aG %1 $USER, then log out and in again").arg(first.group));
}

QVector<Diagnosis> judgePorts(const MachineFacts &facts)
{
    if (facts.ports.isEmpty())
        return {note(QStringLiteral("no serial port"),
                     QStringLiteral("for a device on a serial line, plug the adapter in and look for /dev/ttyUSB0"))};
    QStringList usable;
    QMap<QString, QVector<DeviceFile>> closed; // by group
    for (const DeviceFile &port : facts.ports) {
        if (port.isUsable)
            usable << port.path;
        else
            closed[port.group] << port;
    }
    QVector<Diagnosis> findings;
    if (!usable.isEmpty())
        findings << good(QStringLiteral("serial ports %1").arg(usable.join(QStringLiteral(", "))));
    for (const QVector<DeviceFile> &ports : qAsConst(closed))
        findings << judgeAccess(ports, QStringLiteral("serial ports"));
    return findings;
}

Diagnosis judgeGpio(const MachineFacts &facts)
{
    if (facts.gpio.isEmpty() && facts.isGpioConfigured)
        return broken(QStringLiteral("there is no GPIO chip %1, which KEL_GPIO_CHIP names").arg(facts.gpioChip),
                      QStringLiteral("set KEL_GPIO_CHIP to one of those that gpiodetect shows, or unset it"));
    if (facts.gpio.isEmpty())
        return note(QStringLiteral("no GPIO chip %1").arg(facts.gpioChip),
                    QStringLiteral("only lines with a direction pin need one; KEL_GPIO_CHIP names another"));
    if (!facts.gpio.first().isUsable)
        return judgeAccess(facts.gpio, QStringLiteral("GPIO chip"));
    return good(QStringLiteral("GPIO chip %1").arg(facts.gpio.first().path));
}

Diagnosis judgeCatalogue(const MachineFacts &facts)
{
    if (!facts.catalogueError.isEmpty())
        return broken(facts.catalogueError, QStringLiteral("name a catalogue that was made for these devices, and "
                                                           "close the programs that write to it"));
    if (facts.catalogueDevices == 0)
        return broken(QStringLiteral("the catalogue %1 holds no device").arg(facts.cataloguePath),
                      QStringLiteral("fill its table \"current\", where panels find their devices"));
    return good(QStringLiteral("catalogue %1 (%2 devices)").arg(facts.cataloguePath).arg(facts.catalogueDevices));
}

} // namespace

QVector<Diagnosis> diagnose(const MachineFacts &facts)
{
    QVector<Diagnosis> findings{judgeQt(facts)};
    if (facts.isForDesigner)
        findings << judgeDesigner(facts) << judgePlugin(facts);
    findings << judgeSql(facts) << judgeDisplay(facts) << judgeFonts(facts);
    findings << judgePorts(facts) << judgeGpio(facts);
    if (!facts.cataloguePath.isEmpty())
        findings << judgeCatalogue(facts);
    return findings;
}
