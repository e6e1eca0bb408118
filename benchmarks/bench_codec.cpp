// Encoding and matching a frame of twelve bytes, beside what one would write by hand or take from a
// library. All contenders begin with the same QVariants and end with them.
#include "comparison.h"
#include "subjects.h"

#include "frame.pb.h"

#include <commandtemplate.h>

#include <QDataStream>
#include <QtEndian>

namespace
{

using Kv_Designer::CommandArgument;
using Kv_Designer::CommandTemplate;
using Values = QVector<QVariant>;

constexpr int Loops = 1000;
constexpr int FrameSize = 12;

// Header, speed, position, trim, a status byte that is not looked at, and the end of the line.
const QString Text = QStringLiteral("AA 55 %(word~)[speed]0 %(dword~)[position]1 %(sbyte)[trim]2 . \"\\r\\n\"");
const Values Given{4660, 305419896, -5};

/// What a careful person writes for exactly this frame.
struct ByHand {
    static bool encode(const Values &values, QByteArray &out)
    {
        if (values.size() < 3)
            return false;
        if (out.size() != FrameSize)
            out.resize(FrameSize);
        char *bytes = out.data();
        bytes[0] = char(0xAA);
        bytes[1] = 0x55;
        qToBigEndian(quint16(values.at(0).toInt()), bytes + 2);
        qToBigEndian(quint32(values.at(1).toInt()), bytes + 4);
        bytes[8] = char(values.at(2).toInt());
        bytes[9] = 0;
        bytes[10] = '\r';
        bytes[11] = '\n';
        return true;
    }

    static bool match(const QByteArray &data, Values &values)
    {
        if (data.size() < FrameSize)
            return false;
        const char *bytes = data.constData();
        if (bytes[0] != char(0xAA) || bytes[1] != 0x55)
            return false;
        if (values.size() < 3)
            values.resize(3);
        values[0] = int(qFromBigEndian<quint16>(bytes + 2));
        values[1] = uint(qFromBigEndian<quint32>(bytes + 4));
        values[2] = int(qint8(bytes[8]));
        return bytes[10] == '\r' && bytes[11] == '\n';
    }
};

struct ByDataStream {
    static bool encode(const Values &values, QByteArray &out)
    {
        if (values.size() < 3)
            return false;
        QDataStream stream(&out, QIODevice::WriteOnly);
        stream << quint8(0xAA) << quint8(0x55) << quint16(values.at(0).toInt()) << quint32(values.at(1).toInt())
               << qint8(values.at(2).toInt()) << quint8(0) << quint8('\r') << quint8('\n');
        return stream.status() == QDataStream::Ok;
    }

    static bool match(const QByteArray &data, Values &values)
    {
        QDataStream stream(data);
        quint8 head[2];
        quint16 speed;
        quint32 position;
        qint8 trim;
        quint8 tail[3];
        stream >> head[0] >> head[1] >> speed >> position >> trim >> tail[0] >> tail[1] >> tail[2];
        if (stream.status() != QDataStream::Ok || head[0] != 0xAA || head[1] != 0x55)
            return false;
        if (values.size() < 3)
            values.resize(3);
        values[0] = int(speed);
        values[1] = uint(position);
        values[2] = int(trim);
        return tail[1] == '\r' && tail[2] == '\n';
    }
};

/// Its bytes are its own; it carries the same values.
struct ByProtobuf {
    kelbench::Frame frame;

    bool encode(const Values &values, QByteArray &out)
    {
        if (values.size() < 3)
            return false;
        frame.set_speed(quint16(values.at(0).toInt()));
        frame.set_position(quint32(values.at(1).toInt()));
        frame.set_trim(qint8(values.at(2).toInt()));
        const int size = int(frame.ByteSizeLong());
        if (out.size() != size)
            out.resize(size);
        return frame.SerializeToArray(out.data(), size);
    }

    bool match(const QByteArray &data, Values &values)
    {
        if (!frame.ParseFromArray(data.constData(), data.size()))
            return false;
        if (values.size() < 3)
            values.resize(3);
        values[0] = int(frame.speed());
        values[1] = uint(frame.position());
        values[2] = int(frame.trim());
        return true;
    }
};

/// One contender in both directions. Each keeps its buffers from frame to frame.
template <typename Encode, typename Match>
class Road
{
public:
    Road(const char *name, Encode encode, Match match)
        : m_name(name)
        , m_encode(encode)
        , m_match(match)
    {
    }

    /// Ends the program unless the road brings the given values back, in \a wanted bytes if any.
    void check(const QByteArray &wanted)
    {
        Values values(3);
        require(m_encode(Given, m_bytes) && (wanted.isEmpty() || m_bytes == wanted), m_name);
        require(m_match(m_bytes, values), m_name);
        require(values == Values{4660, 305419896u, -5}, m_name);
        QByteArray bent = m_bytes;
        bent[bent.size() - 1] = '?';
        require(wanted.isEmpty() || !m_match(bent, values), m_name);
    }

    Contender encoding()
    {
        return {m_name,
                [this] {
                    for (int i = 0; i < Loops; ++i)
                        m_isGood &= m_encode(Given, m_bytes);
                    require(m_isGood, m_name);
                },
                Loops};
    }

    Contender matching()
    {
        return {m_name,
                [this] {
                    for (int i = 0; i < Loops; ++i)
                        m_isGood &= m_match(m_bytes, m_values);
                    require(m_isGood, m_name);
                },
                Loops};
    }

private:
    const char *m_name;
    Encode m_encode;
    Match m_match;
    QByteArray m_bytes;
    Values m_values{QVariant(), QVariant(), QVariant()};
    bool m_isGood = true;
};

} // namespace

void benchCodec()
{
    static const CommandTemplate compiled = CommandTemplate::fromText(Text);
    static const QVector<CommandArgument> entries = packetArgumentsFromText(Text);
    static ByProtobuf protobuf;

    static Road byTemplate(
        "CommandTemplate", [](const Values &values, QByteArray &out) { return compiled.encode(values, out); },
        [](const QByteArray &data, Values &values) { return compiled.match(data, values); });
    static Road byFunctions(
        "prepare/parseCommand",
        [](const Values &values, QByteArray &out) {
            out = prepareCommand(entries, values);
            return !out.isEmpty();
        },
        [](const QByteArray &data, Values &values) { return parseCommand(data, entries, values); });
    static Road byHand("by hand", &ByHand::encode, &ByHand::match);
    static Road byDataStream("QDataStream", &ByDataStream::encode, &ByDataStream::match);
    static Road byProtobuf(
        "protobuf", [](const Values &values, QByteArray &out) { return protobuf.encode(values, out); },
        [](const QByteArray &data, Values &values) { return protobuf.match(data, values); });

    const QByteArray frame = QByteArray::fromHex("aa55123412345678fb000d0a");
    byTemplate.check(frame);
    byFunctions.check(frame);
    byHand.check(frame);
    byDataStream.check(frame);
    byProtobuf.check(QByteArray());

    compare("encode a frame", byTemplate.encoding(), byHand.encoding(), 2.0);
    compare("encode a frame", byTemplate.encoding(), byDataStream.encoding(), 0.1);
    compare("encode a frame", byTemplate.encoding(), byProtobuf.encoding());
    compare("encode a frame", byFunctions.encoding(), byHand.encoding());
    compare("encode a frame", byFunctions.encoding(), byDataStream.encoding(), 1.0 / 3);
    compare("encode a frame", byFunctions.encoding(), byProtobuf.encoding());
    compare("match a frame", byTemplate.matching(), byHand.matching(), 3.0);
    compare("match a frame", byTemplate.matching(), byDataStream.matching(), 0.1);
    compare("match a frame", byTemplate.matching(), byProtobuf.matching());
    compare("match a frame", byFunctions.matching(), byHand.matching());
    compare("match a frame", byFunctions.matching(), byDataStream.matching());
    compare("match a frame", byFunctions.matching(), byProtobuf.matching());
}
