#include "packet.h"

#include <chunkstream.h>

#include <algorithm>

namespace Kv_Designer
{

namespace
{

/// Ids of a variable's chunks, in the order in which they are written. 4 stays unused.
enum VariableChunk { NameChunk = 1, ValueChunk = 2, IndexChunk = 3, CommentChunk = 5 };

} // namespace

QByteArray PacketVariable::toByteArray() const
{
    ChunkStream chunks;
    chunks.add(NameChunk, name);
    chunks.add(ValueChunk, value);
    chunks.add(IndexChunk, index);
    chunks.add(CommentChunk, comment);
    return chunks.data();
}

PacketVariable PacketVariable::fromByteArray(const QByteArray &data)
{
    PacketVariable variable;
    ChunkStream chunks(data);
    for (int id = chunks.read(); id != ChunkStream::EndMark; id = chunks.read()) {
        if (id == NameChunk)
            chunks.getData(variable.name);
        else if (id == ValueChunk)
            chunks.getData(variable.value);
        else if (id == IndexChunk)
            chunks.getData(variable.index);
        else if (id == CommentChunk)
            chunks.getData(variable.comment);
    }
    return variable;
}

PacketsList::PacketsList(const QList<Packet> &packets)
    : QList<Packet>(packets)
{
}

QStringList PacketsList::names() const
{
    QStringList result;
    result.reserve(size());
    for (const Packet &packet : *this)
        result.append(packet.name);
    return result;
}

PacketsList PacketsList::filter(QFlags<PacketFlag> flags) const
{
    PacketsList result;
    for (const Packet &packet : *this) {
        if (packet.flags & flags)
            result.append(packet);
    }
    return result;
}

void PacketsList::setPin(const QString &pin, const QString &device)
{
    for (Packet &packet : *this) {
        packet.pin = pin;
        packet.device = device;
    }
}

void PacketsList::clean()
{
    erase(std::remove_if(begin(), end(), [](const Packet &packet) { return packet.name.isEmpty(); }), end());
}

} // namespace Kv_Designer
