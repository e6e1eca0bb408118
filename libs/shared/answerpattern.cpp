#include "answerpattern.h"

#include "tokens.h"

#include <utility>

namespace
{

int elementFromToken(const QString &token, int deviceID)
{
    if (!token.startsWith(QLatin1Char('%')))
        return token.toInt(nullptr, 16);
    if (token == QLatin1String("%id"))
        return deviceID;
    return ~token.mid(1).toInt();
}

} // namespace

AnswerPattern::AnswerPattern(QVector<int> elements)
    : m_elements(std::move(elements))
{
}

AnswerPattern AnswerPattern::fromText(const QString &text, int deviceID)
{
    const QStringList tokens = spaceSeparatedTokens(text);
    QVector<int> elements;
    elements.reserve(tokens.size());
    for (const QString &token : tokens)
        elements.append(elementFromToken(token, deviceID));
    return AnswerPattern(elements);
}

bool AnswerPattern::match(const QByteArray &message, QMap<int, int> &captures) const
{
    return message.size() == m_elements.size() && matchAnswer(m_elements.constData(), message, captures);
}
