/// \file
/// What a bar of tabs looks like, kept from one paint to the next.
#pragma once

#include <QPixmap>
#include <QStyleOptionTab>
#include <QVector>

/// All that a style needs to paint the tabs of a bar.
struct KelTabLook {
    QVector<QStyleOptionTab> tabs;
    QVector<bool> visible;
    QSize size;
    int current = -1;
    bool drawsBase = false;
    bool underlinesShortcuts = false;
    qreal pixelRatio = 1.0;
};

/// True when a style would paint both in the same way.
bool isSameLook(const KelTabLook &one, const KelTabLook &other);

/// The painted tabs of a bar. The picture is good as long as the tabs' look stays the same, so a bar that
/// only moves need not be painted anew.
class KelTabPicture
{
public:
    bool shows(const KelTabLook &look) const { return !m_pixmap.isNull() && isSameLook(m_look, look); }

    /// An empty picture of the look's size, for the caller to paint the tabs into.
    QPixmap &start(const KelTabLook &look);

    QPixmap &pixmap() { return m_pixmap; }
    void drop() { m_pixmap = QPixmap(); }

private:
    QPixmap m_pixmap;
    KelTabLook m_look;
};
