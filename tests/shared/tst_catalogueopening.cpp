#include "cataloguelists.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <QSqlQuery>

namespace
{

// The command line that the application sees; a test may put one more argument behind the first.
int argumentCount = 1;
char *argumentVector[] = {nullptr, nullptr, nullptr, nullptr};

class ExtraArguments
{
public:
    explicit ExtraArguments(const QStringList &arguments)
    {
        for (const QString &argument : arguments)
            m_bytes << argument.toLocal8Bit();
        for (QByteArray &bytes : m_bytes)
            argumentVector[argumentCount++] = bytes.data();
    }
    ~ExtraArguments() { argumentCount = 1; }

private:
    QList<QByteArray> m_bytes;
};

} // namespace

class tst_CatalogueOpening : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void noFileChangesNothing_data();
    void noFileChangesNothing();
    void argument_data();
    void argument();
    void argumentIsIgnoredWhenOpen();
    void firstMatchingArgumentEndsTheSearch();
    void commandFile_data();
    void commandFile();
    void commandFileIsIgnoredWhenOpen();
    void missingCommandFile();
    void badFile_data();
    void badFile();
    void lockedFileIsGivenUpSoon();
    void unlockedFileIsReadAgain();
};

void tst_CatalogueOpening::cleanup()
{
    const QString name = QLatin1String(QSqlDatabase::defaultConnection);
    if (QSqlDatabase::contains(name))
        QSqlDatabase::removeDatabase(name);
}

void tst_CatalogueOpening::noFileChangesNothing_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("empty") << QString();
    QTest::newRow("missing") << "/nonexistent/cat.sqlite";
    QTest::newRow("folder") << QDir::tempPath();
    QTest::newRow("in memory") << ":memory:";
}

void tst_CatalogueOpening::noFileChangesNothing()
{
    QFETCH(QString, path);

    KvCommands catalogue(path);
    QVERIFY(!QSqlDatabase::contains());

    TempCatalogue file;
    file.fillSmall();
    catalogue.setDatabase(file.path());
    catalogue.setDatabase(path);
    QVERIFY(catalogue.database.isOpen());
    QCOMPARE(catalogue.database.databaseName(), file.path());
    QCOMPARE(names(catalogue), QStringList("hall"));
    QCOMPARE(variables(catalogue), QStringList("t=10 m"));
}

void tst_CatalogueOpening::argument_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<bool>("isOpened");

    QTest::newRow("prefix and path") << "--db="
                                     << "--db=%1" << true;
    QTest::newRow("other capitals") << "--db="
                                    << "--DB=%1" << false;
    QTest::newRow("prefix inside") << "--db="
                                   << "x--db=%1" << false;
    QTest::newRow("only the leading prefix is removed") << "-"
                                                        << "--%1" << false;
    QTest::newRow("prefix of another argument") << "--db="
                                                << "--db %1" << false;
    QTest::newRow("nothing after the prefix") << "--db="
                                              << "--db=" << false;
    QTest::newRow("space belongs to the path") << "--db="
                                               << "--db= %1" << false;
    QTest::newRow("empty prefix") << QString() << "%1" << false;
    QTest::newRow("prefix that is the start of the path") << "/"
                                                          << "/%1" << true;
}

void tst_CatalogueOpening::argument()
{
    QFETCH(QString, prefix);
    QFETCH(QString, argument);
    QFETCH(bool, isOpened);

    TempCatalogue file;
    file.fillSmall();
    const ExtraArguments extra({QString(argument).replace("%1", file.path())});
    if (prefix == "/")
        argumentVector[0][0] = '.'; // The program's own path is an argument, too.
    KvCommands catalogue;
    catalogue.openFromArgs(prefix);
    if (prefix == "/")
        argumentVector[0][0] = '/';
    QCOMPARE(catalogue.database.isOpen(), isOpened);
    QCOMPARE(names(catalogue), isOpened ? QStringList("hall") : QStringList());
}

void tst_CatalogueOpening::argumentIsIgnoredWhenOpen()
{
    TempCatalogue first;
    first.fillSmall();
    TempCatalogue second;
    const ExtraArguments extra({"--db=" + second.path()});
    KvCommands catalogue(first.path());
    catalogue.openFromArgs(QStringLiteral("--db="));
    QCOMPARE(catalogue.database.databaseName(), first.path());

    catalogue.closeDatabase();
    catalogue.openFromArgs(QStringLiteral("--db="));
    QCOMPARE(catalogue.database.databaseName(), second.path());
}

void tst_CatalogueOpening::firstMatchingArgumentEndsTheSearch()
{
    TempCatalogue file;
    KvCommands catalogue;
    {
        const ExtraArguments extra({"--db=/nonexistent/cat.sqlite", "--db=" + file.path()});
        catalogue.openFromArgs(QStringLiteral("--db="));
        QVERIFY(!catalogue.database.isOpen());
    }
    const ExtraArguments extra({"--other", "--db=" + file.path(), "--db=/nonexistent/cat.sqlite"});
    catalogue.openFromArgs(QStringLiteral("--db="));
    QCOMPARE(catalogue.database.databaseName(), file.path());
}

void tst_CatalogueOpening::commandFile_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<bool>("isOpened");

    QTest::newRow("bare path") << QByteArray() << QByteArray() << true;
    QTest::newRow("line break belongs to the path") << QByteArray() << QByteArray("\n") << false;
    QTest::newRow("space belongs to the path") << QByteArray(" ") << QByteArray() << false;
    QTest::newRow("ends at a zero byte") << QByteArray() << QByteArray("\0\nmore", 6) << true;
    QTest::newRow("much after the zero byte") << QByteArray() << QByteArray(2 << 20, '\0') << true;
    QTest::newRow("zero byte first") << QByteArray("\0", 1) << QByteArray() << false;
    QTest::newRow("far too long") << QByteArray() << QByteArray(2 << 20, 'x') << false;
}

void tst_CatalogueOpening::commandFile()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(bool, isOpened);

    TempCatalogue file;
    file.writeFile(QStringLiteral("каталог.sqlite"), QByteArray());
    const QString path = file.filePath(QStringLiteral("каталог.sqlite"));
    file.writeFile(QStringLiteral("cat.path"), before + path.toUtf8() + after);

    KvCommands catalogue;
    catalogue.openFromCmdFile(file.filePath(QStringLiteral("cat.path")));
    QCOMPARE(catalogue.database.isOpen(), isOpened);
    QCOMPARE(catalogue.database.databaseName(), isOpened ? path : QString());
}

void tst_CatalogueOpening::commandFileIsIgnoredWhenOpen()
{
    TempCatalogue first;
    TempCatalogue second;
    second.writeFile(QStringLiteral("cat.path"), second.path().toUtf8());
    KvCommands catalogue(first.path());
    catalogue.openFromCmdFile(second.filePath(QStringLiteral("cat.path")));
    QCOMPARE(catalogue.database.databaseName(), first.path());
}

void tst_CatalogueOpening::missingCommandFile()
{
    TempCatalogue file;
    file.writeFile(QStringLiteral("empty"), QByteArray());
    KvCommands catalogue;
    catalogue.openFromCmdFile(QStringLiteral("/nonexistent/cat.path"));
    catalogue.openFromCmdFile(QDir::tempPath());
    catalogue.openFromCmdFile(file.filePath(QStringLiteral("empty")));
    QVERIFY(!catalogue.database.isOpen());
    QVERIFY(!QSqlDatabase::contains());
}

void tst_CatalogueOpening::badFile_data()
{
    QTest::addColumn<QByteArray>("content");

    TempCatalogue file;
    file.fillSmall();
    QFile database(file.path());
    QVERIFY(database.open(QIODevice::ReadOnly));
    const QByteArray good = database.readAll();

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\xff garbage ").repeated(1000);
    QTest::newRow("header only") << good.left(100);
    QTest::newRow("first page only") << good.left(4096);
    QTest::newRow("cut in the middle of a page") << good.left(good.size() / 2 + 77);
    QTest::newRow("pages of garbage behind the header") << good.left(100) + QByteArray(good.size() - 100, '\xa5');
}

void tst_CatalogueOpening::badFile()
{
    QFETCH(QByteArray, content);

    TempCatalogue file;
    file.writeFile(QStringLiteral("bad.sqlite"), content);
    file.writeFile(QStringLiteral("bad.var"), "t = x{1 s}");
    const KvCommands catalogue(file.filePath(QStringLiteral("bad.sqlite")));
    QVERIFY(catalogue.packets.isEmpty());
    QCOMPARE(variables(catalogue), QStringList("t=1 s"));

    QFile unchanged(file.filePath(QStringLiteral("bad.sqlite")));
    QVERIFY(unchanged.open(QIODevice::ReadOnly));
    QCOMPARE(unchanged.readAll(), content);
}

void tst_CatalogueOpening::lockedFileIsGivenUpSoon()
{
    TempCatalogue file;
    file.fillSmall();
    file.run(QStringLiteral("BEGIN EXCLUSIVE"));
    const KvCommands catalogue(file.path());
    // The driver's own patience would be 5 s for each statement.
    QSqlQuery patience(QStringLiteral("PRAGMA busy_timeout"));
    QVERIFY(patience.next());
    QVERIFY(patience.value(0).toInt() > 0);
    QVERIFY(patience.value(0).toInt() <= 500);
    QVERIFY(catalogue.database.isOpen());
    QVERIFY(catalogue.devices.isEmpty());
    QCOMPARE(variables(catalogue), QStringList("t=10 m"));
    file.run(QStringLiteral("ROLLBACK"));
}

void tst_CatalogueOpening::unlockedFileIsReadAgain()
{
    TempCatalogue file;
    file.fillSmall();
    file.run(QStringLiteral("BEGIN EXCLUSIVE"));
    KvCommands catalogue(file.path());
    file.run(QStringLiteral("ROLLBACK"));
    catalogue.read();
    QCOMPARE(names(catalogue), QStringList("hall"));
}

int main(int argc, char **argv)
{
    Q_UNUSED(argc)
    argumentVector[0] = argv[0];
    QApplication app(argumentCount, argumentVector);
    tst_CatalogueOpening test;
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return runKelTest(&test, arguments);
}

#include "tst_catalogueopening.moc"
