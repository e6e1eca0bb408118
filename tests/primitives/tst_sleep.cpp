#include "testmain.h"

#include <pisleep.h>

#include <chrono>

class tst_Sleep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isNeverShort_data();
    void isNeverShort();
};

void tst_Sleep::isNeverShort_data()
{
    QTest::addColumn<int>("microseconds");

    for (const int microseconds : {-5, 0, 1, 50, 199, 200, 201, 1000, 3125, 20000})
        QTest::addRow("%d us", microseconds) << microseconds;
}

void tst_Sleep::isNeverShort()
{
    QFETCH(int, microseconds);

    for (int i = 0; i < 20; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        piUSleep(microseconds);
        QVERIFY(std::chrono::steady_clock::now() - begin >= std::chrono::microseconds(microseconds));
    }
}

KEL_TEST_MAIN(tst_Sleep)
#include "tst_sleep.moc"
