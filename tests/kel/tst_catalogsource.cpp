#include "testmain.h"

#include <catalogue/cataloguesource.h>
#include <catalogue/cataloguetext.h>
#include <catalogue/tomldepth.h>

/// Reading and checking the source of a catalogue, without files.
class tst_CatalogSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mistakeIsTold_data();
    void mistakeIsTold();
    void mistakeInTheTextItselfIsTold_data();
    void mistakeInTheTextItselfIsTold();
    void namesThatAreTakenAreTold();
    void instanceNeedsAVendor();
    void everyMistakeIsToldInOrder();
    void whatIsAllowed_data();
    void whatIsAllowed();
    void objectsMayShareAName();
    void leftOutKeysAreFilledIn();
    void nullKeysStayEmpty();
    void rowsMayStandOnOneLineOrMany();
    void referencesMayBeNamesOrNumbers();
    void deepNamesAreRefusedAtOnce_data();
    void deepNamesAreRefusedAtOnce();
    void dotsInTextsAndCommentsDoNotCount();
    void largeFileIsRefused();
    void writtenSourceReadsTheSame_data();
    void writtenSourceReadsTheSame();
    void commandTextFaults_data();
    void commandTextFaults();
};

namespace
{

using namespace CatalogueColumns;
using Section = CatalogueSection;

/// What the rows of the tests refer to, on lines 1 to 3.
const char *const Basis = "vendors = [{id = 1, name = \"Acme\"}]\n"
                          "devices = [{id = 3, name = \"Relay\", vendor = 1}]\n"
                          "objects = [{id = 10, device = 3, name = \"hall\"}]\n";

CatalogueSource sourceOf(const QByteArray &rest)
{
    return CatalogueSource::fromText(Basis + rest);
}

QStringList linesOf(const CatalogueSource &source)
{
    QStringList lines;
    for (const CatalogueFinding &finding : source.findings)
        lines << QStringLiteral("%1:%2: %3")
                     .arg(QString::number(finding.place.line), QString::number(finding.place.column), finding.text);
    return lines;
}

} // namespace

void tst_CatalogSource::mistakeIsTold_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("mistake");

    const auto row = [](const char *name, const char *text, const char *mistake) {
        QTest::newRow(name) << QByteArray(text) << QString::fromUtf8(mistake);
    };
    row("unknown section", "command = []",
        "4:1: \"command\" is none of: vendors, devices, commands, answers, "
        "instances, objects, properties, packets, variables");
    row("unknown key on its line", "[[commands]]\nid = 1\ndevice = 3\ncommand = \"01\"\ntext = \"x\"",
        "8:1: \"text\" is none of the keys of commands: id, device, command, description");
    row("section that is no list", "commands = 5",
        "4:12: commands is a whole number, not a list of rows: write [[commands]], or commands = [{…}, {…}]");
    row("section that is one table", "[commands]\nid = 1",
        "4:1: commands is a table, not a list of rows: write [[commands]], or commands = [{…}, {…}]");
    row("row that is no table", "commands = [1]", "4:13: a row of commands is a whole number, not a table");
    row("text for an id", "commands = [{id = \"1\", device = 3, command = \"01\"}]",
        "4:19: id is a text, not a whole number");
    row("fraction for a number", "instances = [{id = 1.5, device = 3, name = \"a\", device_id = 1}]",
        "4:20: id is a number with a fraction, not a whole number");
    row("truth for a text", "commands = [{id = 1, device = 3, command = true}]",
        "4:44: command is true or false, not a text");
    row("date for a reference", "commands = [{id = 1, device = 2020-01-01, command = \"01\"}]",
        "4:31: device is a date or time, not a whole number or a name");
    row("list for a text", "commands = [{id = 1, device = 3, command = [\"01\"]}]",
        "4:44: command is a list, not a text");
    row("missing key", "commands = [{id = 11, command = \"01\"}]", "4:13: command 11: the key \"device\" is missing");
    row("missing id", "commands = [{device = 3, command = \"01\"}]", "4:13: command: the key \"id\" is missing");
    row("null id", "commands = [{device = 3, command = \"01\", null = [\"id\"]}]", "4:50: command: has no number");
    row("number that is taken",
        "answers = [{id = 1, device = 3, command = \"01\"},\n{id = 1, device = 3, command = \"02\"}]",
        "5:7: answer 1: the number is taken already");
    row("negative id", "commands = [{id = -1, device = 3, command = \"01\"}]",
        "4:19: command -1: id -1 is not between 0 and 2147483647");
    row("id above 32 bits", "commands = [{id = 2147483648, device = 3, command = \"01\"}]",
        "4:19: command 2147483648: id 2147483648 is not between 0 and 2147483647");
    row("flags above 32 bits", "packets = [{id = 1, object = 10, name = \"p\", command = \"01\", flags = -2147483649}]",
        "4:70: packet 1: flags -2147483649 is not between -2147483648 and 2147483647");
    row("no such device by number", "commands = [{id = 1, device = 4, command = \"01\"}]",
        "4:31: command 1: there is no device 4");
    row("no such device by name", "commands = [{id = 1, device = \"Relais\", command = \"01\"}]",
        "4:31: command 1: there is no device \"Relais\"");
    row("no such object", "packets = [{id = 1, object = \"door\", name = \"p\", command = \"01\"}]",
        "4:30: packet 1: there is no object \"door\"");
    row("no such object by number", "packets = [{id = 1, object = 11, name = \"p\", command = \"01\"}]",
        "4:30: packet 1: there is no object 11");
    row("instance of no device", "instances = [{id = 1, device = 9, name = \"a\", device_id = 1}]",
        "4:32: instance 1: there is no device 9");
    row("property of no device", "properties = [{object = 1, device = 9, name = \"a\", value = \"b\"}]",
        "4:37: property \"a\": there is no device 9");
    row("property that names an object", "properties = [{object = 1, device = 3, name = \"name\", value = \"b\"}]",
        "4:47: property \"name\": an object's name stands in the section \"objects\"");
    row("byte above FF in a command", "commands = [{id = 1, device = 3, command = \"01 1FF\"}]",
        "4:44: command 1: \"1FF\" is above FF, the largest byte");
    row("byte above FF in an answer", "answers = [{id = 1, device = 3, command = \"100\"}]",
        "4:43: answer 1: \"100\" is above FF, the largest byte");
    row("byte above FF in a template", "packets = [{id = 1, object = 10, name = \"p\", command = \"01 1FF\"}]",
        "4:56: packet 1: 1FF is above FF, the largest byte");
    row("no byte", "commands = [{id = 1, device = 3, command = \"A1 on\"}]",
        "4:44: command 1: \"on\" is not a byte in hexadecimal");
    row("expression in an answer", "answers = [{id = 1, device = 3, command = \"%(a0)\"}]",
        "4:43: answer 1: \"%(a0)\": an answer has no expressions");
    row("faulty template", "packets = [{id = 1, object = 10, name = \"p\", command = \"%x\"}]",
        "4:56: packet 1: \"%x\": \"x\" is not the number of a value");
    row("instance number no byte holds",
        "commands = [{id = 1, device = 3, command = \"%id\"}]\n"
        "instances = [{id = 1, device = 3, name = \"a\", device_id = 256}]",
        "5:59: instance 1: device_id 256 is not between 0 and 255, and texts of device 3 hold %id");
    row("instance's name that is taken",
        "instances = [{id = 1, device = 3, name = \"a\", device_id = 1},\n{id = 2, device = 3, name = \"a\", device_id "
        "= 2}]",
        "5:29: instance 2: the name \"a\" is taken by instance 1");
    row("packet's name that is taken",
        "packets = [{id = 1, object = 10, name = \"p\", command = \"01\"},\n{id = 2, object = 10, name = \"p\", "
        "command = \"02\"}]",
        "5:30: packet 2: the name \"p\" is taken by packet 1");
    row("variable's name that is taken", "variables = [{name = \"t\", value = \"\"},\n{name = \"t\", value = \"\"}]",
        "5:9: variable \"t\": the name is taken already");
    row("duration that is none", "variables = [{name = \"t\", value = \"float{10s}\"}]",
        "4:35: variable \"t\": the duration \"10s\" is neither \"inf\" nor a number and a unit, as \"10 s\"");
    for (const char *duration : {"x s", "5", "-1 s", "1 2 3", "s 5"})
        row(duration,
            QByteArray("variables = [{name = \"t\", value = \"{" + QByteArray(duration) + "}\"}]").constData(),
            ("4:35: variable \"t\": the duration \"" + QByteArray(duration) +
             "\" is neither \"inf\" nor a number and a unit, as \"10 s\"")
                .constData());
    row("null that is no list", "variables = [{name = \"t\", value = \"\", null = \"value\"}]",
        "4:46: null is a text, not a list of keys");
    row("null that names no key", "variables = [{name = \"t\", value = \"\", null = [\"x\"]}]",
        "4:47: null names \"x\", no key of variables");
    row("null that names a number", "variables = [{name = \"t\", value = \"\", null = [1]}]",
        "4:47: null names a whole number, no key of variables");
    row("null beside a value", "variables = [{name = \"t\", value = \"\", null = [\"value\"]}]",
        "4:35: value has a value and is named as null");
    row("control characters in a name", "commands = [{id = 1, device = \"\\u001b[31m\\u202E\", command = \"01\"}]",
        "4:31: command 1: there is no device \"\\u001b[31m\\u202e\"");
}

void tst_CatalogSource::mistakeIsTold()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, mistake);
    QCOMPARE(linesOf(sourceOf(text)), QStringList{mistake});
}

void tst_CatalogSource::mistakeInTheTextItselfIsTold_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("place");

    QTest::newRow("no value") << QByteArray("a = 1\nb = ]") << QStringLiteral("2:5: ");
    QTest::newRow("text that is not closed") << QByteArray("a = \"x\n") << QStringLiteral("1:7: ");
    QTest::newRow("key that comes twice") << QByteArray("vendors = []\nvendors = []") << QStringLiteral("2:");
    QTest::newRow("key of a row that comes twice")
        << QByteArray("vendors = [{id = 1, id = 1}]") << QStringLiteral("1:");
    QTest::newRow("database") << QByteArray("SQLite format 3\0\x10\0\x02", 19) << QStringLiteral("1:8: ");
    QTest::newRow("no UTF-8") << QByteArray("a = \"\xff\"") << QStringLiteral("1:");
    QTest::newRow("no name in brackets") << QByteArray("a = 1\n[{x}]") << QStringLiteral("2:2: ");
    QTest::newRow("no name in two brackets") << QByteArray("[[=]]") << QStringLiteral("1:3: ");
    QTest::newRow("brackets and nothing") << QByteArray("[") << QStringLiteral("1:");
    QTest::newRow("zero bytes") << QByteArray("\0\0", 2) << QStringLiteral("1:1: ");
    QTest::newRow("lists in lists") << "a = " + QByteArray("[").repeated(100000) << QStringLiteral("1:");
    QTest::newRow("tables in lists") << "a = " + QByteArray("[{b=").repeated(100000) << QStringLiteral("1:");
}

void tst_CatalogSource::mistakeInTheTextItselfIsTold()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, place);

    const QStringList lines = linesOf(CatalogueSource::fromText(text));
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().startsWith(place), qPrintable(lines.first()));
    QVERIFY2(lines.first().size() > place.size() + 10, qPrintable(lines.first()));
    QVERIFY(!lines.first().contains(QLatin1Char('\n')));
}

void tst_CatalogSource::namesThatAreTakenAreTold()
{
    const CatalogueSource source = CatalogueSource::fromText("[[vendors]]\nid = 1\nname = \"Acme\"\n"
                                                             "[[vendors]]\nid = 2\nname = \"Acme\"\n"
                                                             "[[devices]]\nid = 1\nname = \"Relay\"\nvendor = 1\n"
                                                             "[[devices]]\nid = 2\nname = \"Relay\"\nvendor = 1\n");
    const QStringList expected = {
        QStringLiteral("6:8: vendor 2: the name \"Acme\" is taken by vendor 1"),
        QStringLiteral("13:8: device 2: the name \"Relay\" is taken by device 1"),
    };
    QCOMPARE(linesOf(source), expected);
}

void tst_CatalogSource::instanceNeedsAVendor()
{
    const CatalogueSource source =
        CatalogueSource::fromText("devices = [{id = 1, name = \"Relay\"}]\n"
                                  "instances = [{id = 1, device = 1, name = \"a\", device_id = 1}]");
    QCOMPARE(linesOf(source),
             QStringList{
                 QStringLiteral("2:32: instance 1: its device 1 has no vendor, so a panel finds no commands for it")});
}

void tst_CatalogSource::everyMistakeIsToldInOrder()
{
    const CatalogueSource source = sourceOf("packets = [{id = 1, object = 10, name = \"p\", command = \"zz\"}]\n"
                                            "commands = [{id = 1, device = 3, command = \"1FF\"},\n"
                                            "            {id = 1, device = 4, command = \"01\"}]");
    const QStringList expected = {
        QStringLiteral("4:56: packet 1: \"zz\": \"zz\" is not a hexadecimal number from 0 to 7FFFFFFF"),
        QStringLiteral("5:44: command 1: \"1FF\" is above FF, the largest byte"),
        QStringLiteral("6:19: command 1: the number is taken already"),
        QStringLiteral("6:31: command 1: there is no device 4"),
    };
    QCOMPARE(linesOf(source), expected);
}

void tst_CatalogSource::whatIsAllowed_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("nothing more") << QByteArray();
    QTest::newRow("numbers that another section has")
        << QByteArray("commands = [{id = 1, device = 3, command = \"01\"}]\n"
                      "answers = [{id = 1, device = 3, command = \"01\"}]");
    QTest::newRow("command and answer without bytes")
        << QByteArray("commands = [{id = 1, device = 3, command = \"\"}]\n"
                      "answers = [{id = 1, device = 3, command = \"\"}]");
    QTest::newRow("a number above 255 that no text uses")
        << QByteArray("commands = [{id = 1, device = 3, command = \"01\"}]\n"
                      "instances = [{id = 1, device = 3, name = \"a\", device_id = 70000}]");
    QTest::newRow("words and texts in a template") << QByteArray("packets = [{id = 1, object = 10, name = \"p\", "
                                                                 "command = '(word)1FFF %(word~)[speed]0 . \"Hi\"'}]");
    QTest::newRow("one property of two objects")
        << QByteArray("properties = [{object = 1, device = 3, name = \"a\", value = \"b\"},\n"
                      "{object = 2, device = 3, name = \"a\", value = \"b\"}]");
    QTest::newRow("durations") << QByteArray("variables = [{name = \"a\", value = \"float\"},\n"
                                             "{name = \"b\", value = \"{}\"}, {name = \"c\", value = \"{1.5 h}\"}]");
    QTest::newRow("durations without end")
        << QByteArray("variables = [{name = \"a\", value = \"{inf}\"}, {name = \"b\", "
                      "value = \"{0 s}\"}]");
    QTest::newRow("the largest number of a bus")
        << QByteArray("commands = [{id = 1, device = 3, command = \"%id\"}]\n"
                      "instances = [{id = 1, device = 3, name = \"a\", device_id = 255},\n"
                      "{id = 2, device = 3, name = \"b\", device_id = 0}]");
    QTest::newRow("the largest and the least numbers")
        << QByteArray("packets = [{id = 2147483647, object = 10, name = \"p\", command = \"01\", flags = 2147483647, "
                      "args_count = -2147483648}, {id = 0, object = 10, name = \"q\", command = \"01\"}]");
    QTest::newRow("braces in a text that is no variable's")
        << QByteArray("instances = [{id = 1, device = 3, name = \"{x}\", device_id = 1}]\n"
                      "properties = [{object = 1, device = 3, name = \"{5}\", value = \"{5}\"}]\n"
                      "commands = [{id = 1, device = 3, command = \"01\", description = \"{x y z}\"}]");
    QTest::newRow("windows line ends") << QByteArray("commands = [\r\n{id = 1, device = 3, command = \"01\"}\r\n]\r\n");
}

void tst_CatalogSource::whatIsAllowed()
{
    QFETCH(QByteArray, text);
    QCOMPARE(linesOf(sourceOf(text)), QStringList());
}

void tst_CatalogSource::objectsMayShareAName()
{
    const QByteArray text = "devices = [{id = 3, name = \"Relay\"}]\n"
                            "objects = [{id = 1, device = 3, name = \"hall\"}, {id = 2, device = 3, name = \"hall\"}]\n"
                            "packets = [{id = 1, object = 1, name = \"on\", command = \"01\"},\n"
                            "{id = 2, object = 2, name = \"off\", command = \"02\"}";
    QCOMPARE(linesOf(CatalogueSource::fromText(text + "]")), QStringList());
    QCOMPARE(linesOf(CatalogueSource::fromText(text + ",\n{id = 3, object = 2, name = \"on\", command = \"03\"}]")),
             QStringList{QStringLiteral("5:29: packet 3: the name \"on\" is taken by packet 1")});
    QCOMPARE(linesOf(CatalogueSource::fromText(text + ",\n{id = 3, object = \"hall\", name = \"x\", command = \"\"}]")),
             QStringList{
                 QStringLiteral("5:19: packet 3: object \"hall\" is not the only one of this name; give its number")});
}

void tst_CatalogSource::leftOutKeysAreFilledIn()
{
    const CatalogueSource source =
        sourceOf("packets = [{id = 1, object = 10, name = \"p\", command = \"01 %2 (word)5\"}]");
    QCOMPARE(linesOf(source), QStringList());
    const CatalogueRow &device = source.data.rows(Section::Devices).first();
    QCOMPARE(device.text(DeviceVname).value(), QStringLiteral("Acme"));
    const CatalogueRow &packet = source.data.rows(Section::Packets).first();
    QCOMPARE(packet.number(PacketArgsCount).value(), 3);
    QCOMPARE(packet.number(PacketFlags).value(), 0);
    QVERIFY(packet.isNull(6));
}

void tst_CatalogSource::nullKeysStayEmpty()
{
    const CatalogueSource source =
        sourceOf("packets = [{id = 1, object = 10, null = [\"args_count\", \"flags\", \"name\", \"command\"]}]");
    QCOMPARE(linesOf(source), QStringList());
    const CatalogueRow &packet = source.data.rows(Section::Packets).first();
    for (const int column : {PacketArgsCount, PacketFlags, PacketName, PacketCommand})
        QVERIFY(packet.isNull(column));
}

void tst_CatalogSource::rowsMayStandOnOneLineOrMany()
{
    const CatalogueSource one = sourceOf("commands = [{id = 1, device = 3, command = \"01\"}]");
    const CatalogueSource many = sourceOf("[[commands]]\nid = 1\n\n# a remark\ndevice = 3\ncommand = \"01\"\n");
    QCOMPARE(linesOf(one), QStringList());
    QCOMPARE(linesOf(many), QStringList());
    QCOMPARE(catalogueSourceText(one.data), catalogueSourceText(many.data));
}

void tst_CatalogSource::referencesMayBeNamesOrNumbers()
{
    const CatalogueSource source = sourceOf("commands = [{id = 1, device = \"Relay\", command = \"01\"}]\n"
                                            "packets = [{id = 1, object = \"hall\", name = \"p\", command = \"01\"}]");
    QCOMPARE(linesOf(source), QStringList());
    QCOMPARE(source.data.rows(Section::Commands).first().number(CommandDevice).value(), 3);
    QCOMPARE(source.data.rows(Section::Packets).first().number(PacketObject).value(), 10);
}

void tst_CatalogSource::deepNamesAreRefusedAtOnce_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");

    const QByteArray deep = QByteArray("a.").repeated(200000) + "a";
    QTest::newRow("key") << deep + " = 1" << 1;
    QTest::newRow("table") << "\n[" + deep + "]" << 2;
    QTest::newRow("list of tables") << "\n\n[[" + deep + "]]" << 3;
    QTest::newRow("inside a row") << "a = \"\"\"\n\"\" \"\"\"\nb = {" + deep + " = 1}" << 3;
    QTest::newRow("names in quotes") << QByteArray("\"a\" . ").repeated(200000) + "a = 1" << 1;
    QTest::newRow("behind texts") << QByteArray("a = ['x', \"\\\"\", '''\n''', {") + deep + " = 1}]" << 2;
}

void tst_CatalogSource::deepNamesAreRefusedAtOnce()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);

    QCOMPARE(firstDeepTomlLine(text, 4), line);
    QCOMPARE(linesOf(CatalogueSource::fromText(text)),
             QStringList{QStringLiteral("%1:1: more than 4 dots between names").arg(line)});
}

void tst_CatalogSource::dotsInTextsAndCommentsDoNotCount()
{
    const QByteArray dots(1000, '.');
    const QList<QByteArray> texts = {
        "# " + dots,
        "a = \"" + dots + "\"",
        "a = '" + dots + "'",
        "a = \"\\\"" + dots + "\"",
        "a = \"\"\"" + dots + "\n\"" + dots + "\"\"\"",
        "a = '''" + dots + "'''",
        QByteArray("a.b.c.d.e = 1\n").repeated(9),
    };
    for (const QByteArray &text : texts)
        QCOMPARE(firstDeepTomlLine(text, 4), 0);
}

void tst_CatalogSource::largeFileIsRefused()
{
    const CatalogueSource source = CatalogueSource::fromText(QByteArray(CatalogueSource::MaxSize + 1, ' '));
    QCOMPARE(linesOf(source), QStringList{QStringLiteral("0:0: larger than 16 MiB, so hardly a catalogue's source")});
}

void tst_CatalogSource::writtenSourceReadsTheSame_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("plain") << QStringLiteral("Relay");
    QTest::newRow("empty") << QString(QLatin1String(""));
    QTest::newRow("quotes and backslashes") << QStringLiteral("\"\\\"'''\"\"\" \\u0041");
    QTest::newRow("control characters") << QString::fromLatin1("\0\b\t\n\r\x1b\x7f\x85", 8);
    QTest::newRow("other alphabets") << QString::fromUtf8("Überdruck 温度 😀 \u202E\u2028\uFEFF");
    QTest::newRow("no characters at all") << QString(QChar(0xFFFE)) + QChar(0xFFFF) + QChar(0xE000);
    QTest::newRow("looks like TOML") << QStringLiteral("], [id = 3]] # x");
}

void tst_CatalogSource::writtenSourceReadsTheSame()
{
    QFETCH(QString, text);
    const CatalogueCell null;
    CatalogueData data;
    data.rows(Section::Vendors) = {{{qint64(1), text}, {}, {}}, {{qint64(2), null}, {}, {}}};
    data.rows(Section::Devices) = {
        {{qint64(1), text, qint64(1), text, text, null}, {}, {}},
        {{qint64(2), text, qint64(2), null, null, text}, {}, {}},
        {{qint64(3), QStringLiteral("Relay 3"), null, null, null, text}, {}, {}},
    };
    data.rows(Section::Variables) = {{{text, text}, {}, {}}};

    const QByteArray written = catalogueSourceText(data);
    const CatalogueSource read = CatalogueSource::fromText(written);
    QCOMPARE(linesOf(read), QStringList());
    QVERIFY(read.hasVariables);
    for (const Section section : {Section::Vendors, Section::Devices, Section::Variables}) {
        QCOMPARE(read.data.rows(section).size(), data.rows(section).size());
        for (int i = 0; i < data.rows(section).size(); ++i)
            QVERIFY2(read.data.rows(section).at(i).cells == data.rows(section).at(i).cells, written.constData());
    }
}

void tst_CatalogSource::commandTextFaults_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fault");

    const auto row = [](const char *name, const char *text, const char *fault) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(fault);
    };
    row("all kinds", "AA 0 f %id %0 %9999 %(a1/2+a0)", "");
    row("empty", "", "");
    row("many spaces", "  01   02 ", "");
    row("leading zeros", "0001", "");
    row("argument with leading zeros", "%007", "");
    row("tab", "01\t02", "\"01\\u000902\" is not a byte in hexadecimal");
    row("above FF", "100", "\"100\" is above FF, the largest byte");
    row("far above FF", "FFFFFFFFFFFFFFFFFF", "\"FFFFFFFFFFFFFFFFFF\" is above FF, the largest byte");
    row("negative", "-1", "\"-1\" is not a byte in hexadecimal");
    row("plus", "+1", "\"+1\" is not a byte in hexadecimal");
    row("prefix", "0x41", "\"0x41\" is not a byte in hexadecimal");
    row("digits of another script", "\xD9\xA1", "\"\xD9\xA1\" is not a byte in hexadecimal");
    row("percent alone", "%", "\"%\" has no number");
    row("no number", "%Id", "\"%Id\" is neither %id nor the number of an argument");
    row("negative argument", "%-1", "\"%-1\" is neither %id nor the number of an argument");
    row("far argument", "%10000", "\"%10000\": the number is above 9999");
    row("expression with an argument that nothing sets", "%(a7*2)", "");
}

void tst_CatalogSource::commandTextFaults()
{
    QFETCH(QString, text);
    QFETCH(QString, fault);
    QCOMPARE(commandTextFault(text), fault);
    for (const char *bad : {"%(a0*)", "%(", "%()", "%(b0)", "%(1)%"})
        QVERIFY2(!commandTextFault(QLatin1String(bad)).isEmpty(), bad);
    QVERIFY(usesDeviceId(QStringLiteral("01 %id")));
    QVERIFY(!usesDeviceId(QStringLiteral("01 %idx %ID")));
}

KEL_TEST_MAIN(tst_CatalogSource)
#include "tst_catalogsource.moc"
