#include "cataloguebench.h"
#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <catalogue/catalogue.h>

/// `kel catalog`, as people use it: what it checks, shows and complains of.
class tst_CatalogCommand : public QObject, private CatalogueFolder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { renewFolder(); }
    void cleanup() { removeFolder(); }
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
};

void tst_CatalogCommand::outputThatIsLostIsTold_data()
{
    QTest::addColumn<QString>("verb");
    QTest::newRow("show") << QStringLiteral("show");
    QTest::newRow("export") << QStringLiteral("export");
    QTest::newRow("check") << QStringLiteral("check");
}

void tst_CatalogCommand::outputThatIsLostIsTold()
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

void tst_CatalogCommand::checkTellsAllMistakesOfADatabase()
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

void tst_CatalogCommand::checkTellsMissingTables()
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

void tst_CatalogCommand::checkTellsAllMistakesOfASource()
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

void tst_CatalogCommand::checkIsSilentAboutGoodFiles()
{
    const QString source = write("a.toml", SmallSource);
    makeCatalogue(source, path("a.sqlite"));
    for (const QString &file : {source, path("a.sqlite")}) {
        const KelRun run = runKel({QStringLiteral("catalog"), QStringLiteral("check"), file});
        QCOMPARE(run.output + run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }
}

void tst_CatalogCommand::showPrintsTables()
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

void tst_CatalogCommand::wrongInputIsOneLine_data()
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

void tst_CatalogCommand::wrongInputIsOneLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, error);
    const KelRun run = runKel(QStringList{QStringLiteral("catalog")} + arguments, folderPath());
    QCOMPARE(run.errors, error);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(files(), QStringList());
}

void tst_CatalogCommand::damagedCatalogueIsTold()
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

void tst_CatalogCommand::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("no verb") << QStringList();
    QTest::newRow("unknown verb") << QStringList{QStringLiteral("mend")};
    QTest::newRow("no file") << QStringList{QStringLiteral("check")};
    QTest::newRow("no target") << QStringList{QStringLiteral("make"), QStringLiteral("a.toml")};
    QTest::newRow("one too many") << QStringList{QStringLiteral("show"), QStringLiteral("a"), QStringLiteral("b")};
}

void tst_CatalogCommand::wrongUsageIsTold()
{
    QFETCH(QStringList, arguments);
    const KelRun run = runKel(QStringList{QStringLiteral("catalog")} + arguments, folderPath());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errorLines().size(), 1);
    QCOMPARE(run.output, QByteArray());
}

KEL_TEST_MAIN(tst_CatalogCommand)
#include "tst_catalogcommand.moc"
