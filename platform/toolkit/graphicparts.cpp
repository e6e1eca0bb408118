#include "graphicparts.h"

#include <QBoxLayout>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>
#include <graphiccanvas.h>
#include <graphiccolors.h>
#include <graphicinputs.h>
#include <graphiclegend.h>
#include <graphicplot.h>
#include <graphictoolbar.h>
#include <scaling.h>

#include <algorithm>
#include <utility>

namespace
{

constexpr int FrameMs = 16;        ///< Faster changes cannot be seen.
constexpr int LegendShare = 5;     ///< The legend takes at most one of so many parts of the height.
constexpr double BevelWidth = 3.0; ///< Thinner lines need no round joints.
constexpr double ButtonZoom = 0.5;
constexpr double Spacing = 0.25; ///< Between the parts, in heights of the font.

} // namespace

GraphicParts::GraphicParts(Graphic &owner)
    : graphic(owner)
    , toolBar(new GraphicToolBar(&owner))
    , legend(new GraphicLegend(&owner))
    , plot(newGraphicPlot(&owner))
    , inputs(new GraphicInputs(&owner))
    , status(new GraphicStatus(&owner))
{
    build();
    connectParts();
    connectCanvas();
}

void GraphicParts::build()
{
    m_top = new QHBoxLayout;
    m_top->setSpacing(qRound(fontHeight(&graphic) * Spacing));
    m_top->addWidget(toolBar, 0, Qt::AlignTop);
    m_top->addWidget(legend, 1);
    auto *layout = new QVBoxLayout(&graphic);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(qRound(fontHeight(&graphic) * Spacing));
    layout->setSizeConstraint(QLayout::SetNoConstraint); // the owner's smallest size holds
    layout->addLayout(m_top);
    layout->addWidget(plot->widget(), 1);
    layout->addWidget(inputs);
    layout->addWidget(status);
    inputs->hide();
    status->hide();
    toolBar->setChecked(Graphic::FitButton, true);
    toolBar->setChecked(Graphic::GridButton, true);
    toolBar->setChecked(Graphic::LegendButton, true);
}

void GraphicParts::connectParts()
{
    QObject::connect(toolBar, &GraphicToolBar::clicked, &graphic,
                     [this](Graphic::Button button, bool isChecked) { click(button, isChecked); });
    QObject::connect(legend, &GraphicLegend::toggled, &graphic, [this](int i, bool isVisible) {
        curves[static_cast<std::size_t>(i)].type.isVisible = isVisible;
        schedule(true);
    });
    QObject::connect(inputs, &GraphicInputs::edited, &graphic, &Graphic::setVisibleRange);
}

void GraphicParts::connectCanvas()
{
    const GraphicCanvas *canvas = &plot->area();
    QObject::connect(canvas, &GraphicCanvas::aboutToPaint, &graphic, [this] { sync(); });
    QObject::connect(canvas, &GraphicCanvas::painted, &graphic, [this](QPainter *painter) {
        paintOverlay(*painter);
        Q_EMIT graphic.graphicPaintEvent(painter);
    });
    QObject::connect(canvas, &GraphicCanvas::zoomWanted, &graphic,
                     [this](const QPointF &at, double xFactor, double yFactor) { zoom(at, xFactor, yFactor); });
    QObject::connect(canvas, &GraphicCanvas::moved, &graphic, [this](const QPointF &pixels) { moveBy(pixels); });
    QObject::connect(canvas, &GraphicCanvas::fitWanted, &graphic, &Graphic::fit);
    QObject::connect(canvas, &GraphicCanvas::resized, &graphic, [this] { schedule(false); });
    const auto point = [this](std::optional<QPointF> pointer) {
        m_pointer = pointer;
        if (hasCursor)
            plot->area().update();
        showStatus();
    };
    QObject::connect(canvas, &GraphicCanvas::pointed, &graphic, point);
    QObject::connect(canvas, &GraphicCanvas::left, &graphic, [point] { point(std::nullopt); });
}

void GraphicParts::addPoint(Curve &curve, double x, double y)
{
    const int before = curve.series.count();
    const double neighbour = before > 0 ? curve.series.at(before - 1).x : x;
    curve.series.append(x, y);
    // Without old points that went, only what lies between the new one and its neighbour looks different.
    const bool isOnlyAppended = curve.series.count() == before + 1;
    if (isOnlyAppended && curve.type.isVisible && !isPaused) {
        m_newFrom = std::min({m_newFrom, neighbour, x});
        m_newTo = std::max({m_newTo, neighbour, x});
    }
    m_isAllNew |= !isOnlyAppended;
    scheduleFrame();
}

void GraphicParts::schedule(bool isAllNew)
{
    m_isAllNew |= isAllNew;
    m_isRepaintWanted = true;
    scheduleFrame();
}

void GraphicParts::scheduleFrame()
{
    m_isScheduled = true;
    if (frame.isActive() || !graphic.isReadyToRepaint())
        return; // what is not seen waits until it is painted
    const int sinceLast =
        m_lastSync.isValid() ? static_cast<int>(std::min<qint64>(m_lastSync.elapsed(), FrameMs)) : FrameMs;
    frame.start(FrameMs - sinceLast, Qt::PreciseTimer, &graphic);
}

void GraphicParts::sync()
{
    if (!m_isScheduled)
        return;
    m_isScheduled = false;
    frame.stop();
    m_lastSync.start();

    bool isChanged = std::exchange(m_isAllNew, false);
    isChanged |= syncCurves();
    isChanged |= syncLabels();
    const bool isMoved = syncRanges();
    isChanged |= plot->setMarksCount();
    const double from = std::exchange(m_newFrom, std::numeric_limits<double>::infinity());
    const double to = std::exchange(m_newTo, -std::numeric_limits<double>::infinity());
    // The cursor may read other points now, and whoever paints over the curves may paint something else.
    if (std::exchange(m_isRepaintWanted, false) || hasCursor)
        plot->area().update();
    if (isChanged || isMoved)
        plot->settle();
    else
        plot->showNew(from, to);
    showStatus();
    if (isMoved)
        Q_EMIT graphic.visibleRangeChanged();
}

/// Whether a curve looks different now.
bool GraphicParts::syncCurves()
{
    bool isChanged = false;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        if (!isPaused)
            curves[i].series.settle();
        GraphicCurveLook &item = plot->curves[i];
        const QPen wanted = pen(static_cast<int>(i));
        isChanged |= item.pen != wanted || item.isVisible != curves[i].type.isVisible;
        item.pen = wanted;
        item.series = &shown(curves[i]);
        item.isVisible = curves[i].type.isVisible;
    }
    return isChanged;
}

/// Whether the axes are labelled differently now.
bool GraphicParts::syncLabels()
{
    const Labels wanted{isTime, graphic.axisLabelPrecisionStep(), {title(Graphic::XAxis), title(Graphic::YAxis)}};
    if (wanted.isTime == m_labels.isTime && wanted.precisionStep == m_labels.precisionStep &&
        wanted.titles == m_labels.titles)
        return false;
    m_labels = wanted;
    plot->setLabels(Graphic::XAxis, {isTime, wanted.precisionStep}, wanted.titles[Graphic::XAxis]);
    plot->setLabels(Graphic::YAxis, {false, wanted.precisionStep}, wanted.titles[Graphic::YAxis]);
    inputs->setTime(isTime);
    return true;
}

/// Whether another range is shown now.
bool GraphicParts::syncRanges()
{
    GraphicExtent all;
    for (const Curve &curve : curves) {
        if (curve.type.isVisible)
            all.add(shown(curve).extent());
    }
    if (isFitted && !all.isEmpty()) {
        const bool isOneX = all.xMin == all.xMax;
        ranges[Graphic::XAxis] = isOneX ? roundRange(all.xMin, all.xMax) : drawableRange(all.xMin, all.xMax);
        ranges[Graphic::YAxis] = roundRange(all.yMin, all.yMax);
    }
    if (ranges == m_shownRanges)
        return false;
    m_shownRanges = ranges;
    for (const Graphic::Axis axis : {Graphic::XAxis, Graphic::YAxis}) {
        plot->setRange(axis, ranges[axis]);
        inputs->setRange(axis, ranges[axis]);
    }
    return true;
}

GraphicParts::Curve *GraphicParts::curve(int i)
{
    return i >= 0 && i < static_cast<int>(curves.size()) ? &curves[static_cast<std::size_t>(i)] : nullptr;
}

QPen GraphicParts::pen(int i) const
{
    const QColor own = curves[static_cast<std::size_t>(i)].type.color;
    const QColor color = own.isValid() ? own : curveColor(i, graphic.palette());
    QPen pen(graphic.isEnabled() ? color : fadedColor(color, graphic.palette()), graphic.curveWidth());
    pen.setStyle(own.isValid() ? Qt::SolidLine : curveStyle(i));
    pen.setJoinStyle(graphic.curveWidth() > BevelWidth ? Qt::RoundJoin : Qt::BevelJoin);
    pen.setCapStyle(pen.style() == Qt::SolidLine ? Qt::RoundCap : Qt::FlatCap);
    return pen;
}

void GraphicParts::setCurvesCount(std::size_t count)
{
    // The items point into the curves, which may move now.
    for (GraphicCurveLook &item : plot->curves)
        item.series = nullptr;
    const std::size_t before = curves.size();
    curves.resize(count);
    for (std::size_t i = before; i < count; ++i)
        curves[i].series.setHistory(graphic.historySize());
    plot->curves.resize(count);
    showLegend();
    schedule(true);
}

void GraphicParts::setRange(Graphic::Axis axis, const GraphicRange &range)
{
    graphic.setFitted(false);
    ranges[axis] = range;
    schedule(false);
}

void GraphicParts::zoom(const QPointF &at, double xFactor, double yFactor)
{
    sync();
    const QPointF fixed = graphic.pointAt(at);
    if (xFactor != 1.0)
        setRange(Graphic::XAxis, zoomedRange(ranges[Graphic::XAxis], fixed.x(), xFactor));
    if (yFactor != 1.0)
        setRange(Graphic::YAxis, zoomedRange(ranges[Graphic::YAxis], fixed.y(), yFactor));
}

void GraphicParts::zoomAboutMiddle(double factor)
{
    zoom(QRectF(plot->area().rect()).center(), factor, factor);
}

void GraphicParts::moveBy(const QPointF &pixels)
{
    sync();
    const QPointF distance = graphic.pointAt(QPointF(0.0, 0.0)) - graphic.pointAt(pixels);
    setRange(Graphic::XAxis, movedRange(ranges[Graphic::XAxis], distance.x()));
    setRange(Graphic::YAxis, movedRange(ranges[Graphic::YAxis], distance.y()));
}

void GraphicParts::arrange()
{
    const int needed = toolBar->sizeHint().width() + m_top->spacing() + legend->sizeHint().width();
    const bool isRow = toolBar->isHidden() || needed <= graphic.width();
    m_top->setDirection(isRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    // The curves come first: of a long legend only whole rows in its share of the height are seen. A row
    // beside the tool bar takes nothing from them.
    const int row = std::max(1, legend->rowHeight());
    const int beside = isRow && !toolBar->isHidden() ? row : 0;
    legend->setMaximumHeight(std::max(graphic.height() / LegendShare / row * row, beside));
}

void GraphicParts::showLegend()
{
    QVector<GraphicLegendRow> rows;
    for (std::size_t i = 0; i < curves.size(); ++i)
        rows.append({curves[i].type.name, pen(static_cast<int>(i)), curves[i].type.isVisible});
    legend->setRows(rows);
    arrange();
}

void GraphicParts::showStatus()
{
    if (!hasStatus)
        return;
    QStringList texts;
    if (m_pointer) {
        const QPointF point = graphic.pointAt(*m_pointer);
        texts << withUnit(readValue(point.x(), ranges[Graphic::XAxis], isTime), Graphic::XAxis)
              << withUnit(readValue(point.y(), ranges[Graphic::YAxis], false), Graphic::YAxis);
    }
    qint64 count = 0;
    for (const Curve &curve : curves)
        count += shown(curve).count();
    texts << Graphic::tr("%1 points").arg(QLocale().toString(count));
    if (isPaused)
        texts << Graphic::tr("paused");
    status->setText(texts.join(QStringLiteral("   ")));
}

void GraphicParts::click(Graphic::Button button, bool isChecked)
{
    switch (button) {
    case Graphic::FitButton:
        return graphic.setFitted(isChecked);
    case Graphic::GridButton:
        return graphic.setGridVisible(isChecked);
    case Graphic::CursorButton:
        return graphic.setCursorVisible(isChecked);
    case Graphic::ZoomInButton:
        return zoomAboutMiddle(ButtonZoom);
    case Graphic::ZoomOutButton:
        return zoomAboutMiddle(1.0 / ButtonZoom);
    case Graphic::ClearButton:
        return graphic.clear();
    case Graphic::LegendButton:
        return graphic.setLegendVisible(isChecked);
    case Graphic::BorderInputsButton:
        return graphic.setBorderInputsVisible(isChecked);
    case Graphic::StatusButton:
        return graphic.setStatusVisible(isChecked);
    case Graphic::SavePictureButton:
        return askForFile();
    case Graphic::CopyPictureButton:
        return graphic.copyPicture();
    case Graphic::PauseButton:
        return graphic.setPaused(isChecked);
    default:
        return;
    }
}

void GraphicParts::paintOverlay(QPainter &painter)
{
    if (!hasCursor || !m_pointer)
        return;
    const QPointF point = graphic.pointAt(*m_pointer);
    const QString heading = withUnit(readValue(point.x(), ranges[Graphic::XAxis], isTime), Graphic::XAxis);
    drawCursor(painter, plot->area().rect(), *m_pointer, heading, readings(), graphic.palette());
}

/// The point of each visible curve that is nearest to the pointer: along x where x grows, otherwise as
/// one sees it.
QVector<GraphicReading> GraphicParts::readings() const
{
    const QPointF at = graphic.pointAt(*m_pointer);
    const double xScale = std::abs(plot->scale(Graphic::XAxis).factor);
    const double yScale = std::abs(plot->scale(Graphic::YAxis).factor);
    QVector<GraphicReading> all;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        if (!curves[i].type.isVisible)
            continue;
        const GraphicSeries &series = shown(curves[i]);
        const auto nearest = series.nearest(at.x(), at.y(), xScale, series.isSorted() ? 0.0 : yScale);
        if (!nearest)
            continue;
        const QString value = readValue(nearest->y, ranges[Graphic::YAxis], false);
        all.append({curves[i].type.name, withUnit(value, Graphic::YAxis), pen(static_cast<int>(i)).color(),
                    graphic.canvasPosition(QPointF(nearest->x, nearest->y))});
    }
    return all;
}

/// What is to stand beside \a axis.
QString GraphicParts::titleText(Graphic::Axis axis) const
{
    QStringList words;
    if (!titles[axis].isEmpty())
        words << titles[axis];
    if (!units[axis].isEmpty())
        words << QLatin1Char('[') + units[axis] + QLatin1Char(']');
    return words.join(QLatin1Char(' '));
}

/// What stands there; nothing where it would be cut off.
QString GraphicParts::title(Graphic::Axis axis) const
{
    const QString text = titleText(axis);
    const Graphic::Axis other = axis == Graphic::XAxis ? Graphic::YAxis : Graphic::XAxis;
    const QSize area = plot->usualArea();
    int room = axis == Graphic::XAxis ? area.width() : area.height();
    if (!titleText(other).isEmpty())
        room -= QFontMetrics(plot->labelFont(other)).lineSpacing();
    return QFontMetrics(plot->labelFont(axis)).horizontalAdvance(text) <= room ? text : QString();
}

QString GraphicParts::withUnit(const QString &text, Graphic::Axis axis) const
{
    return units[axis].isEmpty() ? text : text + QLatin1Char(' ') + units[axis];
}
