#include "commandtext.h"

#include "tokens.h"

CommandText CommandText::fromText(const QString &text)
{
    CommandText command;
    for (const QString &token : spaceSeparatedTokens(text))
        command.m_tokens.append(tokenFromText(token));
    return command;
}

CommandText::Token CommandText::tokenFromText(const QString &text)
{
    if (!text.startsWith(QLatin1Char('%')))
        return {Kind::Fixed, text.toInt(nullptr, 16), {}};
    if (text == QLatin1String("%id"))
        return {Kind::DeviceId, 0, {}};
    const QString rest = text.mid(1);
    if (rest.startsWith(QLatin1Char('(')))
        return {Kind::Expression, 0, rest};
    return {Kind::Argument, rest.toInt(), {}};
}
