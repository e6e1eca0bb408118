#include "testmain.h"

#include <templatefault.h>

class tst_TemplateFault : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wellFormed_data();
    void wellFormed();
    void faults_data();
    void faults();
};

void tst_TemplateFault::wellFormed_data()
{
    QTest::addColumn<QString>("text");

    for (const char *text : {"",
                             "  ",
                             "AA",
                             "0x1f",
                             "7FFFFFFF",
                             "1FF",
                             ".",
                             "%",
                             "%0",
                             "%65535",
                             "%.",
                             "%[t].",
                             "%(float)[t].",
                             "(word)12",
                             "1(word)2",
                             "%(byte)0",
                             "%(UCHAR)0",
                             "%(~word~)[a]0",
                             "%()0",
                             "%(~)0",
                             "%[]0",
                             "AA \t BB",
                             "AA\"B\"CC",
                             R"("(" "[" "\"" "Ж")",
                             R"("")"}) {
        const QString row = QString::fromUtf8(text);
        QTest::newRow(text) << row;
    }
}

void tst_TemplateFault::wellFormed()
{
    QFETCH(QString, text);

    const auto fault = Kv_Designer::findTemplateFault(text);
    QVERIFY2(!fault, fault ? qPrintable(fault->reason) : "");
}

void tst_TemplateFault::faults_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("reason");

    const auto row = [](const char *text, int position, const char *token, const char *reason) {
        QTest::newRow(text) << QString::fromUtf8(text) << position << QString::fromUtf8(token)
                            << QString::fromUtf8(reason);
    };
    const char *notHex = R"("%1" is not a hexadecimal number from 0 to 7FFFFFFF)";
    const auto number = [&](const char *text, int position, const char *token) {
        row(text, position, token, qPrintable(QString::fromUtf8(notHex).arg(QString::fromUtf8(token))));
    };

    number("AA XY ZZ", 3, "XY");
    number("AA\tBB", 0, "AA\tBB");
    number("AA -1", 3, "-1");
    number("  FFFFFFFF", 2, "FFFFFFFF");
    number("\"Hi\"XY", 4, "XY");
    number("\"Hi\" \"\\n\" %0 XY", 13, "XY");
    number("AA \"Hi\" G\"Hi\"", 8, "G");
    row("(word).", 0, "(word).", "a wildcard with a type is written with \"%\" in front");
    row("(word)", 0, "(word)", "the number is missing");
    row("%(wrod)0", 0, "%(wrod)0", "the type \"wrod\" is unknown");
    row("%(~~word)0", 0, "%(~~word)0", "the type \"~~word\" is unknown");
    row("AA (word1", 3, "(word1", "\"(\" has no \")\"");
    row("AA word)1", 3, "word)1", "\")\" has no \"(\" before it");
    row("(word)(word)1", 0, "(word)(word)1", "it has more than one \"(\"");
    row("((word)1", 0, "((word)1", "it has more than one \"(\"");
    row("%[a0", 0, "%[a0", "\"[\" has no \"]\"");
    row("%a]0", 0, "%a]0", "\"]\" has no \"[\" before it");
    row("%[a][b]0", 0, "%[a][b]0", "it has more than one \"[\"");
    row("%x", 0, "%x", "\"x\" is not the number of a value");
    row("%0A", 0, "%0A", "\"0A\" is not the number of a value");
    row("%-6", 0, "%-6", "\"-6\" is not the number of a value");
    row("%65536", 0, "%65536", "the number 65536 is above 65535");
    row("%99999999999", 0, "%99999999999", "\"99999999999\" is not the number of a value");
    row("AA \"Hi", 3, "\"Hi", "the string is not closed");
    row("\"A\" \"B\\", 4, "\"B\\", "the string is not closed");
}

void tst_TemplateFault::faults()
{
    QFETCH(QString, text);
    QFETCH(int, position);
    QFETCH(QString, token);
    QFETCH(QString, reason);

    const auto fault = Kv_Designer::findTemplateFault(text);
    QVERIFY(fault);
    QCOMPARE(fault->position, position);
    QCOMPARE(fault->token, token);
    QCOMPARE(fault->reason, reason);
}

KEL_TEST_MAIN(tst_TemplateFault)
#include "tst_templatefault.moc"
