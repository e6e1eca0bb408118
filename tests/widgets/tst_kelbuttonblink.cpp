#include "buttonlog.h"
#include "testmain.h"

#include <QElapsedTimer>

/// Blinks and the other timers of the button.
class tst_KelButtonBlink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flashesAfterTheDelayAndFadesBack();
    void colours_data();
    void colours();
    void secondBlinkRestartsTheDelay();
    void onlyTheLastColourFlashes();
    void everyTimerEnds();
    void fadesToTheStateOfThatMoment();
    void unusualDelays_data();
    void unusualDelays();
    void timersOfTheBaseClassStillRun();
};

// A coarse timer may be early by a twentieth of its interval, and a clock by a millisecond.
static qint64 earliest(int intervalMs)
{
    return intervalMs - intervalMs / 20 - 1;
}

static QString face(const QColor &color)
{
    return QStringLiteral("face ") + color.name();
}

void tst_KelButtonBlink::flashesAfterTheDelayAndFadesBack()
{
    KelButton button;
    button.setBlinkDelay(200);
    button.setAnimationDuration(60000);
    const auto *animation = button.findChild<QPropertyAnimation *>();
    ButtonLog log(&button);
    QElapsedTimer clock;
    clock.start();
    button.blinkYes();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(animation->state(), QAbstractAnimation::Stopped);

    QTRY_COMPARE(animation->state(), QAbstractAnimation::Running);
    QVERIFY2(clock.elapsed() >= earliest(200), qPrintable(QString::number(clock.elapsed())));
    const QStringList lines = log.take();
    QCOMPARE(lines.value(0), face(Qt::green));
    for (const QString &line : lines)
        QVERIFY2(line.startsWith(QLatin1String("face")), qPrintable(line));
    QCOMPARE(animation->startValue().value<QColor>(), QColor(Qt::green));
    QCOMPARE(animation->endValue().value<QColor>(), button.grayColor());
    QCOMPARE(animation->duration(), 60000);
    QCOMPARE(button.state(), KelButton::Gray);
}

void tst_KelButtonBlink::colours_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QVariant>("argument");
    QTest::addColumn<QColor>("color");

    const QColor yes(1, 200, 3);
    const QColor no(200, 2, 3);
    QTest::newRow("yes") << QByteArray("blinkYes") << QVariant() << yes;
    QTest::newRow("no") << QByteArray("blinkNo") << QVariant() << no;
    QTest::newRow("yes or no: yes") << QByteArray("blinkYesOrNo") << QVariant(true) << yes;
    QTest::newRow("yes or no: no") << QByteArray("blinkYesOrNo") << QVariant(false) << no;
    QTest::newRow("no or yes: no") << QByteArray("blinkNoOrYes") << QVariant(true) << no;
    QTest::newRow("no or yes: yes") << QByteArray("blinkNoOrYes") << QVariant(false) << yes;
}

void tst_KelButtonBlink::colours()
{
    QFETCH(QByteArray, slot);
    QFETCH(QVariant, argument);
    QFETCH(QColor, color);

    KelButton button;
    button.setAnimated(false);
    button.setBlinkDelay(1);
    button.setYesColor(QColor(1, 200, 3));
    button.setNoColor(QColor(200, 2, 3));
    ButtonLog log(&button);
    if (argument.isValid())
        QVERIFY(QMetaObject::invokeMethod(&button, slot.constData(), Q_ARG(bool, argument.toBool())));
    else
        QVERIFY(QMetaObject::invokeMethod(&button, slot.constData()));
    QStringList lines;
    QTRY_VERIFY(!(lines << log.take()).isEmpty());
    QCOMPARE(lines, QStringList({face(color), face(button.grayColor())}));
}

void tst_KelButtonBlink::secondBlinkRestartsTheDelay()
{
    KelButton button;
    button.setAnimated(false);
    ButtonLog log(&button);
    button.blinkYes();
    QTest::qWait(400);
    QCOMPARE(button.blinkDelay(), 500);

    log.take(); // A slow machine may have slept through the first delay.
    QElapsedTimer clock;
    clock.start();
    button.blinkYes();
    QStringList lines;
    QTRY_VERIFY(!(lines << log.take()).isEmpty());
    QVERIFY2(clock.elapsed() >= earliest(500), qPrintable(QString::number(clock.elapsed())));
    QTest::qWait(200);
    lines << log.take();
    QCOMPARE(lines, QStringList({face(Qt::green), face(button.grayColor())}));
}

void tst_KelButtonBlink::onlyTheLastColourFlashes()
{
    KelButton button;
    button.setAnimated(false);
    button.setBlinkDelay(50);
    ButtonLog log(&button);
    for (int i = 0; i < 5; ++i)
        button.blinkNo();
    button.blink(Qt::blue);
    QStringList lines;
    QTRY_VERIFY(!(lines << log.take()).isEmpty());
    QTest::qWait(150); // Timers that were not replaced would flash once more.
    lines << log.take();
    QCOMPARE(lines, QStringList({face(Qt::blue), face(button.grayColor())}));
}

class TimerCounter : public QObject
{
public:
    int events = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Timer)
            ++events;
        return false;
    }
};

void tst_KelButtonBlink::everyTimerEnds()
{
    KelButton button;
    TimerCounter counter;
    button.installEventFilter(&counter);
    button.setBlinkDelay(10);
    for (int i = 0; i < 3; ++i)
        button.blinkNo();
    QTRY_COMPARE(counter.events, 1);
    QTest::qWait(60); // A timer that was left running would expire again and again.
    QCOMPARE(counter.events, 1);
}

void tst_KelButtonBlink::fadesToTheStateOfThatMoment()
{
    KelButton button;
    button.setAnimated(false);
    button.setBlinkDelay(20);
    ButtonLog log(&button);
    button.blinkYes();
    button.setStateNo();
    log.take();
    QStringList lines;
    QTRY_VERIFY(!(lines << log.take()).isEmpty());
    QCOMPARE(lines, QStringList({face(Qt::green), face(Qt::red)}));
    QCOMPARE(button.state(), KelButton::No);
}

void tst_KelButtonBlink::unusualDelays_data()
{
    QTest::addColumn<int>("delay");
    QTest::newRow("none") << 0;
    QTest::newRow("negative counts as none") << -20;
}

void tst_KelButtonBlink::unusualDelays()
{
    QFETCH(int, delay);
    KelButton button;
    button.setAnimated(false);
    button.setBlinkDelay(delay);
    QCOMPARE(button.blinkDelay(), delay);
    ButtonLog log(&button);
    button.blinkYes();
    QCOMPARE(log.take(), QStringList());
    QStringList lines;
    QTRY_VERIFY(!(lines << log.take()).isEmpty());
    QCOMPARE(lines, QStringList({face(Qt::green), face(button.grayColor())}));
}

void tst_KelButtonBlink::timersOfTheBaseClassStillRun()
{
    KelButton button;
    button.setAutoRepeat(true);
    button.setAutoRepeatDelay(1);
    button.setAutoRepeatInterval(1);
    ButtonLog log(&button);
    QTest::mousePress(&button, Qt::LeftButton);
    QStringList lines;
    QTRY_VERIFY((lines << log.take()).count(QStringLiteral("clickedID -1")) >= 2);
    // Repeated clicks are no presses of the mouse.
    QCOMPARE(lines.count(QStringLiteral("pressedID -1")), 1);
    QCOMPARE(lines.count(QStringLiteral("releasedID -1")), 0);
    QTest::mouseRelease(&button, Qt::LeftButton);
}

KEL_TEST_MAIN(tst_KelButtonBlink)
#include "tst_kelbuttonblink.moc"
