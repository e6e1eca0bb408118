/// \file
/// Where a plot's curves are seen and touched. Not installed.
#pragma once

#include <QPixmap>
#include <QPointF>
#include <QRect>
#include <QWidget>

class QPinchGesture;
class GraphicPlot;

/// Shows the items of its plot and what its user paints over them, and tells what the mouse wants. The
/// picture of the items is kept, so that painting over it again costs nothing of theirs.
class GraphicCanvas : public QWidget
{
    Q_OBJECT

public:
    explicit GraphicCanvas(GraphicPlot &plot);

    void invalidate();                    ///< The items have changed.
    void invalidate(int left, int right); ///< Only from one x to before the other.

Q_SIGNALS:
    void aboutToPaint();             ///< The last moment to invalidate.
    void painted(QPainter *painter); ///< The items are there; more can be painted over them.
    void zoomWanted(const QPointF &at, double xFactor, double yFactor); ///< Of the shown width.
    void moved(const QPointF &pixels);                                  ///< The mouse drags the picture.
    void fitWanted();
    void pointed(const QPointF &at); ///< The pointer is over the canvas.
    void resized();
    void left(); ///< It is not any more.

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void renderItems();
    void renderStrip();
    void pinched(const QPinchGesture &pinch);

    enum class Drag { None, Pressed, Moving };

    GraphicPlot &m_plot;
    QPixmap m_picture; ///< Of the items; null when they have changed.
    QRect m_strip;     ///< The part of it that is not up to date.
    Drag m_drag = Drag::None;
    QPointF m_dragFrom;
};
