/// \file
/// Blocks of numbered values (docs/formats/chunk-stream.md).
#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QStringList>
#include <QVariant>
#include <keltoolkitexport.h>

#include <type_traits>
#include <utility>

/// Writes and reads a block of numbered values, format 2.
///
/// Writing: add() each value, take data(). Reading: setSource(), then read() until it returns -1, with
/// getData() for the ids that are wanted. A reader allocates nothing on a length's word alone: every
/// length and count is checked against the bytes that are there. Not thread-safe; objects are independent.
class KEL_TOOLKIT_EXPORT ChunkStream
{
public:
    /// Stream version in which payloads are written and read.
    static constexpr QDataStream::Version StreamVersion = QDataStream::Qt_4_6;
    /// What read() returns at the end.
    static constexpr int EndMark = -1;

    /// An empty block, ready for add().
    ChunkStream() = default;
    /// Reads from \a block, as setSource() does.
    explicit ChunkStream(const QByteArray &block);

    /// Appends \a value under the number \a id (not -1, which would end the reading there).
    template <typename T>
    ChunkStream &add(int id, const T &value)
    {
        QByteArray payload;
        QDataStream stream(&payload, QIODevice::WriteOnly);
        stream.setVersion(StreamVersion);
        stream << value;
        addPayload(id, payload);
        return *this;
    }

    /// The block written so far; empty before the first add().
    QByteArray data() const { return m_written; }

    /// Takes one block out of \a source, where it stands as a QByteArray: a length and that many bytes.
    /// When the source is shorter than the length says, its status becomes ReadPastEnd and there is
    /// nothing to read.
    void setSource(QDataStream &source);
    /// Reads from \a block itself.
    void setSource(const QByteArray &block);

    /// Steps to the next chunk and returns its id, or -1 when there is none: at the end of the block, and
    /// where the block is malformed. Ids above 0x7FFFFFFF come out negative.
    int read();

    /// The payload of the chunk that read() stepped to; empty before and at the end.
    QByteArray payload() const { return {m_payload.constData(), m_payload.size()}; }

    /// Reads the payload into \a value. False, with \a value as it was, when the payload is too short for
    /// it, malformed, or of a variant type that is not read back.
    template <typename T>
    bool getData(T &value) const
    {
        if (IsCounted<T>::value && !isCountPlausible())
            return false;
        return stream(value);
    }
    bool getData(QString &value) const;      ///< \overload
    bool getData(QByteArray &value) const;   ///< \overload
    bool getData(QStringList &value) const;  ///< \overload
    bool getData(QVariant &value) const;     ///< \overload
    bool getData(QVariantList &value) const; ///< \overload
    bool getData(QVariantMap &value) const;  ///< \overload
    bool getData(QVariantHash &value) const; ///< \overload

    /// Appends \a value to \a stream in one to five bytes.
    static void writeVInt(QDataStream &stream, uint value);
    /// Reads a number that writeVInt() wrote. 0, with the stream's status saying why, when the stream ends
    /// inside the number (ReadPastEnd) or its next byte begins no number (ReadCorruptData).
    static uint readVInt(QDataStream &stream);

private:
    /// Whether T is a container that streams a count first and makes room for it at once.
    template <typename T, typename = void>
    struct IsCounted : std::false_type {
    };
    template <typename T>
    struct IsCounted<T, std::void_t<typename T::value_type, decltype(std::declval<T &>().reserve(0))>>
        : std::true_type {
    };

    template <typename T>
    bool stream(T &value) const
    {
        T read{};
        QDataStream source(m_payload);
        source.setVersion(StreamVersion);
        source >> read;
        if (source.status() != QDataStream::Ok)
            return false;
        value = std::move(read);
        return true;
    }

    void addPayload(int id, const QByteArray &payload);
    bool isCountPlausible() const;

    QByteArray m_written;
    QByteArray m_source;  ///< The block that is read.
    int m_position = 0;   ///< Where the next chunk begins in m_source.
    QByteArray m_payload; ///< Looks into m_source, without a copy.
};
