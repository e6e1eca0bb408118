#include "testmain.h"

#include <simulator/simulateddevice.h>

class tst_SimRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongLineIsNamed_data();
    void wrongLineIsNamed();
    void badExpressionIsNamed();
    void layoutMeansNothing();
    void linesBelongToTheirBlock();
    void firstMatchingRuleAnswers();
    void requestsHaveLengthAndFixedBytes();
    void capturedBytesAreArguments();
    void argumentsAreRemembered();
    void failedMatchChangesNothing();
    void argumentsBelongToOneDevice();
    void waitDelaysLaterReplies();
    void valuesAreBytes();
    void failingExpressionIsTold();
    void reportsRun();
};

namespace
{

SimulatorRules rulesOf(const char *text)
{
    const SimulatorRules rules = SimulatorRules::fromText(text, QStringLiteral("x.rules"));
    if (!rules.error.isEmpty())
        qWarning("%s", qPrintable(rules.error));
    return rules;
}

SimulatedDevice deviceOf(const char *text)
{
    return SimulatedDevice(rulesOf(text).devices.value(0));
}

/// The replies to \a request as "DELAY:BYTES" joined by a blank; "none" when no rule matches.
QString answerOf(SimulatedDevice &device, const char *request)
{
    const auto replies = device.answer(QByteArray::fromHex(request));
    if (!replies)
        return QStringLiteral("none");
    QStringList texts;
    for (const SimulatorReply &reply : *replies)
        texts << QString::number(reply.delayMs) + QLatin1Char(':') + QString::fromLatin1(reply.bytes.toHex());
    return texts.join(QLatin1Char(' '));
}

} // namespace

void tst_SimRules::wrongLineIsNamed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const char *text, const char *error) {
        QTest::newRow(name) << QByteArray(text) << QString::fromLatin1(error);
    };
    row("empty file", "", "x.rules:1: no \"device\" line in the whole file");
    row("comments only", "# nothing\n", "x.rules:2: no \"device\" line in the whole file");
    row("unknown word", "device d id 1\nwhen 01\n",
        "x.rules:2: \"when\" is none of: device, on, every, reply, set, wait");
    row("device without number", "device d\n", "x.rules:1: a device is written: device NAME id NUMBER");
    row("device number too large", "device d id 256\n", "x.rules:1: \"256\" is not a device number from 0 to 255");
    row("rule before a device", "on 01\n", "x.rules:1: a \"device\" line must come first");
    row("request without bytes", "device d id 1\non\n", "x.rules:2: \"on\" needs the bytes of a request");
    row("request with an expression", "device d id 1\non %(1)\n",
        "x.rules:2: \"%(1)\" is not a byte (00 to FF), %id or %NUMBER");
    row("no hexadecimal", "device d id 1\n\non 0G\n", "x.rules:3: \"0G\" is not a byte (00 to FF), %id or %NUMBER");
    row("more than a byte", "device d id 1\non 100\n", "x.rules:2: \"100\" is not a byte (00 to FF), %id or %NUMBER");
    row("signed byte", "device d id 1\non -1\n", "x.rules:2: \"-1\" is not a byte (00 to FF), %id or %NUMBER");
    row("argument without number", "device d id 1\non %\n",
        "x.rules:2: \"%\" is not a byte (00 to FF), %id or %NUMBER");
    row("argument number too large", "device d id 1\non %10000\n",
        "x.rules:2: \"%10000\" is not a byte (00 to FF), %id or %NUMBER");
    row("reply outside a block", "device d id 1\nreply 01\n",
        "x.rules:2: \"reply\" belongs below an \"on\" or \"every\" line");
    row("reply below start values", "device d id 1\nset 1 = 1\nreply 01\n",
        "x.rules:3: \"reply\" belongs below an \"on\" or \"every\" line");
    row("reply without bytes", "device d id 1\non 01\nreply\n", "x.rules:3: \"reply\" needs the bytes to send");
    row("wrong byte in a reply", "device d id 1\non 01\nreply xyz\n",
        "x.rules:3: \"xyz\" is not a byte (00 to FF), %id, %NUMBER or %(EXPRESSION)");
    row("set without equals", "device d id 1\nset 1 2\n", "x.rules:2: a value is written: set NUMBER = EXPRESSION");
    row("set of no number", "device d id 1\nset a1 = 2\n",
        "x.rules:2: \"a1\" is not an argument's number from 0 to 9999");
    row("period too short", "device d id 1\nevery 9\n", "x.rules:2: \"9\" is not a period in ms from 10 to 86400000");
    row("report with two numbers", "device d id 1\nevery 9 9\n", "x.rules:2: a report is written: every MILLISECONDS");
    row("negative wait", "device d id 1\non 01\nwait -1\n", "x.rules:3: \"-1\" is not a delay in ms from 0 to 3600000");
    row("wait among start values", "device d id 1\nwait 5\n",
        "x.rules:2: a delay is written below \"on\" or \"every\": wait MILLISECONDS");
}

void tst_SimRules::wrongLineIsNamed()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);

    QCOMPARE(SimulatorRules::fromText(text, QStringLiteral("x.rules")).error, error);
}

void tst_SimRules::badExpressionIsNamed()
{
    const SimulatorRules rules = rulesOf("device d id 1\non %1\nreply %(a1+1)\nset 2 = a1*\n");
    const QString error = SimulatedDevice::firstBadExpression(rules.devices.at(0), QStringLiteral("x.rules"));

    QVERIFY2(error.startsWith(QLatin1String("x.rules:4: (a1*): ")), qPrintable(error));
    QCOMPARE(SimulatedDevice::firstBadExpression(rulesOf("device d id 1\nset 2 = a2/0\n").devices.at(0), QString()),
             QString());
}

void tst_SimRules::layoutMeansNothing()
{
    SimulatedDevice device =
        deviceOf("\n  # first\r\n\tdevice\td id 7 # here\r\non   0a\tB\n\n reply %id  # and here\n");

    QCOMPARE(device.rules().name, QStringLiteral("d"));
    QCOMPARE(answerOf(device, "0a0b"), QStringLiteral("0:07"));
}

void tst_SimRules::linesBelongToTheirBlock()
{
    const SimulatorRules rules = rulesOf("device d id 1\nset 1 = 3\non 01\nreply 02\nevery 50\nreply 03\nreply 04\n"
                                         "device e id 2\non 01\n");
    QCOMPARE(rules.devices.size(), 2);
    QCOMPARE(rules.devices.at(0).startValues.size(), 1);
    QCOMPARE(rules.devices.at(0).rules.at(0).steps.size(), 1);
    QCOMPARE(rules.devices.at(0).reports.at(0).steps.size(), 2);
    QCOMPARE(rules.devices.at(0).reports.at(0).periodMs, 50);
    QCOMPARE(rules.devices.at(1).rules.at(0).steps.size(), 0);
    QCOMPARE(rules.devices.at(1).rules.at(0).line, 9);
}

void tst_SimRules::firstMatchingRuleAnswers()
{
    SimulatedDevice device = deviceOf("device d id 1\non 01 %1\nreply 0A\non 01 02\nreply 0B\n");
    QCOMPARE(answerOf(device, "0102"), QStringLiteral("0:0a"));
}

void tst_SimRules::requestsHaveLengthAndFixedBytes()
{
    SimulatedDevice device = deviceOf("device d id 200\non FF %id\nreply 01\non 05\n");
    QCOMPARE(answerOf(device, "ffc8"), QStringLiteral("0:01"));
    QCOMPARE(answerOf(device, "ffc801"), QStringLiteral("none"));
    QCOMPARE(answerOf(device, "ff"), QStringLiteral("none"));
    QCOMPARE(answerOf(device, "ffc7"), QStringLiteral("none"));
    QCOMPARE(answerOf(device, "05"), QString());
}

void tst_SimRules::capturedBytesAreArguments()
{
    SimulatedDevice device = deviceOf("device d id 1\non %3 %12\nreply %12 %3 %(a3+a12)\n");
    QCOMPARE(answerOf(device, "10ff"), QStringLiteral("0:ff100f"));
}

void tst_SimRules::argumentsAreRemembered()
{
    SimulatedDevice device =
        deviceOf("device relay id 1\nset 5 = 1\non 01\nset 5 = 1 - a5\nreply %5\non 02\nreply %5\n");
    QCOMPARE(answerOf(device, "02"), QStringLiteral("0:01"));
    QCOMPARE(answerOf(device, "01"), QStringLiteral("0:00"));
    QCOMPARE(answerOf(device, "02"), QStringLiteral("0:00"));
    QCOMPARE(answerOf(device, "01"), QStringLiteral("0:01"));
}

void tst_SimRules::failedMatchChangesNothing()
{
    SimulatedDevice device = deviceOf("device d id 1\nset 1 = 9\non %1 00\non %2 01\nreply %1 %2\n");
    QCOMPARE(answerOf(device, "3301"), QStringLiteral("0:0933"));
}

void tst_SimRules::argumentsBelongToOneDevice()
{
    const SimulatorRules rules = rulesOf("device d id 1\non 01 %1\ndevice e id 2\non 02\nreply %1\n");
    SimulatedDevice first(rules.devices.at(0));
    SimulatedDevice second(rules.devices.at(1));
    QCOMPARE(answerOf(first, "0133"), QString());
    QCOMPARE(answerOf(second, "02"), QStringLiteral("0:00"));
}

void tst_SimRules::waitDelaysLaterReplies()
{
    SimulatedDevice device = deviceOf("device d id 1\non 01\nreply 0A\nwait 20\nreply 0B\nwait 5\nreply 0C\n");
    QCOMPARE(answerOf(device, "01"), QStringLiteral("0:0a 20:0b 25:0c"));
}

void tst_SimRules::valuesAreBytes()
{
    SimulatedDevice device =
        deviceOf("device d id 1\nset 1 = 255\non 01\nset 1 = a1+1\nreply %1\non 02\nset 1 = -2.5\nreply %1\n");
    QCOMPARE(answerOf(device, "01"), QStringLiteral("0:00"));
    QCOMPARE(answerOf(device, "02"), QStringLiteral("0:fd"));
}

void tst_SimRules::failingExpressionIsTold()
{
    QStringList errors;
    SimulatedDevice device(
        rulesOf("device d id 1\nset 2 = 7\non %1\nset 2 = 8/a1\nreply AA %(1/a1) %2\n").devices.at(0),
        [&errors](const QString &error) { errors << error; });
    QCOMPARE(answerOf(device, "00"), QStringLiteral("0:aa07"));
    QCOMPARE(errors.size(), 2);
    QVERIFY2(errors.at(0).startsWith(QLatin1String("d, line 4: ")), qPrintable(errors.at(0)));
    QVERIFY2(errors.at(1).startsWith(QLatin1String("d, line 5: ")), qPrintable(errors.at(1)));
}

void tst_SimRules::reportsRun()
{
    SimulatedDevice device = deviceOf("device d id 3\nevery 1000\nset 1 = a1+1\nreply %id %1\n");
    QCOMPARE(device.report(0).at(0).bytes, QByteArray::fromHex("0301"));
    QCOMPARE(device.report(0).at(0).bytes, QByteArray::fromHex("0302"));
    QCOMPARE(device.argument(1), 2);
}

KEL_TEST_MAIN(tst_SimRules)
#include "tst_simrules.moc"
