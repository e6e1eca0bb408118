/// \file
/// A KelTabWidget in a window of its own, and a pointer over it.
#pragma once

#include <QApplication>
#include <QLabel>
#include <QProxyStyle>
#include <QStyleOptionTab>
#include <QWindow>
#include <QtTest>
#include <keltabwidget.h>

/// How far the pointer may travel in a tap while a TabBench lives.
constexpr int TapWay = 20;

/// A shown tab widget. Positions of the pointer are those in the widget, which stand still while its bar
/// moves below them.
class TabBench
{
public:
    /// Shows \a tabs tabs in a widget of 300 x 120 pixels; three have room in it, twenty have not.
    explicit TabBench(int tabs)
    {
        QApplication::setStartDragDistance(TapWay / 2);
        for (int i = 0; i < tabs; ++i)
            widget.addTab(new QWidget, QStringLiteral("R%1").arg(i));
        widget.resize(300, 120);
        widget.show();
        if (!QTest::qWaitForWindowExposed(&widget))
            qFatal("the window does not appear");
    }

    QTabBar &bar() { return *widget.tabBar(); }
    int hidden() { return bar().width() - widget.width(); } ///< Width of the tabs that are out of sight.

    QPoint middleOf(int tab) { return bar().mapToParent(bar().tabRect(tab).center()); }

    void press(const QPoint &at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {})
    {
        QTest::mousePress(widget.windowHandle(), button, keys, at);
    }
    void moveTo(const QPoint &to) { QTest::mouseMove(widget.windowHandle(), to); }
    void release(const QPoint &at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {})
    {
        QTest::mouseRelease(widget.windowHandle(), button, keys, at);
    }

    /// Drags the bar until it stands at \a offset, from a point that the drag does not reach the end from.
    void dragTo(int offset)
    {
        const QPoint from(widget.width() / 2, bar().height() / 2);
        const int way = offset - bar().x();
        press(from);
        moveTo(from + QPoint(way < 0 ? TapWay + 1 : -TapWay - 1, 0));
        moveTo(from);
        moveTo(from + QPoint(way, 0));
        release(from + QPoint(way, 0));
        QCOMPARE(bar().x(), offset);
    }

    KelTabWidget widget;
};

/// Records what a widget asks its style to paint.
class PaintLog : public QProxyStyle
{
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *target) const override
    {
        if (element == PE_FrameTabWidget) {
            ++frames;
            frame = *qstyleoption_cast<const QStyleOptionTabWidgetFrame *>(option);
        }
        QProxyStyle::drawPrimitive(element, option, painter, target);
    }
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *target) const override
    {
        if (element == CE_TabBarTab)
            ++tabs;
        QProxyStyle::drawControl(element, option, painter, target);
    }

    mutable int frames = 0;
    mutable int tabs = 0;
    mutable QStyleOptionTabWidgetFrame frame;
};
