#include "keltabpicture.h"

#include <QHoverEvent>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace
{

QSize buttonSize(const QTabBar &bar, int index, QTabBar::ButtonPosition side)
{
    const QWidget *button = bar.tabButton(index, side);
    return button ? button->size() : QSize();
}

KelTabFace faceOf(const QTabBar &bar, int index)
{
    KelTabFace face;
    face.rect = bar.tabRect(index);
    face.text = bar.tabText(index);
    face.icon = bar.tabIcon(index).cacheKey();
    face.color = bar.tabTextColor(index);
    face.leftButton = buttonSize(bar, index, QTabBar::LeftSide);
    face.rightButton = buttonSize(bar, index, QTabBar::RightSide);
    face.enabled = bar.isTabEnabled(index);
    face.visible = bar.isTabVisible(index);
    return face;
}

bool isSameFace(const KelTabFace &one, const KelTabFace &other)
{
    return one.rect == other.rect && one.text == other.text && one.icon == other.icon && one.color == other.color &&
           one.leftButton == other.leftButton && one.rightButton == other.rightButton && one.enabled == other.enabled &&
           one.visible == other.visible;
}

/// A drag brings these, and none of them changes how a tab is painted.
bool isHarmless(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseMove:
    case QEvent::Move:
    case QEvent::Paint:
    case QEvent::ToolTip:
    case QEvent::DeferredDelete:
        return true;
    default:
        return false;
    }
}

} // namespace

KelTabLook lookOf(const QTabBar &bar)
{
    KelTabLook look;
    look.tabs.reserve(bar.count());
    for (int i = 0; i < bar.count(); ++i)
        look.tabs.append(faceOf(bar, i));
    look.size = bar.size();
    look.iconSize = bar.iconSize();
    look.shape = bar.shape();
    look.elideMode = bar.elideMode();
    look.current = bar.currentIndex();
    look.drawsBase = bar.drawBase();
    look.isDocument = bar.documentMode();
    look.underlinesShortcuts = bar.style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, &bar) != 0;
    look.pixelRatio = bar.devicePixelRatioF();
    return look;
}

bool isSameLook(const KelTabLook &one, const KelTabLook &other)
{
    return one.size == other.size && one.iconSize == other.iconSize && one.shape == other.shape &&
           one.elideMode == other.elideMode && one.current == other.current && one.drawsBase == other.drawsBase &&
           one.isDocument == other.isDocument && one.underlinesShortcuts == other.underlinesShortcuts &&
           qFuzzyCompare(one.pixelRatio, other.pixelRatio) &&
           std::equal(one.tabs.cbegin(), one.tabs.cend(), other.tabs.cbegin(), other.tabs.cend(), isSameFace);
}

void KelTabPicture::notice(const QTabBar &bar, const QEvent &event)
{
    if (event.type() == QEvent::HoverMove) {
        const int hovered = bar.tabAt(static_cast<const QHoverEvent &>(event).pos());
        if (hovered != m_hovered)
            drop();
        m_hovered = hovered;
    } else if (!isHarmless(event.type())) {
        drop();
    }
}

void KelTabPicture::start(const KelTabLook &look)
{
    m_look = look;
    m_pixmap = QPixmap(static_cast<int>(std::ceil(look.size.width() * look.pixelRatio)),
                       static_cast<int>(std::ceil(look.size.height() * look.pixelRatio)));
    m_pixmap.setDevicePixelRatio(look.pixelRatio);
    m_pixmap.fill(Qt::transparent);
}
