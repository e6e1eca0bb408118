#include "flowlayout.h"

#include <algorithm>

QVector<QRect> flow(const QVector<QSize> &sizes, int width, int spacing)
{
    QVector<QRect> places;
    int x = 0;
    int y = 0;
    int rowHeight = 0;
    for (QSize size : sizes) {
        size.setWidth(std::min(size.width(), width));
        if (x > 0 && x + size.width() > width) {
            x = 0;
            y += rowHeight + spacing;
            rowHeight = 0;
        }
        places.append(QRect(QPoint(x, y), size));
        x += size.width() + spacing;
        rowHeight = std::max(rowHeight, size.height());
    }
    return places;
}

FlowLayout::FlowLayout(QWidget *parent)
    : QLayout(parent)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout()
{
    qDeleteAll(m_items);
}

void FlowLayout::addItem(QLayoutItem *item)
{
    m_items.append(item);
}

QLayoutItem *FlowLayout::itemAt(int index) const
{
    return m_items.value(index);
}

QLayoutItem *FlowLayout::takeAt(int index)
{
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int FlowLayout::count() const
{
    return m_items.size();
}

Qt::Orientations FlowLayout::expandingDirections() const
{
    return Qt::Horizontal;
}

bool FlowLayout::hasHeightForWidth() const
{
    return true;
}

int FlowLayout::heightForWidth(int width) const
{
    int height = 0;
    const auto all = places(width);
    for (const QRect &place : all)
        height = std::max(height, place.bottom() + 1);
    return height;
}

QSize FlowLayout::sizeHint() const
{
    QSize size(0, 0);
    for (const QLayoutItem *item : m_items) {
        size.rwidth() += item->sizeHint().width() + std::max(0, spacing());
        size.setHeight(std::max(size.height(), item->sizeHint().height()));
    }
    return size;
}

QSize FlowLayout::minimumSize() const
{
    QSize size(0, 0);
    for (const QLayoutItem *item : m_items)
        size = size.expandedTo(item->minimumSize());
    return size;
}

void FlowLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    const QVector<QRect> all = places(rect.width());
    for (int i = 0; i < m_items.size(); ++i)
        m_items.at(i)->setGeometry(all.at(i).translated(rect.topLeft()));
}

QVector<QRect> FlowLayout::places(int width) const
{
    QVector<QSize> sizes;
    for (const QLayoutItem *item : m_items)
        sizes.append(item->sizeHint());
    return flow(sizes, width, std::max(0, spacing()));
}
