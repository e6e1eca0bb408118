#include "testmain.h"

#include <QElapsedTimer>
#include <QMetaMethod>
#include <QPainter>
#include <functional>
#include <qtimerwidget.h>

using Action = std::function<void(QTimerWidget &)>;
Q_DECLARE_METATYPE(Action)

class tst_QTimerWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void defaults();
    void ticksInOrder();
    void periodIsNeverShort();
    void oneShotTicksOnce();
    void enabledState_data();
    void enabledState();
    void silentOneShotStopsToo();
    void newIntervalWaitsForAStart();
    void startCountsFromNow();
    void startMakesItPeriodicAgain();
    void stops();
    void startInsideAOneShotTickSurvives();
    void startOnceInsideAOneShotTickIsEnded();
    void negativeIntervalStartsNothing();
    void otherTimersArePassedOn();
    void handlerMayDeleteTheTimer_data();
    void handlerMayDeleteTheTimer();
    void numberedSlots_data();
    void numberedSlots();
    void hidesWhenShown();
    void showEventIsIgnored_data();
    void showEventIsIgnored();
    void paintsTheImage_data();
    void paintsTheImage();
};

/// A timer widget that lets the test see its timers and sends it the expiry of one.
class Timer : public QTimerWidget
{
public:
    Timer()
    {
        connect(this, &QTimerWidget::tick, this, [this] { lines << QStringLiteral("tick"); });
        connect(this, &QTimerWidget::tickID, this, [this](int id) { lines << QStringLiteral("tickID %1").arg(id); });
    }

    QStringList lines;
};

static QStringList pair(int id = -1)
{
    return {QStringLiteral("tick"), QStringLiteral("tickID %1").arg(id)};
}

// A coarse timer may be early by a twentieth of its interval, and a clock by a millisecond.
static qint64 earliest(int intervalMs)
{
    return intervalMs - intervalMs / 20 - 1;
}

void tst_QTimerWidget::metaObject()
{
    const QMetaObject &meta = QTimerWidget::staticMetaObject;
    QStringList lines;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.access(), QMetaMethod::Public);
        lines << QString::fromLatin1(method.methodSignature() + ' ' + method.parameterNames().join(','));
    }
    const QStringList expected = {
        QStringLiteral("tick() "),
        QStringLiteral("tickID(int) id"),
        QStringLiteral("enable() "),
        QStringLiteral("disable() "),
        QStringLiteral("setEnabled(bool) on"),
        QStringLiteral("setDisabled(bool) off"),
        QStringLiteral("setEmitID(int) id"),
        QStringLiteral("setSetID(int) id"),
        QStringLiteral("setInterval(int) msecs"),
        QStringLiteral("start() "),
        QStringLiteral("startOnce() "),
        QStringLiteral("stop() "),
        QStringLiteral("enableID(int) set_id"),
        QStringLiteral("disableID(int) set_id"),
        QStringLiteral("setEnabledID(int,bool) set_id,on"),
        QStringLiteral("setDisabledID(int,bool) set_id,off"),
        QStringLiteral("setIntervalID(int,int) set_id,msecs"),
        QStringLiteral("startID(int) set_id"),
        QStringLiteral("startOnceID(int) set_id"),
        QStringLiteral("stopID(int) set_id"),
    };
    QCOMPARE(lines, expected);
    QStringList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        properties << QString::fromLatin1(meta.property(i).name());
    QCOMPARE(properties, QStringList({QStringLiteral("emitID"), QStringLiteral("setID"), QStringLiteral("interval")}));
}

void tst_QTimerWidget::defaults()
{
    QTimerWidget timer;
    QCOMPARE(timer.property("emitID").toInt(), -1);
    QCOMPARE(timer.property("setID").toInt(), -1);
    QCOMPARE(timer.property("interval").toInt(), 1000);
    QVERIFY(timer.image.isNull());
    QCOMPARE(timer.visibleAtRunTime, false);
    QCOMPARE(timer.sizeHint(), QSize(32, 32));

    for (const char *name : {"emitID", "setID", "interval"}) {
        QVERIFY(timer.setProperty(name, 77));
        QCOMPARE(timer.property(name).toInt(), 77);
    }
}

void tst_QTimerWidget::ticksInOrder()
{
    Timer timer;
    timer.setInterval(1);
    timer.setEmitID(12);
    timer.start();
    QCOMPARE(timer.lines, QStringList());
    QTRY_VERIFY(timer.lines.size() >= 4);
    QCOMPARE(timer.lines.mid(0, 4), pair(12) + pair(12));
}

void tst_QTimerWidget::periodIsNeverShort()
{
    Timer timer;
    timer.setInterval(100);
    QElapsedTimer clock;
    clock.start();
    timer.start();
    QTRY_VERIFY(timer.lines.size() >= 2 * 3);
    QVERIFY2(clock.elapsed() >= 3 * earliest(100), qPrintable(QString::number(clock.elapsed())));
}

void tst_QTimerWidget::oneShotTicksOnce()
{
    Timer timer;
    timer.setInterval(1);
    timer.startOnce();
    QTRY_COMPARE(timer.lines, pair());
    QTest::qWait(30);
    QCOMPARE(timer.lines, pair());
}

void tst_QTimerWidget::enabledState_data()
{
    QTest::addColumn<Action>("silence");
    QTest::addColumn<Action>("speak");
    const auto row = [](const char *name, Action silence, Action speak) { QTest::newRow(name) << silence << speak; };
    row(
        "disable, enable", [](QTimerWidget &t) { t.disable(); }, [](QTimerWidget &t) { t.enable(); });
    row(
        "setEnabled", [](QTimerWidget &t) { t.setEnabled(false); }, [](QTimerWidget &t) { t.setEnabled(true); });
    row(
        "setDisabled", [](QTimerWidget &t) { t.setDisabled(true); }, [](QTimerWidget &t) { t.setDisabled(false); });
    row(
        "setEnabled by name", [](QTimerWidget &t) { QMetaObject::invokeMethod(&t, "setEnabled", Q_ARG(bool, false)); },
        [](QTimerWidget &t) { QMetaObject::invokeMethod(&t, "setEnabled", Q_ARG(bool, true)); });
}

void tst_QTimerWidget::enabledState()
{
    QFETCH(Action, silence);
    QFETCH(Action, speak);

    Timer timer;
    timer.setInterval(1);
    timer.start();
    silence(timer);
    QTest::qWait(20);
    QCOMPARE(timer.lines, QStringList());
    QVERIFY(timer.isEnabled());
    speak(timer); // The timer kept running: nobody starts it again.
    QTRY_VERIFY(timer.lines.size() >= 2);

    timer.QWidget::setEnabled(false);
    timer.lines.clear();
    QTRY_VERIFY(timer.lines.size() >= 2);
}

void tst_QTimerWidget::silentOneShotStopsToo()
{
    Timer timer;
    timer.setInterval(1);
    timer.disable();
    timer.startOnce();
    Timer witness; // Ticks after the silent one's only time has come, however slow the machine is.
    witness.setInterval(5);
    witness.start();
    QTRY_VERIFY(witness.lines.size() >= 2);
    timer.enable();
    witness.lines.clear();
    QTRY_VERIFY(witness.lines.size() >= 4);
    QCOMPARE(timer.lines, QStringList());
}

void tst_QTimerWidget::newIntervalWaitsForAStart()
{
    Timer timer;
    timer.setInterval(60000);
    timer.start();
    timer.setInterval(1);
    QTest::qWait(30);
    QCOMPARE(timer.lines, QStringList());
    timer.start();
    QTRY_VERIFY(timer.lines.size() >= 2);
}

void tst_QTimerWidget::startCountsFromNow()
{
    Timer timer;
    timer.setInterval(200);
    timer.start();
    QTest::qWait(100);
    timer.lines.clear();
    QElapsedTimer clock;
    clock.start();
    timer.start();
    QTRY_VERIFY(!timer.lines.isEmpty());
    QVERIFY2(clock.elapsed() >= earliest(200), qPrintable(QString::number(clock.elapsed())));
}

void tst_QTimerWidget::startMakesItPeriodicAgain()
{
    Timer timer;
    timer.setInterval(1);
    timer.startOnce();
    timer.start();
    QTRY_VERIFY(timer.lines.size() >= 4);
}

void tst_QTimerWidget::stops()
{
    Timer timer;
    timer.setInterval(1);
    timer.stop(); // Nothing runs; nothing to kill, no warning.
    timer.start();
    timer.stop();
    timer.stop();
    QTest::qWait(30);
    QCOMPARE(timer.lines, QStringList());
}

void tst_QTimerWidget::startInsideAOneShotTickSurvives()
{
    Timer timer;
    timer.setInterval(1);
    connect(&timer, &QTimerWidget::tick, &timer, [&timer] {
        if (timer.lines.size() == 1)
            timer.start();
    });
    timer.startOnce();
    QTRY_VERIFY(timer.lines.size() >= 4);
}

void tst_QTimerWidget::startOnceInsideAOneShotTickIsEnded()
{
    Timer timer;
    timer.setInterval(1);
    connect(&timer, &QTimerWidget::tick, &timer, &QTimerWidget::startOnce);
    timer.startOnce();
    QTRY_COMPARE(timer.lines, pair());
    QTest::qWait(30);
    QCOMPARE(timer.lines, pair());
}

void tst_QTimerWidget::negativeIntervalStartsNothing()
{
    Timer timer;
    timer.setInterval(1);
    timer.start();
    timer.setInterval(-1);
    timer.start();
    QTest::qWait(30);
    QCOMPARE(timer.lines, QStringList());
    QCOMPARE(timer.interval(), -1);
}

void tst_QTimerWidget::otherTimersArePassedOn()
{
    Timer timer;
    QTimerEvent unknown(4711);
    QTimerEvent stopped(-1);
    QCoreApplication::sendEvent(&timer, &unknown);
    QCOMPARE(timer.lines, QStringList());
    timer.start();
    QCoreApplication::sendEvent(&timer, &unknown);
    QCoreApplication::sendEvent(&timer, &stopped);
    QCOMPARE(timer.lines, QStringList());
}

void tst_QTimerWidget::handlerMayDeleteTheTimer_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::newRow("tick") << QByteArray(SIGNAL(tick()));
    QTest::newRow("tickID") << QByteArray(SIGNAL(tickID(int)));
}

class Deleter : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void remove() { delete sender(); }
};

void tst_QTimerWidget::handlerMayDeleteTheTimer()
{
    QFETCH(QByteArray, signal);
    Deleter deleter;
    const QPointer<QTimerWidget> timer(new QTimerWidget);
    connect(timer.data(), signal.constData(), &deleter, SLOT(remove()));
    timer->setInterval(1);
    timer->startOnce();
    QTRY_VERIFY(!timer);
}

void tst_QTimerWidget::numberedSlots_data()
{
    QTest::addColumn<Action>("prepare");
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QVariant>("argument");
    QTest::addColumn<bool>("ticksAfter"); // When the slot has acted; otherwise the opposite.

    const Action running = [](QTimerWidget &t) { t.start(); };
    const Action silent = [](QTimerWidget &t) {
        t.disable();
        t.start();
    };
    const Action stopped = [](QTimerWidget &) {};
    QTest::newRow("enableID") << silent << QByteArray("enableID") << QVariant() << true;
    QTest::newRow("disableID") << running << QByteArray("disableID") << QVariant() << false;
    QTest::newRow("setEnabledID true") << silent << QByteArray("setEnabledID") << QVariant(true) << true;
    QTest::newRow("setEnabledID false") << running << QByteArray("setEnabledID") << QVariant(false) << false;
    QTest::newRow("setDisabledID true") << running << QByteArray("setDisabledID") << QVariant(true) << false;
    QTest::newRow("setDisabledID false") << silent << QByteArray("setDisabledID") << QVariant(false) << true;
    QTest::newRow("startID") << stopped << QByteArray("startID") << QVariant() << true;
    QTest::newRow("startOnceID") << stopped << QByteArray("startOnceID") << QVariant() << true;
    QTest::newRow("stopID") << running << QByteArray("stopID") << QVariant() << false;
    QTest::newRow("setIntervalID") << stopped << QByteArray("setIntervalID") << QVariant(5) << false;
}

void tst_QTimerWidget::numberedSlots()
{
    QFETCH(Action, prepare);
    QFETCH(QByteArray, slot);
    QFETCH(QVariant, argument);
    QFETCH(bool, ticksAfter);

    for (const int own : {2, 0, -1}) {
        for (const int id : {2, 3, 0, -1, 9}) {
            Timer timer;
            timer.setInterval(0);
            timer.setSetID(own);
            timer.setEmitID(9);
            prepare(timer);
            if (argument.type() == QVariant::Bool)
                QVERIFY(QMetaObject::invokeMethod(&timer, slot.constData(), Q_ARG(int, id),
                                                  Q_ARG(bool, argument.toBool())));
            else if (argument.isValid())
                QVERIFY(
                    QMetaObject::invokeMethod(&timer, slot.constData(), Q_ARG(int, id), Q_ARG(int, argument.toInt())));
            else
                QVERIFY(QMetaObject::invokeMethod(&timer, slot.constData(), Q_ARG(int, id)));
            QTest::qWait(1);

            const bool acted = id == own;
            if (slot == "setIntervalID")
                QCOMPARE(timer.interval(), acted ? 5 : 0);
            else
                QCOMPARE(!timer.lines.isEmpty(), acted == ticksAfter);
        }
    }
}

void tst_QTimerWidget::hidesWhenShown()
{
    QWidget window;
    QTimerWidget timer(&window);
    QTimerWidget stays(&window);
    stays.visibleAtRunTime = true;
    window.show();
    QVERIFY(!timer.isVisible());
    QVERIFY(stays.isVisible());
}

void tst_QTimerWidget::showEventIsIgnored_data()
{
    QTest::addColumn<bool>("visible");
    QTest::newRow("hidden") << false;
    QTest::newRow("kept visible") << true;
}

void tst_QTimerWidget::showEventIsIgnored()
{
    QFETCH(bool, visible);
    QTimerWidget timer;
    timer.visibleAtRunTime = visible;
    QShowEvent event;
    QVERIFY(event.isAccepted());
    QCoreApplication::sendEvent(&timer, &event);
    QVERIFY(!event.isAccepted());
}

void tst_QTimerWidget::paintsTheImage_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(32, 32), QSize(75, 41), QSize(30, 101), QSize(1, 1)})
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
}

void tst_QTimerWidget::paintsTheImage()
{
    QFETCH(QSize, size);

    QTimerWidget timer;
    timer.image = QImage(13, 7, QImage::Format_ARGB32); // Not square: it is stretched into the square.
    timer.image.fill(Qt::red);
    timer.image.setPixelColor(6, 3, Qt::blue);
    timer.resize(size);

    QImage expected(size, QImage::Format_ARGB32);
    expected.fill(Qt::white);
    QImage shown = expected;
    const int r = qMin(size.width() / 2, size.height() / 2);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(size.width() / 2 - r, size.height() / 2 - r, 2 * r, 2 * r), timer.image);
    painter.end();
    timer.render(&shown, QPoint(), QRegion(), QWidget::RenderFlags());
    QCOMPARE(shown, expected);
    QCOMPARE(r > 0, shown.pixelColor(size.width() / 2 - r, size.height() / 2) == Qt::red);
}

KEL_TEST_MAIN(tst_QTimerWidget)
#include "tst_qtimerwidget.moc"
