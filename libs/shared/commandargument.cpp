#include "commandargument.h"

#include "argumenttype.h"
#include "quotedtext.h"

using Kv_Designer::CommandArgument;

namespace
{

/// Cuts the first pair of \a open and \a close out of \a token and returns what stood between them,
/// trimmed. Leaves the token alone when there is no such pair.
QString takeBracketed(QString &token, QLatin1Char open, QLatin1Char close)
{
    const int first = token.indexOf(open);
    const int last = first < 0 ? -1 : token.indexOf(close, first + 1);
    if (last < 0)
        return QString();

    const QString inside = token.mid(first + 1, last - first - 1).trimmed();
    token.remove(first, last - first + 1);
    return inside;
}

void readReference(CommandArgument &argument, QString token)
{
    token.remove(0, 1);
    argument.name = takeBracketed(token, QLatin1Char('['), QLatin1Char(']'));
    argument.any = token == QLatin1String(".");
    if (!argument.any)
        argument.value = ~token.toInt();
}

} // namespace

CommandArgument getArgument(QString token)
{
    CommandArgument argument;
    if (token == QLatin1String(".")) {
        argument.any = true;
        return argument;
    }

    const QString word = takeBracketed(token, QLatin1Char('('), QLatin1Char(')'));
    const Kv_Designer::TypePart type = Kv_Designer::readTypePart(word);
    argument.type = static_cast<qint32>(type.type);
    argument.size = type.size;
    argument.swapBytes = type.swapBytes;

    if (token.startsWith(QLatin1Char('%')))
        readReference(argument, token);
    else
        argument.value = token.toInt(nullptr, 16);
    return argument;
}

QVector<CommandArgument> parseArgument(QString token)
{
    const CommandArgument argument = getArgument(std::move(token));
    QVector<CommandArgument> entries(argument.size, argument);
    for (int i = 0; i < entries.size(); ++i)
        entries[i].byteIndex = i;
    return entries;
}

QVector<CommandArgument> packetArgumentsFromText(QString text)
{
    QVector<CommandArgument> entries;
    const QStringList tokens = replaceStringToHex(std::move(text)).split(QLatin1Char(' '));
    for (const QString &token : tokens) {
        if (!token.isEmpty() && token != QLatin1String("\t"))
            entries += parseArgument(token);
    }
    return entries;
}

QString replaceStringToHex(QString text)
{
    return Kv_Designer::expandQuotedText(text).text;
}
