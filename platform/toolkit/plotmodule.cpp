// A plot with the plot library's axes; a module that is loaded with the first plot.
#include "plotaxis.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QRegion>
#include <QtMath>
#include <graphiccanvas.h>
#include <graphiccolors.h>
#include <graphiccurve.h>
#include <graphicplot.h>
#include <scaling.h>

#include <algorithm>

namespace
{

constexpr double AxisFontFactor = 0.9;
constexpr double MarkSpaceAlongX = 2.0; ///< A label and the space to the next, in widths of a label.
constexpr double MarkSpaceAlongY = 2.5; ///< The same in heights.
constexpr int MostMarks = 10;
constexpr QSize UsualSize(24, 13); ///< In heights of the font; the tool bar above it needs two.

/// \a scale as it is for a painter that begins at \a offset.
GraphicScale shifted(GraphicScale scale, double offset)
{
    scale.offset -= offset;
    return scale;
}

class Plot : public QWidget, public GraphicPlot
{
public:
    explicit Plot(QWidget *parent);

    QWidget *widget() override { return this; }
    void setLabels(Graphic::Axis axis, const GraphicLabels &labels, const QString &title) override
    {
        axisAt(axis).setLabels(labels, title);
    }
    void setRange(Graphic::Axis axis, const GraphicRange &range) override { axisAt(axis).setRange(range); }
    void setGrid(bool isVisible) override;
    QFont labelFont(Graphic::Axis axis) const override { return axisAt(axis).font(); }
    GraphicScale scale(Graphic::Axis axis) const override;
    QSize usualArea() const override;
    bool setMarksCount() override;
    void drawContent(QPainter &painter) override;
    void drawPicture(QPainter &painter, const QRectF &rect) override;

    QSize sizeHint() const override { return UsualSize * fontHeight(this); }

protected:
    void layOut() override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    PlotAxis &axisAt(Graphic::Axis axis) { return axis == Graphic::XAxis ? m_xAxis : m_yAxis; }
    const PlotAxis &axisAt(Graphic::Axis axis) const { return axis == Graphic::XAxis ? m_xAxis : m_yAxis; }
    void setFonts();
    QRect placeAxes(const QSize &size);
    void drawOn(QPainter &painter, const QRectF &canvas);

    PlotAxis m_xAxis{Graphic::XAxis};
    PlotAxis m_yAxis{Graphic::YAxis};
    QSize m_laidOutSize;
    bool m_hasGrid = true;
};

Plot::Plot(QWidget *parent)
    : QWidget(parent)
{
    setFonts();
}

void Plot::setGrid(bool isVisible)
{
    m_hasGrid = isVisible;
    looksDifferent();
}

GraphicScale Plot::scale(Graphic::Axis axis) const
{
    const QPoint corner = area().pos();
    return shifted(axisAt(axis).scale(), axis == Graphic::XAxis ? corner.x() : corner.y());
}

QSize Plot::usualArea() const
{
    const QSizeF beside(m_yAxis.usualExtent() + m_xAxis.usualOverhang(),
                        m_xAxis.usualExtent() + m_yAxis.usualOverhang());
    return (size() - beside.toSize()).expandedTo({0, 0});
}

bool Plot::setMarksCount()
{
    const QFontMetrics metrics(m_xAxis.font());
    const int labelWidth = metrics.horizontalAdvance(QStringLiteral("00:00:00"));
    const QSize area = usualArea();
    const auto most = [](double room) { return std::clamp(qRound(room), 1, MostMarks); };
    const bool isOtherAlongX = m_xAxis.setMarksCount(most(area.width() / (labelWidth * MarkSpaceAlongX)));
    const bool isOtherAlongY = m_yAxis.setMarksCount(most(area.height() / (metrics.height() * MarkSpaceAlongY)));
    return isOtherAlongX || isOtherAlongY;
}

/// Puts the axes where they belong in a plot of that \a size; where that leaves the canvas.
QRect Plot::placeAxes(const QSize &size)
{
    const int left = qCeil(m_yAxis.extent());
    const int bottom = size.height() - qCeil(m_xAxis.extent());
    const int right = size.width() - qCeil(m_xAxis.overhang(size.width() - left));
    const int top = qCeil(m_yAxis.overhang(bottom));
    const QRect canvas(QPoint(left, top), QSize(right - left, bottom - top).expandedTo({0, 0}));
    m_xAxis.place(QPointF(canvas.left(), canvas.bottom() + 1), std::max(canvas.width() - 1, 1));
    m_yAxis.place(QPointF(canvas.left(), canvas.top()), std::max(canvas.height() - 1, 1));
    return canvas;
}

void Plot::layOut()
{
    const bool isOtherAlongX = m_xAxis.takeChange();
    const bool isOtherAlongY = m_yAxis.takeChange();
    if (!isOtherAlongX && !isOtherAlongY && size() == m_laidOutSize)
        return;
    m_laidOutSize = size();
    area().setGeometry(placeAxes(size()));
    update(QRegion(rect()) - area().geometry());
}

void Plot::drawContent(QPainter &painter)
{
    const QRect canvas = area().geometry();
    painter.translate(-canvas.topLeft());
    drawOn(painter, canvas);
    painter.translate(canvas.topLeft());
}

/// Background, grid and curves; the axes say where.
void Plot::drawOn(QPainter &painter, const QRectF &canvas)
{
    painter.fillRect(canvas, palette().color(QPalette::Base));
    if (m_hasGrid) {
        painter.setPen(QPen(gridColor(palette()), 1.0));
        m_xAxis.drawGrid(painter, canvas);
        m_yAxis.drawGrid(painter, canvas);
    }
    for (const GraphicCurveLook &curve : curves) {
        if (!curve.series || !curve.isVisible)
            continue;
        QRectF part = canvas;
        if (painter.hasClipping()) {
            const double margin = curveMargin(curve.pen);
            part &= painter.clipBoundingRect().toAlignedRect().adjusted(-qRound(margin), 0, qRound(margin), 0);
        }
        painter.save();
        drawSeries(painter, part, *curve.series, m_xAxis.scale(), m_yAxis.scale(), curve.pen);
        painter.restore();
    }
}

/// The picture may have another size than the widget, whose axes take their places again.
void Plot::drawPicture(QPainter &painter, const QRectF &rect)
{
    painter.save();
    painter.translate(rect.topLeft());
    const QRect canvas = placeAxes(rect.size().toSize());
    m_xAxis.draw(painter, palette());
    m_yAxis.draw(painter, palette());
    drawOn(painter, canvas);
    painter.restore();
    placeAxes(size());
}

void Plot::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_xAxis.draw(painter, palette());
    m_yAxis.draw(painter, palette());
}

void Plot::resizeEvent(QResizeEvent *)
{
    layOut();
}

void Plot::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange:
        setFonts();
        break;
    case QEvent::PaletteChange:
    case QEvent::EnabledChange:
    case QEvent::StyleChange:
        looksDifferent();
        break;
    default:
        break;
    }
}

void Plot::setFonts()
{
    QFont labels = font();
    if (labels.pointSizeF() > 0.0)
        labels.setPointSizeF(labels.pointSizeF() * AxisFontFactor);
    m_xAxis.setFont(labels);
    m_yAxis.setFont(labels);
}

} // namespace

extern "C" Q_DECL_EXPORT GraphicPlot *kelNewPlot(QWidget *parent)
{
    return new Plot(parent);
}
