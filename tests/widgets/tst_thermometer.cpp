#include "testmain.h"
#include "thermometerbench.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QSignalSpy>
#include <cfloat>
#include <limits>

/// The values of a thermometer, and its animation.
class tst_Thermometer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void properties();
    void methods();
    void defaults();
    void animationAsMade();
    void setValue_data();
    void setValue();
    void sameValueIsSilent();
    void signalComesBeforeTheAnimation();
    void animationRunsToTheValue();
    void animationRestartsFromTheShownLevel();
    void valuesBeyondSinglePrecision();
    void colourFollowsTheShownLevel();
    void colourBounds();
    void equalColourBounds();
    void colourBoundsLeaveTheValue();
    void scaleBounds_data();
    void scaleBounds();
    void maximumCountsLess();
    void readOnlyIsForTheMouse();
    void enableAndDisable();
    void notFiniteIsIgnored_data();
    void notFiniteIsIgnored();
    void deletedByItsSignal();
    void changedByItsSignal();
};

static QPropertyAnimation *animationOf(const KelThermometer &thermometer)
{
    return thermometer.findChild<QPropertyAnimation *>();
}

static bool isRunning(const KelThermometer &thermometer)
{
    return animationOf(thermometer)->state() == QAbstractAnimation::Running;
}

/// The colour of the liquid, where the tube leaves the bulb.
static QRgb shownColor(KelThermometer &thermometer)
{
    thermometer.resize(120, 300);
    const QImage image = rendered(thermometer, Qt::green);
    return image.pixel(70, 244);
}

void tst_Thermometer::properties()
{
    const QMetaObject &meta = KelThermometer::staticMetaObject;
    QCOMPARE(meta.superClass(), &QWidget::staticMetaObject);
    for (const char *name : {"readOnly", "value", "minimum", "maximum", "gradMinimum", "gradMaximum"}) {
        const QMetaProperty property = meta.property(meta.indexOfProperty(name));
        QVERIFY2(property.isReadable() && property.isWritable(), name);
        QVERIFY2(property.isDesignable() && property.isStored(), name);
        QCOMPARE(property.typeName(), qstrcmp(name, "readOnly") == 0 ? "bool" : "double");
    }
    const QMetaProperty hidden = meta.property(meta.indexOfProperty("h__anim"));
    QCOMPARE(hidden.typeName(), "float");
    QVERIFY(hidden.isReadable() && hidden.isWritable() && !hidden.isDesignable() && !hidden.isStored());
}

void tst_Thermometer::methods()
{
    const QMetaObject &meta = KelThermometer::staticMetaObject;
    QList<QByteArray> found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        found << meta.method(i).methodSignature();
    const QList<QByteArray> expected = {
        "valueChanged(double)",   "s_anim(double)",        "enable()",           "disable()",
        "setReadOnly(bool)",      "setValue(double)",      "setMinimum(double)", "setMaximum(double)",
        "setGradMinimum(double)", "setGradMaximum(double)"};
    QCOMPARE(found, expected);
    QCOMPARE(meta.method(meta.indexOfSlot("s_anim(double)")).access(), QMetaMethod::Private);
    QCOMPARE(meta.method(meta.indexOfSlot("setReadOnly(bool)")).parameterNames(), QList<QByteArray>{"y"});
    QCOMPARE(meta.method(meta.indexOfSignal("valueChanged(double)")).parameterNames(), QList<QByteArray>{"v"});
}

void tst_Thermometer::defaults()
{
    const KelThermometer thermometer;
    QCOMPARE(thermometer.readOnly(), false);
    QCOMPARE(thermometer.value(), 0.0);
    QCOMPARE(thermometer.minimum(), -30.0);
    QCOMPARE(thermometer.maximum(), 30.0);
    QCOMPARE(thermometer.gradMinimum(), -50.0);
    QCOMPARE(thermometer.gradMaximum(), 50.0);
    QCOMPARE(thermometer.h__anim(), 0.0f);
    QCOMPARE(thermometer.sizeHint(), QSize(120, 300));
    QCOMPARE(thermometer.minimumSizeHint(), QSize(30, 60));
}

void tst_Thermometer::animationAsMade()
{
    const KelThermometer thermometer;
    QCOMPARE(thermometer.findChildren<QPropertyAnimation *>().size(), 1);
    const QPropertyAnimation *animation = animationOf(thermometer);
    QCOMPARE(animation->targetObject(), &thermometer);
    QCOMPARE(animation->propertyName(), QByteArray("h__anim"));
    QCOMPARE(animation->duration(), 200);
    QCOMPARE(animation->easingCurve().type(), QEasingCurve::OutQuad);
    QCOMPARE(animation->state(), QAbstractAnimation::Stopped);
}

void tst_Thermometer::setValue_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("stored");
    QTest::addColumn<bool>("isAnnounced");
    const double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("new") << 12.25 << 12.25 << true;
    QTest::newRow("not rounded") << 0.1 << 0.1 << true;
    QTest::newRow("above the scale") << 80.0 << 50.0 << true;
    QTest::newRow("below the scale") << -1e300 << -50.0 << true;
    QTest::newRow("beyond the colours") << 40.0 << 40.0 << true;
    QTest::newRow("same") << 0.0 << 0.0 << false;
    QTest::newRow("same zero") << -0.0 << 0.0 << false;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0.0 << false;
    QTest::newRow("infinite") << infinity << 0.0 << false;
    QTest::newRow("below all") << -infinity << 0.0 << false;
}

void tst_Thermometer::setValue()
{
    QFETCH(double, given);
    QFETCH(double, stored);
    QFETCH(bool, isAnnounced);

    KelThermometer thermometer;
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    thermometer.setValue(given);
    QCOMPARE(thermometer.value(), stored);
    QCOMPARE(spy.size(), isAnnounced ? 1 : 0);
    QCOMPARE(isRunning(thermometer), isAnnounced);
    if (isAnnounced)
        QCOMPARE(spy.first().first().toDouble(), stored);
}

void tst_Thermometer::sameValueIsSilent()
{
    KelThermometer thermometer;
    thermometer.setValue(80.0);
    settle(thermometer, 50.0);
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    thermometer.setValue(60.0); // is 50 as well
    QCOMPARE(spy.size(), 0);
    QVERIFY(!isRunning(thermometer));
}

void tst_Thermometer::signalComesBeforeTheAnimation()
{
    KelThermometer thermometer;
    int calls = 0;
    connect(&thermometer, &KelThermometer::valueChanged, this, [&thermometer, &calls](double value) {
        ++calls;
        QCOMPARE(value, 20.0);
        QCOMPARE(thermometer.value(), 20.0);
        QVERIFY(!isRunning(thermometer));
    });
    thermometer.setValue(20.0);
    QCOMPARE(calls, 1);
    QVERIFY(isRunning(thermometer));
}

void tst_Thermometer::animationRunsToTheValue()
{
    KelThermometer thermometer;
    thermometer.setValue(-40.0);
    QPropertyAnimation *animation = animationOf(thermometer);
    QCOMPARE(animation->startValue().toDouble(), 0.0);
    QCOMPARE(animation->endValue().toDouble(), -40.0);
    QCOMPARE(thermometer.h__anim(), 0.0f);
    animation->setCurrentTime(100);
    QCOMPARE(thermometer.h__anim(), -30.0f); // the second half is slower
    QTRY_COMPARE(thermometer.h__anim(), -40.0f);
    QTRY_VERIFY(!isRunning(thermometer));
}

void tst_Thermometer::animationRestartsFromTheShownLevel()
{
    KelThermometer thermometer;
    thermometer.setValue(40.0);
    QPropertyAnimation *animation = animationOf(thermometer);
    animation->setCurrentTime(100);
    QCOMPARE(thermometer.h__anim(), 30.0f);
    thermometer.setValue(10.0);
    QCOMPARE(animation->startValue().toFloat(), 30.0f);
    QCOMPARE(animation->endValue().toFloat(), 10.0f);
    QCOMPARE(animation->currentTime(), 0);
    QCOMPARE(thermometer.h__anim(), 30.0f);

    settle(thermometer, -7.0); // without a new value it runs there again
    thermometer.animate();
    QCOMPARE(animation->startValue().toFloat(), -7.0f);
    QCOMPARE(animation->endValue().toFloat(), 10.0f);
    QVERIFY(isRunning(thermometer));
}

void tst_Thermometer::valuesBeyondSinglePrecision()
{
    KelThermometer thermometer;
    thermometer.setGradMaximum(1e300);
    thermometer.setGradMinimum(-1e300);
    thermometer.setValue(5e299);
    QVERIFY(!isRunning(thermometer)); // the column is there already
    QCOMPARE(thermometer.h__anim(), FLT_MAX);
    thermometer.resize(120, 300);
    const QImage image = rendered(thermometer, Qt::green);
    const auto isGlass = [&image](int y) { return QColor(image.pixel(70, y)).green() > 240; };
    int glassRows = 0;
    for (int y = 55; y < 70; ++y)
        glassRows += isGlass(y) ? 1 : 0;
    QVERIFY(glassRows > 2);        // between labels
    for (int y = 74; y < 240; ++y) // from three quarters of the scale downwards
        QVERIFY(!isGlass(y));
    thermometer.setValue(-1e38); // is not far, but the way is
    QVERIFY(!isRunning(thermometer));
    QCOMPARE(thermometer.h__anim(), -1e38f);
    thermometer.setValue(2e38);
    QVERIFY(isRunning(thermometer));
    animationOf(thermometer)->setCurrentTime(200);
    QCOMPARE(thermometer.h__anim(), 2e38f);
}

void tst_Thermometer::colourFollowsTheShownLevel()
{
    KelThermometer thermometer;
    const QRgb grey = QColor::fromHsv(20, 0, 127).rgb();
    QCOMPARE(shownColor(thermometer), grey);
    thermometer.setValue(40.0);
    QCOMPARE(shownColor(thermometer), grey); // has not moved yet
    for (const double level : {-40.0, -30.0, -15.0, 3.0, 15.0, 30.0, 50.0}) {
        thermometer.setProperty("h__anim", level);
        StepByStep expected;
        expected.level = level;
        QCOMPARE(shownColor(thermometer), expected.color().rgb());
    }
}

void tst_Thermometer::colourBounds()
{
    KelThermometer thermometer;
    settle(thermometer, 15.0);
    thermometer.setMaximum(15.0);
    QCOMPARE(thermometer.maximum(), 15.0);
    QCOMPARE(shownColor(thermometer), QColor::fromHsv(20, 255, 255).rgb());
    thermometer.setMinimum(15.5); // crossed: hot is cold
    QCOMPARE(thermometer.minimum(), 15.5);
    thermometer.setMaximum(14.5);
    settle(thermometer, 14.0);
    QCOMPARE(shownColor(thermometer), QColor::fromHsv(20, 255, 255).rgb());
    settle(thermometer, 16.0);
    QCOMPARE(shownColor(thermometer), QColor::fromHsv(200, 255, 254).rgb());
}

void tst_Thermometer::equalColourBounds()
{
    KelThermometer thermometer;
    thermometer.setMinimum(10.0);
    thermometer.setMaximum(10.0);
    settle(thermometer, 9.0);
    QCOMPARE(shownColor(thermometer), QColor::fromHsv(200, 255, 254).rgb());
    settle(thermometer, 10.0);
    QCOMPARE(shownColor(thermometer), QColor::fromHsv(20, 0, 127).rgb());
    settle(thermometer, 11.0);
    QCOMPARE(shownColor(thermometer), QColor::fromHsv(20, 255, 255).rgb());
}

void tst_Thermometer::colourBoundsLeaveTheValue()
{
    KelThermometer thermometer;
    thermometer.setValue(40.0);
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    thermometer.setMaximum(10.0);
    thermometer.setMinimum(-10.0);
    QCOMPARE(thermometer.value(), 40.0);
    QCOMPARE(thermometer.gradMaximum(), 50.0);
    QCOMPARE(spy.size(), 0);
}

void tst_Thermometer::scaleBounds_data()
{
    QTest::addColumn<QByteArray>("bound");
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("value");
    QTest::newRow("top below the value") << QByteArray("gradMaximum") << 5.0 << 5.0;
    QTest::newRow("top above the value") << QByteArray("gradMaximum") << 25.0 << 20.0;
    QTest::newRow("top at the value") << QByteArray("gradMaximum") << 20.0 << 20.0;
    QTest::newRow("top below the bottom") << QByteArray("gradMaximum") << -90.0 << -50.0;
    QTest::newRow("bottom above the value") << QByteArray("gradMinimum") << 30.0 << 30.0;
    QTest::newRow("bottom below the value") << QByteArray("gradMinimum") << -5.0 << 20.0;
    QTest::newRow("bottom above the top") << QByteArray("gradMinimum") << 90.0 << 90.0;
    QTest::newRow("unchanged") << QByteArray("gradMinimum") << -50.0 << 20.0;
}

void tst_Thermometer::scaleBounds()
{
    QFETCH(QByteArray, bound);
    QFETCH(double, given);
    QFETCH(double, value);

    KelThermometer thermometer;
    thermometer.setValue(20.0);
    settle(thermometer, 20.0);
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    thermometer.setProperty(bound.constData(), given);
    QCOMPARE(thermometer.property(bound.constData()).toDouble(), given);
    QCOMPARE(thermometer.value(), value);
    QCOMPARE(spy.size(), value == 20.0 ? 0 : 1);
    QCOMPARE(isRunning(thermometer), value != 20.0);
    QCOMPARE(thermometer.minimum(), -30.0);
    QCOMPARE(thermometer.maximum(), 30.0);
}

void tst_Thermometer::maximumCountsLess()
{
    KelThermometer thermometer;
    thermometer.setGradMinimum(20.0);
    thermometer.setGradMaximum(10.0);
    for (const double given : {0.0, 15.0, 30.0}) {
        thermometer.setValue(given);
        QCOMPARE(thermometer.value(), 20.0);
    }
}

void tst_Thermometer::readOnlyIsForTheMouse()
{
    KelThermometer thermometer;
    thermometer.setReadOnly(true);
    QVERIFY(thermometer.readOnly());
    thermometer.setValue(7.0);
    QCOMPARE(thermometer.value(), 7.0);
    thermometer.setReadOnly(false);
    QVERIFY(!thermometer.readOnly());
}

void tst_Thermometer::enableAndDisable()
{
    KelThermometer thermometer;
    thermometer.disable();
    QVERIFY(!thermometer.isEnabled());
    thermometer.enable();
    QVERIFY(thermometer.isEnabled());
}

void tst_Thermometer::notFiniteIsIgnored_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"value", "minimum", "maximum", "gradMinimum", "gradMaximum", "h__anim"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_Thermometer::notFiniteIsIgnored()
{
    QFETCH(QByteArray, name);

    KelThermometer thermometer;
    thermometer.resize(120, 300);
    const QVariant before = thermometer.property(name.constData());
    const QImage picture = rendered(thermometer);
    const double infinity = std::numeric_limits<double>::infinity();
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    for (const double given : {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity}) {
        thermometer.setProperty(name.constData(), given);
        QCOMPARE(thermometer.property(name.constData()), before);
        QCOMPARE(rendered(thermometer), picture);
    }
    QCOMPARE(spy.size(), 0);
}

void tst_Thermometer::deletedByItsSignal()
{
    for (const char *name : {"value", "gradMinimum"}) {
        const QPointer<KelThermometer> thermometer(new KelThermometer());
        connect(thermometer, &KelThermometer::valueChanged, this, [thermometer] { delete thermometer; });
        thermometer->setProperty(name, 30.0);
        QVERIFY(thermometer.isNull());
    }
}

void tst_Thermometer::changedByItsSignal()
{
    KelThermometer thermometer;
    QList<double> announced;
    connect(&thermometer, &KelThermometer::valueChanged, this, [&](double value) {
        announced << value;
        thermometer.setValue(10.0);
    });
    thermometer.setValue(30.0);
    QCOMPARE(announced, (QList<double>{30.0, 10.0}));
    QCOMPARE(thermometer.value(), 10.0);
    QCOMPARE(animationOf(thermometer)->endValue().toDouble(), 10.0);
}

KEL_TEST_MAIN(tst_Thermometer)
#include "tst_thermometer.moc"
