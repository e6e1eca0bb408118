#include "builtinpicture.h"
#include "keltabpicture.h"
#include "keltabwidget.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>

namespace
{

constexpr int ArrowMargin = 5; // pixels above and below an arrow
constexpr double ArrowHeightToWidth = 1.8;
constexpr double ArrowFadeWay = 50.0;    // pixels of hidden tabs at which an arrow shows fully
constexpr double ArrowFadeLimit = 1.666; // a full arrow lets the tab below shine through
constexpr int LargestPicture = 32000;    // device pixels; painting in an image ends shortly above

bool isHorizontal(QTabBar::Shape shape)
{
    switch (shape) {
    case QTabBar::RoundedNorth:
    case QTabBar::RoundedSouth:
    case QTabBar::TriangularNorth:
    case QTabBar::TriangularSouth:
        return true;
    default:
        return false;
    }
}

double arrowOpacity(int hiddenWidth)
{
    return qMin(hiddenWidth / ArrowFadeWay, 1.0) / ArrowFadeLimit;
}

} // namespace

KelTabBar::KelTabBar(QWidget *parent)
    : QTabBar(parent)
    , m_picture(std::make_unique<KelTabPicture>())
{
    setUsesScrollButtons(false);
    setExpanding(true);
}

KelTabBar::~KelTabBar() = default;

void KelTabBar::place(int widgetWidth)
{
    resize(qMax(widgetWidth, sizeHint().width()), height());
    m_draggable = width() > widgetWidth;
    m_offset = qMin(0, qMax(widgetWidth - width(), m_offset));
    move(m_offset, y());
}

// A bar that was draggable before it went to a side is not placed there, so it keeps its mark.
bool KelTabBar::canBeDragged() const
{
    return m_draggable && isHorizontal(shape());
}

bool KelTabBar::event(QEvent *event)
{
    m_picture->notice(*this, *event);
    return QTabBar::event(event);
}

void KelTabBar::mousePressEvent(QMouseEvent *event)
{
    m_grabbed = false;
    if (!canBeDragged()) {
        QTabBar::mousePressEvent(event);
        return;
    }
    if (event->buttons() == Qt::NoButton)
        return;
    m_grabbed = true;
    m_press = event->pos();
    m_last = mapToParent(m_press);
    m_travelled = QPoint();
}

void KelTabBar::mouseMoveEvent(QMouseEvent *event)
{
    const QPointer<KelTabBar> alive(this);
    if (canBeDragged() && m_grabbed && event->buttons() != Qt::NoButton) {
        // The bar follows the pointer, which hardly moves in the bar's own frame, so its way is measured outside.
        const QPoint outside = mapToParent(event->pos());
        m_travelled += QPoint(qAbs(outside.x() - m_last.x()), qAbs(outside.y() - m_last.y()));
        m_last = outside;
        m_offset += event->pos().x() - m_press.x();
        emit needMoveBar();
    }
    if (alive)
        QTabBar::mouseMoveEvent(event);
}

void KelTabBar::mouseReleaseEvent(QMouseEvent *event)
{
    const QPointer<KelTabBar> alive(this);
    if (canBeDragged() && m_grabbed && m_travelled.x() + m_travelled.y() <= 2 * QApplication::startDragDistance()) {
        QMouseEvent press(QEvent::MouseButtonPress, event->localPos(), event->windowPos(), event->screenPos(),
                          event->button(), event->buttons(), event->modifiers());
        QTabBar::mousePressEvent(&press);
    }
    if (!alive)
        return;
    if (event->buttons() == Qt::NoButton)
        m_grabbed = false;
    QTabBar::mouseReleaseEvent(event);
}

void KelTabBar::resizeEvent(QResizeEvent *event)
{
    QTabBar::resizeEvent(event);
    emit needMoveBar();
}

void KelTabBar::paintEvent(QPaintEvent *event)
{
    const bool hasPicture = keepsPicture();
    if (hasPicture) {
        refreshPicture(event);
    } else {
        m_picture->drop();
        QTabBar::paintEvent(event);
    }

    QPainter painter(this);
    if (hasPicture)
        painter.drawPixmap(0, 0, m_picture->pixmap());
    drawArrows(painter);
}

// Tabs that the operator can reorder are painted where his finger has them, which no look tells; buttons
// that scroll inside the bar hide a part of it.
bool KelTabBar::keepsPicture() const
{
    return canBeDragged() && !isMovable() && !usesScrollButtons() && width() * devicePixelRatioF() <= LargestPicture;
}

void KelTabBar::refreshPicture(QPaintEvent *event)
{
    const KelTabLook look = lookOf(*this);
    if (m_picture->shows(look))
        return;
    m_picture->start(look);
    m_isPictured = true;
    QTabBar::paintEvent(event);
    m_isPictured = false;
}

// While the picture is taken, a painter on the bar paints into the picture.
QPaintDevice *KelTabBar::redirected(QPoint *offset) const
{
    if (!m_isPictured)
        return QTabBar::redirected(offset);
    if (offset)
        *offset = QPoint();
    return &m_picture->pixmap();
}

QPainter *KelTabBar::sharedPainter() const
{
    return m_isPictured ? nullptr : QTabBar::sharedPainter();
}

void KelTabBar::drawArrows(QPainter &painter) const
{
    const QWidget *parent = parentWidget();
    const int arrowHeight = height() - 2 * ArrowMargin;
    const int arrowWidth = static_cast<int>(arrowHeight / ArrowHeightToWidth);
    if (!parent || arrowWidth <= 0 || !isHorizontal(shape()))
        return;

    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const int hiddenLeft = -m_offset;
    if (hiddenLeft > 0) {
        static const QImage leftArrow = readBuiltInPicture("arrow-left");
        painter.setOpacity(arrowOpacity(hiddenLeft));
        painter.drawImage(QRect(-m_offset, ArrowMargin, arrowWidth, arrowHeight), leftArrow);
    }
    const int hiddenRight = m_offset - (parent->width() - width());
    if (hiddenRight > 0) {
        static const QImage rightArrow = readBuiltInPicture("arrow-right");
        painter.setOpacity(arrowOpacity(hiddenRight));
        painter.drawImage(QRect(parent->width() - m_offset - arrowWidth, ArrowMargin, arrowWidth, arrowHeight),
                          rightArrow);
    }
}
