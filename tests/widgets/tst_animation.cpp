#include "testmain.h"

#include <animation.h>

class Shown : public QObject
{
    Q_OBJECT
    Q_PROPERTY(float level MEMBER level)

public:
    float level = 0.0f;
};

class tst_Animation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsFromTheValueShown();
    void restartDoesNotJump();
    void targetTakesThePropertysType();
    void durationIsKeptOrGiven();
    void negativeDurationIsAtOnce();
};

void tst_Animation::startsFromTheValueShown()
{
    Shown shown;
    shown.level = 0.25f;
    QPropertyAnimation animation(&shown, "level");
    animateTo(animation, 1.0f, 60000);

    QCOMPARE(animation.state(), QAbstractAnimation::Running);
    QCOMPARE(animation.startValue().toFloat(), 0.25f);
    QCOMPARE(animation.endValue().toFloat(), 1.0f);
    QCOMPARE(shown.level, 0.25f);
}

void tst_Animation::restartDoesNotJump()
{
    Shown shown;
    QPropertyAnimation animation(&shown, "level");
    animateTo(animation, 1.0f, 1000);
    animation.setCurrentTime(500);
    QCOMPARE(shown.level, 0.5f);

    animateTo(animation, 0.0f, 60000);
    QCOMPARE(shown.level, 0.5f);
    QCOMPARE(animation.startValue().toFloat(), 0.5f);
    QCOMPARE(animation.endValue().toFloat(), 0.0f);
    QCOMPARE(animation.currentTime(), 0);
}

void tst_Animation::targetTakesThePropertysType()
{
    Shown shown;
    QPropertyAnimation animation(&shown, "level");
    animateTo(animation, 2, 1000); // An int: without conversion nothing would move between the ends.
    animation.setCurrentTime(500);
    QCOMPARE(shown.level, 1.0f);
}

void tst_Animation::durationIsKeptOrGiven()
{
    Shown shown;
    QPropertyAnimation animation(&shown, "level");
    animation.setDuration(1234);
    animateTo(animation, 1.0f);
    QCOMPARE(animation.duration(), 1234);
    animateTo(animation, 1.0f, 77);
    QCOMPARE(animation.duration(), 77);
}

void tst_Animation::negativeDurationIsAtOnce()
{
    Shown shown;
    QPropertyAnimation animation(&shown, "level");
    animateTo(animation, 1.0f, -5);
    QCOMPARE(shown.level, 1.0f);
    QCOMPARE(animation.state(), QAbstractAnimation::Stopped);
}

KEL_TEST_MAIN(tst_Animation)
#include "tst_animation.moc"
