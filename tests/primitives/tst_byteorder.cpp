#include "testmain.h"

#include <pibyteorder.h>

class tst_ByteOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reverses_data();
    void reverses();
};

void tst_ByteOrder::reverses_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("result");

    QTest::newRow("negative size does nothing") << -1 << QByteArray("abcdefgh");
    QTest::newRow("size 0 does nothing") << 0 << QByteArray("abcdefgh");
    QTest::newRow("size 1 does nothing") << 1 << QByteArray("abcdefgh");
    QTest::newRow("two bytes swap") << 2 << QByteArray("bacdefgh");
    QTest::newRow("odd size keeps its middle") << 3 << QByteArray("cbadefgh");
    QTest::newRow("four bytes") << 4 << QByteArray("dcbaefgh");
    QTest::newRow("eight bytes") << 8 << QByteArray("hgfedcba");
}

void tst_ByteOrder::reverses()
{
    QFETCH(int, size);
    QFETCH(QByteArray, result);

    QByteArray data("abcdefgh");
    piLetobe(data.data(), size);
    QCOMPARE(data, result);
}

KEL_TEST_MAIN(tst_ByteOrder)
#include "tst_byteorder.moc"
