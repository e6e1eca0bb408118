#include "tabvariants.h"

#include <keltabwidget.h>

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTimer>

namespace
{

/// Drags the bar of \a tabs by \a share of the tabs that are out of sight.
void dragBar(KelTabWidget &tabs, double share)
{
    const bool isEnabled = tabs.isEnabled();
    tabs.setEnabled(true); // A disabled widget cannot be dragged, but it may have been.
    QTabBar &bar = *tabs.tabBar();
    const QPoint from = bar.rect().center();
    const QPoint to = from - QPoint(qRound(share * (bar.width() - tabs.width())), 0);
    for (const QPoint &at : {from, to}) {
        const auto type = at == from ? QEvent::MouseButtonPress : QEvent::MouseMove;
        QMouseEvent event(type, at, bar.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&bar, &event);
    }
    tabs.setEnabled(isEnabled);
}

GalleryVariant tabsLook(const char *caption, int count, QTabWidget::TabPosition side, double share = 0.0)
{
    const auto apply = [count, side, share](QWidget &widget) {
        auto &tabs = static_cast<KelTabWidget &>(widget);
        const QStringList names = {QStringLiteral("Hall"), QStringLiteral("Kitchen"), QStringLiteral("Cellar")};
        for (int i = 0; i < count; ++i)
            tabs.addTab(new QLabel(QStringLiteral("page"), &tabs), i < names.size() ? names[i] : QString::number(i));
        tabs.setTabPosition(side);
        if (share <= 0.0)
            return;
        // There is something to drag once the tabs have their room.
        auto *shown = new QTimer(&tabs);
        shown->setSingleShot(true);
        QObject::connect(shown, &QTimer::timeout, &tabs, [&tabs, share] { dragBar(tabs, share); });
        shown->start(0);
    };
    return {QString::fromLatin1(caption), apply, false};
}

} // namespace

QVector<GalleryVariant> tabVariants()
{
    return {
        tabsLook("few tabs", 2, QTabWidget::North),
        tabsLook("many tabs", 12, QTabWidget::North),
        tabsLook("many tabs, dragged", 12, QTabWidget::North, 0.5),
        tabsLook("many tabs, at the end", 12, QTabWidget::North, 1.0),
        tabsLook("below", 2, QTabWidget::South),
        tabsLook("below, dragged", 12, QTabWidget::South, 0.5),
        tabsLook("left", 2, QTabWidget::West),
        tabsLook("left, many tabs", 6, QTabWidget::West),
        tabsLook("right", 2, QTabWidget::East),
    };
}
