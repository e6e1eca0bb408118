#include "cataloguebench.h"
#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <catalogue/catalogue.h>
#include <kvcommands.h>

#include <QFileInfo>

#include <sys/stat.h>

/// Catalogues that are made of their sources, as files.
class tst_Catalog : public QObject, private CatalogueFolder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { renewFolder(); }
    void cleanup() { removeFolder(); }
    void madeCatalogueRuns();
    void mistakeLeavesEverythingAsItWas();
    void newCatalogueReplacesTheOld();
    void otherFilesAreNotWrittenOver_data();
    void otherFilesAreNotWrittenOver();
    void catalogueWithMoreInItIsNotWrittenOver();
    void catalogueThatIsBeingWrittenIsLeftAlone();
    void linkLeadsToTheCatalogue();
    void placeThatCannotBeWrittenIsTold();
    void variablesAreWrittenBeside();
    void foreignVariablesFileStays();
    void variablesThatCannotBeWrittenAreTold_data();
    void variablesThatCannotBeWrittenAreTold();
};

void tst_Catalog::madeCatalogueRuns()
{
    makeCatalogue(write("a.toml", SmallSource + "variables = [{name = \"lamp.t\", value = \"float{10 m}\"}]"),
                  path("a.sqlite"));
    QCOMPARE(files(), QStringList({QStringLiteral("a.sqlite"), QStringLiteral("a.toml"), QStringLiteral("a.var")}));
    struct stat made = {};
    QCOMPARE(::stat(QFile::encodeName(path("a.sqlite")).constData(), &made), 0);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    QCOMPARE(made.st_mode & 0777U, 0666U & ~mask);

    const KvCommands catalogue(path("a.sqlite"));
    QCOMPARE(catalogue.devices.size(), 1);
    QCOMPARE(catalogue.devices.first().id, 10);
    QCOMPARE(catalogue.devices.first().name, QStringLiteral("hall"));
    QCOMPARE(catalogue.devices.first().devname, QStringLiteral("Relay"));
    QCOMPARE(catalogue.devices.first().vendor, QStringLiteral("Acme"));
    QCOMPARE(catalogue.packets.value(QStringLiteral("hall")).size(), 1);
    QCOMPARE(catalogue.packets.value(QStringLiteral("hall")).first().command, QStringLiteral("01 %0"));
    QCOMPARE(catalogue.variables.size(), 1);
    QCOMPARE(catalogue.variables.first().name, QStringLiteral("t"));
    QCOMPARE(catalogue.variables.first().value, QStringLiteral("10 m"));
}

void tst_Catalog::mistakeLeavesEverythingAsItWas()
{
    makeCatalogue(write("a.toml", SmallSource), path("a.sqlite"));
    const QByteArray before = content("a.sqlite");
    const QString bad = write("bad.toml", SmallSource + "x = 1\ny = 2\n");
    QCOMPARE(errorOf([&] { makeCatalogue(bad, path("a.sqlite")); }),
             bad + QStringLiteral(":8:1: \"x\" is none of: vendors, devices, commands, answers, instances, objects, "
                                  "properties, packets, variables (and 1 more, see kel catalog check)"));
    QCOMPARE(content("a.sqlite"), before);
    QVERIFY(!errorOf([&] { makeCatalogue(bad, path("new.sqlite")); }).isEmpty());
    write("bad.toml", SmallSource + "x = 1\n");
    const QString alone = errorOf([&] { makeCatalogue(bad, path("new.sqlite")); });
    QVERIFY2(alone.startsWith(bad + QStringLiteral(":8:1: \"x\"")), qPrintable(alone));
    QVERIFY2(alone.endsWith(QLatin1String("variables")), qPrintable(alone));
    QCOMPARE(files(), QStringList({QStringLiteral("a.sqlite"), QStringLiteral("a.toml"), QStringLiteral("bad.toml")}));
}

void tst_Catalog::newCatalogueReplacesTheOld()
{
    makeCatalogue(write("a.toml", SmallSource), path("a.sqlite"));
    QVERIFY(::chmod(QFile::encodeName(path("a.sqlite")).constData(), 0640) == 0);
    const QByteArray changed = QByteArray(SmallSource).replace("A1 %id 01", "A1 %id 02");
    makeCatalogue(write("a.toml", changed), path("a.sqlite"));
    QVERIFY(rowsOf(path("a.sqlite")).join(QLatin1Char('\n')).contains(QLatin1String("'A1 %id 02'")));
    struct stat made = {};
    QCOMPARE(::stat(QFile::encodeName(path("a.sqlite")).constData(), &made), 0);
    QCOMPARE(made.st_mode & 0777U, 0640U);
    QCOMPARE(files(), QStringList({QStringLiteral("a.sqlite"), QStringLiteral("a.toml")}));
}

void tst_Catalog::otherFilesAreNotWrittenOver_data()
{
    QTest::addColumn<QByteArray>("there");
    QTest::addColumn<QString>("reason");

    QTest::newRow("text") << QByteArray("my letters") << QStringLiteral("not a readable catalogue");
    QTest::newRow("empty file") << QByteArray("") << QStringLiteral("not a catalogue: it has no table \"devices\"");
    QTest::newRow("source") << SmallSource << QStringLiteral("not a readable catalogue");
}

void tst_Catalog::otherFilesAreNotWrittenOver()
{
    QFETCH(QByteArray, there);
    QFETCH(QString, reason);
    const QString target = write("target", there);
    const QString source = write("a.toml", SmallSource);
    const QString error = errorOf([&] { makeCatalogue(source, target); });
    QVERIFY2(error.startsWith(target + QStringLiteral(": is there already and not written over: ") + reason),
             qPrintable(error));
    QCOMPARE(content("target"), there);
    QCOMPARE(files(), QStringList({QStringLiteral("a.toml"), QStringLiteral("target")}));

    QVERIFY(!errorOf([&] { makeCatalogue(source, source); }).isEmpty());
    QVERIFY(!errorOf([&] { makeCatalogue(source, folderPath()); }).isEmpty());
}

void tst_Catalog::catalogueWithMoreInItIsNotWrittenOver()
{
    TempCatalogue table;
    table.run(QStringLiteral("CREATE TABLE log (x)"));
    TempCatalogue column;
    column.run(QStringLiteral("ALTER TABLE devices ADD COLUMN photo"));
    const QString source = write("a.toml", SmallSource);
    QCOMPARE(errorOf([&] { makeCatalogue(source, table.path()); }),
             table.path() +
                 QStringLiteral(": is there already and not written over: it has more than a catalogue: table log"));
    QCOMPARE(errorOf([&] { makeCatalogue(source, column.path()); }),
             column.path() + QStringLiteral(": is there already and not written over: it has more than a catalogue: "
                                            "column photo of table devices"));
}

void tst_Catalog::catalogueThatIsBeingWrittenIsLeftAlone()
{
    const QString source = write("a.toml", SmallSource);
    makeCatalogue(source, path("a.sqlite"));
    for (const char *beside : {"a.sqlite-journal", "a.sqlite-wal"}) {
        write(beside, "x");
        QCOMPARE(errorOf([&] { makeCatalogue(source, path("a.sqlite")); }),
                 path("a.sqlite") + QStringLiteral(": %1 is there: a program writes the catalogue, or was stopped "
                                                   "while it did")
                                        .arg(QLatin1String(beside)));
        QVERIFY(QFile::remove(path(beside)));
    }
    TempCatalogue locked;
    locked.run(QStringLiteral("BEGIN EXCLUSIVE"));
    QVERIFY(
        errorOf([&] { makeCatalogue(source, locked.path()); }).contains(QLatin1String("locked by another program")));
    locked.run(QStringLiteral("ROLLBACK"));
}

void tst_Catalog::linkLeadsToTheCatalogue()
{
    const QString source = write("a.toml", SmallSource);
    makeCatalogue(source, path("real.sqlite"));
    QVERIFY(QFile::link(path("real.sqlite"), path("link.sqlite")));
    makeCatalogue(write("a.toml", QByteArray(SmallSource).replace("A1 %id 01", "A1 %id 02")), path("link.sqlite"));
    QCOMPARE(QFile::symLinkTarget(path("link.sqlite")), path("real.sqlite"));
    QVERIFY(rowsOf(path("real.sqlite")).join(QLatin1Char('\n')).contains(QLatin1String("'A1 %id 02'")));

    QVERIFY(QFile::link(path("nowhere"), path("dead.sqlite")));
    QVERIFY(!errorOf([&] { makeCatalogue(source, path("dead.sqlite")); }).isEmpty());
}

void tst_Catalog::placeThatCannotBeWrittenIsTold()
{
    const QString source = write("a.toml", SmallSource);
    const QString error = errorOf([&] { makeCatalogue(source, QStringLiteral("/nowhere/a.sqlite")); });
    QVERIFY2(error.startsWith(QLatin1String("/nowhere/a.sqlite: ")), qPrintable(error));
    QCOMPARE(errorOf([&] { makeCatalogue(QStringLiteral("/nowhere/a.toml"), path("a.sqlite")); }),
             QStringLiteral("/nowhere/a.toml: No such file or directory"));
    QCOMPARE(errorOf([&] { makeCatalogue(folderPath(), path("a.sqlite")); }),
             folderPath() + QStringLiteral(": not a file"));
}

void tst_Catalog::variablesAreWrittenBeside()
{
    const QByteArray variables = "variables = [{name = \"a.b\", value = \"#ff0000\"}, {name = \"c\", value = \"\"}]";
    makeCatalogue(write("a.toml", SmallSource + variables), path("a.b.sqlite"));
    QCOMPARE(content("a.var"), QByteArray("# Made by kel catalog make from a.toml.\na.b =#ff0000\nc = \n"));

    // Without the section the file is nobody's business; with an empty one it is emptied.
    makeCatalogue(write("a.toml", SmallSource), path("a.b.sqlite"));
    QVERIFY(content("a.var").contains("#ff0000"));
    makeCatalogue(write("a.toml", SmallSource + "variables = []"), path("a.b.sqlite"));
    QCOMPARE(content("a.var"), QByteArray("# Made by kel catalog make from a.toml.\n"));
}

void tst_Catalog::foreignVariablesFileStays()
{
    write("a.var", "t = float # by hand\n");
    const QString source = write("a.toml", SmallSource + "variables = [{name = \"t\", value = \"int\"}]");
    QCOMPARE(errorOf([&] { makeCatalogue(source, path("a.sqlite")); }),
             path("a.var") + QStringLiteral(": is there already and was not made by kel catalog make"));
    QCOMPARE(content("a.var"), QByteArray("t = float # by hand\n"));
    QVERIFY(!QFileInfo::exists(path("a.sqlite")));
}

void tst_Catalog::variablesThatCannotBeWrittenAreTold_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");

    QTest::newRow("line break in a name") << QByteArray("a\\nb") << QByteArray("x");
    QTest::newRow("line break in a value") << QByteArray("a") << QByteArray("x\\ny = z");
    QTest::newRow("equals in a name") << QByteArray("a=b") << QByteArray("x");
    QTest::newRow("comment in a value") << QByteArray("a") << QByteArray("x # y");
    QTest::newRow("comment for a name") << QByteArray("#a") << QByteArray("x");
    QTest::newRow("space around a value") << QByteArray("a") << QByteArray(" x");
    QTest::newRow("empty name") << QByteArray("") << QByteArray("x");
    QTest::newRow("empty part of a name") << QByteArray("a..b") << QByteArray("x");
}

void tst_Catalog::variablesThatCannotBeWrittenAreTold()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, value);
    const QString source = write("a.toml", SmallSource + "variables = [{name = \"" + name + "\", value = \"" + value +
                                               "\"}, {name = \"z\", value = \"1\"}]");
    const QString error = errorOf([&] { makeCatalogue(source, path("a.sqlite")); });
    QVERIFY2(error.startsWith(source + QStringLiteral(": variable \"")), qPrintable(error));
    QVERIFY2(error.endsWith(QLatin1String("cannot be written to a variables file")), qPrintable(error));
    QCOMPARE(files(), QStringList{QStringLiteral("a.toml")});
}

KEL_TEST_MAIN(tst_Catalog)
#include "tst_catalog.moc"
