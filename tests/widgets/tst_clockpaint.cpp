// How the faces of a KelClock look.
#include "clockreference.h"
#include "testmain.h"

class tst_ClockPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void likeTheReference_data();
    void likeTheReference();
    void likeTheReferenceOnWhite();
    void likeTheReferenceBetweenPixels_data();
    void likeTheReferenceBetweenPixels();

    void rim_data();
    void rim();
    void highlights_data();
    void highlights();
    void highlightColor();
    void handsOfAFace();
    void handsTurnClockwise();
    void ringsDoNotMove();
    void inThePaletteOfTheWindow_data();
    void inThePaletteOfTheWindow();
    void degenerateSizes_data();
    void degenerateSizes();
    void sizeZero();
};

namespace
{

const QColor Ground(Qt::white);

bool isNear(const QColor &got, const QColor &wanted, int tolerance = 3)
{
    return std::abs(got.red() - wanted.red()) <= tolerance && std::abs(got.green() - wanted.green()) <= tolerance &&
           std::abs(got.blue() - wanted.blue()) <= tolerance;
}

/// The centre of what is blue in \a image, null when nothing is.
QPointF middleOfBlue(const QImage &image)
{
    QPointF sum;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.blue() - color.red() < 40)
                continue;
            sum += QPointF(x + 0.5, y + 0.5);
            ++count;
        }
    }
    return count == 0 ? QPointF() : sum / count;
}

#define VERIFY_COLOR(got, wanted) QVERIFY2(isNear(got, wanted), qPrintable((got).name()))

} // namespace

void tst_ClockPaint::likeTheReference_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<qreal>("pixelRatio");
    QTest::addColumn<QTime>("time");

    for (const QSize &size : {QSize(32, 32), QSize(131, 131), QSize(128, 200), QSize(240, 97), QSize(400, 400)}) {
        for (const qreal ratio : {1.0, 1.25, 2.0}) {
            for (const QTime &time : {QTime(), QTime(14, 30), QTime(0, 5), QTime(12, 41), QTime(23, 0)}) {
                QTest::addRow("%d x %d, ratio %g, %s", size.width(), size.height(), ratio,
                              qPrintable(time.toString(QStringLiteral("HH:mm"))))
                    << size << ratio << time;
            }
        }
    }
}

// What is painted from the kept picture has, pixel for pixel, what painting everything would have given.
void tst_ClockPaint::likeTheReference()
{
    QFETCH(QSize, size);
    QFETCH(qreal, pixelRatio);
    QFETCH(QTime, time);
    KelClock clock;
    arrange(clock, size, time);
    for (int face = 0; face < 2; ++face) {
        const QImage expected = reference(clock, face, textOf(time, face), pixelRatio);
        const QImage first = rendered(*faceOf(clock, face), pixelRatio);
        const QImage second = rendered(*faceOf(clock, face), pixelRatio);
        QVERIFY2(first == expected, qPrintable(QString::number(farthest(first, expected))));
        QCOMPARE(second, first);
    }
}

// Where two lines cross, blending them first and then both with the ground rounds once more.
void tst_ClockPaint::likeTheReferenceOnWhite()
{
    for (const int side : {32, 131, 600}) {
        KelClock clock;
        arrange(clock, QSize(side, side), QTime(12, 30));
        for (int face = 0; face < 2; ++face) {
            const QImage expected = reference(clock, face, face == 0 ? "12" : "30", 1.0, Ground);
            const int off = farthest(rendered(*faceOf(clock, face), 1.0, Ground), expected);
            QVERIFY2(off <= 2, qPrintable(QStringLiteral("%1 px: %2").arg(side).arg(off)));
        }
    }
}

void tst_ClockPaint::likeTheReferenceBetweenPixels_data()
{
    QTest::addColumn<qreal>("pixelRatio");
    QTest::addColumn<QPoint>("position");

    for (const qreal ratio : {1.25, 1.5, 2.0}) {
        for (const QPoint &position : {QPoint(1, 0), QPoint(0, 3), QPoint(3, 5), QPoint(2, 4)})
            QTest::addRow("ratio %g at %d, %d", ratio, position.x(), position.y()) << ratio << position;
    }
}

// A scale such as 1.5 puts a face between the pixels of its screen.
void tst_ClockPaint::likeTheReferenceBetweenPixels()
{
    QFETCH(qreal, pixelRatio);
    QFETCH(QPoint, position);
    KelClock clock;
    arrange(clock, QSize(130, 130), QTime(14, 30));
    QImage image(QSize(300, 300), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    for (int face = 0; face < 2; ++face) {
        image.fill(Qt::transparent);
        QImage expected = image;
        faceOf(clock, face)->render(&image, position, QRegion(), QWidget::RenderFlags());
        QPainter painter(&expected);
        painter.translate(position);
        drawReference(painter, clock, face, textOf(QTime(14, 30), face));
        painter.end();
        QVERIFY2(image == expected, qPrintable(QString::number(farthest(image, expected))));
    }
}

void tst_ClockPaint::rim_data()
{
    QTest::addColumn<QSize>("size");

    for (const QSize &size : {QSize(64, 64), QSize(200, 200), QSize(300, 200), QSize(200, 300), QSize(800, 800)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void tst_ClockPaint::rim()
{
    QFETCH(QSize, size);
    KelClock clock;
    arrange(clock, size, QTime());
    const int half = std::min(size.width(), size.height()) / 2;
    const double pen = std::max(half / 80.0, 1.0);
    const double radius = half - pen - 1.0;
    for (int face = 0; face < 2; ++face) {
        const QImage image = rendered(*faceOf(clock, face), 4.0, Ground);
        for (const QPointF &to : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
            const auto at = [&](double distance) {
                const QPointF point = (QPointF(size.width(), size.height()) / 2.0 + to * distance) * 4.0;
                return image.pixelColor(static_cast<int>(point.x()), static_cast<int>(point.y()));
            };
            VERIFY_COLOR(at(radius), QColor(Qt::black));
            VERIFY_COLOR(at(radius + pen / 2.0 + 0.5), Ground);
            VERIFY_COLOR(at(radius - pen / 2.0 - 0.5), Ground);
        }
    }
}

void tst_ClockPaint::highlights_data()
{
    QTest::addColumn<QTime>("time");
    QTest::addColumn<int>("outer"); // Which of the twelve places is highlighted, 0 for none.
    QTest::addColumn<int>("inner");
    QTest::addColumn<int>("minute");

    QTest::newRow("nothing picked") << QTime() << 0 << 0 << 0;
    QTest::newRow("afternoon") << QTime(14, 30) << 2 << 0 << 6;
    QTest::newRow("morning") << QTime(2, 55) << 0 << 2 << 11;
    QTest::newRow("midnight is 00") << QTime(0, 5) << 12 << 0 << 1;
    QTest::newRow("noon is 12") << QTime(12, 0) << 0 << 12 << 12;
    QTest::newRow("between two numbers") << QTime(23, 31) << 11 << 0 << 0;
}

void tst_ClockPaint::highlights()
{
    QFETCH(QTime, time);
    QFETCH(int, outer);
    QFETCH(int, inner);
    QFETCH(int, minute);
    for (const int side : {96, 200, 500}) {
        KelClock clock;
        arrange(clock, QSize(side, side), time);
        const double radius = (side / 2.0 - std::max(side / 160.0, 1.0)) / 1.1;
        for (int face = 0; face < 2; ++face) {
            double textRadius = radius - numberSide(*faceOf(clock, face), numbersOf(face).first().texts) / 2.0 - 1.0;
            int place = face == 0 ? outer : minute;
            if (face == 0 && inner > 0) {
                place = inner;
                textRadius = radius - 1.4 * numberSide(*faceOf(clock, 0), outerHours()) -
                             numberSide(*faceOf(clock, 0), innerHours()) / 2.0 - 1.0;
            }
            const QPointF middle = middleOfBlue(rendered(*faceOf(clock, face), 1.0, Ground));
            QCOMPARE(middle.isNull(), place == 0);
            if (place == 0)
                continue;
            const QPointF off = middle - QPointF(side, side) / 2.0 - around(textRadius, place * TestPi / 6.0);
            QVERIFY2(std::hypot(off.x(), off.y()) < radius / 20.0,
                     qPrintable(QStringLiteral("face %1, place %2, %3 px: off by %4, %5")
                                    .arg(face)
                                    .arg(place)
                                    .arg(side)
                                    .arg(off.x())
                                    .arg(off.y())));
        }
    }
}

void tst_ClockPaint::highlightColor()
{
    KelClock clock;
    arrange(clock, QSize(400, 400), QTime(18, 30));
    // The text is a good deal narrower than the disc, whose edges are at 1/7 of the radius.
    const double radius = (200.0 - 2.5) / 1.1;
    const int square = numberSide(*faceOf(clock, 1), faceMinutes());
    const double y = 200.0 + radius - (square / 2.0 + 1.0);
    const QImage image = rendered(*faceOf(clock, 1), 1.0, Ground);
    VERIFY_COLOR(image.pixelColor(200, static_cast<int>(y - radius / 7.0 * 0.9)), QColor(191, 191, 255));
    VERIFY_COLOR(image.pixelColor(200, static_cast<int>(y + radius / 7.0 * 0.9)), QColor(191, 191, 255));
    VERIFY_COLOR(image.pixelColor(200, static_cast<int>(y - radius / 7.0 - 2.0)), Ground);
}

void tst_ClockPaint::handsOfAFace()
{
    KelClock clock;
    arrange(clock, QSize(400, 400), QTime());
    clock.setProperty("h__anim0", 0.0F);                             // The minute hand is up,
    clock.setProperty("h__anim1", static_cast<float>(TestPi / 2.0)); // the hour hand to the right.
    const double radius = (200.0 - 2.5) / 1.1;
    const QColor faint(87, 87, 87); // Black with an opacity of 0.66.
    for (int face = 0; face < 2; ++face) {
        const QImage image = rendered(*faceOf(clock, face), 1.0, Ground);
        const QColor minute = face == 0 ? faint : QColor(Qt::black);
        const QColor hour = face == 0 ? QColor(Qt::black) : faint;
        VERIFY_COLOR(image.pixelColor(200, static_cast<int>(200.0 - radius * 0.34)), minute);
        VERIFY_COLOR(image.pixelColor(200, static_cast<int>(200.0 - radius * 0.2)), minute);
        VERIFY_COLOR(image.pixelColor(200, static_cast<int>(200.0 - radius * 0.38)), Ground);
        VERIFY_COLOR(image.pixelColor(static_cast<int>(200.0 + radius * 0.29), 200), hour);
        VERIFY_COLOR(image.pixelColor(static_cast<int>(200.0 + radius * 0.325), 200), Ground);
        // Widths, on either side of the middle line.
        VERIFY_COLOR(image.pixelColor(static_cast<int>(200.0 + radius * 0.008), 160), minute);
        VERIFY_COLOR(image.pixelColor(static_cast<int>(200.0 + radius * 0.03), 160), Ground);
        VERIFY_COLOR(image.pixelColor(240, static_cast<int>(200.0 + radius * 0.033)), hour);
        VERIFY_COLOR(image.pixelColor(240, static_cast<int>(200.0 + radius * 0.05)), Ground);
        // The face's own hand lies over the other: on the minutes face one sees it through nothing.
        if (face == 1)
            VERIFY_COLOR(image.pixelColor(200, 200), QColor(Qt::black));
    }
}

void tst_ClockPaint::handsTurnClockwise()
{
    KelClock clock;
    arrange(clock, QSize(400, 400), QTime());
    clock.setProperty("h__anim1", 0.0F);
    const double radius = (200.0 - 2.5) / 1.1;
    for (int minute = 0; minute < 60; minute += 5) {
        const double angle = 2.0 * TestPi * minute / 60.0;
        clock.setProperty("h__anim0", static_cast<float>(angle));
        const QPointF tip = around(radius * 0.33, angle) + QPointF(200, 200);
        const QImage image = rendered(*faceOf(clock, 1), 1.0, Ground);
        VERIFY_COLOR(image.pixelColor(tip.toPoint()), QColor(Qt::black));
    }
}

// The rings are where they are, whichever number is picked.
void tst_ClockPaint::ringsDoNotMove()
{
    KelClock clock;
    arrange(clock, QSize(400, 400), QTime());
    const auto columns = [&clock] {
        const QImage image = rendered(*faceOf(clock, 0), 1.0, Ground);
        QVector<QRgb> row;
        for (int x = 0; x < 400; ++x)
            row << image.pixel(x, 230); // Between the numbers' rows at the left and right.
        return row.mid(0, 20) + row.mid(380, 20);
    };
    const QVector<QRgb> before = columns();
    for (const QTime &time : {QTime(0, 10), QTime(12, 10), QTime(6, 0)}) {
        arrange(clock, QSize(400, 400), time);
        QCOMPARE(columns(), before);
    }
}

void tst_ClockPaint::inThePaletteOfTheWindow_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("plate"); // Invalid for none.

    QTest::newRow("light") << QColor(239, 239, 239) << QColor(Qt::black) << QColor();
    QTest::newRow("white on white") << QColor(Qt::white) << QColor(Qt::white) << QColor();
    QTest::newRow("middle grey") << QColor(128, 128, 128) << QColor(Qt::white) << QColor();
    QTest::newRow("dark") << QColor(45, 45, 45) << QColor(230, 230, 230) << QColor(230, 230, 230);
    QTest::newRow("black") << QColor(Qt::black) << QColor(255, 200, 100) << QColor(255, 200, 100);
    QTest::newRow("dark on dark") << QColor(45, 45, 45) << QColor(Qt::black) << QColor();
    QTest::newRow("dark blue") << QColor(0, 0, 120) << QColor(Qt::white) << QColor(Qt::white);
}

void tst_ClockPaint::inThePaletteOfTheWindow()
{
    QFETCH(QColor, window);
    QFETCH(QColor, text);
    QFETCH(QColor, plate);
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    KelClock clock;
    clock.setPalette(palette);
    arrange(clock, QSize(200, 200), QTime(14, 30));
    for (int face = 0; face < 2; ++face) {
        const QImage image = rendered(*faceOf(clock, face));
        const QPoint free(100, 155); // Between the hands and the lowest number of either face.
        if (plate.isValid())
            QCOMPARE(image.pixelColor(face == 0 ? QPoint(100, 125) : free), plate);
        else
            QCOMPARE(image.pixelColor(face == 0 ? QPoint(100, 125) : free).alpha(), 0);
        QCOMPARE(image.pixelColor(1, 1).alpha(), 0); // Outside of the rim there is never anything.
        VERIFY_COLOR(rendered(*faceOf(clock, face), 4.0).pixelColor(400, 8), QColor(Qt::black));
    }
}

void tst_ClockPaint::degenerateSizes_data()
{
    QTest::addColumn<QSize>("size");

    for (int side = 1; side <= 20; ++side)
        QTest::addRow("%d x %d", side, side) << QSize(side, side);
    for (const QSize &size : {QSize(1, 300), QSize(300, 1), QSize(300, 4), QSize(4, 300), QSize(5000, 12)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void tst_ClockPaint::degenerateSizes()
{
    QFETCH(QSize, size);
    for (const QTime &time : {QTime(), QTime(14, 30), QTime(3, 7)}) {
        KelClock clock;
        arrange(clock, size, time);
        for (int face = 0; face < 2; ++face) {
            for (const qreal ratio : {1.0, 1.5, 2.0}) {
                const QImage image = rendered(*faceOf(clock, face), ratio); // and no warning of a painter or a font
                QCOMPARE(rendered(*faceOf(clock, face), ratio), image);
                if (std::min(size.width(), size.height()) < 6)
                    continue;
                // The rim at least can be seen.
                QVERIFY(image.pixelColor(image.width() / 2, static_cast<int>(2.0 * ratio)).alpha() > 30);
            }
        }
    }
}

void tst_ClockPaint::sizeZero()
{
    KelClock clock;
    arrange(clock, QSize(0, 0), QTime(14, 30));
    clock.resize(0, 0);
    clock.show();
    QVERIFY(QTest::qWaitForWindowExposed(&clock) || clock.size().isEmpty());
    QCoreApplication::processEvents();
    clock.setTime(QTime(3, 15));
    finishAnimations(clock);
    QCOMPARE(clock.time(), QTime(3, 15));

    arrange(clock, QSize(100, 100), QTime(14, 30));
    QCOMPARE(rendered(*faceOf(clock, 0)), reference(clock, 0, QStringLiteral("14")));
}

KEL_TEST_MAIN(tst_ClockPaint)
#include "tst_clockpaint.moc"
