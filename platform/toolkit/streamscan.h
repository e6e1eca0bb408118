/// \file
/// A look at streamed values before they are made. Not installed.
#pragma once

#include <QByteArray>

/// Walks over values that a QDataStream of version 12 wrote, without making them, and says whether they
/// can be read without harm: every length and count covered by bytes that are there, lists not nested too
/// deep, only types that are known here, and no more memory in use afterwards than the bytes are worth.
///
/// Each function steps over one value and returns false when it must not be read. A refusal is final.
class StreamScan
{
public:
    /// Looks at \a bytes, which must outlive the scan.
    explicit StreamScan(const QByteArray &bytes);

    bool text();
    bool bytes();
    bool texts(); ///< A list of texts.
    bool byteArrays();
    bool variant();
    bool variants();      ///< A list of variants.
    bool namedVariants(); ///< A map or hash from text to variant.

    /// Whether the values stepped over take no more memory than is reasonable for their bytes.
    bool isAffordable() const { return m_cost <= m_allowance; }

private:
    qint64 left() const { return m_end - m_at; }
    bool skip(qint64 count);
    bool number(quint32 &value);
    bool block(quint32 unitSize);
    template <typename Element>
    bool list(qint64 smallestElement, qint64 elementCost, Element element);
    bool count(quint32 &value, qint64 smallestElement, qint64 elementCost);
    bool bits();
    bool dateTime();
    bool color();
    bool ownType();
    bool content(quint32 type);

    const uchar *m_at;
    const uchar *m_end;
    qint64 m_cost = 0; ///< Estimate, in bytes, of the memory that the values will take.
    qint64 m_allowance;
    int m_depth = 0;
};
