#include "testmain.h"

#include <pivariant.h>

#include <limits>

class tst_Variant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingReadsAsZero();
    void readsAsAnyKind_data();
    void readsAsAnyKind();
    void largeRealNumbersSaturate();
    void comparesKindAndValue();
};

void tst_Variant::nothingReadsAsZero()
{
    const PIVariant nothing;
    QVERIFY(!nothing.isValid());
    QCOMPARE(nothing.toInt(), 0);
    QCOMPARE(nothing.toDouble(), 0.0);
    QVERIFY(!nothing.toBool());
    QVERIFY(nothing.toString().isEmpty());
}

void tst_Variant::readsAsAnyKind_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("flag");
    QTest::addColumn<int>("number");
    QTest::addColumn<double>("real");
    QTest::addColumn<QString>("text");

    QTest::newRow("true") << 0 << true << 1 << 1.0 << "true";
    QTest::newRow("false") << 1 << false << 0 << 0.0 << "false";
    QTest::newRow("whole number") << 2 << true << -5 << -5.0 << "-5";
    QTest::newRow("real number") << 3 << true << -2 << -2.75 << "-2.75";
    QTest::newRow("text with a whole number") << 4 << true << 115200 << 115200.0 << "115200";
    QTest::newRow("text with a leading zero") << 5 << true << 10 << 10.0 << "010";
    QTest::newRow("text with a word") << 6 << false << 0 << 0.0 << "word";
    QTest::newRow("text that says true") << 7 << true << 0 << 0.0 << " TRUE ";
    QTest::newRow("text with a real number") << 8 << true << 0 << 0.5 << "0.5";
}

void tst_Variant::readsAsAnyKind()
{
    const PIVariant values[] = {true, false, -5, -2.75, "115200", PIString("010"), "word", " TRUE ", "0.5"};
    QFETCH(int, row);
    QFETCH(bool, flag);
    QFETCH(int, number);
    QFETCH(double, real);
    QFETCH(QString, text);

    const PIVariant &value = values[row];
    QVERIFY(value.isValid());
    QCOMPARE(value.toBool(), flag);
    QCOMPARE(value.toInt(), number);
    QCOMPARE(value.toDouble(), real);
    QCOMPARE(value.toString().toUtf16(), text);
}

void tst_Variant::largeRealNumbersSaturate()
{
    using LongLimits = std::numeric_limits<long long>;
    QCOMPARE(PIVariant(1e300).toLongLong(), LongLimits::max());
    QCOMPARE(PIVariant(9223372036854775808.0).toLongLong(), LongLimits::max());
    QCOMPARE(PIVariant(-1e300).toLongLong(), LongLimits::min());
    QCOMPARE(PIVariant(std::numeric_limits<double>::quiet_NaN()).toLongLong(), 0LL);
    QCOMPARE(PIVariant(5000000000LL).toInt(), std::numeric_limits<int>::max());
    QCOMPARE(PIVariant(-5000000000LL).toInt(), std::numeric_limits<int>::min());
}

void tst_Variant::comparesKindAndValue()
{
    QVERIFY(PIVariant(5) == PIVariant(5LL));
    QVERIFY(PIVariant(5) != PIVariant(6));
    QVERIFY(PIVariant(5) != PIVariant("5"));
    QVERIFY(PIVariant(1) != PIVariant(true));
    QVERIFY(PIVariant() == PIVariant());
    QVERIFY(PIVariant() != PIVariant(0));
}

KEL_TEST_MAIN(tst_Variant)
#include "tst_variant.moc"
