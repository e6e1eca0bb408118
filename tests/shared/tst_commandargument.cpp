#include "testmain.h"

#include <commandargument.h>

using Kv_Designer::CommandArgument;

Q_DECLARE_METATYPE(CommandArgument)

namespace
{

CommandArgument entry(qint32 value, qint32 type = 0, qint32 size = 1, bool swapBytes = false, bool any = false,
                      const QString &name = QString())
{
    CommandArgument result;
    result.name = name;
    result.value = value;
    result.type = type;
    result.size = size;
    result.swapBytes = swapBytes;
    result.any = any;
    return result;
}

CommandArgument wildcard(qint32 type = 0, qint32 size = 1, const QString &name = QString())
{
    return entry(0, type, size, false, true, name);
}

CommandArgument named(const QString &name, qint32 value, qint32 type = 0, qint32 size = 1, bool swapBytes = false)
{
    return entry(value, type, size, swapBytes, false, name);
}

} // namespace

class tst_CommandArgument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldOrder();
    void getArgument_data();
    void getArgument();
    void typeWords_data();
    void typeWords();
    void replaceStringToHex_data();
    void replaceStringToHex();
    void oneEntryPerByte();
    void templateTokens_data();
    void templateTokens();
    void customArgumentsCount_data();
    void customArgumentsCount();
};

void tst_CommandArgument::fieldOrder()
{
    const CommandArgument made{QStringLiteral("n"), -1, 2, 3, 4, true, false};

    QCOMPARE(made.name, QStringLiteral("n"));
    QCOMPARE(made.value, -1);
    QCOMPARE(made.type, 2);
    QCOMPARE(made.size, 3);
    QCOMPARE(made.byteIndex, 4);
    QCOMPARE(made.swapBytes, true);
    QCOMPARE(made.any, false);
}

void tst_CommandArgument::getArgument_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<CommandArgument>("expected");

    const auto row = [](const char *name, const char *token, const CommandArgument &expected) {
        QTest::newRow(name) << QString::fromUtf8(token) << expected;
    };

    row("hexadecimal constant", "AA", entry(170));
    row("typed constant", "(word)1234", entry(4660, 2, 2));
    row("lone dot is a wildcard", ".", wildcard());
    row("reference", "%1", entry(-2));
    row("all parts of a reference", "%(word~)[speed]0", named("speed", -1, 2, 2, true));
    row("named wildcard", "%(float)[t].", wildcard(8, 4, "t"));
    row("plain wildcard behind the sign", "%.", wildcard());

    row("empty token is the constant 0", "", entry(0));
    row("dot with a type is a constant that is compared", "(word).", entry(0, 2, 2));
    row("dot with a blank is no wildcard", " .", entry(0));
    row("dot with a blank behind the sign is value 0", "% .", entry(-1));
    row("two dots are no wildcard", "%..", entry(-1));
    row("bare sign is value 0", "%", entry(-1));
    row("sign and name alone are value 0", "%[a]", named("a", -1));
    row("index is decimal", "%10", entry(-11));
    row("hexadecimal digit makes the index unreadable", "%0A", entry(-1));
    row("index beyond 32 bits reads as 0", "%2147483648", entry(-1));
    row("highest index", "%2147483647", entry(std::numeric_limits<qint32>::min()));
    row("negative index is a constant", "%-6", entry(5));
    row("negative constant is a reference", "-1", entry(-1));
    row("constant with 0x", "0x1F", entry(31));
    row("constant in small letters", "ff", entry(255));
    row("unreadable constant is 0", "XY", entry(0));
    row("constant wider than its type is kept whole", "1FF", entry(511));
    row("largest constant", "7FFFFFFF", entry(std::numeric_limits<qint32>::max()));
    row("constant beyond 32 bits reads as 0", "(dword)FFFFFFFF", entry(0, 4, 4));

    row("type behind the number", "12(word)", entry(0x12, 2, 2));
    row("type inside the number", "1(word)2", entry(0x12, 2, 2));
    row("type before the sign", "(word)%3", entry(-4, 2, 2));
    row("type inside the name", "%[sp(word)eed]1", named("speed", -2, 2, 2));
    row("type inside the index", "%1(word)2", entry(-13, 2, 2));
    row("only the first type part counts", "(word)(float)1", entry(0, 2, 2));
    row("closing sign is sought behind the opening one", ")(word)1", entry(0, 2, 2));
    row("first closing sign ends the type", "(word)1)", entry(0, 2, 2));
    row("type without an end is left in the number", "(word1", entry(0));
    row("empty type", "()12", entry(0x12));
    row("blanks around the type word", "( word )12", entry(0x12, 2, 2));

    row("name without an end is left in the index", "%[a1", entry(-1));
    row("bracket before the opening one", "%]1[a]", named("a", -1));
    row("first closing bracket ends the name", "%[a]1]", named("a", -1));
    row("only the first name counts", "%[a][b]1", named("a", -1));
    row("name is trimmed and keeps its case", "%[ Speed ]1", named("Speed", -2));
    row("name behind the index", "%1[a]", named("a", -2));
    row("name inside the index", "%1[a]2", named("a", -13));
    row("constants have no name", "[a]12", entry(0));
    row("sign inside is no sign", "1%2", entry(0));
    row("blank before the sign", " %2", entry(0));
}

void tst_CommandArgument::getArgument()
{
    QFETCH(QString, token);
    QFETCH(CommandArgument, expected);

    const CommandArgument read = ::getArgument(token);
    QCOMPARE(read.name, expected.name);
    QCOMPARE(read.value, expected.value);
    QCOMPARE(read.type, expected.type);
    QCOMPARE(read.size, expected.size);
    QCOMPARE(read.byteIndex, 0);
    QCOMPARE(read.swapBytes, expected.swapBytes);
    QCOMPARE(read.any, expected.any);
}

void tst_CommandArgument::typeWords_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("swapBytes");

    const struct {
        const char *words[2];
        int type;
        int size;
    } table[] = {{{"sbyte", "char"}, 1, 1},   {{"word", "ushort"}, 2, 2}, {{"sword", "short"}, 3, 2},
                 {{"dword", "uint"}, 4, 4},   {{"sdword", "int"}, 5, 4},  {{"qword", "ullong"}, 6, 8},
                 {{"sqword", "llong"}, 7, 8}, {{"float", "float"}, 8, 4}, {{"double", "double"}, 9, 8},
                 {{"byte", "uchar"}, 0, 1},   {{"wrod", "float32"}, 0, 1}};
    for (const auto &line : table) {
        for (const char *word : line.words) {
            const QString text = QLatin1String(word);
            QTest::newRow(word) << text << line.type << line.size << false;
            QTest::addRow("%s in capitals", word) << text.toUpper() << line.type << line.size << false;
            QTest::addRow("~ before %s", word) << '~' + text << line.type << line.size << true;
            QTest::addRow("~ behind %s", word) << text + '~' << line.type << line.size << true;
        }
    }
    QTest::newRow("~ at both ends") << QStringLiteral("~word~") << 2 << 2 << true;
    QTest::newRow("~ alone swaps") << QStringLiteral("~") << 0 << 1 << true;
    QTest::newRow("blanks between ~ and the word") << QStringLiteral(" ~ word ~ ") << 2 << 2 << true;
    QTest::newRow("two ~ at one end make the word unknown") << QStringLiteral("~~word") << 0 << 1 << true;
    QTest::newRow("blank inside a word makes it unknown") << QStringLiteral("sd word") << 0 << 1 << false;
}

void tst_CommandArgument::typeWords()
{
    QFETCH(QString, word);
    QFETCH(int, type);
    QFETCH(int, size);
    QFETCH(bool, swapBytes);

    const CommandArgument read = ::getArgument(QStringLiteral("%(") + word + QStringLiteral(")0"));
    QCOMPARE(read.type, type);
    QCOMPARE(read.size, size);
    QCOMPARE(read.swapBytes, swapBytes);
    QCOMPARE(read.value, -1);
}

void tst_CommandArgument::replaceStringToHex_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QString &text, const QString &expected) {
        QTest::newRow(name) << text << expected;
    };

    row("nothing", "", "");
    row("no string", "AA %0 .", "AA %0 .");
    row("string behind a token", R"(AA "Hi\n")", "AA  48 69 0a ");
    row("string touching tokens", R"(AA"H"BB)", "AA 48 BB");
    row("empty string leaves a space", R"(AA""BB)", "AA BB");
    row("two strings", R"("A""B")", " 41  42 ");
    row("escaped quotes", R"("A\"B\'C")", " 41 22 42 27 43 ");
    row("escapes with a meaning", R"("\0\\\n\r\t")", " 00 5c 0a 0d 09 ");
    row("escape without a meaning", R"("\x\A\ ")", " 78 41 20 ");
    row("zero takes one digit", R"("\01")", " 00 31 ");
    row("blank inside a string", R"("a b")", " 61 20 62 ");
    row("small codes take two digits", "\"\x01\x0f\"", " 01 0f ");
    row("characters from 0x80 to 0xFF keep their code", QStringLiteral("\"\u0080\u00ff\u00e9\""), " 80 ff e9 ");
    row("characters from 0x100 become 00", QStringLiteral("\"\u0100\u0416\""), " 00 00 ");
    row("escaped character from 0x100 becomes 00", QStringLiteral("\"\\\u0416\""), " 00 ");
    row("characters beyond 16 bits are two units", QStringLiteral("\"\U0001d49c\""), " 00 00 ");
    row("backslash outside escapes nothing", R"(\"A\\"\)", R"(\ 41 5c \)");
    row("string that is never closed is dropped", R"(AA "Hi)", "AA ");
    row("second string that is never closed is dropped", R"("A" BB "C)", " 41  BB ");
    row("backslash at the end drops the string", R"(AA "Hi\)", "AA ");
    row("escaped quote does not close", R"(AA "Hi\")", "AA ");
    row("other characters outside stay", "A\tB\n'C'", "A\tB\n'C'");
}

void tst_CommandArgument::replaceStringToHex()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);

    QCOMPARE(::replaceStringToHex(text), expected);
}

void tst_CommandArgument::oneEntryPerByte()
{
    const QVector<CommandArgument> entries = ::parseArgument(QStringLiteral("%(~dword)[a]2"));

    QCOMPARE(entries.size(), 4);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(entries.at(i).name, QStringLiteral("a"));
        QCOMPARE(entries.at(i).value, -3);
        QCOMPARE(entries.at(i).type, 4);
        QCOMPARE(entries.at(i).size, 4);
        QCOMPARE(entries.at(i).byteIndex, i);
        QCOMPARE(entries.at(i).swapBytes, true);
        QCOMPARE(entries.at(i).any, false);
    }
    QCOMPARE(::parseArgument(QString()).size(), 1);
}

void tst_CommandArgument::templateTokens_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<int>>("values");

    using Values = QVector<int>;
    QTest::newRow("nothing") << QString() << Values();
    QTest::newRow("blanks") << QStringLiteral("   ") << Values();
    QTest::newRow("worked example") << QStringLiteral("AA %(word~)[speed]0 . \"Hi\"")
                                    << Values{0xAA, -1, -1, 0, 0x48, 0x69};
    QTest::newRow("many spaces") << QStringLiteral("  AA   BB ") << Values{0xAA, 0xBB};
    QTest::newRow("tab alone is no token") << QStringLiteral("AA \t BB") << Values{0xAA, 0xBB};
    QTest::newRow("two tabs are a token") << QStringLiteral("AA \t\t BB") << Values{0xAA, 0, 0xBB};
    QTest::newRow("tab does not part tokens") << QStringLiteral("AA\tBB") << Values{0};
    QTest::newRow("line break does not part tokens") << QStringLiteral("AA\nBB") << Values{0};
    QTest::newRow("string beside a token") << QStringLiteral("AA\"B\"CC") << Values{0xAA, 0x42, 0xCC};
    QTest::newRow("string without an end") << QStringLiteral("AA \"B") << Values{0xAA};
    QTest::newRow("escaped quote in a string") << QStringLiteral("\"A\\\"B\"") << Values{0x41, 0x22, 0x42};
    QTest::newRow("space inside a type parts it") << QStringLiteral("%( word )0") << Values{-1, 0, 0};
}

void tst_CommandArgument::templateTokens()
{
    QFETCH(QString, text);
    QFETCH(QVector<int>, values);

    QVector<int> read;
    for (const CommandArgument &entry : packetArgumentsFromText(text))
        read.append(entry.value);
    QCOMPARE(read, values);
}

void tst_CommandArgument::customArgumentsCount_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("count");

    QTest::newRow("empty template") << QString() << 0;
    QTest::newRow("constants and wildcards") << QStringLiteral("AA . %.") << 0;
    QTest::newRow("one value") << QStringLiteral("%(word)0") << 1;
    QTest::newRow("unused lower values count") << QStringLiteral("%4 AA %2") << 5;
    QTest::newRow("negative constant refers too") << QStringLiteral("-3") << 3;
    QTest::newRow("far reference") << QStringLiteral("%100000000") << 100000001;
    QTest::newRow("farthest reference saturates") << QStringLiteral("%2147483647") << std::numeric_limits<int>::max();
}

void tst_CommandArgument::customArgumentsCount()
{
    QFETCH(QString, text);
    QFETCH(int, count);

    QCOMPARE(::customArgumentsCount(packetArgumentsFromText(text)), count);
}

KEL_TEST_MAIN(tst_CommandArgument)
#include "tst_commandargument.moc"
