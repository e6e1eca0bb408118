#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <doctor/diagnosis.h>

class tst_Doctor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void healthyMachineHasNothingBroken();
    void diagnosis_data();
    void diagnosis();
    void everythingBrokenHasAMend();
    void panelMachineNeedsNoPlugin();
    void closedPortsOfAGroupAreOneLine();
    // The program on this machine.
    void loadsThePlugin();
    void reports_data();
    void reports();
    void saysWhereThePluginIs();
    void pluginWithoutItsLibrary();
    void pluginWithoutItsPlots();
    void catalogue_data();
    void catalogue();
    void designersCatalogue();
};

namespace
{

MachineFacts healthy()
{
    MachineFacts facts;
    facts.builtQt = QStringLiteral("5.15.8");
    facts.runningQt = QStringLiteral("5.15.8");
    facts.designerProgram = QStringLiteral("/usr/bin/designer");
    facts.pluginFolders = QStringList{QStringLiteral("/p/designer")};
    facts.pluginPath = QStringLiteral("/p/designer/libkel_designer.so");
    facts.hasSqlDriver = true;
    facts.isDisplayNamed = true;
    facts.platform = QStringLiteral("xcb");
    facts.fontFamilies = 3;
    facts.ports << DeviceFile{QStringLiteral("/dev/ttyUSB0"), QStringLiteral("dialout"), true, true};
    facts.gpioChip = QStringLiteral("gpiochip0");
    facts.gpio << DeviceFile{QStringLiteral("/dev/gpiochip0"), QStringLiteral("gpio"), true, true};
    facts.cataloguePath = QStringLiteral("hall.sqlite");
    facts.catalogueDevices = 4;
    return facts;
}

QString wordOf(Diagnosis::State state)
{
    return state == Diagnosis::State::Good   ? QStringLiteral("ok")
           : state == Diagnosis::State::Note ? QStringLiteral("note")
                                             : QStringLiteral("broken");
}

/// What is not good, one "state: text -> mend" each.
QStringList troubles(const MachineFacts &facts)
{
    QStringList lines;
    for (const Diagnosis &finding : diagnose(facts)) {
        if (finding.state != Diagnosis::State::Good)
            lines << QStringLiteral("%1: %2 -> %3").arg(wordOf(finding.state), finding.text, finding.mend);
    }
    return lines;
}

using Change = void (*)(MachineFacts &);

QString pluginFolder()
{
    return QFileInfo(QStringLiteral(KEL_DESIGNER_PLUGIN)).path();
}

/// `kel doctor --plugins FOLDER` with \a more, offscreen unless \a environment says otherwise.
KelRun runDoctor(const QString &plugins, const QStringList &more = {}, const QStringList &environment = {})
{
    QStringList given{QStringLiteral("QT_QPA_PLATFORM=offscreen"), QStringLiteral("KEL_GPIO_CHIP="),
                      QStringLiteral("KEL_CATALOGUE=")};
    QStringList arguments{QStringLiteral("doctor")};
    if (!plugins.isEmpty())
        arguments << QStringLiteral("--plugins") << plugins;
    return runKel(arguments + more, QString(), given + environment);
}

/// The lines about \a what of a report, with the mend that follows.
QByteArray linesAbout(const QByteArray &report, const QByteArray &what)
{
    QByteArray found;
    bool isFollowing = false;
    for (const QByteArray &line : report.split('\n')) {
        const bool isMend = line.startsWith("        ->");
        isFollowing = isMend ? isFollowing : line.contains(what);
        if (isFollowing)
            found += line + '\n';
    }
    return found;
}

} // namespace

Q_DECLARE_METATYPE(Change)

void tst_Doctor::healthyMachineHasNothingBroken()
{
    QCOMPARE(troubles(healthy()), QStringList());
    QCOMPARE(diagnose(healthy()).size(), 9);
}

void tst_Doctor::diagnosis_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("trouble");

    const auto row = [](const char *name, Change change, const char *trouble) {
        QTest::newRow(name) << change << QString::fromLatin1(trouble);
    };
    row(
        "older Qt than at build", [](MachineFacts &f) { f.runningQt = QStringLiteral("5.15.2"); },
        "broken: Qt 5.15.2 runs, but this was built with Qt 5.15.8 -> upgrade Qt to 5.15.8 or newer, or build this "
        "program again here");
    row(
        "another Qt", [](MachineFacts &f) { f.runningQt = QStringLiteral("6.2.0"); },
        "broken: Qt 6.2.0 runs, but this was built with Qt 5.15.8 -> upgrade Qt to 5.15.8 or newer, or build this "
        "program again here");
    row(
        "no Designer", [](MachineFacts &f) { f.designerProgram.clear(); },
        "note: Qt Designer is not installed -> to draw panels here: apt-get install qttools5-dev-tools");
    row(
        "no plugin", [](MachineFacts &f) { f.pluginPath.clear(); },
        "broken: no Qt Designer plugin in /p/designer -> install it (cmake --install build/release), or see only to "
        "what a panel needs (kel doctor --panel)");
    row(
        "plugin elsewhere",
        [](MachineFacts &f) {
            f.pluginPath.clear();
            f.pluginElsewhere = QStringLiteral("/opt/kel/plugins/designer/libkel_designer.so");
        },
        "broken: Qt Designer does not look where its plugin is, /opt/kel/plugins/designer/libkel_designer.so -> export "
        "QT_PLUGIN_PATH=/opt/kel/plugins");
    row(
        "plugin that does not load", [](MachineFacts &f) { f.pluginError = QStringLiteral("file too short"); },
        "broken: the Qt Designer plugin does not load: file too short -> install it again, with the library and with "
        "the Qt that Designer uses; for a library in a folder of your own: export LD_LIBRARY_PATH=FOLDER");
    row(
        "older plugin",
        [](MachineFacts &f) {
            f.pluginMissing = QStringList{QStringLiteral("KelClock"), QStringLiteral("KelLight")};
        },
        "broken: the Qt Designer plugin /p/designer/libkel_designer.so is of another version: it lacks KelClock, "
        "KelLight -> remove that file, or install this version in its place");
    row(
        "no SQLite driver", [](MachineFacts &f) { f.hasSqlDriver = false; },
        "broken: Qt has no SQLite driver, so no catalogue opens -> apt-get install libqt5sql5-sqlite");
    row(
        "SQLite driver that does nothing", [](MachineFacts &f) { f.sqlError = QStringLiteral("out of memory"); },
        "broken: Qt's SQLite driver opens no database: out of memory -> apt-get install --reinstall libqt5sql5-sqlite");
    row(
        "no display", [](MachineFacts &f) { f.isDisplayNamed = false; },
        "broken: no display: neither DISPLAY nor WAYLAND_DISPLAY nor QT_QPA_PLATFORM is set -> start the panel in a "
        "desktop session, or on a bare console with QT_QPA_PLATFORM=linuxfb (pictures need none: kel panel FILE "
        "--screenshot PNG)");
    row(
        "display that does not open",
        [](MachineFacts &f) {
            f.platform.clear();
            f.displayError = QStringLiteral("could not connect to display :7");
        },
        "broken: the display does not open: could not connect to display :7 -> set DISPLAY, WAYLAND_DISPLAY and "
        "QT_QPA_PLATFORM as the desktop session has them, or leave the ones that do not fit unset");
    row(
        "platform without a screen", [](MachineFacts &f) { f.platform = QStringLiteral("offscreen"); },
        "note: the platform offscreen shows nothing on a screen -> to see panels, unset QT_QPA_PLATFORM in a desktop "
        "session");
    row(
        "no font", [](MachineFacts &f) { f.fontFamilies = 0; },
        "broken: there is no font, so texts are not drawn -> apt-get install fonts-dejavu-core");
    row(
        "Qt that does not start", [](MachineFacts &f) { f.fontFamilies = -1; },
        "broken: Qt does not start, so fonts could not be counted:  -> apt-get install --reinstall libqt5gui5");
    row(
        "no port", [](MachineFacts &f) { f.ports.clear(); },
        "note: no serial port -> for a device on a serial line, plug the adapter in and look for /dev/ttyUSB0");
    row(
        "closed port",
        [](MachineFacts &f) {
            f.ports.first().isUsable = false;
            f.ports.first().isMemberOnPaper = false;
        },
        "broken: serial ports /dev/ttyUSB0 may not be used: only root and the group dialout may -> sudo usermod -aG "
        "dialout $USER, then log out and in again");
    row(
        "port since the last log-in", [](MachineFacts &f) { f.ports.first().isUsable = false; },
        "broken: serial ports /dev/ttyUSB0 may not be used: only root and the group dialout may -> log out and in "
        "again: you are in the group dialout since then");
    row(
        "no chip", [](MachineFacts &f) { f.gpio.clear(); },
        "note: no GPIO chip gpiochip0 -> only lines with a direction pin need one; KEL_GPIO_CHIP names another");
    row(
        "no chip that is configured",
        [](MachineFacts &f) {
            f.gpio.clear();
            f.isGpioConfigured = true;
        },
        "broken: there is no GPIO chip gpiochip0, which KEL_GPIO_CHIP names -> set KEL_GPIO_CHIP to one of those that "
        "gpiodetect shows, or unset it");
    row(
        "closed chip",
        [](MachineFacts &f) {
            f.gpio.first().isUsable = false;
            f.gpio.first().isMemberOnPaper = false;
        },
        "broken: GPIO chip /dev/gpiochip0 may not be used: only root and the group gpio may -> sudo usermod -aG gpio "
        "$USER, then log out and in again");
    row(
        "bad catalogue",
        [](MachineFacts &f) { f.catalogueError = QStringLiteral("hall.sqlite: the catalogue is locked"); },
        "broken: hall.sqlite: the catalogue is locked -> name a catalogue that was made for these devices, and close "
        "the programs that write to it");
    row(
        "empty catalogue", [](MachineFacts &f) { f.catalogueDevices = 0; },
        "broken: the catalogue hall.sqlite holds no device -> fill its table \"current\", where panels find their "
        "devices");
}

void tst_Doctor::diagnosis()
{
    QFETCH(Change, change);
    QFETCH(QString, trouble);
    MachineFacts facts = healthy();
    change(facts);
    QCOMPARE(troubles(facts), QStringList{trouble});
}

void tst_Doctor::everythingBrokenHasAMend()
{
    MachineFacts nothing;
    nothing.cataloguePath = QStringLiteral("x");
    int broken = 0;
    for (const Diagnosis &finding : diagnose(nothing)) {
        QVERIFY2(finding.state == Diagnosis::State::Good || !finding.mend.isEmpty(), qPrintable(finding.text));
        broken += finding.state == Diagnosis::State::Broken ? 1 : 0;
    }
    QVERIFY(broken >= 5);
}

void tst_Doctor::panelMachineNeedsNoPlugin()
{
    MachineFacts facts = healthy();
    facts.pluginPath.clear();
    facts.designerProgram.clear();
    facts.isForDesigner = false;
    QCOMPARE(troubles(facts), QStringList());
    QCOMPARE(diagnose(facts).size(), 7);
}

void tst_Doctor::closedPortsOfAGroupAreOneLine()
{
    MachineFacts facts = healthy();
    facts.ports << DeviceFile{QStringLiteral("/dev/ttyS0"), QStringLiteral("dialout"), false, false}
                << DeviceFile{QStringLiteral("/dev/ttyS1"), QStringLiteral("dialout"), false, false}
                << DeviceFile{QStringLiteral("/dev/ttyS2"), QStringLiteral("tty"), false, false};
    const QStringList lines = troubles(facts);
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).contains(QStringLiteral("/dev/ttyS0, /dev/ttyS1 may")));
    QVERIFY(lines.at(1).contains(QStringLiteral("usermod -aG tty ")));
    QCOMPARE(diagnose(facts).size(), 11);
}

void tst_Doctor::loadsThePlugin()
{
    const KelRun run = runDoctor(pluginFolder());
    QCOMPARE(linesAbout(run.output, "plugin"), "ok      Qt Designer plugin " KEL_DESIGNER_PLUGIN "\n");
    QCOMPARE(linesAbout(run.output, "SQLite"), QByteArray("ok      SQLite driver\n"));
    QCOMPARE(linesAbout(run.output, "Qt 5"),
             QByteArray("ok      Qt " QT_VERSION_STR " (built with " QT_VERSION_STR ")\n"));
    QVERIFY(linesAbout(run.output, "font").startsWith("ok"));
    QCOMPARE(run.errors, QByteArray());
    // Whatever ports this machine has, the verdict and the status agree.
    QCOMPARE(run.exitCode, run.output.contains("BROKEN") ? 1 : 0);
    QCOMPARE(run.output.contains("Nothing is broken."), run.exitCode == 0);
}

void tst_Doctor::reports_data()
{
    QTest::addColumn<QByteArray>("pluginContent");
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<QByteArray>("about");
    QTest::addColumn<QByteArrayList>("words");

    QTest::newRow("plugin that is no library")
        << QByteArray("hello") << QStringList() << QByteArray("plugin")
        << QByteArrayList{"BROKEN  the Qt Designer plugin does not load:", "libkel_designer.so", "-> install it again"};
    QTest::newRow("display that is not there")
        << QByteArray() << QStringList{QStringLiteral("QT_QPA_PLATFORM="), QStringLiteral("DISPLAY=:7654")}
        << QByteArray("display")
        << QByteArrayList{"BROKEN  the display does not open:", "could not connect to display :7654", "-> set DISPLAY"};
    QTest::newRow("platform that is not there")
        << QByteArray() << QStringList{QStringLiteral("QT_QPA_PLATFORM=hologram")} << QByteArray("display")
        << QByteArrayList{"BROKEN  the display does not open:", "\"hologram\"", "-> set DISPLAY"};
    QTest::newRow("no display") << QByteArray()
                                << QStringList{QStringLiteral("QT_QPA_PLATFORM="), QStringLiteral("DISPLAY="),
                                               QStringLiteral("WAYLAND_DISPLAY=")}
                                << QByteArray("no display")
                                << QByteArrayList{"BROKEN  no display", "-> start the panel in a desktop session"};
    QTest::newRow("no fonts") << QByteArray() << QStringList{QStringLiteral("FONTCONFIG_FILE=%1/fonts.conf")}
                              << QByteArray("font")
                              << QByteArrayList{"BROKEN  there is no font", "-> apt-get install fonts-dejavu-core"};
    QTest::newRow("no such chip") << QByteArray() << QStringList{QStringLiteral("KEL_GPIO_CHIP=gpiochip999")}
                                  << QByteArray("GPIO")
                                  << QByteArrayList{"BROKEN  there is no GPIO chip gpiochip999",
                                                    "-> set KEL_GPIO_CHIP"};
}

void tst_Doctor::reports()
{
    QFETCH(QByteArray, pluginContent);
    QFETCH(QStringList, environment);
    QFETCH(QByteArray, about);
    QFETCH(QByteArrayList, words);
    const QTemporaryDir dir;
    QFile plugin(dir.filePath(QStringLiteral("libkel_designer.so")));
    if (!pluginContent.isEmpty()) {
        QVERIFY(plugin.open(QIODevice::WriteOnly));
        plugin.write(pluginContent);
        plugin.close();
    }
    QFile fonts(dir.filePath(QStringLiteral("fonts.conf")));
    QVERIFY(fonts.open(QIODevice::WriteOnly));
    fonts.write("<?xml version='1.0'?><!DOCTYPE fontconfig SYSTEM 'fonts.dtd'><fontconfig><cachedir>/nowhere"
                "</cachedir></fontconfig>");
    fonts.close();
    environment.replaceInStrings(QStringLiteral("%1"), dir.path());

    const KelRun run = runDoctor(pluginContent.isEmpty() ? pluginFolder() : dir.path(), {}, environment);
    const QByteArray lines = linesAbout(run.output, about);
    for (const QByteArray &word : words)
        QVERIFY2(lines.contains(word), run.output.constData());
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, QByteArray());
}

void tst_Doctor::saysWhereThePluginIs()
{
    const QTemporaryDir empty;
    const KelRun run = runDoctor(empty.path());
    const QByteArray lines = linesAbout(run.output, "plugin");
    QVERIFY2(lines.contains("BROKEN  Qt Designer does not look where its plugin is, " KEL_DESIGNER_PLUGIN),
             run.output.constData());
    const QByteArray mend = "-> export QT_PLUGIN_PATH=" + QFileInfo(pluginFolder()).path().toLocal8Bit() + "\n";
    QVERIFY2(lines.contains(mend), run.output.constData());
    QCOMPARE(run.exitCode, 1);

    // The mend mends.
    const KelRun mended =
        runDoctor(QString(), {}, {QStringLiteral("QT_PLUGIN_PATH=") + QFileInfo(pluginFolder()).path()});
    QVERIFY2(linesAbout(mended.output, "plugin").startsWith("ok"), mended.output.constData());
}

void tst_Doctor::pluginWithoutItsLibrary()
{
    // Its library stands where the plugin looks for it: relative to its own place.
    const QTemporaryDir dir;
    QVERIFY(QFile::copy(QStringLiteral(KEL_DESIGNER_PLUGIN), dir.filePath(QStringLiteral("libkel_designer.so"))));
    const KelRun run = runDoctor(dir.path(), {}, {QStringLiteral("LD_LIBRARY_PATH=")});
    const QByteArray lines = linesAbout(run.output, "plugin");
    QVERIFY2(lines.contains("does not load"), run.output.constData());
    QVERIFY2(lines.contains("libKel_widgets.so.0 => not found"), run.output.constData());
    QCOMPARE(run.exitCode, 1);
}

void tst_Doctor::pluginWithoutItsPlots()
{
    const QTemporaryDir dir;
    const QDir libraries = QFileInfo(QStringLiteral(KEL_DESIGNER_PLUGIN)).dir().filePath(QStringLiteral("../../lib"));
    const auto copy = [&dir](const QString &file) {
        return QFile::copy(file, dir.filePath(QFileInfo(file).fileName()));
    };
    QVERIFY(copy(QStringLiteral(KEL_DESIGNER_PLUGIN)));
    for (const char *name : {"libKel_primitives.so.0", "libKel_toolkit.so.0", "libKel_widgets.so.0"})
        QVERIFY2(copy(libraries.filePath(QLatin1String(name))), name);
    const QStringList environment{QStringLiteral("LD_LIBRARY_PATH=") + dir.path()};
    const KelRun run = runDoctor(dir.path(), {}, environment);
    const QByteArray lines = linesAbout(run.output, "plugin");
    QVERIFY2(lines.contains("libKel_plot.so => not in " + dir.path().toLocal8Bit()), run.output.constData());
    QCOMPARE(run.exitCode, 1);

    QVERIFY(copy(libraries.filePath(QStringLiteral("libKel_plot.so"))));
    const KelRun whole = runDoctor(dir.path(), {}, environment);
    QVERIFY2(!linesAbout(whole.output, "plugin").contains("libKel_plot"), whole.output.constData());
}

void tst_Doctor::catalogue_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("good") << QStringLiteral("cat.sqlite")
                          << QByteArray("ok      catalogue %1/cat.sqlite (2 devices)\n");
    QTest::newRow("missing") << QStringLiteral("none.sqlite")
                             << QByteArray("BROKEN  %1/none.sqlite: there is no such catalogue\n");
    QTest::newRow("no catalogue") << QStringLiteral("note.txt")
                                  << QByteArray("BROKEN  %1/note.txt: not a readable catalogue (");
}

void tst_Doctor::catalogue()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, line);
    TempCatalogue catalogue;
    catalogue.addCurrent(1, 1, QStringLiteral("a"), 1);
    catalogue.addCurrent(2, 1, QStringLiteral("b"), 2);
    catalogue.writeFile(QStringLiteral("note.txt"), QByteArray(2000, 'x'));

    const QString path = catalogue.filePath(file);
    const KelRun run = runDoctor(pluginFolder(), {QStringLiteral("--db"), path});
    QVERIFY2(run.output.contains(line.replace("%1", QFileInfo(path).path().toLocal8Bit())), run.output.constData());
    QVERIFY(line.startsWith("ok") || run.exitCode == 1);
}

void tst_Doctor::designersCatalogue()
{
    const QStringList environment{QStringLiteral("KEL_CATALOGUE=/nowhere/x.sqlite")};
    const QByteArray line = "BROKEN  /nowhere/x.sqlite: there is no such catalogue";
    QVERIFY(runDoctor(pluginFolder(), {}, environment).output.contains(line));
    QVERIFY(!runDoctor(QString(), {QStringLiteral("--panel")}, environment).output.contains(line));
}

KEL_TEST_MAIN(tst_Doctor)
#include "tst_doctor.moc"
