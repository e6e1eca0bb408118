#include "chunkstream.h"

#include "streamscan.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <climits>

namespace
{

constexpr char Marker = '\x82';
constexpr quint32 NullBlock = 0xFFFFFFFF;
constexpr int ReadStep = 64 * 1024;

/// How a variable-length number of a given size begins: `first` has as many leading ones as bytes follow.
struct VIntForm {
    int following;
    uchar first;
    uint largest;
};

constexpr std::array<VIntForm, 5> VIntForms = {{
    {0, 0x00, 0x7F},
    {1, 0x80, 0x3FFF},
    {2, 0xC0, 0x1FFFFF},
    {3, 0xE0, 0x0FFFFFFF},
    {4, 0xF0, 0xFFFFFFFF},
}};

/// The form of a number that begins with \a first; null when none does.
const VIntForm *formOf(uchar first)
{
    for (const VIntForm &form : VIntForms) {
        const auto mask = static_cast<uchar>(0xFFu << (7 - form.following));
        if (form.following == 4 ? first == form.first : (first & mask) == form.first)
            return &form;
    }
    return nullptr;
}

/// Number whose first byte is \a first, of the form \a form, with the other bytes at \a rest.
uint vIntValue(const VIntForm &form, uchar first, const uchar *rest)
{
    uint value = first ^ form.first;
    for (int i = 0; i < form.following; ++i)
        value = value << 8 | rest[i];
    return value;
}

/// Steps \a position over one number of \a block. False at its end and where no number begins.
bool takeVInt(const QByteArray &block, int &position, uint &value)
{
    if (position >= block.size())
        return false;
    const auto *from = reinterpret_cast<const uchar *>(block.constData()) + position;
    const VIntForm *form = formOf(*from);
    if (form == nullptr || form->following >= block.size() - position)
        return false;
    value = vIntValue(*form, *from, from + 1);
    position += 1 + form->following;
    return true;
}

/// Reads \a size bytes; empty when there are fewer. Makes room for what is there, not for what is claimed.
QByteArray readBlock(QDataStream &source, quint32 size)
{
    const QIODevice *device = source.device();
    if (size > INT_MAX / 2 || device == nullptr)
        return {};
    const bool isKnownToFit = !device->isSequential() && device->bytesAvailable() >= size;
    if (isKnownToFit) {
        QByteArray block(static_cast<int>(size), Qt::Uninitialized);
        return source.readRawData(block.data(), block.size()) == block.size() ? block : QByteArray();
    }
    if (!device->isSequential() && device->size() > 0)
        return {};

    // Nobody knows how much a pipe will bring.
    QByteArray block;
    while (block.size() < static_cast<int>(size)) {
        const int before = block.size();
        const int step = std::min(ReadStep, static_cast<int>(size) - before);
        block.resize(before + step);
        if (source.readRawData(block.data() + before, step) != step)
            return {};
    }
    return block;
}

// The next three take exactly the memory that their value needs, where QDataStream grows it in steps. They
// read what a StreamScan found to be whole, and step \a at over it.

quint32 takeNumber(const char *&at)
{
    const auto value = qFromBigEndian<quint32>(at);
    at += sizeof(value);
    return value;
}

QByteArray takeBytes(const char *&at)
{
    const quint32 size = takeNumber(at);
    if (size == NullBlock)
        return {};
    QByteArray bytes(at, static_cast<int>(size));
    at += size;
    return bytes;
}

QString takeText(const char *&at)
{
    const quint32 size = takeNumber(at);
    if (size == NullBlock)
        return {};
    if (size == 0)
        return QStringLiteral("");
    QString text(static_cast<int>(size / sizeof(QChar)), Qt::Uninitialized);
    qFromBigEndian<quint16>(at, text.size(), text.data());
    at += size;
    return text;
}

} // namespace

ChunkStream::ChunkStream(const QByteArray &block)
{
    setSource(block);
}

void ChunkStream::setSource(QDataStream &source)
{
    setSource(QByteArray());
    std::array<char, sizeof(quint32)> length = {};
    const int lengthSize = static_cast<int>(length.size());
    if (source.readRawData(length.data(), lengthSize) != lengthSize) {
        source.setStatus(QDataStream::ReadPastEnd);
        return;
    }
    const auto size = qFromBigEndian<quint32>(length.data());
    if (size == NullBlock || size == 0)
        return;
    const QByteArray block = readBlock(source, size);
    if (block.isEmpty())
        source.setStatus(QDataStream::ReadPastEnd);
    setSource(block);
}

void ChunkStream::setSource(const QByteArray &block)
{
    m_payload.clear();
    m_source = block;
    m_position = 0;
    if (m_source.startsWith(Marker))
        m_position = 1;
    else
        m_source.clear();
}

int ChunkStream::read()
{
    uint id = 0;
    uint size = 0;
    m_payload.clear();
    const bool isWhole = takeVInt(m_source, m_position, id) && takeVInt(m_source, m_position, size) &&
                         size <= static_cast<uint>(m_source.size() - m_position);
    if (!isWhole || static_cast<int>(id) == EndMark) {
        m_position = m_source.size();
        return EndMark;
    }
    m_payload = QByteArray::fromRawData(m_source.constData() + m_position, static_cast<int>(size));
    m_position += static_cast<int>(size);
    return static_cast<int>(id);
}

bool ChunkStream::getData(QString &value) const
{
    if (!StreamScan(m_payload).text())
        return false;
    const char *at = m_payload.constData();
    value = takeText(at);
    return true;
}

bool ChunkStream::getData(QByteArray &value) const
{
    if (!StreamScan(m_payload).bytes())
        return false;
    const char *at = m_payload.constData();
    value = takeBytes(at);
    return true;
}

bool ChunkStream::getData(QStringList &value) const
{
    StreamScan scan(m_payload);
    if (!scan.texts() || !scan.isAffordable())
        return false;
    const char *at = m_payload.constData();
    const auto count = static_cast<int>(takeNumber(at));
    QStringList read;
    read.reserve(count);
    for (int i = 0; i < count; ++i)
        read.append(takeText(at));
    value = read;
    return true;
}

bool ChunkStream::getData(QVariant &value) const
{
    StreamScan scan(m_payload);
    return scan.variant() && scan.isAffordable() && stream(value);
}

bool ChunkStream::getData(QVariantList &value) const
{
    StreamScan scan(m_payload);
    return scan.variants() && scan.isAffordable() && stream(value);
}

bool ChunkStream::getData(QVariantMap &value) const
{
    StreamScan scan(m_payload);
    return scan.namedVariants() && scan.isAffordable() && stream(value);
}

bool ChunkStream::getData(QVariantHash &value) const
{
    StreamScan scan(m_payload);
    return scan.namedVariants() && scan.isAffordable() && stream(value);
}

void ChunkStream::writeVInt(QDataStream &stream, uint value)
{
    const auto *form = std::find_if(VIntForms.cbegin(), VIntForms.cend(),
                                    [value](const VIntForm &known) { return value <= known.largest; });
    std::array<uchar, 1 + sizeof(value)> bytes = {};
    const int following = form->following;
    for (int i = following; i > 0; --i) {
        bytes[static_cast<std::size_t>(i)] = static_cast<uchar>(value);
        value >>= 8;
    }
    bytes[0] = static_cast<uchar>(form->first | (following < 4 ? value : 0));
    stream.writeRawData(reinterpret_cast<const char *>(bytes.data()), 1 + following);
}

uint ChunkStream::readVInt(QDataStream &stream)
{
    uchar first = 0;
    stream >> first;
    if (stream.status() != QDataStream::Ok)
        return 0;
    const VIntForm *form = formOf(first);
    if (form == nullptr) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return 0;
    }
    std::array<uchar, sizeof(uint)> rest = {};
    if (stream.readRawData(reinterpret_cast<char *>(rest.data()), form->following) != form->following) {
        stream.setStatus(QDataStream::ReadPastEnd);
        return 0;
    }
    return vIntValue(*form, first, rest.data());
}

void ChunkStream::addPayload(int id, const QByteArray &payload)
{
    QDataStream stream(&m_written, QIODevice::WriteOnly | QIODevice::Append);
    if (m_written.isEmpty())
        stream.writeRawData(&Marker, 1);
    writeVInt(stream, static_cast<uint>(id));
    writeVInt(stream, static_cast<uint>(payload.size()));
    stream.writeRawData(payload.constData(), payload.size());
}

/// Whether a container's count can be true: no element takes less than a byte.
bool ChunkStream::isCountPlausible() const
{
    if (m_payload.size() < static_cast<int>(sizeof(quint32)))
        return false;
    return qFromBigEndian<quint32>(m_payload.constData()) <= static_cast<quint32>(m_payload.size()) - sizeof(quint32);
}
