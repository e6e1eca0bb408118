#include "testmain.h"

#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <kelslider.h>
#include <scaling.h>

#include <cmath>
#include <functional>

class tst_KelSliderBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fill_data();
    void fill();
    void emptyRangePaintsNothing();
    void unknownStyleFillsNothing();
    void zeroLine_data();
    void zeroLine();
    void colorsOfGroups();
    void frameFollowsChanges_data();
    void frameFollowsChanges();
    void outlineIsRounded();
    void captionInTheBar();
    void captionIsNotInTheBarOtherwise();
    void captionFollowsItsSize();
    void captionKeepsItsTails();

    void press_data();
    void press();
    void shareIsSinglePrecision();
    void everyButtonCounts_data();
    void everyButtonCounts();
    void dragFollows();
    void touchIsAMouse();
    void moveWithoutButton();
    void readOnlyConsumes();
    void disabledLetsThrough();
    void equalBounds();

    void barIsAsHighAsTwoIcons();
    void fontChangeIsFollowed();
};

namespace
{

const QColor Fill(10, 20, 200);
const QColor Line(200, 20, 10);
const QColor Empty(250, 250, 250);
const QColor TextColor(0, 120, 0);
const QColor TextOnFill(250, 250, 0);

/// A slider with colours that tell its parts apart and a bar of a given size.
class Bench
{
public:
    explicit Bench(const QSize &size = QSize(200, 40))
    {
        QPalette palette;
        palette.setColor(QPalette::Window, Empty);
        palette.setColor(QPalette::Highlight, Fill);
        palette.setColor(QPalette::Dark, Line);
        palette.setColor(QPalette::Text, TextColor);
        palette.setColor(QPalette::HighlightedText, TextOnFill);
        slider.setPalette(palette);
        slider.ensurePolished();
        bar = slider.findChild<QWidget *>(QStringLiteral("bar"));
        bar->setMinimumSize(size);
        bar->setFixedSize(size);
        slider.resize(700, 120);
    }

    QImage picture()
    {
        QImage image(bar->size(), QImage::Format_ARGB32);
        image.fill(Empty);
        bar->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
        return image;
    }

    /// Columns of the bar's middle row, between the outlines, that have the fill's colour.
    QPair<int, int> filledColumns()
    {
        const QImage image = picture();
        int first = -1;
        int last = -1;
        for (int x = 2; x < image.width() - 2; ++x) {
            if (image.pixelColor(x, image.height() / 2) != Fill)
                continue;
            first = first < 0 ? x : first;
            last = x;
        }
        return {first, last};
    }

    bool send(QEvent::Type type, double x, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, QPointF(x, 5), buttons == Qt::LeftButton ? Qt::LeftButton : Qt::NoButton, buttons,
                          Qt::NoModifier);
        event.setAccepted(false);
        isConsumed = static_cast<QObject &>(slider).eventFilter(bar, &event);
        return isConsumed;
    }

    KelSlider slider;
    QWidget *bar = nullptr;
    bool isConsumed = false;
};

int pixelsOf(const QImage &image, const QColor &color, const QRect &area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

/// The zero line blurs two columns beside a fill that begins there.
bool isNear(int value, double wanted)
{
    return std::abs(value - wanted) <= 2.0;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(Bench &)>)

void tst_KelSliderBar::fill_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");

    const int zero = KelSlider::From0;
    const int left = KelSlider::MinToValue;
    const int right = KelSlider::MaxToValue;
    QTest::newRow("left") << left << 0.0 << 200.0 << 50.0 << 0.0 << 0.25;
    QTest::newRow("left, range across zero") << left << -100.0 << 100.0 << 50.0 << 0.0 << 0.75;
    QTest::newRow("left, at the minimum") << left << 0.0 << 200.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("left, at the maximum") << left << 0.0 << 200.0 << 200.0 << 0.0 << 1.0;
    QTest::newRow("right") << right << 0.0 << 200.0 << 50.0 << 0.25 << 1.0;
    QTest::newRow("right, at the maximum") << right << 0.0 << 200.0 << 200.0 << 0.0 << 0.0;
    QTest::newRow("zero, positive range") << zero << 100.0 << 200.0 << 150.0 << 0.0 << 0.5;
    QTest::newRow("zero, range from 0") << zero << 0.0 << 200.0 << 50.0 << 0.0 << 0.25;
    QTest::newRow("zero, value above") << zero << -100.0 << 300.0 << 150.0 << 0.25 << 0.625;
    QTest::newRow("zero, value below") << zero << -100.0 << 300.0 << -50.0 << 0.125 << 0.25;
    QTest::newRow("zero, value at the minimum") << zero << -100.0 << 300.0 << -100.0 << 0.0 << 0.25;
    QTest::newRow("zero, value 0") << zero << -100.0 << 300.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("zero, range up to 0") << zero << -200.0 << 0.0 << -50.0 << 0.75 << 1.0;
    QTest::newRow("zero, negative range") << zero << -200.0 << -100.0 << -150.0 << 0.5 << 1.0;
}

void tst_KelSliderBar::fill()
{
    QFETCH(int, style);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, value);
    QFETCH(double, from);
    QFETCH(double, to);

    for (const QSize &size : {QSize(100, 30), QSize(200, 40), QSize(331, 61)}) {
        for (const bool isEnabled : {true, false}) {
            Bench bench(size);
            bench.slider.setBarStyle(KelSlider::BarStyle(style));
            bench.slider.setMinimum(minimum);
            bench.slider.setMaximum(maximum);
            bench.slider.setValue(value);
            bench.slider.setEnabled(isEnabled);
            QCOMPARE(bench.bar->size(), size);

            const QPair<int, int> columns = bench.filledColumns();
            if (from == to) {
                QCOMPARE(columns, qMakePair(-1, -1));
                continue;
            }
            const double first = std::max(2.0, from * size.width());
            const double last = std::min(size.width() - 3.0, to * size.width() - 1.0);
            QVERIFY2(isNear(columns.first, first), qPrintable(QString::number(columns.first)));
            QVERIFY2(isNear(columns.second, last), qPrintable(QString::number(columns.second)));
        }
    }
}

void tst_KelSliderBar::emptyRangePaintsNothing()
{
    Bench bench;
    bench.slider.setTitle(QStringLiteral("%v"));
    bench.slider.setTitleInsideBar(true);
    QVERIFY(bench.picture().pixelColor(100, 0) != Empty);
    bench.slider.setMaximum(0);

    const QImage image = bench.picture();
    QCOMPARE(pixelsOf(image, Empty, image.rect()), image.width() * image.height());
}

void tst_KelSliderBar::unknownStyleFillsNothing()
{
    Bench bench;
    bench.slider.setValue(100);
    bench.slider.setBarStyle(KelSlider::BarStyle(17));

    QCOMPARE(bench.filledColumns(), qMakePair(-1, -1));
    QVERIFY(bench.picture().pixelColor(100, 0) != Empty);
}

void tst_KelSliderBar::zeroLine_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<int>("column");

    QTest::newRow("in the middle") << int(KelSlider::From0) << -100.0 << 100.0 << 100;
    QTest::newRow("truncated") << int(KelSlider::From0) << -100.0 << 260.0 << 55; // 55.56
    QTest::newRow("not from the left") << int(KelSlider::MinToValue) << -100.0 << 100.0 << -1;
    QTest::newRow("not from the right") << int(KelSlider::MaxToValue) << -100.0 << 100.0 << -1;
    QTest::newRow("not up to zero") << int(KelSlider::From0) << -100.0 << 0.0 << -1;
}

void tst_KelSliderBar::zeroLine()
{
    QFETCH(int, style);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(int, column);
    Bench bench;
    bench.slider.setBarStyle(KelSlider::BarStyle(style));
    bench.slider.setMinimum(minimum);
    bench.slider.setMaximum(maximum);
    bench.slider.setValue(style == KelSlider::From0 ? 0.0 : -50.0);
    if (maximum <= 0.0)
        bench.slider.setValue(0);

    // the line lies half on either side of its column's edge
    const QImage image = bench.picture();
    const QRect inside = image.rect().adjusted(3, 3, -3, -3);
    QList<int> columns;
    for (int x = inside.left(); x <= inside.right(); ++x) {
        const QColor top = image.pixelColor(x, inside.top());
        if (top != Empty && top != Fill && top == image.pixelColor(x, inside.bottom()) && top.red() > 150)
            columns += x;
    }
    columns.removeAll(bench.filledColumns().second + 1); // the blended edge of a fill
    if (column < 0) {
        QVERIFY(columns.isEmpty());
        return;
    }
    QVERIFY(!columns.isEmpty());
    QVERIFY2(columns.contains(column) || columns.contains(column - 1), qPrintable(QString::number(columns.first())));
    QVERIFY(columns.size() <= 2);
    for (int x : columns)
        QVERIFY(x == column || x == column - 1);
}

void tst_KelSliderBar::colorsOfGroups()
{
    const QColor disabledLine(0, 255, 255);
    Bench bench;
    QPalette palette = bench.slider.palette();
    palette.setColor(QPalette::Disabled, QPalette::Highlight, Qt::black);
    palette.setColor(QPalette::Disabled, QPalette::Dark, disabledLine);
    bench.slider.setPalette(palette);
    bench.slider.setValue(100);
    bench.slider.disable();

    const QImage image = bench.picture();
    QCOMPARE(image.pixelColor(20, 20), Fill);
    QVERIFY(image.pixelColor(150, 0).red() < 200); // the line has its disabled colour
    QVERIFY(image.pixelColor(150, 0).green() > 240);
}

void tst_KelSliderBar::frameFollowsChanges_data()
{
    using Change = std::function<void(Bench &)>;
    QTest::addColumn<Change>("change");

    QTest::newRow("size") << Change([](Bench &bench) { bench.bar->setFixedSize(260, 50); });
    QTest::newRow("zero line moves") << Change([](Bench &bench) { bench.slider.setMaximum(300); });
    QTest::newRow("zero line goes") << Change([](Bench &bench) { bench.slider.setBarStyle(KelSlider::MinToValue); });
    QTest::newRow("disabled") << Change([](Bench &bench) { bench.slider.disable(); });
    QTest::newRow("palette") << Change([](Bench &bench) {
        QPalette palette = bench.slider.palette();
        palette.setColor(QPalette::Dark, Qt::magenta);
        bench.slider.setPalette(palette);
    });
}

// The frame's picture is kept between paintings; whatever changes it must show at once.
void tst_KelSliderBar::frameFollowsChanges()
{
    QFETCH(std::function<void(Bench &)>, change);
    const auto prepare = [](Bench &bench) {
        QPalette palette = bench.slider.palette();
        palette.setColor(QPalette::Disabled, QPalette::Dark, Qt::cyan);
        bench.slider.setPalette(palette);
        bench.slider.setMinimum(-100);
        bench.slider.setMaximum(100);
    };
    Bench used;
    prepare(used);
    const QImage before = used.picture();
    change(used);
    Bench fresh;
    prepare(fresh);
    change(fresh);

    QVERIFY(used.picture() != before);
    QCOMPARE(used.picture(), fresh.picture());
}

void tst_KelSliderBar::outlineIsRounded()
{
    Bench bench;
    const QImage image = bench.picture();

    QVERIFY(image.pixelColor(100, 0) != Empty);
    QVERIFY(image.pixelColor(0, 20) != Empty);
    QCOMPARE(image.pixelColor(0, 0), Empty);
    QCOMPARE(image.pixelColor(100, 20), Empty);
    // five pixels at the reference resolution
    const int radius = static_cast<int>(5 * appScale(&bench.slider));
    QVERIFY(image.pixelColor(radius + 1, 0) != Empty);
}

void tst_KelSliderBar::captionInTheBar()
{
    Bench bench(QSize(300, 60));
    bench.slider.setTitle(QStringLiteral("MMMMMMMM%v"));
    bench.slider.setTitleSize(0.7);
    bench.slider.setTitleInsideBar(true);
    bench.slider.setMaximum(200);
    bench.slider.setValue(100);

    const QImage image = bench.picture();
    const QRect left(60, 10, 88, 40);
    const QRect right(152, 10, 88, 40);
    QVERIFY(pixelsOf(image, TextOnFill, left) > 20);
    QCOMPARE(pixelsOf(image, TextColor, left), 0);
    QVERIFY(pixelsOf(image, TextColor, right) > 20);
    QCOMPARE(pixelsOf(image, TextOnFill, right), 0);
}

void tst_KelSliderBar::captionIsNotInTheBarOtherwise()
{
    Bench bench(QSize(300, 60));
    bench.slider.setTitle(QStringLiteral("MMMMMMMM%v"));
    bench.slider.setValue(100);

    const QImage image = bench.picture();
    QCOMPARE(pixelsOf(image, TextColor, image.rect()) + pixelsOf(image, TextOnFill, image.rect()), 0);
}

void tst_KelSliderBar::captionFollowsItsSize()
{
    Bench bench(QSize(300, 60));
    bench.slider.setTitle(QStringLiteral("M"));
    bench.slider.setTitleInsideBar(true);
    const auto textPixels = [&bench](double size) {
        bench.slider.setTitleSize(size);
        const QImage image = bench.picture();
        return pixelsOf(image, TextColor, image.rect());
    };

    QVERIFY(textPixels(0.9) > textPixels(0.5));
    QVERIFY(textPixels(0.5) > 0);
    QCOMPARE(textPixels(0.0), 0);
}

void tst_KelSliderBar::captionKeepsItsTails()
{
    Bench bench(QSize(300, 60));
    bench.slider.setTitle(QStringLiteral("gggg"));
    bench.slider.setTitleInsideBar(true);
    const QImage image = bench.picture();

    // The text box ends at row 45, a "g" of this size some rows below.
    const QRect below(60, 45, 180, 12);
    int changed = 0;
    for (int y = below.top(); y <= below.bottom(); ++y) {
        for (int x = below.left(); x <= below.right(); ++x)
            changed += image.pixelColor(x, y) == Empty ? 0 : 1;
    }
    QVERIFY(changed > 0);
}

void tst_KelSliderBar::press_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("value");

    QTest::newRow("left edge") << 0.0 << -100.0;
    QTest::newRow("a quarter") << 50.0 << 0.0;
    QTest::newRow("right edge") << 200.0 << 300.0;
    QTest::newRow("left of it") << -50.0 << -100.0;
    QTest::newRow("right of it") << 999.0 << 300.0;
    QTest::newRow("rounded up") << 50.5 << 2.0;
    QTest::newRow("rounded down") << 50.4 << 0.0;
}

void tst_KelSliderBar::press()
{
    QFETCH(double, x);
    QFETCH(double, value);
    Bench bench;
    bench.slider.setMinimum(-100);
    bench.slider.setMaximum(300);
    bench.slider.setValue(1);

    QVERIFY(bench.send(QEvent::MouseButtonPress, x, Qt::LeftButton));
    QCOMPARE(bench.slider.value(), value);
}

void tst_KelSliderBar::shareIsSinglePrecision()
{
    Bench bench(QSize(300, 40));
    bench.slider.setPrecision(0.001);
    bench.slider.setMaximum(300000);
    bench.send(QEvent::MouseButtonPress, 100, Qt::LeftButton);

    const double exact = 300000.0 / 3.0;
    const double single = static_cast<double>(100.0F / 300.0F) * 300000.0;
    QVERIFY(std::abs(single - exact) > 0.002);
    QVERIFY(std::abs(bench.slider.value() - single) <= 0.0006);
}

void tst_KelSliderBar::everyButtonCounts_data()
{
    QTest::addColumn<int>("button");

    QTest::newRow("left") << int(Qt::LeftButton);
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
    QTest::newRow("side") << int(Qt::BackButton);
}

void tst_KelSliderBar::everyButtonCounts()
{
    QFETCH(int, button);
    Bench bench;
    bench.slider.setMaximum(200);

    QVERIFY(bench.send(QEvent::MouseButtonPress, 70, Qt::MouseButton(button)));
    QCOMPARE(bench.slider.value(), 70.0);
    QVERIFY(bench.send(QEvent::MouseMove, 90, Qt::MouseButton(button)));
    QCOMPARE(bench.slider.value(), 90.0);
}

void tst_KelSliderBar::dragFollows()
{
    Bench bench;
    bench.slider.setMaximum(200);
    bench.slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bench.slider));
    QSignalSpy spy(&bench.slider, QOverload<double>::of(&KelSlider::valueChanged));

    QTest::mousePress(bench.bar, Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
    QCOMPARE(bench.slider.value(), 20.0);
    QMouseEvent move(QEvent::MouseMove, QPointF(150, 10), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(bench.bar, &move);
    QCOMPARE(bench.slider.value(), 150.0);
    QTest::mouseRelease(bench.bar, Qt::LeftButton, Qt::NoModifier, QPoint(199, 10));
    QCOMPARE(bench.slider.value(), 150.0);
    QCOMPARE(spy.count(), 2);
}

void tst_KelSliderBar::touchIsAMouse()
{
    Bench bench;
    bench.slider.setMaximum(200);
    bench.slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bench.slider));
    QTouchDevice *screen = QTest::createTouchDevice(); // stays with the application

    QTest::touchEvent(&bench.slider, screen).press(0, QPoint(60, 10), bench.bar);
    QTRY_COMPARE(bench.slider.value(), 60.0);
    QTest::touchEvent(&bench.slider, screen).move(0, QPoint(110, 10), bench.bar);
    QTRY_COMPARE(bench.slider.value(), 110.0);
    QTest::touchEvent(&bench.slider, screen).release(0, QPoint(110, 10), bench.bar);
    QCOMPARE(bench.slider.value(), 110.0);
}

void tst_KelSliderBar::moveWithoutButton()
{
    Bench bench;
    QVERIFY(bench.send(QEvent::MouseMove, 100, Qt::NoButton));
    QCOMPARE(bench.slider.value(), 0.0);
}

void tst_KelSliderBar::readOnlyConsumes()
{
    Bench bench;
    bench.slider.setReadOnly(true);
    QVERIFY(bench.send(QEvent::MouseButtonPress, 100, Qt::LeftButton));
    QVERIFY(bench.send(QEvent::MouseMove, 120, Qt::LeftButton));
    QCOMPARE(bench.slider.value(), 0.0);
}

void tst_KelSliderBar::disabledLetsThrough()
{
    Bench bench;
    bench.slider.disable();
    QVERIFY(!bench.send(QEvent::MouseButtonPress, 100, Qt::LeftButton));
    QVERIFY(!bench.send(QEvent::MouseMove, 100, Qt::LeftButton));
    QCOMPARE(bench.slider.value(), 0.0);

    bench.slider.enable();
    QVERIFY(!bench.send(QEvent::MouseButtonRelease, 100, Qt::LeftButton));
    QCOMPARE(bench.slider.value(), 0.0);
}

void tst_KelSliderBar::equalBounds()
{
    Bench bench;
    bench.slider.setMinimum(5);
    bench.slider.setMaximum(5);
    bench.send(QEvent::MouseButtonPress, 150, Qt::LeftButton);
    QCOMPARE(bench.slider.value(), 5.0);
}

void tst_KelSliderBar::barIsAsHighAsTwoIcons()
{
    KelSlider slider;
    slider.ensurePolished();
    const auto *bar = slider.findChild<QWidget *>(QStringLiteral("bar"));

    QCOMPARE(bar->minimumSize(), preferredIconSize(2.0F, &slider));
}

void tst_KelSliderBar::fontChangeIsFollowed()
{
    KelSlider slider;
    slider.ensurePolished();
    auto *bar = slider.findChild<QWidget *>(QStringLiteral("bar"));
    bar->setMinimumSize(1, 1);
    QFont font = slider.font();
    font.setPointSize(font.pointSize() + 5);
    slider.setFont(font);

    QCOMPARE(bar->minimumSize(), preferredIconSize(2.0F, &slider));
}

KEL_TEST_MAIN(tst_KelSliderBar)
#include "tst_kelsliderbar.moc"
