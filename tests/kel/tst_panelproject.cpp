#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <command.h>
#include <panel/panelfiles.h>
#include <serverproject.h>

#include <QFileInfo>
#include <QImage>

using Kv_Designer::ServerProject;

/// A project file run as a panel.
class tst_PanelProject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void formIsItself();
    void projectNamesItsForm();
    void commandFileNamesTheCatalogue_data();
    void commandFileNamesTheCatalogue();
    void wrongProjectIsTold_data();
    void wrongProjectIsTold();
    void projectRuns();
    void givenCatalogueGoesFirst();
    void scriptsAreLeftAlone();
    void checkTakesTheSameCatalogue();

private:
    QString write(const char *name, const QByteArray &text) const
    {
        m_catalogue->writeFile(QLatin1String(name), text);
        return m_catalogue->filePath(QLatin1String(name));
    }
    QString writeProject(const ServerProject &project) const { return write("a.prj", project.toByteArray()); }

    std::unique_ptr<TempCatalogue> m_catalogue;
};

namespace
{

/// A form whose label shows the name that the catalogue gives a device.
const QByteArray Form = "<ui version='4.0'><class>P</class><widget class='QWidget' name='P'>"
                        "<widget class='LocalDevice' name='relay'><property name='currentID'><number>5</number>"
                        "</property></widget></widget></ui>";

QString errorOf(const QString &path)
{
    try {
        PanelFiles::of(path);
    } catch (const CommandError &error) {
        return QString::fromStdString(error.what());
    }
    return QString();
}

KelRun runPanel(const QString &panel, const QString &picture, const QStringList &more = {})
{
    return runKel(QStringList{QStringLiteral("panel"), panel, QStringLiteral("--screenshot"), picture,
                              QStringLiteral("--after"), QStringLiteral("0")} +
                  more);
}

} // namespace

void tst_PanelProject::init()
{
    m_catalogue = std::make_unique<TempCatalogue>();
}

void tst_PanelProject::formIsItself()
{
    const QString form = write("a.ui", Form);
    QCOMPARE(PanelFiles::of(form).form, form);
    QCOMPARE(PanelFiles::of(form).catalogue, QString());
    QCOMPARE(PanelFiles::of(QStringLiteral("/nowhere")).form, QStringLiteral("/nowhere"));
    QCOMPARE(PanelFiles::of(QStringLiteral("/tmp")).form, QStringLiteral("/tmp"));
}

void tst_PanelProject::projectNamesItsForm()
{
    ServerProject project;
    project.uiFile = QStringLiteral("forms/a.ui");
    project.cmFile = QStringLiteral("not-there.cm");
    QCOMPARE(PanelFiles::of(writeProject(project)).form, m_catalogue->filePath(QStringLiteral("forms/a.ui")));
    QCOMPARE(PanelFiles::of(writeProject(project)).catalogue, QString());
    QCOMPARE(PanelFiles::of(writeProject(project)).ignored, QStringList());
    project.uiFile = QStringLiteral("/forms/a.ui");
    QCOMPARE(PanelFiles::of(writeProject(project)).form, QStringLiteral("/forms/a.ui"));
}

void tst_PanelProject::commandFileNamesTheCatalogue_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("catalogue");

    QTest::newRow("beside the project") << QByteArray("cat.sqlite") << "BESIDE/cat.sqlite";
    QTest::newRow("a whole path") << QByteArray("/var/cat.sqlite") << "/var/cat.sqlite";
    QTest::newRow("up to a zero byte") << QByteArray("cat.sqlite\0junk", 15) << "BESIDE/cat.sqlite";
    QTest::newRow("white space belongs to it") << QByteArray(" cat.sqlite ") << "BESIDE/ cat.sqlite ";
    QTest::newRow("empty") << QByteArray() << "";
    QTest::newRow("the catalogue itself") << QByteArray("SQLite format 3\0x", 17) << "BESIDE/a.cm";
}

void tst_PanelProject::commandFileNamesTheCatalogue()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, catalogue);
    ServerProject project;
    project.makeEmptyNames(QStringLiteral("a.prj"));
    write("a.cm", content);
    catalogue.replace(QStringLiteral("BESIDE"), QFileInfo(m_catalogue->path()).path());
    QCOMPARE(PanelFiles::of(writeProject(project)).catalogue, catalogue);
}

void tst_PanelProject::wrongProjectIsTold_data()
{
    QTest::addColumn<QByteArray>("project");
    QTest::addColumn<QString>("error");

    const QString damaged = QStringLiteral(": a server project without a readable version: cut short, or damaged");
    QTest::newRow("mark only") << QByteArray("NWPF") << damaged;
    QTest::newRow("cut short") << ServerProject().toByteArray().left(20) << damaged;
    QTest::newRow("no form") << ServerProject().toByteArray() << ": the project names no form";
}

void tst_PanelProject::wrongProjectIsTold()
{
    QFETCH(QByteArray, project);
    QFETCH(QString, error);
    const QString path = write("a.prj", project);
    QCOMPARE(errorOf(path), path + error);
    const KelRun run = runKel({QStringLiteral("panel"), path});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, "kel: " + path.toUtf8() + error.toUtf8() + "\n");
}

void tst_PanelProject::projectRuns()
{
    ServerProject project;
    project.makeEmptyNames(QStringLiteral("a.prj"));
    const QString path = writeProject(project);
    const QString picture = m_catalogue->filePath(QStringLiteral("a.png"));
    const KelRun without = runPanel(path, picture);
    QCOMPARE(without.exitCode, 1);
    QVERIFY2(without.errors.contains("a.ui: No such file"), without.errors.constData());

    write("a.ui", Form);
    write("a.cm", "cat.sqlite");
    const KelRun run = runPanel(path, picture);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    QVERIFY(!QImage(picture).isNull());

    write("a.cm", "other.sqlite");
    const KelRun missing = runPanel(path, picture);
    QCOMPARE(missing.exitCode, 1);
    QVERIFY2(missing.errors.contains("other.sqlite: there is no such catalogue"), missing.errors.constData());

    write("a.cm", "cat.sqlite\n");
    const KelRun broken = runPanel(path, picture);
    QCOMPARE(broken.exitCode, 1);
    QVERIFY2(broken.errors.contains("a.cm: ends with a line break"), broken.errors.constData());
}

void tst_PanelProject::givenCatalogueGoesFirst()
{
    ServerProject project;
    project.makeEmptyNames(QStringLiteral("a.prj"));
    write("a.ui", Form);
    write("a.cm", "other.sqlite");
    const KelRun run = runPanel(writeProject(project), m_catalogue->filePath(QStringLiteral("a.png")),
                                {QStringLiteral("--db"), m_catalogue->path()});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
}

void tst_PanelProject::scriptsAreLeftAlone()
{
    ServerProject project;
    project.uiFile = write("a.ui", Form);
    project.addScriptFile(QStringLiteral("a.js"));
    const QString path = writeProject(project);
    const KelRun run =
        runPanel(path, m_catalogue->filePath(QStringLiteral("a.png")), {QStringLiteral("--db"), m_catalogue->path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.errors, "kel: " + path.toUtf8() + ": a panel runs no scripts, those of the project are left alone\n");
}

void tst_PanelProject::checkTakesTheSameCatalogue()
{
    ServerProject project;
    project.makeEmptyNames(QStringLiteral("a.prj"));
    write("a.ui", Form);
    const QString path = writeProject(project);
    const auto isWithoutCatalogue = [&path] {
        return runKel({QStringLiteral("check"), path}).errors.contains("without a catalogue");
    };
    QVERIFY(isWithoutCatalogue());
    write("a.cm", "cat.sqlite");
    QVERIFY(!isWithoutCatalogue());
    write("a.cm", "other.sqlite");
    const KelRun run = runKel({QStringLiteral("check"), path});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errors.contains("other.sqlite: there is no such catalogue"), run.errors.constData());
}

KEL_TEST_MAIN(tst_PanelProject)
#include "tst_panelproject.moc"
