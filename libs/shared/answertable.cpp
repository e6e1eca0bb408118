#include "answertable.h"

#include "answerpattern.h"

AnswerTable::AnswerTable(const QMap<int, QVector<int>> &answers)
    : m_answers(answers)
{
    m_entries.reserve(static_cast<std::size_t>(answers.size()));
    for (auto answer = m_answers.cbegin(); answer != m_answers.cend(); ++answer) {
        m_entries.push_back({answer.key(), answer->size()});
        m_elements.insert(m_elements.end(), answer->cbegin(), answer->cend());
    }
}

bool AnswerTable::find(const QByteArray &message, int &answerID, QMap<int, int> &captures) const
{
    const int *elements = m_elements.data();
    for (const Entry &entry : m_entries) {
        if (entry.size == message.size() && matchAnswer(elements, message, captures)) {
            answerID = entry.answerID;
            return true;
        }
        elements += entry.size;
    }
    return false;
}
