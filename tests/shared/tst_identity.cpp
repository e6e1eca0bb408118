#include "testmain.h"

#include <identity.h>
#include <piqt.h>

#include <set>

class tst_Identity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyBitOfAnIdVaries();
    void idsDiffer();
    void hash_data();
    void hash();
};

void tst_Identity::everyBitOfAnIdVaries()
{
    // 200 numbers leave some bit unchanged with a chance of 2^-194.
    uint set = 0;
    uint clear = 0;
    for (int i = 0; i < 200; ++i) {
        const uint id = generateID();
        set |= id;
        clear |= ~id;
    }
    QCOMPARE(set, ~0u);
    QCOMPARE(clear, ~0u);
}

void tst_Identity::idsDiffer()
{
    std::set<uint> ids;
    for (int i = 0; i < 1000; ++i)
        ids.insert(generateID());
    QVERIFY(ids.size() > 990);
}

void tst_Identity::hash_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("hex");

    QTest::newRow("no bytes") << QByteArray() << QByteArray("d41d8cd98f00b204e9800998ecf8427e");
    QTest::newRow("text") << QByteArray("abc") << QByteArray("900150983cd24fb0d6963f7d28e17f72");
    QTest::newRow("zero bytes count") << QByteArray(4, '\0') << QByteArray("f1d3ff8443297732862df21dc4e57262");
    QTest::newRow("high bytes") << QByteArray("\xff\x80") << QByteArray("8a72eb04e26e12be58f5dee1e5280efd");
    QTest::newRow("long") << QByteArray(1 << 20, 'a') << QByteArray("7202826a7791073fe2787f0c94603278");
}

void tst_Identity::hash()
{
    QFETCH(QByteArray, data);
    const PIByteArray digest = dataHash(Q2PIByteArray(data));
    QCOMPARE(digest.size(), 16);
    QTEST(PI2QByteArray(digest).toHex(), "hex");
}

KEL_TEST_MAIN(tst_Identity)
#include "tst_identity.moc"
