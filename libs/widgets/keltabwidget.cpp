#include "keltabwidget.h"

#include <QEvent>
#include <QPointer>
#include <QStyleOptionTabWidgetFrame>
#include <QStylePainter>

namespace
{

// A nearly square widget keeps its tabs where they are, else they would jump at every small resize.
constexpr float LongSideMargin = 1.2f;

// What remains of the area beside the tabs: is its \a along side longer than its \a across side?
bool isLong(int along, int across)
{
    return along > 0 && across > 0 && static_cast<float>(along) / static_cast<float>(across) >= LongSideMargin;
}

} // namespace

KelTabWidget::KelTabWidget(QWidget *parent)
    : QTabWidget(parent)
    , m_bar(new KelTabBar)
{
    connect(m_bar, &KelTabBar::needMoveBar, this, &KelTabWidget::moveBar);
    setUsesScrollButtons(false);
    setTabBar(m_bar);
}

QSize KelTabWidget::sizeHint() const
{
    return QTabWidget::sizeHint();
}

QSize KelTabWidget::minimumSizeHint() const
{
    QSize size = QTabWidget::minimumSizeHint();
    size.setWidth(1);
    return size;
}

bool KelTabWidget::hasTabsAbove() const
{
    return tabPosition() == North || tabPosition() == South;
}

void KelTabWidget::moveBar()
{
    if (hasTabsAbove())
        m_bar->place(width());
}

void KelTabWidget::enable()
{
    setEnabled(true);
}

void KelTabWidget::disable()
{
    setEnabled(false);
}

void KelTabWidget::setCurrentIndex(int index)
{
    const QPointer<KelTabWidget> alive(this);
    QTabWidget::setCurrentIndex(index);
    if (alive)
        emit currentChangedID(m_emitID, index);
}

void KelTabWidget::setEmitID(int id)
{
    m_emitID = id;
}

void KelTabWidget::setSetID(int id)
{
    m_setID = id;
}

void KelTabWidget::enableID(int set_id)
{
    if (set_id == m_setID)
        enable();
}

void KelTabWidget::disableID(int set_id)
{
    if (set_id == m_setID)
        disable();
}

void KelTabWidget::setEnabledID(int set_id, bool on)
{
    if (set_id == m_setID)
        setEnabled(on);
}

void KelTabWidget::setDisabledID(int set_id, bool off)
{
    if (set_id == m_setID)
        setDisabled(off);
}

void KelTabWidget::setAutoSide(bool autoSide)
{
    m_autoSide = autoSide;
}

void KelTabWidget::setPreferredVerticalSide(VerticalSide preferredVerticalSide)
{
    m_verticalSide = preferredVerticalSide;
}

void KelTabWidget::setPreferredHorizontalSide(HorizontalSide preferredHorizontalSide)
{
    m_horizontalSide = preferredHorizontalSide;
}

bool KelTabWidget::event(QEvent *event)
{
    const bool handled = QTabWidget::event(event);
    if (event->type() == QEvent::LayoutRequest)
        moveBar();
    return handled;
}

// The base class squeezes tabs into a bar that already has the widget's width, without resizing the bar.
void KelTabWidget::tabInserted(int index)
{
    QTabWidget::tabInserted(index);
    moveBar();
}

void KelTabWidget::tabRemoved(int index)
{
    QTabWidget::tabRemoved(index);
    moveBar();
}

void KelTabWidget::resizeEvent(QResizeEvent *event)
{
    QTabWidget::resizeEvent(event);
    moveBar();
    if (m_autoSide && width() > 1 && height() > 1)
        chooseSide();
}

void KelTabWidget::chooseSide()
{
    if (hasTabsAbove()) {
        const int bar = m_bar->height();
        if (isLong(width() - bar, height() - bar))
            setTabPosition(m_horizontalSide == Left ? West : East);
        return;
    }
    const int bar = m_bar->width();
    if (isLong(height() - bar, width() - bar))
        setTabPosition(m_verticalSide == Top ? North : South);
}

void KelTabWidget::paintEvent(QPaintEvent *event)
{
    if (!hasTabsAbove()) {
        QTabWidget::paintEvent(event);
        return;
    }

    // The frame knows nothing of the bar's place: it is drawn as if the tabs stood all along its edge.
    QStylePainter painter(this);
    QStyleOptionTabWidgetFrame frame;
    initStyleOption(&frame);
    frame.rect = style()->subElementRect(QStyle::SE_TabWidgetTabPane, &frame, this);
    frame.tabBarSize.setWidth(width());
    painter.drawPrimitive(QStyle::PE_FrameTabWidget, frame);
}
