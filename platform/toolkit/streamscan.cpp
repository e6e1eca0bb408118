#include "streamscan.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace
{

constexpr int MaxDepth = 64;

// What the containers take beside the plain data; measured generously on 64-bit systems.
constexpr qint64 BlockCost = 48;    ///< A heap block: allocator's share, container's header, rounding.
constexpr qint64 PointerCost = 8;   ///< A text in a list.
constexpr qint64 ListNodeCost = 40; ///< A variant in a list.
constexpr qint64 MapNodeCost = 96;  ///< A text and a variant in a map or hash.

constexpr qint64 AllowanceFactor = 2;
constexpr qint64 AllowanceBase = 384LL * 1024;

// A text takes at least its length; a variant its type, a null mark and one more byte (a map's key comes
// on top).
constexpr qint64 SmallestText = 4;
constexpr qint64 SmallestVariant = 5;
constexpr qint64 SmallestEntry = SmallestText + SmallestVariant;

// Numbers of the types in stream version 12.
enum WireType : quint32 {
    WireInvalid = 0,
    WireMap = 8,
    WireList = 9,
    WireText = 10,
    WireTexts = 11,
    WireBytes = 12,
    WireBits = 13,
    WireDateTime = 16,
    WireUrl = 17,
    WireLocale = 18,
    WireHash = 28,
    WireColor = 67,
    WireOwn = 127,
    WireVariant = 138,
    WireByteArrays = 146,
};

struct PlainType {
    quint32 type;
    int size;
};

// Types whose bytes are counted beforehand. A float is stored as a double in this version.
constexpr std::array<PlainType, 26> PlainTypes = {{
    {1, 1},   // bool
    {2, 4},   // int
    {3, 4},   // uint
    {4, 8},   // qlonglong
    {5, 8},   // qulonglong
    {6, 8},   // double
    {7, 2},   // QChar
    {14, 4},  // QDate
    {15, 4},  // QTime
    {19, 16}, // QRect
    {20, 32}, // QRectF
    {21, 8},  // QSize
    {22, 16}, // QSizeF
    {23, 16}, // QLine
    {24, 32}, // QLineF
    {25, 8},  // QPoint
    {26, 16}, // QPointF
    {129, 8}, // long
    {130, 2}, // short
    {131, 1}, // char
    {132, 8}, // ulong
    {133, 2}, // ushort
    {134, 1}, // uchar
    {135, 8}, // float
    {137, 1}, // signed char
    {148, 0}, // null pointer
}};

// Length of a text or byte array that is null, which has no bytes.
constexpr quint32 NullMark = 0xFFFFFFFF;

constexpr int NullFlagSize = 1;
constexpr int DateTimeSize = 9;
constexpr int LastTimeKind = 4;
constexpr int ColorSize = 11;
constexpr int LastColorModel = 5;
constexpr int UuidSize = 16;

// Length and text, with the zero byte at the end.
constexpr char UuidName[] = {0, 0, 0, 6, 'Q', 'U', 'u', 'i', 'd', 0};

} // namespace

StreamScan::StreamScan(const QByteArray &bytes)
    : m_at(reinterpret_cast<const uchar *>(bytes.constData()))
    , m_end(m_at + bytes.size())
    , m_allowance(AllowanceFactor * bytes.size() + AllowanceBase)
{
}

bool StreamScan::text()
{
    return block(sizeof(QChar));
}

bool StreamScan::bytes()
{
    return block(1);
}

/// A length, then whole units of \a unitSize bytes.
bool StreamScan::block(quint32 unitSize)
{
    quint32 size = 0;
    if (!number(size))
        return false;
    if (size == NullMark || size == 0)
        return true;
    m_cost += BlockCost + size;
    return size % unitSize == 0 && skip(size);
}

bool StreamScan::texts()
{
    return list(SmallestText, PointerCost, [this] { return text(); });
}

bool StreamScan::byteArrays()
{
    return list(SmallestText, PointerCost, [this] { return bytes(); });
}

bool StreamScan::variant()
{
    quint32 type = 0;
    if (m_depth >= MaxDepth || !number(type) || !skip(NullFlagSize))
        return false;
    ++m_depth;
    const bool isGood = content(type);
    --m_depth;
    return isGood;
}

bool StreamScan::variants()
{
    return list(SmallestVariant, ListNodeCost, [this] { return variant(); });
}

bool StreamScan::namedVariants()
{
    return list(SmallestEntry, MapNodeCost, [this] { return text() && variant(); });
}

/// A count, then as many elements; \a element steps over one.
template <typename Element>
bool StreamScan::list(qint64 smallestElement, qint64 elementCost, Element element)
{
    quint32 size = 0;
    if (!count(size, smallestElement, elementCost))
        return false;
    for (quint32 i = 0; i < size; ++i) {
        if (!element())
            return false;
    }
    return true;
}

bool StreamScan::skip(qint64 count)
{
    if (count > left())
        return false;
    m_at += count;
    return true;
}

bool StreamScan::number(quint32 &value)
{
    const uchar *from = m_at;
    if (!skip(sizeof(value)))
        return false;
    value = qFromBigEndian<quint32>(from);
    return true;
}

/// Reads how many elements follow and adds what they cost beside their content.
bool StreamScan::count(quint32 &value, qint64 smallestElement, qint64 elementCost)
{
    if (!number(value) || value > left() / smallestElement)
        return false;
    if (value > 0)
        m_cost += BlockCost + value * elementCost;
    return true;
}

bool StreamScan::bits()
{
    quint32 size = 0;
    if (!number(size))
        return false;
    const qint64 byteCount = (qint64(size) + 7) / 8;
    m_cost += BlockCost + byteCount;
    return skip(byteCount);
}

/// Date and time, then one byte for the kind of time; other numbers than these are no kind.
bool StreamScan::dateTime()
{
    const uchar *from = m_at;
    if (!skip(DateTimeSize))
        return false;
    const auto kind = static_cast<qint8>(from[DateTimeSize - 1]);
    return kind >= -1 && kind <= LastTimeKind;
}

/// One byte for the colour model, then its numbers.
bool StreamScan::color()
{
    const uchar *model = m_at;
    return skip(ColorSize) && *model <= LastColorModel;
}

/// A type that the stream knows by its name only. Of these only the one that Qt itself brings is read: any
/// other would hand the bytes to code of the host.
bool StreamScan::ownType()
{
    const uchar *from = m_at;
    return skip(sizeof(UuidName)) && std::memcmp(from, UuidName, sizeof(UuidName)) == 0 && skip(UuidSize);
}

bool StreamScan::content(quint32 type)
{
    m_cost += BlockCost;
    switch (type) {
    case WireInvalid:
    case WireText:
    case WireLocale:
        return text();
    case WireMap:
    case WireHash:
        return namedVariants();
    case WireList:
        return variants();
    case WireTexts:
        return texts();
    case WireBytes:
    case WireUrl:
        return bytes();
    case WireBits:
        return bits();
    case WireDateTime:
        return dateTime();
    case WireColor:
        return color();
    case WireOwn:
        return ownType();
    case WireVariant:
        return variant();
    case WireByteArrays:
        return byteArrays();
    default:
        break;
    }
    const auto plain = std::find_if(PlainTypes.cbegin(), PlainTypes.cend(),
                                    [type](const PlainType &known) { return known.type == type; });
    return plain != PlainTypes.cend() && skip(plain->size);
}
