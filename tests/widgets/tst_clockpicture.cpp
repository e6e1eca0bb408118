// What a KelClock keeps of its faces' pictures, and when it paints them anew.
#include "blankdevice.h"
#include "clockreference.h"
#include "testmain.h"

#include <QPaintEngine>
#include <QSet>

#include <functional>

class tst_ClockPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesLeaveNoTrace();
    void paintedOnceForAllFrames();
    void changesAreShown_data();
    void changesAreShown();
    void pictureIsOfOneDevice();
    void changesRepaint_data();
    void changesRepaint();
};

/// Something done to a clock.
using Change = std::function<void(KelClock &)>;
Q_DECLARE_METATYPE(Change)

namespace
{

/// Remembers which pictures are drawn, and draws nothing.
class PictureLog : public BlankDevice
{
public:
    explicit PictureLog(const QSize &size)
        : BlankDevice(size)
        , m_engine(*this)
    {
    }

    QPaintEngine *paintEngine() const override { return &m_engine; }

    QVector<qint64> pictures;
    mutable int lines = 0;
    mutable int others = 0;

private:
    class Engine : public QPaintEngine
    {
    public:
        explicit Engine(PictureLog &log)
            : QPaintEngine(QPaintEngine::AllFeatures)
            , m_log(log)
        {
        }

        bool begin(QPaintDevice *) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState &) override {}
        Type type() const override { return QPaintEngine::User; }
        void drawPixmap(const QRectF &, const QPixmap &pixmap, const QRectF &) override
        {
            m_log.pictures << pixmap.cacheKey();
        }
        void drawLines(const QLineF *, int count) override { m_log.lines += count; }
        void drawPath(const QPainterPath &) override { ++m_log.others; }
        void drawPolygon(const QPointF *, int, PolygonDrawMode) override { ++m_log.others; }
        void drawEllipse(const QRectF &) override { ++m_log.others; }
        void drawTextItem(const QPointF &, const QTextItem &) override { ++m_log.others; }

    private:
        PictureLog &m_log;
    };

    mutable Engine m_engine;
};

class PaintCounter : public QObject
{
public:
    QVector<QRect> painted;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted << static_cast<QPaintEvent *>(event)->region().boundingRect();
        return false;
    }
};

} // namespace

void tst_ClockPicture::framesLeaveNoTrace()
{
    KelClock used;
    arrange(used, QSize(150, 150), QTime(3, 45));
    for (int step = 0; step < 60; ++step) {
        const float minute = 0.11F * static_cast<float>(step);
        used.setProperty("h__anim0", minute);
        used.setProperty("h__anim1", 6.0F - minute);
        for (int face = 0; face < 2; ++face)
            QCOMPARE(rendered(*faceOf(used, face)), reference(used, face, face == 0 ? "3" : "45"));
    }
}

// A frame draws one picture that stays the same, and two hands over it.
void tst_ClockPicture::paintedOnceForAllFrames()
{
    KelClock clock;
    arrange(clock, QSize(150, 150), QTime(3, 45));
    for (int face = 0; face < 2; ++face) {
        QSet<qint64> seen;
        for (int step = 0; step < 5; ++step) {
            clock.setProperty("h__anim0", 0.5F * static_cast<float>(step));
            PictureLog log(QSize(150, 150));
            faceOf(clock, face)->render(&log, QPoint(), QRegion(), QWidget::RenderFlags());
            QCOMPARE(log.pictures.size(), 1);
            QCOMPARE(log.lines, 2);
            QCOMPARE(log.others, 0);
            seen << log.pictures.first();
        }
        QCOMPARE(seen.size(), 1);
    }
}

void tst_ClockPicture::changesAreShown_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("isSeen"); // In the picture, not only in how it came to be.

    const auto put = [](const char *name, const Change &change, bool isSeen = true) {
        QTest::newRow(name) << change << isSeen;
    };
    put("highlighted hour", [](KelClock &clock) { clock.setTime(QTime(5, 30)); });
    put("font", [](KelClock &clock) {
        QFont font = clock.font();
        font.setItalic(true);
        clock.setFont(font);
    });
    put("size", [](KelClock &clock) { arrange(clock, QSize(180, 170), QTime(14, 30)); });
    put("dark palette", [](KelClock &clock) { clock.setPalette(QPalette(Qt::black)); });
    put(
        "another palette",
        [](KelClock &clock) {
            QPalette palette = clock.palette();
            palette.setColor(QPalette::Highlight, Qt::green);
            clock.setPalette(palette);
        },
        false);
}

void tst_ClockPicture::changesAreShown()
{
    QFETCH(Change, change);
    QFETCH(bool, isSeen);
    const auto keyOf = [](KelClock &clock) {
        PictureLog log(QSize(150, 150));
        faceOf(clock, 0)->render(&log, QPoint(), QRegion(), QWidget::RenderFlags());
        return log.pictures.value(0);
    };
    KelClock used;
    arrange(used, QSize(150, 150), QTime(14, 30));
    const QImage before = rendered(*faceOf(used, 0));
    const qint64 pictureBefore = keyOf(used);
    QCOMPARE(keyOf(used), pictureBefore);
    change(used);
    QVERIFY(keyOf(used) != pictureBefore);

    KelClock fresh;
    arrange(fresh, QSize(150, 150), QTime(14, 30));
    change(fresh);
    QCOMPARE(rendered(*faceOf(used, 0)) != before, isSeen);
    QCOMPARE(rendered(*faceOf(used, 0)), rendered(*faceOf(fresh, 0)));
}

void tst_ClockPicture::pictureIsOfOneDevice()
{
    KelClock clock;
    arrange(clock, QSize(150, 150), QTime(14, 30));
    const QImage once = rendered(*faceOf(clock, 0), 1.0);
    const QImage twice = rendered(*faceOf(clock, 0), 2.0);
    QCOMPARE(rendered(*faceOf(clock, 0), 1.0), once);
    QCOMPARE(rendered(*faceOf(clock, 0), 2.0), twice);
    QCOMPARE(twice.size(), once.size() * 2);
}

void tst_ClockPicture::changesRepaint_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("isHandsOnly");

    QTest::newRow("minute hand") << Change([](KelClock &clock) { clock.setProperty("h__anim0", 1.0F); }) << true;
    QTest::newRow("hour hand") << Change([](KelClock &clock) { clock.setProperty("h__anim1", 1.0F); }) << true;
    QTest::newRow("time") << Change([](KelClock &clock) { clock.setTime(QTime(14, 30)); }) << false;
}

void tst_ClockPicture::changesRepaint()
{
    QFETCH(Change, change);
    QFETCH(bool, isHandsOnly);
    ClockBench bench(QSize(200, 200));
    QCoreApplication::processEvents();
    for (QWidget *face : {bench.hours, bench.minutes}) {
        PaintCounter counter;
        face->installEventFilter(&counter);
        change(bench.clock);
        QTRY_VERIFY(!counter.painted.isEmpty());
        // A frame repaints the square in which the hands turn, at most.
        QCOMPARE(counter.painted.first() != face->rect(), isHandsOnly);
        QVERIFY(counter.painted.first().width() > 70);
        face->removeEventFilter(&counter);
        bench.clock.setTime(QTime(1, 1));
        finishAnimations(bench.clock);
        QCoreApplication::processEvents();
    }
}

KEL_TEST_MAIN(tst_ClockPicture)
#include "tst_clockpicture.moc"
