#include "testmain.h"

#include "allocationcount.h"

#include <commandargument.h>

using Kv_Designer::CommandArgument;

namespace
{

const char CountReport[] = "Invalid arguments count!";
const char ValueReport[] = "Invalid value!";

int reports = 0;

void countReports(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++reports;
}

CommandArgument typed(qint32 type, qint32 size, bool swapBytes = false)
{
    CommandArgument argument;
    argument.value = -1;
    argument.type = type;
    argument.size = size;
    argument.swapBytes = swapBytes;
    return argument;
}

QVector<CommandArgument> read(const char *text)
{
    return packetArgumentsFromText(QString::fromUtf8(text));
}

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

} // namespace

class tst_CommandCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void encodeValue_data();
    void encodeValue();
    void decodeValue_data();
    void decodeValue();
    void decodingLeavesSharedArrayAlone();
    void handmadeFormats_data();
    void handmadeFormats();
    void prepare_data();
    void prepare();
    void prepareReportsOnce();
    void countIsCheckedBeforeTheValue();
    void prepareHandmade_data();
    void prepareHandmade();
    void prepareStepsOverByEncodedLength();
    void parse_data();
    void parse();
    void parseKeepsValues();
    void parseKeepsCapturesBeforeDifference();
    void parseGrowsValues();
    void parseRefusesFarReference();
    void parseFillsFarReferenceThatIsThere();
    void wildcardBeatsReference();
    void parseIgnoresForeignByteIndex();
    void parseResetsScratch();
    void matchingAllocatesNothing();
    void preparingAllocatesItsResult();
};

void tst_CommandCodec::encodeValue_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("swapBytes");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, int type, int size, bool swap, const QVariant &value, const char *hex) {
        QTest::newRow(name) << type << size << swap << value << bytes(hex);
    };

    row("byte is cut", 0, 1, false, 300, "2c");
    row("byte ignores the swap", 0, 1, true, 7, "07");
    row("signed byte", 1, 1, false, -2, "fe");
    row("word", 2, 2, false, 0x1234, "3412");
    row("word swapped", 2, 2, true, 0x1234, "1234");
    row("word is cut", 2, 2, false, 0x12345, "4523");
    row("signed word", 3, 2, true, -2, "fffe");
    row("dword converts as int", 4, 4, false, QStringLiteral("18446744073709551615"), "00000000");
    row("dword takes an int's bits", 4, 4, true, -1, "ffffffff");
    row("dword from unsigned keeps the bits", 4, 4, true, 0xF0000001u, "f0000001");
    row("signed dword", 5, 4, true, -2, "fffffffe");
    row("qword converts as signed", 6, 8, true, QStringLiteral("18446744073709551615"), "0000000000000000");
    row("qword from text", 6, 8, true, QStringLiteral("9223372036854775807"), "7fffffffffffffff");
    row("signed qword", 7, 8, false, -2, "feffffffffffffff");
    row("float", 8, 4, false, 1.0, "0000803f");
    row("float swapped", 8, 4, true, 1.0, "3f800000");
    row("float from int", 8, 4, true, 63, "427c0000");
    row("double", 9, 8, true, 1.5, "3ff8000000000000");
    row("double from text", 9, 8, false, QStringLiteral("1.5"), "000000000000f83f");
    row("number of an unreadable text", 2, 2, false, QStringLiteral("x"), "0000");
    row("invalid variant", 5, 4, false, QVariant(), "00000000");
    row("double is rounded for integers", 2, 2, true, 1.6, "0002");
    row("unknown type", 10, 1, false, 1, "");
    row("negative type", -1, 1, false, 1, "");
}

void tst_CommandCodec::encodeValue()
{
    QFETCH(int, type);
    QFETCH(int, size);
    QFETCH(bool, swapBytes);
    QFETCH(QVariant, value);
    QFETCH(QByteArray, expected);

    QCOMPARE(argumentToByteArray(typed(type, size, swapBytes), value), expected);
}

void tst_CommandCodec::decodeValue_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("swapBytes");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QVariant>("expected");

    const auto row = [](const char *name, int type, int size, bool swap, const char *hex, const QVariant &value) {
        QTest::newRow(name) << type << size << swap << bytes(hex) << value;
    };

    row("byte", 0, 1, false, "ff", 255);
    row("signed byte", 1, 1, false, "80", -128);
    row("word", 2, 2, false, "34ff", 0xFF34);
    row("word swapped", 2, 2, true, "ff34", 0xFF34);
    row("signed word", 3, 2, true, "fffe", -2);
    row("dword", 4, 4, true, "fffffffe", 0xFFFFFFFEu);
    row("signed dword", 5, 4, true, "fffffffe", -2);
    row("qword", 6, 8, true, "fffffffffffffffe", QVariant(qulonglong(0xFFFFFFFFFFFFFFFEull)));
    row("signed qword", 7, 8, false, "feffffffffffffff", QVariant(qlonglong(-2)));
    row("float", 8, 4, true, "3fc00000", QVariant(1.5f));
    row("double", 9, 8, false, "000000000000f83f", QVariant(1.5));
    row("further bytes are ignored", 2, 2, true, "1234567890abcdef1122", 0x1234);
    row("missing bytes count as 0", 2, 2, false, "34", 0x34);
    row("no bytes", 6, 8, true, "", QVariant(qulonglong(0)));
    row("unknown type", 10, 1, false, "01", QVariant());
    row("negative type", -1, 1, false, "01", QVariant());
}

void tst_CommandCodec::decodeValue()
{
    QFETCH(int, type);
    QFETCH(int, size);
    QFETCH(bool, swapBytes);
    QFETCH(QByteArray, data);
    QFETCH(QVariant, expected);

    const QVariant value = argumentFromByteArray(typed(type, size, swapBytes), data);
    QCOMPARE(value.userType(), expected.userType());
    QCOMPARE(value, expected);
}

void tst_CommandCodec::decodingLeavesSharedArrayAlone()
{
    const QByteArray data = bytes("1234");
    const QByteArray shared = data;

    QCOMPARE(argumentFromByteArray(typed(2, 2, true), shared).toInt(), 0x1234);

    QCOMPARE(shared, bytes("1234"));
    QVERIFY(shared.isSharedWith(data));
}

void tst_CommandCodec::handmadeFormats_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("size");

    QTest::newRow("no size") << 0 << 0;
    QTest::newRow("negative size") << 2 << -2;
    QTest::newRow("lowest size") << 2 << std::numeric_limits<int>::min();
    QTest::newRow("wide") << 9 << 9;
    QTest::newRow("widest") << 0 << std::numeric_limits<int>::max();
}

void tst_CommandCodec::handmadeFormats()
{
    QFETCH(int, type);
    QFETCH(int, size);

    QCOMPARE(argumentToByteArray(typed(type, size), 1), QByteArray());
    QVERIFY(!argumentFromByteArray(typed(type, size), QByteArray(100, '\1')).isValid());
}

void tst_CommandCodec::prepare_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<QVariant>>("values");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QByteArray>("report");

    using Values = QVector<QVariant>;
    const auto row = [](const char *name, const char *text, const Values &values, const char *hex,
                        const char *report = "") {
        QTest::newRow(name) << QString::fromUtf8(text) << values << bytes(hex) << QByteArray(report);
    };

    row("empty template", "", {}, "");
    row("worked example", "AA %(word~)[speed]0 . \"Hi\"", {4660}, "aa1234004869");
    row("missing value", "%2", {1}, "", CountReport);
    row("no values", "AA %0", {}, "", CountReport);
    row("last value is there", "%2", {1, 2, 3}, "03");
    row("too many values", "%0", {1, 2, 3}, "01");
    row("same value twice", "%0 %(word~)0", {258}, "020102");
    row("swapped in front", "%(~float)0", {1.0}, "3f800000");
    row("swapped behind", "%(float~)0", {1.0}, "3f800000");
    row("not swapped", "%(float)0", {1.0}, "0000803f");
    row("typed constant is a number", "(float~)3F (word)1234", {}, "427c00003412");
    row("constant of eight bytes", "(qword~)7FFFFFFF", {}, "000000007fffffff");
    row("constant is cut", "1FF", {}, "ff");
    row("constant out of range", "(dword)FFFFFFFF", {}, "00000000");
    row("wildcards are zeros", ". %(double)[x]. AA", {}, "000000000000000000aa");
    row("negative constant sends a value", "-1", {5}, "05");
    row("negative index sends a constant", "%-6", {}, "05");
    row("misspelt type is one byte", "%(wrod)0 AA", {0x1234}, "34aa");
    row("farthest reference", "%2147483647", {1}, "", CountReport);
}

void tst_CommandCodec::prepare()
{
    QFETCH(QString, text);
    QFETCH(QVector<QVariant>, values);
    QFETCH(QByteArray, expected);
    QFETCH(QByteArray, report);
    if (!report.isEmpty())
        QTest::ignoreMessage(QtDebugMsg, report.constData());

    reports = 0;
    QtMessageHandler usual = report.isEmpty() ? qInstallMessageHandler(countReports) : nullptr;
    const QByteArray prepared = prepareCommand(packetArgumentsFromText(text), values);
    if (usual != nullptr)
        qInstallMessageHandler(usual);

    QCOMPARE(prepared, expected);
    QCOMPARE(reports, 0);
}

void tst_CommandCodec::prepareReportsOnce()
{
    reports = 0;
    const QtMessageHandler usual = qInstallMessageHandler(countReports);
    const QByteArray prepared = prepareCommand(read("%0 %1 %2"), {});
    qInstallMessageHandler(usual);

    QCOMPARE(prepared, QByteArray());
    QCOMPARE(reports, 1);
}

void tst_CommandCodec::countIsCheckedBeforeTheValue()
{
    QTest::ignoreMessage(QtDebugMsg, CountReport);
    QCOMPARE(prepareCommand({typed(77, 1)}, {}), QByteArray());
}

void tst_CommandCodec::prepareHandmade_data()
{
    handmadeFormats_data();
    QTest::newRow("unknown type") << 10 << 1;
}

void tst_CommandCodec::prepareHandmade()
{
    QFETCH(int, type);
    QFETCH(int, size);

    QTest::ignoreMessage(QtDebugMsg, ValueReport);
    QCOMPARE(prepareCommand({typed(0, 1), typed(type, size)}, {1}), QByteArray());

    CommandArgument constant = typed(type, size);
    constant.value = 5;
    QTest::ignoreMessage(QtDebugMsg, ValueReport);
    QCOMPARE(prepareCommand({constant}, {}), QByteArray());
}

void tst_CommandCodec::prepareStepsOverByEncodedLength()
{
    // Only the first entry of an argument is looked at, even when what follows is another's.
    CommandArgument hidden;
    hidden.value = 0xEE;
    CommandArgument shown;
    shown.value = 0xBB;
    QCOMPARE(prepareCommand({typed(2, 2), hidden, shown}, {0x1234}), bytes("3412bb"));

    // An argument at the end with too few entries is still sent whole.
    QCOMPARE(prepareCommand({shown, typed(4, 4, true)}, {0x12345678}), bytes("bb12345678"));
    QCOMPARE(prepareCommand({shown, typed(7, 8)}, {0x12345678}), bytes("bb7856341200000000"));
}

void tst_CommandCodec::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("matches");
    QTest::addColumn<QVector<QVariant>>("captured");

    using Values = QVector<QVariant>;
    const auto row = [](const char *name, const char *text, const char *hex, bool matches, const Values &captured) {
        QTest::newRow(name) << QString::fromUtf8(text) << bytes(hex) << matches << captured;
    };

    row("empty template and no data", "", "", true, {});
    row("empty template and any data", "", "0102", true, {});
    row("worked example", "AA %(word~)[speed]0 . \"Hi\"", "aa12347f4869", true, {4660});
    row("worked example with another end", "AA %(word~)[speed]0 . \"Hi\"", "aa12347f4800", false, {4660});
    row("longer data", "AA %0", "aa0501", true, {5});
    row("data one byte too short captures nothing", "%0 %1 AA", "0102", false, {});
    row("constant above 127", "FF", "ff", true, {});
    row("constant of two equal bytes", "(word)12", "1212", true, {});
    row("constant is compared with each byte", "(word)12", "1200", false, {});
    row("constant above 255 never matches", "(word)1234", "3412", false, {});
    row("constant above 255 is not cut", "1FF", "ff", false, {});
    row("dot with a type is compared", "(word).", "0000", true, {});
    row("dot with a type is no wildcard", "(word).", "0001", false, {});
    row("typed wildcard skips its bytes", "%(word)[x]. AA", "1234aa", true, {});
    row("values in any order", "%1 %0", "0102", true, {2, 1});
    row("last of two captures stays", "%0 %0", "0102", true, {2});
    row("slots between are invalid", "%2", "07", true, {QVariant(), QVariant(), 7});
    row("types as in the template", "%(sbyte)0 %(dword)1 %(float~)2", "fe010000803f800000", true,
        {-2, 0x80000001u, 1.0f});
}

void tst_CommandCodec::parse()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, data);
    QFETCH(bool, matches);
    QFETCH(QVector<QVariant>, captured);

    QVector<QVariant> values;
    QCOMPARE(parseCommand(data, packetArgumentsFromText(text), values), matches);
    QCOMPARE(values, captured);
    for (int i = 0; i < values.size(); ++i)
        QCOMPARE(values.at(i).userType(), captured.at(i).userType());
}

void tst_CommandCodec::parseKeepsValues()
{
    QVector<QVariant> values{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};

    QVERIFY(parseCommand(bytes("07"), read("%1"), values));

    QCOMPARE(values, (QVector<QVariant>{QStringLiteral("a"), 7, QStringLiteral("c")}));
}

void tst_CommandCodec::parseKeepsCapturesBeforeDifference()
{
    QVector<QVariant> values;

    QVERIFY(!parseCommand(bytes("01020304"), read("%0 %1 AA %2"), values));

    QCOMPARE(values, (QVector<QVariant>{1, 2}));
}

void tst_CommandCodec::parseGrowsValues()
{
    QVector<QVariant> values;

    QVERIFY(parseCommand(bytes("07"), read("%65535"), values));

    QCOMPARE(values.size(), 65536);
    QCOMPARE(values.last(), QVariant(7));
}

void tst_CommandCodec::parseRefusesFarReference()
{
    for (const char *text : {"%0 %65536", "%0 %100000000", "%0 %2147483647"}) {
        QVector<QVariant> values;
        QVERIFY(!parseCommand(bytes("0102"), read(text), values));
        QCOMPARE(values, QVector<QVariant>{1});
    }
}

void tst_CommandCodec::parseFillsFarReferenceThatIsThere()
{
    QVector<QVariant> values(70001);

    QVERIFY(parseCommand(bytes("07"), read("%70000"), values));

    QCOMPARE(values.at(70000), QVariant(7));
    QCOMPARE(values.size(), 70001);
}

void tst_CommandCodec::wildcardBeatsReference()
{
    CommandArgument both = typed(0, 1);
    both.any = true;
    CommandArgument constant;
    constant.value = 0x11;
    constant.any = true;
    QVector<QVariant> values;

    QVERIFY(parseCommand(bytes("0122"), {both, constant}, values));
    QCOMPARE(values, QVector<QVariant>());

    // Sending knows no wildcards: the reference and the constant go out.
    QCOMPARE(prepareCommand({both, constant}, {5}), bytes("0511"));
}

void tst_CommandCodec::parseIgnoresForeignByteIndex()
{
    constexpr int Most = std::numeric_limits<int>::max();
    for (int index : {-1, 1, 2, Most, std::numeric_limits<int>::min()}) {
        CommandArgument argument = typed(0, 1);
        argument.byteIndex = index;
        QVector<QVariant> values;
        QVERIFY(parseCommand(bytes("01"), {argument}, values));
        QCOMPARE(values, QVector<QVariant>());
    }

    // The last byte of an argument that is wider than any value; eight bytes are the widest.
    for (int size : {9, 10, Most}) {
        CommandArgument wide = typed(2, size);
        wide.byteIndex = size - 1;
        QVector<QVariant> values;
        QVERIFY(parseCommand(bytes("01"), {wide}, values));
        QCOMPARE(values, QVector<QVariant>{QVariant()});
    }
}

void tst_CommandCodec::parseResetsScratch()
{
    // The second argument has no middle bytes: they are 0, not left over from the first one.
    QVector<CommandArgument> args(6, typed(4, 4));
    for (int i = 0; i < 4; ++i)
        args[i].byteIndex = i;
    args[4].byteIndex = 0;
    args[5].byteIndex = 3;
    args[4].value = args[5].value = -2;
    QVector<QVariant> values;

    QVERIFY(parseCommand(bytes("010203040506"), args, values));

    QCOMPARE(values, (QVector<QVariant>{0x04030201u, 0x06000005u}));
}

void tst_CommandCodec::matchingAllocatesNothing()
{
    if (!canCountAllocations())
        QSKIP("the sanitizer brings its own memory functions");
    const QVector<CommandArgument> args = read("AA %(word~)0 %(double)1 %(qword)2 %(float)3 . \"Hello\"");
    const QByteArray data = prepareCommand(args, {1, 2.0, 3, 4.0f});
    QVector<QVariant> values(4);
    bool matched = false;

    QCOMPARE(countAllocations([&] { matched = parseCommand(data, args, values); }), 0);

    QVERIFY(matched);
    QCOMPARE(values, (QVector<QVariant>{1, 2.0, qulonglong(3), 4.0f}));
}

void tst_CommandCodec::preparingAllocatesItsResult()
{
    if (!canCountAllocations())
        QSKIP("the sanitizer brings its own memory functions");
    const QVector<CommandArgument> args = read("AA %(word~)0 %(double)1 %(qword)2 %(float)3 . \"Hello\"");
    const QVector<QVariant> values{1, 2.0, 3, 4.0f};
    QByteArray prepared;

    QCOMPARE(countAllocations([] { delete new int; }), 1);
    QCOMPARE(countAllocations([&] { prepared = prepareCommand(args, values); }), 1);
    QCOMPARE(prepared.size(), args.size());
    QCOMPARE(countAllocations([&] { prepared = prepareCommand({}, values); }), 0);
}

KEL_TEST_MAIN(tst_CommandCodec)
#include "tst_commandcodec.moc"
