#include "testmain.h"

#include <answerpattern.h>

#include <limits>

using Elements = QVector<int>;
using Captures = QMap<int, int>;

class tst_AnswerPattern : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fromText_data();
    void fromText();
    void match_data();
    void match();
    void capturesOfAFailedMatchStay();
    void otherCapturesStay();
    void laterCaptureOfTheSameArgumentWins();
};

void tst_AnswerPattern::fromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("deviceID");
    QTest::addColumn<Elements>("elements");

    const auto row = [](const char *name, const char *text, int deviceID, const Elements &elements) {
        QTest::newRow(name) << QString::fromUtf8(text) << deviceID << elements;
    };
    row("empty text is an empty pattern", "", 5, {});
    row("only spaces is an empty pattern", "   ", 5, {});
    row("hexadecimal bytes", "00 0a FF", 5, {0x00, 0x0A, 0xFF});
    row("spaces in a row count once", " 01 02  03 ", 5, {1, 2, 3});
    row("prefix 0x is read", "0x1F", 5, {0x1F});
    row("no number is 0", "xyz *", 5, {0, 0});
    row("above 255 is not masked", "100 1FF", 5, {0x100, 0x1FF});
    row("beyond an int is 0", "80000000", 5, {0});
    row("negative fixed value is a capture", "-1 -2", 5, {-1, -2});
    row("tab separates nothing", "01\t02", 5, {0});
    row("device id", "%id", 5, {5});
    row("large device id is not masked", "%id", 300, {300});
    row("no device id is a capture of argument 0", "%id", -1, {-1});
    row("other letter case is argument 0", "%ID %Id", 5, {~0, ~0});
    row("longer word is argument 0", "%id1", 5, {~0});
    row("arguments", "%0 %1 %12", 5, {~0, ~1, ~12});
    row("argument number is decimal", "%10", 5, {~10});
    row("argument that is no number", "% %x %1f", 5, {~0, ~0, ~0});
    row("negative argument is a fixed value", "%-5", 5, {4});
    row("expression is a capture of argument 0", "%(a1)", 5, {~0});
    row("percent inside is no number", "A%1", 5, {0});
}

void tst_AnswerPattern::fromText()
{
    QFETCH(QString, text);
    QFETCH(int, deviceID);
    QFETCH(Elements, elements);

    QCOMPARE(AnswerPattern::fromText(text, deviceID).elements(), elements);
}

void tst_AnswerPattern::match_data()
{
    QTest::addColumn<Elements>("elements");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<bool>("matches");
    QTest::addColumn<Captures>("captures");

    const int highest = std::numeric_limits<int>::max();
    QTest::newRow("empty matches empty") << Elements{} << QByteArray() << true << Captures{};
    QTest::newRow("empty pattern, one byte") << Elements{} << QByteArray("a") << false << Captures{};
    QTest::newRow("shorter message") << Elements{1, ~0} << QByteArray("\1") << false << Captures{};
    QTest::newRow("longer message") << Elements{1} << QByteArray("\1\1") << false << Captures{};
    QTest::newRow("fixed bytes are unsigned") << Elements{0xFF, 0x80} << QByteArray("\xFF\x80") << true << Captures{};
    QTest::newRow("captured bytes are unsigned")
        << Elements{~0, ~1} << QByteArray("\xFF\x80") << true << Captures{{0, 255}, {1, 128}};
    QTest::newRow("other fixed byte") << Elements{1, 2} << QByteArray("\1\3") << false << Captures{};
    QTest::newRow("above 255 matches nothing") << Elements{0x1AA} << QByteArray("\xAA") << false << Captures{};
    QTest::newRow("zero byte is a byte") << Elements{0, ~2} << QByteArray("\0\0", 2) << true << Captures{{2, 0}};
    QTest::newRow("highest argument number")
        << Elements{std::numeric_limits<int>::min()} << QByteArray("\7") << true << Captures{{highest, 7}};
}

void tst_AnswerPattern::match()
{
    QFETCH(Elements, elements);
    QFETCH(QByteArray, message);
    QFETCH(bool, matches);
    QFETCH(Captures, captures);

    Captures found;
    QCOMPARE(AnswerPattern(elements).match(message, found), matches);
    QCOMPARE(found, captures);
}

void tst_AnswerPattern::capturesOfAFailedMatchStay()
{
    Captures found;
    QVERIFY(!AnswerPattern({~0, 1, ~2}).match(QByteArray("\5\2\6"), found));
    QCOMPARE(found, (Captures{{0, 5}}));
}

void tst_AnswerPattern::otherCapturesStay()
{
    Captures found{{0, 1}, {9, 9}};
    QVERIFY(AnswerPattern({~0}).match(QByteArray("\5"), found));
    QCOMPARE(found, (Captures{{0, 5}, {9, 9}}));
}

void tst_AnswerPattern::laterCaptureOfTheSameArgumentWins()
{
    Captures found;
    QVERIFY(AnswerPattern({~3, ~3}).match(QByteArray("\5\6"), found));
    QCOMPARE(found, (Captures{{3, 6}}));
}

KEL_TEST_MAIN(tst_AnswerPattern)
#include "tst_answerpattern.moc"
