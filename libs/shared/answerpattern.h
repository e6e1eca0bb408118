/// \file
/// What a device's answer must look like, and what is read out of it.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

#include <kelwidgetsexport.h>

/// Pattern of one answer: an element for each expected byte. An element of 0 or more is the byte's
/// fixed value; a negative element e captures the byte as argument ~e (-1 argument 0, -2 argument 1).
/// Elements are not masked: a fixed value above 255 matches no byte. A value class; any thread.
class KEL_WIDGETS_EXPORT AnswerPattern
{
public:
    explicit AnswerPattern(QVector<int> elements = {});

    /// Reads \a text, tokens separated by spaces: "1F" is a fixed byte in hexadecimal, "%id" the fixed
    /// byte \a deviceID (a capture of argument 0 when that is -1), "%N" a capture of argument N. What is
    /// no number reads as 0, so every text is a pattern; there are no expressions here.
    static AnswerPattern fromText(const QString &text, int deviceID);

    const QVector<int> &elements() const { return m_elements; }

    /// Whether \a message has the pattern's length and its fixed bytes. Captured bytes (0..255) are
    /// stored in \a captures under their argument numbers as they are met, also when a later byte then
    /// differs; other entries of \a captures stay. An empty pattern matches an empty message.
    bool match(const QByteArray &message, QMap<int, int> &captures) const;

private:
    QVector<int> m_elements;
};

/// AnswerPattern::match for as many elements at \a elements as \a message has bytes.
inline bool matchAnswer(const int *elements, const QByteArray &message, QMap<int, int> &captures)
{
    const char *bytes = message.constData();
    for (int i = 0; i < message.size(); ++i) {
        const int byte = static_cast<unsigned char>(bytes[i]);
        if (elements[i] < 0)
            captures.insert(~elements[i], byte);
        else if (elements[i] != byte)
            return false;
    }
    return true;
}
