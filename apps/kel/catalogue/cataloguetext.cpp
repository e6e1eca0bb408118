#include "catalogue/cataloguetext.h"

#include "printable.h"

#include <commandargument.h>
#include <commandtextfault.h>
#include <templatefault.h>

#include <QStringList>

namespace
{

constexpr int MaxArgument = 9999;
const QLatin1String DeviceId("%id");

QString quoted(const QString &token)
{
    return QLatin1Char('"') + printable(token.left(40)) + QLatin1Char('"');
}

QStringList tokensOf(const QString &text)
{
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// What is wrong with the digits of \a token, a byte in hexadecimal.
QString byteFault(const QString &token)
{
    bool isDigits = true;
    for (const QChar c : token)
        isDigits = isDigits && c.unicode() < 0x80 && QString(c).toUInt(&isDigits, 16) < 16 && isDigits;
    if (!isDigits)
        return QStringLiteral("%1 is not a byte in hexadecimal").arg(quoted(token));
    bool isNumber = false;
    if (token.toUInt(&isNumber, 16) > 0xFF || !isNumber)
        return QStringLiteral("%1 is above FF, the largest byte").arg(quoted(token));
    return QString();
}

QString argumentFault(const QString &token)
{
    bool isNumber = false;
    const uint number = token.midRef(1).toUInt(&isNumber, 10);
    if (!isNumber || !token.at(1).isDigit())
        return QStringLiteral("%1 is neither %id nor the number of an argument").arg(quoted(token));
    if (number > uint(MaxArgument))
        return QStringLiteral("%1: the number is above %2").arg(quoted(token)).arg(MaxArgument);
    return QString();
}

/// What is wrong with the first expression of \a text that gives no byte, whatever its arguments are.
QString expressionFault(const QString &text)
{
    const QVector<TextFault> faults = findCommandFaults(text);
    for (const TextFault &fault : faults) {
        if (fault.kind == TextFault::Kind::BadExpression)
            return quoted(fault.word) + QLatin1Char(' ') + printable(fault.reason);
    }
    return QString();
}

/// What is wrong with \a token, which is no expression of a command.
QString tokenFault(const QString &token)
{
    if (!token.startsWith(QLatin1Char('%')))
        return byteFault(token);
    if (token == DeviceId)
        return QString();
    if (token.startsWith(QLatin1String("%(")))
        return QStringLiteral("%1: an answer has no expressions").arg(quoted(token));
    return token.size() < 2 ? QStringLiteral("\"%\" has no number") : argumentFault(token);
}

QString textFault(const QString &text, bool hasExpressions)
{
    const QStringList tokens = tokensOf(text);
    for (const QString &token : tokens) {
        const bool isExpression = hasExpressions && token.startsWith(QLatin1String("%("));
        const QString fault = isExpression ? expressionFault(text) : tokenFault(token);
        if (!fault.isEmpty())
            return fault;
    }
    return QString();
}

} // namespace

QString commandTextFault(const QString &text)
{
    return textFault(text, true);
}

QString answerTextFault(const QString &text)
{
    return textFault(text, false);
}

QString templateFault(const QString &text)
{
    const auto fault = Kv_Designer::findTemplateFault(text);
    if (fault)
        return QStringLiteral("%1: %2").arg(quoted(fault->token), printable(fault->reason));
    for (const Kv_Designer::CommandArgument &argument : packetArgumentsFromText(text)) {
        if (argument.size == 1 && argument.value > 0xFF)
            return QStringLiteral("%1 is above FF, the largest byte")
                .arg(QString::number(argument.value, 16).toUpper());
    }
    return QString();
}

bool usesDeviceId(const QString &text)
{
    return tokensOf(text).contains(DeviceId);
}
