// A block of numbered values, read as every type that a payload may be taken for.

#include <chunkstream.h>

#include <cstdint>

namespace
{

template <typename T>
void take(const ChunkStream &chunks)
{
    T value{};
    chunks.getData(value);
}

void takeAsEverything(const ChunkStream &chunks)
{
    take<int>(chunks);
    take<double>(chunks);
    take<QString>(chunks);
    take<QByteArray>(chunks);
    take<QStringList>(chunks);
    take<QVariant>(chunks);
    take<QVariantList>(chunks);
    take<QVariantMap>(chunks);
    take<QVariantHash>(chunks);
    take<QVector<quint16>>(chunks);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));

    ChunkStream block(bytes);
    while (block.read() != ChunkStream::EndMark)
        takeAsEverything(block);

    QDataStream source(bytes);
    ChunkStream fromStream;
    fromStream.setSource(source);
    while (fromStream.read() != ChunkStream::EndMark)
        takeAsEverything(fromStream);

    QDataStream numbers(bytes);
    while (numbers.status() == QDataStream::Ok)
        ChunkStream::readVInt(numbers);
    return 0;
}
