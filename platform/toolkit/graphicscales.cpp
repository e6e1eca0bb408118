#include "graphicscales.h"

#include <QPainter>
#include <qwt_date_scale_engine.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_engine.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double Minute = 60.0;
constexpr double Day = 86400.0;
constexpr double Milliseconds = 1000.0;
constexpr double MostSeconds = 1e11;
constexpr int MostTries = 4; ///< To find a mark.

QList<double> marksOf(const QwtScaleDiv &division)
{
    return division.ticks(QwtScaleDiv::MajorTick);
}

/// The distance between the labelled marks.
double stepOf(const QwtScaleDiv &division)
{
    const QList<double> marks = marksOf(division);
    return marks.size() > 1 ? std::abs(marks.at(1) - marks.at(0)) : std::abs(division.range());
}

double largestOf(const QwtScaleDiv &division)
{
    return std::max(std::abs(division.lowerBound()), std::abs(division.upperBound()));
}

/// The longest of a day, a minute and a second that a time is a whole number of; less for what lies between seconds.
/// It is the step whose labels say all of that time.
double roundness(double seconds)
{
    if (isMidnight(seconds))
        return Day;
    return std::fmod(seconds, Minute) == 0.0 ? Minute : seconds == std::floor(seconds) ? 1.0 : 0.1;
}

class NumberDraw : public QwtScaleDraw
{
public:
    explicit NumberDraw(int precisionStep)
        : m_precisionStep(precisionStep)
    {
    }

    QwtText label(double value) const override
    {
        return numberLabel(value, stepOf(scaleDiv()), largestOf(scaleDiv()), m_precisionStep);
    }

private:
    const int m_precisionStep;
};

class TimeDraw : public QwtScaleDraw
{
public:
    /// The first label says which day it is, and so does every midnight.
    QwtText label(double value) const override
    {
        const QList<double> marks = marksOf(scaleDiv());
        const double step = marks.size() > 1 ? stepOf(scaleDiv()) : roundness(value);
        const QString text = timeLabel(value, step);
        const bool isFirst = !marks.isEmpty() && value == *std::min_element(marks.begin(), marks.end());
        if (step >= Day)
            return text;
        return isFirst || isMidnight(value) ? text + QLatin1Char('\n') + timeLabel(value, Day) : text;
    }

protected:
    /// The library would put the lines of a label at their left; each belongs below its mark.
    void drawLabel(QPainter *painter, double value) const override
    {
        QwtText text = tickLabel(painter->font(), value);
        text.setRenderFlags(Qt::AlignHCenter | Qt::AlignTop);
        const QSizeF size = text.textSize(painter->font());
        painter->save();
        painter->setWorldTransform(labelTransformation(labelPosition(value), size), true);
        text.draw(painter, QRectF(QPointF(0.0, 0.0), size));
        painter->restore();
    }
};

/// Marks at round numbers. An axis that has room for one label only has one.
class NumberEngine : public QwtLinearScaleEngine
{
public:
    QwtScaleDiv divideScale(double from, double to, int maxMajor, int maxMinor, double step) const final
    {
        QwtScaleDiv division = divide(from, to, maxMajor, maxMinor, step);
        // Marks may be so far from each other that the range lies between two: of closer ones, a single one stays.
        for (int count = maxMajor + 1; marksOf(division).isEmpty() && count <= maxMajor + MostTries; ++count) {
            division = divide(from, to, count, maxMinor, step);
            const QList<double> marks = marksOf(division);
            if (!marks.isEmpty())
                division.setTicks(QwtScaleDiv::MajorTick, {marks.at(marks.size() / 2)});
        }
        return division;
    }

protected:
    virtual QwtScaleDiv divide(double from, double to, int maxMajor, int maxMinor, double step) const
    {
        return QwtLinearScaleEngine::divideScale(from, to, maxMajor, maxMinor, step);
    }
};

/// Marks at whole seconds, minutes, hours, days …
class TimeEngine : public NumberEngine
{
protected:
    QwtScaleDiv divide(double from, double to, int maxMajor, int maxMinor, double step) const override
    {
        // No calendar helps below a second and above some thousand years.
        if (!(to - from >= 1.0) || !(std::max(std::abs(from), std::abs(to)) < MostSeconds))
            return NumberEngine::divide(from, to, maxMajor, maxMinor, step);
        // The library's own engine counts in milliseconds.
        const QwtDateScaleEngine engine(Qt::LocalTime);
        const QwtScaleDiv division =
            engine.divideScale(from * Milliseconds, to * Milliseconds, maxMajor, maxMinor, 0.0);
        QList<double> marks[QwtScaleDiv::NTickTypes];
        for (int type = 0; type < QwtScaleDiv::NTickTypes; ++type) {
            const QList<double> all = division.ticks(type);
            for (const double mark : all)
                marks[type].append(mark / Milliseconds);
        }
        return QwtScaleDiv(from, to, marks);
    }
};

} // namespace

QwtScaleDraw *newScaleDraw(const GraphicLabels &labels)
{
    QwtScaleDraw *draw =
        labels.isTime ? static_cast<QwtScaleDraw *>(new TimeDraw) : new NumberDraw(labels.precisionStep);
    draw->enableComponent(QwtAbstractScaleDraw::Backbone, false);
    return draw;
}

QwtScaleEngine *newScaleEngine(bool isTime)
{
    return isTime ? new TimeEngine : new NumberEngine;
}
