#include "kelprocess.h"
#include "testmain.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <memory>
#include <sys/stat.h>
#include <vector>

namespace
{

constexpr qint64 HugeSize = qint64(3) << 30; // more than a size of 31 bits tells
constexpr int AnswerMs = 30000;              // on a busy machine; nothing may wait for ever

const char Form[] = "<ui version='4.0'><widget class='QWidget' name='P'/></ui>";

/// A command line with "FILE" in the place of what is tried.
struct Use {
    const char *words;
    int status;
};

/// Every way in which a command takes a file that somebody else wrote.
constexpr Use Uses[] = {
    {"panel FILE --screenshot p.png", 1},
    {"panel form.ui --screenshot p.png --db FILE", 1},
    {"check FILE", 2},
    {"check form.ui --db FILE", 2},
    {"sim FILE --tcp 0", 1},
    {"sim --replay FILE --tcp 0", 1},
    {"monitor log --once --db FILE", 1},
    {"catalog make FILE made.sqlite", 1},
    {"catalog show FILE", 1},
    {"catalog export FILE", 1},
    {"project show FILE", 1},
    {"project check FILE", 1},
    {"project set FILE version=2", 1},
};

} // namespace

/// Whatever stands where a file is expected: one line that says so, soon, and the right exit status.
class tst_ForeignFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyCommandRefuses_data();
    void everyCommandRefuses();
    void logThatIsNoneIsRefused_data();
    void logThatIsNoneIsRefused();
    void lastLineNeedsNoBreak();
    void wordThatIsNoTextIsRefused();
    void complaintIsOneLine();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    void write(const char *name, const QByteArray &content) const;

    QTemporaryDir m_folder;
};

void tst_ForeignFiles::write(const char *name, const QByteArray &content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

void tst_ForeignFiles::initTestCase()
{
    write("form.ui", Form);
    write("log", "# kel traffic log\n");
    write("empty", {});
    QByteArray noise(5000, '\0');
    QRandomGenerator dice(1);
    for (char &byte : noise)
        byte = char(dice.generate());
    write("noise", "\xFF\xFE" + noise);
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("folder")));
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    QVERIFY(QFile::link(path("loop b"), path("loop a")) && QFile::link(path("loop a"), path("loop b")));
    QVERIFY(QFile::link(path("nowhere"), path("dangling")));
    QFile huge(path("huge"));
    QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(HugeSize)); // takes no room on the disk
}

void tst_ForeignFiles::everyCommandRefuses_data()
{
    QTest::addColumn<QString>("file");

    for (const char *name : {"noise", "folder", "pipe", "loop a", "dangling", "huge", "missing"})
        QTest::newRow(name) << QString::fromLatin1(name);
    QTest::newRow("name without a text") << QString();
    QTest::newRow("file in a file") << QStringLiteral("form.ui/x");
    QTest::newRow("device without an end") << QStringLiteral("/dev/zero");
    QTest::newRow("file that cannot be read") << QStringLiteral("/proc/self/mem"); // opens, then fails
}

/// All commands at once: what hangs keeps nobody but itself waiting.
void tst_ForeignFiles::everyCommandRefuses()
{
    QFETCH(QString, file);
    if (file.startsWith(QLatin1Char('/')) && !QFile::exists(file))
        QSKIP("this machine has no such file");
    std::vector<std::pair<Use, std::unique_ptr<QProcess>>> runs;
    for (const Use &use : Uses) {
        QStringList words = QString::fromLatin1(use.words).split(QLatin1Char(' '));
        if (file.isEmpty() && words.contains(QLatin1String("--db")))
            continue; // an empty name is no catalogue
        words.replaceInStrings(QStringLiteral("FILE"), file);
        runs.emplace_back(use, std::make_unique<QProcess>());
        setUpKel(*runs.back().second, words, m_folder.path());
        runs.back().second->start();
    }
    for (const auto &[use, run] : runs) {
        QVERIFY2(run->waitForFinished(AnswerMs), use.words);
        const QByteArray errors = run->readAllStandardError();
        QVERIFY2(run->exitStatus() == QProcess::NormalExit, use.words);
        QVERIFY2(run->exitCode() == use.status, (use.words + QByteArray::number(run->exitCode())).constData());
        QVERIFY2(errors.startsWith("kel: ") && errors.count('\n') == 1, (use.words + errors).constData());
    }
    QVERIFY(!QFile::exists(path("made.sqlite")));
    QVERIFY(!QFile::exists(path("p.png")));
}

void tst_ForeignFiles::logThatIsNoneIsRefused_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("noise") << QStringLiteral("noise");
    QTest::newRow("line without an end") << QStringLiteral("huge");
    QTest::newRow("file that cannot be read") << QStringLiteral("/proc/self/mem");
    QTest::newRow("pipe") << QStringLiteral("pipe");
}

void tst_ForeignFiles::logThatIsNoneIsRefused()
{
    QFETCH(QString, file);
    const KelRun run = runKel({QStringLiteral("monitor"), file, QStringLiteral("--once")}, m_folder.path());
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.startsWith("kel: ") && run.errors.count('\n') == 1, run.errors.constData());
}

void tst_ForeignFiles::lastLineNeedsNoBreak()
{
    write("cut", "22:57:18.832  device <- A1 01\n22:57:18.833  device -> A1 02");
    const KelRun run = runKel({QStringLiteral("monitor"), path("cut"), QStringLiteral("--once")});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, QByteArray("22:57:18.832  device <- A1 01\n22:57:18.833  device -> A1 02\n"));
}

/// The file would be made under another name than the given one.
void tst_ForeignFiles::wordThatIsNoTextIsRefused()
{
    QProcess shell;
    shell.setWorkingDirectory(m_folder.path());
    const QString words = QStringLiteral("exec '%1' project new \"$(printf 'a\\377.kvp')\"");
    shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), words.arg(kelProgramPath())});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.exitCode(), 2);
    QCOMPARE(shell.readAllStandardError(), QByteArray("kel: the command line has bytes that are no UTF-8 text\n"));
    QVERIFY(QDir(m_folder.path()).entryList({QStringLiteral("a*.kvp")}).isEmpty());
}

void tst_ForeignFiles::complaintIsOneLine()
{
    const QString two = QStringLiteral("two\nlines");
    for (const QStringList &words :
         {QStringList{two}, {QStringLiteral("check"), two}, {QStringLiteral("check"), QStringLiteral("a"), two}}) {
        const KelRun run = runKel(words, m_folder.path());
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.startsWith("kel: ") && run.errors.count('\n') == 1, run.errors.constData());
    }
}

KEL_TEST_MAIN(tst_ForeignFiles)
#include "tst_foreignfiles.moc"
