#include "printable.h"

QString printable(const QString &text)
{
    QString plain;
    for (const QChar c : text) {
        if (c.isPrint() || c.isSurrogate())
            plain += c;
        else
            plain += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return plain;
}
