/// \file
/// A plot for panels: live curves that stay quick at millions of points.
#pragma once

#include <QColor>
#include <QFlags>
#include <QPair>
#include <QPointF>
#include <QString>
#include <QVector>
#include <QWidget>
#include <keltoolkitexport.h>

#include <memory>

class QImage;
class QPainter;
struct GraphicParts;

/// How a Graphic shows one of its curves. Change it through Graphic::graphic() and tell the legend by
/// Graphic::updateLegend(); the points are given to the Graphic itself.
struct KEL_TOOLKIT_EXPORT GraphicType {
    QString name;          ///< Title in the legend, plain text.
    QColor color;          ///< Invalid: one that differs from the other curves' and suits the palette.
    bool isVisible = true; ///< A hidden curve keeps its points and its (pale) place in the legend.
};

/// A plot with curves, axes, a legend, a tool bar, edits for the shown range and a status line.
///
/// The wheel zooms about the pointer (with Ctrl along x only, with Shift along y only), dragging moves
/// the shown range, a double-click shows all points again. As long as isFitted() the range follows the
/// points. GUI thread only.
///
/// Points: x must be finite, other points are ignored. A y that is not finite breaks the curve there.
/// x need not grow; curves whose x does are drawn and searched fastest.
class KEL_TOOLKIT_EXPORT Graphic : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double historySize READ historySize WRITE setHistorySize)
    Q_PROPERTY(int axisLabelPrecisionStep READ axisLabelPrecisionStep WRITE setAxisLabelPrecisionStep)
    Q_PROPERTY(double curveWidth READ curveWidth WRITE setCurveWidth)
    Q_PROPERTY(bool timeAxis READ isTimeAxis WRITE setTimeAxis)
    Q_PROPERTY(bool fitted READ isFitted WRITE setFitted DESIGNABLE false)
    Q_PROPERTY(bool gridVisible READ gridVisible WRITE setGridVisible)
    Q_PROPERTY(bool cursorVisible READ cursorVisible WRITE setCursorVisible)
    Q_PROPERTY(bool paused READ isPaused WRITE setPaused DESIGNABLE false)
    Q_PROPERTY(bool borderInputsVisible READ borderInputsVisible WRITE setBorderInputsVisible)
    Q_PROPERTY(bool statusVisible READ statusVisible WRITE setStatusVisible)
    Q_PROPERTY(bool legendVisible READ legendVisible WRITE setLegendVisible)
    Q_PROPERTY(Buttons buttons READ buttons WRITE setButtons)

public:
    /// What the tool bar can offer. Bits that are not named here show nothing.
    enum Button {
        NoButton = 0,
        FitButton = 0x1,           ///< Whether the shown range follows the points (isFitted()).
        GridButton = 0x2,          ///< Grid on and off.
        CursorButton = 0x4,        ///< The reading cursor on and off.
        ZoomInButton = 0x8,        ///< Zooms in about the middle.
        ZoomOutButton = 0x10,      ///< Zooms out about the middle.
        ClearButton = 0x20,        ///< Forgets all points.
        LegendButton = 0x40,       ///< Legend on and off.
        BorderInputsButton = 0x80, ///< Edits of the shown range on and off.
        StatusButton = 0x100,      ///< Status line on and off.
        SavePictureButton = 0x200, ///< Asks for a file and saves a picture.
        CopyPictureButton = 0x400, ///< Copies a picture to the clipboard.
        PauseButton = 0x2000,      ///< Holds the picture still (isPaused()).
        AllButtons = 0x27ff
    };
    Q_ENUM(Button)
    Q_DECLARE_FLAGS(Buttons, Button)
    Q_FLAG(Buttons)

    enum Axis { XAxis, YAxis };
    Q_ENUM(Axis)

    /// An empty plot without curves, with FitButton, GridButton, CursorButton, SavePictureButton and
    /// PauseButton, legend and grid.
    explicit Graphic(QWidget *parent = nullptr);
    ~Graphic() override;

    // Curves

    /// Makes \a count curves (below 0 counts as 0). With \a resize the curves that are there keep their
    /// points and looks, surplus ones at the end go and new ones come without points; otherwise all are
    /// made anew.
    void setGraphicsCount(int count, bool resize = true);
    int graphicsCount() const;
    /// The curve \a i, from 0 on, until the next setGraphicsCount(). A number without a curve gives a
    /// spare one that is never shown.
    GraphicType &graphic(int i);
    const GraphicType &graphic(int i) const;

    /// Appends a point to the curve \a i; costs the same however many points there are, and schedules a
    /// repaint as update(false) does. A number without a curve is ignored.
    void addPoint(double x, double y, int i = 0);
    /// Replaces the points of the curve \a i.
    void setGraphicData(const QVector<QPointF> &points, int i = 0);
    /// The points that the curve \a i keeps, oldest first, breaks with a y that is not a number.
    QVector<QPointF> graphicData(int i) const;
    int pointsCount(int i) const; ///< How many points the curve \a i keeps, breaks included.
    /// Forgets the points of all curves, and a paused picture with them; curves and settings stay.
    void clear();

    /// Shows changed names, colours and visibilities in the legend and in the curves. With \a relayout
    /// the legend takes the place that it needs now at once, otherwise at the next turn of the event loop.
    void updateLegend(bool relayout = true);

    using QWidget::update;
    /// Asks for a new picture. With \a now it is painted before this returns (when visible); otherwise
    /// many calls within a frame cost one repaint.
    void update(bool now);
    /// Whether an update would be seen: the plot is visible and its canvas has a size.
    bool isReadyToRepaint() const;

    /// How far behind the x of a curve's newest point, the one given last, its points are kept, in units
    /// of x; older ones are dropped. Negative (at first -1) keeps everything. Not-a-number is ignored.
    void setHistorySize(double distance);
    double historySize() const { return m_historySize; }

    // Axes and range

    /// Decimals of the axis labels: 0 (at first) gives each label what it needs, n > 0 gives all labels
    /// of an axis the same number of decimals, a multiple of n. Clamped to 0..15.
    void setAxisLabelPrecisionStep(int decimals)
    {
        m_axisLabelPrecisionStep = decimals < 0 ? 0 : decimals > 15 ? 15 : decimals;
        if (isReadyToRepaint())
            update(false);
    }
    int axisLabelPrecisionStep() const { return m_axisLabelPrecisionStep; }

    /// Width of the curves in pixels that do not depend on the screen's pixel ratio, 0.5 to 20 (clamped),
    /// at first 1. Not-a-number is ignored.
    void setCurveWidth(double width)
    {
        if (width != width)
            return;
        m_curveWidth = width < 0.5 ? 0.5 : width > 20.0 ? 20.0 : width;
        if (isReadyToRepaint())
            update(false);
    }
    double curveWidth() const { return m_curveWidth; }

    void setAxisTitle(Axis axis, const QString &title); ///< Beside the axis; empty: no title.
    QString axisTitle(Axis axis) const;
    void setAxisUnit(Axis axis, const QString &unit); ///< In brackets behind the title and behind values.
    QString axisUnit(Axis axis) const;

    /// Whether x is a time in seconds since 1970-01-01 UTC; the axis then shows local time.
    void setTimeAxis(bool isTime);
    bool isTimeAxis() const;

    /// Shows \a from to \a to along \a axis and stops following the points. Ignored when a bound is not
    /// finite; bounds in the wrong order are exchanged, and a range too narrow to draw is widened.
    void setVisibleRange(Axis axis, double from, double to);
    QPair<double, double> visibleRange(Axis axis) const;

    void fit(); ///< Shows all points; the range follows them from now on.
    void setFitted(bool isFitted);
    bool isFitted() const; ///< At first true. Zooming and moving end it.

    // Parts

    void setGridVisible(bool isVisible);
    bool gridVisible() const; ///< At first true.
    /// The cursor reads the value of each visible curve at the pointer.
    void setCursorVisible(bool isVisible);
    bool cursorVisible() const; ///< At first false.
    /// A paused plot keeps its picture (that can be zoomed and moved) and takes points unseen; they are
    /// shown when it goes on.
    void setPaused(bool isPaused);
    bool isPaused() const;

    void setBorderInputsVisible(bool isVisible);
    bool borderInputsVisible() const; ///< At first false.
    void setStatusVisible(bool isVisible);
    bool statusVisible() const; ///< At first false.
    void setLegendVisible(bool isVisible);
    bool legendVisible() const; ///< At first true.
    void setButtons(Buttons buttons);
    Buttons buttons() const; ///< As they were set. Without any the tool bar is hidden.

    /// The widget that shows the curves, with its origin at their top-left corner.
    QWidget *canvas() const;
    QPointF canvasPosition(const QPointF &point) const;   ///< Where a point lies on the canvas, in its pixels.
    QPointF pointAt(const QPointF &canvasPosition) const; ///< What lies at a position of the canvas.

    // Pictures

    /// Saves axes, curves and legend as they are shown, to a PNG or an SVG file by the name's ending. False,
    /// with the reason in \a error and without a broken file, when that fails.
    bool savePicture(const QString &path, QString *error = nullptr);
    void copyPicture();                 ///< The same to the clipboard.
    QImage picture(double scale = 1.0); ///< The same as an image, \a scale pixels for each of the screen.

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// While the canvas paints: after the curves, in the canvas's coordinates.
    void graphicPaintEvent(QPainter *painter);
    /// By the user, the program or the points; maybe while the plot is painted, so a slot must not delete it
    /// otherwise than by deleteLater().
    void visibleRangeChanged();
    void fittedChanged(bool isFitted);
    void pausedChanged(bool isPaused);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    double m_historySize = -1.0;
    int m_axisLabelPrecisionStep = 0;
    double m_curveWidth = 1.0;
    std::unique_ptr<GraphicParts> m_parts;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(Graphic::Buttons)
