#include "testmain.h"

#include "kelprocess.h"

#include <QTemporaryDir>

namespace
{

const QString Speed = QStringLiteral("AA %(word~)[speed]0 . \"Hi\"");

QStringList command(const char *job, const QStringList &rest)
{
    return QStringList{QStringLiteral("template"), QLatin1String(job)} + rest;
}

void write(const QTemporaryDir &dir, const char *name, const QByteArray &content)
{
    QFile file(dir.filePath(QLatin1String(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

} // namespace

class tst_Template : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void works_data();
    void works();
    void refuses_data();
    void refuses();
    void wrongUsage_data();
    void wrongUsage();
    void explainsEachByte();
    void encodesRawBytes();
    void encodesLinesOfAFile();
    void decodesLinesOfAFile();
    void explainsLinesOfAFile();
    void readsStandardInput();
    void failureInAFilePrintsNothing();
};

void tst_Template::works_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("output");

    const auto encode = [](const char *name, const QStringList &rest, const char *output) {
        QTest::newRow(name) << command("encode", rest) << QString::fromUtf8(output);
    };
    encode("value by position", {"AA %(word~)[speed]0", "4660"}, "AA 12 34\n");
    encode("value by name", {"AA %(word~)[speed]0", "speed=4660"}, "AA 12 34\n");
    encode("value by number", {"AA %(word~)[speed]0", "0=4660"}, "AA 12 34\n");
    encode("name of another value first", {"%[a]0 %[b]1", "b=1", "2"}, "02 01\n");
    encode("names of two values are no use", {"%[a]0 %[a]1", "1=7", "0=8"}, "08 07\n");
    encode("name with an equals sign", {"%[a=b]0", "a=b=7"}, "07\n");
    encode("only what is referred to is needed", {"%[x]2", "x=7"}, "07\n");
    encode("positions count what is not referred to", {"%2", "1", "2", "3"}, "03\n");
    encode("no values", {"AA . \"Hi\""}, "AA 00 48 69\n");
    encode("empty template", {""}, "\n");
    encode("hexadecimal value", {"%(word~)0", "0x1234"}, "12 34\n");
    encode("negative value", {"%(sbyte)0", "-5"}, "FB\n");
    encode("value for two types", {"%(float~)0 %(byte)0", "1"}, "3F 80 00 00 01\n");
    encode("real value", {"%(double~)0", "1.5"}, "3F F8 00 00 00 00 00 00\n");
    encode("largest dword", {"%(dword)0", "4294967295"}, "FF FF FF FF\n");
    encode("largest qword", {"%(qword)0", "18446744073709551615"}, "FF FF FF FF FF FF FF FF\n");
    encode("lowest llong", {"%(llong~)0", "-9223372036854775808"}, "80 00 00 00 00 00 00 00\n");

    const auto decode = [](const char *name, const QStringList &rest, const char *output) {
        QTest::newRow(name) << command("decode", rest) << QString::fromUtf8(output);
    };
    decode("bytes apart", {Speed, "AA", "12", "34", "7F", "48", "69"}, "speed=4660\n");
    decode("bytes in one word", {Speed, "aa12347f4869"}, "speed=4660\n");
    decode("bytes in one argument with spaces", {Speed, "AA 12 34 7F 48 69"}, "speed=4660\n");
    decode("longer message", {"%0", "01 02"}, "0=1\n");
    decode("several values", {"%(sbyte)[a]1 %(dword)0 %(qword)[c]2", "FE FFFFFFFF FFFFFFFFFFFFFFFF"},
           "0=4294967295 a=-2 c=18446744073709551615\n");
    decode("reals are as short as they can be", {"%(float)0 %(double)1", "CDCCCC3D 9A9999999999B93F"}, "0=0.1 1=0.1\n");
    decode("nothing to capture", {"AA .", "AA 00"}, "match\n");
}

void tst_Template::works()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, output);

    const KelRun run = runKel(arguments);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(QString::fromUtf8(run.output), output);
    QCOMPARE(run.exitCode, 0);
}

void tst_Template::refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *name, const QStringList &arguments, const char *line) {
        QTest::newRow(name) << arguments << QString::fromUtf8(line);
    };
    row("malformed token while encoding", command("encode", {"AA XY", "1"}),
        "kel: token \"XY\" at character 4: \"XY\" is not a hexadecimal number from 0 to 7FFFFFFF");
    row("malformed token while decoding", command("decode", {"AA %(wrod)0", "AA"}),
        "kel: token \"%(wrod)0\" at character 4: the type \"wrod\" is unknown");
    row("malformed token while explaining", command("explain", {"\"Hi\" (word"}),
        "kel: token \"(word\" at character 6: \"(\" has no \")\"");
    row("line break in a token", command("explain", {"AA\nBB"}),
        "kel: token \"AA BB\" at character 1: \"AA BB\" is not a hexadecimal number from 0 to 7FFFFFFF");
    row("missing value", command("encode", {"%0 %[b]1", "1"}), "kel: value b is missing");
    row("too many values", command("encode", {"%0", "1", "2"}), "kel: the template takes 1 values, \"2\" is too many");
    row("value twice", command("encode", {"%[a]0", "a=1", "a=2"}), "kel: value a is given twice");
    row("unknown name", command("encode", {"%[a]0", "b=1"}), "kel: the template has no value for \"b=1\"");
    row("no number", command("encode", {"%[a]0", "x"}), "kel: value a: \"x\" is not a number");
    row("no whole number", command("encode", {"%0", "1.5"}),
        "kel: value 0: \"1.5\" is not a whole number of at most 64 bits");
    row("too large", command("encode", {"%(byte)0", "256"}), "kel: value 0: 256 does not fit the type byte");
    row("too small", command("encode", {"%(word)0", "-1"}), "kel: value 0: -1 does not fit the type word");
    row("too large for a signed one", command("encode", {"%(llong)0", "9223372036854775808"}),
        "kel: value 0: 9223372036854775808 does not fit the type sqword");
    row("other byte", command("decode", {Speed, "AA 12 34 7F 48 68"}), "kel: byte 5 is 68, the template expects 69");
    row("short message", command("decode", {Speed, "AA 12 34"}), "kel: the message has 3 bytes, the template needs 6");
    row("constant that no byte equals", command("decode", {"(word)1234", "3412"}),
        "kel: byte 0: no byte equals the constant 1234");
    row("half a byte", command("decode", {"AA", "A"}), "kel: \"A\" is not hexadecimal bytes of two digits each");
    row("no digits", command("decode", {"AA", "0x"}), "kel: \"0x\" is not hexadecimal bytes of two digits each");
    row("file that is not there", command("encode", {"%0", "--file", "none.txt"}),
        "kel: none.txt: No such file or directory");
}

void tst_Template::refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, line);
    const QTemporaryDir dir;

    const KelRun run = runKel(arguments, dir.path());
    QCOMPARE(QString::fromUtf8(run.errors), line + '\n');
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.exitCode, 1);
}

void tst_Template::wrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("no job") << QStringList{"template"};
    QTest::newRow("unknown job") << command("turn", {});
    QTest::newRow("encode without a template") << command("encode", {});
    QTest::newRow("decode without a template") << command("decode", {});
    QTest::newRow("explain without a template") << command("explain", {});
    QTest::newRow("unknown option") << command("encode", {"AA", "--hot"});
    QTest::newRow("values and a file") << command("encode", {"%0", "1", "--file", "x"});
}

void tst_Template::wrongUsage()
{
    QFETCH(QStringList, arguments);

    const KelRun run = runKel(arguments);
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.errorLines().size(), 1);
}

void tst_Template::explainsEachByte()
{
    const KelRun run = runKel(command("explain", {Speed + " (word)1234 (word)12 %(float)[t]."}));

    QCOMPARE(run.errors, QByteArray());
    QStringList lines;
    for (const QByteArray &line : run.output.split('\n'))
        lines += QString::fromUtf8(line).simplified();
    QCOMPARE(lines,
             (QStringList{"offset bytes type order name content", "0 1 byte - - constant AA",
                          "1 2 word big speed value 0", "3 1 byte - - any", "4 1 byte - - constant 48",
                          "5 1 byte - - constant 69", "6 2 word little - constant 34 12, never found in an answer",
                          "8 2 word little - constant 12 00, in an answer 12 12", "10 4 float little t any", ""}));
}

void tst_Template::encodesRawBytes()
{
    const KelRun run = runKel(command("encode", {"AA %0 \"\\n\\0\"", "5", "--raw"}));

    QCOMPARE(run.output, QByteArray("\xAA\5\n\0", 4));
    QCOMPARE(run.exitCode, 0);
}

void tst_Template::encodesLinesOfAFile()
{
    const QTemporaryDir dir;
    write(dir, "values.txt", "# a remark\n1 2\n\n  b=3\t4\r\n0x10 5");

    const KelRun run = runKel(command("encode", {"%[a]0 %[b]1", "--file", "values.txt"}), dir.path());
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output, QByteArray("01 02\n04 03\n10 05\n"));
}

void tst_Template::decodesLinesOfAFile()
{
    const QTemporaryDir dir;
    write(dir, "messages.txt", "AA 01\nAA02\n");

    const KelRun run = runKel(command("decode", {"AA %[a]0", "--file", "messages.txt"}), dir.path());
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output, QByteArray("a=1\na=2\n"));
}

void tst_Template::explainsLinesOfAFile()
{
    const QTemporaryDir dir;
    write(dir, "templates.txt", "AA\n%[a]0\n");

    const KelRun run = runKel(command("explain", {"--file", "templates.txt"}), dir.path());
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output.count("offset"), 2);
    QVERIFY(run.output.contains("value 0"));
}

void tst_Template::readsStandardInput()
{
    QProcess process;
    setUpKel(process, command("encode", {"%0 AA", "--file", "-"}));
    process.start();
    process.write("1\n2\n");
    process.closeWriteChannel();

    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardOutput(), QByteArray("01 AA\n02 AA\n"));
}

void tst_Template::failureInAFilePrintsNothing()
{
    const QTemporaryDir dir;
    write(dir, "values.txt", "1\n\n2\nx\n");

    const KelRun run = runKel(command("encode", {"%0", "--file", "values.txt"}), dir.path());
    QCOMPARE(run.errors, QByteArray("kel: values.txt:4: value 0: \"x\" is not a number\n"));
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.exitCode, 1);
}

KEL_TEST_MAIN(tst_Template)
#include "tst_template.moc"
