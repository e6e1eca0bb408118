#include "testmain.h"

#include <piqt.h>
#include <pistring.h>

#include <limits>

class tst_String : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isMadeFromUtf8();
    void comparesWithLiterals();
    void comparesInOrder();
    void joins();
    void split_data();
    void split();
    void changesLetters();
    void number_data();
    void number();
    void numberLimitedToInt();
    void fromNumber();
    void convertsToQtAndBack();
};

void tst_String::isMadeFromUtf8()
{
    QCOMPARE(PIString("я").size(), 1);
    QCOMPARE(PIString("я").toUtf8(), std::string("\xD1\x8F"));
    QVERIFY(PIString(static_cast<const char *>(nullptr)).isEmpty());
    QVERIFY(PIString().isEmpty());
    QCOMPARE(PIString::fromUtf8("abcdef", 3).toUtf8(), std::string("abc"));
    QVERIFY(PIString::fromUtf8("abc", -1).isEmpty());
    QCOMPARE(PIString("\xFF").toUtf8(), std::string("\xEF\xBF\xBD"));
}

void tst_String::comparesWithLiterals()
{
    const PIString text("PIGSerial");
    QVERIFY(text == "PIGSerial");
    QVERIFY("PIGSerial" == text);
    QVERIFY(text != "pigserial");
    QVERIFY("" != text);
    QVERIFY(text == PIString(std::string("PIGSerial")));
    QVERIFY(text != PIString());
}

void tst_String::comparesInOrder()
{
    QVERIFY(PIString("a1") < PIString("a10"));
    QVERIFY(PIString("a-1") < PIString("a0"));
    QVERIFY(!(PIString("b") < PIString("a")));
    QVERIFY(!(PIString("a") < PIString("a")));
}

void tst_String::joins()
{
    PIString text("gser");
    text += "://";
    QVERIFY(text + "x" == "gser://x");
    QVERIFY("<" + text == "<gser://");
}

void tst_String::split_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QStringList>("parts");

    QTest::newRow("plain") << "18:0:1"
                           << ":" << QStringList{"18", "0", "1"};
    QTest::newRow("empty parts stay") << ":a::"
                                      << ":" << QStringList{"", "a", "", ""};
    QTest::newRow("no separator inside") << "abc"
                                         << ":" << QStringList{"abc"};
    QTest::newRow("empty text is one empty part") << ""
                                                  << ":" << QStringList{""};
    QTest::newRow("longer separator") << "a://b://c"
                                      << "://" << QStringList{"a", "b", "c"};
    QTest::newRow("empty separator") << "ab"
                                     << "" << QStringList{"ab"};
}

void tst_String::split()
{
    QFETCH(QString, text);
    QFETCH(QString, separator);
    QFETCH(QStringList, parts);

    QStringList found;
    for (const PIString &part : Q2PIString(text).split(Q2PIString(separator)))
        found << PI2QString(part);
    QCOMPARE(found, parts);
}

void tst_String::changesLetters()
{
    QVERIFY(PIString("EO nЯ").toLowerCase() == "eo nя");
    QVERIFY(PIString(" \t a b\n").trimmed() == "a b");
    QVERIFY(PIString("gser://").startsWith("gser"));
    QVERIFY(!PIString("ser://").startsWith("gser"));
    QVERIFY(PIString("a:b").contains(":"));
}

void tst_String::number_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("base");
    QTest::addColumn<qint64>("number");

    const qint64 largest = std::numeric_limits<qint64>::max();
    const qint64 smallest = std::numeric_limits<qint64>::min();
    QTest::newRow("decimal") << "115200" << -1 << qint64(115200);
    QTest::newRow("zero") << "0" << -1 << qint64(0);
    QTest::newRow("hexadecimal prefix") << "0x1F" << -1 << qint64(31);
    QTest::newRow("capital prefix") << "0XfF" << -1 << qint64(255);
    QTest::newRow("binary prefix") << "0b101" << -1 << qint64(5);
    QTest::newRow("capital binary prefix") << "0B11" << -1 << qint64(3);
    QTest::newRow("leading zero is octal") << "017" << -1 << qint64(15);
    QTest::newRow("no octal digit") << "08" << -1 << qint64(0);
    QTest::newRow("prefix alone") << "0x" << -1 << qint64(0);
    QTest::newRow("negative") << "-12" << -1 << qint64(-12);
    QTest::newRow("negative hexadecimal") << "-0x10" << -1 << qint64(-16);
    QTest::newRow("plus sign") << "+7" << -1 << qint64(7);
    QTest::newRow("two signs") << "--7" << -1 << qint64(0);
    QTest::newRow("white space around") << " 42\t" << -1 << qint64(42);
    QTest::newRow("white space inside") << "4 2" << -1 << qint64(0);
    QTest::newRow("empty") << "" << -1 << qint64(0);
    QTest::newRow("sign alone") << "-" << -1 << qint64(0);
    QTest::newRow("letters behind") << "12abc" << -1 << qint64(0);
    QTest::newRow("real number") << "1.5" << -1 << qint64(0);
    QTest::newRow("largest") << "9223372036854775807" << -1 << largest;
    QTest::newRow("one above the largest") << "9223372036854775808" << -1 << largest;
    QTest::newRow("far too large") << QString(500, QLatin1Char('9')) << -1 << largest;
    QTest::newRow("smallest") << "-9223372036854775808" << -1 << smallest;
    QTest::newRow("one below the smallest") << "-9223372036854775809" << -1 << smallest;
    QTest::newRow("large hexadecimal") << "0xFFFFFFFFFFFFFFFFF" << -1 << largest;
    QTest::newRow("bad digit after a large number") << QString(500, QLatin1Char('9')) + "x" << -1 << qint64(0);
    QTest::newRow("base 16") << "ff" << 16 << qint64(255);
    QTest::newRow("base 16 with prefix") << "0xff" << 16 << qint64(255);
    QTest::newRow("base 16 beginning with 0b") << "0b1" << 16 << qint64(0xB1);
    QTest::newRow("base 10 with leading zero") << "010" << 10 << qint64(10);
    QTest::newRow("base 10 with prefix") << "0x10" << 10 << qint64(0);
    QTest::newRow("base 2") << "101" << 2 << qint64(5);
    QTest::newRow("base 2 with prefix") << "0b101" << 2 << qint64(5);
    QTest::newRow("base 36") << "Zz" << 36 << qint64(35 * 36 + 35);
    QTest::newRow("base 1") << "1" << 1 << qint64(0);
    QTest::newRow("base 37") << "1" << 37 << qint64(0);
    QTest::newRow("base 0") << "1" << 0 << qint64(0);
    QTest::newRow("digits of another alphabet") << "٣" << -1 << qint64(0);
}

void tst_String::number()
{
    QFETCH(QString, text);
    QFETCH(int, base);
    QFETCH(qint64, number);

    QCOMPARE(qint64(Q2PIString(text).toNumberBase(base)), number);
}

void tst_String::numberLimitedToInt()
{
    QCOMPARE(PIString("0x10").toInt(), 16);
    QCOMPARE(PIString("2147483648").toInt(), std::numeric_limits<int>::max());
    QCOMPARE(PIString("-2147483649").toInt(), std::numeric_limits<int>::min());
}

void tst_String::fromNumber()
{
    QVERIFY(PIString::fromNumber(-15) == "-15");
    QVERIFY(PIString::fromNumber(255, 16) == "ff");
    QVERIFY(PIString::fromNumber(5, 99) == "5");
    QVERIFY(PIString::fromNumber(std::numeric_limits<long long>::min()) == "-9223372036854775808");
}

void tst_String::convertsToQtAndBack()
{
    const QString text = QStringLiteral("a я 𝒜");
    QCOMPARE(PI2QString(Q2PIString(text)), text);
    QCOMPARE(PI2QString(PIString("𝒜")), QStringLiteral("𝒜"));
}

KEL_TEST_MAIN(tst_String)
#include "tst_string.moc"
