#include "graphicaxis.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int MostDecimals = 15;
constexpr int MostDigits = 8; ///< Before or behind the point; labels with more get a power of ten.
constexpr int ReadDigits = 4; ///< Digits that a reader of a whole picture can tell apart.
constexpr double Minute = 60.0;
constexpr double Day = 86400.0;
constexpr double Milliseconds = 1000.0;

/// The time \a seconds after 1970-01-01 UTC; what no calendar holds becomes its end.
QDateTime localTime(double seconds)
{
    constexpr double MostMilliseconds = 8e15;
    const double milliseconds = std::clamp(seconds * Milliseconds, -MostMilliseconds, MostMilliseconds);
    return QDateTime::fromMSecsSinceEpoch(std::llround(milliseconds));
}

int digitsBefore(double largest)
{
    return largest < 1.0 ? 0 : static_cast<int>(std::floor(std::log10(largest))) + 1;
}

} // namespace

int labelDecimals(double step, int precisionStep)
{
    int decimals = 0;
    double scaled = std::abs(step);
    // Marks are sums of steps and carry their rounding.
    while (decimals < MostDecimals && std::abs(scaled - std::round(scaled)) > 1e-6 * std::max(1.0, scaled)) {
        scaled *= 10.0;
        ++decimals;
    }
    while (decimals < MostDecimals && scaled < 0.5 && step != 0.0) {
        scaled *= 10.0;
        ++decimals;
    }
    if (precisionStep > 0)
        decimals = (decimals + precisionStep - 1) / precisionStep * precisionStep;
    return std::min(decimals, MostDecimals);
}

QString numberLabel(double value, double step, double largest, int precisionStep)
{
    if (std::abs(value) < step * 1e-6)
        value = 0.0;
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const int decimals = labelDecimals(step, precisionStep);
    if (digitsBefore(largest) > MostDigits || (largest > 0.0 && largest < std::pow(10.0, -MostDigits / 2))) {
        const double power = std::pow(10.0, std::floor(std::log10(largest)));
        return locale.toString(value, 'e', labelDecimals(step / power, precisionStep));
    }
    QString text = locale.toString(value, 'f', decimals);
    if (precisionStep <= 0 && decimals > 0) {
        while (text.endsWith(locale.zeroDigit()))
            text.chop(1);
        if (text.endsWith(locale.decimalPoint()))
            text.chop(1);
    }
    return text;
}

QString timeLabel(double seconds, double step)
{
    const char *format = step >= Day      ? "yyyy-MM-dd"
                         : step >= Minute ? "hh:mm"
                         : step >= 1.0    ? "hh:mm:ss"
                                          : "hh:mm:ss.zzz";
    return localTime(seconds).toString(QLatin1String(format));
}

QString readValue(double value, const GraphicRange &range, bool isTime)
{
    if (isTime) {
        const bool isFine = range.width() < Minute;
        return timeLabel(value, Day) + QLatin1Char(' ') + timeLabel(value, isFine ? 0.1 : 1.0);
    }
    const double largest = std::max({std::abs(range.from), std::abs(range.to), std::abs(value)});
    const double step = std::pow(10.0, std::floor(std::log10(range.width())) + 1 - ReadDigits);
    return numberLabel(value, step, largest, 0);
}

double writtenValue(const QString &text, bool isTime)
{
    const QString trimmed = text.trimmed();
    if (isTime) {
        for (const char *format :
             {"yyyy-MM-dd hh:mm:ss.zzz", "yyyy-MM-dd hh:mm:ss", "yyyy-MM-dd hh:mm", "yyyy-MM-dd"}) {
            const QDateTime time = QDateTime::fromString(trimmed, QLatin1String(format));
            if (time.isValid())
                return static_cast<double>(time.toMSecsSinceEpoch()) / Milliseconds;
        }
    }
    bool isNumber = false;
    double value = QLocale().toDouble(trimmed, &isNumber);
    if (!isNumber)
        value = trimmed.toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? value : std::nan("");
}

bool isMidnight(double seconds)
{
    return localTime(seconds).time().msecsSinceStartOfDay() == 0;
}
