#include "names.h"

#include <algorithm>

namespace
{

bool startsIdentifier(QChar c)
{
    return c.isLetter() || c == QLatin1Char('_');
}

bool continuesIdentifier(QChar c)
{
    return startsIdentifier(c) || c.category() == QChar::Number_DecimalDigit;
}

} // namespace

QString toCName(QString text)
{
    text = text.trimmed();
    for (QChar &c : text) {
        if (QStringLiteral(":,. \t").contains(c))
            c = QLatin1Char('_');
    }
    if (!text.isEmpty() && !startsIdentifier(text.at(0)))
        text.prepend(QLatin1Char('_'));
    return text;
}

bool isCName(QString text)
{
    text = text.trimmed();
    return !text.isEmpty() && startsIdentifier(text.at(0)) &&
           std::all_of(text.cbegin() + 1, text.cend(), continuesIdentifier);
}
