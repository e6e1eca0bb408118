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
    if (message.size() != m_elements.size())
        return false;
    for (int i = 0; i < message.size(); ++i) {
        const int byte = static_cast<unsigned char>(message.at(i));
        const int element = m_elements.at(i);
        if (element < 0)
            captures.insert(~element, byte);
        else if (element != byte)
            return false;
    }
    return true;
}
