#include "plotaxis.h"

#include "graphicscales.h"

#include <QFontMetricsF>
#include <QPainter>
#include <qwt_scale_draw.h>
#include <qwt_scale_engine.h>
#include <qwt_scale_map.h>

#include <algorithm>

namespace
{

constexpr int MinorMarks = 2;    ///< Parts of the space between two labels.
constexpr int MostLines = 2;     ///< Of a label along x: the first time says the day too.
constexpr double TitleGap = 2.0; ///< Between labels and title, in pixels.

const QString &usualLabel(const GraphicLabels &labels)
{
    static const QString time = QStringLiteral("00:00:00");
    static const QString number = QStringLiteral("0000");
    return labels.isTime ? time : number;
}

} // namespace

PlotAxis::PlotAxis(Graphic::Axis side)
    : m_side(side)
{
    setLabels({}, QString());
}

PlotAxis::~PlotAxis() = default;

void PlotAxis::setFont(const QFont &font)
{
    m_font = font;
    reserve();
}

void PlotAxis::setLabels(const GraphicLabels &labels, const QString &title)
{
    m_labels = labels;
    m_title = title;
    m_draw.reset(newScaleDraw(labels));
    m_draw->setAlignment(isAlongX() ? QwtScaleDraw::BottomScale : QwtScaleDraw::LeftScale);
    m_engine.reset(newScaleEngine(labels.isTime));
    divide();
    reserve();
}

void PlotAxis::setRange(const GraphicRange &range)
{
    if (range == m_range)
        return;
    m_range = range;
    divide();
}

bool PlotAxis::setMarksCount(int most)
{
    if (most == m_mostMarks)
        return false;
    m_mostMarks = most;
    divide();
    return true;
}

void PlotAxis::divide()
{
    m_isChanged = true;
    m_draw->setScaleDiv(m_engine->divideScale(m_range.from, m_range.to, m_mostMarks, MinorMarks, 0.0));
}

/// Keeps room for usual labels, so that the canvas stays where it is while others come and go.
void PlotAxis::reserve()
{
    m_isChanged = true;
    m_draw->setMinimumExtent(isAlongX() ? 0.0 : usualExtent());
    m_overhang = usualOverhang();
}

double PlotAxis::usualExtent() const
{
    const QFontMetricsF metrics(m_font);
    const double label =
        isAlongX() ? metrics.lineSpacing() * MostLines : metrics.horizontalAdvance(QStringLiteral("-000"));
    return label + m_draw->maxTickLength() + m_draw->spacing();
}

double PlotAxis::usualOverhang() const
{
    const QFontMetricsF metrics(m_font);
    return (isAlongX() ? metrics.horizontalAdvance(usualLabel(m_labels)) : metrics.height()) / 2.0;
}

double PlotAxis::extent()
{
    const double labels = m_draw->extent(m_font);
    if (!isAlongX())
        m_draw->setMinimumExtent(labels);
    return m_title.isEmpty() ? labels : labels + TitleGap + QFontMetricsF(m_font).height();
}

double PlotAxis::overhang(double length)
{
    int start = 0;
    int end = 0;
    m_draw->setLength(length);
    m_draw->getBorderDistHint(m_font, start, end);
    m_overhang = std::max(m_overhang, static_cast<double>(isAlongX() ? end : start));
    return m_overhang;
}

void PlotAxis::place(const QPointF &from, double length)
{
    m_draw->move(from);
    m_draw->setLength(length);
}

GraphicScale PlotAxis::scale() const
{
    const QwtScaleMap &map = m_draw->scaleMap();
    return {map.s1(), map.pDist() / map.sDist() * (map.p2() < map.p1() ? -1.0 : 1.0), map.p1()};
}

void PlotAxis::draw(QPainter &painter, const QPalette &palette) const
{
    painter.save();
    painter.setFont(m_font);
    m_draw->draw(&painter, palette);
    painter.setPen(palette.color(QPalette::Text));
    const double height = QFontMetricsF(m_font).height();
    const double away = m_draw->extent(m_font) + TitleGap;
    if (isAlongX()) {
        const QPointF from(m_draw->pos() + QPointF(0.0, away));
        painter.drawText(QRectF(from, QSizeF(m_draw->length(), height)), Qt::AlignCenter | Qt::TextDontClip, m_title);
    } else {
        painter.translate(m_draw->pos() + QPointF(-away - height, m_draw->length()));
        painter.rotate(-90.0);
        painter.drawText(QRectF(0.0, 0.0, m_draw->length(), height), Qt::AlignCenter | Qt::TextDontClip, m_title);
    }
    painter.restore();
}

void PlotAxis::drawGrid(QPainter &painter, const QRectF &canvas) const
{
    const GraphicScale pixels = scale();
    const QList<double> marks = m_draw->scaleDiv().ticks(QwtScaleDiv::MajorTick);
    for (const double mark : marks) {
        const double at = qRound(pixels.pixel(mark));
        if (isAlongX())
            painter.drawLine(QLineF(at, canvas.top(), at, canvas.bottom()));
        else
            painter.drawLine(QLineF(canvas.left(), at, canvas.right(), at));
    }
}
