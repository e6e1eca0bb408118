#include "blockitem.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QStyleOptionGraphicsItem>

#include <algorithm>

namespace
{

constexpr qreal OutlineWidth = 1.0;
constexpr qreal SelectedOutlineWidth = 2.0;
constexpr qreal CornerRadius = 4.0;
constexpr qreal Margin = 6.0;     ///< Between text and edges.
constexpr qreal PinRadius = 4.0;  ///< Of the socket, which sits on the block's edge.
constexpr qreal MinWidth = 60.0;  ///< So that an untitled block can still be grabbed.
constexpr qreal RowSpacing = 4.0; ///< Between one pin's label and the next.

qreal rowHeight(const QFont &font)
{
    return QFontMetricsF(font).height() + RowSpacing;
}

qreal headerHeight(const QFont &font)
{
    return QFontMetricsF(font).height() + Margin;
}

/// Title and labels are drawn in the style's own colours, disabled or not.
QPalette paletteOf(const QWidget *widget)
{
    return widget != nullptr ? widget->palette() : QApplication::palette();
}

void drawBox(QPainter *painter, const QRectF &box, const QPalette &palette, bool selected)
{
    painter->setPen(selected ? QPen(palette.color(QPalette::Highlight), SelectedOutlineWidth)
                             : QPen(palette.color(QPalette::Dark), OutlineWidth));
    painter->setBrush(palette.color(QPalette::Base));
    painter->drawRoundedRect(box, CornerRadius, CornerRadius);
}

void drawHeader(QPainter *painter, const QRectF &header, const QPalette &palette, const QString &title,
                const QFont &font)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(palette.color(QPalette::Button));
    painter->drawRoundedRect(header, CornerRadius, CornerRadius);

    painter->setFont(font);
    painter->setPen(palette.color(QPalette::ButtonText));
    painter->drawText(header, Qt::AlignCenter, title);
}

} // namespace

BlockItemPin::BlockItemPin(const QString &text, BlockItem *block)
    : QGraphicsObject(block)
    , m_text(text)
    , m_font(QApplication::font())
{
}

void BlockItemPin::setText(const QString &text)
{
    if (text == m_text)
        return;
    prepareGeometryChange();
    m_text = text;
    static_cast<BlockItem *>(parentItem())->arrange();
    update();
}

QRectF BlockItemPin::boundingRect() const
{
    const qreal reach = PinRadius + OutlineWidth;
    return labelRect() | QRectF(-reach, -reach, 2 * reach, 2 * reach);
}

void BlockItemPin::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *widget)
{
    const QPalette palette = paletteOf(widget);

    painter->setPen(QPen(palette.color(QPalette::Dark), OutlineWidth));
    painter->setBrush(palette.color(QPalette::Highlight));
    painter->drawEllipse(QPointF(), PinRadius, PinRadius);

    painter->setFont(m_font);
    painter->setPen(palette.color(QPalette::Text));
    painter->drawText(labelRect(), Qt::AlignLeft | Qt::AlignVCenter, m_text);
}

/// The label stands right of the socket, whose centre is the pin's position.
QRectF BlockItemPin::labelRect() const
{
    const qreal height = rowHeight(m_font);
    return {PinRadius + Margin, -height / 2, QFontMetricsF(m_font).horizontalAdvance(m_text) + 1.0, height};
}

BlockItem::BlockItem(QGraphicsItem *parent)
    : BlockItem(QString(), parent)
{
}

BlockItem::BlockItem(const QString &title, QGraphicsItem *parent)
    : QGraphicsObject(parent)
    , m_title(title)
    , m_font(QApplication::font())
{
    setFlags(ItemIsMovable | ItemIsSelectable | ItemSendsGeometryChanges);
    m_font.setBold(true);
    arrange();
}

void BlockItem::setTitle(const QString &title)
{
    if (title == m_title)
        return;
    m_title = title;
    arrange();
    update();
}

BlockItemPin *BlockItem::addPin(const QString &title)
{
    auto *pin = new BlockItemPin(title, this);
    m_pins.append(pin);
    arrange();
    return pin;
}

bool BlockItem::removePin(BlockItemPin *pin)
{
    if (!m_pins.removeOne(pin))
        return false;
    delete pin;
    arrange();
    return true;
}

QRectF BlockItem::boundingRect() const
{
    const qreal half = SelectedOutlineWidth / 2;
    return QRectF(QPointF(), m_size).adjusted(-half, -half, half, half);
}

void BlockItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    const QPalette palette = paletteOf(widget);
    const QRectF box(QPointF(), m_size);
    const QRectF header(0, 0, box.width(), headerHeight(m_font));

    painter->setRenderHint(QPainter::Antialiasing);
    drawBox(painter, box, palette, option->state & QStyle::State_Selected);
    drawHeader(painter, header.adjusted(OutlineWidth, OutlineWidth, -OutlineWidth, 0), palette, m_title, m_font);
}

/// Places the pins under the header and makes the box large enough for them and the title.
void BlockItem::arrange()
{
    prepareGeometryChange();
    qreal width = std::max(MinWidth, QFontMetricsF(m_font).horizontalAdvance(m_title) + 2 * Margin);
    qreal y = headerHeight(m_font) + Margin;
    for (BlockItemPin *pin : std::as_const(m_pins)) {
        const qreal row = rowHeight(pin->m_font);
        pin->setPos(0, y + row / 2);
        width = std::max(width, pin->labelRect().right() + Margin);
        y += row;
    }
    m_size = {width, y + Margin};
}
