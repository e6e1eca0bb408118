#include "stderrcapture.h"
#include "testmain.h"

#include <piobject.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

class Source : public PIObject
{
public:
    Source()
        : PIObject("source")
    {
        addEvent("tickEvent");
        addEvent("otherEvent");
    }
    PIString className() const override { return "Source"; }
    PIString parentClassName() const override { return "PIObject"; }
    void tick() { raiseEvent("tickEvent"); }
    void other() { raiseEvent("otherEvent"); }
};

class Target : public PIObject
{
public:
    Target()
    {
        addHandler("tickWrite", [this] { handle(); });
        addHandler("second", [this] { order << "second"; });
    }
    ~Target() override { disconnectAll(); }
    PIString className() const override { return "Target"; }

    std::atomic<int> count{0};
    QStringList order;
    std::function<void()> inside;

protected:
    void propertyChanged(const PIString &name) override
    {
        order << name.toUtf16() + '=' + property(name).toString().toUtf16();
    }

private:
    void handle()
    {
        ++count;
        if (inside)
            inside();
    }
};

class tst_Object : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasNameAndClass();
    void storesProperties();
    void announcesChangedProperties();
    void connectsByName();
    void connectsThroughFreeFunction();
    void connectedTwiceRunsTwice();
    void handlersRunInOrder();
    void unknownNamesAreReported_data();
    void unknownNamesAreReported();
    void nullObjectsAreReported();
    void targetMayDie();
    void sourceMayDie();
    void handlerMayDeleteTheSource();
    void handlerMayDeleteTheTarget();
    void handlerMayDisconnectItself();
    void disconnectingWaitsForARunningHandler();
    void nothingRunsInADeadTarget();
    void manyConnectionsLeaveNothingBehind();
};

void tst_Object::hasNameAndClass()
{
    PIObject object("first");
    QVERIFY(object.name() == "first");
    object.setName("__S__collection_PIGSerial__");
    QVERIFY(object.name() == "__S__collection_PIGSerial__");
    QVERIFY(object.className() == "PIObject");
    QVERIFY(object.parentClassName() == "");
    QVERIFY(Source().className() == "Source");
    QVERIFY(Source().parentClassName() == "PIObject");
}

void tst_Object::storesProperties()
{
    PIObject object;
    QVERIFY(!object.property("path").isValid());
    object.setProperty("path", "/dev/ttyS0");
    object.setProperty("inSpeed", 115200);
    QVERIFY(object.property("path").toString() == "/dev/ttyS0");
    QCOMPARE(object.property("inSpeed").toInt(), 115200);
    object.setProperty("inSpeed", 9600);
    QCOMPARE(object.property(PIString("inSpeed")).toInt(), 9600);
}

void tst_Object::announcesChangedProperties()
{
    Target target;
    target.setProperty("a", 1);
    target.setProperty("a", 1);
    target.setProperty("a", 2);
    target.setProperty("b", "x");
    QCOMPARE(target.order, QStringList({"a=1", "a=2", "b=x"}));
}

void tst_Object::connectsByName()
{
    Source source;
    Target target;
    QVERIFY(PIObject::piConnectU(&source, "tickEvent", &target, "tickWrite", "here:1"));
    source.tick();
    source.tick();
    source.other();
    QCOMPARE(int(target.count), 2);
}

void tst_Object::connectsThroughFreeFunction()
{
    Source source;
    Target target;
    const PIString event("tickEvent");
    QVERIFY(piConnectU(&source, event, &target, "tickWrite", "libs/shared/gserial:15"));
    source.tick();
    QCOMPARE(int(target.count), 1);
}

void tst_Object::connectedTwiceRunsTwice()
{
    Source source;
    Target target;
    piConnectU(&source, "tickEvent", &target, "tickWrite", "here:1");
    piConnectU(&source, "tickEvent", &target, "tickWrite", "here:2");
    source.tick();
    QCOMPARE(int(target.count), 2);
}

void tst_Object::handlersRunInOrder()
{
    Source source;
    Target target;
    target.inside = [&] { target.order << "first"; };
    piConnectU(&source, "tickEvent", &target, "second", "here:1");
    piConnectU(&source, "tickEvent", &target, "tickWrite", "here:2");
    source.tick();
    QCOMPARE(target.order, QStringList({"second", "first"}));
}

void tst_Object::unknownNamesAreReported_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("handler");
    QTest::addColumn<QString>("line");

    QTest::newRow("unknown event") << "tick"
                                   << "tickWrite"
                                   << "piConnectU: Source has no event tick at here:7";
    QTest::newRow("unknown handler") << "tickEvent"
                                     << "write"
                                     << "piConnectU: Target has no handler write at here:7";
    QTest::newRow("names have a case") << "tickevent"
                                       << "tickWrite"
                                       << "piConnectU: Source has no event tickevent at here:7";
}

void tst_Object::unknownNamesAreReported()
{
    QFETCH(QString, event);
    QFETCH(QString, handler);
    QFETCH(QString, line);

    const StderrCapture capture;
    Source source;
    Target target;
    QVERIFY(!piConnectU(&source, event.toUtf8().constData(), &target, handler.toUtf8().constData(), "here:7"));
    QCOMPARE(capture.lines(), QStringList{line});
    source.tick();
    QCOMPARE(int(target.count), 0);
}

void tst_Object::nullObjectsAreReported()
{
    const StderrCapture capture;
    Source source;
    Target target;
    QVERIFY(!piConnectU(nullptr, "tickEvent", &target, "tickWrite", "here:7"));
    QVERIFY(!piConnectU(&source, "tickEvent", nullptr, "tickWrite", "here:8"));
    QCOMPARE(capture.lines(), QStringList({"piConnectU: no object for tickEvent at here:7",
                                           "piConnectU: no object for tickWrite at here:8"}));
}

void tst_Object::targetMayDie()
{
    Source source;
    {
        Target target;
        piConnectU(&source, "tickEvent", &target, "tickWrite", "here:1");
    }
    source.tick();
}

void tst_Object::sourceMayDie()
{
    Target target;
    {
        Source source;
        piConnectU(&source, "tickEvent", &target, "tickWrite", "here:1");
    }
    Source next;
    piConnectU(&next, "tickEvent", &target, "tickWrite", "here:1");
    next.tick();
    QCOMPARE(int(target.count), 1);
}

void tst_Object::handlerMayDeleteTheSource()
{
    auto source = std::make_unique<Source>();
    Target target;
    target.inside = [&] { source.reset(); };
    piConnectU(source.get(), "tickEvent", &target, "tickWrite", "here:1");
    piConnectU(source.get(), "tickEvent", &target, "second", "here:2");
    source->tick();
    QCOMPARE(int(target.count), 1);
    QVERIFY2(target.order.isEmpty(), "a connection ran after its source was gone");
}

void tst_Object::handlerMayDeleteTheTarget()
{
    Source source;
    auto target = std::make_unique<Target>();
    target->inside = [&] { target.reset(); };
    piConnectU(&source, "tickEvent", target.get(), "tickWrite", "here:1");
    piConnectU(&source, "tickEvent", target.get(), "tickWrite", "here:2");
    source.tick();
    QVERIFY(!target);
    source.tick();
}

void tst_Object::handlerMayDisconnectItself()
{
    Source source;
    Target target;
    target.inside = [&] { target.disconnectAll(); };
    piConnectU(&source, "tickEvent", &target, "tickWrite", "here:1");
    source.tick();
    source.tick();
    QCOMPARE(int(target.count), 1);
}

void tst_Object::disconnectingWaitsForARunningHandler()
{
    Source source;
    Target target;
    std::atomic<bool> entered{false};
    std::atomic<bool> mayReturn{false};
    std::atomic<bool> returned{false};
    target.inside = [&] {
        entered = true;
        while (!mayReturn)
            std::this_thread::yield();
        returned = true;
    };
    piConnectU(&source, "tickEvent", &target, "tickWrite", "here:1");

    std::thread ticker([&] { source.tick(); });
    while (!entered)
        std::this_thread::yield();
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        mayReturn = true;
    });
    target.disconnectAll();
    QVERIFY(returned);
    release.join();
    ticker.join();
}

// A thread raises events without pause while targets come and go.
void tst_Object::nothingRunsInADeadTarget()
{
    Source source;
    std::atomic<bool> finished{false};
    std::thread ticker([&] {
        while (!finished)
            source.tick();
    });
    for (int i = 0; i < 200; ++i) {
        Target target;
        QVERIFY(piConnectU(&source, "tickEvent", &target, "tickWrite", "here:1"));
        while (target.count == 0)
            std::this_thread::yield();
    }
    finished = true;
    ticker.join();
}

void tst_Object::manyConnectionsLeaveNothingBehind()
{
    Target target;
    for (int i = 0; i < 1000; ++i) {
        Source source;
        piConnectU(&source, "tickEvent", &target, "tickWrite", "here:1");
        source.tick();
    }
    QCOMPARE(int(target.count), 1000);
}

KEL_TEST_MAIN(tst_Object)
#include "tst_object.moc"
