#include "testmain.h"

#include <commandtext.h>
#include <pievaluator.h>
#include <piqt.h>

using Arguments = QMap<int, int>;

class tst_CommandText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytes_data();
    void bytes();
    void expressions_data();
    void expressions();
    void failures_data();
    void failures();
    void unsetArgumentsAreCreated();
    void argumentsArePresentValues();
    void errorsGoToTheHandler();
    void failedExpressionIsCheckedAgain();
    void withoutAHandlerErrorsAreQuiet();
};

static QString hex(const PIByteArray &bytes)
{
    return QString::fromLatin1(PI2QByteArray(bytes).toHex(' ')).toUpper();
}

/// The bytes for device 5 with argument 0 = 200, 1 = 300, 2 = -1, -1 = 17 and the same variables.
static QString bytesOf(const QString &text, int deviceID = 5, QStringList *errors = nullptr)
{
    Arguments arguments{{0, 200}, {1, 300}, {2, -1}, {-1, 17}};
    PIEvaluator evaluator;
    for (auto it = arguments.cbegin(); it != arguments.cend(); ++it)
        evaluator.content().addVariable(Q2PIString(QLatin1Char('a') + QString::number(it.key())), it.value());
    evaluator.content().sortVariables();
    const auto onError = [errors](const QString &error) {
        if (errors)
            *errors << error;
    };
    return hex(CommandText::fromText(text).bytes(arguments, deviceID, evaluator, onError));
}

void tst_CommandText::bytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("deviceID");
    QTest::addColumn<QString>("bytes");

    const auto row = [](const char *name, const char *text, int deviceID, const char *bytes) {
        QTest::newRow(name) << QString::fromUtf8(text) << deviceID << QString::fromLatin1(bytes);
    };
    row("empty text has no bytes", "", 5, "");
    row("only spaces have no bytes", "   ", 5, "");
    row("all kinds of words", "AA %id %1 %(a1/2) 0d", 5, "AA 05 2C 96 0D");
    row("two spaces separate once", "01 02  03", 5, "01 02 03");
    row("spaces at the ends", " 01 02 ", 5, "01 02");
    row("tab and line break separate nothing", "01\t02 0A\n0B", 5, "00 00");
    row("either letter case", "aB Ab", 5, "AB AB");
    row("prefix 0x", "0x1F", 5, "1F");
    row("above a byte keeps the low 8 bits", "100 1FF 12345678", 5, "00 FF 78");
    row("negative number", "-1 -80", 5, "FF 80");
    row("beyond an int is 0", "80000000 FFFFFFFF FFFFFFFFFFFFFFFFFF", 5, "00 00 00");
    row("no number is 0", "xyz * 2) 1G", 5, "00 00 00 00");
    row("percent inside is no number", "A%1", 5, "00");
    row("digits of other alphabets are no number", "\xD9\xA3", 5, "00");

    row("device id", "%id", 5, "05");
    row("device id keeps the low 8 bits", "%id", 0x1234, "34");
    row("no device id", "%id", -1, "FF");
    row("other letter case is argument 0", "%ID %Id %iD", 5, "C8 C8 C8");
    row("longer word is argument 0", "%id1 %idx", 5, "C8 C8");

    row("arguments keep the low 8 bits", "%0 %1 %2", 5, "C8 2C FF");
    row("argument number may have zeros or a sign", "%01 %+1", 5, "2C 2C");
    row("negative argument", "%-1", 5, "11");
    row("argument number is decimal", "%1F %0x1", 5, "C8 C8");
    row("bare percent sign is argument 0", "%", 5, "C8");
    row("no number is argument 0", "%x %% %1.5 %1(", 5, "C8 C8 C8 C8");
    row("number beyond an int is argument 0", "%2147483648", 5, "C8");
    row("bracket later than second is no expression", "% (a0) %a(1)", 5, "C8 00 C8");
}

void tst_CommandText::bytes()
{
    QFETCH(QString, text);
    QFETCH(int, deviceID);
    QFETCH(QString, bytes);

    QCOMPARE(bytesOf(text, deviceID), bytes);
}

void tst_CommandText::expressions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("bytes");

    const auto row = [](const char *name, const char *text, const char *bytes) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromLatin1(bytes);
    };
    row("argument as a variable", "%(a0*2)", "90");
    row("variables of two arguments", "%(a0+a1)", "F4");
    row("all behind the percent sign belongs to it", "%(1)+2 %(a0)-a1+101", "03 01");
    row("decimal numbers, not hexadecimal", "%(10)", "0A");
    row("half away from zero, negative", "%(-2.5) %(-0.5) %(-1.5)", "FD FF FE");
    row("half away from zero, positive", "%(2.5) %(0.5) %(1.5)", "03 01 02");
    row("below half", "%(2.4) %(-2.4) %(-0.4) %(0.4)", "02 FE 00 00");
    row("division is real", "%(7/2) %(7/2*2) %(-7/2)", "04 07 FC");
    row("only the real part counts", "%(sqrt(-4)) %(3+sqrt(-4))", "00 03");
    row("low 8 bits of the whole number", "%(256) %(511.5) %(-256) %(4294967297)", "00 00 00 01");
    row("beyond 64 bits the nearest", "%(1e300) %(-1e300)", "FF 00");
    row("at the edge of 64 bits", "%(2^63) %(-(2^63)) %(2^62+2^61)", "FF 00 00");
}

void tst_CommandText::expressions()
{
    QFETCH(QString, text);
    QFETCH(QString, bytes);

    QStringList errors;
    QCOMPARE(bytesOf(text, 5, &errors), bytes);
    QCOMPARE(errors, QStringList());
}

void tst_CommandText::failures_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("bytes");
    QTest::addColumn<int>("errors");

    const auto row = [](const char *name, const char *text, const char *bytes, int errors) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromLatin1(bytes) << errors;
    };
    row("spaces tear an expression apart", "%(a0 * 2)", "00 00", 1);
    row("only its own byte is missing", "01 %(a0+) 02 %(x) 03", "01 02 03", 2);
    row("unknown variable", "%(a9)", "", 1);
    row("upper case is another name", "%(A0)", "", 1);
    row("nothing between the brackets", "%( %()", "", 2);
    row("division by zero", "%(1/0) %(-1/0) %(0/0) 07", "07", 3);
    row("overflow", "%(1e300*1e300)", "", 1);
    row("text is no number", "%(\"a\")", "", 1);
    row("variables cannot be set", "%(a0=1) %0", "C8", 1);
}

void tst_CommandText::failures()
{
    QFETCH(QString, text);
    QFETCH(QString, bytes);
    QFETCH(int, errors);

    QStringList reported;
    QCOMPARE(bytesOf(text, 5, &reported), bytes);
    QCOMPARE(reported.size(), errors);
    QVERIFY(!reported.contains(QString()));
}

void tst_CommandText::unsetArgumentsAreCreated()
{
    Arguments arguments{{1, 9}};
    PIEvaluator evaluator;
    const CommandText command = CommandText::fromText(QStringLiteral("%7 %-3 %1 % %2147483647"));
    QCOMPARE(hex(command.bytes(arguments, 5, evaluator)), QStringLiteral("00 00 09 00 00"));
    QCOMPARE(arguments, (Arguments{{-3, 0}, {0, 0}, {1, 9}, {7, 0}, {2147483647, 0}}));
    QCOMPARE(evaluator.content().variablesCount(), 0);
}

void tst_CommandText::argumentsArePresentValues()
{
    Arguments arguments{{0, 1}};
    PIEvaluator evaluator;
    const int index = evaluator.content().addVariable("a0", 1.0);
    const CommandText command = CommandText::fromText(QStringLiteral("%id %0 %(a0*2)"));
    QCOMPARE(hex(command.bytes(arguments, 5, evaluator)), QStringLiteral("05 01 02"));
    arguments[0] = 2;
    evaluator.content().setVariableValue(index, 3.0);
    QCOMPARE(hex(command.bytes(arguments, 6, evaluator)), QStringLiteral("06 02 06"));
}

void tst_CommandText::errorsGoToTheHandler()
{
    Arguments arguments;
    PIEvaluator evaluator;
    QStringList errors;
    const auto onError = [&errors](const QString &error) { errors << error; };
    CommandText::fromText(QStringLiteral("%(1/0) %(nothing)")).bytes(arguments, 5, evaluator, onError);
    QCOMPARE(errors.size(), 2);
    QCOMPARE(errors.at(0), QStringLiteral("The result is not finite."));
    QVERIFY(!evaluator.check("(nothing)"));
    QCOMPARE(errors.at(1), PI2QString(evaluator.error()));
}

void tst_CommandText::failedExpressionIsCheckedAgain()
{
    Arguments arguments;
    PIEvaluator evaluator;
    int errors = 0;
    const auto onError = [&errors](const QString &) { ++errors; };
    const CommandText command = CommandText::fromText(QStringLiteral("%(a0+1)"));
    QCOMPARE(hex(command.bytes(arguments, 5, evaluator, onError)), QString());
    QCOMPARE(hex(command.bytes(arguments, 5, evaluator, onError)), QString());
    QCOMPARE(errors, 2);
    evaluator.content().addVariable("a0", 4.0);
    QCOMPARE(hex(command.bytes(arguments, 5, evaluator, onError)), QStringLiteral("05"));
    QCOMPARE(errors, 2);
}

void tst_CommandText::withoutAHandlerErrorsAreQuiet()
{
    Arguments arguments;
    PIEvaluator evaluator;
    QCOMPARE(hex(CommandText::fromText(QStringLiteral("%(x) 01")).bytes(arguments, 5, evaluator)),
             QStringLiteral("01"));
}

KEL_TEST_MAIN(tst_CommandText)
#include "tst_commandtext.moc"
