#include "testmain.h"

#include "kelprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <serverproject.h>

using Kv_Designer::ServerProject;

class tst_Project : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void newFillsTheNames();
    void newKeepsWhatIsThere();
    void showsText();
    void showsJson();
    void steeringCharactersAreShownAsNumbers();
    void refusesForeignFiles_data();
    void refusesForeignFiles();
    void refusesWithoutADisplay();
    void setsFields();
    void refusesFields_data();
    void refusesFields();
    void addsAndRemovesScripts();
    void refusesScripts();
    void failureLeavesNothingBehind();
    void checksFiles();
    void wrongUsage_data();
    void wrongUsage();

private:
    KelRun run(const QStringList &arguments) const
    {
        return runKel(QStringList{QStringLiteral("project")} + arguments, m_dir->path());
    }
    QString path(const char *name) const { return m_dir->filePath(QLatin1String(name)); }
    void write(const char *name, const QByteArray &content) const;
    QByteArray content(const char *name) const;
    ServerProject project(const char *name = "p.prj") const;

    QScopedPointer<QTemporaryDir> m_dir;
};

void tst_Project::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

void tst_Project::write(const char *name, const QByteArray &content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray tst_Project::content(const char *name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ServerProject tst_Project::project(const char *name) const
{
    ServerProject project;
    project.version = -1;
    project.load(path(name), false);
    return project;
}

void tst_Project::newFillsTheNames()
{
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("sub")));
    const KelRun made = run({"new", "sub/pump.first.prj"});
    QCOMPARE(made.exitCode, 0);
    QVERIFY(made.output.isEmpty() && made.errors.isEmpty());

    ServerProject wanted;
    wanted.makeEmptyNames(QStringLiteral("pump"));
    QCOMPARE(content("sub/pump.first.prj"), wanted.toByteArray());
    QCOMPARE(QDir(path("sub")).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_Project::newKeepsWhatIsThere()
{
    write("p.prj", "something else");
    const KelRun refused = run({"new", "p.prj"});
    QCOMPARE(refused.exitCode, 1);
    QCOMPARE(refused.errorLines().size(), 1);
    QCOMPARE(content("p.prj"), QByteArray("something else"));

    QCOMPARE(run({"new", "--force", "p.prj"}).exitCode, 0);
    QCOMPARE(project().uiFile, QStringLiteral("p.ui"));
}

void tst_Project::showsText()
{
    ServerProject given;
    given.version = 4;
    given.makeEmptyNames(QStringLiteral("p"));
    given.cmFile.clear();
    given.addScriptFile(QStringLiteral("a b.js"));
    given.addScriptFile(QStringLiteral("ы.js"));
    write("p.prj", given.toByteArray());

    const KelRun shown = run({"show", "p.prj"});
    QCOMPARE(shown.exitCode, 0);
    QVERIFY(shown.errors.isEmpty());
    QCOMPARE(QString::fromUtf8(shown.output), QStringLiteral("version     4\n"
                                                             "form        p.ui\n"
                                                             "data        p.dat\n"
                                                             "variables   p.var\n"
                                                             "commands\n"
                                                             "main script a b.js\n"
                                                             "script      a b.js\n"
                                                             "script      ы.js\n"));
}

void tst_Project::showsJson()
{
    ServerProject given;
    given.version = 4;
    given.uiFile = QStringLiteral("p \"q\".ui");
    given.dataFile = QStringLiteral("");
    given.scriptFiles = QStringList{QStringLiteral("a"), QStringLiteral("b")};
    given.mainScript = QStringLiteral("b");
    write("p.prj", given.toByteArray());

    const KelRun shown = run({"show", "--json", "p.prj"});
    QCOMPARE(shown.exitCode, 0);
    const QJsonObject wanted{{"version", 4},
                             {"uiFile", "p \"q\".ui"},
                             {"dataFile", ""},
                             {"varFile", QJsonValue()},
                             {"cmFile", QJsonValue()},
                             {"mainScript", "b"},
                             {"scriptFiles", QJsonArray{"a", "b"}}};
    QCOMPARE(QJsonDocument::fromJson(shown.output).object(), wanted);
}

void tst_Project::steeringCharactersAreShownAsNumbers()
{
    ServerProject given;
    given.uiFile = QStringLiteral("a\n\033[2J\u202Eb");
    write("p.prj", given.toByteArray());

    const KelRun shown = run({"show", "p.prj"});
    QCOMPARE(shown.output.split('\n').at(1), QByteArray("form        a\\u000a\\u001b[2J\\u202eb"));
}

void tst_Project::refusesForeignFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    const QString foreign = QStringLiteral("not a server project");
    const QString damaged = QStringLiteral("a server project without a readable version: cut short, or damaged");
    ServerProject good;
    good.makeEmptyNames(QStringLiteral("p"));
    const QByteArray whole = good.toByteArray();
    const QByteArray nested = QByteArray::fromHex("000000090000000001").repeated(100000);
    QTest::newRow("empty") << QByteArray() << foreign;
    QTest::newRow("text") << QByteArray("<ui version=\"4.0\">") << foreign;
    QTest::newRow("half a magic") << QByteArray("NWP") << foreign;
    QTest::newRow("magic only") << QByteArray("NWPF") << damaged;
    QTest::newRow("cut") << whole.chopped(1) << damaged;
    QTest::newRow("block of 4 GiB") << QByteArray(whole).replace(4, 4, "\xFF\xFF\xFF\xFE") << damaged;
    QTest::newRow("version 0") << QByteArray(whole).replace(14, 1, QByteArray(1, '\0')) << damaged;
    QTest::newRow("nested without end") << "NWPF" + QByteArray::fromHex("000DBBA0") + nested << damaged;
}

void tst_Project::refusesForeignFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    write("p.prj", content);

    const QList<QStringList> commands{{"show", "p.prj"},
                                      {"show", "--json", "p.prj"},
                                      {"check", "p.prj"},
                                      {"set", "p.prj", "version=2"},
                                      {"add-script", "p.prj", "a"},
                                      {"remove-script", "p.prj", "a"}};
    for (const QStringList &command : commands) {
        const KelRun refused = run(command);
        QCOMPARE(refused.exitCode, 1);
        QVERIFY(refused.output.isEmpty());
        QCOMPARE(QString::fromUtf8(refused.errors), QStringLiteral("kel: p.prj: %1\n").arg(reason));
    }
    QCOMPARE(this->content("p.prj"), content);
}

void tst_Project::refusesWithoutADisplay()
{
    const QStringList bare{"QT_QPA_PLATFORM=", "DISPLAY=", "WAYLAND_DISPLAY="};
    for (const QString &file : {path("missing.prj"), m_dir->path(), path("no such folder/p.prj")}) {
        const KelRun refused = runKel({"project", "show", file}, m_dir->path(), bare);
        QCOMPARE(refused.exitCode, 1);
        QCOMPARE(refused.errorLines().size(), 1);
        QVERIFY(refused.errors.contains(file.toUtf8()));
    }
    const KelRun made = runKel({"project", "new", path("no such folder/p.prj")}, m_dir->path(), bare);
    QCOMPARE(made.exitCode, 1);
    QCOMPARE(made.errorLines().size(), 1);
}

void tst_Project::setsFields()
{
    QCOMPARE(run({"new", "p.prj"}).exitCode, 0);
    QCOMPARE(run({"add-script", "p.prj", "a", "b"}).exitCode, 0);
    const KelRun changed = run({"set", "p.prj", "version=9", "uiFile=x=y.ui", "cmFile=", "mainScript=b"});
    QCOMPARE(changed.exitCode, 0);
    QVERIFY(changed.errors.isEmpty());

    QCOMPARE(project().version, 9);
    QCOMPARE(project().uiFile, QStringLiteral("x=y.ui"));
    QCOMPARE(project().dataFile, QStringLiteral("p.dat"));
    QVERIFY(project().cmFile.isNull());
    QCOMPARE(project().mainScript, QStringLiteral("b"));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_Project::refusesFields_data()
{
    QTest::addColumn<QString>("word");

    for (const char *word : {"version=0", "version=-1", "version=x", "version=2147483648", "version=", "colour=red",
                             "scriptFiles=a", "=a", "uiFile", "mainScript=nobody"})
        QTest::newRow(word) << QString::fromLatin1(word);
}

void tst_Project::refusesFields()
{
    QFETCH(QString, word);
    QCOMPARE(run({"new", "p.prj"}).exitCode, 0);
    const QByteArray before = content("p.prj");

    const KelRun refused = run({"set", "p.prj", "dataFile=other", word});
    QCOMPARE(refused.exitCode, 1);
    QCOMPARE(refused.errorLines().size(), 1);
    QVERIFY(refused.errors.contains(word.section(QLatin1Char('='), -1).toUtf8()));
    QCOMPARE(content("p.prj"), before);
}

void tst_Project::addsAndRemovesScripts()
{
    QCOMPARE(run({"new", "p.prj"}).exitCode, 0);
    QCOMPARE(run({"add-script", "p.prj", "a"}).exitCode, 0);
    QCOMPARE(run({"add-script", "p.prj", "b", "c"}).exitCode, 0);
    QCOMPARE(project().scriptFiles, QStringList({"a", "b", "c"}));
    QCOMPARE(project().mainScript, QStringLiteral("a"));

    QCOMPARE(run({"remove-script", "p.prj", "a"}).exitCode, 0);
    QCOMPARE(project().mainScript, QStringLiteral("b"));
    QCOMPARE(run({"remove-script", "p.prj", "b", "c"}).exitCode, 0);
    QVERIFY(project().scriptFiles.isEmpty());
    QVERIFY(project().mainScript.isEmpty());
}

void tst_Project::refusesScripts()
{
    QCOMPARE(run({"new", "p.prj"}).exitCode, 0);
    QCOMPARE(run({"add-script", "p.prj", "a"}).exitCode, 0);
    const QByteArray before = content("p.prj");

    for (const QStringList &command :
         {QStringList{"add-script", "p.prj", "new", "a"}, QStringList{"add-script", "p.prj", "b", ""},
          QStringList{"remove-script", "p.prj", "a", "b"}, QStringList{"remove-script", "p.prj", ""}}) {
        const KelRun refused = run(command);
        QCOMPARE(refused.exitCode, 1);
        QCOMPARE(refused.errorLines().size(), 1);
        QCOMPARE(content("p.prj"), before);
    }
}

void tst_Project::failureLeavesNothingBehind()
{
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("folder.prj")));
    const KelRun refused = run({"new", "--force", "folder.prj"});
    QCOMPARE(refused.exitCode, 1);
    QCOMPARE(refused.errorLines().size(), 1);

    QCOMPARE(run({"new", "no such folder/p.prj"}).exitCode, 1);
    QVERIFY(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

void tst_Project::checksFiles()
{
    QCOMPARE(run({"new", "p.prj"}).exitCode, 0);
    QCOMPARE(run({"add-script", "p.prj", "a.js"}).exitCode, 0);
    QCOMPARE(run({"set", "p.prj", "cmFile="}).exitCode, 0);
    write("p.ui", "");
    write("a.js", "");
    write("p.var", "");
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("p.dat"))); // a folder is no data file

    const KelRun partly = run({"check", "p.prj"});
    QCOMPARE(partly.exitCode, 1);
    QCOMPARE(partly.output, QByteArray("found       p.ui\n"
                                       "found       a.js\n"
                                       "missing     p.dat\n"
                                       "found       p.var\n"));
    QCOMPARE(partly.errors, QByteArray("kel: p.prj: 1 file is missing\n"));

    // beside the project, wherever the program is run
    QVERIFY(QDir(m_dir->path()).rmdir(QStringLiteral("p.dat")));
    write("p.dat", "");
    const KelRun whole = runKel({"project", "check", path("p.prj")}, QStringLiteral("/"));
    QCOMPARE(whole.exitCode, 0);
    QVERIFY(whole.errors.isEmpty());

    ServerProject stray = project();
    stray.mainScript = QStringLiteral("stray.js");
    write("p.prj", stray.toByteArray());
    const KelRun refused = run({"check", "p.prj"});
    QCOMPARE(refused.exitCode, 1);
    QCOMPARE(refused.errors, QByteArray("kel: p.prj: main script stray.js is none of the scripts\n"));
}

void tst_Project::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("no job") << QStringList();
    QTest::newRow("unknown job") << QStringList{"paint", "p.prj"};
    QTest::newRow("no file") << QStringList{"show"};
    QTest::newRow("no field") << QStringList{"set", "p.prj"};
    QTest::newRow("no script") << QStringList{"add-script", "p.prj"};
    QTest::newRow("two files") << QStringList{"check", "p.prj", "q.prj"};
    QTest::newRow("unknown option") << QStringList{"show", "--xml", "p.prj"};
}

void tst_Project::wrongUsage()
{
    QFETCH(QStringList, arguments);
    const KelRun refused = run(arguments);

    QCOMPARE(refused.exitCode, 2);
    QCOMPARE(refused.errorLines().size(), 1);
    QVERIFY(refused.output.isEmpty());
}

KEL_TEST_MAIN(tst_Project)
#include "tst_project.moc"
