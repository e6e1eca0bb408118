#include "hallbench.h"
#include "testmain.h"

#include <kelbutton.h>
#include <kelgraphic.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>
#include <keltabwidget.h>
#include <panel/plotfeed.h>
#include <qtimerwidget.h>

#include <QLabel>
#include <QSignalSpy>

/// The devices of the hall and the widgets that they are wired to.
class tst_Hall : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void everyConnectionFits();
    void sliderSendsOnceWhenItRests();
    void lampGlowsAsTheDimmerSays_data();
    void lampGlowsAsTheDimmerSays();
    void sceneMovesTheSliderWithoutSendingAgain();
    void stepsOfTheSliderComeBackTheSame();
    void switchTogglesTheRelay();
    void switchEndsAsTheRelaySays_data();
    void switchEndsAsTheRelaySays();
    void firstSignOfLifeStartsThePolling();
    void pollShowsTheClimate();
    void plotShowsTemperatureAndDimmer();

private:
    template <typename Widget>
    Widget &part(const char *name) const
    {
        return m_bench->part<Widget>(name);
    }

    QStringList sentBy(const char *device) const { return m_bench->sentBy(device); }
    void hear(const char *device, const char *message) const { m_bench->hear(device, message); }

    std::unique_ptr<HallCatalogue> m_catalogue;
    std::unique_ptr<HallBench> m_bench;
};

void tst_Hall::initTestCase()
{
    m_catalogue = std::make_unique<HallCatalogue>();
}

void tst_Hall::init()
{
    m_bench = std::make_unique<HallBench>();
}

void tst_Hall::cleanup()
{
    m_bench.reset();
}

void tst_Hall::everyConnectionFits()
{
    QCOMPARE(m_bench->complaints(), QStringList());
}

void tst_Hall::sliderSendsOnceWhenItRests()
{
    part<KelTabWidget>("rooms").setCurrentIndex(1);
    auto &bar = *part<KelSlider>("levelSlider").findChild<QWidget *>(QStringLiteral("bar"));
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 4, bar.height() / 2));
    QTest::mouseMove(&bar, QPoint(bar.width() / 3, bar.height() / 2));
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(bar.width() / 3, bar.height() / 2));
    part<KelSlider>("levelSlider").setValue(50);
    QCOMPARE(sentBy("tableDevice"), QStringList());

    QTRY_COMPARE(part<KelLight>("tableLight").byteLevel(), 127);
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("tableDevice"), QStringList{QStringLiteral("A1 04 11 7F")});
    QCOMPARE(part<KelSlider>("levelSlider").value(), 50.0);
}

void tst_Hall::lampGlowsAsTheDimmerSays_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("byteLevel");

    QTest::newRow("a level") << QByteArray("A2041180") << 128;
    QTest::newRow("full level") << QByteArray("A20411FE") << 254;
    QTest::newRow("a scene") << QByteArray("A20410660003") << 102;
    QTest::newRow("another device") << QByteArray("A2051180") << 0;
}

void tst_Hall::lampGlowsAsTheDimmerSays()
{
    QFETCH(QByteArray, answer);
    QFETCH(int, byteLevel);

    hear("tableDevice", answer.constData());
    QCOMPARE(part<KelLight>("tableLight").byteLevel(), byteLevel);
    QVERIFY(part<KelLight>("tableLight").readOnly());
}

void tst_Hall::sceneMovesTheSliderWithoutSendingAgain()
{
    part<KelButton>("dinnerButton").click();

    QTRY_COMPARE(part<KelSlider>("levelSlider").value(), 40.0);
    QCOMPARE(part<KelLight>("tableLight").byteLevel(), 102);
    QCOMPARE(part<KelButton>("dinnerButton").state(), KelButton::Yes);
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("tableDevice"), QStringList{QStringLiteral("A1 04 10 66 03")});
    QCOMPARE(part<KelButton>("dinnerButton").state(), KelButton::Yes);
}

void tst_Hall::stepsOfTheSliderComeBackTheSame()
{
    auto &device = part<LocalDevice>("tableDevice");
    for (int percent = 0; percent <= 100; ++percent) {
        device.setArgument0(percent);
        const PIByteArray bytes = device.parseSendData(QStringLiteral("%(a0*254/100)"));
        part<KelLight>("tableLight").setByteLevel(uchar(bytes[0]));
        QCOMPARE(qRound(part<KelLight>("tableLight").level()), percent);
    }
}

void tst_Hall::switchTogglesTheRelay()
{
    auto &pressed = part<KelSwitch>("porchSwitch");
    auto &light = part<KelLight>("porchLight");

    QTest::mouseClick(&pressed, Qt::LeftButton);
    QVERIFY(!light.isOn()); // Only the relay lights it.
    QTRY_VERIFY(light.isOn());
    QVERIFY(pressed.isChecked());
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("porchDevice"), QStringList{QStringLiteral("A1 06 30")});

    QTest::mouseClick(&pressed, Qt::LeftButton);
    QTRY_VERIFY(light.isOff());
    QTest::qWait(QuietMs);
    QVERIFY(!pressed.isChecked());
    QCOMPARE(sentBy("porchDevice").size(), 2);
}

void tst_Hall::switchEndsAsTheRelaySays_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<bool>("switchedTo");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("isOn");

    const QByteArray off("A2063000");
    const QByteArray on("A2063001");
    QTest::newRow("off, asked on, says on") << off << true << on << true;
    QTest::newRow("off, asked on, stays off") << off << true << off << false;
    QTest::newRow("on, asked off, says off") << on << false << off << false;
    QTest::newRow("on, asked off, stays on") << on << false << on << true;
    QTest::newRow("off, switched elsewhere") << off << false << on << true;
    QTest::newRow("on, switched elsewhere") << on << true << off << false;
    QTest::newRow("on, says so again") << on << true << on << true;
}

void tst_Hall::switchEndsAsTheRelaySays()
{
    QFETCH(QByteArray, before);
    QFETCH(bool, switchedTo);
    QFETCH(QByteArray, answer);
    QFETCH(bool, isOn);

    hear("porchDevice", before.constData());
    part<KelSwitch>("porchSwitch").setChecked(switchedTo);
    hear("porchDevice", answer.constData());
    QCOMPARE(part<KelSwitch>("porchSwitch").isChecked(), isOn);
    QCOMPARE(part<KelLight>("porchLight").isOn(), isOn);

    // What the answer moved asks for nothing.
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("porchDevice"), QStringList());
}

void tst_Hall::firstSignOfLifeStartsThePolling()
{
    auto &timer = part<QTimerWidget>("pollTimer");
    auto &presence = part<LocalDevice>("climatePresence");
    QSignalSpy ticks(&timer, &QTimerWidget::tickID);
    QSignalSpy starts(&presence, &LocalDevice::receivedAnswerID);

    // It goes on from then without being started anew: the sensor reports once a second.
    QTRY_VERIFY_WITH_TIMEOUT(ticks.size() >= 3, PatienceMs);
    QCOMPARE(starts.size(), 1);
    QCOMPARE(starts.at(0).at(0).toInt(), 32);
    QCOMPARE(ticks.at(0).at(0).toInt(), 33);
    QVERIFY(!presence.isEnabled());
}

void tst_Hall::pollShowsTheClimate()
{
    QTRY_VERIFY_WITH_TIMEOUT(part<QLabel>("temperature").text() != QLatin1String("--"), PatienceMs);
    QVERIFY(sentBy("hallClimateDevice").size() >= 1);
    QCOMPARE(sentBy("hallClimateDevice").first(), QStringLiteral("A1 05 21"));

    hear("hallClimateDevice", "A205211937");
    QCOMPARE(part<QLabel>("temperature").text(), QStringLiteral("25"));
    QCOMPARE(part<QLabel>("humidity").text(), QStringLiteral("55"));
    QCOMPARE(part<KelButton>("measureButton").state(), KelButton::Gray);
}

void tst_Hall::plotShowsTemperatureAndDimmer()
{
    QCOMPARE(feedPlots(m_bench->window()), QStringList());
    auto &plot = part<KelGraphic>("historyPlot");
    QCOMPARE(plot.graphicsCount(), 2);

    hear("hallClimateDevice", "A205211937");
    hear("tableDevice", "A2041180");
    hear("tableDevice", "A20410660003");
    QCOMPARE(plot.pointsCount(0), 1);
    QCOMPARE(plot.graphicData(0).at(0).y(), 25.0);
    QCOMPARE(plot.pointsCount(1), 2);
    QCOMPARE(plot.graphicData(1).at(0).y(), 128.0);
    QCOMPARE(plot.graphicData(1).at(1).y(), 102.0);
}

KEL_TEST_MAIN(tst_Hall)
#include "tst_hall.moc"
