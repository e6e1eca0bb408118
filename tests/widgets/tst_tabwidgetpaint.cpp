#include "mousedrag.h"
#include "tabbench.h"
#include "testmain.h"

#include <QPainter>
#include <QScreen>
#include <QStyleFactory>

#include <memory>

/// What is on the screen: arrows over hidden tabs, and the kept picture of the tabs.
class tst_TabWidgetPaint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void arrows_data();
    void arrows();
    void opacityOfAPixel_data();
    void opacityOfAPixel();
    void noArrows_data();
    void noArrows();
    void arrowsAreArtwork();

    void dragPaintsNoTabs();
    void screenShowsTheTruth();
    void pictureFollows_data();
    void pictureFollows();
    void pictureFollowsThePointer();
    void pictureOfAnEndlessBar();
    void movableTabsArePaintedEveryTime();
};

/// Paints every tab plainly white, so that what lies over the tabs can be measured.
class WhiteTabs : public QProxyStyle
{
public:
    explicit WhiteTabs(int height = 0)
        : m_height(height)
    {
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *target) const override
    {
        if (element == CE_TabBarTab)
            painter->fillRect(option->rect, Qt::white);
        else
            QProxyStyle::drawControl(element, option, painter, target);
    }
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *target) const override
    {
        QSize size = QProxyStyle::sizeFromContents(type, option, contents, target);
        if (type == CT_TabBarTab && m_height > 0)
            size.setHeight(m_height);
        return size;
    }
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *target) const override
    {
        const bool shifts = metric == PM_TabBarTabShiftVertical || metric == PM_TabBarTabOverlap;
        return shifts ? 0 : QProxyStyle::pixelMetric(metric, option, target);
    }

private:
    int m_height = 0;
};

static QImage pictureOf(QWidget &widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// Rounding may differ by a step or two where layers are put together in another order.
static bool isAlmostSame(const QImage &one, const QImage &other, int tolerance = 2)
{
    if (one.size() != other.size())
        return false;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a(one.pixel(x, y));
            const QColor b(other.pixel(x, y));
            if (qAbs(a.red() - b.red()) > tolerance || qAbs(a.green() - b.green()) > tolerance ||
                qAbs(a.blue() - b.blue()) > tolerance)
                return false;
        }
    }
    return true;
}

void tst_TabWidgetPaint::arrows_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("offset");       // Negative from the left end, else what is hidden to the right.
    QTest::addColumn<double>("opacities"); // Of the arrow at the end in question; the other one's is full or none.
    QTest::addColumn<QSize>("size");

    QTest::newRow("low") << 28 << -1 << 1 / 50.0 / 1.666 << QSize(10, 18);
    QTest::newRow("usual") << 32 << -20 << 20 / 50.0 / 1.666 << QSize(12, 22);
    QTest::newRow("usual, far") << 32 << -49 << 49 / 50.0 / 1.666 << QSize(12, 22);
    QTest::newRow("high, farther") << 60 << -51 << 1 / 1.666 << QSize(27, 50);
    QTest::newRow("high, all") << 60 << 0 << 0.0 << QSize(27, 50);
    QTest::newRow("right, one pixel left") << 32 << 1 << 1 / 50.0 / 1.666 << QSize(12, 22);
    QTest::newRow("right, some left") << 33 << 30 << 30 / 50.0 / 1.666 << QSize(12, 23);
    QTest::newRow("one pixel wide") << 12 << -20 << 20 / 50.0 / 1.666 << QSize(1, 2);
    QTest::newRow("no room for arrows") << 11 << -20 << 20 / 50.0 / 1.666 << QSize(0, 1);
    QTest::newRow("even less room") << 6 << -20 << 20 / 50.0 / 1.666 << QSize(0, 0);
}

/// Drags \a bar along. Without a window in between, since a pointer easily leaves a low bar.
static void dragBy(QTabBar &bar, int way)
{
    const QPoint from(100, 2);
    QMouseEvent press(QEvent::MouseButtonPress, from, bar.mapToGlobal(from), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&bar, &press);
    dragMouse(&bar, from + QPoint(way, 0));
}

void tst_TabWidgetPaint::arrows()
{
    QFETCH(int, height);
    QFETCH(int, offset);
    QFETCH(double, opacities);
    QFETCH(QSize, size);

    WhiteTabs style(height);
    TabBench bench(20);
    bench.widget.setStyle(&style);
    bench.bar().setStyle(&style);
    QCoreApplication::sendPostedEvents();
    QTRY_COMPARE(bench.bar().height(), height);
    const int hidden = bench.hidden();
    QVERIFY(hidden > 150);
    const bool nearRight = offset > 0;
    const int x = nearRight ? offset - hidden : offset;
    dragBy(bench.bar(), x);
    QCOMPARE(bench.bar().x(), x);

    QImage expected(bench.bar().size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (!size.isEmpty()) {
        painter.setOpacity(nearRight ? 1 / 1.666 : opacities);
        painter.drawImage(QRect(QPoint(-x, 5), size), QImage(QStringLiteral(":/icons/arrow-left.png")));
        painter.setOpacity(nearRight ? opacities : 1 / 1.666);
        painter.drawImage(QRect(QPoint(300 - x - size.width(), 5), size),
                          QImage(QStringLiteral(":/icons/arrow-right.png")));
    }
    painter.end();
    QVERIFY(isAlmostSame(pictureOf(bench.bar()), expected));
    bench.widget.setStyle(nullptr);
    bench.bar().setStyle(nullptr);
}

void tst_TabWidgetPaint::opacityOfAPixel_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<double>("opacity");

    QTest::newRow("a few pixels hidden") << -20 << 0.24;
    QTest::newRow("half way") << -25 << 0.3;
    QTest::newRow("at the limit") << -50 << 0.6;
    QTest::newRow("all hidden") << -300 << 0.6;
}

// The middle of the arrow is filled with one opaque colour.
void tst_TabWidgetPaint::opacityOfAPixel()
{
    QFETCH(int, offset);
    QFETCH(double, opacity);
    WhiteTabs style;
    TabBench bench(20);
    bench.bar().setStyle(&style);
    bench.widget.resize(bench.bar().sizeHint().width() - 300, 120);
    const QPoint from(bench.widget.width() - 1, 10);
    bench.press(from);
    bench.moveTo(from + QPoint(offset, 0));
    bench.release(from + QPoint(offset, 0));
    QCOMPARE(bench.bar().x(), offset);

    const QImage picture = pictureOf(bench.bar());
    const QImage arrow(QStringLiteral(":/icons/arrow-left.png"));
    const QColor ink(arrow.pixelColor(arrow.width() / 2, arrow.height() / 2));
    QCOMPARE(ink.alpha(), 255);
    const int arrowHeight = bench.bar().height() - 10;
    const QColor seen(picture.pixel(-offset + int(arrowHeight / 1.8) / 2, 5 + arrowHeight / 2));
    QVERIFY2(qAbs(seen.red() - (255 - opacity * (255 - ink.red()))) < 2, qPrintable(seen.name()));

    if (offset == -300) { // Nothing is hidden to the right.
        const QImage right = picture.copy(picture.width() - 30, 0, 30, picture.height());
        QImage white(right.size(), QImage::Format_RGB32);
        white.fill(Qt::white);
        QVERIFY(isAlmostSame(right, white, 0));
    }
    bench.bar().setStyle(nullptr);
}

void tst_TabWidgetPaint::noArrows_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<int>("side");

    QTest::newRow("few tabs") << 3 << int(QTabWidget::North);
    QTest::newRow("few tabs below") << 3 << int(QTabWidget::South);
    QTest::newRow("left") << 20 << int(QTabWidget::West);
    QTest::newRow("right") << 20 << int(QTabWidget::East);
}

void tst_TabWidgetPaint::noArrows()
{
    QFETCH(int, tabs);
    QFETCH(int, side);
    WhiteTabs style;
    TabBench bench(tabs);
    bench.bar().setStyle(&style);
    if (tabs > 3)
        bench.dragTo(-5); // That offset is kept at the side.
    bench.widget.setTabPosition(QTabWidget::TabPosition(side));
    const QImage picture = pictureOf(bench.bar());
    for (int i = 0; i < bench.widget.count(); ++i) {
        const QRect tab = bench.bar().tabRect(i).intersected(bench.bar().rect());
        if (tab.isEmpty())
            continue;
        QImage white(tab.size(), QImage::Format_RGB32);
        white.fill(Qt::white);
        QCOMPARE(picture.copy(tab), white);
    }
    bench.bar().setStyle(nullptr);
}

void tst_TabWidgetPaint::arrowsAreArtwork()
{
    const QImage left(QStringLiteral(":/icons/arrow-left.png"));
    const QImage right(QStringLiteral(":/icons/arrow-right.png"));
    QVERIFY(left.hasAlphaChannel());
    QVERIFY(left.height() >= 50); // Enough for the high bars of a panel.
    QVERIFY(left != right);
    QCOMPARE(left.size(), right.size());
    // The left one points to the left: it has no ink in its left corners.
    QCOMPARE(left.pixelColor(1, 1).alpha(), 0);
    QCOMPARE(left.pixelColor(1, left.height() - 2).alpha(), 0);
    QVERIFY(left.pixelColor(8, left.height() / 2).alpha() > 0);
    QCOMPARE(right.pixelColor(right.width() - 2, 1).alpha(), 0);
    QVERIFY(right.pixelColor(right.width() - 8, right.height() / 2).alpha() > 0);
}

/// Paints what is due, as the screen's next refresh does.
static void bringUpToDate(QWidget &window)
{
    QEvent request(QEvent::UpdateRequest);
    QApplication::sendEvent(&window, &request);
}

/// Counts what is painted on a widget.
class PaintCounter : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++paints;
            region += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
    int paints = 0;
    QRegion region;
};

void tst_TabWidgetPaint::dragPaintsNoTabs()
{
    PaintLog style;
    TabBench bench(20);
    bench.bar().setStyle(&style);
    PaintCounter bar;
    bench.bar().installEventFilter(&bar);
    PaintCounter page;
    bench.widget.currentWidget()->installEventFilter(&page);
    PaintCounter around;
    bench.widget.installEventFilter(&around);

    bench.press(QPoint(200, 10));
    bench.moveTo(QPoint(199, 10));
    bringUpToDate(bench.widget);
    style.tabs = 0;
    bar.paints = 0;
    page.paints = 0;
    around.region = QRegion();
    for (int x = 198; x > 100; x -= 7) {
        bench.moveTo(QPoint(x, 10));
        bringUpToDate(bench.widget);
    }
    QVERIFY(bench.bar().x() < -90);
    QVERIFY(bar.paints >= 10);
    QCOMPARE(style.tabs, 0);
    QCOMPARE(page.paints, 0);
    QVERIFY(around.region.boundingRect().bottom() <= bench.bar().geometry().bottom());
    bench.bar().setStyle(nullptr);
}

/// What stands in \a widget's window now, without painting it anew.
static QImage onScreen(KelTabWidget &widget)
{
    return widget.screen()->grabWindow(widget.winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

void tst_TabWidgetPaint::screenShowsTheTruth()
{
    TabBench bench(20);
    const auto isTrue = [&bench] {
        bringUpToDate(bench.widget);
        return isAlmostSame(onScreen(bench.widget), pictureOf(bench.widget));
    };
    QVERIFY(isTrue());
    bench.press(QPoint(200, 10));
    for (const int x : {190, 150, 151, 20, 280, 120}) {
        bench.moveTo(QPoint(x, 10));
        QVERIFY2(isTrue(), QByteArray::number(x).constData());
    }
    bench.release(QPoint(120, 10));
    QVERIFY(bench.bar().x() < 0);
    for (const int width : {310, 400, 250, 2000, 300}) { // The right arrow stays at the visible end.
        bench.widget.resize(width, 120);
        QCoreApplication::processEvents();
        QVERIFY2(isTrue(), QByteArray::number(width).constData());
    }
    bench.dragTo(-50);
    bench.widget.setCurrentIndex(2);
    QVERIFY(isTrue());
    bench.widget.setEnabled(false);
    QVERIFY(isTrue());
}

namespace
{

struct Change {
    const char *name;
    void (*apply)(KelTabWidget &widget);
};

QIcon iconOf(const QColor &color)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return pixmap;
}

void redden(KelTabWidget &widget, QPalette::ColorRole role)
{
    QPalette palette = widget.palette();
    palette.setColor(role, Qt::red);
    widget.setPalette(palette);
}

const Change Changes[] = {
    {"text", [](KelTabWidget &widget) { widget.setTabText(2, QStringLiteral("R8")); }},
    {"icon", [](KelTabWidget &widget) { widget.tabBar()->setTabIcon(2, iconOf(Qt::red)); }},
    {"colour of a text", [](KelTabWidget &widget) { widget.tabBar()->setTabTextColor(2, Qt::red); }},
    {"no icon", [](KelTabWidget &widget) { widget.setTabIcon(2, QIcon()); }},
    {"disabled tab", [](KelTabWidget &widget) { widget.setTabEnabled(2, false); }},
    {"hidden tab", [](KelTabWidget &widget) { widget.setTabVisible(2, false); }},
    {"another tab in front", [](KelTabWidget &widget) { widget.setCurrentIndex(2); }},
    {"another tab in front, without a signal",
     [](KelTabWidget &widget) {
         const QSignalBlocker silence(widget.tabBar());
         widget.tabBar()->setCurrentIndex(2);
     }},
    {"new tab", [](KelTabWidget &widget) { widget.insertTab(2, new QWidget, QStringLiteral("New")); }},
    {"removed tab", [](KelTabWidget &widget) { widget.removeTab(2); }},
    {"moved tab", [](KelTabWidget &widget) { widget.tabBar()->moveTab(1, 3); }},
    {"disabled widget", [](KelTabWidget &widget) { widget.setEnabled(false); }},
    {"disabled bar", [](KelTabWidget &widget) { widget.tabBar()->setEnabled(false); }},
    {"palette", [](KelTabWidget &widget) { redden(widget, QPalette::WindowText); }},
    {"background", [](KelTabWidget &widget) { redden(widget, QPalette::Window); }},
    {"font", [](KelTabWidget &widget) { widget.setFont(QFont(QStringLiteral("DejaVu Serif"), 9)); }},
    {"style sheet", [](KelTabWidget &widget) { widget.setStyleSheet(QStringLiteral("QTabBar::tab { color: red; }")); }},
    {"triangular", [](KelTabWidget &widget) { widget.setTabShape(QTabWidget::Triangular); }},
    {"below", [](KelTabWidget &widget) { widget.setTabPosition(QTabWidget::South); }},
    {"closable", [](KelTabWidget &widget) { widget.setTabsClosable(true); }},
    {"label on a tab",
     [](KelTabWidget &widget) {
         widget.tabBar()->setTabButton(2, QTabBar::LeftSide, new QLabel(QStringLiteral("on")));
     }},
    {"from right to left", [](KelTabWidget &widget) { widget.setLayoutDirection(Qt::RightToLeft); }},
    {"focus",
     [](KelTabWidget &widget) {
         widget.setAttribute(Qt::WA_KeyboardFocusChange);
         widget.tabBar()->setFocus(Qt::TabFocusReason);
     }},
    {"another style", [](KelTabWidget &widget) { widget.tabBar()->setStyle(QApplication::style()); }},
};

} // namespace

void tst_TabWidgetPaint::pictureFollows_data()
{
    QTest::addColumn<int>("index");

    int index = 0;
    for (const Change &change : Changes)
        QTest::newRow(change.name) << index++;
}

void tst_TabWidgetPaint::pictureFollows()
{
    QFETCH(int, index);
    const std::unique_ptr<QStyle> windows(QStyleFactory::create(QStringLiteral("Windows")));
    TabBench bench(20);
    QApplication::setActiveWindow(&bench.widget);
    bench.widget.setFocusPolicy(Qt::NoFocus);
    bench.bar().clearFocus();
    bench.widget.setTabIcon(2, iconOf(Qt::blue));
    if (qstrcmp(QTest::currentDataTag(), "another style") == 0)
        bench.bar().setStyle(windows.get());
    bench.dragTo(-30);
    const QImage before = pictureOf(bench.bar());
    QCOMPARE(pictureOf(bench.bar()), before);

    Changes[index].apply(bench.widget);
    QCoreApplication::sendPostedEvents();
    const QImage after = pictureOf(bench.bar());
    QVERIFY(bench.hidden() > 0);

    bench.bar().setMovable(true); // Such a bar is painted every time.
    QVERIFY(isAlmostSame(after, pictureOf(bench.bar())));
    QVERIFY(!isAlmostSame(after, before, 20));
}

void tst_TabWidgetPaint::pictureFollowsThePointer()
{
    TabBench bench(20);
    bench.widget.setStyleSheet(QStringLiteral("QTabBar::tab:hover { color: red; }"));
    bench.dragTo(-30);
    bench.moveTo(QPoint(150, 100));
    const QImage none = pictureOf(bench.bar());
    bench.moveTo(bench.middleOf(2));
    const QImage second = pictureOf(bench.bar());
    QVERIFY(second != none);
    bench.moveTo(bench.middleOf(3));
    const QImage third = pictureOf(bench.bar());
    QVERIFY(third != second);
    bench.moveTo(QPoint(150, 100));
    QCOMPARE(pictureOf(bench.bar()), none);

    bench.moveTo(bench.middleOf(3));
    bench.bar().setMovable(true);
    QVERIFY(isAlmostSame(third, pictureOf(bench.bar())));
}

void tst_TabWidgetPaint::pictureOfAnEndlessBar()
{
    PaintLog style;
    TabBench bench(20);
    bench.bar().setStyle(&style);
    bench.widget.setTabText(0, QString(4000, QLatin1Char('m')));
    QTRY_VERIFY(bench.bar().width() > 32000);
    bench.dragTo(-120);
    style.tabs = 0;
    pictureOf(bench.widget);
    pictureOf(bench.widget);
    QVERIFY(style.tabs >= 40); // No picture is that large.
    bench.bar().setStyle(nullptr);
}

void tst_TabWidgetPaint::movableTabsArePaintedEveryTime()
{
    PaintLog style;
    TabBench bench(20);
    bench.bar().setStyle(&style);
    pictureOf(bench.bar());
    style.tabs = 0;
    pictureOf(bench.bar());
    QCOMPARE(style.tabs, 0);
    bench.bar().setMovable(true);
    pictureOf(bench.bar());
    QCOMPARE(style.tabs, 20);
    bench.bar().setStyle(nullptr);
}

KEL_TEST_MAIN(tst_TabWidgetPaint)
#include "tst_tabwidgetpaint.moc"
