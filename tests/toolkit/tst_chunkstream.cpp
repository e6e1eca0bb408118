#include "memorypeak.h"
#include "testmain.h"

#include <QColor>
#include <QUuid>
#include <QtEndian>
#include <chunkstream.h>

#include <algorithm>

Q_DECLARE_METATYPE(QDataStream::Status)

class tst_ChunkStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void number_data();
    void number();
    void longFormIsRead();
    void brokenNumber_data();
    void brokenNumber();
    void blockIsLaidOut();
    void emptyBlockHasNoMarker();
    void payloadsOfVersion12_data();
    void payloadsOfVersion12();
    void readsWhatWasAdded();
    void stopsQuietly_data();
    void stopsQuietly();
    void longPayload();
    void sourceIsABlockInAStream();
    void sourceThatIsCutShort_data();
    void sourceThatIsCutShort();
    void sourceIsAPipe();
    void sourceIsReplaced();
    void shortPayloadKeepsTheValue();
    void malformedTextIsRefused_data();
    void malformedTextIsRefused();
    void countIsChecked();
    void nullAndEmptyTextsStayApart();
    void variantTypes_data();
    void variantTypes();
    void variantNesting_data();
    void variantNesting();
    void hostileVariant_data();
    void hostileVariant();
    void costlyListIsRefused();
    void hostileLengthTakesNoMemory();
};

namespace
{

QByteArray fromHex(const char *text)
{
    return QByteArray::fromHex(QByteArray(text).replace(' ', ""));
}

QByteArray numberBytes(uint value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    ChunkStream::writeVInt(stream, value);
    return bytes;
}

/// A block of one chunk with the id 1.
QByteArray block(const QByteArray &payload)
{
    return "\x82\x01" + numberBytes(static_cast<uint>(payload.size())) + payload;
}

/// What is left of a variant after it was streamed into a block and out.
bool readVariant(const QByteArray &payload, QVariant &value)
{
    ChunkStream reader(block(payload));
    return reader.read() == 1 && reader.getData(value);
}

QByteArray bigEndian(quint32 value)
{
    value = qToBigEndian(value);
    return {reinterpret_cast<const char *>(&value), 4};
}

/// Gives its bytes in order and does not know beforehand how many there are.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        open(QIODevice::ReadOnly);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const auto count = std::min<qint64>(size, m_bytes.size() - m_at);
        std::copy_n(m_bytes.constData() + m_at, count, data);
        m_at += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_at = 0;
};

} // namespace

void tst_ChunkStream::number_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("0") << 0u << fromHex("00");
    QTest::newRow("1") << 1u << fromHex("01");
    QTest::newRow("largest of one byte") << 0x7Fu << fromHex("7F");
    QTest::newRow("smallest of two") << 0x80u << fromHex("8080");
    QTest::newRow("largest of two") << 0x3FFFu << fromHex("BFFF");
    QTest::newRow("smallest of three") << 0x4000u << fromHex("C04000");
    QTest::newRow("largest of three") << 0x1FFFFFu << fromHex("DFFFFF");
    QTest::newRow("smallest of four") << 0x200000u << fromHex("E0200000");
    QTest::newRow("largest of four") << 0x0FFFFFFFu << fromHex("EFFFFFFF");
    QTest::newRow("smallest of five") << 0x10000000u << fromHex("F010000000");
    QTest::newRow("largest of all") << 0xFFFFFFFFu << fromHex("F0FFFFFFFF");
    QTest::newRow("bytes in order") << 0x01020304u << fromHex("E1020304");
}

void tst_ChunkStream::number()
{
    QFETCH(uint, value);
    QFETCH(QByteArray, bytes);

    QCOMPARE(numberBytes(value).toHex(), bytes.toHex());
    QDataStream stream(bytes);
    QCOMPARE(ChunkStream::readVInt(stream), value);
    QVERIFY(stream.atEnd());
    QCOMPARE(stream.status(), QDataStream::Ok);
}

void tst_ChunkStream::longFormIsRead()
{
    QDataStream stream(fromHex("F000000005"));
    QCOMPARE(ChunkStream::readVInt(stream), 5u);

    ChunkStream reader(fromHex("82 8001 8001 AA"));
    QCOMPARE(reader.read(), 1);
    QCOMPARE(reader.payload(), fromHex("AA"));
}

void tst_ChunkStream::brokenNumber_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QDataStream::Status>("status");

    QTest::newRow("nothing") << QByteArray() << QDataStream::ReadPastEnd;
    QTest::newRow("second byte missing") << fromHex("80") << QDataStream::ReadPastEnd;
    QTest::newRow("fifth byte missing") << fromHex("F0000000") << QDataStream::ReadPastEnd;
    QTest::newRow("no first byte") << fromHex("F1 00 00 00 00") << QDataStream::ReadCorruptData;
    QTest::newRow("all ones") << fromHex("FF FF FF FF FF") << QDataStream::ReadCorruptData;
}

void tst_ChunkStream::brokenNumber()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QDataStream::Status, status);

    QDataStream stream(bytes);
    QCOMPARE(ChunkStream::readVInt(stream), 0u);
    QCOMPARE(stream.status(), status);
}

void tst_ChunkStream::blockIsLaidOut()
{
    ChunkStream writer;
    writer.add(1, qint32(5)).add(200, QStringLiteral("A"));

    QCOMPARE(writer.data(), fromHex("82 01 04 00 00 00 05 80C8 06 00 00 00 02 00 41"));
}

void tst_ChunkStream::emptyBlockHasNoMarker()
{
    QVERIFY(ChunkStream().data().isEmpty());
    QCOMPARE(ChunkStream().read(), ChunkStream::EndMark);
}

void tst_ChunkStream::payloadsOfVersion12_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("float is a double") << QVariant(1.5f) << fromHex("00000087 00 3FF8000000000000");
    QTest::newRow("date is a 32-bit day") << QVariant(QDate(2020, 1, 2)) << fromHex("0000000E 00 002584E3");
    QTest::newRow("nothing has a null text") << QVariant() << fromHex("00000000 01 FFFFFFFF");
    QTest::newRow("int") << QVariant(-2) << fromHex("00000002 00 FFFFFFFE");
}

void tst_ChunkStream::payloadsOfVersion12()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, payload);
    ChunkStream writer;
    writer.add(1, value);

    QCOMPARE(writer.data().mid(3).toHex(), payload.toHex());
    QVariant back(QStringLiteral("old"));
    QVERIFY(readVariant(payload, back));
    QCOMPARE(back, value);
    QCOMPARE(back.userType(), value.userType());
}

void tst_ChunkStream::readsWhatWasAdded()
{
    ChunkStream writer;
    writer.add(7, 1.25).add(3, true).add(4, QStringList{QStringLiteral("a"), QString()});
    writer.add(5, QByteArray("\0x", 2)).add(6, QVector<qint16>{1, -2}).add(0, QVariantMap{{QStringLiteral("k"), 1}});
    writer.add(8, QVariantList{1, QStringLiteral("b")}).add(9, QVariantHash{{QStringLiteral("h"), 2}});

    ChunkStream reader(writer.data());
    double real = 0.0;
    QCOMPARE(reader.read(), 7);
    QVERIFY(reader.getData(real));
    QCOMPARE(real, 1.25);

    bool truth = false;
    QCOMPARE(reader.read(), 3);
    QVERIFY(reader.getData(truth));
    QVERIFY(truth);

    QStringList texts;
    QCOMPARE(reader.read(), 4);
    QVERIFY(reader.getData(texts));
    QCOMPARE(texts, QStringList({QStringLiteral("a"), QString()}));

    QByteArray bytes;
    QCOMPARE(reader.read(), 5);
    QVERIFY(reader.getData(bytes));
    QCOMPARE(bytes, QByteArray("\0x", 2));

    QVector<qint16> numbers;
    QCOMPARE(reader.read(), 6);
    QVERIFY(reader.getData(numbers));
    QCOMPARE(numbers, QVector<qint16>({1, -2}));

    QVariantMap map;
    QCOMPARE(reader.read(), 0);
    QVERIFY(reader.getData(map));
    QCOMPARE(map, QVariantMap({{QStringLiteral("k"), 1}}));

    QVariantList list;
    QCOMPARE(reader.read(), 8);
    QVERIFY(reader.getData(list));
    QCOMPARE(list, QVariantList({1, QStringLiteral("b")}));

    QVariantHash hash;
    QCOMPARE(reader.read(), 9);
    QVERIFY(reader.getData(hash));
    QCOMPARE(hash, QVariantHash({{QStringLiteral("h"), 2}}));

    QCOMPARE(reader.read(), ChunkStream::EndMark);
    QCOMPARE(reader.read(), ChunkStream::EndMark);
    QVERIFY(reader.payload().isEmpty());
    QVERIFY(!reader.getData(real));
}

void tst_ChunkStream::stopsQuietly_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("chunks");

    QTest::newRow("nothing") << QByteArray() << 0;
    QTest::newRow("marker only") << fromHex("82") << 0;
    QTest::newRow("no marker") << fromHex("01 00 02 00") << 0;
    QTest::newRow("marker of another format") << fromHex("81 01 00") << 0;
    QTest::newRow("id only") << fromHex("82 01 00 02") << 1;
    QTest::newRow("payload one byte short") << fromHex("82 01 00 02 02 AA") << 1;
    QTest::newRow("length of 4 GiB") << fromHex("82 01 00 02 F0FFFFFFFF AA") << 1;
    QTest::newRow("length of 2 GiB") << fromHex("82 01 00 02 F07FFFFFFF AA") << 1;
    QTest::newRow("length cut") << fromHex("82 01 00 02 80") << 1;
    QTest::newRow("id begins no number") << fromHex("82 01 00 FF 00") << 1;
    QTest::newRow("id is the end mark") << fromHex("82 01 00 F0FFFFFFFF 00 03 00") << 1;
    QTest::newRow("whole") << fromHex("82 01 00 02 01 AA 7F 00") << 3;
}

void tst_ChunkStream::stopsQuietly()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, chunks);

    ChunkStream reader(bytes);
    int count = 0;
    while (reader.read() != ChunkStream::EndMark)
        ++count;
    QCOMPARE(count, chunks);
    QCOMPARE(reader.read(), ChunkStream::EndMark);
    QVERIFY(reader.payload().isEmpty());
}

void tst_ChunkStream::longPayload()
{
    const QString text(300000, QLatin1Char('x'));
    ChunkStream writer;
    writer.add(1, text).add(2, 7);

    ChunkStream reader(writer.data());
    QString back;
    int number = 0;
    QCOMPARE(reader.read(), 1);
    QVERIFY(reader.getData(back));
    QCOMPARE(back, text);
    QCOMPARE(reader.read(), 2);
    QVERIFY(reader.getData(number));
    QCOMPARE(number, 7);
}

void tst_ChunkStream::sourceIsABlockInAStream()
{
    ChunkStream writer;
    writer.add(3, 9);
    QByteArray file;
    QDataStream out(&file, QIODevice::WriteOnly);
    out << writer.data() << qint32(77);

    QDataStream in(file);
    ChunkStream reader;
    reader.setSource(in);
    QCOMPARE(reader.read(), 3);
    QCOMPARE(reader.read(), ChunkStream::EndMark);
    QCOMPARE(in.status(), QDataStream::Ok);
    qint32 behind = 0;
    in >> behind;
    QCOMPARE(behind, 77);
}

void tst_ChunkStream::sourceThatIsCutShort_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QDataStream::Status>("status");

    QTest::newRow("nothing") << QByteArray() << QDataStream::ReadPastEnd;
    QTest::newRow("half a length") << fromHex("00 00") << QDataStream::ReadPastEnd;
    QTest::newRow("one byte missing") << fromHex("00 00 00 04 82 01 00") << QDataStream::ReadPastEnd;
    QTest::newRow("2 GiB claimed") << fromHex("7F FF FF FF 82 01 00") << QDataStream::ReadPastEnd;
    QTest::newRow("nearly 4 GiB claimed") << fromHex("FF FF FF FE 82 01 00") << QDataStream::ReadPastEnd;
    QTest::newRow("null block") << fromHex("FF FF FF FF 82 01 00") << QDataStream::Ok;
    QTest::newRow("empty block") << fromHex("00 00 00 00 82 01 00") << QDataStream::Ok;
}

void tst_ChunkStream::sourceThatIsCutShort()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QDataStream::Status, status);

    QDataStream in(bytes);
    ChunkStream reader;
    reader.setSource(in);
    QCOMPARE(reader.read(), ChunkStream::EndMark);
    QCOMPARE(in.status(), status);
}

void tst_ChunkStream::sourceIsAPipe()
{
    ChunkStream writer;
    writer.add(1, QByteArray(200000, 'x'));
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << writer.data();

    Pipe pipe(bytes);
    QDataStream in(&pipe);
    ChunkStream reader;
    reader.setSource(in);
    QByteArray back;
    QCOMPARE(reader.read(), 1);
    QVERIFY(reader.getData(back));
    QCOMPARE(back, QByteArray(200000, 'x'));

    bytes.chop(1);
    Pipe shorter(bytes);
    QDataStream cut(&shorter);
    reader.setSource(cut);
    QCOMPARE(reader.read(), ChunkStream::EndMark);
    QCOMPARE(cut.status(), QDataStream::ReadPastEnd);
}

void tst_ChunkStream::sourceIsReplaced()
{
    ChunkStream reader(fromHex("82 01 01 AA 02 00"));
    QCOMPARE(reader.read(), 1);
    reader.setSource(fromHex("82 05 00"));
    QVERIFY(reader.payload().isEmpty());
    QCOMPARE(reader.read(), 5);
    QCOMPARE(reader.read(), ChunkStream::EndMark);
}

void tst_ChunkStream::shortPayloadKeepsTheValue()
{
    ChunkStream reader(fromHex("82 01 03 00 00 01 02 02 00 41"));
    int number = -1;
    double real = 2.5;
    QString text = QStringLiteral("old");
    QByteArray bytes = "old";
    QStringList texts{QStringLiteral("old")};
    QVariant variant = 3;
    for (int id : {1, 2}) {
        QCOMPARE(reader.read(), id);
        QVERIFY(!reader.getData(number));
        QVERIFY(!reader.getData(real));
        QVERIFY(!reader.getData(text));
        QVERIFY(!reader.getData(bytes));
        QVERIFY(!reader.getData(texts));
        QVERIFY(!reader.getData(variant));
    }
    QCOMPARE(number, -1);
    QCOMPARE(real, 2.5);
    QCOMPARE(text, QStringLiteral("old"));
    QCOMPARE(bytes, QByteArray("old"));
    QCOMPARE(texts, QStringList{QStringLiteral("old")});
    QCOMPARE(variant, QVariant(3));
}

void tst_ChunkStream::malformedTextIsRefused_data()
{
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("odd length") << fromHex("00 00 00 03 00 41 00");
    QTest::newRow("one byte short") << fromHex("00 00 00 04 00 41 00");
    QTest::newRow("2 GiB") << fromHex("7F FF FF FE 00 41");
    QTest::newRow("nearly 4 GiB") << fromHex("FF FF FF FE 00 41");
}

void tst_ChunkStream::malformedTextIsRefused()
{
    QFETCH(QByteArray, payload);
    ChunkStream reader(block(payload));
    QString text = QStringLiteral("old");

    QCOMPARE(reader.read(), 1);
    QVERIFY(!reader.getData(text));
    QCOMPARE(text, QStringLiteral("old"));

    // the same text inside a list, behind a good one
    QStringList texts{QStringLiteral("old")};
    reader.setSource(block(fromHex("00 00 00 02 FF FF FF FF") + payload));
    QCOMPARE(reader.read(), 1);
    QVERIFY(!reader.getData(texts));
    QCOMPARE(texts, QStringList{QStringLiteral("old")});
}

void tst_ChunkStream::countIsChecked()
{
    for (const char *payload : {"7F FF FF FF", "00 00 00 02 FF FF FF FF 00 00 00", "FF FF FF FF"}) {
        ChunkStream reader(block(fromHex(payload)));
        QCOMPARE(reader.read(), 1);
        QStringList texts;
        QVector<double> numbers;
        QList<int> list;
        QVERIFY(!reader.getData(texts));
        QVERIFY(!reader.getData(numbers));
        QVERIFY(!reader.getData(list));
    }
}

void tst_ChunkStream::nullAndEmptyTextsStayApart()
{
    ChunkStream writer;
    writer.add(1, QString()).add(2, QString(QLatin1String(""))).add(3, QByteArray()).add(4, QByteArray(""));
    QCOMPARE(writer.data(), fromHex("82 01 04 FFFFFFFF 02 04 00000000 03 04 FFFFFFFF 04 04 00000000"));

    ChunkStream reader(writer.data());
    QString text = QStringLiteral("old");
    QByteArray bytes = "old";
    reader.read();
    QVERIFY(reader.getData(text) && text.isNull());
    reader.read();
    QVERIFY(reader.getData(text) && text.isEmpty() && !text.isNull());
    reader.read();
    QVERIFY(reader.getData(bytes) && bytes.isNull());
    reader.read();
    QVERIFY(reader.getData(bytes) && bytes.isEmpty() && !bytes.isNull());
}

void tst_ChunkStream::variantTypes_data()
{
    QTest::addColumn<QVariant>("value");

    const auto row = [](const QVariant &value) { QTest::newRow(value.typeName()) << value; };
    row(true);
    row(-1);
    row(1u);
    row(Q_INT64_C(-5000000000));
    row(Q_UINT64_C(5000000000));
    row(0.1);
    row(QChar('a'));
    row(QStringLiteral("text"));
    row(QStringList{QStringLiteral("a"), QStringLiteral("")});
    row(QByteArray("bytes"));
    QBitArray bits(9);
    bits.setBit(8);
    row(bits);
    row(QDate(1999, 12, 31));
    row(QTime(23, 59, 58, 999));
    row(QDateTime(QDate(2020, 2, 29), QTime(1, 2, 3), Qt::UTC));
    row(QUrl(QStringLiteral("http://example.org/a?b")));
    row(QLocale(QStringLiteral("de_DE")));
    row(QRect(1, 2, 3, 4));
    row(QRectF(1, 2, 3, 4));
    row(QSize(1, 2));
    row(QSizeF(1, 2));
    row(QLine(1, 2, 3, 4));
    row(QLineF(1, 2, 3, 4));
    row(QPoint(1, 2));
    row(QPointF(1, 2));
    row(QUuid(QStringLiteral("{12345678-1234-1234-1234-123456789abc}")));
    row(QColor(1, 2, 3, 4));
    row(QVariant::fromValue(1L));
    row(QVariant::fromValue(1UL));
    row(QVariant::fromValue(short(-1)));
    row(QVariant::fromValue(char(1)));
    row(QVariant::fromValue(ushort(1)));
    row(QVariant::fromValue(uchar(1)));
    row(QVariant::fromValue(static_cast<signed char>(-1)));
    row(QVariant::fromValue(0.5f));
    row(QVariant::fromValue(QByteArrayList{"a", ""}));
    row(QVariant::fromValue(nullptr));
    row(QVariantList{1, QVariantList{2, QVariantMap{{QStringLiteral("k"), 1.5}}}});
    row(QVariantMap{{QStringLiteral("k"), QStringLiteral("v")}, {QString(), QVariant()}});
    row(QVariantHash{{QStringLiteral("k"), QVariantList{}}});
    const QVariant inner(3);
    row(QVariant(QMetaType::QVariant, &inner));
}

void tst_ChunkStream::variantTypes()
{
    QFETCH(QVariant, value);
    ChunkStream writer;
    writer.add(1, value);
    ChunkStream reader(writer.data());
    QVariant back;

    QCOMPARE(reader.read(), 1);
    QVERIFY(reader.getData(back));
    QCOMPARE(back.userType(), value.userType());
    QCOMPARE(back, value);

    // with any byte missing it is no such value
    QByteArray payload = reader.payload();
    while (!payload.isEmpty()) {
        payload.chop(1);
        QVariant kept(QStringLiteral("old"));
        QVERIFY(!readVariant(payload, kept));
        QCOMPARE(kept, QVariant(QStringLiteral("old")));
    }
}

void tst_ChunkStream::variantNesting_data()
{
    QTest::addColumn<QByteArray>("level");
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("isRead");

    const QByteArray list = fromHex("00000009 00 00000001");
    const QByteArray map = fromHex("00000008 00 00000001 FFFFFFFF");
    const QByteArray hash = fromHex("0000001C 00 00000001 FFFFFFFF");
    const QByteArray variant = fromHex("0000008A 00");
    QTest::newRow("lists, deepest") << list << 63 << true;
    QTest::newRow("lists, one more") << list << 64 << false;
    QTest::newRow("maps, deepest") << map << 63 << true;
    QTest::newRow("maps, one more") << map << 64 << false;
    QTest::newRow("hashes, one more") << hash << 64 << false;
    QTest::newRow("variants, one more") << variant << 64 << false;
    QTest::newRow("lists without end") << list << 1000000 << false;
    QTest::newRow("maps without end") << map << 1000000 << false;
    QTest::newRow("variants without end") << variant << 1000000 << false;
}

void tst_ChunkStream::variantNesting()
{
    QFETCH(QByteArray, level);
    QFETCH(int, depth);
    QFETCH(bool, isRead);
    QVariant value;

    QCOMPARE(readVariant(level.repeated(depth) + fromHex("00000002 00 00000005"), value), isRead);
    QCOMPARE(value.isValid(), isRead);
}

void tst_ChunkStream::hostileVariant_data()
{
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("list of 2 G") << fromHex("00000009 00 7FFFFFFF 00000002 00 00000001");
    QTest::newRow("map of 2 G") << fromHex("00000008 00 7FFFFFFF FFFFFFFF 00000002 00 00000001");
    QTest::newRow("hash of 2 G") << fromHex("0000001C 00 7FFFFFFF FFFFFFFF 00000002 00 00000001");
    QTest::newRow("texts of 2 G") << fromHex("0000000B 00 7FFFFFFF FFFFFFFF");
    QTest::newRow("byte arrays of 2 G") << fromHex("00000092 00 7FFFFFFF FFFFFFFF");
    QTest::newRow("bytes of 2 G") << fromHex("0000000C 00 7FFFFFFF 00");
    QTest::newRow("bits of 4 G") << fromHex("0000000D 00 FFFFFFFF 00");
    QTest::newRow("text of 2 G in a list") << fromHex("00000009 00 00000001 0000000A 00 7FFFFFFE 0041");
    QTest::newRow("unknown number") << fromHex("0000001F 00 00000000 00000000");
    QTest::newRow("negative number") << fromHex("FFFFFFFF 00 00000000 00000000");
    QTest::newRow("a picture") << fromHex("00000046 00 00000001 00000000");
    QTest::newRow("a type of the host") << fromHex("0000007F 00 00000006 51436F6C6F00 00000000");
    QTest::newRow("a type of the host, nameless") << fromHex("0000007F 00 00000000 00000000");
    QTest::newRow("no kind of time") << fromHex("00000010 00 002584E3 00000000 7F");
    QTest::newRow("no colour model") << fromHex("00000043 00 77 FFFF 0000 0000 0000 0000");
}

void tst_ChunkStream::hostileVariant()
{
    QFETCH(QByteArray, payload);
    QVariant value(QStringLiteral("old"));
    const MemoryPeak peak;

    QVERIFY(!readVariant(payload, value));
    QCOMPARE(value, QVariant(QStringLiteral("old")));
    QVERIFY(peak.bytes() < 64 * 1024);
}

void tst_ChunkStream::costlyListIsRefused()
{
    // six bytes in the block, forty in memory
    QVariantList many;
    for (int i = 0; i < 200000; ++i)
        many.append(true);
    ChunkStream writer;
    writer.add(1, many).add(2, many.mid(0, 4000));

    ChunkStream reader(writer.data());
    QVariantList list;
    QCOMPARE(reader.read(), 1);
    QVERIFY(!reader.getData(list));
    QVERIFY(list.isEmpty());
    QCOMPARE(reader.read(), 2);
    QVERIFY(reader.getData(list));
    QCOMPARE(list.size(), 4000);
}

void tst_ChunkStream::hostileLengthTakesNoMemory()
{
    if (!MemoryPeak::isAvailable())
        QSKIP("a sanitizer counts memory of its own");
    const QByteArray bytes = bigEndian(0x7FFFFFFF) + fromHex("82 01 F07FFFFFF0 00000001");
    const MemoryPeak peak;

    QDataStream in(bytes);
    ChunkStream reader;
    reader.setSource(in);
    QCOMPARE(reader.read(), ChunkStream::EndMark);

    Pipe pipe(bytes);
    QDataStream piped(&pipe);
    reader.setSource(piped);
    QCOMPARE(reader.read(), ChunkStream::EndMark);

    QVERIFY2(peak.bytes() < 256 * 1024, qPrintable(QString::number(peak.bytes())));
}

KEL_TEST_MAIN(tst_ChunkStream)
#include "tst_chunkstream.moc"
