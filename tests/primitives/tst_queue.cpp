#include "testmain.h"

#include <pibytearray.h>
#include <piqueue.h>

#include <memory>

class tst_Queue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstInFirstOut();
    void emptyQueueGivesDefaults();
    void headStays();
    void clears();
    void takesValuesThatOnlyMove();
};

void tst_Queue::firstInFirstOut()
{
    PIQueue<int> queue;
    for (int i = 0; i < 1000; ++i)
        queue.enqueue(i);
    QCOMPARE(queue.size(), 1000);
    for (int i = 0; i < 1000; ++i)
        QCOMPARE(queue.dequeue(), i);
    QVERIFY(queue.isEmpty());
}

void tst_Queue::emptyQueueGivesDefaults()
{
    PIQueue<PIByteArray> queue;
    QVERIFY(queue.isEmpty());
    QVERIFY(queue.dequeue().isEmpty());
    QCOMPARE(queue.size(), 0);
}

void tst_Queue::headStays()
{
    PIQueue<int> queue;
    queue.enqueue(3);
    queue.enqueue(4);
    QCOMPARE(queue.head(), 3);
    QCOMPARE(queue.size(), 2);
}

void tst_Queue::clears()
{
    PIQueue<int> queue;
    queue.enqueue(3);
    queue.clear();
    QVERIFY(queue.isEmpty());
    queue.enqueue(4);
    QCOMPARE(queue.dequeue(), 4);
}

void tst_Queue::takesValuesThatOnlyMove()
{
    PIQueue<std::unique_ptr<int>> queue;
    queue.enqueue(std::make_unique<int>(5));
    QCOMPARE(*queue.dequeue(), 5);
    QVERIFY(!queue.dequeue());
}

KEL_TEST_MAIN(tst_Queue)
#include "tst_queue.moc"
