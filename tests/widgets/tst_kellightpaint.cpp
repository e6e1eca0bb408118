#include "blankdevice.h"
#include "testmain.h"

#include <kellight.h>

#include <QPaintEngine>
#include <QPainter>

class tst_KelLightPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ringIsLitUpToTheLevel_data();
    void ringIsLitUpToTheLevel();
    void fullRingWithoutAShift();
    void bottomStaysFree();
    void binaryHasNoFilledRing();
    void pictureStands();
    void picturesOfEachType();
    void unknownTypeKeepsThePictures();
    void stagesBlend();
    void brightnessGrows();
    void degenerateSizes_data();
    void degenerateSizes();
    void changesAreShown_data();
    void changesAreShown();
    void stillLightIsTheSameAsAMovingOne();
    void fadeLeavesNoTrace_data();
    void fadeLeavesNoTrace();
    void fadeDrawsEachVisiblePictureOnce_data();
    void fadeDrawsEachVisiblePictureOnce();
};

namespace
{

const QColor Fill(Qt::red);
const QColor Back(Qt::blue);

void show(KelLight &light, const QSize &size, double level)
{
    light.resize(size);
    light.setFillColor(Fill);
    light.setBackColor(Back);
    light.setProperty("h__anim", level);
}

QImage render(KelLight &light)
{
    QImage image(light.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    light.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// Takes every drawing and only counts it.
class CountingEngine : public QPaintEngine
{
public:
    CountingEngine()
        : QPaintEngine(QPaintEngine::AllFeatures)
    {
    }

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState &) override {}
    Type type() const override { return QPaintEngine::User; }
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override { ++pictures; }
    void drawImage(const QRectF &, const QImage &, const QRectF &, Qt::ImageConversionFlags) override { ++pictures; }
    void drawTiledPixmap(const QRectF &, const QPixmap &, const QPointF &) override { ++others; }
    void drawPath(const QPainterPath &) override { ++others; }
    void drawPolygon(const QPointF *, int, PolygonDrawMode) override { ++others; }

    int pictures = 0;
    int others = 0; ///< Anything that is no picture.
};

class CallCounter : public BlankDevice
{
public:
    explicit CallCounter(const QSize &size)
        : BlankDevice(size)
    {
    }

    QPaintEngine *paintEngine() const override { return &m_engine; }
    int pictures() const { return m_engine.pictures; }
    int others() const { return m_engine.others; }
    void reset() { m_engine.pictures = m_engine.others = 0; }

private:
    mutable CountingEngine m_engine;
};

} // namespace

void tst_KelLightPaint::ringIsLitUpToTheLevel_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<double>("level");
    QTest::addColumn<QColor>("left");
    QTest::addColumn<QColor>("top");
    QTest::addColumn<QColor>("right");

    for (const int side : {60, 200, 600}) {
        QTest::addRow("%d px, nothing lit", side) << side << 0.0 << Back << Back << Back;
        QTest::addRow("%d px, a third lit", side) << side << 35.0 << Fill << Back << Back;
        QTest::addRow("%d px, two thirds lit", side) << side << 65.0 << Fill << Fill << Back;
        QTest::addRow("%d px, all lit", side) << side << 100.0 << Fill << Fill << Fill;
    }
}

void tst_KelLightPaint::ringIsLitUpToTheLevel()
{
    QFETCH(int, side);
    QFETCH(double, level);
    QFETCH(QColor, left);
    QFETCH(QColor, top);
    QFETCH(QColor, right);

    KelLight light;
    show(light, QSize(side, side), level);
    const QImage image = render(light);
    const int middle = side / 2;
    const int ring = side * 15 / 200; // the middle of the ring
    QCOMPARE(image.pixelColor(ring, middle), left);
    QCOMPARE(image.pixelColor(middle, ring), top);
    QCOMPARE(image.pixelColor(side - 1 - ring, middle), right);
}

void tst_KelLightPaint::fullRingWithoutAShift()
{
    KelLight light;
    light.setAngleShift(0.0);
    show(light, QSize(200, 200), 100.0);
    QImage image = render(light);
    for (const QPoint &p : {QPoint(15, 100), QPoint(100, 15), QPoint(185, 100), QPoint(95, 185), QPoint(105, 185)})
        QCOMPARE(image.pixelColor(p), Fill);

    show(light, QSize(200, 200), 0.0);
    image = render(light);
    for (const QPoint &p : {QPoint(15, 100), QPoint(100, 15), QPoint(185, 100), QPoint(95, 185), QPoint(105, 185)})
        QCOMPARE(image.pixelColor(p), Back);
}

void tst_KelLightPaint::bottomStaysFree()
{
    KelLight light;
    show(light, QSize(200, 200), 100.0);
    const QImage image = render(light);
    QCOMPARE(image.pixelColor(100, 185).alpha(), 0);
    QCOMPARE(image.pixelColor(80, 182).alpha(), 0);
    QVERIFY(image.pixelColor(60, 173).alpha() == 255);
}

void tst_KelLightPaint::binaryHasNoFilledRing()
{
    KelLight light;
    light.setBinary(true);
    show(light, QSize(400, 400), 0.0);
    const QImage image = render(light);
    QCOMPARE(image.pixelColor(200, 2), QColor(Qt::darkGray));
    QCOMPARE(image.pixelColor(200, 397), QColor(Qt::darkGray));
    QCOMPARE(image.pixelColor(20, 200).alpha(), 0);
}

// The lamp's picture fills a square around the centre; the off picture of the LED reaches 214/256 of it.
void tst_KelLightPaint::pictureStands()
{
    KelLight light;
    light.setIconType(KelLight::LED);
    show(light, QSize(400, 400), 0.0);
    const QImage image = render(light);
    const double r = (197.5 - 197.5 * 0.3) / 1.2;
    const int rim = int(r * 214 / 256);
    QCOMPARE(image.pixelColor(200 - rim + 3, 200).alpha(), 255);
    QVERIFY(image.pixelColor(200 - rim - 4, 200).alpha() < 20);
    QCOMPARE(image.pixelColor(200 + rim - 4, 200).alpha(), 255);
    QVERIFY(image.pixelColor(200 + rim + 3, 200).alpha() < 20);
}

void tst_KelLightPaint::picturesOfEachType()
{
    KelLight light;
    show(light, QSize(200, 200), 0.0);
    QList<QImage> seen;
    for (const auto type : {KelLight::Bulb, KelLight::LED, KelLight::Spot}) {
        light.setIconType(type);
        for (const double level : {0.0, 50.0, 100.0}) {
            light.setProperty("h__anim", level);
            const QImage image = render(light);
            QVERIFY(!seen.contains(image));
            seen << image;
        }
    }
    for (const char *type : {"bulb", "led", "spot"}) {
        for (const char *stage : {"0", "100", "w", "h"}) {
            const QImage image(
                QStringLiteral(":/icons/light_%1_%2.png").arg(QLatin1String(type), QLatin1String(stage)));
            QVERIFY(image.width() >= 512 && image.height() >= 512);
        }
    }
}

void tst_KelLightPaint::unknownTypeKeepsThePictures()
{
    KelLight light;
    light.setIconType(KelLight::Spot);
    show(light, QSize(200, 200), 50.0);
    const QImage before = render(light);
    light.setIconType(KelLight::IconType(7));
    QCOMPARE(int(light.iconType()), 7);
    QCOMPARE(render(light), before);
}

// Each stage lies over the one before with the opacity that belongs to the level.
void tst_KelLightPaint::stagesBlend()
{
    KelLight light;
    light.setIconType(KelLight::Spot);
    light.setBarSize(0.0);
    for (const double percent : {3.0, 12.0, 40.0, 80.0, 95.0}) {
        show(light, QSize(206, 206), percent);
        const QImage image = render(light);

        // The ring shrinks by its pen; the picture is placed by numbers that are truncated one by one.
        const double r = (103.0 - 103.0 / 80.0) / 1.2;
        QVERIFY(r > 84.5 && r < 85.0);
        const QRect where(103 - 84, 103 - 84, 169, 169);
        QImage expected(206, 206, QImage::Format_ARGB32_Premultiplied);
        expected.fill(Qt::transparent);
        QPainter painter(&expected);
        const double halo = (percent - 70.0) / 30.0;
        const QList<QPair<const char *, double>> stages = {{"0", 1.0},
                                                           {"100", qMin(1.0, std::pow(percent / 75.0, 0.5))},
                                                           {"w", qMin(1.0, std::pow(percent / 20.0, 0.4))},
                                                           {"h", halo > 0 ? qMin(1.0, std::pow(halo, 1.5)) : 0.0}};
        for (const auto &stage : stages) {
            painter.setOpacity(stage.second);
            painter.drawImage(where.topLeft(),
                              QImage(QStringLiteral(":/icons/light_spot_%1.png").arg(QLatin1String(stage.first)))
                                  .scaled(where.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        }
        painter.end();
        // Inside the ring, whose line lies on top of nothing else.
        for (int y = 45; y < 160; ++y) {
            for (int x = 45; x < 160; ++x) {
                const QColor got = image.pixelColor(x, y);
                const QColor want = expected.pixelColor(x, y);
                const int off = qAbs(got.red() - want.red()) + qAbs(got.green() - want.green()) +
                                qAbs(got.blue() - want.blue()) + qAbs(got.alpha() - want.alpha());
                QVERIFY2(off <= 8, qPrintable(QStringLiteral("%1 % at %2,%3: %4, not %5")
                                                  .arg(percent)
                                                  .arg(x)
                                                  .arg(y)
                                                  .arg(got.name(QColor::HexArgb), want.name(QColor::HexArgb))));
            }
        }
    }
}

void tst_KelLightPaint::brightnessGrows()
{
    for (const auto type : {KelLight::Bulb, KelLight::LED, KelLight::Spot}) {
        KelLight light;
        light.setIconType(type);
        int last = -1;
        for (const double level : {0.0, 5.0, 15.0, 40.0, 75.0, 90.0, 100.0}) {
            show(light, QSize(200, 200), level);
            const QImage image = render(light);
            int sum = 0;
            for (int x = 80; x < 120; ++x)
                sum += qGray(image.pixel(x, 90));
            QVERIFY2(sum >= last, qPrintable(QStringLiteral("type %1 at %2").arg(type).arg(level)));
            last = sum;
        }
    }
}

void tst_KelLightPaint::degenerateSizes_data()
{
    QTest::addColumn<QSize>("size");

    for (const QSize &size : {QSize(1, 1), QSize(2, 2), QSize(3, 3), QSize(1, 300), QSize(300, 2), QSize(5, 5)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void tst_KelLightPaint::degenerateSizes()
{
    QFETCH(QSize, size);

    KelLight light;
    show(light, size, 50.0);
    for (const double bar : {0.0, 30.0, 100.0}) {
        for (const double shift : {0.0, 20.0, 180.0}) {
            light.setBarSize(bar);
            light.setAngleShift(shift);
            QCOMPARE(render(light).size(), size); // and no warning of a painter or a gradient
        }
    }
}

void tst_KelLightPaint::changesAreShown_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("fill colour") << QByteArray("fillColor") << QVariant(QColor(Qt::green));
    QTest::newRow("back colour") << QByteArray("backColor") << QVariant(QColor(Qt::green));
    QTest::newRow("angle shift") << QByteArray("angleShift") << QVariant(60.0);
    QTest::newRow("bar size") << QByteArray("barSize") << QVariant(60.0);
    QTest::newRow("binary") << QByteArray("binary") << QVariant(true);
    QTest::newRow("low level") << QByteArray("lowLevel") << QVariant(30.0);
    QTest::newRow("high level") << QByteArray("highLevel") << QVariant(300.0);
    QTest::newRow("icon") << QByteArray("iconType") << QVariant(2);
    QTest::newRow("shown level") << QByteArray("h__anim") << QVariant(80.0);
}

void tst_KelLightPaint::changesAreShown()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);

    KelLight light;
    light.setLevel(50.0);
    show(light, QSize(120, 120), 50.0);
    QTRY_COMPARE(light.h__anim(), 50.0);
    const QImage before = render(light);
    QCOMPARE(render(light), before);
    QVERIFY(light.setProperty(property.constData(), value));
    QVERIFY(render(light) != before);
}

void tst_KelLightPaint::stillLightIsTheSameAsAMovingOne()
{
    KelLight light;
    light.setLevel(60.0);
    QTRY_COMPARE(light.h__anim(), 60.0);
    show(light, QSize(150, 150), 60.0);
    render(light);
    const QImage still = render(light); // a level that is seen again is kept

    light.setLevel(61.0); // starts an animation
    light.setProperty("h__anim", 60.0);
    const QImage moving = render(light);
    int farthest = 0;
    for (int y = 0; y < 150; ++y) {
        for (int x = 0; x < 150; ++x)
            farthest = qMax(farthest, qAbs(qAlpha(still.pixel(x, y)) - qAlpha(moving.pixel(x, y))) +
                                          qAbs(qGreen(still.pixel(x, y)) - qGreen(moving.pixel(x, y))));
    }
    QVERIFY2(farthest <= 4, qPrintable(QString::number(farthest)));
}

void tst_KelLightPaint::fadeLeavesNoTrace_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("angleShift");
    QTest::addColumn<double>("barSize");

    for (const QSize &size : {QSize(60, 60), QSize(201, 150), QSize(420, 400)}) {
        for (const double shift : {0.0, 20.0, 120.0, 180.0}) {
            for (const double bar : {5.0, 30.0, 100.0})
                QTest::addRow("%d px, shift %g, bar %g", size.width(), shift, bar) << size << shift << bar;
        }
    }
}

// A fade paints only what changes; that must never differ from a light painted as a whole.
void tst_KelLightPaint::fadeLeavesNoTrace()
{
    QFETCH(QSize, size);
    QFETCH(double, angleShift);
    QFETCH(double, barSize);

    const auto prepare = [&](KelLight &light) {
        light.setAngleShift(angleShift);
        light.setBarSize(barSize);
        light.setLevel(100.0); // starts an animation, which no event moves on
        show(light, size, 0.0);
    };
    KelLight fading;
    prepare(fading);
    for (const double level : {0.0, 0.4, 3.0, 30.0, 31.0, 99.0, 100.0, 99.9, 50.0, 75.0, 0.0, 100.0, 0.0}) {
        fading.setProperty("h__anim", level);
        KelLight fresh;
        prepare(fresh);
        fresh.setProperty("h__anim", level);
        QVERIFY2(render(fading) == render(fresh), qPrintable(QString::number(level)));
    }
}

void tst_KelLightPaint::fadeDrawsEachVisiblePictureOnce_data()
{
    QTest::addColumn<bool>("binary");
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("visible");

    for (const bool binary : {false, true}) {
        const char *kind = binary ? "binary" : "dimmer";
        QTest::addRow("%s, dark", kind) << binary << 0.0 << 1;
        QTest::addRow("%s, warm", kind) << binary << 10.0 << 3;
        QTest::addRow("%s, before the halo", kind) << binary << 70.0 << 3;
        QTest::addRow("%s, halo", kind) << binary << 71.0 << 4;
        QTest::addRow("%s, full", kind) << binary << 100.0 << 4;
    }
}

void tst_KelLightPaint::fadeDrawsEachVisiblePictureOnce()
{
    QFETCH(bool, binary);
    QFETCH(double, level);
    QFETCH(int, visible);

    KelLight light;
    light.setBinary(binary);
    light.setLevel(100.0);
    show(light, QSize(120, 120), 40.0);
    CallCounter counter(light.size());
    light.render(&counter, QPoint(), QRegion(), QWidget::RenderFlags());
    QCOMPARE(counter.pictures(), 3);

    light.setProperty("h__anim", level);
    counter.reset();
    light.render(&counter, QPoint(), QRegion(), QWidget::RenderFlags());
    QCOMPARE(counter.pictures(), visible);
    QCOMPARE(counter.others(), 0);
}

KEL_TEST_MAIN(tst_KelLightPaint)
#include "tst_kellightpaint.moc"
