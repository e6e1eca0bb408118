#include "testmain.h"

#include <blocksonwire.h>

namespace
{

PIByteArray block(const char *text)
{
    return PIByteArray(text, static_cast<int>(qstrlen(text)));
}

} // namespace

class tst_BlocksOnWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newOneIsEmpty();
    void forgetsWhatIsWhollyOut_data();
    void forgetsWhatIsWhollyOut();
    void countsAnewAfterAllAreTaken();
};

void tst_BlocksOnWire::newOneIsEmpty()
{
    BlocksOnWire wire;
    QVERIFY(wire.isEmpty());
    wire.keepLast(3); // a port may hold bytes of somebody else's
    QVERIFY(wire.takeAll().empty());
}

void tst_BlocksOnWire::forgetsWhatIsWhollyOut_data()
{
    QTest::addColumn<int>("unsent");
    QTest::addColumn<int>("kept");

    QTest::newRow("more than all") << 10 << 3;
    QTest::newRow("all") << 9 << 3;
    QTest::newRow("the first has begun") << 8 << 3;
    QTest::newRow("the first is out") << 7 << 2;
    QTest::newRow("the second has begun") << 5 << 2;
    QTest::newRow("the second is out") << 4 << 1;
    QTest::newRow("one byte") << 1 << 1;
    QTest::newRow("none") << 0 << 0;
}

void tst_BlocksOnWire::forgetsWhatIsWhollyOut()
{
    QFETCH(int, unsent);
    QFETCH(int, kept);

    BlocksOnWire wire;
    for (const char *text : {"ab", "cde", "fghi"})
        wire.add(block(text), 7);
    QCOMPARE(wire.connection(), 7ULL);

    wire.keepLast(unsent);
    QCOMPARE(wire.isEmpty(), kept == 0);
    const std::deque<PIByteArray> left = wire.takeAll();
    QCOMPARE(static_cast<int>(left.size()), kept);
    if (kept > 0)
        QVERIFY(left.back() == block("fghi"));
}

void tst_BlocksOnWire::countsAnewAfterAllAreTaken()
{
    BlocksOnWire wire;
    wire.add(block("abcd"), 1);
    wire.takeAll();
    wire.add(block("ef"), 2);
    QCOMPARE(wire.connection(), 2ULL);
    wire.keepLast(1);
    QVERIFY(!wire.isEmpty());
    wire.keepLast(0);
    QVERIFY(wire.isEmpty());
}

KEL_TEST_MAIN(tst_BlocksOnWire)
#include "tst_blocksonwire.moc"
