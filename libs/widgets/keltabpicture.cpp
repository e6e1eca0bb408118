#include "keltabpicture.h"

#include <algorithm>
#include <cmath>

namespace
{

bool isSamePlace(const QStyleOptionTab &one, const QStyleOptionTab &other)
{
    return one.rect == other.rect && one.shape == other.shape && one.row == other.row &&
           one.position == other.position && one.selectedPosition == other.selectedPosition &&
           one.cornerWidgets == other.cornerWidgets && one.direction == other.direction &&
           one.leftButtonSize == other.leftButtonSize && one.rightButtonSize == other.rightButtonSize;
}

bool isSameFace(const QStyleOptionTab &one, const QStyleOptionTab &other)
{
    return one.state == other.state && one.text == other.text && one.icon.cacheKey() == other.icon.cacheKey() &&
           one.iconSize == other.iconSize && one.documentMode == other.documentMode && one.features == other.features &&
           one.fontMetrics == other.fontMetrics && one.palette == other.palette &&
           one.palette.currentColorGroup() == other.palette.currentColorGroup();
}

bool isSameTab(const QStyleOptionTab &one, const QStyleOptionTab &other)
{
    return isSamePlace(one, other) && isSameFace(one, other);
}

} // namespace

bool isSameLook(const KelTabLook &one, const KelTabLook &other)
{
    return one.size == other.size && one.current == other.current && one.drawsBase == other.drawsBase &&
           one.underlinesShortcuts == other.underlinesShortcuts && qFuzzyCompare(one.pixelRatio, other.pixelRatio) &&
           one.visible == other.visible &&
           std::equal(one.tabs.cbegin(), one.tabs.cend(), other.tabs.cbegin(), other.tabs.cend(), isSameTab);
}

QPixmap &KelTabPicture::start(const KelTabLook &look)
{
    m_look = look;
    m_pixmap = QPixmap(static_cast<int>(std::ceil(look.size.width() * look.pixelRatio)),
                       static_cast<int>(std::ceil(look.size.height() * look.pixelRatio)));
    m_pixmap.setDevicePixelRatio(look.pixelRatio);
    m_pixmap.fill(Qt::transparent);
    return m_pixmap;
}
