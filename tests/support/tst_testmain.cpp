#include "testmain.h"

class tst_TestMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unexpectedWarningFails();
    void expectedWarningPasses();
};

class Warns : public QObject
{
    Q_OBJECT

public:
    bool expected = false;

private Q_SLOTS:
    void warns()
    {
        if (expected)
            QTest::ignoreMessage(QtWarningMsg, "the warning of a nested test");
        qWarning("the warning of a nested test");
    }
};

// QTest cannot run inside itself: the nested test runs in this program, started once more.
static int runNested(bool expected)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(),
                  {expected ? QStringLiteral("--expected") : QStringLiteral("--unexpected")});
    return process.waitForFinished() ? process.exitCode() : -1;
}

void tst_TestMain::unexpectedWarningFails()
{
    QCOMPARE(runNested(false), 1);
}

void tst_TestMain::expectedWarningPasses()
{
    QCOMPARE(runNested(true), 0);
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    Warns nested;
    nested.expected = app.arguments().contains(QStringLiteral("--expected"));
    if (nested.expected || app.arguments().contains(QStringLiteral("--unexpected")))
        return runKelTest(&nested, app.arguments().mid(0, 1));

    tst_TestMain test;
    return runKelTest(&test, app.arguments());
}

#include "tst_testmain.moc"
