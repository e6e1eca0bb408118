#include "fakepins.h"
#include "kelprocess.h"
#include "testmain.h"

#include <answerpattern.h>
#include <commandtext.h>
#include <connectionedit.h>
#include <kvcommands.h>
#include <pibytearray.h>
#include <pievaluator.h>
#include <piiodevice.h>
#include <piqt.h>
#include <serverproject.h>
#include <simulator/simulatorrules.h>
#include <variabletext.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <memory>

/// The examples on the pages about formats, read as the programs read them.
class tst_FormatDocs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void console_data();
    void console();
    void projectFile();
    void connectionModel();
    void commandTexts();
    void answerTexts();
    void smallestCatalogue();
    void catalogueSource();
    void simulatorRules();
    void trafficLog();
    void variablesFile();
    void durations();
    void fullPaths();

private:
    QString save(const QString &name, const QString &text) const;

    QTemporaryDir m_folder;
};

namespace
{

QString pageText(const QString &page)
{
    QFile file(QStringLiteral(KEL_SOURCE_DIR "/docs/formats/") + page);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The first fenced block of the page behind \a mark, without the fence.
QString fencedBlock(const QString &page, const QString &mark = QString())
{
    const QString text = pageText(page);
    const int from = text.indexOf(mark);
    const int begin = text.indexOf(QLatin1Char('\n'), text.indexOf(QLatin1String("```"), from)) + 1;
    return from < 0 ? QString() : text.mid(begin, text.indexOf(QLatin1String("```"), begin) - begin);
}

/// The first indented block of the page behind \a mark, without its indentation.
QString indentedBlock(const QString &page, const QString &mark = QString())
{
    QString block;
    const QString text = pageText(page);
    for (const QString &line : text.mid(text.indexOf(mark)).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("    ")) || (line.isEmpty() && !block.isEmpty()))
            block += line.mid(4) + QLatin1Char('\n');
        else if (!block.isEmpty())
            break;
    }
    return block;
}

/// The bytes that stand at the beginning of each line of a dump; a text may follow behind two spaces.
QByteArray dumpedBytes(const QString &dump)
{
    static const QRegularExpression bytes(QStringLiteral("^((?:[0-9A-F]{2} {1,2}|[0-9A-F]{2}$)+)"));
    QString hex;
    for (const QString &line : dump.split(QLatin1Char('\n')))
        hex += bytes.match(line).captured(1);
    return QByteArray::fromHex(hex.toLatin1());
}

/// The cells of the rows of the first table behind \a mark; the head is a row too.
QVector<QStringList> tableRows(const QString &page, const QString &mark)
{
    QVector<QStringList> rows;
    const QString text = pageText(page);
    for (const QString &line : text.mid(text.indexOf(mark)).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char('|')) && !line.startsWith(QLatin1String("|---")))
            rows << line.mid(1, line.size() - 2).split(QLatin1Char('|'));
        else if (!line.startsWith(QLatin1Char('|')) && !rows.isEmpty())
            break;
    }
    return rows;
}

/// What a cell has in code type, with a space between.
QString codeOf(const QString &cell)
{
    static const QRegularExpression code(QStringLiteral("`([^`]*)`"));
    QStringList parts;
    for (auto found = code.globalMatch(cell); found.hasNext();)
        parts << found.next().captured(1);
    return parts.join(QLatin1Char(' '));
}

} // namespace

QString tst_FormatDocs::save(const QString &name, const QString &text) const
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0 ? file.fileName() : QString();
}

void tst_FormatDocs::console_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("printed");

    const QDir docs(QStringLiteral(KEL_SOURCE_DIR "/docs/formats"));
    for (const QString &page : docs.entryList({QStringLiteral("*.md")})) {
        const QStringList lines = pageText(page).split(QLatin1Char('\n'));
        for (int i = 0; i < lines.size(); ++i) {
            if (!lines.at(i).startsWith(QLatin1String("    $ ")))
                continue;
            QString printed;
            for (int k = i + 1; lines.at(k).startsWith(QLatin1String("    ")) && lines.at(k).at(4) != QLatin1Char('$');
                 ++k)
                printed += lines.at(k).mid(4) + QLatin1Char('\n');
            QTest::addRow("%s:%d", qPrintable(page), i + 1) << lines.at(i).mid(6) << printed;
        }
    }
}

void tst_FormatDocs::console()
{
    QFETCH(QString, command);
    QFETCH(QString, printed);
    QProcess shell;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"),
                       QFileInfo(kelProgramPath()).absolutePath() + QStringLiteral(":/usr/bin:/bin"));
    shell.setProcessEnvironment(environment);
    shell.setProcessChannelMode(QProcess::MergedChannels);
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(QString::fromUtf8(shell.readAll()), printed);
}

void tst_FormatDocs::projectFile()
{
    const QByteArray bytes =
        dumpedBytes(indentedBlock(QStringLiteral("project-file.md"), QStringLiteral("## Example")));
    QCOMPARE(bytes.size(), 51);
    Kv_Designer::ServerProject project;
    project.version = 1;
    QCOMPARE(project.toByteArray().toHex(' '), bytes.toHex(' '));
}

void tst_FormatDocs::connectionModel()
{
    ConnectionEdit connection;
    connection.setName(QStringLiteral("conn"));
    connection.addDevice(QStringLiteral("A"), QStringLiteral("x"));
    const QByteArray bytes = dumpedBytes(indentedBlock(QStringLiteral("connection-model.md")));
    QCOMPARE(bytes.toHex(' '), connection.model().toHex(' '));
}

void tst_FormatDocs::commandTexts()
{
    QMap<int, int> arguments = {{0, 200}, {1, 300}};
    PIEvaluator evaluator;
    evaluator.content().addVariable("a0", 200);
    evaluator.content().addVariable("a1", 300);
    const auto rows = tableRows(QStringLiteral("command-text.md"), QStringLiteral("With device id 5"));
    QVERIFY(rows.size() > 5);
    for (const QStringList &row : rows.mid(1)) {
        const PIByteArray sent = CommandText::fromText(codeOf(row.at(0))).bytes(arguments, 5, evaluator);
        const QByteArray bytes(reinterpret_cast<const char *>(sent.data()), int(sent.size()));
        QCOMPARE(bytes.toHex(' ').toUpper(), codeOf(row.at(1)).toLatin1());
    }
}

void tst_FormatDocs::answerTexts()
{
    const auto rows = tableRows(QStringLiteral("command-text.md"), QStringLiteral("## Answers"));
    QCOMPARE(rows.size(), 4);
    for (int column = 2; column < 4; ++column) {
        const QByteArray message = QByteArray::fromHex(codeOf(rows.first().at(column)).toLatin1());
        QVERIFY(!message.isEmpty());
        bool isTaken = false;
        for (const QStringList &row : rows.mid(1)) {
            QMap<int, int> values;
            const bool matches = AnswerPattern::fromText(codeOf(row.at(1)), 5).match(message, values);
            QCOMPARE(matches && !isTaken, row.at(column).contains(QLatin1String("**matches**")));
            QCOMPARE(matches && isTaken, row.at(column).contains(QLatin1String("would match")));
            isTaken = isTaken || matches;
        }
    }
}

void tst_FormatDocs::smallestCatalogue()
{
    const QString path = m_folder.filePath(QStringLiteral("small.sqlite"));
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("small"));
        database.setDatabaseName(path);
        QVERIFY(database.open());
        const QString script = fencedBlock(QStringLiteral("catalogue.md"), QStringLiteral("## The smallest"));
        for (const QString &statement : script.split(QStringLiteral(";\n"), Qt::SkipEmptyParts))
            QVERIFY2(QSqlQuery(database).exec(statement), qPrintable(statement));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("small"));

    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("check"), path});
    QVERIFY2(run.exitCode == 0, run.errors.constData());
    const KelRun shown = runKel({QStringLiteral("catalog"), QStringLiteral("show"), path});
    QVERIFY2(shown.output.contains("%id 01 FF"), shown.output.constData());
}

void tst_FormatDocs::catalogueSource()
{
    const QString source = save(QStringLiteral("small.toml"), fencedBlock(QStringLiteral("catalogue-source.md")));
    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("check"), source});
    QVERIFY2(run.exitCode == 0, run.errors.constData());
}

void tst_FormatDocs::simulatorRules()
{
    const QByteArray text = fencedBlock(QStringLiteral("simulator-rules.md")).toUtf8();
    QVERIFY(text.startsWith("device ceiling"));
    const SimulatorRules rules = SimulatorRules::fromText(text, QStringLiteral("page"));
    QCOMPARE(rules.error, QString());
    QCOMPARE(rules.devices.size(), 1);
}

void tst_FormatDocs::trafficLog()
{
    const QString block = fencedBlock(QStringLiteral("traffic-log.md"));
    const QString log = save(QStringLiteral("page.log"), block);
    const KelRun run = runKel({QStringLiteral("monitor"), log, QStringLiteral("--once")});
    QVERIFY2(run.exitCode == 0, run.errors.constData());
    QCOMPARE(QString::fromUtf8(run.output), block.section(QLatin1Char('\n'), 1));
}

void tst_FormatDocs::variablesFile()
{
    QVERIFY(
        QFile::copy(m_folder.filePath(QStringLiteral("small.sqlite")), m_folder.filePath(QStringLiteral("v.sqlite"))));
    QVERIFY(!save(QStringLiteral("v.var"), indentedBlock(QStringLiteral("variables-file.md"))).isEmpty());
    KvCommands catalogue(m_folder.filePath(QStringLiteral("v.sqlite")));
    const auto rows = tableRows(QStringLiteral("variables-file.md"), QStringLiteral("| name | duration |"));
    QCOMPARE(catalogue.variables.size(), rows.size() - 1);
    for (int i = 1; i < rows.size(); ++i) {
        QCOMPARE(catalogue.variables.at(i - 1).name, codeOf(rows.at(i).at(0)));
        QCOMPARE(catalogue.variables.at(i - 1).value, codeOf(rows.at(i).at(1)));
    }
    catalogue.database.close();
}

void tst_FormatDocs::durations()
{
    const auto rows = tableRows(QStringLiteral("variables-file.md"), QStringLiteral("| unit | means"));
    QCOMPARE(rows.size(), 8);
    for (const QStringList &row : rows.mid(1)) {
        QStringList units = codeOf(row.at(0)).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (units.isEmpty())
            units << QStringLiteral("x");
        for (const QString &unit : qAsConst(units))
            QCOMPARE(varDur(QStringLiteral("1 ") + unit), row.at(2).trimmed().toULongLong());
    }
    QCOMPARE(varDur(QStringLiteral("1.5 h")), quint64(5400000));
}

void tst_FormatDocs::fullPaths()
{
    FakePins pins;
    static const QRegularExpression path(QStringLiteral("`(gser://[0-9][^`]*|ser:///[^`]*|tcp://\\[[^`]*)`"));
    int count = 0;
    for (auto found = path.globalMatch(pageText(QStringLiteral("gser-path.md"))); found.hasNext(); ++count) {
        const QString text = found.next().captured(1);
        const std::unique_ptr<PIIODevice> device(PIIODevice::createFromFullPath(Q2PIString(text)));
        QVERIFY2(device, qPrintable(text));
        QVERIFY2(PI2QString(device->constructFullPath()).startsWith(text), qPrintable(text));
    }
    QVERIFY(count >= 4);
}

KEL_TEST_MAIN(tst_FormatDocs)
#include "tst_formatdocs.moc"
