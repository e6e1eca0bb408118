#include "sliderbench.h"
#include "testmain.h"

#include <QHBoxLayout>
#include <QMetaProperty>
#include <QSignalSpy>
#include <kelbutton.h>
#include <kelslider.h>

#include <functional>
#include <limits>

class tst_KelSlider : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void form();
    void properties();
    void slotsInOrder();

    void setValue_data();
    void setValue();
    void halvesRoundUp_data();
    void halvesRoundUp();
    void signalsInOrder();
    void sameValueIsSilent();
    void intSignalsTruncate_data();
    void intSignalsTruncate();
    void nonsenseIsIgnored();

    void setMinimum();
    void setMaximum();
    void maximumWins();
    void boundsAreMultiples();
    void zeroButton();

    void decimals_data();
    void decimals();
    void setPrecision();
    void precisionZeroAndSign();
    void precisionKeepsTheZeroFlag();
    void newDecimalsShowWithTheNextValue();

    void caption();
    void titleIsAnnounced();
    void titleInsideBar();

    void numbered_data();
    void numbered();
    void intOverloads();
    void enableAndDisable();
    void spacingAndButtonSize();
};

void tst_KelSlider::defaults()
{
    const KelSlider slider;

    QVERIFY(!slider.readOnly());
    QVERIFY(slider.showMinMax());
    QVERIFY(slider.showDecInc());
    QVERIFY(!slider.titleInsideBar());
    QCOMPARE(slider.barStyle(), KelSlider::From0);
    QCOMPARE(slider.titleSize(), 0.5);
    QCOMPARE(slider.minimum(), 0.0);
    QCOMPARE(slider.maximum(), 255.0);
    QCOMPARE(slider.value(), 0.0);
    QCOMPARE(slider.precision(), 1.0);
    QVERIFY(slider.title().isEmpty());
    QCOMPARE(slider.clickID(), -1);
    QCOMPARE(slider.setID(), -1);
    QCOMPARE(slider.spacing(), 4);
    QCOMPARE(slider.minimumButtonSize(), QSize(45, 45));
    QVERIFY(button(slider, "qt_pbZero")->isHidden());
    QVERIFY(!button(slider, "qt_pbMin")->isHidden());
    QVERIFY(!button(slider, "qt_pbInc")->isHidden());
}

void tst_KelSlider::form()
{
    const KelSlider slider;
    QCOMPARE(slider.objectName(), QStringLiteral("KelSlider"));
    QCOMPARE(slider.sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(slider.sizePolicy().verticalPolicy(), QSizePolicy::Preferred);

    const auto *layout = qobject_cast<QHBoxLayout *>(slider.layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->objectName(), QStringLiteral("horizontalLayout"));
    QCOMPARE(layout->contentsMargins(), QMargins(2, 2, 2, 2));
    QStringList names;
    for (int i = 0; i < layout->count(); ++i) {
        names += layout->itemAt(i)->widget()->objectName();
        QCOMPARE(layout->stretch(i), i == 1 ? 4 : 0);
    }
    QCOMPARE(names, QStringList({"qt_pbMin", "bar", "qt_pbMax", "qt_pbDec", "qt_pbZero", "qt_pbInc"}));

    const auto *bar = layout->itemAt(1)->widget();
    QCOMPARE(QByteArray(bar->metaObject()->className()), QByteArray("QWidget"));
    QCOMPARE(bar->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(bar->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);

    const QStringList texts{"0", "255", "-", "0", "+"};
    for (int i = 0; i < 5; ++i) {
        const KelButton *each = button(slider, ButtonNames[i]);
        QCOMPARE(each->text(), texts.at(i));
        QCOMPARE(each->minimumSize(), QSize(45, 45));
        QCOMPARE(each->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
        QCOMPARE(each->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
        QCOMPARE(each->autoRepeat(), i == 2 || i == 4);
        if (each->autoRepeat())
            QCOMPARE(each->autoRepeatDelay(), 500);
    }
}

void tst_KelSlider::properties()
{
    KelSlider slider;
    const QVector<QPair<const char *, QVariant>> values{
        {"readOnly", true},
        {"showMinMax", false},
        {"showDecInc", false},
        {"titleInsideBar", true},
        {"barStyle", 2},
        {"titleSize", 0.75},
        {"minimum", -5.0},
        {"maximum", 50.0},
        {"value", 25.0},
        {"precision", 2.0},
        {"title", QStringLiteral("t")},
        {"clickID", 3},
        {"setID", 4},
        {"spacing", 9},
        {"minimumButtonSize", QSize(20, 30)},
    };
    const QMetaObject *meta = slider.metaObject();
    QCOMPARE(meta->propertyCount() - meta->propertyOffset(), values.size());
    for (int i = 0; i < values.size(); ++i) {
        const QMetaProperty property = meta->property(meta->indexOfProperty(values.at(i).first));
        QVERIFY2(property.isDesignable() && property.isStored(), property.name());
        QVERIFY2(property.write(&slider, values.at(i).second), property.name());
        QVariant stored = property.read(&slider);
        QVERIFY(stored.convert(values.at(i).second.userType()));
        QCOMPARE(stored, values.at(i).second);
    }
    QCOMPARE(QByteArray(meta->property(meta->propertyOffset()).name()), QByteArray("readOnly"));
    const QMetaEnum styles = meta->enumerator(meta->indexOfEnumerator("BarStyle"));
    QCOMPARE(styles.keyToValue("From0"), 0);
    QCOMPARE(styles.keyToValue("MinToValue"), 1);
    QCOMPARE(styles.keyToValue("MaxToValue"), 2);
}

void tst_KelSlider::slotsInOrder()
{
    const QMetaObject &meta = KelSlider::staticMetaObject;
    QStringList slotTexts;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot && meta.method(i).access() == QMetaMethod::Public)
            slotTexts += QString::fromLatin1(meta.method(i).methodSignature());
    }
    QCOMPARE(slotTexts, QStringList({"enable()",
                                     "disable()",
                                     "setClickID(int)",
                                     "setSetID(int)",
                                     "setSpacing(int)",
                                     "setMinimumButtonSize(QSize)",
                                     "setValue(double)",
                                     "setValue(int)",
                                     "setTitle(QString)",
                                     "setPrecision(double)",
                                     "setPrecision(int)",
                                     "setMinimum(double)",
                                     "setMinimum(int)",
                                     "setMaximum(double)",
                                     "setMaximum(int)",
                                     "setReadOnly(bool)",
                                     "setShowMinMax(bool)",
                                     "setShowDecInc(bool)",
                                     "setValueID(int,double)",
                                     "setValueID(int,int)",
                                     "setMinimumID(int,double)",
                                     "setMinimumID(int,int)",
                                     "setMaximumID(int,double)",
                                     "setMaximumID(int,int)",
                                     "setReadOnlyID(int,bool)",
                                     "setShowMinMaxID(int,bool)",
                                     "enableID(int)",
                                     "disableID(int)",
                                     "clickZero()",
                                     "clickMin()",
                                     "clickMax()",
                                     "clickInc()",
                                     "clickDec()",
                                     "setBarStyle(KelSlider::BarStyle)",
                                     "setTitleInsideBar(bool)",
                                     "setTitleSize(double)"}));
}

void tst_KelSlider::setValue_data()
{
    QTest::addColumn<double>("precision");
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("stored");

    QTest::newRow("whole") << 1.0 << 12.0 << 12.0;
    QTest::newRow("rounded down") << 1.0 << 12.4 << 12.0;
    QTest::newRow("quarter") << 0.25 << 1.13 << 1.25;
    QTest::newRow("below") << 1.0 << -3.0 << 0.0;
    QTest::newRow("above") << 1.0 << 300.0 << 255.0;
    QTest::newRow("beyond the int range") << 1.0 << 1e30 << 255.0;
    QTest::newRow("infinite") << 1.0 << std::numeric_limits<double>::infinity() << 255.0;
    QTest::newRow("negative infinite") << 1.0 << -std::numeric_limits<double>::infinity() << 0.0;
}

void tst_KelSlider::setValue()
{
    QFETCH(double, precision);
    QFETCH(double, given);
    QFETCH(double, stored);
    KelSlider slider;
    slider.setPrecision(precision);
    slider.setValue(given);

    QCOMPARE(slider.value(), stored);
}

void tst_KelSlider::halvesRoundUp_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("stored");

    QTest::newRow("-2.5") << -2.5 << -2.0;
    QTest::newRow("-2.51") << -2.51 << -3.0;
    QTest::newRow("-0.5") << -0.5 << 0.0;
    QTest::newRow("-1.5") << -1.5 << -1.0;
    QTest::newRow("0.5") << 0.5 << 1.0;
    QTest::newRow("2.5") << 2.5 << 3.0;
}

void tst_KelSlider::halvesRoundUp()
{
    QFETCH(double, given);
    QFETCH(double, stored);
    KelSlider slider;
    slider.setMinimum(-10);
    slider.setValue(given);

    QCOMPARE(slider.value(), stored);
}

void tst_KelSlider::signalsInOrder()
{
    KelSlider slider;
    slider.setPrecision(0.5);
    slider.setClickID(7);
    slider.setSetID(9);

    QCOMPARE(announced(slider, [&slider] { slider.setValue(12.5); }),
             QStringList({"double 12.5", "int 12", "7 double 12.5", "7 int 12"}));
}

void tst_KelSlider::sameValueIsSilent()
{
    KelSlider slider;
    QCOMPARE(announced(slider, [&slider] { slider.setValue(0); }).size(), 0);
    QCOMPARE(announced(slider, [&slider] { slider.setValue(5); }).size(), 4);
    QCOMPARE(announced(slider, [&slider] { slider.setValue(5.2); }).size(), 0);
}

void tst_KelSlider::intSignalsTruncate_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("number");

    QTest::newRow("positive") << 1.75 << 1;
    QTest::newRow("negative") << -1.75 << -1;
    QTest::newRow("beyond the int range") << 1e9 * 4 << std::numeric_limits<int>::max();
}

void tst_KelSlider::intSignalsTruncate()
{
    QFETCH(double, value);
    QFETCH(int, number);
    KelSlider slider;
    slider.setPrecision(value > 1e9 ? 4.0 : 0.25);
    slider.setMinimum(-10);
    slider.setMaximum(1e10);
    QSignalSpy spy(&slider, QOverload<int>::of(&KelSlider::valueChanged));
    QSignalSpy spyID(&slider, QOverload<int, int>::of(&KelSlider::valueChangedID));
    slider.setValue(value);

    QCOMPARE(slider.value(), value);
    QCOMPARE(spy.takeFirst().at(0).toInt(), number);
    QCOMPARE(spyID.takeFirst().at(1).toInt(), number);
}

void tst_KelSlider::nonsenseIsIgnored()
{
    const double nonsense = std::numeric_limits<double>::quiet_NaN();
    KelSlider slider;
    slider.setValue(5);
    slider.setValue(nonsense);
    slider.setMinimum(nonsense);
    slider.setMaximum(nonsense);
    slider.setPrecision(nonsense);
    slider.setPrecision(std::numeric_limits<double>::infinity());
    slider.setTitleSize(nonsense);

    QCOMPARE(slider.value(), 5.0);
    QCOMPARE(slider.minimum(), 0.0);
    QCOMPARE(slider.maximum(), 255.0);
    QCOMPARE(slider.precision(), 1.0);
    QCOMPARE(slider.titleSize(), 0.5);
}

void tst_KelSlider::setMinimum()
{
    KelSlider slider;
    QCOMPARE(announced(slider, [&slider] { slider.setMinimum(10.4); }).size(), 4);
    QCOMPARE(slider.minimum(), 10.0);
    QCOMPARE(slider.value(), 10.0);
    QCOMPARE(button(slider, "qt_pbMin")->text(), QStringLiteral("10"));
    QCOMPARE(button(slider, "qt_pbMax")->text(), QStringLiteral("255"));

    QCOMPARE(announced(slider, [&slider] { slider.setMinimum(-1234567.0); }).size(), 0);
    QCOMPARE(slider.value(), 10.0);
    QCOMPARE(button(slider, "qt_pbMin")->text(), QStringLiteral("-1.23457e+06"));
}

void tst_KelSlider::setMaximum()
{
    KelSlider slider;
    slider.setValue(200);
    QCOMPARE(announced(slider, [&slider] { slider.setMaximum(99.5); }).size(), 4);
    QCOMPARE(slider.maximum(), 100.0);
    QCOMPARE(slider.value(), 100.0);
    QCOMPARE(button(slider, "qt_pbMax")->text(), QStringLiteral("100"));

    QCOMPARE(announced(slider, [&slider] { slider.setMaximum(300); }).size(), 0);
    QCOMPARE(slider.value(), 100.0);
}

void tst_KelSlider::maximumWins()
{
    KelSlider slider;
    slider.setMinimum(300);

    QCOMPARE(slider.minimum(), 300.0);
    QCOMPARE(slider.maximum(), 255.0);
    QCOMPARE(slider.value(), 255.0);
}

void tst_KelSlider::boundsAreMultiples()
{
    KelSlider slider;
    slider.setMinimum(3);
    slider.setPrecision(10);

    QCOMPARE(slider.minimum(), 0.0);
    QCOMPARE(slider.maximum(), 260.0);
    slider.setMaximum(44.0);
    QCOMPARE(slider.maximum(), 40.0);
}

void tst_KelSlider::zeroButton()
{
    KelSlider slider;
    const KelButton *zero = button(slider, "qt_pbZero");
    slider.setMinimum(-10);
    QVERIFY(!zero->isHidden());
    slider.setMaximum(0);
    QVERIFY(zero->isHidden());
    slider.setMaximum(5);
    QVERIFY(!zero->isHidden());
    slider.setReadOnly(true);
    QVERIFY(zero->isHidden());
    slider.setMinimum(-20);
    QVERIFY(zero->isHidden());
    slider.setReadOnly(false);
    QVERIFY(!zero->isHidden());
    slider.setMinimum(0);
    QVERIFY(zero->isHidden());
    slider.setReadOnly(false);
    QVERIFY(zero->isHidden());
}

void tst_KelSlider::decimals_data()
{
    QTest::addColumn<double>("precision");
    QTest::addColumn<int>("digits");

    QTest::newRow("2") << 2.0 << 0;
    QTest::newRow("0.5") << 0.5 << 1;
    QTest::newRow("0.1") << 0.1 << 1;
    QTest::newRow("0.25") << 0.25 << 2;
    QTest::newRow("0.05") << 0.05 << 2;
    QTest::newRow("0.001") << 0.001 << 3;
    QTest::newRow("1.5") << 1.5 << 1;
    QTest::newRow("a third") << 1.0 / 3.0 << 8;
    QTest::newRow("a millionth") << 1e-6 << 0;
}

void tst_KelSlider::decimals()
{
    QFETCH(double, precision);
    QFETCH(int, digits);
    KelSlider slider;
    slider.setTitle(QStringLiteral("%v"));
    slider.setPrecision(precision);
    slider.setValue(100);

    const QString caption = static_cast<QGroupBox &>(slider).title();
    const int point = caption.indexOf(QLatin1Char('.'));
    QCOMPARE(point < 0 ? 0 : caption.size() - point - 1, digits);
}

void tst_KelSlider::setPrecision()
{
    KelSlider slider;
    slider.setValue(13);
    QCOMPARE(announced(slider, [&slider] { slider.setPrecision(5); }).size(), 4);
    QCOMPARE(slider.value(), 15.0);
    QCOMPARE(announced(slider, [&slider] { slider.setPrecision(0.25); }).size(), 0);

    QCOMPARE(button(slider, "qt_pbDec")->text(), QStringLiteral("-0.25"));
    QCOMPARE(button(slider, "qt_pbInc")->text(), QStringLiteral("+0.25"));
    slider.setPrecision(100);
    QCOMPARE(button(slider, "qt_pbMin")->text(), QStringLiteral("0"));
    QCOMPARE(button(slider, "qt_pbMax")->text(), QStringLiteral("300"));
}

void tst_KelSlider::precisionZeroAndSign()
{
    KelSlider slider;
    slider.setPrecision(0.0);
    QCOMPARE(slider.precision(), 1.0);
    QCOMPARE(button(slider, "qt_pbInc")->text(), QStringLiteral("+"));

    slider.setPrecision(-2);
    QCOMPARE(slider.precision(), 2.0);
    QCOMPARE(button(slider, "qt_pbDec")->text(), QStringLiteral("-2"));
    QCOMPARE(button(slider, "qt_pbInc")->text(), QStringLiteral("+2"));
}

void tst_KelSlider::precisionKeepsTheZeroFlag()
{
    KelSlider slider;
    slider.setMinimum(-3);
    slider.setPrecision(10); // the minimum becomes 0, and yet the range counts as crossing it

    QCOMPARE(slider.minimum(), 0.0);
    QVERIFY(!button(slider, "qt_pbZero")->isHidden());
    slider.setReadOnly(true);
    slider.setReadOnly(false);
    QVERIFY(!button(slider, "qt_pbZero")->isHidden());
}

void tst_KelSlider::newDecimalsShowWithTheNextValue()
{
    KelSlider slider;
    slider.setTitle(QStringLiteral("%v"));
    slider.setValue(3);
    slider.setPrecision(0.5);
    QCOMPARE(static_cast<QGroupBox &>(slider).title(), QStringLiteral("3"));
    slider.setValue(4);
    QCOMPARE(static_cast<QGroupBox &>(slider).title(), QStringLiteral("4.0"));
}

void tst_KelSlider::caption()
{
    KelSlider slider;
    slider.setPrecision(0.5);
    slider.setValue(12.5);
    slider.setTitle(QStringLiteral("T=%v %V %v"));

    QCOMPARE(static_cast<QGroupBox &>(slider).title(), QStringLiteral("T=12.5 %V 12.5"));
    QCOMPARE(slider.title(), QStringLiteral("T=%v %V %v"));
    slider.setValue(1);
    QCOMPARE(static_cast<QGroupBox &>(slider).title(), QStringLiteral("T=1.0 %V 1.0"));
}

void tst_KelSlider::titleIsAnnounced()
{
    KelSlider slider;
    slider.setValue(5);
    const QStringList all{"double 5", "int 5", "-1 double 5", "-1 int 5"};

    QCOMPARE(announced(slider, [&slider] { slider.setTitle(QStringLiteral("t")); }), all);
    QCOMPARE(announced(slider, [&slider] { slider.setTitle(QStringLiteral("t")); }), all);
    QCOMPARE(announced(slider, [&slider] { slider.setTitleInsideBar(false); }), all);
    QCOMPARE(announced(slider, [&slider] { slider.setBarStyle(KelSlider::MaxToValue); }), QStringList());
    QCOMPARE(announced(slider, [&slider] { slider.setTitleSize(0.1); }), QStringList());
}

void tst_KelSlider::titleInsideBar()
{
    KelSlider slider;
    slider.setTitle(QStringLiteral("T=%v"));
    slider.setTitleInsideBar(true);
    QVERIFY(static_cast<QGroupBox &>(slider).title().isEmpty());
    slider.setValue(3);
    QVERIFY(static_cast<QGroupBox &>(slider).title().isEmpty());
    slider.setTitleInsideBar(false);
    QCOMPARE(static_cast<QGroupBox &>(slider).title(), QStringLiteral("T=3"));
}

void tst_KelSlider::numbered_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QVariant>("argument");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("result");

    QTest::newRow("value, double") << QByteArray("setValueID") << QVariant(7.0) << QByteArray("value") << QVariant(7.0);
    QTest::newRow("value, int") << QByteArray("setValueID") << QVariant(8) << QByteArray("value") << QVariant(8.0);
    QTest::newRow("minimum, double") << QByteArray("setMinimumID") << QVariant(-7.0) << QByteArray("minimum")
                                     << QVariant(-7.0);
    QTest::newRow("minimum, int") << QByteArray("setMinimumID") << QVariant(-8) << QByteArray("minimum")
                                  << QVariant(-8.0);
    QTest::newRow("maximum, double") << QByteArray("setMaximumID") << QVariant(70.0) << QByteArray("maximum")
                                     << QVariant(70.0);
    QTest::newRow("maximum, int") << QByteArray("setMaximumID") << QVariant(80) << QByteArray("maximum")
                                  << QVariant(80.0);
    QTest::newRow("read-only") << QByteArray("setReadOnlyID") << QVariant(true) << QByteArray("readOnly")
                               << QVariant(true);
    QTest::newRow("Min and Max") << QByteArray("setShowMinMaxID") << QVariant(false) << QByteArray("showMinMax")
                                 << QVariant(false);
    QTest::newRow("disable") << QByteArray("disableID") << QVariant() << QByteArray("enabled") << QVariant(false);
    QTest::newRow("enable") << QByteArray("enableID") << QVariant() << QByteArray("enabled") << QVariant(true);
}

void tst_KelSlider::numbered()
{
    QFETCH(QByteArray, slot);
    QFETCH(QVariant, argument);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, result);
    KelSlider slider;
    slider.setSetID(4);
    slider.setClickID(5);
    slider.setEnabled(result != QVariant(true) || property != "enabled");
    const QVariant before = slider.property(property.constData());
    QVERIFY(before != result);
    const auto call = [&](int id) {
        const QGenericArgument value =
            argument.isValid() ? QGenericArgument(argument.typeName(), argument.constData()) : QGenericArgument();
        QVERIFY(QMetaObject::invokeMethod(&slider, slot.constData(), Q_ARG(int, id), value));
    };

    for (int id : {-1, 0, 5, 3}) {
        QCOMPARE(announced(slider, [&] { call(id); }).size(), 0);
        QCOMPARE(slider.property(property.constData()), before);
    }
    call(4);
    QCOMPARE(slider.property(property.constData()), result);
    QVERIFY(slider.metaObject()->indexOfMethod("setShowDecIncID(int,bool)") < 0);
}

void tst_KelSlider::intOverloads()
{
    KelSlider slider;
    slider.setPrecision(5);
    slider.setMinimum(-12);
    slider.setMaximum(12);
    slider.setValue(4);

    QCOMPARE(slider.minimum(), -10.0);
    QCOMPARE(slider.maximum(), 10.0);
    QCOMPARE(slider.value(), 5.0);
}

void tst_KelSlider::enableAndDisable()
{
    KelSlider slider;
    slider.disable();
    QVERIFY(!slider.isEnabled());
    slider.enable();
    QVERIFY(slider.isEnabled());
}

void tst_KelSlider::spacingAndButtonSize()
{
    KelSlider slider;
    slider.setSpacing(11);
    slider.setMinimumButtonSize(QSize(30, 20));

    QCOMPARE(slider.layout()->spacing(), 11);
    QCOMPARE(slider.spacing(), 11);
    QCOMPARE(slider.minimumButtonSize(), QSize(30, 20));
    for (const char *name : ButtonNames)
        QCOMPARE(button(slider, name)->minimumSize(), QSize(30, 20));
}

KEL_TEST_MAIN(tst_KelSlider)
#include "tst_kelslider.moc"
