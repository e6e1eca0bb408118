/// \file
/// All answers of a device, side by side.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QVector>

#include <kelwidgetsexport.h>

#include <vector>

/// Finds the answer that a message is. The patterns lie one after the other in memory, in ascending order
/// of their numbers, and are walked from the first to the last: messages are rare, and a walk over a
/// thousand patterns takes some microseconds.
class KEL_WIDGETS_EXPORT AnswerTable
{
public:
    AnswerTable() = default;
    explicit AnswerTable(const QMap<int, QVector<int>> &answers); ///< Elements of an AnswerPattern by number.

    /// Whether the table was made of \a answers, which have not been touched since.
    bool isOf(const QMap<int, QVector<int>> &answers) const { return m_answers.isSharedWith(answers); }

    /// The first answer that \a message is, into \a answerID; false when it is none. What patterns capture is
    /// added to \a captures as AnswerPattern::match does, also by patterns that fail at a later byte.
    bool find(const QByteArray &message, int &answerID, QMap<int, int> &captures) const;

private:
    struct Entry {
        int answerID;
        int size;
    };

    QMap<int, QVector<int>> m_answers; ///< Shares its data with its source until that is changed.
    std::vector<Entry> m_entries;
    std::vector<int> m_elements; ///< Of all entries.
};
