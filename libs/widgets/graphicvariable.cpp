#include "graphicvariable.h"

GraphicVariable GraphicVariable::fromText(const QString &text)
{
    const int split = text.indexOf(QLatin1Char('='));
    if (split < 1)
        return {text, text};
    return {text.left(split).trimmed(), text.mid(split + 1).trimmed()};
}

QString GraphicVariable::text() const
{
    return left + QLatin1Char('=') + right;
}
