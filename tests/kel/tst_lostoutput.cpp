#include "kelprocess.h"
#include "testmain.h"

#include <examples.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <unistd.h>

namespace
{

const char Form[] = "<ui version='4.0'><widget class='QWidget' name='P'><property name='geometry'><rect><x>0</x><y>0"
                    "</y><width>400</width><height>300</height></rect></property></widget></ui>";

/// How a command is kept from writing. "$@" is the command.
const char Disk[] = "trap '' XFSZ; ulimit -f 0; exec \"$@\""; ///< Every file may have 0 bytes: the disk is full.
const char Terminal[] = "exec \"$@\" >/dev/full";
const char Nowhere[] = "exec \"$@\" >&-";

} // namespace

/// Output that cannot be written is told and ends with status 1; what was there before stays.
class tst_LostOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void fullDiskLeavesFilesAsTheyWere_data();
    void fullDiskLeavesFilesAsTheyWere();
    void linesThatGetLostAreTold_data();
    void linesThatGetLostAreTold();
    void linkThatCannotBeMadeIsTold();
    void killedWhileMakingACatalogue();
    void closedStreamsKeepTheirNumbers();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    void write(const char *name, const QByteArray &content) const;
    QByteArray content(const QString &name) const;
    /// Runs `kel` in the folder by a shell \a script.
    KelRun runIn(const char *script, const QString &words) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_LostOutput::write(const char *name, const QByteArray &content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

QByteArray tst_LostOutput::content(const QString &name) const
{
    QFile file(m_folder->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

KelRun tst_LostOutput::runIn(const char *script, const QString &words) const
{
    QProcess process;
    process.setWorkingDirectory(m_folder->path());
    process.start(QStringLiteral("sh"), QStringList{QStringLiteral("-c"), QString::fromLatin1(script),
                                                    QStringLiteral("sh"), kelProgramPath()} +
                                            words.split(QLatin1Char(' ')));
    KelRun run;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.output = process.readAllStandardOutput();
    run.errors = process.readAllStandardError();
    return run;
}

void tst_LostOutput::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    write("form.ui", Form);
    write("log", "22:57:18.832  device <- A1 01\n");
    QVERIFY(QFile::copy(examplePath(QStringLiteral("hall/hall.toml")), path("hall.toml")));
    QCOMPARE(
        runKel({QStringLiteral("catalog"), QStringLiteral("make"), path("hall.toml"), path("old.sqlite")}).exitCode, 0);
    QCOMPARE(runKel({QStringLiteral("project"), QStringLiteral("new"), path("old.kvp")}).exitCode, 0);
}

void tst_LostOutput::fullDiskLeavesFilesAsTheyWere_data()
{
    QTest::addColumn<QString>("words");
    for (const char *words :
         {"catalog make hall.toml old.sqlite", "catalog make hall.toml new.sqlite",
          "catalog export old.sqlite new.toml", "project new new.kvp", "project new --force old.kvp",
          "project set old.kvp version=3", "project add-script old.kvp a.js", "panel form.ui --screenshot new.png"})
        QTest::newRow(words) << QString::fromLatin1(words);
}

void tst_LostOutput::fullDiskLeavesFilesAsTheyWere()
{
    QFETCH(QString, words);
    const QStringList names = QDir(m_folder->path()).entryList(QDir::Files);
    QVector<QByteArray> before;
    for (const QString &name : names)
        before << content(name);

    const KelRun run = runIn(Disk, words);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.startsWith("kel: ") && run.errors.count('\n') == 1, run.errors.constData());
    QVERIFY2(!run.errors.contains("Unknown error"), run.errors.constData());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), names);
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(content(names.at(i)), before.at(i));
}

void tst_LostOutput::linesThatGetLostAreTold_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<int>("status");
    QTest::newRow("help") << "--help" << 1;
    QTest::newRow("help of a command") << "catalog make --help" << 1;
    QTest::newRow("catalog show") << "catalog show old.sqlite" << 1;
    QTest::newRow("catalog export") << "catalog export old.sqlite" << 1;
    QTest::newRow("check") << "check form.ui --db old.sqlite --json" << 2;
    QTest::newRow("doctor") << "doctor --panel" << 1;
    QTest::newRow("monitor") << "monitor log --once" << 1;
    QTest::newRow("project show") << "project show old.kvp" << 1;
    QTest::newRow("template") << "template explain 01" << 1;
}

void tst_LostOutput::linesThatGetLostAreTold()
{
    QFETCH(QString, words);
    QFETCH(int, status);
    for (const char *script : {Terminal, Nowhere}) {
        const KelRun run = runIn(script, words);
        QCOMPARE(run.errors, QByteArray("kel: cannot write to standard output\n"));
        QCOMPARE(run.exitCode, status);
    }
}

void tst_LostOutput::linkThatCannotBeMadeIsTold()
{
    write("rules", "device d id 1\n");
    const KelRun run = runIn("exec \"$@\"", QStringLiteral("sim rules --link form.ui/port"));
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, QByteArray("kel: form.ui/port: Not a directory\n"));
}

/// Whenever it happens, the old catalogue is there or the new one, and both can be read.
void tst_LostOutput::killedWhileMakingACatalogue()
{
    const QByteArray old = content(QStringLiteral("old.sqlite"));
    QByteArray source = "devices = [\n";
    for (int i = 0; i < 2000; ++i)
        source += "    {id = " + QByteArray::number(i) + ", name = \"D" + QByteArray::number(i) + "\"},\n";
    write("large.toml", source + "]\n");

    int killed = 0;
    bool isMade = false;
    for (int delayMs = 10; !isMade; delayMs += 10) {
        QProcess process;
        setUpKel(process, {QStringLiteral("catalog"), QStringLiteral("make"), path("large.toml"), path("old.sqlite")});
        process.start();
        QVERIFY(process.waitForStarted());
        if (!process.waitForFinished(delayMs))
            process.kill();
        QVERIFY(process.state() == QProcess::NotRunning || process.waitForFinished());
        killed += process.exitStatus() == QProcess::CrashExit ? 1 : 0;
        isMade = content(QStringLiteral("old.sqlite")) != old;
        QVERIFY(isMade || process.exitStatus() == QProcess::CrashExit);
    }
    const KelRun check = runKel({QStringLiteral("catalog"), QStringLiteral("check"), path("old.sqlite")});
    QVERIFY2(check.exitCode == 0, check.output.constData());
    QVERIFY(killed > 0);
}

/// Else a port would get what is meant for the terminal.
void tst_LostOutput::closedStreamsKeepTheirNumbers()
{
    write("rules", "device d id 1\n");
    QProcess process;
    process.setWorkingDirectory(m_folder->path());
    process.start(QStringLiteral("sh"),
                  {QStringLiteral("-c"), QStringLiteral("exec \"$0\" sim rules <&- >&- 2>&-"), kelProgramPath()});
    QVERIFY(process.waitForStarted());
    const QString folder = QStringLiteral("/proc/%1/").arg(process.processId());
    const auto leadsTo = [&folder](const char *link) { return QFile::symLinkTarget(folder + QLatin1String(link)); };
    const auto hasTerminal = [&leadsTo] {
        for (int i = 0; i < 30; ++i) {
            if (leadsTo(qPrintable(QStringLiteral("fd/%1").arg(i))) == QLatin1String("/dev/ptmx"))
                return true;
        }
        return false;
    };
    QTRY_VERIFY(leadsTo("exe") == QFileInfo(kelProgramPath()).canonicalFilePath() && hasTerminal());
    for (const char *stream : {"fd/0", "fd/1", "fd/2"})
        QCOMPARE(leadsTo(stream), QStringLiteral("/dev/null"));
    process.kill();
    QVERIFY(process.waitForFinished());
}

KEL_TEST_MAIN(tst_LostOutput)
#include "tst_lostoutput.moc"
