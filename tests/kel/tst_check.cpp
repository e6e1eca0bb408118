#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <catalogue/catalogue.h>
#include <check/check.h>
#include <check/rule.h>
#include <command.h>
#include <kelglobals.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

/// What the check of a panel finds: each rule in a small panel that breaks it alone, and many at once.
class tst_Check : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void smallPanelBreaksOneRule_data();
    void smallPanelBreaksOneRule();
    void everyRuleHasASmallPanel();
    void everyRuleIsExplained();
    void thirtyFaultsAreFound();
    void cleanTwinIsClean();
    void withoutCatalogueOnlyThePanelIsChecked();
    void examplesAreClean_data();
    void examplesAreClean();
    void goodPanelIsNotAccused_data();
    void goodPanelIsNotAccused();

private:
    TempCatalogue m_catalogue;
};

namespace
{

QDir dataFolder()
{
    return QDir(QStringLiteral(KEL_SOURCE_DIR "/tests/data/check"));
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    return file.readAll();
}

/// "LINE rule" of each fault that the form \a path tells of itself in comments: "<!-- fault: rule -->".
QStringList seededFaults(const QString &path)
{
    static const QRegularExpression Fault(QStringLiteral("<!-- fault: ([^>]*) -->"));
    QStringList faults;
    const QStringList lines = QString::fromUtf8(contentOf(path)).split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QString rules = Fault.match(lines.at(i)).captured(1);
        for (const QString &rule : rules.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            faults << QStringLiteral("%1 %2").arg(i + 1).arg(rule);
    }
    return faults;
}

QStringList foundFaults(const QVector<Finding> &findings)
{
    QStringList faults;
    for (const Finding &finding : findings)
        faults << QStringLiteral("%1 %2").arg(finding.line).arg(nameOf(finding.rule));
    return faults;
}

/// What the findings say, for a test's error.
QByteArray messagesOf(const QVector<Finding> &findings)
{
    QByteArray text;
    for (const Finding &finding : findings)
        text += '\n' + QByteArray::number(finding.line) + ": " + finding.message.toUtf8();
    return text;
}

QStringList sorted(QStringList list)
{
    std::sort(list.begin(), list.end());
    return list;
}

/// A form with the \a widgets and \a connections.
QByteArray formText(const QByteArray &widgets, const QByteArray &connections)
{
    return "<ui version='4.0'><class>P</class><widget class='QWidget' name='P'><layout class='QVBoxLayout'>" + widgets +
           "</layout></widget><connections>" + connections + "</connections></ui>";
}

QByteArray widget(const char *className, const char *name, const QByteArray &properties = {})
{
    return QByteArray("<item><widget class='") + className + "' name='" + name + "'>" + properties + "</widget></item>";
}

QByteArray number(const char *property, int value)
{
    return QByteArray("<property name='") + property + "'><number>" + QByteArray::number(value) +
           "</number></property>";
}

QByteArray wire(const char *sender, const char *signal, const char *receiver, const char *slot)
{
    return QByteArray("<connection><sender>") + sender + "</sender><signal>" + signal + "</signal><receiver>" +
           receiver + "</receiver><slot>" + slot + "</slot></connection>";
}

} // namespace

void tst_Check::initTestCase()
{
    const QByteArray rows = contentOf(dataFolder().filePath(QStringLiteral("catalogue.sql")));
    for (const QByteArray &line : rows.split('\n')) {
        if (line.startsWith("INSERT"))
            m_catalogue.run(QString::fromUtf8(line));
    }
    openCatalogue(m_catalogue.path());
    QVERIFY(Kel::commandsDB.database.isOpen());
}

void tst_Check::smallPanelBreaksOneRule_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("rule");

    const QStringList files = dataFolder().entryList({QStringLiteral("*.ui"), QStringLiteral("*.prj")}, QDir::Files);
    for (const QString &file : files) {
        if (!file.startsWith(QLatin1String("thirty-")))
            QTest::newRow(qPrintable(file)) << dataFolder().filePath(file) << QFileInfo(file).baseName();
    }
}

void tst_Check::smallPanelBreaksOneRule()
{
    QFETCH(QString, path);
    QFETCH(QString, rule);

    const QVector<Finding> findings = checkPanel(path);
    QVERIFY2(findings.size() == 1, messagesOf(findings).constData());
    QCOMPARE(nameOf(findings.at(0).rule), rule);
    QCOMPARE(findings.at(0).file, path);
    QVERIFY(!findings.at(0).message.isEmpty());
    if (path.endsWith(QLatin1String(".ui")))
        QCOMPARE(foundFaults(findings), seededFaults(path));
}

void tst_Check::everyRuleHasASmallPanel()
{
    QSet<QString> shown;
    for (const QString &file : dataFolder().entryList(QDir::Files))
        shown.insert(QFileInfo(file).baseName());
    for (const RuleInfo &rule : checkRules()) {
        QVERIFY2(shown.contains(rule.name), qPrintable(rule.name));
        QCOMPARE(nameOf(rule.rule), rule.name);
    }
}

void tst_Check::everyRuleIsExplained()
{
    QStringList explained;
    const QByteArray page = contentOf(QStringLiteral(KEL_SOURCE_DIR "/docs/checks.md"));
    for (const QByteArray &line : page.split('\n')) {
        if (line.startsWith("### "))
            explained << QString::fromUtf8(line.mid(4)).remove(QLatin1Char('`'));
    }
    QStringList rules;
    for (const RuleInfo &rule : checkRules())
        rules << rule.name;
    QCOMPARE(explained, rules);
}

void tst_Check::thirtyFaultsAreFound()
{
    const QString path = dataFolder().filePath(QStringLiteral("thirty-faults.ui"));
    const QVector<Finding> findings = checkPanel(path);
    QCOMPARE(findings.size(), 30);
    QCOMPARE(sorted(foundFaults(findings)), sorted(seededFaults(path)));
}

void tst_Check::cleanTwinIsClean()
{
    const QVector<Finding> findings = checkPanel(dataFolder().filePath(QStringLiteral("thirty-faults-clean.ui")));
    QVERIFY2(findings.isEmpty(), messagesOf(findings).constData());
}

void tst_Check::withoutCatalogueOnlyThePanelIsChecked()
{
    const QString path = dataFolder().filePath(QStringLiteral("thirty-faults.ui"));
    const KelRun run = runKel({QStringLiteral("check"), path});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.output.contains("[unknown-slot]"));
    QVERIFY(run.output.contains("[missing-file]"));
    QVERIFY(run.output.contains("enabler"));
    for (const char *rule : {"unknown-command", "unknown-send", "unset-argument", "unheard-answer", "shadowed-answer",
                             "answer-value", "bad-expression", "bad-word"})
        QVERIFY2(!run.output.contains(rule), rule);
    QCOMPARE(run.errors, QByteArray("kel: without a catalogue (--db) only the panel itself was checked\n"));
}

void tst_Check::examplesAreClean_data()
{
    QTest::addColumn<QString>("form");
    QTest::newRow("hall") << QStringLiteral("hall/hall.ui");
    QTest::newRow("first") << QStringLiteral("first/first.ui");
}

/// As the examples are given away, each with the hall's catalogue.
void tst_Check::examplesAreClean()
{
    QFETCH(QString, form);
    const QTemporaryDir folder;
    QCOMPARE(runKel({QStringLiteral("demo"), QStringLiteral("--into"), folder.path()}).exitCode, 0);
    const QString path = QStringLiteral(KEL_SOURCE_DIR "/examples/") + form;
    const KelRun run = runKel(
        {QStringLiteral("check"), path, QStringLiteral("--db=") + folder.filePath(QStringLiteral("hall.sqlite"))});
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(runKel({QStringLiteral("check"), path}).exitCode, 0);
}

void tst_Check::goodPanelIsNotAccused_data()
{
    QTest::addColumn<QByteArray>("text");

    const QByteArray relay = widget("LocalDevice", "relay", number("currentID", 1));
    const QByteArray label = widget("QLabel", "label");
    const QByteArray hear = wire("relay", "receivedAnswerID(int)", "label", "setNum(int)");
    const auto row = [](const char *name, const QByteArray &widgets, const QByteArray &connections) {
        QTest::newRow(name) << formText(widgets, connections);
    };
    row("empty", label, {});
    row("a number that a wire sets is not known", widget("KelButton", "b") + widget("QSpinBox", "spin") + relay + label,
        hear + wire("spin", "valueChanged(int)", "b", "setClickID(int)") +
            wire("b", "clickedID(int)", "relay", "sendCommand(int)"));
    row("a number that a listener is given is not known",
        widget("KelButton", "b", number("clickID", 1)) + widget("KelSlider", "s") + widget("QSpinBox", "spin"),
        wire("spin", "valueChanged(int)", "s", "setSetID(int)") + wire("b", "clickedID(int)", "s", "enableID(int)"));
    row("a device that a wire selects is not known",
        widget("LocalDevice", "relay") + widget("QSpinBox", "spin") + widget("KelButton", "b", number("clickID", 99)),
        wire("spin", "valueChanged(int)", "relay", "setCurrentID(int)") +
            wire("b", "clickedID(int)", "relay", "sendCommand(int)"));
    row("values are no numbers of widgets", widget("QSpinBox", "spin") + relay + label,
        hear + wire("spin", "valueChanged(int)", "relay", "sendCommand(int)"));
    row("one signal reaches many widgets, one of which has its number",
        widget("KelButton", "b", number("clickID", 2)) + widget("KelSlider", "one", number("setID", 1)) +
            widget("KelSlider", "two", number("setID", 2)) + widget("KelButton", "c", number("clickID", 1)),
        wire("b", "clickedID(int)", "one", "enableID(int)") + wire("b", "clickedID(int)", "two", "enableID(int)") +
            wire("c", "clickedID(int)", "one", "enableID(int)") + wire("c", "clickedID(int)", "two", "enableID(int)"));
    row("two objects stand for one device, and one of them listens",
        relay + widget("LocalDevice", "ear", number("currentID", 1)) + label,
        wire("ear", "receivedAnswerID(int)", "label", "setNum(int)"));
    row("what a slider's number sets is set",
        widget("KelSlider", "s", number("clickID", 0)) + widget("KelButton", "b", number("clickID", 2)) + relay + label,
        hear + wire("s", "valueChangedID(int,int)", "relay", "setArgument(int,int)") +
            wire("b", "clickedID(int)", "relay", "sendCommand(int)"));
    row("a device without a row passes texts on", widget("LocalDevice", "relay") + widget("QLineEdit", "line"),
        wire("line", "textChanged(QString)", "relay", "sendCommand(QString)"));
    row("a plot listens too",
        widget("KelGraphic", "plot",
               "<property name='variables'><stringlist><string>relay.0=A</string></stringlist></property>") +
            relay + widget("KelSlider", "s", number("setID", 1)),
        wire("relay", "receivedAnswerID(int)", "s", "enableID(int)"));
    row("a part of a widget can be connected", widget("KelSlider", "s") + widget("QLabel", "label"),
        wire("qt_pbZero", "clicked()", "label", "clear()"));
    row("actions, layouts and groups have names too",
        widget("QLabel", "label") + "<item><layout class='QHBoxLayout' name='rows'/></item></layout>"
                                    "<action name='act'/><layout class='QGridLayout' name='grid'>",
        wire("act", "triggered()", "label", "clear()") + wire("rows", "destroyed()", "label", "clear()"));
    row("a signal may be passed on", widget("KelButton", "b") + widget("KelButton", "c"),
        wire("b", "clicked()", "c", "clicked()"));
    row("resource, own picture",
        "<item><widget class='QLabel' name='l'><property name='pixmap'><pixmap>:/icons/local_device.png</pixmap>"
        "</property><property name='styleSheet'><string>color: red;</string></property></widget></item>",
        {});
}

void tst_Check::goodPanelIsNotAccused()
{
    QFETCH(QByteArray, text);
    m_catalogue.writeFile(QStringLiteral("good.ui"), text);
    const QString path = m_catalogue.filePath(QStringLiteral("good.ui"));
    const QVector<Finding> findings = checkPanel(path);
    QVERIFY2(findings.isEmpty(), messagesOf(findings).constData());
}

KEL_TEST_MAIN(tst_Check)
#include "tst_check.moc"
