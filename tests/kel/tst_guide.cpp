#include "guidesteps.h"
#include "kelprocess.h"
#include "testmain.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace
{

constexpr int PatienceMs = 60000;
constexpr int Attempts = 5;

QString readText(const QString &path)
{
    QFile file(QStringLiteral(KEL_SOURCE_DIR "/") + path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString exampleText(const QString &path)
{
    return readText(QStringLiteral("examples/") + path);
}

QStringList linesOf(const QByteArray &printed)
{
    QStringList lines = QString::fromUtf8(printed).split(QLatin1Char('\n'));
    lines.removeLast();
    return lines;
}

} // namespace

/// Does what the guide says, word for word, in an empty folder.
class tst_Guide : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void steps();
    void difference_data();
    void difference();
    void readerFollowsTheGuide_data();
    void readerFollowsTheGuide();
    void guideShowsTheExample_data();
    void guideShowsTheExample();
    void picturesAndLinksAreThere_data();
    void picturesAndLinksAreThere();
    void everyDocumentIsListed();
    void troubleIsQuotedAsItIsTold();

private:
    void follow(const GuideStep &step);
    void run(const GuideStep &step);
    void startWhatGoesOn(const GuideStep &step);
    std::unique_ptr<QProcess> start(const GuideStep &step, bool isReplaced);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::vector<std::unique_ptr<QProcess>> m_goingOn;
};

void tst_Guide::steps()
{
    const auto example = [](const QString &path) { return QStringLiteral("<%1>").arg(path); };
    const QVector<GuideStep> steps = guideSteps(
        QStringLiteral("Save this as `a.txt`:\n\n```toml\nx = 1\n```\n\n```sh\ncat a.txt\n```\n\n```\nx = 1\n```\n\n"
                       "<!-- by hand -->\n```sh\nopen a.txt\n```\n\n<!-- goes on -->\n```sh\nserve\n```\n\n"
                       "A path:\n\n```\nnothing to do\n```\n\nSee [`b.ui`](../examples/c/b.ui).\n\n```sh\ntrue\n```\n"),
        example);
    QCOMPARE(steps.size(), 6);
    QCOMPARE(steps.at(0).kind, GuideStep::SaveFile);
    QCOMPARE(steps.at(0).file, QStringLiteral("a.txt"));
    QCOMPARE(steps.at(0).text, QStringLiteral("x = 1\n"));
    QCOMPARE(steps.at(1).kind, GuideStep::Run);
    QCOMPARE(steps.at(1).line, 7);
    QCOMPARE(steps.at(1).shown, QStringList{QStringLiteral("x = 1")});
    QCOMPARE(steps.at(2).kind, GuideStep::ByHand);
    QCOMPARE(steps.at(3).kind, GuideStep::GoesOn);
    QCOMPARE(steps.at(3).shown, QStringList());
    QCOMPARE(steps.at(4).file, QStringLiteral("b.ui"));
    QCOMPARE(steps.at(4).text, QStringLiteral("<c/b.ui>"));
    QCOMPARE(steps.at(5).text, QStringLiteral("true\n"));
}

void tst_Guide::difference_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("printed");
    QTest::addColumn<bool>("isSame");

    QTest::newRow("same") << "a b"
                          << "a b" << true;
    QTest::newRow("another word") << "a b"
                                  << "a c" << false;
    QTest::newRow("one more printed") << "a"
                                      << "a|b" << false;
    QTest::newRow("one less printed") << "a|b"
                                      << "a" << false;
    QTest::newRow("any lines first") << u8"…|b" << "a|a|b" << true;
    QTest::newRow("any lines last") << u8"a|…" << "a|b|c" << true;
    QTest::newRow("missing after any lines") << u8"…|b" << "a|a" << false;
    QTest::newRow("another time") << "10:20:30.400  a"
                                  << "11:22:33.444  a" << true;
    QTest::newRow("a time is needed") << "10:20:30.400  a"
                                      << "never  a" << false;
    QTest::newRow("any rest") << u8"a …" << "a b" << true;
    QTest::newRow("signs mean themselves") << "a.b (c)"
                                           << "axb (c)" << false;
}

void tst_Guide::difference()
{
    QFETCH(QString, shown);
    QFETCH(QString, printed);
    QFETCH(bool, isSame);
    const QString found = guideDifference(shown.split(QLatin1Char('|')), printed.split(QLatin1Char('|')));
    QVERIFY2(found.isEmpty() == isSame, qPrintable(found));
}

/// Of what goes on the shell makes way, so that ending the process ends the program.
std::unique_ptr<QProcess> tst_Guide::start(const GuideStep &step, bool isReplaced)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString programs = QFileInfo(kelProgramPath()).absolutePath();
    environment.insert(QStringLiteral("PATH"), programs + QLatin1Char(':') + environment.value(QStringLiteral("PATH")));
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(m_folder->path());
    process->start(QStringLiteral("/bin/sh"),
                   {QStringLiteral("-ec"), (isReplaced ? QStringLiteral("exec ") : QString()) + step.text});
    return process;
}

/// A panel is given as long as the guide says. On a machine that has no time for it, an answer may come later than
/// that, so what is not seen at once is tried again, as a reader would.
void tst_Guide::run(const GuideStep &step)
{
    QString found;
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        const auto process = start(step, false);
        QVERIFY2(process->waitForFinished(PatienceMs), qPrintable(step.text));
        const QByteArray errors = process->readAllStandardError();
        QVERIFY2(process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0,
                 qPrintable(QStringLiteral("line %1: %2%3").arg(step.line).arg(step.text, QString::fromUtf8(errors))));
        found = guideDifference(step.shown, linesOf(process->readAllStandardOutput()));
        if (found.isEmpty())
            return;
    }
    QFAIL(qPrintable(QStringLiteral("line %1: %2\n%3").arg(step.line).arg(step.text, found)));
}

void tst_Guide::startWhatGoesOn(const GuideStep &step)
{
    QVERIFY2(!step.shown.isEmpty(), "what goes on shows that it is there");
    m_goingOn.push_back(start(step, true));
    QProcess &process = *m_goingOn.back();
    QByteArray printed;
    QString found = QStringLiteral("nothing is printed");
    for (int lines = 0; !found.isEmpty() && process.waitForReadyRead(PatienceMs);) {
        printed += process.readAllStandardOutput();
        const QStringList all = linesOf(printed);
        if (all.size() > lines)
            found = guideDifference(step.shown, all);
        lines = all.size();
        if (lines >= step.shown.size())
            break;
    }
    QVERIFY2(found.isEmpty(), qPrintable(QStringLiteral("line %1: %2\n%3").arg(step.line).arg(step.text, found)));
}

void tst_Guide::follow(const GuideStep &step)
{
    if (step.kind == GuideStep::Run) {
        run(step);
    } else if (step.kind == GuideStep::GoesOn) {
        startWhatGoesOn(step);
    } else if (step.kind == GuideStep::SaveFile) {
        QFile file(m_folder->filePath(step.file));
        QVERIFY2(!step.text.isEmpty(), qPrintable(step.file));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(step.file));
        file.write(step.text.toUtf8());
    }
}

void tst_Guide::readerFollowsTheGuide_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<int>("stepCount"); // At least; so none is overlooked.

    QTest::newRow("guide") << QStringLiteral("docs/guide.md") << 12;
    QTest::newRow("readme") << QStringLiteral("README.md") << 6;
}

void tst_Guide::readerFollowsTheGuide()
{
    QFETCH(QString, page);
    QFETCH(int, stepCount);
    m_folder = std::make_unique<QTemporaryDir>();
    QDir(m_folder->path()).mkpath(QStringLiteral("build/dev"));
    QVERIFY(
        QFile::link(QFileInfo(kelProgramPath()).absolutePath(), m_folder->filePath(QStringLiteral("build/dev/bin"))));

    const QVector<GuideStep> steps = guideSteps(readText(page), exampleText);
    QVERIFY2(steps.size() >= stepCount, qPrintable(QString::number(steps.size())));
    for (const GuideStep &step : steps) {
        follow(step);
        if (QTest::currentTestFailed())
            break;
    }
    for (const auto &process : m_goingOn) {
        process->terminate();
        QVERIFY(process->waitForFinished(PatienceMs));
        QCOMPARE(process->exitStatus(), QProcess::NormalExit);
    }
    m_goingOn.clear();
}

void tst_Guide::guideShowsTheExample_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("example");

    const QDir workshop(QStringLiteral(KEL_SOURCE_DIR "/examples/workshop"));
    for (const QString &file : workshop.entryList(QDir::Files))
        QTest::newRow(qPrintable(file)) << QStringLiteral("docs/guide.md") << QStringLiteral("workshop/") + file;
    QTest::newRow("first.ui") << QStringLiteral("README.md") << QStringLiteral("first/first.ui");
}

void tst_Guide::guideShowsTheExample()
{
    QFETCH(QString, page);
    QFETCH(QString, example);
    QString shown;
    for (const GuideStep &step : guideSteps(readText(page), exampleText)) {
        if (step.kind == GuideStep::SaveFile && step.file == QFileInfo(example).fileName())
            shown = step.text;
    }
    QCOMPARE(shown, exampleText(example));
}

void tst_Guide::picturesAndLinksAreThere_data()
{
    QTest::addColumn<QString>("page");

    const QDir source(QStringLiteral(KEL_SOURCE_DIR));
    for (const QString &page : source.entryList({QStringLiteral("*.md")}, QDir::Files))
        QTest::newRow(qPrintable(page)) << page;
    QDirIterator docs(source.filePath(QStringLiteral("docs")), {QStringLiteral("*.md")}, QDir::Files,
                      QDirIterator::Subdirectories);
    while (docs.hasNext()) {
        const QString page = source.relativeFilePath(docs.next());
        QTest::newRow(qPrintable(page)) << page;
    }
}

void tst_Guide::picturesAndLinksAreThere()
{
    QFETCH(QString, page);
    const QDir folder = QFileInfo(QStringLiteral(KEL_SOURCE_DIR "/") + page).dir();
    static const QRegularExpression link(QStringLiteral(R"(\]\(([^)#]+)[^)]*\))"));
    auto found = link.globalMatch(readText(page));
    while (found.hasNext()) {
        const QString target = found.next().captured(1);
        if (!target.startsWith(QLatin1String("https:")))
            QVERIFY2(folder.exists(target), qPrintable(target));
    }
}

/// Whoever looks for a page finds it in the list of documents.
void tst_Guide::everyDocumentIsListed()
{
    const QDir docs(QStringLiteral(KEL_SOURCE_DIR "/docs"));
    const QString list = readText(QStringLiteral("docs/README.md"));
    for (const char *folder : {"", "formats/"}) {
        for (const QString &page : QDir(docs.filePath(QLatin1String(folder))).entryList({QStringLiteral("*.md")})) {
            if (page != QLatin1String("README.md"))
                QVERIFY2(list.contains(QStringLiteral("(%1%2)").arg(QLatin1String(folder), page)), qPrintable(page));
        }
    }
}

/// The messages of the troubleshooting page are those of the programs, piece by piece between the ellipses.
void tst_Guide::troubleIsQuotedAsItIsTold()
{
    QString source;
    for (const char *folder : {"apps/kel", "platform"}) {
        QDirIterator files(QStringLiteral(KEL_SOURCE_DIR "/") + QLatin1String(folder), {QStringLiteral("*.cpp")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            source += readText(QDir(QStringLiteral(KEL_SOURCE_DIR)).relativeFilePath(files.next()));
    }
    source.replace(QLatin1String("\\\""), QLatin1String("\""));

    const QString page = readText(QStringLiteral("docs/troubleshooting.md"));
    const QString told =
        page.mid(page.indexOf(QLatin1String("## The panel does not start"))).section(QLatin1String("\n## "), 0, 0);
    static const QRegularExpression message(QStringLiteral("`([^`]+)`"));
    int count = 0;
    for (const QString &row : told.split(QLatin1Char('\n'))) {
        for (auto found = message.globalMatch(row.section(QLatin1Char('|'), 1, 1)); found.hasNext(); ++count) {
            QString text = found.next().captured(1);
            // The kind of class is filled in.
            text.replace(QLatin1String("widget class"), QStringLiteral(u"…"));
            // The reason stands for itself; the system's own are left out.
            text.replace(QRegularExpression(QStringLiteral("(does not open: )[NP].*")), QStringLiteral("\\1"));
            text.replace(QLatin1String("does not open: "), QStringLiteral(u"does not open: …"));
            for (const QString &piece : text.split(QStringLiteral(u"…"), Qt::SkipEmptyParts))
                QVERIFY2(source.contains(piece), qPrintable(piece));
        }
    }
    QVERIFY(count > 8);
}

KEL_TEST_MAIN(tst_Guide)
#include "tst_guide.moc"
