#include "variabletext.h"

#include <QStringList>

#include <limits>

namespace
{

const QLatin1String Unlimited("inf");

double millisecondsPer(QChar unit)
{
    constexpr double Second = 1000.0;
    constexpr double Hour = 3600.0 * Second;
    constexpr double Day = 24.0 * Hour;
    constexpr double Month = 30.0 * Day;
    switch (unit.unicode()) {
    case 's':
        return Second;
    case 'm':
        return 60.0 * Second;
    case 'h':
        return Hour;
    case 'd':
        return Day;
    case 'M':
        return Month;
    case 'y':
        return 12.0 * Month;
    default:
        return 1.0;
    }
}

quint64 saturated(double value)
{
    constexpr double Limit = 18446744073709551616.0; // 2 to the 64th, the first value that does not fit
    if (!(value > 0.0))
        return 0;
    return value < Limit ? static_cast<quint64>(value) : std::numeric_limits<quint64>::max();
}

} // namespace

QPair<QString, QString> splitVar(const QString &text)
{
    const int open = text.indexOf(QLatin1Char('{'));
    const int close = text.lastIndexOf(QLatin1Char('}'));
    if (open < 0 || close < open)
        return {text, Unlimited};

    const QString duration = text.mid(open + 1, close - open - 1);
    return {text.left(open), duration.isEmpty() ? QString(Unlimited) : duration};
}

QString joinVar(const QString &name, const QString &duration)
{
    return name + QLatin1Char('{') + duration + QLatin1Char('}');
}

quint64 varDur(const QString &duration)
{
    if (duration == Unlimited)
        return 0;
    const QStringList words = duration.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.size() != 2)
        return 1;
    return saturated(words.at(0).toDouble() * millisecondsPer(words.at(1).at(0)));
}
