#include "testmain.h"

#include <pievaluator.h>
#include <piqt.h>

#include <QElapsedTimer>

#include <cmath>
#include <limits>

class tst_Evaluator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void value_data();
    void value();
    void complexValue_data();
    void complexValue();
    void refused_data();
    void refused();
    void evaluatesWithoutACheck();
    void failedCheckLeavesNoExpression();
    void errorIsClearedByTheNextCheck();
    void changedVariableNeedsNoNewCheck();
    void newVariableMendsAnUnknownName();
    void variableMayTurnComplexAndBack();
    void valuesThatDoNotFitAreAnErrorOfEvaluation();
    void argumentNumbersDoNotMix();
    void oddVariableNamesDoNoHarm_data();
    void oddVariableNamesDoNoHarm();
    void sizeLimit();
    void bracketLimit();
    void manyTextsAreKept();
    void checkedTextIsFastAgain();
    void longTextsEndSoon_data();
    void longTextsEndSoon();
    void evaluatorsAreIndependent();
    void contentNumbersItsVariables();
    void contentSortsByName();
    void contentRefusesBadNumbers();
};

namespace
{

// As the sender of commands does it.
void setVariable(PIEvaluatorContent &content, const PIString &name, std::complex<double> value)
{
    const int index = content.findVariable(name);
    if (index >= 0) {
        content.setVariableValue(index, value);
        return;
    }
    content.addVariable(name, value);
    content.sortVariables();
}

PIString repeated(const char *beginning, const char *part, size_t size, const char *end = "")
{
    std::string text = beginning;
    while (text.size() + std::string(part).size() + std::string(end).size() <= size)
        text += part;
    return PIString(text + end);
}

} // namespace

void tst_Evaluator::value_data()
{
    QTest::addColumn<double>("expected");

    const auto row = [](const char *expression, double expected) { QTest::newRow(expression) << expected; };
    row("7/2", 3.5);
    row("(a1/2)", 150);
    row("(a0*2)", 400);
    row("(1)+2", 3);
    row("(-2.5)", -2.5);
    row("-a0", -200);
    row("+a0", 200);
    row("- +a0", -200);
    row("--1", 1);
    row("---1", -1);
    row("-+-+-a0", -200);
    row("1--1", 2);
    row("1---1", 0);
    row("1- - -a0", -199);
    row("2*-a0", -400);
    row("a1 -1", 299);
    row("(1) +1", 2);
    row("2^-1", 0.5);
    row("2^3^2", 512);
    row("-2^2", -4);
    row("(-2)^2", 4);
    row("2+3*4", 14);
    row("(2+3)*4", 20);
    row("10-4-3", 3);
    row("16/4/2", 2);
    row(".5+5.", 5.5);
    row("1e3+1E-1", 1000.1);
    row("0x1F", 31);
    row("0XfF", 255);
    row("0xFFFFFFFF", 4294967295.0);
    row("0b101", 5);
    row("0B11", 3);
    row("009", 9);
    row("a0>>3", 25);
    row("1<<40", 1099511627776.0);
    row("a1&255", 44);
    row("3|4", 7);
    row("a0==200", 1);
    row("a0!=200", 0);
    row("a0>=-1", 1);
    row("a0<a1&&a1<a0", 0);
    row("a0<a1||a1<a0", 1);
    row("a0>100?1:2", 1);
    row("a0>1000?1:a0>500?2:3", 3);
    row("true", 1);
    row("max(1,- -2,+3)", 3);
    row("min(4,2,3)", 2);
    row("sum(1,2,3)", 6);
    row("abs(-3)", 3);
    row("abs(3+4*i)", 5);
    row("real(i*i)", -1);
    row("imag(conj(i))", -1);
    row("norm(2i)", 4);
    row("sqrt(9)", 3);
    row("round(-2.5)", -3);
    row("floor(-2.5)", -3);
    row("ceil(-2.5)", -2);
    row("trunc(-2.5)", -2);
    row("fmod(7,4)", 3);
    row("4*atan2(1,1)-pi", 0);
    row("sin (0)", 0);
    row("asin(sin(0.5))", 0.5);
    row("acos(cos(0.5))", 0.5);
    row("atan(tan(0.5))", 0.5);
    row("asinh(sinh(0.5))", 0.5);
    row("acosh(cosh(0.5))", 0.5);
    row("atanh(tanh(0.5))", 0.5);
    row("ln(e)", 1);
    row("log10(1000)", 3);
    row("log2(8)", 3);
    row("exp(0)", 1);
    row("pow(2,10)", 1024);
    row("a0\t+\r\n1", 201);
    row(" 5 ", 5);
}

void tst_Evaluator::value()
{
    QFETCH(double, expected);

    PIEvaluator evaluator;
    setVariable(evaluator.content(), "a0", 200);
    setVariable(evaluator.content(), "a1", 300);
    QVERIFY2(evaluator.check(QTest::currentDataTag()), evaluator.error().toUtf8().c_str());
    QVERIFY(evaluator.error().isEmpty());
    const std::complex<double> result = evaluator.evaluate();
    QVERIFY2(std::abs(result.real() - expected) < 1e-9, qPrintable(QString::number(result.real())));
    QVERIFY(std::abs(result.imag()) < 1e-9);
    QVERIFY(evaluator.error().isEmpty());
}

void tst_Evaluator::complexValue_data()
{
    QTest::addColumn<double>("real");
    QTest::addColumn<double>("imaginary");

    QTest::newRow("sqrt(-1)") << 0.0 << 1.0;
    QTest::newRow("3+2i") << 3.0 << 2.0;
    QTest::newRow("(1+i)*(1-2*i)") << 3.0 << -1.0;
    QTest::newRow("1/i") << 0.0 << -1.0;
    QTest::newRow("z*2") << 4.0 << -6.0;
    QTest::newRow("conj(z)") << 2.0 << 3.0;
}

void tst_Evaluator::complexValue()
{
    QFETCH(double, real);
    QFETCH(double, imaginary);

    PIEvaluator evaluator;
    setVariable(evaluator.content(), "z", {2, -3});
    QVERIFY2(evaluator.check(QTest::currentDataTag()), evaluator.error().toUtf8().c_str());
    const std::complex<double> result = evaluator.evaluate();
    QVERIFY(std::abs(result - std::complex<double>(real, imaginary)) < 1e-9);
}

void tst_Evaluator::refused_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *expression, const char *error) {
        QTest::newRow(*expression ? expression : "empty") << QString::fromUtf8(expression) << error;
    };
    row("", "Expression is empty.");
    row("   ", "Expression is empty.");
    row("(a0", "Missing parenthesis");
    row("a0)", "Unexpected parenthesis found at position 2");
    row("()", "Unexpected parenthesis");
    row("*1", "Unexpected operator");
    row("1*", "Unexpected end of expression");
    row("-", "Unexpected end of expression");
    row("+", "Expression is empty.");
    row("--", "Expression is empty.");
    row("1+", "Unexpected end of expression found at position 2");
    row("1||", "Unexpected end of expression");
    row("1==1||||1==1", "Unexpected operator found at position 6");
    row("1==1&&||1==1", "Unexpected operator");
    row("||1==1", "Unexpected operator");
    row("1==1|||1==1", "Unexpected operator");
    row("a0 a0", "Unexpected value found at position 3");
    row("(1)2", "Unexpected value");
    row("a0(2)", "Unexpected parenthesis");
    row("(1==1?2):3", "Condition without an else value found at position 7");
    row("max(1==1?2,3)", "Condition without an else value");
    row("1==1?(2:3)", "Misplaced colon");
    row("1==1?2:3:4", "Misplaced colon");
    row("1==1?:2", "Unexpected operator");
    row("1==1?2:", "Unexpected end of expression");
    row("1 2", "Unexpected value");
    row("(1)(2)", "Unexpected parenthesis");
    row("a5", "Unknown name \"a5\"");
    row("sin", "Unexpected end of expression");
    row("sin()", "Unexpected parenthesis");
    row("max()", "Unexpected parenthesis");
    row("atan2(1)", "Too few parameters");
    row("sin+1", "Unexpected");
    row("sin(1,2)", "Too many parameters");
    row("floor(i)", "needs a real argument");
    row("1,2", "Unexpected comma found at position 1");
    row("(1,2)", "Unexpected comma found at position 2");
    row("max(1,,2)", "Unexpected comma");
    row("a0=3", "Assignment is not possible found at position 2");
    row("a0+=3", "Assignment is not possible");
    row("a0*=3", "Assignment is not possible");
    row("{1,2}", "Unexpected character found at position 0");
    row("a0[0]", "Unexpected character");
    row("\"text\"", "Unexpected character");
    row("'a'", "Unexpected character");
    row("5!", "Unexpected character");
    row("5%3", "Unexpected character");
    row("1;2", "Unexpected character");
    row("я", "Unexpected character");
    row("zeros(1e9)", "Unknown name \"zeros\"");
    row("ones(3,3)", "Unknown name \"ones\"");
    row("eye(100000)", "Unknown name \"eye\"");
    row("sizeof(1)", "Unknown name \"sizeof\"");
    row("strlen(1)", "Unknown name \"strlen\"");
    row("parserid", "Unknown name \"parserid\"");
    row("(int)3.5", "Unexpected value");
    row("int(3.5)", "Unknown name \"int\"");
    row("1 and 1", "Unexpected value");
    row("and", "Unknown name \"and\"");
    row("1e", "Malformed number");
    row("1e400", "1e400");
    row("1.2.3", "Malformed number");
    row("..", "Malformed number");
    row("0x", "Malformed number");
    row("0xFFFFFFFFF", "Malformed number");
    row("0b2", "Malformed number");
    row("5m", "Malformed number");
    row("1?2:3", "no implicit conversion");
    row("1==1?2", "Condition without an else value");
    row("1:2", "Misplaced colon");
    row("(1==1)+1", "Can't evaluate");
    row("1.5&1", "Can't evaluate");
}

void tst_Evaluator::refused()
{
    QFETCH(QString, expression);
    QFETCH(QString, error);

    PIEvaluator evaluator;
    setVariable(evaluator.content(), "a0", 200);
    QVERIFY(!evaluator.check(Q2PIString(expression)));
    const QString found = PI2QString(evaluator.error());
    QVERIFY2(found.contains(error), qPrintable(found));
    QVERIFY(std::isnan(evaluator.evaluate().real()));
    QCOMPARE(PI2QString(evaluator.error()), found);
    QVERIFY(evaluator.content().variableValue(0) == std::complex<double>(200));
}

void tst_Evaluator::evaluatesWithoutACheck()
{
    PIEvaluator evaluator;
    QVERIFY(evaluator.error().isEmpty());
    QVERIFY(std::isnan(evaluator.evaluate().real()));
    QVERIFY(!evaluator.error().isEmpty());
}

void tst_Evaluator::failedCheckLeavesNoExpression()
{
    PIEvaluator evaluator;
    QVERIFY(evaluator.check("1+1"));
    QVERIFY(!evaluator.check("1+"));
    QVERIFY(std::isnan(evaluator.evaluate().real()));
}

void tst_Evaluator::errorIsClearedByTheNextCheck()
{
    PIEvaluator evaluator;
    QVERIFY(!evaluator.check("1+"));
    QVERIFY(!evaluator.error().isEmpty());
    QVERIFY(evaluator.check("1+1"));
    QVERIFY(evaluator.error().isEmpty());
    QCOMPARE(evaluator.evaluate().real(), 2.0);
}

void tst_Evaluator::changedVariableNeedsNoNewCheck()
{
    PIEvaluator evaluator;
    setVariable(evaluator.content(), "a1", 1);
    QVERIFY(evaluator.check("a1*10"));
    QCOMPARE(evaluator.evaluate().real(), 10.0);
    setVariable(evaluator.content(), "a1", 7);
    QCOMPARE(evaluator.evaluate().real(), 70.0);
    setVariable(evaluator.content(), "a0", 100); // renumbers a1
    setVariable(evaluator.content(), "a1", 8);
    QCOMPARE(evaluator.evaluate().real(), 80.0);
    QVERIFY(evaluator.check("a1*10"));
    QCOMPARE(evaluator.evaluate().real(), 80.0);
}

void tst_Evaluator::newVariableMendsAnUnknownName()
{
    PIEvaluator evaluator;
    QVERIFY(!evaluator.check("a5"));
    setVariable(evaluator.content(), "a5", 3);
    QVERIFY(evaluator.check("a5"));
    QCOMPARE(evaluator.evaluate().real(), 3.0);
}

void tst_Evaluator::variableMayTurnComplexAndBack()
{
    PIEvaluator evaluator;
    setVariable(evaluator.content(), "a0", {0, 1});
    QVERIFY(evaluator.check("a0*a0"));
    QCOMPARE(evaluator.evaluate().real(), -1.0);
    setVariable(evaluator.content(), "a0", 3);
    QCOMPARE(evaluator.evaluate(), std::complex<double>(9, 0));
    QVERIFY(evaluator.check("a0&1"));
    QCOMPARE(evaluator.evaluate().real(), 1.0);
}

void tst_Evaluator::valuesThatDoNotFitAreAnErrorOfEvaluation()
{
    PIEvaluator evaluator;
    setVariable(evaluator.content(), "a0", 3);
    QVERIFY(evaluator.check("a0&1"));
    setVariable(evaluator.content(), "a0", 3.5);
    QVERIFY(std::isnan(evaluator.evaluate().real()));
    QVERIFY(!evaluator.error().isEmpty());
    setVariable(evaluator.content(), "a0", 5);
    QCOMPARE(evaluator.evaluate().real(), 1.0);
    QVERIFY(evaluator.error().isEmpty());

    QVERIFY(evaluator.check("1/(a0-5)"));
    QVERIFY(std::isinf(evaluator.evaluate().real()));
    QVERIFY(evaluator.check("0/0"));
    QVERIFY(std::isnan(evaluator.evaluate().real()));
}

void tst_Evaluator::argumentNumbersDoNotMix()
{
    PIEvaluator evaluator;
    PIEvaluatorContent &content = evaluator.content();
    for (const int number : {1, 10, 0, -1, 100, 11, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        setVariable(content, "a" + PIString::fromNumber(number), number == -1 ? 99 : number);
    QCOMPARE(content.variablesCount(), 8);

    QVERIFY(evaluator.check("a1+a10*1000+a100*1000000"));
    QCOMPARE(evaluator.evaluate().real(), 100010001.0);
    QVERIFY(evaluator.check("a1-1")); // an argument, minus one
    QCOMPARE(evaluator.evaluate().real(), 0.0);
    QVERIFY(evaluator.check("a2147483647"));
    QCOMPARE(evaluator.evaluate().real(), 2147483647.0);
    QVERIFY(!evaluator.check("a-1")); // no variable of that name can be reached
    QVERIFY(!evaluator.check("a2"));
    QCOMPARE(content.variableValue(content.findVariable("a-1")).real(), 99.0);
}

void tst_Evaluator::oddVariableNamesDoNoHarm_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"",        " ", "a-1", "a 1", "1",   "sin", "i",    "e",  "pi",  "and",      "or", "true",
                             "trueish", "+", "(",   "max", "0x1", "я",   "a0=1", "\"", "a\n", "parserid", "_"})
        QTest::newRow(*name ? name : "empty") << QString::fromUtf8(name);
}

void tst_Evaluator::oddVariableNamesDoNoHarm()
{
    QFETCH(QString, name);

    PIEvaluator evaluator;
    setVariable(evaluator.content(), Q2PIString(name), 77);
    setVariable(evaluator.content(), "a0", 2);
    QVERIFY(evaluator.check("a0*3+real(i)+sin(0)+max(0,0)+ln(e)-1"));
    QCOMPARE(evaluator.evaluate().real(), 6.0);
    QVERIFY(evaluator.check("1==1&&1==1||1==2"));
    evaluator.check(Q2PIString(name));
    evaluator.check(Q2PIString("a0+" + name));
    QVERIFY(evaluator.check("a0"));
    QCOMPARE(evaluator.evaluate().real(), 2.0);
}

void tst_Evaluator::sizeLimit()
{
    PIEvaluator evaluator;
    QVERIFY(evaluator.check(PIString(std::string(4095, ' ') + "5")));
    QCOMPARE(evaluator.evaluate().real(), 5.0);
    QVERIFY(!evaluator.check(PIString(std::string(4096, ' ') + "5")));
    QVERIFY(evaluator.error() == "Expression is longer than 4096 bytes.");
}

void tst_Evaluator::bracketLimit()
{
    PIEvaluator evaluator;
    const auto nested = [](size_t depth) { return PIString(std::string(depth, '(') + "5" + std::string(depth, ')')); };
    QVERIFY(evaluator.check(nested(64)));
    QCOMPARE(evaluator.evaluate().real(), 5.0);
    QVERIFY(!evaluator.check(nested(65)));
    QVERIFY(evaluator.error() == "Brackets are nested deeper than 64 levels.");

    QVERIFY(evaluator.check(repeated("0", "+(1)", 4000))); // one after the other is no depth
}

void tst_Evaluator::manyTextsAreKept()
{
    PIEvaluator evaluator;
    setVariable(evaluator.content(), "a0", 1);
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 1000; ++i) {
            QVERIFY(evaluator.check("a0+" + PIString::fromNumber(i)));
            QCOMPARE(evaluator.evaluate().real(), 1.0 + i);
        }
    }
}

// Parsing takes some hundred times as long as finding a parsed text, so the limit is a wide one.
void tst_Evaluator::checkedTextIsFastAgain()
{
    PIEvaluator evaluator;
    const PIString text = repeated("1", "+sin(1)", 4000);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(evaluator.check(text));
    const qint64 first = clock.nsecsElapsed();

    qint64 again = first;
    for (int i = 0; i < 20; ++i) {
        clock.restart();
        QVERIFY(evaluator.check(text));
        again = std::min(again, clock.nsecsElapsed());
    }
    QVERIFY2(again * 5 < first, qPrintable(QStringLiteral("%1 ns, then %2 ns").arg(first).arg(again)));
}

void tst_Evaluator::longTextsEndSoon_data()
{
    QTest::addColumn<QString>("expression");

    const auto row = [](const char *name, const PIString &text) { QTest::newRow(name) << PI2QString(text); };
    row("sum of reals", repeated("1", "+.1", 4096));
    row("product", repeated("1", "*sin(1)", 4096));
    row("powers", repeated("2", "^2", 4096));
    row("minus signs", repeated("", "-", 4095, "1"));
    row("plus signs", repeated("", "+", 4095, "1"));
    row("arguments", repeated("sum(1", ",1", 4095, ")"));
    row("conditions", repeated("", "1==1?", 4096));
    row("complete conditions", repeated("", "1==2?1:", 4095, "1"));
    row("comparisons", repeated("1", "<2&&1", 4000, "<2"));
    row("brackets", repeated("", "(", 4096));
    row("closing brackets", repeated("", ")", 4096));
    row("names", repeated("", "a", 4096));
    row("digits", repeated("", "9", 4096));
    row("exponent digits", repeated("1e", "9", 4096));
    row("operators", repeated("", "*", 4096));
    row("commas", repeated("max(", ",", 4096));
    row("colons", repeated("", ":", 4096));
    row("question marks", repeated("", "?", 4096));
    row("large shift", "1<<1e300");
    row("tower", "9^9^9^9^9^9^9^9");
}

void tst_Evaluator::longTextsEndSoon()
{
    QFETCH(QString, expression);

    PIEvaluator evaluator;
    QElapsedTimer clock;
    clock.start();
    const bool good = evaluator.check(Q2PIString(expression));
    QCOMPARE(good, evaluator.error().isEmpty());
    evaluator.evaluate();
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
}

void tst_Evaluator::evaluatorsAreIndependent()
{
    PIEvaluator left;
    PIEvaluator right;
    setVariable(left.content(), "a0", 1);
    setVariable(right.content(), "a0", 2);
    QVERIFY(left.check("a0"));
    QVERIFY(right.check("a0"));
    QCOMPARE(left.evaluate().real(), 1.0);
    QCOMPARE(right.evaluate().real(), 2.0);
}

void tst_Evaluator::contentNumbersItsVariables()
{
    PIEvaluatorContent content;
    QCOMPARE(content.variablesCount(), 0);
    QCOMPARE(content.findVariable("a0"), -1);
    QCOMPARE(content.addVariable("b", 5), 0);
    QCOMPARE(content.addVariable("a"), 1);
    QCOMPARE(content.findVariable("b"), 0);
    QCOMPARE(content.findVariable("a"), 1);
    QCOMPARE(content.findVariable("B"), -1);
    QCOMPARE(content.addVariable("b", 6), 0);
    QCOMPARE(content.variablesCount(), 2);
    QCOMPARE(content.variableValue(0).real(), 6.0);
    QCOMPARE(content.variableValue(1).real(), 0.0);
}

void tst_Evaluator::contentSortsByName()
{
    PIEvaluatorContent content;
    for (const char *name : {"d", "b", "a"})
        content.addVariable(name, double(*name));
    content.sortVariables();
    for (const char *name : {"e", "c"})
        content.addVariable(name, double(*name));
    QCOMPARE(content.findVariable("e"), 3);
    QCOMPARE(content.findVariable("c"), 4);
    content.sortVariables();
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(PI2QString(content.variableName(i)), QString(QChar('a' + i)));
        QCOMPARE(content.variableValue(i).real(), double('a' + i));
        QCOMPARE(content.findVariable(content.variableName(i)), i);
    }
}

void tst_Evaluator::contentRefusesBadNumbers()
{
    PIEvaluatorContent content;
    content.addVariable("a", 1);
    for (const int index : {-1, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        QVERIFY(!content.setVariableValue(index, 5));
        QVERIFY(content.variableName(index).isEmpty());
        QCOMPARE(content.variableValue(index).real(), 0.0);
    }
    QCOMPARE(content.variableValue(0).real(), 1.0);
    QVERIFY(content.setVariableValue(0, 2));
}

KEL_TEST_MAIN(tst_Evaluator)
#include "tst_evaluator.moc"
