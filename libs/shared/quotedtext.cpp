#include "quotedtext.h"

namespace Kv_Designer
{
namespace
{

/// The code that a character after a backslash stands for.
ushort escapedCode(QChar c)
{
    switch (c.unicode()) {
    case '0':
        return 0x00;
    case 'n':
        return 0x0A;
    case 'r':
        return 0x0D;
    case 't':
        return 0x09;
    default:
        return c.unicode();
    }
}

/// One byte is all that a template can send of a character.
QString byteToken(ushort code)
{
    const ushort byte = code < 256 ? code : ushort(0);
    return QString::number(byte, 16).rightJustified(2, QLatin1Char('0')) + QLatin1Char(' ');
}

void append(ExpandedText &to, const QString &text, int origin)
{
    to.text += text;
    to.origins.insert(to.origins.size(), text.size(), origin);
}

void append(ExpandedText &to, const ExpandedText &more)
{
    to.text += more.text;
    to.origins += more.origins;
}

} // namespace

ExpandedText expandQuotedText(const QString &text)
{
    ExpandedText result;
    ExpandedText pending;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const bool isQuote = c == QLatin1Char('"');
        const bool isInside = result.unterminatedAt >= 0;
        if (!isInside && isQuote) {
            result.unterminatedAt = i;
            pending = ExpandedText();
            append(pending, QStringLiteral(" "), i);
        } else if (!isInside) {
            append(result, QString(c), i);
        } else if (isQuote) {
            append(result, pending);
            result.unterminatedAt = -1;
        } else if (c != QLatin1Char('\\')) {
            append(pending, byteToken(c.unicode()), i);
        } else if (++i < text.size()) {
            append(pending, byteToken(escapedCode(text.at(i))), i - 1);
        }
    }
    return result;
}

} // namespace Kv_Designer
