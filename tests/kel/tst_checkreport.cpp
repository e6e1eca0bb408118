#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <check/report.h>
#include <serverproject.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QUrl>

#include <sys/stat.h>

/// What `kel check` prints and how it ends.
class tst_CheckReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void textIsALineForEachFinding();
    void textKeepsTheTerminalQuiet();
    void jsonSaysTheSame();
    void sarifSaysTheSame();
    void sarifNamesFiles_data();
    void sarifNamesFiles();
    void cleanReportsAreEmpty();
    void noDisplayIsNeeded();
    void exceptLeavesARuleOut();
    void catalogueOfTheFormIsUsed();
    void formOfAProjectIsBesideIt();
    void projectWithoutFormHasItsScriptsChecked();
    void unusableFormIsOneLine_data();
    void unusableFormIsOneLine();
    void unusableProjectIsOneLine_data();
    void unusableProjectIsOneLine();
    void unusableCatalogueIsOneLine_data();
    void unusableCatalogueIsOneLine();
    void endlessCatalogueIsOneLine();
    void hugeCatalogueIsOneLine();
    void wrongUsageEndsWithTwo_data();
    void wrongUsageEndsWithTwo();

private:
    QString write(const QString &name, const QByteArray &content) const;
    KelRun check(const QStringList &arguments) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

const QByteArray Good = "<ui version='4.0'><class>P</class>\n<widget class='QWidget' name='P'/></ui>\n";
/// An unknown slot in line 3, and one object twice in line 4.
const QByteArray Bad = "<ui version='4.0'><class>P</class>\n<widget class='QWidget' name='P'>\n"
                       "<widget class='KelButton' name='b'/>\n<widget class='KelButton' name='b'/>\n</widget>\n"
                       "<connections><connection><sender>b</sender><signal>clicked()</signal><receiver>b</receiver>"
                       "<slot>x()</slot></connection></connections></ui>\n";

QVector<Finding> twoFindings()
{
    return {{QStringLiteral("a.ui"), 3, Rule::UnknownSlot, Severity::Error, QStringLiteral("no \"x\"")},
            {QStringLiteral("b c.ui"), 7, Rule::UnheardAnswer, Severity::Warning, QStringLiteral("Grüße")}};
}

QJsonValue objectOf(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("no JSON: %s", qPrintable(error.errorString()));
    return QJsonValue(document.object());
}

} // namespace

void tst_CheckReport::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

QString tst_CheckReport::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(name));
    return file.fileName();
}

KelRun tst_CheckReport::check(const QStringList &arguments) const
{
    return runKel(QStringList{QStringLiteral("check")} + arguments, m_folder->path());
}

void tst_CheckReport::textIsALineForEachFinding()
{
    QCOMPARE(textReport(twoFindings()), QByteArray("a.ui:3: error: no \"x\" [unknown-slot]\n"
                                                   "b c.ui:7: warning: Gr\xc3\xbc\xc3\x9f"
                                                   "e [unheard-answer]\n"));

    write(QStringLiteral("bad.ui"), Bad);
    const KelRun run = check({QStringLiteral("bad.ui")});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.output,
             QByteArray("bad.ui:4: warning: \"b\" is the name of an object in line 3 already; connections reach that "
                        "one [duplicate-name]\n"
                        "bad.ui:6: error: connection b clicked() -> b x(): KelButton has no slot \"x()\" "
                        "[unknown-slot]\n"));
}

void tst_CheckReport::textKeepsTheTerminalQuiet()
{
    QVector<Finding> findings = twoFindings();
    findings.resize(1);
    findings[0].message = QStringLiteral("\x1b[31mred\x07 \u202e");
    QCOMPARE(textReport(findings), QByteArray("a.ui:3: error: \\u001b[31mred\\u0007 \\u202e [unknown-slot]\n"));

    // A name in a form cannot make a line of its own either.
    QByteArray form = Bad;
    form.replace("x()", "x&#10;kel: all is well()");
    write(QStringLiteral("bad.ui"), form);
    QCOMPARE(check({QStringLiteral("bad.ui")}).output.count('\n'), 2);
}

void tst_CheckReport::jsonSaysTheSame()
{
    const QJsonValue report = objectOf(jsonReport(twoFindings(), QStringLiteral("a.ui")));
    QCOMPARE(report[QLatin1String("panel")].toString(), QStringLiteral("a.ui"));
    const QJsonArray findings = report[QLatin1String("findings")].toArray();
    QCOMPARE(findings.size(), 2);
    const QJsonObject second = findings.at(1).toObject();
    QCOMPARE(second.value(QLatin1String("file")).toString(), QStringLiteral("b c.ui"));
    QCOMPARE(second.value(QLatin1String("line")).toInt(), 7);
    QCOMPARE(second.value(QLatin1String("severity")).toString(), QStringLiteral("warning"));
    QCOMPARE(second.value(QLatin1String("rule")).toString(), QStringLiteral("unheard-answer"));
    QCOMPARE(second.value(QLatin1String("message")).toString(), QStringLiteral("Grüße"));

    write(QStringLiteral("bad.ui"), Bad);
    const KelRun run = check({QStringLiteral("--json"), QStringLiteral("bad.ui")});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(objectOf(run.output)[QLatin1String("findings")].toArray().size(), 2);
}

void tst_CheckReport::sarifSaysTheSame()
{
    const QJsonValue report = objectOf(sarifReport(twoFindings()));
    QCOMPARE(report[QLatin1String("version")].toString(), QStringLiteral("2.1.0"));
    QVERIFY(report[QLatin1String("$schema")].toString().contains(QLatin1String("sarif-2.1.0")));
    QCOMPARE(report[QLatin1String("runs")].toArray().size(), 1);
    const QJsonObject run = report[QLatin1String("runs")].toArray().at(0).toObject();
    const QJsonObject driver = run.value(QLatin1String("tool")).toObject().value(QLatin1String("driver")).toObject();
    QCOMPARE(driver.value(QLatin1String("name")).toString(), QStringLiteral("kel check"));

    const QJsonArray rules = driver.value(QLatin1String("rules")).toArray();
    QCOMPARE(rules.size(), checkRules().size());
    const QJsonArray results = run.value(QLatin1String("results")).toArray();
    QCOMPARE(results.size(), 2);
    for (const QJsonValue &result : results) {
        const QJsonObject rule = rules.at(result[QLatin1String("ruleIndex")].toInt()).toObject();
        QCOMPARE(rule.value(QLatin1String("id")), result[QLatin1String("ruleId")]);
        QVERIFY(!rule[QLatin1String("shortDescription")][QLatin1String("text")].toString().isEmpty());
    }

    const QJsonValue second = results.at(1);
    QCOMPARE(second[QLatin1String("level")].toString(), QStringLiteral("warning"));
    QCOMPARE(second[QLatin1String("message")][QLatin1String("text")].toString(), QStringLiteral("Grüße"));
    const QJsonValue place = second[QLatin1String("locations")][0][QLatin1String("physicalLocation")];
    QCOMPARE(place[QLatin1String("artifactLocation")][QLatin1String("uri")].toString(), QStringLiteral("b%20c.ui"));
    QCOMPARE(place[QLatin1String("region")][QLatin1String("startLine")].toInt(), 7);

    write(QStringLiteral("bad.ui"), Bad);
    const KelRun program = check({QStringLiteral("--sarif"), QStringLiteral("bad.ui")});
    QCOMPARE(program.exitCode, 1);
    QCOMPARE(objectOf(program.output)[QLatin1String("runs")][0][QLatin1String("results")].toArray().size(), 2);
}

void tst_CheckReport::sarifNamesFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("uri");
    QTest::newRow("relative") << QStringLiteral("forms/a.ui") << QStringLiteral("forms/a.ui");
    QTest::newRow("colon") << QStringLiteral("a:b.ui") << QStringLiteral("a%3Ab.ui");
    QTest::newRow("other letters") << QStringLiteral("ü#?.ui") << QStringLiteral("%C3%BC%23%3F.ui");
    QTest::newRow("absolute") << QStringLiteral("/a b/c#.ui") << QStringLiteral("file:///a%20b/c%23.ui");
}

void tst_CheckReport::sarifNamesFiles()
{
    QFETCH(QString, file);
    QFETCH(QString, uri);
    const QJsonValue report =
        objectOf(sarifReport({{file, 1, Rule::UnknownSlot, Severity::Error, QStringLiteral("x")}}));
    const QJsonValue place = report[QLatin1String("runs")][0][QLatin1String("results")][0][QLatin1String("locations")];
    QCOMPARE(
        place[0][QLatin1String("physicalLocation")][QLatin1String("artifactLocation")][QLatin1String("uri")].toString(),
        uri);
    QVERIFY(QUrl(uri, QUrl::StrictMode).isValid());
}

void tst_CheckReport::cleanReportsAreEmpty()
{
    const QString form = write(QStringLiteral("good.ui"), Good);
    const KelRun text = check({form});
    QCOMPARE(text.exitCode, 0);
    QCOMPARE(text.output, QByteArray());
    const KelRun json = check({form, QStringLiteral("--json")});
    QCOMPARE(json.exitCode, 0);
    QVERIFY(objectOf(json.output)[QLatin1String("findings")].isArray());
    const KelRun sarif = check({form, QStringLiteral("--sarif")});
    QCOMPARE(sarif.exitCode, 0);
    QVERIFY(objectOf(sarif.output)[QLatin1String("runs")][0][QLatin1String("results")].isArray());
}

void tst_CheckReport::noDisplayIsNeeded()
{
    const QString form = write(QStringLiteral("good.ui"), Good);
    const KelRun run = runKel({QStringLiteral("check"), form}, QString(),
                              {QStringLiteral("QT_QPA_PLATFORM="), QStringLiteral("DISPLAY=:4711")});
    QCOMPARE(run.exitCode, 0);
}

void tst_CheckReport::exceptLeavesARuleOut()
{
    const QString form = write(QStringLiteral("bad.ui"), Bad);
    const KelRun one = check({form, QStringLiteral("--except"), QStringLiteral("unknown-slot")});
    QCOMPARE(one.exitCode, 1);
    QVERIFY(!one.output.contains("unknown-slot"));
    QVERIFY(one.output.contains("duplicate-name"));
    const KelRun both = check({QStringLiteral("--except"), QStringLiteral("unknown-slot"), QStringLiteral("--except"),
                               QStringLiteral("duplicate-name"), form});
    QCOMPARE(both.exitCode, 0);
    QCOMPARE(both.output, QByteArray());
}

void tst_CheckReport::catalogueOfTheFormIsUsed()
{
    TempCatalogue catalogue;
    catalogue.addVendor(1, QStringLiteral("Acme"));
    catalogue.addDevice(3, QStringLiteral("Relay"), 1);
    catalogue.addCurrent(5, 3, QStringLiteral("Hall"), 7);
    catalogue.addCommand(1, 3, QStringLiteral("A1 %(a0*)"));
    const QString form = write(QStringLiteral("x.ui"), "<ui version='4.0'><class>P</class>\n"
                                                       "<widget class='LocalDevice' name='P'>\n"
                                                       "<property name='currentID'><number>5</number></property>\n"
                                                       "</widget></ui>\n");
    const KelRun run = check({form, QStringLiteral("--db=") + catalogue.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, QByteArray());
    QVERIFY2(run.output.startsWith(form.toUtf8() + ":3: error: command 1 \"A1 %(a0*)\" of Relay: \"%(a0*)\" gives no "
                                                   "byte: "),
             run.output.constData());
    QVERIFY(run.output.endsWith(" [bad-expression]\n"));
}

void tst_CheckReport::formOfAProjectIsBesideIt()
{
    Kv_Designer::ServerProject project;
    project.uiFile = QStringLiteral("bad.ui");
    project.addScriptFile(QStringLiteral("gone.js"));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("p")));
    write(QStringLiteral("p/bad.ui"), Bad);
    write(QStringLiteral("p/panel.prj"), project.toByteArray());

    const KelRun run = check({QStringLiteral("p/panel.prj")});
    QCOMPARE(run.exitCode, 1);
    const QList<QByteArray> lines = run.output.split('\n');
    QVERIFY2(lines.at(0).startsWith("p/bad.ui:4: "), run.output.constData());
    QVERIFY2(lines.at(1).startsWith("p/bad.ui:6: "), run.output.constData());
    QCOMPARE(lines.at(2), QByteArray("p/panel.prj:1: error: there is no script \"gone.js\" [missing-file]"));
}

void tst_CheckReport::projectWithoutFormHasItsScriptsChecked()
{
    Kv_Designer::ServerProject project;
    const QString file = write(QStringLiteral("panel.prj"), project.toByteArray());
    QCOMPARE(check({file}).exitCode, 0);
    project.mainScript = QStringLiteral("main.js");
    write(QStringLiteral("panel.prj"), project.toByteArray());
    const KelRun run = check({file});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.output.contains("[main-script]"));
}

void tst_CheckReport::unusableFormIsOneLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("error");

    QTest::newRow("empty") << QByteArray() << QByteArray("x.ui:1: ");
    QTest::newRow("garbage") << QByteArray("\x00\xff\x13<<", 5) << QByteArray("x.ui:1: ");
    QTest::newRow("cut off") << Bad.left(150) << QByteArray("x.ui:5: ");
    QTest::newRow("unknown class") << QByteArray("<ui><widget class='Teapot'/></ui>")
                                   << QByteArray("x.ui:1: unknown widget class \"Teapot\"");
    QTest::newRow("nested 100,000 deep") << "<ui>" + QByteArray("<widget class='QWidget'>").repeated(100000)
                                         << QByteArray("x.ui:1: more than 200 elements inside each other");
    QTest::newRow("entities") << QByteArray("<!DOCTYPE ui [<!ENTITY a 'b'>]><ui/>")
                              << QByteArray("x.ui:1: a form has no document type");
    QTest::newRow("large") << QByteArray(17 * 1024 * 1024, ' ') << QByteArray("x.ui: larger than 16 MiB");
}

void tst_CheckReport::unusableFormIsOneLine()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, error);
    const KelRun run = check({write(QStringLiteral("x.ui"), text)});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(run.errorLines().size() == 1, run.errors.constData());
    QVERIFY2(run.errors.contains(error), run.errors.constData());
}

void tst_CheckReport::unusableProjectIsOneLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("error");

    Kv_Designer::ServerProject project;
    project.uiFile = QStringLiteral("none.ui");
    const QByteArray good = project.toByteArray();
    QTest::newRow("magic only") << good.left(4) << QByteArray("x.prj: a server project without a readable version");
    QTest::newRow("cut off") << good.left(9) << QByteArray("x.prj: a server project without a readable version");
    QTest::newRow("huge length") << good.left(4) + QByteArray("\x7f\xff\xff\xff\x82\x01\x04", 7)
                                 << QByteArray("x.prj: a server project without a readable version");
    QTest::newRow("form is missing") << good << QByteArray("none.ui: No such file or directory");
    project.uiFile = QStringLiteral("/dev/zero");
    QTest::newRow("form is a device") << project.toByteArray() << QByteArray("/dev/zero: not a file");
    project.uiFile = QStringLiteral(".");
    QTest::newRow("form is a folder") << project.toByteArray() << QByteArray(": is a folder");
    project.uiFile = QStringLiteral("x.prj");
    QTest::newRow("form is the project") << project.toByteArray() << QByteArray("x.prj:1: ");
}

void tst_CheckReport::unusableProjectIsOneLine()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, error);
    const KelRun run = check({write(QStringLiteral("x.prj"), bytes)});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(run.errorLines().size() == 1, run.errors.constData());
    QVERIFY2(run.errors.contains(error), run.errors.constData());
}

void tst_CheckReport::unusableCatalogueIsOneLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("garbage") << QByteArray(5000, 'x');
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("header only") << QByteArray("SQLite format 3\0", 16);
}

void tst_CheckReport::unusableCatalogueIsOneLine()
{
    QFETCH(QByteArray, content);
    const QString form = write(QStringLiteral("good.ui"), Good);
    const QString catalogue = write(QStringLiteral("bad.sqlite"), content);
    for (const QString &path : {catalogue, m_folder->filePath(QStringLiteral("none.sqlite")), m_folder->path()}) {
        const KelRun run = check({form, QStringLiteral("--db=") + path});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.output, QByteArray());
        QVERIFY2(run.errorLines().size() == 1, run.errors.constData());
        QVERIFY2(run.errors.contains(path.toUtf8()), run.errors.constData());
    }
}

void tst_CheckReport::endlessCatalogueIsOneLine()
{
    TempCatalogue catalogue;
    catalogue.addVendor(1, QStringLiteral("Acme"));
    catalogue.addDevice(3, QStringLiteral("Relay"), 1);
    catalogue.addCurrent(5, 3, QStringLiteral("Hall"), 7);
    // Answers without end, as far as a reader can see.
    catalogue.run(QStringLiteral("DROP TABLE answers"));
    catalogue.run(
        QStringLiteral("CREATE VIEW answers AS WITH RECURSIVE n(id) AS (SELECT 1 UNION ALL SELECT id+1 FROM n) "
                       "SELECT id, 'A1' AS command, '' AS description, 3 AS device FROM n"));
    const QString form = write(QStringLiteral("x.ui"), "<ui version='4.0'><class>P</class>"
                                                       "<widget class='LocalDevice' name='P'>"
                                                       "<property name='currentID'><number>5</number></property>"
                                                       "</widget></ui>");
    const KelRun run = check({form, QStringLiteral("--db=") + catalogue.path()});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errorLines().size() == 1, run.errors.constData());
    QVERIFY2(run.errors.contains("more than 10000 answers for device 3"), run.errors.constData());
}

/// Many devices of a make with many texts: each alone would pass.
void tst_CheckReport::hugeCatalogueIsOneLine()
{
    TempCatalogue catalogue;
    catalogue.addVendor(1, QStringLiteral("Acme"));
    catalogue.addDevice(3, QStringLiteral("Relay"), 1);
    catalogue.run(QStringLiteral("WITH RECURSIVE n(id) AS (SELECT 1 UNION ALL SELECT id+1 FROM n LIMIT 9000) "
                                 "INSERT INTO answers (id, command, device) SELECT id, 'A1', 3 FROM n"));
    QByteArray devices;
    for (int i = 0; i < 30; ++i) {
        catalogue.addCurrent(i, 3, QStringLiteral("Hall"), i);
        devices += "<item><widget class='LocalDevice'><property name='currentID'><number>" + QByteArray::number(i) +
                   "</number></property></widget></item>";
    }
    const QString form = write(QStringLiteral("x.ui"), "<ui version='4.0'><class>P</class><widget class='QWidget' "
                                                       "name='P'><layout class='QVBoxLayout'>" +
                                                           devices + "</layout></widget></ui>");
    const KelRun run = check({form, QStringLiteral("--db=") + catalogue.path()});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errorLines().size() == 1, run.errors.constData());
    QVERIFY2(run.errors.contains("more than 200000 commands and answers"), run.errors.constData());
}

void tst_CheckReport::wrongUsageEndsWithTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no file") << QStringList();
    QTest::newRow("missing file") << QStringList{QStringLiteral("none.ui")};
    QTest::newRow("unknown rule") << QStringList{QStringLiteral("good.ui"), QStringLiteral("--except=x")};
    QTest::newRow("two formats") << QStringList{QStringLiteral("good.ui"), QStringLiteral("--json"),
                                                QStringLiteral("--sarif")};
    QTest::newRow("pipe") << QStringList{QStringLiteral("pipe")};
}

void tst_CheckReport::wrongUsageEndsWithTwo()
{
    QFETCH(QStringList, arguments);
    write(QStringLiteral("good.ui"), Good);
    QCOMPARE(mkfifo(qPrintable(m_folder->filePath(QStringLiteral("pipe"))), 0600), 0);
    const KelRun run = check(arguments);
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errorLines().size() == 1, run.errors.constData());
}

KEL_TEST_MAIN(tst_CheckReport)
#include "tst_checkreport.moc"
