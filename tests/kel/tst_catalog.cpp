#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <catalogue/catalogue.h>
#include <catalogue/cataloguedatabase.h>
#include <catalogue/cataloguefiles.h>
#include <catalogue/cataloguesource.h>
#include <command.h>
#include <kvcommands.h>

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <sys/stat.h>

/// Catalogues as files: made, exported, shown and checked with real SQLite files.
class tst_Catalog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void madeCatalogueRuns();
    void mistakeLeavesEverythingAsItWas();
    void newCatalogueReplacesTheOld();
    void otherFilesAreNotWrittenOver_data();
    void otherFilesAreNotWrittenOver();
    void catalogueWithMoreInItIsNotWrittenOver();
    void catalogueThatIsBeingWrittenIsLeftAlone();
    void readingLeavesNoLogBehind();
    void linkLeadsToTheCatalogue();
    void placeThatCannotBeWrittenIsTold();
    void variablesAreWrittenBeside();
    void foreignVariablesFileStays();
    void variablesThatCannotBeWrittenAreTold_data();
    void variablesThatCannotBeWrittenAreTold();
    void exportLosesNothing_data();
    void exportLosesNothing();
    void hallsCatalogueComesBack();
    void everyShapeOfACatalogueIsRead_data();
    void everyShapeOfACatalogueIsRead();
    void readingWritesNothing();
    void exportRefusesWhatItWouldLose_data();
    void exportRefusesWhatItWouldLose();
    void exportKeepsToNewFiles();
    void exportPrintsWithoutAFile();
    void outputThatIsLostIsTold_data();
    void outputThatIsLostIsTold();
    void checkTellsAllMistakesOfADatabase();
    void checkTellsMissingTables();
    void checkTellsAllMistakesOfASource();
    void checkIsSilentAboutGoodFiles();
    void showPrintsTables();
    void wrongInputIsOneLine_data();
    void wrongInputIsOneLine();
    void damagedCatalogueIsTold();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QString write(const char *name, const QByteArray &content) const;
    QByteArray content(const char *name) const;
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

const QByteArray SmallSource = "vendors = [{id = 1, name = \"Acme\"}]\n"
                               "devices = [{id = 3, name = \"Relay\", vendor = \"Acme\"}]\n"
                               "commands = [{id = 11, device = \"Relay\", command = \"A1 %id 01\"}]\n"
                               "answers = [{id = 12, device = \"Relay\", command = \"A2 %id %0\"}]\n"
                               "instances = [{id = 5, device = \"Relay\", name = \"Hall\", device_id = 7}]\n"
                               "objects = [{id = 10, device = \"Relay\", name = \"hall\"}]\n"
                               "packets = [{id = 100, object = \"hall\", name = \"on\", command = \"01 %0\"}]\n";

template <typename Action>
QString errorOf(Action action)
{
    try {
        action();
    } catch (const CommandError &error) {
        return QString::fromStdString(error.what());
    }
    return QString();
}

/// Every row of the seven tables in their order, with the type of each cell.
QStringList rowsOf(const QString &path)
{
    static const QStringList Columns = {
        QStringLiteral("vendors:id,name"),
        QStringLiteral("devices:id,name,vendor,vname,gname,desc"),
        QStringLiteral("commands:id,command,description,device"),
        QStringLiteral("answers:id,command,description,device"),
        QStringLiteral("current:id,device,name,device_id"),
        QStringLiteral("properties:object_id,device_id,name,value"),
        QStringLiteral("packets:id,name,args_count,flags,command,desc,object_id"),
    };
    QStringList rows;
    CatalogueConnection connection(path, CatalogueConnection::Access::Read);
    for (const QString &table : Columns) {
        QStringList columns;
        for (const QString &column : table.section(QLatin1Char(':'), 1).split(QLatin1Char(',')))
            columns << QStringLiteral("quote(\"%1\")||hex(\"%1\")").arg(column);
        QSqlQuery query(connection.database());
        const QString name = table.section(QLatin1Char(':'), 0, 0);
        if (!query.exec(QStringLiteral("SELECT %1 FROM %2 ORDER BY rowid").arg(columns.join(QLatin1Char(',')), name)))
            qFatal("no table %s", qPrintable(name));
        while (query.next()) {
            QStringList row = {name};
            for (int i = 0; i < columns.size(); ++i)
                row << query.value(i).toString();
            rows << row.join(QLatin1Char('|'));
        }
    }
    return rows;
}

/// Texts that are hard to write, and valid numbers, from one seed.
class RandomRows
{
public:
    explicit RandomRows(quint32 seed)
        : m_random(seed)
    {
    }

    int below(int count) { return int(m_random.bounded(count)); }

    QString text()
    {
        static const QStringList Pieces = {
            QStringLiteral("a"),    QStringLiteral(" "),       QStringLiteral("\""),   QStringLiteral("\\"),
            QStringLiteral("'"),    QStringLiteral("\n"),      QStringLiteral("\r"),   QStringLiteral("\t"),
            QStringLiteral("#"),    QStringLiteral("{"),       QStringLiteral("]"),    QStringLiteral("\"\"\""),
            QStringLiteral("'''"),  QString(QChar(0x1b)),      QString(QChar(0x7f)),   QString(QChar(0x202E)),
            QString(QChar(0xFEFF)), QString(QChar(0xFFFE)),    QString::fromUtf8("😀"), QString::fromUtf8("é"),
            QStringLiteral("%1"),   QStringLiteral("\\u0041"), QStringLiteral("="),    QString(QChar(0)),
            QStringLiteral(".")};
        QString text = QLatin1String("");
        for (int i = below(8); i > 0; --i)
            text += Pieces.at(below(Pieces.size()));
        return text;
    }

    /// A text, or NULL.
    QVariant cell() { return below(4) == 0 ? QVariant() : QVariant(text()); }

    QVariant number() { return below(5) == 0 ? QVariant() : QVariant(below(3) ? below(300) : -below(70000)); }

    QString bytes(bool isCommand)
    {
        QStringList tokens;
        for (int i = below(5); i > 0; --i) {
            const int kind = below(isCommand ? 4 : 3);
            tokens << (kind == 0   ? QString::number(below(256), 16).toUpper()
                       : kind == 1 ? QStringLiteral("%id")
                       : kind == 2 ? QStringLiteral("%%1").arg(below(20))
                                   : QStringLiteral("%(a%1*2+1)").arg(below(4)));
        }
        return tokens.join(QLatin1Char(' '));
    }

private:
    QRandomGenerator m_random;
};

/// Names that may not come twice get their number in front.
QVariant uniqueName(RandomRows &random, int id)
{
    return random.below(6) == 0 ? QVariant() : QVariant(QString::number(id) + random.text());
}

void fillKinds(TempCatalogue &catalogue, RandomRows &random)
{
    const int count = 1 + random.below(5);
    for (int id = 1; id <= count; ++id) {
        catalogue.run(QStringLiteral("INSERT INTO vendors (id,name) VALUES (?,?)"), {id, uniqueName(random, id)});
        catalogue.run(
            QStringLiteral("INSERT INTO devices (id,name,vendor,vname,gname,\"desc\") VALUES (?,?,?,?,?,?)"),
            {id * 3, uniqueName(random, id), 1 + random.below(id), random.cell(), random.cell(), random.cell()});
    }
    for (int id = 20; id > 0; --id) { // numbers that fall: the rows' order is not theirs
        const int device = 3 * (1 + random.below(count));
        catalogue.run(QStringLiteral("INSERT INTO commands (id,device,command,description) VALUES (?,?,?,?)"),
                      {id, device, random.bytes(true), random.cell()});
        catalogue.run(QStringLiteral("INSERT INTO answers (id,device,command,description) VALUES (?,?,?,?)"),
                      {id, device, random.bytes(false), random.cell()});
    }
    for (int id = 1; id <= 6; ++id)
        catalogue.run(QStringLiteral("INSERT INTO current (id,device,name,device_id) VALUES (?,?,?,?)"),
                      {id, 3 * (1 + random.below(count)), uniqueName(random, id), random.below(256)});
}

void fillObjects(TempCatalogue &catalogue, RandomRows &random)
{
    for (int id = 1; id <= 6; ++id)
        catalogue.addObject(id, 3, random.cell());
    for (int i = random.below(4); i > 0; --i)
        catalogue.run(QStringLiteral("INSERT INTO properties (object_id,device_id,name,value) VALUES (?,3,?,?)"),
                      {random.number(), random.cell(), random.cell()});
    for (int id = 1; id <= 9; ++id)
        catalogue.run(QStringLiteral("INSERT INTO packets (id,object_id,name,args_count,flags,command,\"desc\") "
                                     "VALUES (?,?,?,?,?,?,?)"),
                      {id, 1 + random.below(6), uniqueName(random, id), random.number(), random.number(),
                       QStringLiteral("01 %(word)%1").arg(random.below(9)), random.cell()});
}

} // namespace

void tst_Catalog::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_Catalog::cleanup()
{
    m_folder.reset();
}

QString tst_Catalog::write(const char *name, const QByteArray &content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", name);
    return file.fileName();
}

QByteArray tst_Catalog::content(const char *name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

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
    QVERIFY(!errorOf([&] { makeCatalogue(source, m_folder->path()); }).isEmpty());
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

void tst_Catalog::readingLeavesNoLogBehind()
{
    const QString source = write("a.toml", SmallSource);
    const QString catalogue = path("a #1?%41.sqlite"); // a name that would mean more in an address
    makeCatalogue(source, catalogue);
    const auto query = [&catalogue](const char *statement) {
        CatalogueConnection connection(catalogue, CatalogueConnection::Access::Write);
        return QSqlQuery(connection.database()).exec(QLatin1String(statement));
    };
    QVERIFY(query("PRAGMA journal_mode=WAL"));
    QVERIFY(query("INSERT INTO vendors VALUES (2, 'Later')"));
    const QStringList before = files();
    QCOMPARE(before.size(), 2);
    QCOMPARE(CatalogueFile::read(catalogue).data.rows(CatalogueSection::Vendors).size(), 2);
    QCOMPARE(files(), before);
    makeCatalogue(source, catalogue);
    makeCatalogue(source, catalogue);
    QCOMPARE(files(), before);

    // What another program has not yet brought from its log into the catalogue is seen too.
    QVERIFY(query("PRAGMA journal_mode=WAL"));
    QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
    other.setDatabaseName(catalogue);
    QVERIFY(other.open());
    QVERIFY(QSqlQuery(other).exec(QStringLiteral("INSERT INTO vendors VALUES (2, 'Later')")));
    QCOMPARE(CatalogueFile::read(catalogue).data.rows(CatalogueSection::Vendors).size(), 2);
    other = QSqlDatabase();
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    QCOMPARE(files(), before);
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
    QCOMPARE(errorOf([&] { makeCatalogue(m_folder->path(), path("a.sqlite")); }),
             m_folder->path() + QStringLiteral(": not a file"));
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

void tst_Catalog::exportLosesNothing_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 60; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void tst_Catalog::exportLosesNothing()
{
    QFETCH(quint32, seed);
    RandomRows random(seed);
    TempCatalogue catalogue;
    catalogue.run(QStringLiteral("BEGIN"));
    fillKinds(catalogue, random);
    fillObjects(catalogue, random);
    catalogue.run(QStringLiteral("COMMIT"));
    catalogue.writeVariables("[a]\nb = float{10 m}\nc=#x\n");

    const CatalogueFile file = CatalogueFile::read(catalogue.path());
    QVERIFY2(file.problems.isEmpty(), qPrintable(file.problems.join(QLatin1Char('\n'))));
    QCOMPARE(file.foreignParts, QStringList());
    const QByteArray text = catalogueSourceText(file.data);
    const QString source = write("again.toml", text);
    const QString error = errorOf([&] { makeCatalogue(source, path("again.sqlite")); });
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QCOMPARE(rowsOf(path("again.sqlite")), rowsOf(catalogue.path()));

    const CatalogueFile again = CatalogueFile::read(path("again.sqlite"));
    QCOMPARE(catalogueSourceText(again.data), text);
    QCOMPARE(again.data.rows(CatalogueSection::Variables).size(), 2);
}

void tst_Catalog::hallsCatalogueComesBack()
{
    const KelRun demo = runKel({QStringLiteral("demo"), QStringLiteral("--into"), m_folder->path()});
    QVERIFY2(demo.exitCode == 0, demo.errors.constData());
    const KelRun exported =
        runKel({QStringLiteral("catalog"), QStringLiteral("export"), path("hall.sqlite"), path("again.toml")});
    QVERIFY2(exported.exitCode == 0, exported.errors.constData());
    const KelRun made =
        runKel({QStringLiteral("catalog"), QStringLiteral("make"), path("again.toml"), path("again.sqlite")});
    QVERIFY2(made.exitCode == 0, made.errors.constData());
    QCOMPARE(made.output + made.errors, QByteArray());
    QCOMPARE(rowsOf(path("again.sqlite")), rowsOf(path("hall.sqlite")));
    QVERIFY(rowsOf(path("hall.sqlite")).size() > 40);
    QCOMPARE(content("again.var").mid(content("again.var").indexOf('\n')),
             content("hall.var").mid(content("hall.var").indexOf('\n')));
    for (const char *file : {"hall.toml", "hall.sqlite", "again.toml", "again.sqlite"}) {
        const KelRun checked = runKel({QStringLiteral("catalog"), QStringLiteral("check"), path(file)});
        QCOMPARE(checked.output + checked.errors, QByteArray());
        QCOMPARE(checked.exitCode, 0);
    }
}

void tst_Catalog::everyShapeOfACatalogueIsRead_data()
{
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<QByteArray>("shown");
    QTest::addColumn<QString>("problem");

    const QStringList Encoded = {QStringLiteral("PRAGMA encoding='UTF-16le'"),
                                 QStringLiteral("CREATE TABLE devices (id,name,vendor,vname,gname,desc)"),
                                 QStringLiteral("INSERT INTO devices VALUES (1,'Übel',NULL,NULL,'','x')")};
    QTest::newRow("other encoding") << Encoded
                                    << QByteArray("devices\n"
                                                  "  id  name  vendor  vname  gname  desc\n"
                                                  "  1   Übel  -       -             x\n")
                                    << QStringLiteral("there is no table \"vendors\"");
    const QStringList Rowless = {
        QStringLiteral("CREATE TABLE devices (id PRIMARY KEY,name,vendor,vname,gname,desc) WITHOUT ROWID"),
        QStringLiteral("INSERT INTO devices VALUES (2,'b',NULL,'v','g','d'), (1,'a',NULL,'v','g','d')")};
    QTest::newRow("rows without numbers") << Rowless
                                          << QByteArray("devices\n"
                                                        "  id  name  vendor  vname  gname  desc\n"
                                                        "  1   a     -       v      g      d\n"
                                                        "  2   b     -       v      g      d\n")
                                          << QStringLiteral("there is no table \"vendors\"");
    const QStringList Short = {QStringLiteral("CREATE TABLE vendors (id,name)"),
                               QStringLiteral("CREATE TABLE devices (id,name,vname,gname,desc)"),
                               QStringLiteral("INSERT INTO devices VALUES (1,'a','v','g','d')")};
    QTest::newRow("a column less") << Short
                                   << QByteArray("devices\n"
                                                 "  id  name  vendor  vname  gname  desc\n"
                                                 "  1   a     -       v      g      d\n")
                                   << QStringLiteral("table devices has no column \"vendor\"");
    const QStringList Nameless = {QStringLiteral("CREATE TABLE vendors (id,name)"),
                                  QStringLiteral("INSERT INTO vendors VALUES (1,'name')"),
                                  QStringLiteral("CREATE TABLE devices (id,name,vendor,vname,gname,desc)"),
                                  QStringLiteral("CREATE TABLE commands (id,device,command,description)"),
                                  QStringLiteral("CREATE TABLE answers (id,device,command,description)"),
                                  QStringLiteral("CREATE TABLE current (id,device,name,device_id)"),
                                  QStringLiteral("CREATE TABLE properties (object_id,device_id,value)")};
    QTest::newRow("objects without the name of their property")
        << Nameless << QByteArray("vendors\n  id  name\n  1   name\n")
        << QStringLiteral("table properties has no column \"name\"");
}

void tst_Catalog::everyShapeOfACatalogueIsRead()
{
    QFETCH(QStringList, statements);
    QFETCH(QByteArray, shown);
    QFETCH(QString, problem);
    {
        CatalogueConnection connection(path("a.sqlite"), CatalogueConnection::Access::Write);
        QSqlQuery query(connection.database());
        for (const QString &statement : statements)
            QVERIFY2(query.exec(statement), qPrintable(statement));
    }
    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("show"), path("a.sqlite")});
    QCOMPARE(run.output, shown);
    QCOMPARE(QString::fromUtf8(run.errors),
             QStringLiteral("kel: %1: %2 (kel catalog check tells all)\n").arg(path("a.sqlite"), problem));
}

void tst_Catalog::readingWritesNothing()
{
    TempCatalogue catalogue;
    CatalogueConnection connection(catalogue.path(), CatalogueConnection::Access::Read);
    QVERIFY(connection.isOpen());
    QVERIFY(!QSqlQuery(connection.database()).exec(QStringLiteral("INSERT INTO vendors VALUES (1, 'x')")));
}

void tst_Catalog::exportRefusesWhatItWouldLose_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("obstacle");

    const auto row = [](const char *name, const char *statement, const char *obstacle) {
        QTest::newRow(name) << QString::fromLatin1(statement) << QString::fromLatin1(obstacle);
    };
    row("bytes", "INSERT INTO vendors VALUES (2, x'00ff')",
        "vendors, row 1, column name: neither a whole number nor a text");
    row("fraction in a number", "INSERT INTO commands (id, device) VALUES (1, 1.5)",
        "commands, row 1, column device: neither a whole number nor a text");
    row("text for a number", "INSERT INTO commands (id, device) VALUES (1, 'Relay')",
        "command 1: device is a text, not a number");
    row("text that is not well-formed", "INSERT INTO vendors VALUES (2, CAST(x'ff' AS TEXT))",
        "vendors, row 1, column name: the text is not well-formed");
    row("half a surrogate pair", "INSERT INTO vendors VALUES (2, CAST(x'eda080' AS TEXT))",
        "vendors, row 1, column name: the text is not well-formed");
    row("table", "CREATE TABLE log (x)", "table log is no part of a catalogue (--anyway leaves such parts out)");
    row("view", "CREATE VIEW names AS SELECT name FROM devices",
        "table names is no part of a catalogue (--anyway leaves such parts out)");
    row("column", "ALTER TABLE packets ADD COLUMN photo",
        "column photo of table packets is no part of a catalogue (--anyway leaves such parts out)");
    row("missing table", "DROP TABLE answers", "there is no table \"answers\"");
    row("missing column", "ALTER TABLE vendors RENAME COLUMN name TO title", "table vendors has no column \"name\"");
}

void tst_Catalog::exportRefusesWhatItWouldLose()
{
    QFETCH(QString, statement);
    QFETCH(QString, obstacle);
    TempCatalogue catalogue;
    catalogue.run(statement);
    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("export"), catalogue.path(), path("x.toml")});
    QCOMPARE(QString::fromUtf8(run.errors), QStringLiteral("kel: %1: %2\n").arg(catalogue.path(), obstacle));
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(files(), QStringList());

    const bool mayBeLeftOut = obstacle.contains(QLatin1String("--anyway"));
    const KelRun anyway =
        runKel({QStringLiteral("catalog"), QStringLiteral("export"), QStringLiteral("--anyway"), catalogue.path()});
    QCOMPARE(anyway.exitCode, mayBeLeftOut ? 0 : 1);
}

void tst_Catalog::exportKeepsToNewFiles()
{
    TempCatalogue catalogue;
    const QString there = write("x.toml", "# mine");
    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("export"), catalogue.path(), there});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, "kel: " + there.toUtf8() + ": is there already\n");
    QCOMPARE(content("x.toml"), QByteArray("# mine"));
}

void tst_Catalog::exportPrintsWithoutAFile()
{
    makeCatalogue(write("a.toml", SmallSource), path("a.sqlite"));
    const KelRun printed = runKel({QStringLiteral("catalog"), QStringLiteral("export"), path("a.sqlite")});
    QCOMPARE(printed.exitCode, 0);
    QCOMPARE(printed.errors, QByteArray());
    const KelRun written =
        runKel({QStringLiteral("catalog"), QStringLiteral("export"), path("a.sqlite"), path("b.toml")});
    QCOMPARE(written.output, QByteArray());
    QVERIFY(printed.output.contains("\"A1 %id 01\""));
    QCOMPARE(printed.output, content("b.toml"));

    const KelRun nowhere = runKel(
        {QStringLiteral("catalog"), QStringLiteral("export"), path("a.sqlite"), QStringLiteral("/nowhere/b.toml")});
    QCOMPARE(nowhere.exitCode, 1);
    QCOMPARE(nowhere.errors, QByteArray("kel: /nowhere/b.toml: No such file or directory\n"));
}

void tst_Catalog::outputThatIsLostIsTold_data()
{
    QTest::addColumn<QString>("verb");
    QTest::newRow("show") << QStringLiteral("show");
    QTest::newRow("export") << QStringLiteral("export");
    QTest::newRow("check") << QStringLiteral("check");
}

void tst_Catalog::outputThatIsLostIsTold()
{
    QFETCH(QString, verb);
    TempCatalogue catalogue;
    catalogue.addVendor(1, QStringLiteral("Acme"));
    catalogue.addDevice(3, QStringLiteral("Relay"), 2); // something to say for each
    QProcess process;
    setUpKel(process, {QStringLiteral("catalog"), verb, catalogue.path()});
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardError(), QByteArray("kel: cannot write to standard output\n"));
    QCOMPARE(process.exitCode(), 1);
}

void tst_Catalog::checkTellsAllMistakesOfADatabase()
{
    TempCatalogue catalogue;
    catalogue.addVendor(1, QStringLiteral("Acme"));
    catalogue.addDevice(3, QStringLiteral("Relay"), 2);
    catalogue.addCommand(11, 3, QStringLiteral("A1 1FF"));
    catalogue.addCommand(11, 4, QStringLiteral("%(a0*)"));
    catalogue.addCommand(12, 3, QStringLiteral("%id"));
    catalogue.addCurrent(5, 3, QStringLiteral("Hall"), 300);
    catalogue.run(QStringLiteral("INSERT INTO answers (id,device,command) VALUES (NULL,3,'01')"));
    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("check"), catalogue.path()});
    QCOMPARE(run.exitCode, 1);
    QStringList lines = QString::fromUtf8(run.output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVERIFY2(lines.size() == 7, run.output.constData());
    for (QString &line : lines) {
        QVERIFY(line.startsWith(catalogue.path() + QStringLiteral(": ")));
        line.remove(0, catalogue.path().size() + 2);
    }
    QCOMPARE(lines.at(0), QStringLiteral("device 3: there is no vendor 2"));
    QCOMPARE(lines.at(1), QStringLiteral("command 11: \"1FF\" is above FF, the largest byte"));
    QCOMPARE(lines.at(2), QStringLiteral("command 11: the number is taken already"));
    QCOMPARE(lines.at(3), QStringLiteral("command 11: there is no device 4"));
    QVERIFY(lines.at(4).startsWith(QLatin1String("command 11: \"%(a0*)\" gives no byte: ")));
    QCOMPARE(lines.at(5), QStringLiteral("answer: has no number"));
    QCOMPARE(lines.at(6), QStringLiteral("instance 5: device_id 300 is not between 0 and 255, and texts of device 3 "
                                         "hold %id"));
}

void tst_Catalog::checkTellsMissingTables()
{
    TempCatalogue catalogue;
    catalogue.run(QStringLiteral("DROP TABLE properties"));
    catalogue.run(QStringLiteral("DROP TABLE answers"));
    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("check"), catalogue.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(QString::fromUtf8(run.output),
             QStringLiteral("%1: there is no table \"answers\"\n%1: there is no table \"properties\"\n")
                 .arg(catalogue.path()));
}

void tst_Catalog::checkTellsAllMistakesOfASource()
{
    const QString source = write("a.toml", SmallSource + "x = 1\ny = 2\n");
    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("check"), source});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, QByteArray());
    const QList<QByteArray> lines = run.output.trimmed().split('\n');
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).startsWith(source.toUtf8() + ":8:1: \"x\""));
    QVERIFY(lines.at(1).startsWith(source.toUtf8() + ":9:1: \"y\""));
}

void tst_Catalog::checkIsSilentAboutGoodFiles()
{
    const QString source = write("a.toml", SmallSource);
    makeCatalogue(source, path("a.sqlite"));
    for (const QString &file : {source, path("a.sqlite")}) {
        const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("check"), file});
        QCOMPARE(run.output + run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }
}

void tst_Catalog::showPrintsTables()
{
    const QByteArray small = "vendors = [{id = 1, name = \"Acme\"}, {id = 12, name = \"\\u001b[2J\"}]\n"
                             "devices = [{id = 3, name = \"Relay\", desc = \"\"}]\n";
    const QString source = write("a.toml", small);
    makeCatalogue(source, path("a.sqlite"));
    for (const QString &file : {source, path("a.sqlite")}) {
        const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("show"), file});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output, QByteArray("vendors\n"
                                        "  id  name\n"
                                        "  1   Acme\n"
                                        "  12  \\u001b[2J\n"
                                        "\n"
                                        "devices\n"
                                        "  id  name   vendor  vname  gname  desc\n"
                                        "  3   Relay  -       -      -\n"));
        QCOMPARE(run.exitCode, 0);
    }
    const KelRun wrong = runKel({QStringLiteral("catalog"), QStringLiteral("show"), write("b.toml", small + "x = 1")});
    QCOMPARE(wrong.exitCode, 1);
    QVERIFY(wrong.output.contains("  3   Relay"));
    QVERIFY2(wrong.errors.contains("b.toml:3:1: \"x\""), wrong.errors.constData());
}

void tst_Catalog::wrongInputIsOneLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("error");

    const QString nowhere = QStringLiteral("/nowhere/x");
    for (const char *verb : {"show", "check"})
        QTest::newRow(verb) << QStringList{QLatin1String(verb), nowhere}
                            << QByteArray("kel: /nowhere/x: No such file or directory\n");
    QTest::newRow("export") << QStringList{QStringLiteral("export"), nowhere}
                            << QByteArray("kel: /nowhere/x: there is no such catalogue\n");
    QTest::newRow("make") << QStringList{QStringLiteral("make"), nowhere, QStringLiteral("y")}
                          << QByteArray("kel: /nowhere/x: No such file or directory\n");
    QTest::newRow("a folder for a catalogue") << QStringList{QStringLiteral("export"), QStringLiteral("/tmp")}
                                              << QByteArray("kel: /tmp: the catalogue is not a file\n");
    QTest::newRow("a folder") << QStringList{QStringLiteral("check"), QStringLiteral("/tmp")}
                              << QByteArray("kel: /tmp: not a file\n");
}

void tst_Catalog::wrongInputIsOneLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, error);
    const KelRun run = runKel(QStringList{QStringLiteral("catalog")} + arguments, m_folder->path());
    QCOMPARE(run.errors, error);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(files(), QStringList());
}

void tst_Catalog::damagedCatalogueIsTold()
{
    makeCatalogue(write("a.toml", SmallSource), path("a.sqlite"));
    QByteArray bytes = content("a.sqlite");
    bytes.replace(32, 8, QByteArray::fromHex("0000000000000007")); // seven free pages, and no first one
    write("a.sqlite", bytes);
    for (const char *verb : {"show", "check", "export"}) {
        const KelRun run = runKel({QStringLiteral("catalog"), QLatin1String(verb), path("a.sqlite")});
        QVERIFY2(run.errors.startsWith("kel: " + path("a.sqlite").toUtf8() + ": the catalogue is damaged ("),
                 run.errors.constData());
        QCOMPARE(run.errorLines().size(), 1);
        QCOMPARE(run.exitCode, 1);
    }
    const KelRun source = runKel({QStringLiteral("catalog"), QStringLiteral("export"), path("a.toml")});
    QCOMPARE(source.errors, "kel: " + path("a.toml").toUtf8() +
                                ": the source of a catalogue; \"kel catalog make\" makes a catalogue of it\n");
}

void tst_Catalog::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("no verb") << QStringList();
    QTest::newRow("unknown verb") << QStringList{QStringLiteral("mend")};
    QTest::newRow("no file") << QStringList{QStringLiteral("check")};
    QTest::newRow("no target") << QStringList{QStringLiteral("make"), QStringLiteral("a.toml")};
    QTest::newRow("one too many") << QStringList{QStringLiteral("show"), QStringLiteral("a"), QStringLiteral("b")};
}

void tst_Catalog::wrongUsageIsTold()
{
    QFETCH(QStringList, arguments);
    const KelRun run = runKel(QStringList{QStringLiteral("catalog")} + arguments, m_folder->path());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errorLines().size(), 1);
    QCOMPARE(run.output, QByteArray());
}

KEL_TEST_MAIN(tst_Catalog)
#include "tst_catalog.moc"
