#include "cataloguebench.h"
#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <catalogue/catalogue.h>
#include <catalogue/cataloguefiles.h>
#include <catalogue/cataloguesource.h>

#include <QRandomGenerator>

/// Catalogues that are read, and exported without a loss.
class tst_CatalogExport : public QObject, private CatalogueFolder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { renewFolder(); }
    void cleanup() { removeFolder(); }
    void readingLeavesNoLogBehind();
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
};

namespace
{

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

void tst_CatalogExport::readingLeavesNoLogBehind()
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

void tst_CatalogExport::exportLosesNothing_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 60; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void tst_CatalogExport::exportLosesNothing()
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

void tst_CatalogExport::hallsCatalogueComesBack()
{
    const KelRun demo = runKel({QStringLiteral("demo"), QStringLiteral("--into"), folderPath()});
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

void tst_CatalogExport::everyShapeOfACatalogueIsRead_data()
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

void tst_CatalogExport::everyShapeOfACatalogueIsRead()
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

void tst_CatalogExport::readingWritesNothing()
{
    TempCatalogue catalogue;
    CatalogueConnection connection(catalogue.path(), CatalogueConnection::Access::Read);
    QVERIFY(connection.isOpen());
    QVERIFY(!QSqlQuery(connection.database()).exec(QStringLiteral("INSERT INTO vendors VALUES (1, 'x')")));
}

void tst_CatalogExport::exportRefusesWhatItWouldLose_data()
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

void tst_CatalogExport::exportRefusesWhatItWouldLose()
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

void tst_CatalogExport::exportKeepsToNewFiles()
{
    TempCatalogue catalogue;
    const QString there = write("x.toml", "# mine");
    const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("export"), catalogue.path(), there});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, "kel: " + there.toUtf8() + ": is there already\n");
    QCOMPARE(content("x.toml"), QByteArray("# mine"));
}

void tst_CatalogExport::exportPrintsWithoutAFile()
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

KEL_TEST_MAIN(tst_CatalogExport)
#include "tst_catalogexport.moc"
