/// \file
/// What a Graphic is made of, and how its parts follow its state. Not installed.
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QPen>
#include <graphic.h>
#include <graphicaxis.h>
#include <graphiccursor.h>
#include <graphicrange.h>
#include <graphicseries.h>

#include <array>
#include <limits>
#include <optional>
#include <vector>

class GraphicInputs;
class GraphicLegend;
class GraphicPlot;
class GraphicStatus;
class GraphicToolBar;
class QBoxLayout;

struct GraphicParts {
    struct Curve {
        GraphicType type;
        GraphicSeries series;
        GraphicSeries held; ///< What a paused plot shows.
    };

    explicit GraphicParts(Graphic &owner);

    void addPoint(Curve &curve, double x, double y);
    /// Asks for a sync() in the next frame. \a isAllNew: the whole picture has to be made anew.
    void schedule(bool isAllNew);
    /// Brings range, axes and canvas up to date, if something was scheduled.
    void sync();

    Curve *curve(int i); ///< Null when there is none.
    const GraphicSeries &shown(const Curve &curve) const { return isPaused ? curve.held : curve.series; }
    QPen pen(int i) const;

    void setCurvesCount(std::size_t count);
    void setRange(Graphic::Axis axis, const GraphicRange &range); ///< Ends the fit.
    void zoom(const QPointF &at, double xFactor, double yFactor); ///< About a position on the canvas.
    void zoomAboutMiddle(double factor);
    void moveBy(const QPointF &pixels);

    void arrange(); ///< Puts the legend where the size of the graphic has room for it.
    void showLegend();
    void showStatus();
    void click(Graphic::Button button, bool isChecked);
    void paintOverlay(QPainter &painter);
    void askForFile();
    void drawPicture(QPainter &painter, const QRectF &rect);
    QSize pictureSize() const;

    Graphic &graphic;
    GraphicToolBar *toolBar;
    GraphicLegend *legend;
    GraphicPlot *plot;
    GraphicInputs *inputs;
    GraphicStatus *status;

    std::vector<Curve> curves;
    GraphicType spare;
    std::array<QString, 2> titles;
    std::array<QString, 2> units;
    std::array<GraphicRange, 2> ranges;
    Graphic::Buttons buttons = Graphic::NoButton;
    bool isTime = false;
    bool isFitted = true;
    bool hasGrid = true;
    bool hasCursor = false;
    bool isPaused = false;
    bool hasInputs = false;
    bool hasStatus = false;
    bool hasLegend = true;
    QBasicTimer frame;

private:
    /// What the axes' labels depend on, to see that it changed.
    struct Labels {
        bool isTime = false;
        int precisionStep = -1;
        std::array<QString, 2> titles;
    };

    void build();
    void connectParts();
    void connectCanvas();
    void scheduleFrame();
    bool syncCurves();
    bool syncLabels();
    bool syncRanges();
    QString titleText(Graphic::Axis axis) const;
    QString title(Graphic::Axis axis) const;
    QString withUnit(const QString &text, Graphic::Axis axis) const;
    QVector<GraphicReading> readings() const;

    QBoxLayout *m_top = nullptr; ///< Tool bar and legend.
    bool m_isScheduled = true;
    bool m_isAllNew = true;
    bool m_isRepaintWanted = true;
    double m_newFrom = std::numeric_limits<double>::infinity(); ///< Where along x points came since the last sync.
    double m_newTo = -std::numeric_limits<double>::infinity();
    Labels m_labels;
    std::array<GraphicRange, 2> m_shownRanges{GraphicRange{0.0, 0.0}, GraphicRange{0.0, 0.0}};
    QElapsedTimer m_lastSync;
    std::optional<QPointF> m_pointer;
};
