#include "sliderbench.h"
#include "testmain.h"

#include <QSignalSpy>

/// The slider's buttons: when they are seen and what they do.
class tst_KelSliderButtons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readOnly();
    void readOnlyBeatsShowDecInc();
    void showMinMax();
    void showDecInc();

    void buttons_data();
    void buttons();
    void clickSlots();
    void stepButtonsRepeat();
    void readOnlyIgnoresButtons();
};

void tst_KelSliderButtons::readOnly()
{
    KelSlider slider;
    slider.setReadOnly(true);
    QVERIFY(slider.readOnly());
    QVERIFY(button(slider, "qt_pbDec")->isHidden());
    QVERIFY(button(slider, "qt_pbInc")->isHidden());
    QVERIFY(!button(slider, "qt_pbMin")->isHidden());
    QVERIFY(!button(slider, "qt_pbMax")->isHidden());

    slider.setValue(9); // the program may
    QCOMPARE(slider.value(), 9.0);
}

void tst_KelSliderButtons::readOnlyBeatsShowDecInc()
{
    KelSlider slider;
    slider.setShowDecInc(false);
    slider.setReadOnly(false);

    QVERIFY(!slider.showDecInc());
    QVERIFY(!button(slider, "qt_pbDec")->isHidden());
    QVERIFY(!button(slider, "qt_pbInc")->isHidden());
}

void tst_KelSliderButtons::showMinMax()
{
    KelSlider slider;
    slider.setShowMinMax(false);
    QVERIFY(!slider.showMinMax());
    QVERIFY(button(slider, "qt_pbMin")->isHidden());
    QVERIFY(button(slider, "qt_pbMax")->isHidden());
    QVERIFY(!button(slider, "qt_pbInc")->isHidden());
    slider.setShowMinMax(true);
    QVERIFY(!button(slider, "qt_pbMin")->isHidden());
}

void tst_KelSliderButtons::showDecInc()
{
    KelSlider slider;
    slider.setShowDecInc(false);
    QVERIFY(button(slider, "qt_pbDec")->isHidden());
    QVERIFY(button(slider, "qt_pbInc")->isHidden());
    slider.setReadOnly(true);
    slider.setShowDecInc(true);
    QVERIFY(!button(slider, "qt_pbDec")->isHidden());
}

void tst_KelSliderButtons::buttons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("value");

    QTest::newRow("min") << QStringLiteral("qt_pbMin") << -20.0;
    QTest::newRow("max") << QStringLiteral("qt_pbMax") << 254.0;
    QTest::newRow("dec") << QStringLiteral("qt_pbDec") << 8.0;
    QTest::newRow("zero") << QStringLiteral("qt_pbZero") << 0.0;
    QTest::newRow("inc") << QStringLiteral("qt_pbInc") << 12.0;
}

void tst_KelSliderButtons::buttons()
{
    QFETCH(QString, name);
    QFETCH(double, value);
    KelSlider slider;
    slider.setMinimum(-20);
    slider.setPrecision(2);
    slider.setMaximum(254);
    slider.setValue(10);
    slider.resize(600, 80);
    slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&slider));
    QSignalSpy spy(&slider, QOverload<double>::of(&KelSlider::valueChanged));

    QTest::mouseClick(button(slider, name.toLatin1().constData()), Qt::LeftButton);
    QCOMPARE(slider.value(), value);
    QCOMPARE(spy.count(), 1);
}

void tst_KelSliderButtons::clickSlots()
{
    KelSlider slider;
    slider.setMinimum(-20);
    slider.setPrecision(2);
    slider.setReadOnly(true); // the program may still

    slider.clickMax();
    QCOMPARE(slider.value(), 256.0);
    slider.clickInc();
    QCOMPARE(slider.value(), 256.0);
    slider.clickDec();
    QCOMPARE(slider.value(), 254.0);
    slider.clickMin();
    QCOMPARE(slider.value(), -20.0);
    slider.clickInc();
    QCOMPARE(slider.value(), -18.0);
    slider.clickZero();
    QCOMPARE(slider.value(), 0.0);
}

void tst_KelSliderButtons::stepButtonsRepeat()
{
    KelSlider slider;
    button(slider, "qt_pbInc")->setAutoRepeatDelay(1);
    button(slider, "qt_pbInc")->setAutoRepeatInterval(1);
    slider.resize(600, 80);
    slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&slider));

    QTest::mousePress(button(slider, "qt_pbInc"), Qt::LeftButton);
    QTRY_VERIFY(slider.value() >= 3.0);
    QTest::mouseRelease(button(slider, "qt_pbInc"), Qt::LeftButton);
}

void tst_KelSliderButtons::readOnlyIgnoresButtons()
{
    KelSlider slider;
    slider.setMinimum(-20);
    slider.setValue(10);
    slider.setReadOnly(true);
    for (const char *name : ButtonNames) {
        button(slider, name)->click();
        QCOMPARE(slider.value(), 10.0);
    }
}

KEL_TEST_MAIN(tst_KelSliderButtons)
#include "tst_kelsliderbuttons.moc"
