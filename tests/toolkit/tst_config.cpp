#include "testmain.h"

#include <QTemporaryDir>
#include <qpiconfig.h>

class tst_Config : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leaves_data();
    void leaves();
    void shortName_data();
    void shortName();
    void fileIsRead();
    void noFile_data();
    void noFile();
    void largeInput();
};

// Each leaf as "full name=value".
static QStringList listed(const QPIConfig &config)
{
    QStringList all;
    const QList<QPIConfig::Leaf> leaves = config.allLeaves();
    for (const QPIConfig::Leaf &leaf : leaves)
        all << leaf.fullName() + '=' + leaf.value();
    return all;
}

void tst_Config::leaves_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("leaves");

    const auto row = [](const char *title, const QByteArray &text, const QStringList &leaves) {
        QTest::newRow(title) << text << leaves;
    };
    row("empty", "", {});
    row("one line", "a = 1\n", {"a=1"});
    row("no line break at the end", "a = 1", {"a=1"});
    row("no space", "a=1", {"a=1"});
    row("space around", "\t a \t= \t 1 2 \t\n", {"a=1 2"});
    row("carriage returns", "a = 1\r\n[s]\r\nb = 2\r\n", {"a=1", "s.b=2"});
    row("order of the file", "b=1\na=2\nc=3", {"b=1", "a=2", "c=3"});
    row("name twice", "a=1\na=2", {"a=1", "a=2"});
    row("empty value", "a=\nb = ", {"a=", "b="});
    row("first equals sign separates", "a = b = c", {"a=b = c"});
    row("blank lines", "\n \n\t\na=1\n\n", {"a=1"});
    row("dotted name", "a.b.c = 1", {"a.b.c=1"});
    row("space around the dots", "a . b = 1", {"a.b=1"});
    row("empty parts of a name", ".a..b. = 1", {"a.b=1"});
    row("section", "[s]\na=1\nb.c=2", {"s.a=1", "s.b.c=2"});
    row("dotted section", "[ s . t ]\na=1", {"s.t.a=1"});
    row("next section replaces", "[s]\na=1\n[t]\na=2", {"s.a=1", "t.a=2"});
    row("empty section is the top", "[s]\na=1\n[]\nb=2", {"s.a=1", "b=2"});
    row("comment", "# a = 1\n  # b = 2\nc = 3", {"c=3"});
    row("comment after a value", "a = 1 # one\nb = 2\t#two", {"a=1", "b=2"});
    row("hash inside a value", "a = b#c # d", {"a=b#c"});
    row("comment after a section", "[s] # the section\na=1", {"s.a=1"});
    row("commented name", "a # = 1", {});
    row("no equals sign", "a\nb=1", {"b=1"});
    row("no name", "= 1\n . = 2\nb=1", {"b=1"});
    row("open section", "[s\na=1", {"a=1"});
    row("bracketed assignment is no section", "[a] = [b]", {"[a]=[b]"});
    row("braces are text", "t = float{10 m}", {"t=float{10 m}"});
    row("byte-order mark",
        "\xEF\xBB\xBF"
        "a=1",
        {"a=1"});
    row("other alphabet", "темп = тёплый", {"темп=тёплый"});
    row("invalid text does not stop", "\xff\xfe = \x80\nb=1",
        {QString::fromUtf8("\xff\xfe") + '=' + QString::fromUtf8("\x80"), "b=1"});
    row("zero bytes are text", QByteArray("a\0b = c\0d", 9), {QString::fromLatin1("a\0b=c\0d", 7)});
}

void tst_Config::leaves()
{
    QFETCH(QByteArray, text);
    const QPIConfig config = QPIConfig::fromText(text);
    QVERIFY(config.isOpened());
    QTEST(listed(config), "leaves");
}

void tst_Config::shortName_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << QByteArray("a = 1") << "a";
    QTest::newRow("dotted") << QByteArray("a.b.c = 1") << "c";
    QTest::newRow("in a section") << QByteArray("[s]\na = 1") << "a";
    QTest::newRow("dots in the value") << QByteArray("a = 1.5") << "a";
}

void tst_Config::shortName()
{
    QFETCH(QByteArray, text);
    QTEST(QPIConfig::fromText(text).allLeaves().at(0).name(), "name");
}

void tst_Config::fileIsRead()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("a.conf")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("a = 1\n[s]\nb = 2");
    file.close();

    const QPIConfig config(file.fileName());
    QVERIFY(config.isOpened());
    QCOMPARE(listed(config), QStringList({"a=1", "s.b=2"}));
}

void tst_Config::noFile_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("empty path") << QString();
    QTest::newRow("missing") << "/nonexistent/a.conf";
    QTest::newRow("folder") << QDir::tempPath();
    QTest::newRow("device without an end") << "/dev/zero";
    QTest::newRow("file that cannot be read") << "/proc/self/mem"; // opens, then fails
}

void tst_Config::noFile()
{
    QFETCH(QString, path);
    const QPIConfig config(path);
    QVERIFY(!config.isOpened());
    QVERIFY(config.allLeaves().isEmpty());
}

void tst_Config::largeInput()
{
    const QByteArray longText(4 << 20, 'x');
    QCOMPARE(listed(QPIConfig::fromText(longText + "=1\nb=2")).at(1), QStringLiteral("b=2"));
    QCOMPARE(QPIConfig::fromText("a=" + longText).allLeaves().at(0).value().size(), longText.size());
    QCOMPARE(QPIConfig::fromText("a=1\n" + QByteArray(4 << 20, '#')).allLeaves().size(), 1);
    QCOMPARE(QPIConfig::fromText(QByteArray(1 << 20, '.') + "=1").allLeaves().size(), 0);
    QCOMPARE(QPIConfig::fromText(QByteArray(1 << 20, '[')).allLeaves().size(), 0);
}

KEL_TEST_MAIN(tst_Config)
#include "tst_config.moc"
