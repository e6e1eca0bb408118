#include "hallbench.h"
#include "testmain.h"

#include <kelbutton.h>
#include <kelclock.h>
#include <kelgraphic.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>
#include <keltabwidget.h>
#include <kelthermometer.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QStackedWidget>

#include <cmath>

namespace
{

/// A point of a clock's \a face at \a clockHour of twelve, at \a share of the way from its centre.
QPoint pointAt(const QWidget &face, double clockHour, double share)
{
    const double angle = clockHour / 12.0 * 2.0 * std::acos(-1.0);
    const double radius = share * std::min(face.width(), face.height()) / 2.0;
    return {qRound(face.width() / 2.0 + radius * std::sin(angle)),
            qRound(face.height() / 2.0 - radius * std::cos(angle))};
}

constexpr double OuterRing = 0.79;
constexpr double InnerRing = 0.47;

} // namespace

/// The rooms of the hall's panel: they are reached by their tabs, and what is in them works.
class tst_HallRooms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void tapsReachTheRooms_data();
    void tapsReachTheRooms();
    void everyRoomFitsSmallScreens_data();
    void everyRoomFitsSmallScreens();
    void labelsAreReadable();
    void buttonsHaveThePanelsGrey();
    void pickedTimeReachesTheDevice();
    void pickedTimeIsSentWhenTheFingerRests();
    void pickIsSentBeforeTheRoomIsLeft();
    void pickComesBeforeAsking();
    void clockShowsWhatTheDeviceHolds();
    void deviceTellsAnotherTimeThanThePicked();
    void answersOfTheClockSendNothing_data();
    void answersOfTheClockSendNothing();
    void roomsAskOnceWhenTurnedFast();
    void thermometerFollowsTheSensor_data();
    void thermometerFollowsTheSensor();
    void nothingIsShownBeforeItIsMeasured();
    void thermometerIsReadOnly();
    void oneButtonSwitchesAllLightsOff();

private:
    template <typename Widget>
    Widget &part(const char *name) const
    {
        return m_bench->part<Widget>(name);
    }

    QStringList sentBy(const char *device) const { return m_bench->sentBy(device); }
    QString textOf(const char *label) const { return part<QLabel>(label).text(); }

    /// Taps the tab of the room \a index with a finger.
    void enter(int index) const
    {
        QTabBar *bar = part<KelTabWidget>("rooms").tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    }

    /// Enters the garden and waits until the clock shows what the device holds.
    void enterGarden() const
    {
        enter(2);
        QTRY_COMPARE_WITH_TIMEOUT(part<KelClock>("pathClock").time(), QTime(20, 45), PatienceMs);
        part<KelClock>("pathClock").grab(); // A face that was never painted is deaf.
    }

    QWidget &face(int index) const { return *part<KelClock>("pathClock").layout()->itemAt(index)->widget(); }
    void tapHour(double clockHour, double ring) const
    {
        QTest::mouseClick(&face(0), Qt::LeftButton, {}, pointAt(face(0), clockHour, ring));
    }
    void tapMinute(int minute) const
    {
        QTest::mouseClick(&face(1), Qt::LeftButton, {}, pointAt(face(1), minute / 5.0, OuterRing));
    }

    std::unique_ptr<HallCatalogue> m_catalogue;
    std::unique_ptr<HallBench> m_bench;
};

void tst_HallRooms::initTestCase()
{
    m_catalogue = std::make_unique<HallCatalogue>();
}

void tst_HallRooms::init()
{
    m_bench = std::make_unique<HallBench>();
}

void tst_HallRooms::cleanup()
{
    m_bench.reset();
}

void tst_HallRooms::tapsReachTheRooms_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("widgets");

    QTest::newRow("hall") << 0 << "Entrance hall"
                          << QStringList{"ceilingButton", "wallButton", "porchLight", "porchSwitch", "leaveButton"};
    QTest::newRow("dining room") << 1 << "Dining room" << QStringList{"tableLight", "levelSlider", "dinnerButton"};
    QTest::newRow("garden") << 2 << "Garden" << QStringList{"gardenButton", "fountainButton", "pathClock"};
    QTest::newRow("climate") << 3 << "Climate" << QStringList{"climateValues", "measureButton", "historyPlot"};
}

void tst_HallRooms::tapsReachTheRooms()
{
    QFETCH(int, index);
    QFETCH(QString, title);
    QFETCH(QStringList, widgets);
    const auto &rooms = part<KelTabWidget>("rooms");
    QCOMPARE(rooms.count(), 4);
    QCOMPARE(rooms.tabText(index), title);

    enter((index + 1) % rooms.count());
    for (const QString &name : widgets)
        QVERIFY2(!part<QWidget>(qPrintable(name)).isVisible(), qPrintable(name));
    enter(index);
    QCOMPARE(rooms.currentIndex(), index);
    for (const QString &name : widgets)
        QVERIFY2(part<QWidget>(qPrintable(name)).isVisible(), qPrintable(name));
    QVERIFY(part<QLabel>("temperature").isVisible()); // In every room.
}

void tst_HallRooms::everyRoomFitsSmallScreens_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::newRow("7 inch") << QSize(800, 480);
    QTest::newRow("10 inch") << QSize(1024, 600);
    QTest::newRow("as wide as a desk's") << QSize(1280, 800);
}

void tst_HallRooms::everyRoomFitsSmallScreens()
{
    QFETCH(QSize, screen);
    m_bench->window().resize(screen);
    QCOMPARE(m_bench->window().size(), screen); // It would be larger if its contents needed it.
    part<QStackedWidget>("climateValues").setCurrentIndex(1);
    for (int room = 0; room < 4; ++room) {
        enter(room);
        QCOMPARE(m_bench->window().size(), screen);
        const QWidget *page = part<KelTabWidget>("rooms").currentWidget();
        QVERIFY(page->width() > screen.width() * 9 / 10);
        for (const QWidget *part : page->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
            QVERIFY2(page->rect().contains(part->geometry()), qPrintable(part->objectName()));
            QVERIFY2(part->width() >= part->minimumSizeHint().width(), qPrintable(part->objectName()));
            QVERIFY2(part->height() >= part->minimumSizeHint().height(), qPrintable(part->objectName()));
        }
    }
}

void tst_HallRooms::labelsAreReadable()
{
    for (const char *name : {"title", "temperature", "pathHour", "pathMinute"}) {
        const auto &label = part<QLabel>(name);
        const QPalette &palette = label.palette();
        QVERIFY2(palette.color(QPalette::WindowText).lightness() - palette.color(QPalette::Window).lightness() > 150,
                 name);
    }
}

void tst_HallRooms::buttonsHaveThePanelsGrey()
{
    const QColor grey = m_bench->window().palette().color(QPalette::Button);
    const auto buttons = m_bench->window().findChildren<KelButton *>();
    QVERIFY(buttons.size() > 11); // The sliders' own among them.
    for (const KelButton *button : buttons)
        QVERIFY2(button->h__currentColor() == grey, qPrintable(button->objectName()));
}

void tst_HallRooms::pickedTimeReachesTheDevice()
{
    enterGarden();
    tapHour(7, InnerRing);
    tapMinute(30);
    QCOMPARE(part<KelClock>("pathClock").time(), QTime(7, 30));
    QCOMPARE(textOf("pathHour"), QStringLiteral("20")); // The device has not heard of it yet.

    QTRY_COMPARE(textOf("pathHour"), QStringLiteral("7"));
    QTRY_COMPARE(textOf("pathMinute"), QStringLiteral("30"));
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("pathDevice"), (QStringList{"A1 07 41", "A1 07 40 07 1E"}));
    QCOMPARE(part<KelClock>("pathClock").time(), QTime(7, 30));

    // The device keeps it: who comes back sees it.
    part<KelClock>("pathClock").setTime(QTime(7, 30));
    enter(0);
    QTRY_COMPARE(sentBy("pathDevice").size(), 3);
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("pathDevice").last(), QStringLiteral("A1 07 41"));
    QCOMPARE(part<KelClock>("pathClock").time(), QTime(7, 30));
}

// A drag over the minutes is one time, not thirty.
void tst_HallRooms::pickedTimeIsSentWhenTheFingerRests()
{
    enterGarden();
    QTest::mousePress(&face(1), Qt::LeftButton, {}, pointAt(face(1), 2.0, OuterRing));
    for (int minute = 11; minute <= 23; ++minute) {
        const QPoint to = pointAt(face(1), minute / 5.0, OuterRing);
        QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&face(1), &move);
    }
    QTest::mouseRelease(&face(1), Qt::LeftButton, {}, pointAt(face(1), 23 / 5.0, OuterRing));
    QCOMPARE(part<KelClock>("pathClock").time(), QTime(20, 23));
    QTRY_COMPARE(textOf("pathMinute"), QStringLiteral("23"));
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("pathDevice"), (QStringList{"A1 07 41", "A1 07 40 14 17"}));
}

void tst_HallRooms::pickIsSentBeforeTheRoomIsLeft()
{
    enterGarden();
    tapMinute(30);
    enter(3);
    QTRY_COMPARE(sentBy("pathDevice").size(), 3);
    QCOMPARE(sentBy("pathDevice"), (QStringList{"A1 07 41", "A1 07 40 14 1E", "A1 07 41"}));
    QTest::qWait(QuietMs);
    QCOMPARE(part<KelClock>("pathClock").time(), QTime(20, 30));
    QCOMPARE(sentBy("pathDevice").size(), 3);
}

// Who taps the clock right after the tab is not thrown back by what the device held until then.
void tst_HallRooms::pickComesBeforeAsking()
{
    enterGarden();
    enter(1);
    enter(2);
    tapMinute(30);
    QTRY_COMPARE(textOf("pathMinute"), QStringLiteral("30"));
    QTest::qWait(QuietMs);
    QCOMPARE(part<KelClock>("pathClock").time(), QTime(20, 30));
    QCOMPARE(sentBy("pathDevice"), (QStringList{"A1 07 41", "A1 07 40 14 1E"}));
}

void tst_HallRooms::clockShowsWhatTheDeviceHolds()
{
    QCOMPARE(textOf("pathHour"), QStringLiteral("--"));
    enterGarden();
    QTRY_COMPARE(textOf("pathHour"), QStringLiteral("20"));
    QTRY_COMPARE(textOf("pathMinute"), QStringLiteral("45"));
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("pathDevice"), QStringList{"A1 07 41"});
}

void tst_HallRooms::deviceTellsAnotherTimeThanThePicked()
{
    m_bench->hear("pathDevice", "A207401605");
    QCOMPARE(textOf("pathHour"), QStringLiteral("22"));
    QCOMPARE(textOf("pathMinute"), QStringLiteral("5"));
    m_bench->hear("pathDevice", "A208400101"); // Another device's.
    QCOMPARE(textOf("pathHour"), QStringLiteral("22"));
}

void tst_HallRooms::answersOfTheClockSendNothing_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QTime>("time");

    QTest::newRow("set") << QByteArray("A207401605") << QTime(0, 0);
    QTest::newRow("asked") << QByteArray("A207411605") << QTime(22, 5);
    QTest::newRow("asked, midnight") << QByteArray("A207410000") << QTime(0, 0);
    QTest::newRow("asked, no hour") << QByteArray("A2074118FF") << QTime(0, 0);
}

void tst_HallRooms::answersOfTheClockSendNothing()
{
    QFETCH(QByteArray, answer);
    QFETCH(QTime, time);
    m_bench->hear("pathDevice", answer.constData());
    QCOMPARE(part<KelClock>("pathClock").time(), time);
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("pathDevice"), QStringList());
}

void tst_HallRooms::roomsAskOnceWhenTurnedFast()
{
    for (const int room : {1, 2, 3, 2})
        enter(room);
    QTRY_COMPARE(sentBy("pathDevice").size(), 1);
    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("pathDevice"), QStringList{"A1 07 41"});
}

void tst_HallRooms::thermometerFollowsTheSensor_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("percent");

    QTest::newRow("polled") << QByteArray("A205211937") << 25.0 << 55.0;
    QTest::newRow("measured") << QByteArray("A205200A64") << 10.0 << 100.0;
    QTest::newRow("freezing") << QByteArray("A205210000") << 0.0 << 0.0;
    QTest::newRow("off the scale") << QByteArray("A20521C8FF") << 40.0 << 100.0;
    QTest::newRow("another device's") << QByteArray("A206211937") << 0.0 << 0.0;
}

void tst_HallRooms::thermometerFollowsTheSensor()
{
    QFETCH(QByteArray, answer);
    QFETCH(double, degrees);
    QFETCH(double, percent);
    m_bench->hear("hallClimateDevice", answer.constData());
    QCOMPARE(part<KelThermometer>("thermometer").value(), degrees);
    QCOMPARE(part<KelSlider>("temperatureBar").value(), degrees);
    QCOMPARE(part<KelSlider>("humidityBar").value(), percent);
}

void tst_HallRooms::nothingIsShownBeforeItIsMeasured()
{
    enter(3);
    QVERIFY(part<QLabel>("waiting").isVisible());
    QVERIFY(!part<KelThermometer>("thermometer").isVisible());
    m_bench->hear("climatePresence", "A305");         // A sign of life is no value.
    part<LocalDevice>("hallClimateDevice").disable(); // It would poll.
    QTest::qWait(50);
    QVERIFY(part<QLabel>("waiting").isVisible());
    part<LocalDevice>("hallClimateDevice").enable();
    m_bench->hear("hallClimateDevice", "A205210000");
    QTRY_VERIFY(part<KelThermometer>("thermometer").isVisible());
    QVERIFY(part<KelSlider>("humidityBar").isVisible());
    QVERIFY(!part<QLabel>("waiting").isVisible());
}

void tst_HallRooms::thermometerIsReadOnly()
{
    enter(3);
    m_bench->hear("hallClimateDevice", "A205211937");
    QTRY_VERIFY(part<KelThermometer>("thermometer").isVisible());
    auto &thermometer = part<KelThermometer>("thermometer");
    auto *bar = part<KelSlider>("temperatureBar").findChild<QWidget *>(QStringLiteral("bar"));
    QVERIFY(thermometer.readOnly());
    QVERIFY(bar);
    QTest::mouseClick(&thermometer, Qt::LeftButton, {}, QPoint(thermometer.width() / 2, thermometer.height() / 4));
    QTest::mouseClick(bar, Qt::LeftButton, {}, QPoint(bar->width() / 4, bar->height() / 2));
    QCOMPARE(thermometer.value(), 25.0);
    QCOMPARE(part<KelSlider>("temperatureBar").value(), 25.0);
}

void tst_HallRooms::oneButtonSwitchesAllLightsOff()
{
    m_bench->hear("ceilingDevice", "A2010101");
    m_bench->hear("wallDevice", "A2020101");
    m_bench->hear("gardenDevice", "A2030101");
    m_bench->hear("fountainDevice", "A2080101");
    m_bench->hear("porchDevice", "A2063001");
    m_bench->hear("tableDevice", "A20410660003");
    part<KelSlider>("levelSlider").setValue(40);
    m_bench->hear("tableDevice", "A20410662803");
    QCOMPARE(part<KelButton>("ceilingButton").state(), KelButton::Yes);
    QVERIFY(part<KelLight>("porchLight").isOn());

    auto &leave = part<KelButton>("leaveButton");
    QTest::mouseClick(&leave, Qt::LeftButton);
    for (const char *name : {"ceilingButton", "wallButton", "gardenButton", "fountainButton"})
        QTRY_COMPARE_WITH_TIMEOUT(part<KelButton>(name).state(), KelButton::Gray, PatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(part<KelLight>("porchLight").isOff(), PatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(part<KelSlider>("levelSlider").value(), 0.0, PatienceMs);
    QVERIFY(!part<KelSwitch>("porchSwitch").isChecked());
    QCOMPARE(part<KelLight>("tableLight").byteLevel(), 0);

    QTest::qWait(QuietMs);
    QCOMPARE(sentBy("ceilingDevice"), QStringList{"A1 01 03"});
    QCOMPARE(sentBy("wallDevice"), QStringList{"A1 02 03"});
    QCOMPARE(sentBy("gardenDevice"), QStringList{"A1 03 03"});
    QCOMPARE(sentBy("fountainDevice"), QStringList{"A1 08 03"});
    QCOMPARE(sentBy("porchDevice"), QStringList{"A1 06 31"});
    QCOMPARE(sentBy("tableDevice"), QStringList{"A1 04 10 00 01"});
}

KEL_TEST_MAIN(tst_HallRooms)
#include "tst_hallrooms.moc"
