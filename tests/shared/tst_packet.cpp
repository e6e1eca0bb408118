#include "memorypeak.h"
#include "testmain.h"

#include <packet.h>

using namespace Kv_Designer;

class tst_Packet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void variableDefaults();
    void variableIsLaidOut();
    void variableIsReadBack_data();
    void variableIsReadBack();
    void extraIsNotStored();
    void nothingGivesDefaults_data();
    void nothingGivesDefaults();
    void chunksComeInAnyOrder();
    void laterChunkWins();
    void truncatedVariableKeepsWhatIsWhole();
    void hostileValueKeepsTheRest();
    void memoryStaysBounded_data();
    void memoryStaysBounded();

    void packetDefaults();
    void names();
    void filter_data();
    void filter();
    void setPin();
    void clean_data();
    void clean();
};

namespace
{

QByteArray fromHex(const char *text)
{
    return QByteArray::fromHex(QByteArray(text).replace(' ', ""));
}

bool isDefault(const PacketVariable &variable)
{
    return variable.name.isNull() && variable.comment.isNull() && variable.extra == 0 && !variable.value.isValid() &&
           variable.index == -1;
}

PacketsList packetsNamed(const QStringList &names)
{
    PacketsList list;
    for (const QString &name : names) {
        Packet packet;
        packet.name = name;
        list.append(packet);
    }
    return list;
}

QByteArray bigEndian(int value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes;
}

/// A variable whose value is a list of \a count variants, each \a element.
QByteArray variableWithList(int count, const QByteArray &element)
{
    const QByteArray payload = fromHex("00000009 00") + bigEndian(count) + element.repeated(count);
    return fromHex("82 02 F0") + bigEndian(payload.size()) + payload + fromHex("03 04 00 00 00 07");
}

} // namespace

void tst_Packet::variableDefaults()
{
    QVERIFY(isDefault(PacketVariable()));
}

void tst_Packet::variableIsLaidOut()
{
    PacketVariable variable;
    variable.name = QStringLiteral("t");
    variable.value = 5;
    variable.index = 2;
    variable.comment = QStringLiteral("c");
    QCOMPARE(variable.toByteArray().toHex(), fromHex("82 01 06 00000002 0074"
                                                     "02 09 00000002 00 00000005"
                                                     "03 04 00000002"
                                                     "05 06 00000002 0063")
                                                 .toHex());

    QCOMPARE(PacketVariable().toByteArray().toHex(), fromHex("82 01 04 FFFFFFFF"
                                                             "02 09 00000000 01 FFFFFFFF"
                                                             "03 04 FFFFFFFF"
                                                             "05 04 FFFFFFFF")
                                                         .toHex());
}

void tst_Packet::variableIsReadBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("comment");

    const QString empty = QStringLiteral("");
    QTest::newRow("defaults") << QString() << QVariant() << -1 << QString();
    QTest::newRow("empty texts") << empty << QVariant(empty) << 0 << empty;
    QTest::newRow("number") << QStringLiteral("n") << QVariant(1.5) << 7 << QStringLiteral("c");
    QTest::newRow("float") << QStringLiteral("n") << QVariant(0.1f) << INT_MIN << QString();
    QTest::newRow("date") << QStringLiteral("n") << QVariant(QDate(2024, 2, 29)) << INT_MAX << QString();
    QTest::newRow("list") << QStringLiteral("імʼя")
                          << QVariant(QVariantList{1, QStringLiteral("x"), QVariantList{true}}) << 3
                          << QStringLiteral("two\nlines");
}

void tst_Packet::variableIsReadBack()
{
    PacketVariable variable;
    QFETCH(QString, name);
    QFETCH(QVariant, value);
    QFETCH(int, index);
    QFETCH(QString, comment);
    variable.name = name;
    variable.value = value;
    variable.index = index;
    variable.comment = comment;

    const PacketVariable back = PacketVariable::fromByteArray(variable.toByteArray());
    QCOMPARE(back.name, name);
    QCOMPARE(back.name.isNull(), name.isNull());
    QCOMPARE(back.value, value);
    QCOMPARE(back.value.userType(), value.userType());
    QCOMPARE(back.index, index);
    QCOMPARE(back.comment, comment);
    QCOMPARE(back.comment.isNull(), comment.isNull());
    QCOMPARE(back.toByteArray(), variable.toByteArray());
}

void tst_Packet::extraIsNotStored()
{
    PacketVariable variable;
    variable.extra = Q_INT64_C(0x7FFFFFFFFFFFFFFF);

    QCOMPARE(variable.toByteArray(), PacketVariable().toByteArray());
    QCOMPARE(PacketVariable::fromByteArray(variable.toByteArray()).extra, 0);
}

void tst_Packet::nothingGivesDefaults_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("null") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("marker only") << fromHex("82");
    QTest::newRow("no marker") << fromHex("03 04 00 00 00 05");
    QTest::newRow("with a length in front") << fromHex("00 00 00 07 82 03 04 00 00 00 05");
    QTest::newRow("unused and unknown ids") << fromHex("82 04 04 00 00 00 05 00 04 00 00 00 05 06 04 00 00 00 05"
                                                       "80C8 04 00 00 00 05");
    QTest::newRow("index a byte short") << fromHex("82 03 03 00 00 00");
    QTest::newRow("index cut by the end") << fromHex("82 03 04 00 00 00");
}

void tst_Packet::nothingGivesDefaults()
{
    QFETCH(QByteArray, data);

    QVERIFY(isDefault(PacketVariable::fromByteArray(data)));
}

void tst_Packet::chunksComeInAnyOrder()
{
    const PacketVariable variable =
        PacketVariable::fromByteArray(fromHex("82 05 06 00000002 0063 04 01 FF 03 05 00000009 EE 01 06 00000002 0074"));

    QCOMPARE(variable.name, QStringLiteral("t"));
    QCOMPARE(variable.index, 9);
    QCOMPARE(variable.comment, QStringLiteral("c"));
    QVERIFY(!variable.value.isValid());
}

void tst_Packet::laterChunkWins()
{
    QCOMPARE(PacketVariable::fromByteArray(fromHex("82 03 04 00000001 03 04 00000002")).index, 2);
}

void tst_Packet::truncatedVariableKeepsWhatIsWhole()
{
    PacketVariable variable;
    variable.name = QStringLiteral("t");
    variable.value = 5;
    variable.index = 2;
    variable.comment = QStringLiteral("c");
    const QByteArray whole = variable.toByteArray();
    const int endOfName = 1 + 8;
    const int endOfValue = endOfName + 11;
    const int endOfIndex = endOfValue + 6;

    for (int size = 0; size < whole.size(); ++size) {
        const PacketVariable cut = PacketVariable::fromByteArray(whole.left(size));
        QCOMPARE(cut.name, size >= endOfName ? QStringLiteral("t") : QString());
        QCOMPARE(cut.value, size >= endOfValue ? QVariant(5) : QVariant());
        QCOMPARE(cut.index, size >= endOfIndex ? 2 : -1);
        QVERIFY(cut.comment.isNull());
    }
}

void tst_Packet::hostileValueKeepsTheRest()
{
    const QByteArray nested = fromHex("00000009 00 00000001").repeated(200000);
    const PacketVariable deep = PacketVariable::fromByteArray(fromHex("82 02 F0") + bigEndian(nested.size()) + nested +
                                                              fromHex("03 04 00000003"));
    QVERIFY(!deep.value.isValid());
    QCOMPARE(deep.index, 3);

    const PacketVariable counted =
        PacketVariable::fromByteArray(fromHex("82 02 09 00000009 00 7FFFFFFF 03 04 00000003"));
    QVERIFY(!counted.value.isValid());
    QCOMPARE(counted.index, 3);
}

void tst_Packet::memoryStaysBounded_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("many nothings") << variableWithList(200000, fromHex("00000000 01 FFFFFFFF"));
    QTest::newRow("many bools") << variableWithList(200000, fromHex("00000001 00 01"));
    QTest::newRow("many null pointers") << variableWithList(200000, fromHex("00000094 00"));
    QTest::newRow("many short texts") << variableWithList(200000, fromHex("0000000A 00 00000002 0041"));
    QTest::newRow("many rectangles") << variableWithList(100000, fromHex("00000014 00") + QByteArray(32, '\x3F'));
    QTest::newRow("many short lists") << variableWithList(100000, fromHex("0000000B 00 00000001 FFFFFFFF"));
    QTest::newRow("many maps of one") << variableWithList(100000, fromHex("00000008 00 00000001 00000002 0041"
                                                                          "00000001 00 01"));
    QTest::newRow("many hashes of one") << variableWithList(100000, fromHex("0000001C 00 00000001 00000002 0041"
                                                                            "00000001 00 01"));
    QTest::newRow("many dates") << variableWithList(100000, fromHex("00000010 00 002584E3 0038CEF8 04"));
    QTest::newRow("many addresses") << variableWithList(10000, fromHex("00000011 00 00000008 687474703A2F2F78"));
    QTest::newRow("many languages") << variableWithList(10000, fromHex("00000012 00 0000000A 00640065005F00440045"));
    QTest::newRow("as many bools as are read") << variableWithList(5000, fromHex("00000001 00 01"));
    QTest::newRow("as many hashes as are read") << variableWithList(1200, fromHex("0000001C 00 00000001 00000002 0041"
                                                                                  "00000001 00 01"));
    QTest::newRow("one long text") << variableWithList(1, fromHex("0000000A 00") + bigEndian(9000000) +
                                                              QByteArray(9000000, 'a'));
    QTest::newRow("one long byte array") << variableWithList(1, fromHex("0000000C 00") + bigEndian(9000001) +
                                                                    QByteArray(9000001, 'a'));
    QTest::newRow("the same list again and again")
        << QByteArray(variableWithList(5000, fromHex("00000001 00 01")).repeated(20).replace(fromHex("82 02"), "\x02"))
               .prepend('\x82');
}

void tst_Packet::memoryStaysBounded()
{
    if (!MemoryPeak::isAvailable())
        QSKIP("a sanitizer counts memory of its own");
    QFETCH(QByteArray, data);
    const qint64 limit = 4 * data.size() + 1024 * 1024;
    const MemoryPeak peak;

    const PacketVariable variable = PacketVariable::fromByteArray(data);
    const qint64 most = peak.bytes() + data.size(); // the data themselves are in memory, too
    QVERIFY2(most < limit, qPrintable(QStringLiteral("%1 of %2").arg(most).arg(limit)));
    QCOMPARE(variable.index, 7);
}

void tst_Packet::packetDefaults()
{
    const Packet packet;

    QVERIFY(packet.name.isNull());
    QVERIFY(packet.pin.isNull());
    QVERIFY(packet.device.isNull());
    QCOMPARE(int(packet.flags), 0);
    QVERIFY(packet.variables.isEmpty());
}

void tst_Packet::names()
{
    QCOMPARE(PacketsList().names(), QStringList());
    const QStringList given{QStringLiteral("b"), QString(), QStringLiteral("a"), QStringLiteral("b")};
    QCOMPARE(packetsNamed(given).names(), given);
}

void tst_Packet::filter_data()
{
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<QString>("found");

    QTest::newRow("no flags") << 0u << QString();
    QTest::newRow("one flag") << 1u << QStringLiteral("a,ab");
    QTest::newRow("two flags, either counts") << 3u << QStringLiteral("a,b,ab");
    QTest::newRow("highest bit") << 0x80000000u << QStringLiteral("high");
    QTest::newRow("flag of nobody") << 0x100u << QString();
    QTest::newRow("all") << 0xFFFFFFFFu << QStringLiteral("a,b,ab,high");
}

void tst_Packet::filter()
{
    QFETCH(quint32, mask);
    QFETCH(QString, found);
    PacketsList list = packetsNamed({QStringLiteral("a"), QStringLiteral("none"), QStringLiteral("b"),
                                     QStringLiteral("ab"), QStringLiteral("high")});
    const quint32 flags[] = {1, 0, 2, 3, 0x80000000u};
    for (int i = 0; i < list.size(); ++i)
        list[i].flags = PacketFlags(PacketFlag(flags[i]));

    QCOMPARE(list.filter(PacketFlags(PacketFlag(mask))).names().join(QLatin1Char(',')), found);
    QCOMPARE(list.size(), 5);
}

void tst_Packet::setPin()
{
    PacketsList list = packetsNamed({QStringLiteral("a"), QString()});
    list.setPin(QStringLiteral("P"), QStringLiteral("D"));

    for (const Packet &packet : std::as_const(list)) {
        QCOMPARE(packet.pin, QStringLiteral("P"));
        QCOMPARE(packet.device, QStringLiteral("D"));
    }
    QCOMPARE(list.names(), QStringList({QStringLiteral("a"), QString()}));
}

void tst_Packet::clean_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");

    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString blank = QStringLiteral(" ");
    QTest::newRow("empty list") << QStringList() << QStringList();
    QTest::newRow("all named") << QStringList{b, a} << QStringList{b, a};
    QTest::newRow("null and empty go") << QStringList{QString(), b, QStringLiteral(""), QString(), a, QString()}
                                       << QStringList{b, a};
    QTest::newRow("a blank is a name") << QStringList{blank} << QStringList{blank};
    QTest::newRow("none named") << QStringList{QString(), QString()} << QStringList();
}

void tst_Packet::clean()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    PacketsList list = packetsNamed(before);
    list.clean();

    QCOMPARE(list.names(), after);
}

KEL_TEST_MAIN(tst_Packet)
#include "tst_packet.moc"
