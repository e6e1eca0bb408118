#include "buttonbench.h"
#include "buttonlog.h"
#include "testmain.h"

/// Colours of the face: how they are stored, animated and put into the palette.
class tst_KelButtonColor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void animationRun_data();
    void animationRun();
    void animationStartsFromTheColourShown();
    void notAnimatedIsAtOnce();
    void switchingAnimationOffEndsIt();
    void currentColorEndsTheAnimation();
    void curve();
    void faceIsInEveryColourGroup();
    void otherRolesFollowTheWidget();
    void faceSurvivesAnotherPalette();
    void grayIsOfTheCurrentGroup();
    void colourSettersStoreOnly_data();
    void colourSettersStoreOnly();
    void setColorKeepsTheState();
};

void tst_KelButtonColor::animationRun_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<int>("durationMs");
    QTest::addColumn<QColor>("end");

    const auto row = [](const char *name, int durationMs, const QColor &end, Action action) {
        QTest::newRow(name) << action << durationMs << end;
    };
    row("state", 300, Qt::green, [](KelButton &b) { b.setStateYes(); });
    row("colour", 300, Blue, [](KelButton &b) { b.setColor(Blue); });
    row("fast", 300, Blue, [](KelButton &b) { b.animateColor(Blue, false); });
    row("slow", 1000, Blue, [](KelButton &b) { b.animateColor(Blue, true); });
    row("press", 300, Qt::yellow, [](KelButton &b) { QTest::mousePress(&b, Qt::LeftButton); });
    row("fast duration", 1234, Blue, [](KelButton &b) {
        b.setAnimationDuration(1234);
        b.animateColor(Blue, false);
    });
    row("slow duration", 2345, Blue, [](KelButton &b) {
        b.setReleaseDuration(2345);
        b.animateColor(Blue, true);
    });
}

void tst_KelButtonColor::animationRun()
{
    QFETCH(Action, action);
    QFETCH(int, durationMs);
    QFETCH(QColor, end);

    KelButton button;
    const QColor before = faceOf(button);
    action(button);
    const auto *animation = animationOf(button);
    QCOMPARE(animation->state(), QAbstractAnimation::Running);
    QCOMPARE(animation->duration(), durationMs);
    QCOMPARE(animation->startValue().value<QColor>(), before);
    QCOMPARE(animation->endValue().value<QColor>(), end);
    QTRY_COMPARE(faceOf(button), end);
}

void tst_KelButtonColor::animationStartsFromTheColourShown()
{
    KelButton button;
    button.setCurrentColor(Qt::black);
    button.setAnimationDuration(60000);
    button.setColor(Qt::white);
    animationOf(button)->setCurrentTime(20000);
    const QColor shown = faceOf(button);
    QVERIFY(shown != Qt::black && shown != Qt::white);

    button.setColor(Qt::red);
    QCOMPARE(faceOf(button), shown);
    QCOMPARE(animationOf(button)->startValue().value<QColor>(), shown);
    QCOMPARE(animationOf(button)->currentTime(), 0);
}

void tst_KelButtonColor::notAnimatedIsAtOnce()
{
    KelButton button;
    button.setAnimated(false);
    button.setStateYes();
    QCOMPARE(faceOf(button), QColor(Qt::green));
    button.animateColor(Blue, true);
    QCOMPARE(faceOf(button), Blue);
    QCOMPARE(animationOf(button)->state(), QAbstractAnimation::Stopped);
}

void tst_KelButtonColor::switchingAnimationOffEndsIt()
{
    KelButton button;
    button.setStateYes();
    QCOMPARE(animationOf(button)->state(), QAbstractAnimation::Running);
    button.setAnimated(true);
    QCOMPARE(animationOf(button)->state(), QAbstractAnimation::Running);
    button.setAnimated(false);
    QCOMPARE(animationOf(button)->state(), QAbstractAnimation::Stopped);
}

void tst_KelButtonColor::currentColorEndsTheAnimation()
{
    KelButton button;
    button.setStateYes();
    button.setCurrentColor(Blue);
    QCOMPARE(animationOf(button)->state(), QAbstractAnimation::Stopped);
    QCOMPARE(faceOf(button), Blue);
    QCOMPARE(button.palette().color(QPalette::Button), Blue);
}

void tst_KelButtonColor::curve()
{
    KelButton button;
    button.setAnimationCurve(QEasingCurve::InBack);
    QCOMPARE(button.animationCurve(), QEasingCurve::InBack);
    QCOMPARE(animationOf(button)->easingCurve().type(), QEasingCurve::InBack);
    button.setAnimationCurve(static_cast<QEasingCurve::Type>(60));
    button.setAnimationCurve(QEasingCurve::Custom);
    QCOMPARE(button.animationCurve(), QEasingCurve::InBack);
}

static const QPalette::ColorGroup Groups[] = {QPalette::Active, QPalette::Inactive, QPalette::Disabled};

void tst_KelButtonColor::faceIsInEveryColourGroup()
{
    KelButton button;
    for (const auto group : Groups)
        QCOMPARE(button.palette().color(group, QPalette::Button), button.grayColor());
    button.setCurrentColor(Blue);
    for (const auto group : Groups)
        QCOMPARE(button.palette().color(group, QPalette::Button), Blue);
    button.setAnimated(false);
    button.setStateNo();
    for (const auto group : Groups)
        QCOMPARE(button.palette().color(group, QPalette::Button), QColor(Qt::red));
    button.setProperty("h__currentColor", Grayish);
    for (const auto group : Groups)
        QCOMPARE(button.palette().color(group, QPalette::Button), Grayish);
}

void tst_KelButtonColor::otherRolesFollowTheWidget()
{
    QWidget parent;
    KelButton button(&parent);
    button.setAnimated(false);
    button.setStateYes();

    QPalette palette = parent.palette();
    palette.setColor(QPalette::ButtonText, Blue);
    parent.setPalette(palette);
    QCOMPARE(button.palette().color(QPalette::ButtonText), Blue);
    QCOMPARE(button.palette().color(QPalette::Button), QColor(Qt::green));

    button.setStateNo();
    QCOMPARE(button.palette().color(QPalette::ButtonText), Blue);

    // A colour that was inherited once does not stick to the button.
    palette.setColor(QPalette::ButtonText, Grayish);
    parent.setPalette(palette);
    button.setStateYes();
    QCOMPARE(button.palette().color(QPalette::ButtonText), Grayish);
}

void tst_KelButtonColor::faceSurvivesAnotherPalette()
{
    KelButton button;
    button.setAnimated(false);
    button.setStateYes();

    QPalette other;
    other.setColor(QPalette::Button, Blue);
    other.setColor(QPalette::ButtonText, Grayish);
    button.setPalette(other);
    for (const auto group : Groups) {
        QCOMPARE(button.palette().color(group, QPalette::Button), QColor(Qt::green));
        QCOMPARE(button.palette().color(group, QPalette::ButtonText), Grayish);
    }
    QCOMPARE(faceOf(button), QColor(Qt::green));

    button.setStateNo();
    QCOMPARE(button.palette().color(QPalette::ButtonText), Grayish);
    QCOMPARE(button.palette().color(QPalette::Button), QColor(Qt::red));
}

void tst_KelButtonColor::grayIsOfTheCurrentGroup()
{
    QWidget parent;
    QPalette palette;
    palette.setColor(QPalette::Active, QPalette::Button, Qt::cyan);
    palette.setColor(QPalette::Inactive, QPalette::Button, Qt::cyan);
    palette.setColor(QPalette::Disabled, QPalette::Button, Blue);
    parent.setPalette(palette);

    const KelButton enabled(&parent);
    QCOMPARE(enabled.grayColor(), QColor(Qt::cyan));
    parent.setEnabled(false);
    const KelButton disabled(&parent);
    QCOMPARE(disabled.grayColor(), Blue);
    QCOMPARE(disabled.upColor(), Blue);
    QCOMPARE(faceOf(disabled), Blue);
    for (const auto group : Groups)
        QCOMPARE(disabled.palette().color(group, QPalette::Button), Blue);
}

void tst_KelButtonColor::colourSettersStoreOnly_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("downColor") << 0;
    QTest::newRow("upColor") << 0;
    QTest::newRow("grayColor") << 0;
    QTest::newRow("yesColor") << 1;
    QTest::newRow("noColor") << 2;
}

void tst_KelButtonColor::colourSettersStoreOnly()
{
    QFETCH(int, state);
    const QByteArray name = QTest::currentDataTag();
    const auto target = static_cast<KelButton::State>(state);

    KelButton button;
    prepare(button);
    button.setState(target);
    ButtonLog log(&button);
    const QByteArray setter = "set" + name.left(1).toUpper() + name.mid(1);
    QVERIFY(QMetaObject::invokeMethod(&button, setter.constData(), Q_ARG(QColor, Blue)));
    QCOMPARE(button.property(name.constData()).value<QColor>(), Blue);
    QCOMPARE(log.take(), QStringList());

    button.setState(target);
    const bool isFaceOfAState = name != "downColor" && name != "upColor";
    QCOMPARE(faceOf(button) == Blue, isFaceOfAState);
}

void tst_KelButtonColor::setColorKeepsTheState()
{
    KelButton button;
    prepare(button);
    button.setStateYes();
    ButtonLog log(&button);
    button.setColor(Blue);
    QCOMPARE(log.take(), QStringList(QStringLiteral("face #0000ff")));
    QCOMPARE(button.state(), KelButton::Yes);

    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(faceOf(button), Blue);
    button.setState(KelButton::Yes);
    QCOMPARE(faceOf(button), QColor(Qt::green));
}

KEL_TEST_MAIN(tst_KelButtonColor)
#include "tst_kelbuttoncolor.moc"
