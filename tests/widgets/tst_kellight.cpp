#include "testmain.h"

#include <QScreen>

#include <kellight.h>

#include <QMetaProperty>

#include <cmath>
#include <limits>

class tst_KelLight : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void metaObject();
    void setLevel_data();
    void setLevel();
    void sameLevelIsSilent();
    void levelBeyondTheBoundIsAnnouncedAgain();
    void signalOrder_data();
    void signalOrder();
    void levelSetInsideASignal();
    void onAndOffAllowAThousandth();
    void binaryLevel_data();
    void binaryLevel();
    void setBinaryAnnouncesAgain();
    void setBinaryAtMinusOne();
    void byteLevel_data();
    void byteLevel();
    void setByteLevel_data();
    void setByteLevel();
    void lowLevel();
    void lowLevelAboveHighLevel();
    void highLevel();
    void onLevel_data();
    void onLevel();
    void clampedSettings_data();
    void clampedSettings();
    void clickSwitchesOffAndRestores();
    void clickGoesToOnLevel();
    void clickIgnoresReadOnlyAndIsSilent();
    void lastOnLevelIsReplacedEvenWhenNotRestored();
    void clickOfABinaryLight();
    void shownLevelFollows();
    void animationStartsFromTheShownLevel();
    void notANumberIsNeverStored();
    void enableAndDisable();
    void sizes();
};

namespace
{

/// The names and arguments of a light's signals, in the order in which they came.
class Recorder : public QObject
{
public:
    explicit Recorder(KelLight *light)
    {
        connect(light, &KelLight::levelChanged, this, [this](double l) { add("level", l); });
        connect(light, &KelLight::byteLevelChanged, this, [this](int b) { add("byte", b); });
        connect(light, &KelLight::turnedOff, this, [this] { lines << QStringLiteral("off"); });
        connect(light, &KelLight::turnedOn, this, [this] { lines << QStringLiteral("on"); });
        connect(light, &KelLight::clicked, this, [this] { lines << QStringLiteral("clicked"); });
    }

    QStringList lines;

private:
    void add(const char *name, double value) { lines << QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(value); }
};

} // namespace

void tst_KelLight::defaults()
{
    const KelLight light;
    QCOMPARE(light.iconType(), KelLight::Bulb);
    QCOMPARE(light.fillColor(), QColor(255, 245, 60));
    QCOMPARE(light.backColor(), QColor(216, 216, 216));
    QCOMPARE(light.level(), 0.0);
    QCOMPARE(light.angleShift(), 20.0);
    QCOMPARE(light.clickThreshold(), 75.0);
    QCOMPARE(light.barSize(), 30.0);
    QCOMPARE(light.h__anim(), 0.0);
    QCOMPARE(light.lowLevel(), 0.0);
    QCOMPARE(light.highLevel(), 100.0);
    QCOMPARE(light.onLevel(), 100.0);
    QVERIFY(!light.readOnly());
    QVERIFY(!light.binary());
    QVERIFY(light.restoreLastOnLevel());
    QVERIFY(!light.isOn());
    QVERIFY(light.isOff());
    QCOMPARE(int(KelLight::Bulb), 0);
    QCOMPARE(int(KelLight::LED), 1);
    QCOMPARE(int(KelLight::Spot), 2);
}

void tst_KelLight::metaObject()
{
    const QMetaObject &meta = KelLight::staticMetaObject;
    const QMetaProperty hidden = meta.property(meta.indexOfProperty("h__anim"));
    QVERIFY(hidden.isReadable() && hidden.isWritable());
    QVERIFY(!hidden.isDesignable());
    QVERIFY(!hidden.isStored());
    QCOMPARE(hidden.userType(), int(QMetaType::Double));
    QVERIFY(meta.indexOfEnumerator("IconType") >= 0);

    const QMetaMethod animate = meta.method(meta.indexOfSlot("s_anim(double)"));
    QCOMPARE(animate.access(), QMetaMethod::Private);
    for (const char *slot :
         {"enable()", "disable()", "setReadOnly(bool)", "setIconType(IconType)", "setBinary(bool)", "setLevel(double)",
          "setByteLevel(int)", "setLowLevel(double)", "setHighLevel(double)", "setOnLevel(double)", "setOn(bool)",
          "setRestoreLastOnLevel(bool)", "setFillColor(QColor)", "setBackColor(QColor)", "setAngleShift(double)",
          "setBarSize(double)", "setClickThreshold(double)", "click()"}) {
        QVERIFY2(meta.indexOfSlot(slot) >= 0, slot);
        QCOMPARE(meta.method(meta.indexOfSlot(slot)).access(), QMetaMethod::Public);
    }
    for (const char *signal :
         {"turnedOn()", "turnedOff()", "clicked()", "levelChanged(double)", "byteLevelChanged(int)"})
        QVERIFY2(meta.indexOfSignal(signal) >= 0, signal);
    for (const char *property :
         {"iconType", "readOnly", "binary", "on", "restoreLastOnLevel", "level", "byteLevel", "fillColor", "backColor",
          "angleShift", "barSize", "clickThreshold", "lowLevel", "highLevel", "onLevel"}) {
        const QMetaProperty shown = meta.property(meta.indexOfProperty(property));
        QVERIFY2(shown.isReadable() && shown.isWritable() && shown.isDesignable() && shown.isStored(), property);
    }
}

void tst_KelLight::setLevel_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("stored");

    QTest::newRow("inside") << 60.0 << 60.0;
    QTest::newRow("above the high level") << 150.0 << 90.0;
    QTest::newRow("below the low level") << -5.0 << 10.0;
    QTest::newRow("infinity clamps too") << std::numeric_limits<double>::infinity() << 90.0;
}

void tst_KelLight::setLevel()
{
    QFETCH(double, given);
    QFETCH(double, stored);

    KelLight light;
    light.setLowLevel(10.0);
    light.setHighLevel(90.0);
    light.setLevel(50.0);
    light.setLevel(given);
    QCOMPARE(light.level(), stored);
}

void tst_KelLight::sameLevelIsSilent()
{
    KelLight light;
    light.setLevel(60.0);
    const Recorder recorder(&light);
    light.setLevel(60.0);
    QCOMPARE(recorder.lines, QStringList());
}

void tst_KelLight::levelBeyondTheBoundIsAnnouncedAgain()
{
    KelLight light;
    light.setLevel(100.0);
    const Recorder recorder(&light);
    light.setLevel(150.0);
    QCOMPARE(recorder.lines, QStringList({"level 100", "byte 254", "on"}));
}

void tst_KelLight::signalOrder_data()
{
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<double>("given");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("between the bounds") << 0.0 << 100.0 << 40.0 << QStringList({"level 40", "byte 102"});
    QTest::newRow("at the high level") << 0.0 << 100.0 << 100.0 << QStringList({"level 100", "byte 254", "on"});
    QTest::newRow("a hair below the high level is not on")
        << 0.0 << 100.0 << 99.9999 << QStringList({"level 99.9999", "byte 254"});
    QTest::newRow("at the low level") << 20.0 << 100.0 << 5.0 << QStringList({"level 20", "byte 0", "off"});
    QTest::newRow("equal bounds: off, then on")
        << 50.0 << 50.0 << 7.0 << QStringList({"level 50", "byte 0", "off", "on"});
}

void tst_KelLight::signalOrder()
{
    QFETCH(double, low);
    QFETCH(double, high);
    QFETCH(double, given);
    QFETCH(QStringList, lines);

    KelLight light;
    light.setLevel(33.0);
    light.setLowLevel(low);
    light.setHighLevel(high);
    const Recorder recorder(&light);
    light.setLevel(given);
    QCOMPARE(recorder.lines, lines);
}

void tst_KelLight::levelSetInsideASignal()
{
    KelLight light;
    Recorder recorder(&light);
    bool once = true;
    connect(&light, &KelLight::levelChanged, &light, [&] {
        if (std::exchange(once, false))
            light.setLevel(100.0);
    });
    light.setLevel(40.0);
    QCOMPARE(recorder.lines, QStringList({"level 40", "level 100", "byte 254", "on", "byte 254", "on"}));
}

void tst_KelLight::onAndOffAllowAThousandth()
{
    KelLight light;
    light.setLevel(99.9995);
    QVERIFY(light.isOn());
    light.setLevel(99.998);
    QVERIFY(!light.isOn());
    light.setLevel(0.0005);
    QVERIFY(light.isOff());
    light.setLevel(0.002);
    QVERIFY(!light.isOff());
}

void tst_KelLight::binaryLevel_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("byteLevel");

    QTest::newRow("above the threshold is high") << 76.0 << 100.0 << 254;
    QTest::newRow("at the threshold is low") << 75.0 << 0.0 << 0;
    QTest::newRow("below the threshold is low") << 60.0 << 0.0 << 0;
}

void tst_KelLight::binaryLevel()
{
    QFETCH(double, given);
    QFETCH(double, level);
    QFETCH(int, byteLevel);

    KelLight light;
    light.setBinary(true);
    light.setLevel(given);
    QCOMPARE(light.level(), level);
    QCOMPARE(light.byteLevel(), byteLevel);
}

// The level that a binary light tells compares what is stored with one half, whatever the bounds are.
void tst_KelLight::setBinaryAnnouncesAgain()
{
    KelLight light;
    light.setLevel(60.0);
    const Recorder recorder(&light);
    light.setBinary(true);
    QCOMPARE(recorder.lines, QStringList({"level 0", "byte 0", "off"}));
    light.setBinary(true);
    QCOMPARE(recorder.lines.mid(3), QStringList({"level 0", "byte 0", "off"}));
    light.setBinary(false);
    QCOMPARE(recorder.lines.mid(6), QStringList({"level 0", "byte 0", "off"}));

    light.setLowLevel(2.0);
    light.setBinary(true);
    QCOMPARE(light.level(), 100.0); // 2 is stored, and above one half
}

void tst_KelLight::setBinaryAtMinusOne()
{
    KelLight light;
    light.setLowLevel(-10.0);
    light.setLevel(-1.0);
    const Recorder recorder(&light);
    light.setBinary(false);
    QCOMPARE(recorder.lines, QStringList({"level -1", "byte -3"}));
}

void tst_KelLight::byteLevel_data()
{
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<double>("given");
    QTest::addColumn<int>("result");

    QTest::newRow("half") << 0.0 << 100.0 << 50.0 << 127;
    QTest::newRow("full is 254") << 0.0 << 100.0 << 100.0 << 254;
    QTest::newRow("against 100, not the high level") << 0.0 << 50.0 << 50.0 << 127;
    QTest::newRow("the low level is 0") << 20.0 << 100.0 << 20.0 << 0;
    QTest::newRow("near the low level is 0") << 20.0 << 100.0 << 20.0005 << 0;
    QTest::newRow("no high level is -1, even at the low level") << 0.0 << 0.0 << 0.0 << -1;
    QTest::newRow("more than an integer holds") << 0.0 << 1e12 << 1e12 << std::numeric_limits<int>::max();
    QTest::newRow("less than an integer holds") << -1e12 << 1e12 << -1e11 << -std::numeric_limits<int>::max();
    QTest::newRow("rounds half away from zero") << -100.0 << 100.0 << -1.1811023622047243 << -3;
}

void tst_KelLight::byteLevel()
{
    QFETCH(double, low);
    QFETCH(double, high);
    QFETCH(double, given);
    QFETCH(int, result);

    KelLight light;
    light.setLowLevel(low);
    light.setHighLevel(high);
    light.setLevel(given);
    QCOMPARE(light.byteLevel(), result);
}

void tst_KelLight::setByteLevel_data()
{
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<int>("given");
    QTest::addColumn<double>("level");

    QTest::newRow("half") << 0.0 << 100.0 << 127 << 50.0;
    QTest::newRow("full") << 0.0 << 100.0 << 254 << 100.0;
    QTest::newRow("255 clamps") << 0.0 << 100.0 << 255 << 100.0;
    QTest::newRow("against the high level") << 0.0 << 50.0 << 127 << 25.0;
    QTest::newRow("0 is the low level") << 20.0 << 100.0 << 0 << 20.0;
    QTest::newRow("0 is the low level, also below zero") << -20.0 << 100.0 << 0 << -20.0;
    QTest::newRow("below the low level is the low level") << 50.0 << 100.0 << 12 << 50.0;
    QTest::newRow("negative is the low level") << 10.0 << 100.0 << -3 << 10.0;
}

void tst_KelLight::setByteLevel()
{
    QFETCH(double, low);
    QFETCH(double, high);
    QFETCH(int, given);
    QFETCH(double, level);

    KelLight light;
    light.setLowLevel(low);
    light.setHighLevel(high);
    light.setLevel(77.0);
    light.setByteLevel(given);
    QCOMPARE(light.level(), level);
}

void tst_KelLight::lowLevel()
{
    KelLight light;
    const Recorder recorder(&light);
    light.setLowLevel(80.0);
    QCOMPARE(light.lowLevel(), 80.0);
    QCOMPARE(light.onLevel(), 100.0);
    QCOMPARE(light.clickThreshold(), 80.0);
    QCOMPARE(light.level(), 80.0);
    QCOMPARE(recorder.lines, QStringList({"level 80", "byte 0", "off"}));
}

void tst_KelLight::lowLevelAboveHighLevel()
{
    KelLight light;
    double onLevel = 0.0;
    double threshold = 0.0;
    connect(&light, &KelLight::levelChanged, this, [&] {
        onLevel = light.onLevel();
        threshold = light.clickThreshold();
    });
    light.setLowLevel(150.0);
    QCOMPARE(onLevel, 150.0);
    QCOMPARE(threshold, 150.0);
    QCOMPARE(light.highLevel(), 100.0);
    QCOMPARE(light.level(), 100.0); // the high level wins
}

void tst_KelLight::highLevel()
{
    KelLight light;
    light.setLevel(90.0);
    const Recorder recorder(&light);
    light.setHighLevel(50.0);
    QCOMPARE(light.onLevel(), 50.0);
    QCOMPARE(light.clickThreshold(), 50.0);
    QCOMPARE(light.level(), 50.0);
    QCOMPARE(recorder.lines, QStringList({"level 50", "byte 127", "on"}));

    light.setHighLevel(200.0);
    QCOMPARE(light.onLevel(), 50.0);
    QCOMPARE(light.clickThreshold(), 50.0);
    QCOMPARE(light.level(), 50.0);
    QCOMPARE(recorder.lines.size(), 3);
}

void tst_KelLight::onLevel_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("onLevel");
    QTest::addColumn<double>("threshold");

    QTest::newRow("lowers the threshold") << 60.0 << 60.0 << 60.0;
    QTest::newRow("leaves the threshold") << 80.0 << 80.0 << 75.0;
    QTest::newRow("clamps to the high level") << 150.0 << 90.0 << 75.0;
    QTest::newRow("clamps to the low level") << 5.0 << 10.0 << 10.0;
}

void tst_KelLight::onLevel()
{
    QFETCH(double, given);
    QFETCH(double, onLevel);
    QFETCH(double, threshold);

    KelLight light;
    light.setLowLevel(10.0);
    light.setHighLevel(90.0);
    light.setOnLevel(given);
    QCOMPARE(light.onLevel(), onLevel);
    QCOMPARE(light.clickThreshold(), threshold);
}

void tst_KelLight::clampedSettings_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("stored");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("angle above") << QByteArray("angleShift") << 200.0 << 180.0;
    QTest::newRow("angle inside") << QByteArray("angleShift") << 45.5 << 45.5;
    QTest::newRow("angle below") << QByteArray("angleShift") << -1.0 << 0.0;
    QTest::newRow("angle not a number") << QByteArray("angleShift") << nan << 0.0;
    QTest::newRow("bar above") << QByteArray("barSize") << 101.0 << 100.0;
    QTest::newRow("bar inside") << QByteArray("barSize") << 12.5 << 12.5;
    QTest::newRow("bar below") << QByteArray("barSize") << -1.0 << 0.0;
    QTest::newRow("bar not a number") << QByteArray("barSize") << nan << 0.0;
    QTest::newRow("threshold above") << QByteArray("clickThreshold") << 101.0 << 95.0;
    QTest::newRow("threshold inside") << QByteArray("clickThreshold") << 33.0 << 33.0;
    QTest::newRow("threshold below") << QByteArray("clickThreshold") << 1.0 << 10.0;
}

void tst_KelLight::clampedSettings()
{
    QFETCH(QByteArray, property);
    QFETCH(double, given);
    QFETCH(double, stored);

    KelLight light;
    light.setLowLevel(10.0);
    light.setOnLevel(95.0);
    QVERIFY(light.setProperty(property.constData(), given));
    QCOMPARE(light.property(property.constData()).toDouble(), stored);
}

void tst_KelLight::clickSwitchesOffAndRestores()
{
    KelLight light;
    light.click(); // nothing to restore yet
    QCOMPARE(light.level(), 100.0);
    light.setLevel(80.0);
    light.click();
    QCOMPARE(light.level(), 0.0);
    light.click();
    QCOMPARE(light.level(), 80.0);
    light.setLevel(75.0); // the threshold itself is on
    light.click();
    QCOMPARE(light.level(), 0.0);
    light.setLevel(74.9); // below it is off
    light.click();
    QCOMPARE(light.level(), 75.0);
}

void tst_KelLight::clickGoesToOnLevel()
{
    KelLight light;
    light.setOnLevel(85.0);
    light.setRestoreLastOnLevel(false);
    light.setLevel(80.0);
    light.click();
    light.click();
    QCOMPARE(light.level(), 85.0);
}

void tst_KelLight::clickIgnoresReadOnlyAndIsSilent()
{
    KelLight light;
    light.setReadOnly(true);
    const Recorder recorder(&light);
    light.click();
    QCOMPARE(recorder.lines, QStringList({"level 100", "byte 254", "on"}));
}

void tst_KelLight::lastOnLevelIsReplacedEvenWhenNotRestored()
{
    KelLight light;
    light.setLevel(76.0);
    light.click(); // remembers 76
    light.setRestoreLastOnLevel(false);
    light.setClickThreshold(90.0);
    light.click(); // 76 is below the threshold now: the high level takes its place
    light.setLevel(10.0);
    light.setClickThreshold(20.0);
    light.setRestoreLastOnLevel(true);
    light.click();
    QCOMPARE(light.level(), 100.0);
}

void tst_KelLight::clickOfABinaryLight()
{
    KelLight light;
    light.setBinary(true);
    light.click();
    QCOMPARE(light.level(), 100.0);
    light.click();
    QCOMPARE(light.level(), 0.0);
}

void tst_KelLight::shownLevelFollows()
{
    KelLight light;
    QElapsedTimer timer;
    timer.start();
    light.setLevel(100.0);
    QVERIFY(light.h__anim() < 100.0);
    QTRY_COMPARE(light.h__anim(), 100.0);
    QVERIFY(timer.elapsed() >= 190);
}

void tst_KelLight::animationStartsFromTheShownLevel()
{
    KelLight light;
    light.setLevel(100.0);
    QTRY_VERIFY(light.h__anim() > 10.0);
    const double shown = light.h__anim();
    light.setLevel(99.0);
    QCOMPARE(light.h__anim(), shown);
    QTRY_COMPARE(light.h__anim(), 99.0);
}

void tst_KelLight::notANumberIsNeverStored()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    KelLight light;
    light.setLevel(40.0);
    QTRY_COMPARE(light.h__anim(), 40.0);
    const Recorder recorder(&light);
    for (const char *property : {"level", "lowLevel", "highLevel", "onLevel", "clickThreshold", "h__anim"})
        light.setProperty(property, nan);
    light.setLowLevel(-infinity);
    light.setHighLevel(infinity);
    QCOMPARE(recorder.lines, QStringList());
    QCOMPARE(light.level(), 40.0);
    QCOMPARE(light.lowLevel(), 0.0);
    QCOMPARE(light.highLevel(), 100.0);
    QCOMPARE(light.onLevel(), 100.0);
    QCOMPARE(light.clickThreshold(), 75.0);
    QCOMPARE(light.h__anim(), 40.0);
}

void tst_KelLight::enableAndDisable()
{
    KelLight light;
    light.disable();
    QVERIFY(!light.isEnabled());
    light.enable();
    QVERIFY(light.isEnabled());
}

void tst_KelLight::sizes()
{
    KelLight light;
    light.resize(77, 33);
    const double scale = QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96.0;
    QCOMPARE(light.sizeHint(), QSize(qRound(scale * 120), qRound(scale * 120)));
    QCOMPARE(light.minimumSizeHint(), QSize(qRound(scale * 40), qRound(scale * 40)));
    QVERIFY(!light.hasHeightForWidth());
    QCOMPARE(light.heightForWidth(5), 77);
}

KEL_TEST_MAIN(tst_KelLight)
#include "tst_kellight.moc"
