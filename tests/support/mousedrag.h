/// \file
/// A pointer that moves while a button is held; QTest::mouseMove moves the cursor without one.
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

/// Tells \a widget that the pointer moved to \a position, in its own coordinates, with \a buttons held.
inline void dragMouse(QWidget *widget, const QPointF &position, Qt::MouseButtons buttons = Qt::LeftButton)
{
    QMouseEvent move(QEvent::MouseMove, position, widget->mapToGlobal(position.toPoint()), Qt::NoButton, buttons,
                     Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}
