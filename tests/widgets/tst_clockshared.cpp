#include "clockreference.h"
#include "drawnpictures.h"
#include "testmain.h"

#include <functional>

/// Pictures that the faces of clocks share which look alike.
class tst_ClockShared : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void alikeFacesShareTheirPicture();
    void otherFontsAreOtherPictures();
    void memoryIsBounded();
    void pickLeavesOthersAsTheyAre();
    void facesThatDifferShareNothing_data();
    void facesThatDifferShareNothing();
    void placeBetweenPixelsCounts();
    void pickedNumbersAreAsPaintedWhole_data();
    void pickedNumbersAreAsPaintedWhole();
};

using Change = std::function<void(KelClock &)>;
Q_DECLARE_METATYPE(Change)

namespace
{

constexpr QSize UsualSize(240, 120);

qint64 pictureOf(KelClock &clock, int face)
{
    DrawnPictures device(faceOf(clock, face)->size());
    faceOf(clock, face)->render(&device, QPoint(), QRegion(), QWidget::RenderFlags());
    return device.keys(true).value(0);
}

/// Lays out \a clock at \a size; it shows no time.
void layOut(KelClock &clock, const QSize &size = UsualSize)
{
    for (int face = 0; face < 2; ++face)
        faceOf(clock, face)->setFixedSize(size.width() / 2, size.height());
    clock.adjustSize();
    clock.layout()->activate();
}

/// Both faces of \a clock.
QImage picture(KelClock &clock, qreal pixelRatio = 1.0)
{
    QImage image((QSizeF(clock.size()) * pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(Qt::transparent);
    clock.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

void show(KelClock &clock, const QTime &time)
{
    clock.setTime(time);
    finishAnimations(clock);
}

QImage paintedAnew(const Change &change, qreal pixelRatio = 1.0)
{
    KelClock clock;
    layOut(clock);
    change(clock);
    finishAnimations(clock);
    return picture(clock, pixelRatio);
}

void forgetPictures()
{
    emit qGuiApp->fontDatabaseChanged();
}

} // namespace

void tst_ClockShared::init()
{
    forgetPictures();
}

void tst_ClockShared::alikeFacesShareTheirPicture()
{
    KelClock one;
    KelClock two;
    layOut(one);
    layOut(two);
    const qint64 hours = pictureOf(one, 0);
    const qint64 minutes = pictureOf(one, 1);
    QVERIFY(hours != 0);
    QVERIFY(hours != minutes);
    QCOMPARE(pictureOf(two, 0), hours);
    QCOMPARE(pictureOf(two, 1), minutes);

    // No number of a face is 31.
    show(two, QTime(0, 31));
    QCOMPARE(pictureOf(two, 1), minutes);
    QVERIFY(pictureOf(two, 0) != hours);
}

void tst_ClockShared::otherFontsAreOtherPictures()
{
    KelClock one;
    KelClock two;
    layOut(one);
    layOut(two);
    const qint64 hours = pictureOf(one, 0);
    forgetPictures();
    QVERIFY(pictureOf(two, 0) != hours);
    QCOMPARE(pictureOf(one, 0), hours); // A picture in use stays.
}

void tst_ClockShared::memoryIsBounded()
{
    KelClock one;
    layOut(one);
    const qint64 hours = pictureOf(one, 0);
    for (int i = 0; i < 5; ++i) { // Each face has a picture of a mebibyte.
        KelClock large;
        layOut(large, QSize(1060 + 2 * i, 530));
        picture(large);
    }
    KelClock two;
    layOut(two);
    QVERIFY(pictureOf(two, 0) != hours);
}

void tst_ClockShared::pickLeavesOthersAsTheyAre()
{
    const auto atHalfPastTwo = [](KelClock &clock) { show(clock, QTime(14, 30)); };
    const auto atTenToSix = [](KelClock &clock) { show(clock, QTime(5, 50)); };
    const QImage never = paintedAnew([](KelClock &) {});
    forgetPictures();
    const QImage halfPastTwo = paintedAnew(atHalfPastTwo);
    forgetPictures();
    const QImage tenToSix = paintedAnew(atTenToSix);
    QVERIFY(never != halfPastTwo);
    QVERIFY(tenToSix != halfPastTwo);

    KelClock clock;
    layOut(clock);
    QCOMPARE(picture(clock), never);
    show(clock, QTime(14, 30));
    QCOMPARE(picture(clock), halfPastTwo);
    show(clock, QTime(5, 50));
    QCOMPARE(picture(clock), tenToSix);
    QCOMPARE(paintedAnew([](KelClock &) {}), never);
    QCOMPARE(paintedAnew(atHalfPastTwo), halfPastTwo);
}

void tst_ClockShared::facesThatDifferShareNothing_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<qreal>("pixelRatio");

    const auto put = [](const char *name, const Change &change, qreal pixelRatio = 1.0) {
        QTest::newRow(name) << change << pixelRatio;
    };
    const auto withFont = [](const std::function<void(QFont &)> &changeFont) {
        return [changeFont](KelClock &clock) {
            QFont font = clock.font();
            changeFont(font);
            clock.setFont(font);
        };
    };
    const auto withColors = [](const QColor &window, const QColor &text) {
        return [window, text](KelClock &clock) {
            QPalette palette = clock.palette();
            palette.setColor(QPalette::Window, window);
            palette.setColor(QPalette::WindowText, text);
            clock.setPalette(palette);
        };
    };
    put("width", [](KelClock &clock) { layOut(clock, UsualSize + QSize(10, 0)); });
    put("height", [](KelClock &clock) { layOut(clock, UsualSize - QSize(0, 10)); });
    put("italic font", withFont([](QFont &font) { font.setItalic(true); }));
    put("other family", withFont([](QFont &font) { font.setFamily("DejaVu Sans Mono"); }));
    put("underlined font", withFont([](QFont &font) { font.setUnderline(true); }));
    put("spaced font", withFont([](QFont &font) { font.setLetterSpacing(QFont::AbsoluteSpacing, 3.0); }));
    put("dark window", withColors(Qt::black, Qt::white));
    put(
        "two pixels for one", [](KelClock &) {}, 2.0);
    put(
        "pixels that are not whole", [](KelClock &) {}, 1.5);
}

// A clock beside one that differs from it in one thing looks as it does alone.
void tst_ClockShared::facesThatDifferShareNothing()
{
    QFETCH(Change, change);
    QFETCH(qreal, pixelRatio);
    const QImage alone = paintedAnew(change, pixelRatio);
    forgetPictures();
    const QImage other = paintedAnew([](KelClock &) {});
    QCOMPARE(paintedAnew(change, pixelRatio), alone);
    QVERIFY(other != alone);
}

// A fractional scale puts the corner of a face between two pixels.
void tst_ClockShared::placeBetweenPixelsCounts()
{
    const auto paintedAt = [](int x) {
        KelClock clock;
        layOut(clock);
        QImage image(400, 250, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(1.5);
        image.fill(Qt::transparent);
        clock.render(&image, QPoint(x, 0), QRegion(), QWidget::DrawChildren);
        return image;
    };
    const QImage alone = paintedAt(1);
    forgetPictures();
    QVERIFY(paintedAt(0) != alone);
    QCOMPARE(paintedAt(1), alone);
}

void tst_ClockShared::pickedNumbersAreAsPaintedWhole_data()
{
    QTest::addColumn<QFont>("font");
    QTest::addColumn<int>("side");

    const auto put = [](const char *name, const std::function<void(QFont &)> &change) {
        QFont font = QApplication::font();
        change(font);
        for (const int side : {34, 61, 130, 300})
            QTest::addRow("%s, %d", name, side) << font << side;
    };
    put("usual", [](QFont &) {});
    put("other family", [](QFont &font) { font.setFamily("DejaVu Serif"); });
    put("equal widths, italic", [](QFont &font) {
        font.setFamily("DejaVu Sans Mono");
        font.setItalic(true);
    });
    put("underlined", [](QFont &font) { font.setUnderline(true); });
    put("overlined", [](QFont &font) { font.setOverline(true); });
    put("struck out", [](QFont &font) { font.setStrikeOut(true); });
    put("spaced", [](QFont &font) { font.setLetterSpacing(QFont::AbsoluteSpacing, 40.0); });
    put("wide", [](QFont &font) { font.setStretch(200); });
}

// Only what is around a picked number is painted anew; nobody sees where that ends.
void tst_ClockShared::pickedNumbersAreAsPaintedWhole()
{
    QFETCH(QFont, font);
    QFETCH(int, side);
    KelClock clock;
    clock.setFont(font);
    for (int hour = 1; hour <= 24; ++hour) { // at midnight last, since that is what a new clock shows
        const QTime time(hour % 24, 5 * hour % 60);
        arrange(clock, QSize(side, side), time);
        for (int face = 0; face < 2; ++face) {
            const QImage expected = reference(clock, face, textOf(time, face));
            const QImage picked = rendered(*faceOf(clock, face));
            QVERIFY2(picked == expected, qPrintable(time.toString() + QString::number(farthest(picked, expected))));
        }
    }
}

KEL_TEST_MAIN(tst_ClockShared)
#include "tst_clockshared.moc"
