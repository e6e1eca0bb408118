#include "testmain.h"

#include <pimutex.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

class tst_Mutex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void excludesOtherThreads();
    void countsRight();
    void unlockByAnotherThreadHasNoEffect();
    void unlockOfAFreeMutexHasNoEffect();
    void secondUnlockHasNoEffect();
    void strayUnlocksNeverBreakALock();
};

namespace
{

bool isHeld(PIMutex &mutex)
{
    bool wasFree = false;
    std::thread([&] {
        wasFree = mutex.try_lock();
        if (wasFree)
            mutex.unlock();
    }).join();
    return !wasFree;
}

} // namespace

void tst_Mutex::excludesOtherThreads()
{
    PIMutex mutex;
    mutex.lock();
    QVERIFY(isHeld(mutex));
    mutex.unlock();
    QVERIFY(!isHeld(mutex));
}

void tst_Mutex::countsRight()
{
    PIMutex mutex;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 5000; ++n) {
                const std::lock_guard lock(mutex);
                ++count;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(count, 20000);
}

void tst_Mutex::unlockByAnotherThreadHasNoEffect()
{
    PIMutex mutex;
    mutex.lock();
    std::thread([&] { mutex.unlock(); }).join();
    QVERIFY(isHeld(mutex));
    mutex.unlock();
    QVERIFY(!isHeld(mutex));
}

void tst_Mutex::unlockOfAFreeMutexHasNoEffect()
{
    PIMutex mutex;
    mutex.unlock();
    mutex.lock();
    QVERIFY(isHeld(mutex));
    mutex.unlock();
    QVERIFY(!isHeld(mutex));
}

void tst_Mutex::secondUnlockHasNoEffect()
{
    PIMutex mutex;
    mutex.lock();
    mutex.unlock();
    mutex.unlock();
    QVERIFY(mutex.try_lock());
    QVERIFY(isHeld(mutex));
    mutex.unlock();
}

// What a port does when it is closed while others write.
void tst_Mutex::strayUnlocksNeverBreakALock()
{
    PIMutex mutex;
    int guarded = 0; // a data race for the thread sanitizer if a stray unlock ever worked
    std::atomic<bool> finished{false};
    std::thread stray([&] {
        while (!finished)
            mutex.unlock();
    });
    std::vector<std::thread> writers;
    for (int i = 0; i < 2; ++i) {
        writers.emplace_back([&] {
            for (int n = 0; n < 5000; ++n) {
                const std::lock_guard lock(mutex);
                const int before = guarded;
                std::this_thread::yield();
                guarded = before + 1;
            }
        });
    }
    for (std::thread &writer : writers)
        writer.join();
    finished = true;
    stray.join();
    QCOMPARE(guarded, 10000);
}

KEL_TEST_MAIN(tst_Mutex)
#include "tst_mutex.moc"
