#include "ptypair.h"
#include "testmain.h"

#include <QProcess>
#include <QTemporaryDir>

class tst_FaultKill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void killedAtEveryStep();

private:
    /// Runs until its end or step \a step; true when it was killed there.
    bool run(const PtyPair &pty, const QString &pinLog, int step);
};

bool tst_FaultKill::run(const PtyPair &pty, const QString &pinLog, int step)
{
    QProcess process;
    process.start(QStringLiteral(KEL_FRAME_PROGRAM), {pty.path(), pinLog, QString::number(step)});
    process.waitForFinished();
    const bool isKilled = process.exitStatus() == QProcess::CrashExit;
    if (!isKilled && process.exitCode() != 0)
        qFatal("the program ended with %d: %s", process.exitCode(), process.readAllStandardError().constData());
    return isKilled;
}

/// A driver that was left sending is released first of all, before anything is sent again.
void tst_FaultKill::killedAtEveryStep()
{
    const QTemporaryDir dir;
    int step = 1;
    int leftSending = 0;
    for (bool isKilled = true; isKilled; ++step) {
        PtyPair pty;
        QFile log(dir.filePath(QStringLiteral("pins%1").arg(step)));
        isKilled = run(pty, log.fileName(), step);
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray before = log.readAll();
        pty.comeBack(); // what the first run left on the line is of no interest

        QVERIFY(!run(pty, log.fileName(), 0));
        const QByteArray after = log.readAll();

        QVERIFY2(before.startsWith("IL"), before.constData());
        QVERIFY2(after == "ILHLHL", after.constData());
        QCOMPARE(pty.read(24), QByteArray("first frame.second frame"));
        leftSending += before.endsWith('H') ? 1 : 0;
    }
    qInfo("%d steps, the driver left sending at %d of them", step - 2, leftSending);
    // Each of the two frames: before and after each of its two levels, three writes, the hold, and two
    // questions whether all is out.
    QVERIFY(step > 2 * 10);
    QVERIFY(leftSending >= 2 * 5);
}

KEL_TEST_MAIN(tst_FaultKill)
#include "tst_faultkill.moc"
