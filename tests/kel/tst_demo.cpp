#include "kelprocess.h"
#include "testmain.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

namespace
{

const QStringList NoDisplay = {QStringLiteral("QT_QPA_PLATFORM="), QStringLiteral("DISPLAY="),
                               QStringLiteral("WAYLAND_DISPLAY=")};

/// How much of the picture is clearly green, from 0 to 1.
double greenPart(const QImage &picture)
{
    int green = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            green += color.green() > color.red() + 60 && color.green() > color.blue() + 30 ? 1 : 0;
        }
    }
    return double(green) / (picture.width() * picture.height());
}

} // namespace

class tst_Demo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void playsWithoutADisplay();
    void missingExampleIsTold();
    void picturePlaceThatCannotBeWrittenIsTold();
    void writesTheExample();
};

void tst_Demo::playsWithoutADisplay()
{
    const QTemporaryDir folder;
    const KelRun run = runKel({QStringLiteral("demo")}, folder.path(), NoDisplay);

    QVERIFY2(run.exitCode == 0, run.errors.constData());
    // The bytes as they left the panel and reached the device, and the other way.
    QVERIFY2(run.output.contains("panel  -> A1 01 01  ceilingDevice"), run.output.constData());
    QVERIFY2(run.output.contains("device <- A1 01 01  ceiling"), run.output.constData());
    QVERIFY2(run.output.contains("device -> A2 01 01 01  ceiling"), run.output.constData());
    QVERIFY2(run.output.contains("panel  <- A2 01 01 01"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -- ceilingButton has state Yes"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -> A1 04 10 66 03  tableDevice"), run.output.constData());
    // The slider's level, and the lamp as the dimmer answered.
    QVERIFY2(run.output.contains("panel  -- levelSlider is moved to 75"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -> A1 04 11 BF  tableDevice"), run.output.constData());
    QVERIFY2(run.output.contains("panel  <- A2 04 11 BF"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -- tableLight glows at 191 of 254"), run.output.constData());
    // The switch's relay and the polled sensor.
    QVERIFY2(run.output.contains("panel  -> A1 06 30  porchDevice"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -- porchLight is on"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -> A1 05 21  hallClimateDevice"), run.output.constData());
    QVERIFY2(run.output.contains("device -> A3 05 "), run.output.constData());
    // The rooms, the clock that asks and sets its device, and the thermometer.
    for (const char *room : {"Entrance hall", "Dining room", "Garden", "Climate"})
        QVERIFY2(run.output.contains(QByteArray("panel  -- rooms shows ") + room), run.output.constData());
    QVERIFY2(run.output.contains("panel  -> A1 07 41  pathDevice"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -- pathClock shows 20:45"), run.output.constData());
    QCOMPARE(run.output.count("panel  -> A1 07 40 "), 1);
    QVERIFY2(run.output.contains("device <- A1 07 40 07 1E  path"), run.output.constData());
    QVERIFY2(run.output.contains("panel  <- A2 07 40 07 1E"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -- pathMinute shows 30"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -- thermometer shows 2"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -- historyPlot draws Temperature"), run.output.constData());
    QVERIFY2(run.output.contains("panel  -- historyPlot draws Dimmer"), run.output.constData());

    const QImage picture(folder.filePath(QStringLiteral("demo.png")));
    QVERIFY(!picture.isNull());
    // The ceiling's button alone covers a thirtieth of the panel.
    QVERIFY2(greenPart(picture) > 0.03, qPrintable(QString::number(greenPart(picture))));
}

void tst_Demo::missingExampleIsTold()
{
    const QTemporaryDir folder;
    const KelRun run = runKel({QStringLiteral("demo")}, folder.path(),
                              NoDisplay + QStringList{QStringLiteral("KEL_EXAMPLES=") + folder.path()});

    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, "kel: " + folder.path().toLocal8Bit() + "/hall/hall.toml: the example is not there\n");
}

void tst_Demo::picturePlaceThatCannotBeWrittenIsTold()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("demo.png")));
    const KelRun run = runKel({QStringLiteral("demo")}, folder.path(), NoDisplay);

    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.contains("demo.png: "), run.errors.constData());
}

void tst_Demo::writesTheExample()
{
    const QTemporaryDir folder;
    const QString into = folder.filePath(QStringLiteral("mine"));
    const KelRun run = runKel({QStringLiteral("demo"), QStringLiteral("--into"), into}, {}, NoDisplay);
    QVERIFY2(run.exitCode == 0, run.errors.constData());
    for (const char *file : {"hall.ui", "hall.toml", "hall.sqlite", "hall.var", "hall.rules"})
        QVERIFY2(QFileInfo::exists(into + QLatin1Char('/') + QLatin1String(file)), file);

    QProcess sim;
    setUpKel(sim, {QStringLiteral("sim"), into + QStringLiteral("/hall.rules"), QStringLiteral("--tcp"),
                   QStringLiteral("0")});
    sim.start();
    QVERIFY(sim.waitForReadyRead());
    sim.terminate();
    QVERIFY(sim.waitForFinished());
    QCOMPARE(sim.exitCode(), 0);
}

KEL_TEST_MAIN(tst_Demo)
#include "tst_demo.moc"
