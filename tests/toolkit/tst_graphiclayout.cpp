#include "paintlimit.h"
#include "testmain.h"

#include <QRandomGenerator>
#include <graphic.h>

#include <cmath>

namespace
{

constexpr double LabelSize = 0.9; ///< What stands beside the axes is smaller than other text.

/// What the layout of a plot depends on.
struct Layout {
    QSize size;
    int fontSize = 10;
    bool isTime = false;
    QString xTitle;
    QString yTitle;
    QVector<QPointF> points;
};

void setUp(Graphic &plot, const Layout &layout)
{
    QFont font = plot.font();
    font.setPointSize(layout.fontSize);
    plot.setFont(font);
    plot.setGraphicsCount(1);
    plot.setTimeAxis(layout.isTime);
    plot.setAxisTitle(Graphic::XAxis, layout.xTitle);
    plot.setAxisTitle(Graphic::YAxis, layout.yTitle);
    plot.setGraphicData(layout.points);
    plot.resize(layout.size);
}

Layout anyLayout(QRandomGenerator &dice)
{
    Layout layout;
    layout.size = QSize(1 + dice.bounded(700), 1 + dice.bounded(500));
    layout.fontSize = 7 + dice.bounded(8);
    layout.isTime = dice.bounded(2) == 1;
    layout.xTitle = dice.bounded(2) == 1 ? QStringLiteral("Time") : QString();
    layout.yTitle = dice.bounded(2) == 1 ? QStringLiteral("Temperature [°C]") : QString();
    const double start = 1.795e9 + dice.bounded(86400.0);
    const double length = std::pow(10.0, dice.bounded(8.0) - 2.0);
    const double level = (dice.bounded(2.0) - 1.0) * std::pow(10.0, dice.bounded(6.0) - 1.0);
    for (int i = dice.bounded(4); i > 0; --i)
        layout.points.append({start + length * i, level + dice.bounded(10.0)});
    return layout;
}

/// The parts of the time axis's first line of labels that have ink, from left to right, as widths in pixels.
QVector<int> inkAlongX(Graphic &plot)
{
    plot.grab();
    const QWidget *canvas = plot.canvas();
    QWidget *axes = canvas->parentWidget();
    const QImage picture = axes->grab().toImage();
    const int line = canvas->fontMetrics().height();
    const int top = canvas->geometry().bottom() + line * 3 / 4;
    const int gap = canvas->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    const QColor paper = axes->palette().color(QPalette::Window);
    QVector<int> parts;
    int last = -gap - 1;
    for (int x = 0; x < picture.width(); ++x) {
        bool hasInk = false;
        for (int y = top; y < std::min(top + line / 2, picture.height()); ++y)
            hasInk |= std::abs(picture.pixelColor(x, y).lightness() - paper.lightness()) > 60;
        if (!hasInk)
            continue;
        if (x - last > gap)
            parts.append(0);
        parts.last() += parts.last() == 0 ? 1 : x - last;
        last = x;
    }
    return parts;
}

} // namespace

/// How a plot's canvas and the labels beside it find their places.
class tst_GraphicLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anyPlotComesToRest();
    void movingTimeComesToRest();
    void labelsStandApart_data();
    void labelsStandApart();
    void aSingleLabelSaysItsTime_data();
    void aSingleLabelSaysItsTime();
    void titlesNeedTheirRoom_data();
    void titlesNeedTheirRoom();
    void titlesAreNeverCutOff_data();
    void titlesAreNeverCutOff();
};

/// The labels may not change the canvas, and the canvas the labels, without end.
void tst_GraphicLayout::anyPlotComesToRest()
{
    for (quint32 seed = 1; seed <= 1000; ++seed) {
        QRandomGenerator dice(seed);
        Graphic plot;
        setUp(plot, anyLayout(dice));
        PaintLimit limit(plot);
        plot.show();
        QCoreApplication::processEvents();
        QVERIFY2(!limit.isExceeded(), qPrintable(QString::number(seed)));
        plot.resize(anyLayout(dice).size);
        QCoreApplication::processEvents();
        QVERIFY2(!limit.isExceeded(), qPrintable(QString::number(seed)));
    }
}

/// A panel's plot whose history goes by, at every size of a window that grows.
void tst_GraphicLayout::movingTimeComesToRest()
{
    Graphic plot;
    setUp(plot, {{200, 150}, 10, true, QString(), QStringLiteral("Temperature [°C]"), {}});
    plot.setHistorySize(60.0);
    plot.show();
    PaintLimit limit(plot);
    for (int second = 0; second < 300; ++second) {
        limit.reset();
        plot.resize(200 + second, 150 + second / 3);
        plot.addPoint(1.795e9 + second, 20.0 + std::sin(second / 20.0) * second);
        plot.update(true);
        QCoreApplication::processEvents();
        QVERIFY2(!limit.isExceeded(), qPrintable(QString::number(second)));
    }
}

void tst_GraphicLayout::labelsStandApart_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<double>("seconds");
    for (const int width : {110, 130, 150, 200, 260, 400, 900}) {
        for (const double seconds : {45.0, 60.0, 600.0, 3600.0, 7000.0})
            QTest::addRow("%d pixels, %g seconds", width, seconds) << width << seconds;
    }
}

/// There is at least one label, and each is as wide as a time is and no wider: none runs into the next.
void tst_GraphicLayout::labelsStandApart()
{
    QFETCH(int, width);
    QFETCH(double, seconds);
    for (const double start : {1.795e9, 1.795e9 + 1234.0, 1.795e9 + 33.0}) {
        Graphic plot;
        setUp(plot, {{width, 300}, 9, true, QString(), QString(), {{start, 0.0}, {start + seconds, 1.0}}});
        plot.show();
        QCoreApplication::processEvents();
        const QVector<int> parts = inkAlongX(plot);
        const int time = QFontMetrics(plot.font()).horizontalAdvance(QStringLiteral("00:00:00"));
        QVERIFY2(!parts.isEmpty(), qPrintable(QString::number(start)));
        for (const int part : parts)
            QVERIFY2(part <= time, qPrintable(QStringLiteral("%1: %2 > %3").arg(start).arg(part).arg(time)));
    }
}

void tst_GraphicLayout::aSingleLabelSaysItsTime_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<QString>("text");
    QTest::newRow("at half a minute") << 1.795e9 << QStringLiteral("00:00:00");
    QTest::newRow("at a whole one") << 1.795e9 + 60.0 << QStringLiteral("00:00");
}

/// Where there is room for one time only, it has seconds when it needs them.
void tst_GraphicLayout::aSingleLabelSaysItsTime()
{
    QFETCH(double, start);
    QFETCH(QString, text);
    Graphic plot;
    setUp(plot, {{110, 300}, 9, true, QString(), QString(), {{start, 0.0}, {start + 60.0, 1.0}}});
    plot.show();
    QFont font = plot.font();
    font.setPointSizeF(font.pointSizeF() * LabelSize);
    const QVector<int> parts = inkAlongX(plot);
    const int expected = QFontMetrics(font).horizontalAdvance(text);
    QCOMPARE(parts.size(), 1);
    QVERIFY2(std::abs(parts.first() - expected) < 8, qPrintable(QString::number(parts.first())));
}

void tst_GraphicLayout::titlesNeedTheirRoom_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("isSeen");
    QTest::newRow("high") << 300 << true;
    QTest::newRow("low") << 130 << false;
}

/// A title that would be cut off is not there, and the canvas has its place.
void tst_GraphicLayout::titlesNeedTheirRoom()
{
    QFETCH(int, height);
    QFETCH(bool, isSeen);
    int left[2];
    for (const bool hasTitle : {false, true}) {
        Graphic plot;
        setUp(plot, {{500, height},
                     10,
                     false,
                     QString(),
                     hasTitle ? QStringLiteral("A title of some length") : QString(),
                     {{0.0, 0.0}, {1.0, 1.0}}});
        plot.show();
        plot.grab();
        left[hasTitle] = plot.canvas()->mapTo(&plot, QPoint(0, 0)).x();
    }
    QCOMPARE(left[1] > left[0], isSeen);
}

void tst_GraphicLayout::titlesAreNeverCutOff_data()
{
    QTest::addColumn<bool>("isTime");
    QTest::newRow("numbers") << false;
    QTest::newRow("times") << true;
}

/// Beside another title, too.
void tst_GraphicLayout::titlesAreNeverCutOff()
{
    QFETCH(bool, isTime);
    int seen = 0;
    for (int height = 120; height < 320; height += 5) {
        int left[2];
        int room = 0;
        int length = 0;
        for (const bool hasTitle : {false, true}) {
            Graphic plot;
            const QString title = QStringLiteral("A title of some length");
            setUp(plot, {{500, height},
                         10,
                         isTime,
                         QStringLiteral("Time"),
                         hasTitle ? title : QString(),
                         {{1.795e9, 0.0}, {1.795e9 + 60.0, 1.0}}});
            plot.show();
            plot.grab();
            left[hasTitle] = plot.canvas()->mapTo(&plot, QPoint(0, 0)).x();
            room = plot.canvas()->height();
            QFont font = plot.font();
            font.setPointSizeF(font.pointSizeF() * LabelSize);
            length = QFontMetrics(font).horizontalAdvance(title);
        }
        const bool isSeen = left[1] > left[0];
        seen += isSeen ? 1 : 0;
        QVERIFY2(!isSeen || length <= room,
                 qPrintable(QStringLiteral("%1: %2 > %3").arg(height).arg(length).arg(room)));
    }
    QVERIFY(seen > 0 && seen < 40);
}

KEL_TEST_MAIN(tst_GraphicLayout)
#include "tst_graphiclayout.moc"
