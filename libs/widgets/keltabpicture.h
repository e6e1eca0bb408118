/// \file
/// What a bar of tabs looks like, kept from one paint to the next.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QTabBar>
#include <QVector>

class QEvent;

/// What a bar shows on one tab.
struct KelTabFace {
    QRect rect;
    QString text;
    qint64 icon = 0;
    QColor color;
    QSize leftButton;
    QSize rightButton;
    bool enabled = true;
    bool visible = true;
};

/// All that setters change in the look of a bar, without an event that would tell of it.
struct KelTabLook {
    QVector<KelTabFace> tabs;
    QSize size;
    QSize iconSize;
    QTabBar::Shape shape = QTabBar::RoundedNorth;
    Qt::TextElideMode elideMode = Qt::ElideNone;
    int current = -1;
    bool drawsBase = false;
    bool isDocument = false;
    bool underlinesShortcuts = false;
    qreal pixelRatio = 1.0;
};

KelTabLook lookOf(const QTabBar &bar);
bool isSameLook(const KelTabLook &one, const KelTabLook &other);

/// The painted tabs of a bar. The picture is good until the look of the tabs changes, or the bar gets an
/// event that may change it, so a bar that only moves is not painted anew.
class KelTabPicture
{
public:
    /// Drops the picture unless \a event, which \a bar gets, leaves its tabs as they are.
    void notice(const QTabBar &bar, const QEvent &event);

    bool shows(const KelTabLook &look) const { return !m_pixmap.isNull() && isSameLook(m_look, look); }

    /// Makes the picture empty, in the size of \a look, for its user to paint the tabs into.
    void start(const KelTabLook &look);

    QPixmap &pixmap() { return m_pixmap; }
    void drop() { m_pixmap = QPixmap(); }

private:
    QPixmap m_pixmap;
    KelTabLook m_look;
    int m_hovered = -1; // The tab under the pointer, which many styles light up.
};
