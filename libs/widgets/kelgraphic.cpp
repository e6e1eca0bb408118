#include "kelgraphic.h"

#include "builtinpicture.h"

#include <scaling.h>

#include <QEvent>
#include <QPainter>
#include <QTimerEvent>

namespace
{

constexpr int TickMs = 25;
constexpr int DegreesPerTick = 10;
constexpr int FullTurn = 360;

constexpr float IconFontHeights = 2.0F;
constexpr double IconInset = 0.7; // of the icon's size, from the corner to its middle

constexpr double KeepEverything = -1.0; // as a plot's history size
constexpr int LabelPrecisionStep = 1;
constexpr double CurveWidth = 1.5;

/// What an operator needs: fit, grid, cursor, save picture, pause.
constexpr int PanelButtons = 0x2207;

/// Decoded once for all plots that there are at a time.
std::shared_ptr<const QImage> progressPicture()
{
    static std::weak_ptr<const QImage> shared;
    std::shared_ptr<const QImage> picture = shared.lock();
    if (!picture) {
        picture = std::make_shared<const QImage>(readBuiltInPicture("progress"));
        shared = picture;
    }
    return picture;
}

} // namespace

KelGraphic::KelGraphic(QWidget *parent)
    : Graphic(parent)
    , m_progressImage(progressPicture())
{
    setHistorySize(KeepEverything);
    setAxisLabelPrecisionStep(LabelPrecisionStep);
    setCurveWidth(CurveWidth);
    setBorderInputsVisible(false);
    setStatusVisible(false);
    setLegendVisible(true);
    setButtons(Buttons(PanelButtons));
    connect(this, &Graphic::graphicPaintEvent, this, &KelGraphic::canvasPaint);
}

void KelGraphic::setVariables(const QStringList &list)
{
    m_variables.clear();
    setGraphicsCount(list.size(), true);
    for (int i = 0; i < list.size(); ++i) {
        const GraphicVariable variable = GraphicVariable::fromText(list.at(i));
        graphic(i).name = variable.right;
        updateLegend(true);
        if (isReadyToRepaint())
            update(false);
        m_variables.append(variable);
    }
}

QStringList KelGraphic::variables() const
{
    QStringList texts;
    for (const GraphicVariable &variable : m_variables)
        texts << variable.text();
    return texts;
}

QStringList KelGraphic::variableNames() const
{
    QStringList names;
    for (const GraphicVariable &variable : m_variables)
        names << variable.left;
    return names;
}

QMap<QString, QString> KelGraphic::variablesMap() const
{
    QMap<QString, QString> map;
    for (const GraphicVariable &variable : m_variables)
        map.insert(variable.left, variable.right);
    return map;
}

void KelGraphic::graphicDone(QString name)
{
    m_done.insert(name);
    m_isAllDone = m_variables.size() == m_done.size();
}

void KelGraphic::reset()
{
    clear();
    m_done.clear();
    m_isAllDone = false;
    showProgress();
}

void KelGraphic::showProgress()
{
    m_isShowing = true;
    if (m_timerID == 0)
        m_timerID = startTimer(TickMs, Qt::CoarseTimer);
}

void KelGraphic::resizeEvent(QResizeEvent *event)
{
    Graphic::resizeEvent(event);
    updateIconSize();
}

void KelGraphic::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timerID) {
        Graphic::timerEvent(event);
        return;
    }
    if (m_isAllDone && m_timerID != 0) {
        killTimer(m_timerID);
        m_timerID = 0;
    }
    // Also at the last tick: it is the one that takes the icon off the screen.
    m_angle = (m_angle + DegreesPerTick) % FullTurn;
    update(false);
}

void KelGraphic::changeEvent(QEvent *event)
{
    Graphic::changeEvent(event);
    if (event->type() == QEvent::FontChange && !m_iconRect.isEmpty())
        updateIconSize();
}

void KelGraphic::canvasPaint(QPainter *p)
{
    if (!m_isShowing || m_isAllDone || !canvas() || m_progressImage->isNull() || m_variables.isEmpty())
        return;

    p->save();
    p->setRenderHint(QPainter::SmoothPixmapTransform);
    p->translate(canvas()->width(), 0);
    p->translate(-IconInset * m_iconWidth, IconInset * m_iconHeight);
    p->rotate(m_angle);
    p->drawImage(m_iconRect, *m_progressImage);
    p->restore();
}

void KelGraphic::updateIconSize()
{
    const QSize size = preferredIconSize(IconFontHeights, this);
    m_iconWidth = size.width();
    m_iconHeight = size.height();
    m_iconRect = QRectF(-m_iconWidth / 2, -m_iconHeight / 2, m_iconWidth, m_iconHeight);
}
