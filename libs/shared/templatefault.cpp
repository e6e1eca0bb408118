#include "templatefault.h"

#include "argumenttype.h"
#include "argumentvalue.h"
#include "quotedtext.h"

namespace Kv_Designer
{
namespace
{

QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

/// Cuts the pair of brackets out of \a token; the reason when there is half a pair or more than one.
QString cutBrackets(QString &token, const QString &pair, QString *inside)
{
    const int open = token.indexOf(pair.at(0));
    const int close = open < 0 ? -1 : token.indexOf(pair.at(1), open + 1);
    if (close >= 0) {
        *inside = token.mid(open + 1, close - open - 1);
        token.remove(open, close - open + 1);
    }
    if (inside->contains(pair.at(0)) || token.contains(pair.at(0)))
        return close < 0 ? QStringLiteral("\"%1\" has no \"%2\"").arg(pair.at(0)).arg(pair.at(1))
                         : QStringLiteral("it has more than one \"%1\"").arg(pair.at(0));
    if (token.contains(pair.at(1)))
        return QStringLiteral("\"%1\" has no \"%2\" before it").arg(pair.at(1)).arg(pair.at(0));
    return QString();
}

QString faultOfReference(QString token)
{
    token.remove(0, 1);
    QString name;
    const QString fault = cutBrackets(token, QStringLiteral("[]"), &name);
    if (!fault.isEmpty())
        return fault;
    if (token.isEmpty() || token == QLatin1String("."))
        return QString();

    bool isNumber = false;
    const int reference = token.toInt(&isNumber);
    if (!isNumber || reference < 0)
        return QStringLiteral("%1 is not the number of a value").arg(quoted(token));
    if (reference > MaxReference)
        return QStringLiteral("the number %1 is above %2").arg(token).arg(MaxReference);
    return QString();
}

QString faultOfConstant(const QString &token)
{
    bool isNumber = false;
    const int constant = token.toInt(&isNumber, 16);
    if (isNumber && constant >= 0)
        return QString();
    if (token == QLatin1String("."))
        return QStringLiteral("a wildcard with a type is written with \"%\" in front");
    if (token.isEmpty())
        return QStringLiteral("the number is missing");
    return QStringLiteral("%1 is not a hexadecimal number from 0 to 7FFFFFFF").arg(quoted(token));
}

/// What is wrong with \a token, or nothing.
QString faultOf(QString token)
{
    if (token == QLatin1String("."))
        return QString();

    QString word;
    const QString fault = cutBrackets(token, QStringLiteral("()"), &word);
    if (!fault.isEmpty())
        return fault;
    if (!readTypePart(word).isKnown)
        return QStringLiteral("the type %1 is unknown").arg(quoted(word.trimmed()));
    return token.startsWith(QLatin1Char('%')) ? faultOfReference(token) : faultOfConstant(token);
}

} // namespace

std::optional<TemplateFault> findTemplateFault(const QString &text)
{
    const ExpandedText expanded = expandQuotedText(text);
    int begin = 0;
    const QStringList tokens = expanded.text.split(QLatin1Char(' '));
    for (const QString &token : tokens) {
        const bool isToken = !token.isEmpty() && token != QLatin1String("\t");
        const QString reason = isToken ? faultOf(token) : QString();
        if (!reason.isEmpty())
            return TemplateFault{expanded.origins.at(begin), token, reason};
        begin += token.size() + 1;
    }
    if (expanded.unterminatedAt >= 0)
        return TemplateFault{expanded.unterminatedAt, text.mid(expanded.unterminatedAt),
                             QStringLiteral("the string is not closed")};
    return std::nullopt;
}

} // namespace Kv_Designer
