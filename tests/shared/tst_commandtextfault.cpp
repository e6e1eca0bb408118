#include "testmain.h"

#include <commandtextfault.h>

class tst_CommandTextFault : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void command_data();
    void command();
    void answer_data();
    void answer();
    void arguments();
};

namespace
{

/// The faults in a line: "xyz is no number, so it sends 00; …".
QString lineOf(const QVector<TextFault> &faults)
{
    QStringList lines;
    for (const TextFault &fault : faults)
        lines << fault.word + QLatin1Char(' ') + fault.reason;
    return lines.join(QStringLiteral("; "));
}

} // namespace

void tst_CommandTextFault::command_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("faults");

    const auto row = [](const char *text, const char *faults) {
        QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(faults);
    };
    row("", "");
    row("A1 0x1F %id %0 %12 %(a0*254/100) 1FF -1", "");
    row("%(1/(a0-a1)) %(100/a0) %(a3/(a0-1))", "");
    row("A1 xyz 02", "xyz is no number, so it sends 00");
    row("%ID", "%ID is no argument's number, so it means argument 0");
    row("%", "% is no argument's number, so it means argument 0");
    row("01 %(a0 * 2) 03", "%(a0 * 2) has spaces inside, which end it: write \"%(a0*2)\"");
    row("%(1/0)", "%(1/0) gives no byte: the result is not finite");
}

void tst_CommandTextFault::command()
{
    QFETCH(QString, text);
    QFETCH(QString, faults);
    QCOMPARE(lineOf(findCommandFaults(text)), faults);
}

void tst_CommandTextFault::answer_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("deviceID");
    QTest::addColumn<QString>("faults");

    const auto row = [](const char *text, int deviceID, const char *faults) {
        QTest::addRow("%s of %d", text, deviceID)
            << QString::fromLatin1(text) << deviceID << QString::fromLatin1(faults);
    };
    row("", 1, "");
    row("FF %id %0 0", 255, "");
    row("100", 1, "100 is 256, above 255, so no message matches");
    row("-1", 1, "-1 is -1, below 0, so it takes any byte as argument 0");
    row("A1 %id", 300, "%id is the device's own id 300, above 255, so no message matches");
    row("%id", -2, "%id is the device's own id -2, below 0, so it takes any byte as argument 1");
    row("zz", 1, "zz is no number, so it expects 00");
    row("%x", 1, "%x is no argument's number, so it means argument 0");
    row("%-12", 1, "%-12 is no argument's number, so it expects the byte 0B");
    row("%-256", 1, "%-256 is no argument's number, so it expects the byte FF");
    row("%-257", 1, "%-257 is the fixed value 256, above 255, so no message matches");
    row("%(a1)", 1, "%(a1) is an expression, which answers do not have, so it means argument 0");
}

void tst_CommandTextFault::answer()
{
    QFETCH(QString, text);
    QFETCH(int, deviceID);
    QFETCH(QString, faults);
    QCOMPARE(lineOf(findAnswerFaults(text, deviceID)), faults);
}

void tst_CommandTextFault::arguments()
{
    const TextArguments used = argumentsOfCommand(QStringLiteral("A1 %id %1 %x %(a2+ba3+a4b+0xa5+a06+a7) 0D"));
    QCOMPARE(used.named, QSet<int>({0, 1}));
    QCOMPARE(used.inExpressions, QSet<int>({2, 7}));
    // A slip of the pen keeps its kind.
    QCOMPARE(findCommandFaults(QStringLiteral("%(a0*)")).value(0).kind, TextFault::Kind::BadExpression);
    QCOMPARE(findCommandFaults(QStringLiteral("%(b)")).size(), 1);
    QCOMPARE(findAnswerFaults(QStringLiteral("100"), 1).value(0).kind, TextFault::Kind::OutsideAByte);
}

KEL_TEST_MAIN(tst_CommandTextFault)
#include "tst_commandtextfault.moc"
