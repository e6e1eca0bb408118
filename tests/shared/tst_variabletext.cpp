#include "testmain.h"

#include <variabletext.h>

#include <limits>

class tst_VariableText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splitVar_data();
    void splitVar();
    void joinVar_data();
    void joinVar();
    void splitUndoesJoin();
    void varDur_data();
    void varDur();
};

void tst_VariableText::splitVar_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("duration");

    const auto row = [](const char *title, const char *text, const char *name, const char *duration) {
        QTest::newRow(title) << QString::fromUtf8(text) << QString::fromUtf8(name) << QString::fromUtf8(duration);
    };
    row("name and duration", "temperature{10 m}", "temperature", "10 m");
    row("empty braces mean unlimited", "t{}", "t", "inf");
    row("blank duration is kept", "t{ }", "t", " ");
    row("no braces", "t", "t", "inf");
    row("empty", "", "", "inf");
    row("only an opening brace", "t{5 s", "t{5 s", "inf");
    row("only a closing brace", "t5 s}", "t5 s}", "inf");
    row("closing before opening", "}t{", "}t{", "inf");
    row("a closing brace before both", "a}b{5 s}", "a}b", "5 s");
    row("first opening, last closing", "a{b{c}d}e", "a", "b{c}d");
    row("text after the braces is dropped", "a{b}c", "a", "b");
    row("empty name", "{5 s}", "", "5 s");
    row("space is kept", " t {5 s} ", " t ", "5 s");
    row("other alphabet", "темп{5 с}", "темп", "5 с");
}

void tst_VariableText::splitVar()
{
    QFETCH(QString, text);
    const auto parts = ::splitVar(text);
    QTEST(parts.first, "name");
    QTEST(parts.second, "duration");
}

void tst_VariableText::joinVar_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("duration");
    QTest::addColumn<QString>("text");

    QTest::newRow("both") << "t"
                          << "5 s"
                          << "t{5 s}";
    QTest::newRow("empty duration") << "t" << QString() << "t{}";
    QTest::newRow("empty name") << QString() << "inf"
                                << "{inf}";
    QTest::newRow("percent signs") << "%1%2"
                                   << "%1"
                                   << "%1%2{%1}";
}

void tst_VariableText::joinVar()
{
    QFETCH(QString, name);
    QFETCH(QString, duration);
    QTEST(::joinVar(name, duration), "text");
}

void tst_VariableText::splitUndoesJoin()
{
    const QPair<QString, QString> parts{QStringLiteral("water level"), QStringLiteral("1.5 h")};
    QCOMPARE(::splitVar(::joinVar(parts.first, parts.second)), parts);
}

void tst_VariableText::varDur_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint64>("milliseconds");

    const auto row = [](const char *text, quint64 milliseconds) {
        QTest::newRow(*text == '\0' ? "empty" : text) << QString::fromUtf8(text) << milliseconds;
    };
    const quint64 largest = std::numeric_limits<quint64>::max();
    row("inf", 0);
    row("INF", 1);
    row(" inf", 1);
    row("", 1);
    row(" ", 1);
    row("10", 1);
    row("10s", 1);
    row("1 2 s", 1);
    row("10\ts", 1);
    row("10 s", 10000);
    row("  10   s  ", 10000);
    row("10 m", 600000);
    row("1.5 h", 5400000);
    row("1 d", 86400000);
    row("2 M", Q_UINT64_C(5184000000));
    row("1 y", Q_UINT64_C(31104000000));
    row("3 min", 180000);
    row("3 ms", 180000);
    row("3 mon", 180000);
    row("3 Months", Q_UINT64_C(7776000000));
    row("3 sec", 3000);
    row("3 days", 259200000);
    row("3 years", Q_UINT64_C(93312000000));
    row("10 x", 10);
    row("10 S", 10);
    row("10 H", 10);
    row("10 D", 10);
    row("10 Y", 10);
    row("1e3 s", 1000000);
    row("0 s", 0);
    row("2.9 x", 2);
    row("0.0019 s", 1);
    row("x s", 0);
    row("1,5 s", 0);
    row("-5 s", 0);
    row("-0.1 x", 0);
    row("nan s", 0);
    row("inf s", largest);
    row("-inf s", 0);
    row("1e400 s", largest);
    row("18446744073709549568 x", Q_UINT64_C(18446744073709549568));
    row("18446744073709551616 x", largest);
    row("1e300 y", largest);
}

void tst_VariableText::varDur()
{
    QFETCH(QString, text);
    QTEST(::varDur(text), "milliseconds");
}

KEL_TEST_MAIN(tst_VariableText)
#include "tst_variabletext.moc"
