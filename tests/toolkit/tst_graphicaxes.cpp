#include "paintlimit.h"
#include "plotbench.h"
#include "testmain.h"

#include <QPainter>
#include <graphiccolors.h>

#include <algorithm>
#include <cmath>

namespace
{

/// The canvas with the axes around it.
QImage axesOf(Graphic &plot)
{
    plot.grab(); // brings everything up to date
    return plot.canvas()->parentWidget()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

bool hasInk(const QImage &picture, int x, int y, const QColor &paper)
{
    return std::abs(picture.pixelColor(x, y).lightness() - paper.lightness()) > 60;
}

/// The smallest rectangle around all that is written inside \a place.
QRect inkIn(const QImage &picture, const QRect &place, const QColor &paper)
{
    QRect ink;
    const QRect part = place & picture.rect();
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            ink |= hasInk(picture, x, y, paper) ? QRect(x, y, 1, 1) : QRect();
    }
    return ink;
}

/// How much is written inside \a place.
int inkCount(const QImage &picture, const QRect &place, const QColor &paper)
{
    int count = 0;
    const QRect part = place & picture.rect();
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            count += hasInk(picture, x, y, paper) ? 1 : 0;
    }
    return count;
}

QColor paperOf(const Graphic &plot)
{
    return plot.palette().color(QPalette::Window);
}

} // namespace

/// Where a plot's axes lie, what is written there, and that pictures show the same.
class tst_GraphicAxes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void widerLabelsTakeTheirPlaceOnce();
    void lastLabelIsWhole();
    void lastLabelTakesItsPlaceOnce();
    void otherLabelsAreSeen();
    void titleAlongYReadsUpwards();
    void titleAlongXIsBelowTheLabels();
    void linesOfALabelLieBelowTheirMark();
    void marksTouchTheCanvas();
    void gridLiesAtTheMarks();
    void partsThatComeTakeTheirPlace();
    void pictureOfASmallPlotLeavesItAlone();
    void curvesStayOnTheCanvasOfAPicture();
};

void tst_GraphicAxes::widerLabelsTakeTheirPlaceOnce()
{
    PlotBench bench;
    const auto left = [&bench] {
        bench.plot.grab();
        return bench.plot.canvas()->x();
    };
    const int usual = left();
    bench.plot.setVisibleRange(Graphic::YAxis, 0.0, 2000000.0);
    const int wide = left();
    QVERIFY(wide > usual);
    bench.plot.setVisibleRange(Graphic::YAxis, 0.0, 100.0);
    QCOMPARE(left(), wide);
    // Other labels, another start.
    bench.plot.setAxisTitle(Graphic::YAxis, QStringLiteral("T"));
    bench.plot.setAxisTitle(Graphic::YAxis, QString());
    bench.plot.setAxisLabelPrecisionStep(1);
    QCOMPARE(left(), usual);
}

void tst_GraphicAxes::lastLabelIsWhole()
{
    PlotBench bench;
    bench.plot.setVisibleRange(Graphic::XAxis, 0.0, 2000000.0);
    const QImage picture = axesOf(bench.plot);
    const QRect canvas = bench.plot.canvas()->geometry();
    const QFontMetrics metrics(bench.plot.canvas()->font());
    const int half = metrics.horizontalAdvance(QStringLiteral("2000000")) / 2;
    const QRect label(canvas.right() - half, canvas.bottom() + 8, 2 * half, metrics.height());
    const QRect ink = inkIn(picture, label, paperOf(bench.plot));
    QVERIFY(ink.width() > half);
    QVERIFY(ink.right() < picture.width() - 1);
    QVERIFY2(std::abs(ink.center().x() - canvas.right()) <= 2, qPrintable(QString::number(ink.center().x())));
}

void tst_GraphicAxes::lastLabelTakesItsPlaceOnce()
{
    PlotBench bench;
    const auto right = [&bench] {
        bench.plot.grab();
        return bench.plot.canvas()->geometry().right();
    };
    const int usual = right();
    bench.plot.setVisibleRange(Graphic::XAxis, 0.0, 2000000.0);
    const int wide = right();
    QVERIFY(wide < usual);
    bench.plot.setVisibleRange(Graphic::XAxis, 0.0, 100.0);
    QCOMPARE(right(), wide);
    bench.plot.setAxisLabelPrecisionStep(1);
    QCOMPARE(right(), usual);
}

/// On the screen, where only what is asked for is painted anew.
void tst_GraphicAxes::otherLabelsAreSeen()
{
    PlotBench bench;
    QCoreApplication::processEvents();
    PaintLimit paints(bench.plot);
    bench.plot.setVisibleRange(Graphic::XAxis, 5.0, 50.0);
    QTRY_VERIFY(paints.of(*bench.plot.canvas()->parentWidget()) > 0);
}

void tst_GraphicAxes::titleAlongYReadsUpwards()
{
    PlotBench bench;
    bench.plot.setAxisTitle(Graphic::YAxis, QStringLiteral("MMMM................"));
    const QImage picture = axesOf(bench.plot);
    const QRect canvas = bench.plot.canvas()->geometry();
    const int line = bench.plot.canvas()->fontMetrics().height() * 9 / 10;
    const QRect place(0, 0, line, canvas.bottom());
    const QRect ink = inkIn(picture, place, paperOf(bench.plot));
    QVERIFY(!ink.isEmpty());
    QVERIFY2(std::abs(ink.center().y() - canvas.center().y()) <= 3, qPrintable(QString::number(ink.center().y())));
    const QRect upper(ink.topLeft(), QSize(ink.width(), ink.height() / 2));
    const QRect lower = upper.translated(0, ink.height() / 2);
    QVERIFY(inkCount(picture, lower, paperOf(bench.plot)) > 2 * inkCount(picture, upper, paperOf(bench.plot)));
}

void tst_GraphicAxes::titleAlongXIsBelowTheLabels()
{
    PlotBench bench;
    bench.plot.setAxisTitle(Graphic::XAxis, QStringLiteral("MMM"));
    const QImage picture = axesOf(bench.plot);
    const QRect canvas = bench.plot.canvas()->geometry();
    const int line = bench.plot.canvas()->fontMetrics().height() * 9 / 10;
    const QRect lowest(0, picture.height() - line, picture.width(), line);
    const QRect ink = inkIn(picture, lowest, paperOf(bench.plot));
    QVERIFY(!ink.isEmpty());
    QVERIFY(std::abs(ink.center().x() - canvas.center().x()) <= 3);
    // The labels above it are as wide as the canvas.
    const QRect labels(0, canvas.bottom() + 8, picture.width(), line);
    QVERIFY(labels.bottom() <= lowest.top() + 3);
    QVERIFY(inkIn(picture, labels, paperOf(bench.plot)).width() >= canvas.width());
}

/// A time and its day are not of one width.
void tst_GraphicAxes::linesOfALabelLieBelowTheirMark()
{
    PlotBench bench;
    bench.plot.setTimeAxis(true);
    bench.plot.setVisibleRange(Graphic::XAxis, 1.795e9, 1.795e9 + 600.0);
    const QImage picture = axesOf(bench.plot);
    const QRect canvas = bench.plot.canvas()->geometry();
    const QColor paper = paperOf(bench.plot);
    const int height = QFontMetrics(bench.plot.font()).height() * 9 / 10;
    const int top = canvas.bottom() + 10;
    const QRect day = inkIn(picture, QRect(0, top + height, picture.width(), height), paper);
    const QRect time = inkIn(picture, QRect(day.left(), top, day.width(), height), paper);
    QVERIFY(day.width() > time.width() + 10);
    QVERIFY(std::abs(time.center().x() - day.center().x()) <= 2);
    int mark = day.left();
    while (mark < day.right() && !hasInk(picture, mark, canvas.bottom() + 7, paper))
        ++mark;
    QVERIFY2(std::abs(time.center().x() - mark) <= 2, qPrintable(QString::number(mark - time.center().x())));
}

void tst_GraphicAxes::marksTouchTheCanvas()
{
    PlotBench bench;
    const QImage picture = axesOf(bench.plot);
    const QRect canvas = bench.plot.canvas()->geometry();
    const QColor paper = paperOf(bench.plot);
    // The range ends with round numbers, so the first and last marks lie at the corners.
    QVERIFY(hasInk(picture, canvas.left() - 1, canvas.top(), paper));
    QVERIFY(hasInk(picture, canvas.left() - 1, canvas.bottom(), paper));
    QVERIFY(hasInk(picture, canvas.left(), canvas.bottom() + 1, paper));
    QVERIFY(hasInk(picture, canvas.right(), canvas.bottom() + 1, paper));
}

void tst_GraphicAxes::gridLiesAtTheMarks()
{
    PlotBench bench;
    bench.plot.clear();
    const QImage picture = axesOf(bench.plot);
    const QRect canvas = bench.plot.canvas()->geometry();
    const QColor line = gridColor(bench.plot.palette());
    // Marks between the labels are shorter and have no line.
    const int longX = canvas.bottom() + 7;
    const int longY = canvas.left() - 7;
    int along[2] = {0, 0};
    for (int x = canvas.left(); x <= canvas.right(); ++x) {
        const bool isMark = hasInk(picture, x, longX, paperOf(bench.plot));
        QCOMPARE(picture.pixelColor(x, canvas.top() + 3) == line, isMark);
        along[0] += isMark ? 1 : 0;
    }
    for (int y = canvas.top(); y <= canvas.bottom(); ++y) {
        const bool isMark = hasInk(picture, longY, y, paperOf(bench.plot));
        QCOMPARE(picture.pixelColor(canvas.left() + 3, y) == line, isMark);
        along[1] += isMark ? 1 : 0;
    }
    QVERIFY(along[0] >= 3);
    QVERIFY(along[1] >= 3);
}

/// Parts below the plot take height from the canvas, not from the labels.
void tst_GraphicAxes::partsThatComeTakeTheirPlace()
{
    PlotBench bench;
    const auto below = [&bench] {
        QCoreApplication::processEvents();
        const QWidget *canvas = bench.plot.canvas();
        return canvas->parentWidget()->height() - canvas->geometry().bottom();
    };
    const int room = below();
    const int height = bench.plot.canvas()->height();
    bench.plot.setBorderInputsVisible(true);
    QCOMPARE(below(), room);
    QVERIFY(bench.plot.canvas()->height() < height);
    bench.plot.setBorderInputsVisible(false);
    QCOMPARE(below(), room);
    QCOMPARE(bench.plot.canvas()->height(), height);
}

/// A picture is never smaller than what can be read.
void tst_GraphicAxes::pictureOfASmallPlotLeavesItAlone()
{
    PlotBench bench;
    bench.plot.resize(60, 50);
    bench.plot.grab();
    const QPointF before = bench.at(70.0, 30.0);
    QVERIFY(bench.plot.picture(1.0).width() > 60);
    QCOMPARE(bench.at(70.0, 30.0), before);
}

void tst_GraphicAxes::curvesStayOnTheCanvasOfAPicture()
{
    PlotBench bench;
    bench.plot.setLegendVisible(false);
    bench.plot.graphic(0).color = Qt::red;
    bench.plot.setCurveWidth(30.0);
    bench.plot.setGraphicData({{0.0, 0.0}, {100.0, 0.0}, {100.0, 100.0}});
    const QImage picture = bench.plot.picture(1.0);
    const QRect canvas = bench.plot.canvas()->geometry();
    int inside = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y) != QColor(Qt::red))
                continue;
            QVERIFY2(canvas.contains(x, y), qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            ++inside;
        }
    }
    QVERIFY(inside > 1000);
}

KEL_TEST_MAIN(tst_GraphicAxes)
#include "tst_graphicaxes.moc"
