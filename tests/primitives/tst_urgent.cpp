#include "testmain.h"

#include <piurgent.h>

#include <pthread.h>

namespace
{

int policy()
{
    int current = -1;
    sched_param parameters{};
    ::pthread_getschedparam(::pthread_self(), &current, &parameters);
    return current;
}

} // namespace

class tst_Urgent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastsAsLongAsItExists();
    void nestsWithoutEnd();
};

void tst_Urgent::lastsAsLongAsItExists()
{
    const int before = policy();
    {
        const PIUrgent urgent;
        QCOMPARE(policy(), urgent.isGranted() ? SCHED_FIFO : before);
    }
    QCOMPARE(policy(), before);
}

void tst_Urgent::nestsWithoutEnd()
{
    const int before = policy();
    {
        const PIUrgent outer;
        {
            const PIUrgent inner;
            QVERIFY(!outer.isGranted() || !inner.isGranted());
        }
        QCOMPARE(policy(), outer.isGranted() ? SCHED_FIFO : before);
    }
    QCOMPARE(policy(), before);
}

KEL_TEST_MAIN(tst_Urgent)
#include "tst_urgent.moc"
