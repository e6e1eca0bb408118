/// \file
/// Painting that leads to painting.
#pragma once

#include <QApplication>
#include <QEvent>
#include <QHash>
#include <QWidget>

#include <algorithm>

/// Counts how often a window and what is inside are painted. A widget that is painted too often while the events run
/// once is one that paints for ever: the program would stand still. The window is hidden then, so that a test goes on.
class PaintLimit : public QObject
{
public:
    explicit PaintLimit(QWidget &window)
        : m_window(window)
    {
        qApp->installEventFilter(this);
    }

    void reset() { m_paints.clear(); }

    /// How often the widget was painted that was painted most.
    int most() const { return m_paints.isEmpty() ? 0 : *std::max_element(m_paints.begin(), m_paints.end()); }
    int of(QWidget &widget) const { return m_paints.value(&widget); }
    bool isExceeded() const { return most() > Limit; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Paint || !watched->isWidgetType())
            return false;
        auto *widget = static_cast<QWidget *>(watched);
        if (widget->window() == &m_window && ++m_paints[widget] > Limit)
            m_window.hide();
        return false;
    }

private:
    static constexpr int Limit = 20;

    QWidget &m_window;
    QHash<QWidget *, int> m_paints;
};
