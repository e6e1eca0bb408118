#include "mousedrag.h"
#include "tabbench.h"
#include "testmain.h"

#include <QSignalSpy>

#include <memory>

/// The bar under a finger: where it goes, and what counts as a tap.
class tst_TabWidgetDrag : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fewTabs_data();
    void fewTabs();
    void manyTabsAreSelectedAtTheRelease();
    void draggedFully();
    void barFollowsThePointer();
    void clampedOffsetIsKept();
    void fractionsAreRounded();
    void tap_data();
    void tap();
    void tapSelectsWhereItEnds();
    void tapAfterADrag();
    void tapOfAnotherButton_data();
    void tapOfAnotherButton();
    void tapKeepsKeysAndButtons();
    void styleThatSelectsAtTheRelease();
    void doubleClickIsAPress();
    void moveWithoutButton();
    void baseGetsEveryMove();
    void twoButtons();

    void barIsAsWideAsItsTabs_data();
    void barIsAsWideAsItsTabs();
    void widerWidgetClampsTheOffset();
    void longerTextMakesTheBarDraggable();
    void noRoomIsMadeAtTheSides();
    void tabsAtASideAreNotDragged();
    void tabsThatComeDuringAPress();
    void needMoveBar();
    void deletedWhileDragged_data();
    void deletedWhileDragged();
};

void tst_TabWidgetDrag::fewTabs_data()
{
    QTest::addColumn<int>("way");

    QTest::newRow("tap") << 0;
    QTest::newRow("long way") << 100;
}

void tst_TabWidgetDrag::fewTabs()
{
    QFETCH(int, way);
    TabBench bench(3);
    QCOMPARE(bench.bar().width(), bench.widget.width());
    QSignalSpy clicked(&bench.bar(), &QTabBar::tabBarClicked);

    bench.press(bench.middleOf(1));
    QCOMPARE(bench.widget.currentIndex(), 1);
    QCOMPARE(clicked.size(), 1);
    bench.moveTo(bench.middleOf(1) + QPoint(way, 0));
    QCOMPARE(bench.bar().x(), 0);
    bench.release(bench.middleOf(1) + QPoint(way, 0));
    QCOMPARE(bench.widget.currentIndex(), 1);
    QCOMPARE(clicked.size(), 1);
}

void tst_TabWidgetDrag::manyTabsAreSelectedAtTheRelease()
{
    TabBench bench(20);
    QSignalSpy clicked(&bench.bar(), &QTabBar::tabBarClicked);
    bench.press(bench.middleOf(2));
    QCOMPARE(bench.widget.currentIndex(), 0);
    QCOMPARE(clicked.size(), 0);
    bench.release(bench.middleOf(2));
    QCOMPARE(bench.widget.currentIndex(), 2);
    QCOMPARE(clicked.size(), 1);
}

void tst_TabWidgetDrag::draggedFully()
{
    TabBench bench(20);
    bench.widget.resize(bench.bar().sizeHint().width() - 300, 120);
    QCOMPARE(bench.hidden(), 300);
    const QPoint from(350, 10);
    bench.press(from);
    bench.moveTo(from - QPoint(340, 0));
    QCOMPARE(bench.bar().x(), -300);
    bench.release(from - QPoint(340, 0));
    QCOMPARE(bench.bar().x(), -300);
    QCOMPARE(bench.widget.currentIndex(), 0);
}

void tst_TabWidgetDrag::barFollowsThePointer()
{
    TabBench bench(20);
    const int end = -bench.hidden();
    QVERIFY(end < -400);
    const QPoint from(200, 10);
    const auto offsetAt = [&](int x) {
        bench.moveTo(QPoint(x, 14));
        return bench.bar().x();
    };

    bench.press(from);
    QCOMPARE(bench.bar().x(), 0);
    QCOMPARE(offsetAt(199), -1);
    QCOMPARE(offsetAt(150), -50);
    QCOMPARE(offsetAt(151), -49);
    QCOMPARE(offsetAt(260), 0); // No gap opens before the first tab,
    QCOMPARE(offsetAt(240), 0); // and the bar waits for the point where it was grabbed.
    QCOMPARE(offsetAt(200), 0);
    QCOMPARE(offsetAt(180), -20);
    bench.release(QPoint(180, 14));

    // The next drag goes on from there.
    bench.press(QPoint(290, 10));
    QCOMPARE(offsetAt(10), -300);
    bench.release(QPoint(10, 10));
    bench.press(QPoint(299, 10));
    QCOMPARE(offsetAt(1), qMax(end, -598));
    bench.release(QPoint(1, 10));
    QCOMPARE(bench.widget.currentIndex(), 0);
    QCOMPARE(bench.bar().y(), 0);
}

void tst_TabWidgetDrag::clampedOffsetIsKept()
{
    TabBench bench(20);
    bench.press(QPoint(100, 10));
    bench.moveTo(QPoint(250, 10));
    bench.release(QPoint(250, 10));

    // 150 pixels past the end are forgotten.
    bench.press(QPoint(250, 10));
    bench.moveTo(QPoint(240, 10));
    QCOMPARE(bench.bar().x(), -10);
    bench.release(QPoint(240, 10));
}

void tst_TabWidgetDrag::fractionsAreRounded()
{
    TabBench bench(20);
    QTabBar *bar = &bench.bar();
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(100.5, 10.0), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(bar, &press); // at 101
    dragMouse(bar, QPointF(90.4, 10.0));  // to 90
    QCOMPARE(bar->x(), -11);
    dragMouse(bar, QPointF(100.6, 10.0)); // The bar is below the same point again.
    QCOMPARE(bar->x(), -11);
}

void tst_TabWidgetDrag::tap_data()
{
    QTest::addColumn<QVector<QPoint>>("way");
    QTest::addColumn<bool>("isTap");

    const auto row = [](const char *name, const QVector<QPoint> &way, bool isTap) {
        QTest::newRow(name) << way << isTap;
    };
    row("at once", {}, true);
    row("up to the threshold", {{-20, 0}}, true);
    row("beyond it", {{-21, 0}}, false);
    row("threshold downwards", {{0, 20}}, true);
    row("beyond it downwards", {{0, 21}}, false);
    row("both ways added", {{-10, 10}}, true);
    row("both ways, beyond", {{-10, 11}}, false);
    row("there and back", {{-10, 0}, {0, 0}}, true);
    row("there and back, beyond", {{-11, 0}, {0, 0}}, false);
    row("down and up, beyond", {{0, 11}, {0, 0}}, false);
    row("a steady drag is no tap", {{-3, 0}, {-6, 0}, {-9, 0}, {-12, 0}, {-15, 0}, {-18, 0}, {-21, 0}}, false);
    row("a steady drag up to the threshold", {{-4, 0}, {-8, 0}, {-12, 0}, {-16, 0}, {-20, 0}}, true);
    row("far away and back", {{-200, 0}, {0, 0}}, false);
}

void tst_TabWidgetDrag::tap()
{
    QFETCH(QVector<QPoint>, way);
    QFETCH(bool, isTap);
    TabBench bench(20);
    const QPoint from(bench.middleOf(3).x(), 4);
    QPoint to = from;
    bench.press(from);
    for (const QPoint &step : way) {
        to = from + step;
        bench.moveTo(to);
    }
    QCOMPARE(bench.widget.currentIndex(), 0);
    bench.release(to);
    QCOMPARE(bench.widget.currentIndex(), isTap ? 3 : 0);
}

void tst_TabWidgetDrag::tapSelectsWhereItEnds()
{
    TabBench bench(20);
    // The bar stands at its end, so the finger leaves the tab that it has pressed.
    const QPoint from = bench.bar().mapToParent(bench.bar().tabRect(2).topRight()) + QPoint(-4, 10);
    bench.press(from);
    bench.moveTo(from + QPoint(12, 0));
    QCOMPARE(bench.bar().x(), 0);
    bench.release(from + QPoint(12, 0));
    QCOMPARE(bench.widget.currentIndex(), 3);

    // What lies between the last move and the release is not counted.
    bench.press(bench.middleOf(1));
    const QPoint end = bench.middleOf(4);
    QMouseEvent release(QEvent::MouseButtonRelease, end, bench.widget.mapToGlobal(end), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(&bench.bar(), &release);
    QCOMPARE(bench.widget.currentIndex(), 4);
}

void tst_TabWidgetDrag::tapAfterADrag()
{
    TabBench bench(20);
    bench.dragTo(-100);
    const int tab = bench.bar().tabAt(QPoint(200, 10));
    bench.press(bench.middleOf(tab));
    bench.release(bench.middleOf(tab));
    QCOMPARE(bench.widget.currentIndex(), tab);
    QCOMPARE(bench.bar().x(), -100);
}

void tst_TabWidgetDrag::tapOfAnotherButton_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("tabs");

    for (const int tabs : {3, 20}) {
        QTest::addRow("right of %d", tabs) << int(Qt::RightButton) << tabs;
        QTest::addRow("middle of %d", tabs) << int(Qt::MiddleButton) << tabs;
    }
}

void tst_TabWidgetDrag::tapOfAnotherButton()
{
    QFETCH(int, button);
    QFETCH(int, tabs);
    const auto pressed = static_cast<Qt::MouseButton>(button);
    TabBench bench(tabs);
    QSignalSpy clicked(&bench.bar(), &QTabBar::tabBarClicked);
    bench.press(bench.middleOf(2), pressed);
    bench.release(bench.middleOf(2), pressed);
    QCOMPARE(bench.widget.currentIndex(), 0);
    QCOMPARE(clicked.size(), 1);

    // It drags as any other.
    bench.press(QPoint(200, 10), pressed);
    bench.moveTo(QPoint(140, 10));
    QCOMPARE(bench.bar().x(), tabs > 3 ? -60 : 0);
    bench.release(QPoint(140, 10), pressed);
}

void tst_TabWidgetDrag::tapKeepsKeysAndButtons()
{
    TabBench bench(20);
    QTabBar *bar = &bench.bar();
    const QPoint at = bar->tabRect(3).center();
    const auto send = [&](QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons held) {
        QMouseEvent event(type, at, bar->mapToGlobal(at), button, held, Qt::ControlModifier);
        QApplication::sendEvent(bar, &event);
    };
    // With the left button still held, the right one comes up: the press that follows is the right one's.
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseButtonPress, Qt::RightButton, Qt::LeftButton | Qt::RightButton);
    send(QEvent::MouseButtonRelease, Qt::RightButton, Qt::LeftButton);
    QCOMPARE(bench.widget.currentIndex(), 0);
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    QCOMPARE(bench.widget.currentIndex(), 3);
}

/// A style whose tabs are selected when the button comes up.
class ReleaseStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        if (hint == SH_TabBar_SelectMouseType)
            return QEvent::MouseButtonRelease;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

void tst_TabWidgetDrag::styleThatSelectsAtTheRelease()
{
    ReleaseStyle style;
    TabBench bench(20);
    bench.bar().setStyle(&style);
    bench.press(bench.middleOf(3));
    bench.release(bench.middleOf(3));
    QCOMPARE(bench.widget.currentIndex(), 3);
    bench.press(bench.middleOf(2));
    bench.moveTo(bench.middleOf(2) - QPoint(30, 0));
    bench.release(bench.middleOf(2));
    QCOMPARE(bench.widget.currentIndex(), 3);
    bench.bar().setStyle(nullptr);
}

void tst_TabWidgetDrag::doubleClickIsAPress()
{
    TabBench bench(20);
    QTabBar *bar = &bench.bar();
    const QPoint at = bar->tabRect(3).center();
    QMouseEvent press(QEvent::MouseButtonDblClick, at, bar->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(bar, &press);
    QCOMPARE(bench.widget.currentIndex(), 0);
    dragMouse(bar, at - QPoint(50, 0));
    QCOMPARE(bar->x(), -50);
}

void tst_TabWidgetDrag::moveWithoutButton()
{
    TabBench bench(20);
    bench.dragTo(-100);
    QSignalSpy needsPlace(&bench.bar(), SIGNAL(needMoveBar()));
    bench.moveTo(QPoint(10, 10));
    bench.moveTo(QPoint(90, 10));
    dragMouse(&bench.bar(), QPoint(10, 10), Qt::NoButton);
    QCOMPARE(bench.bar().x(), -100);
    QCOMPARE(needsPlace.size(), 0);

    // Nor does a press count that came before all tabs fitted.
    bench.press(QPoint(200, 10));
    bench.widget.resize(2000, 120);
    bench.release(QPoint(200, 10));
    bench.widget.resize(300, 120);
    dragMouse(&bench.bar(), QPoint(10, 10));
    QCOMPARE(bench.bar().x(), 0);
}

/// Counts the moves that a widget's children leave to it.
class MoveCount : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::MouseMove ? 1 : 0;
        return false;
    }
};

void tst_TabWidgetDrag::baseGetsEveryMove()
{
    for (const int tabs : {3, 20}) { // The base class leaves a move with the right button to the widget behind.
        TabBench bench(tabs);
        MoveCount left;
        bench.widget.installEventFilter(&left);
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
            bench.press(QPoint(80, 10), button);
            left.count = 0;
            dragMouse(&bench.bar(), QPoint(70, 10), button);
            QCOMPARE(left.count, button == Qt::RightButton ? 1 : 0);
            bench.release(QPoint(70, 10), button);
        }
    }

    TabBench bench(3);
    bench.widget.setMovable(true);
    QSignalSpy moved(&bench.bar(), &QTabBar::tabMoved);
    bench.press(bench.middleOf(0));
    dragMouse(&bench.bar(), bench.bar().tabRect(0).center() + QPoint(30, 0));
    dragMouse(&bench.bar(), bench.bar().tabRect(2).center());
    bench.release(bench.middleOf(2));
    QVERIFY(!moved.isEmpty());
}

void tst_TabWidgetDrag::twoButtons()
{
    TabBench bench(20);
    bench.press(QPoint(200, 10));
    bench.moveTo(QPoint(150, 10));
    QCOMPARE(bench.bar().x(), -50);
    bench.press(QPoint(150, 10), Qt::RightButton); // It begins anew,
    bench.moveTo(QPoint(140, 10));
    QCOMPARE(bench.bar().x(), -60);
    bench.release(QPoint(140, 10), Qt::RightButton); // and the other button goes on.
    dragMouse(&bench.bar(), bench.bar().mapFromParent(QPoint(110, 10)));
    QCOMPARE(bench.bar().x(), -90);
    bench.release(QPoint(110, 10));
    QCOMPARE(bench.widget.currentIndex(), 0);
}

void tst_TabWidgetDrag::barIsAsWideAsItsTabs_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<int>("side");

    for (const int side : {QTabWidget::North, QTabWidget::South}) {
        for (const int tabs : {0, 1, 3, 20})
            QTest::addRow("%d tabs, side %d", tabs, side) << tabs << side;
    }
}

void tst_TabWidgetDrag::barIsAsWideAsItsTabs()
{
    QFETCH(int, tabs);
    QFETCH(int, side);
    TabBench bench(0);
    bench.widget.setTabPosition(QTabWidget::TabPosition(side));
    for (int i = 0; i < tabs; ++i) {
        bench.widget.addTab(new QWidget, QStringLiteral("R%1").arg(i));
        QCOMPARE(bench.bar().width(), qMax(300, bench.bar().sizeHint().width()));
    }
    for (const int width : {1, 37, 299, 1000, 5000}) {
        bench.widget.resize(width, 120);
        QCOMPARE(bench.bar().width(), qMax(width, bench.bar().sizeHint().width()));
        QCOMPARE(bench.bar().x(), 0);
        QVERIFY(!tabs || bench.bar().tabRect(0).left() == 0);
    }
    bench.widget.resize(300, 120);
    while (bench.widget.count() > 0) {
        bench.widget.removeTab(0);
        QCOMPARE(bench.bar().width(), qMax(300, bench.bar().sizeHint().width()));
    }
}

void tst_TabWidgetDrag::widerWidgetClampsTheOffset()
{
    TabBench bench(20);
    const int whole = bench.bar().width();
    bench.dragTo(-200);
    bench.widget.resize(whole - 250, 120);
    QCOMPARE(bench.bar().x(), -200);
    bench.widget.resize(whole - 150, 120);
    QCOMPARE(bench.bar().x(), -150);
    bench.widget.resize(whole - 1, 120);
    QCOMPARE(bench.bar().x(), -1);
    bench.widget.resize(whole, 120);
    QCOMPARE(bench.bar().x(), 0);
    bench.press(bench.middleOf(5));
    QCOMPARE(bench.widget.currentIndex(), 5); // Nothing is left to drag.
    bench.release(bench.middleOf(5));
    bench.widget.resize(300, 120);
    QCOMPARE(bench.bar().x(), 0);
}

void tst_TabWidgetDrag::longerTextMakesTheBarDraggable()
{
    TabBench bench(3);
    QCOMPARE(bench.hidden(), 0);
    bench.widget.setTabText(1, QString(100, QLatin1Char('m')));
    QTRY_COMPARE(bench.bar().width(), bench.bar().sizeHint().width());
    QVERIFY(bench.hidden() > 100);
    bench.dragTo(-100);
    bench.widget.setTabText(1, QStringLiteral("m"));
    QTRY_COMPARE(bench.hidden(), 0);
    QCOMPARE(bench.bar().x(), 0);
}

void tst_TabWidgetDrag::noRoomIsMadeAtTheSides()
{
    TabBench bench(3);
    bench.widget.setTabPosition(QTabWidget::West);
    const QRect before = bench.bar().geometry();
    QVERIFY(before.width() < 100);
    QMetaObject::invokeMethod(&bench.widget, "moveBar");
    QCOMPARE(bench.bar().geometry(), before);
    bench.widget.setTabPosition(QTabWidget::East);
    QVERIFY(bench.bar().x() > 100);
    QMetaObject::invokeMethod(&bench.widget, "moveBar");
    QVERIFY(bench.bar().x() > 100);
}

void tst_TabWidgetDrag::tabsAtASideAreNotDragged()
{
    TabBench bench(20);
    bench.dragTo(-100);
    bench.widget.setTabPosition(QTabWidget::West);
    const QRect place = bench.bar().geometry();
    QCOMPARE(place.x(), 0);
    bench.press(bench.middleOf(1));
    QCOMPARE(bench.widget.currentIndex(), 1);
    bench.moveTo(bench.middleOf(1) + QPoint(60, 0));
    QCOMPARE(bench.bar().geometry(), place);
    bench.release(bench.middleOf(1));
    bench.widget.setTabPosition(QTabWidget::North);
    QCOMPARE(bench.bar().x(), -100);
}

void tst_TabWidgetDrag::tabsThatComeDuringAPress()
{
    TabBench bench(3);
    connect(&bench.widget, &QTabWidget::currentChanged, &bench.widget, [&bench](int index) {
        if (index != 1)
            return;
        for (int i = 0; i < 20; ++i)
            bench.widget.insertTab(0, new QWidget, QStringLiteral("More"));
    });
    const QPoint at = bench.middleOf(1);
    bench.press(at);
    QCOMPARE(bench.widget.currentIndex(), 21);
    QVERIFY(bench.hidden() > 0);
    bench.moveTo(at - QPoint(40, 0)); // That press was done when it came.
    QCOMPARE(bench.bar().x(), 0);
    bench.release(at - QPoint(40, 0));
    QCOMPARE(bench.widget.currentIndex(), 21);
    QCOMPARE(bench.widget.count(), 23); // Tab 1, which lies there now, was not chosen.
}

void tst_TabWidgetDrag::needMoveBar()
{
    KelTabBar bar;
    bar.addTab(QStringLiteral("One"));
    QSignalSpy alone(&bar, &KelTabBar::needMoveBar);
    bar.resize(200, 30);
    bar.show();
    QVERIFY(alone.size() >= 1);

    TabBench bench(20);
    QSignalSpy dragged(&bench.bar(), SIGNAL(needMoveBar()));
    bench.press(QPoint(200, 10));
    QCOMPARE(dragged.size(), 0);
    bench.moveTo(QPoint(190, 10));
    QCOMPARE(dragged.size(), 1);
    bench.moveTo(QPoint(180, 10));
    QCOMPARE(dragged.size(), 2);
    bench.moveTo(QPoint(150, 10));
    QCOMPARE(dragged.size(), 3);
    bench.release(QPoint(150, 10));
    QCOMPARE(dragged.size(), 3);
}

void tst_TabWidgetDrag::deletedWhileDragged_data()
{
    QTest::addColumn<QByteArray>("when");

    for (const char *when : {"pressed", "moved"})
        QTest::newRow(when) << QByteArray(when);
}

void tst_TabWidgetDrag::deletedWhileDragged()
{
    QFETCH(QByteArray, when);
    auto bench = std::make_unique<TabBench>(20);
    QTabBar *bar = &bench->bar();
    const QPoint at = bench->middleOf(3);
    if (when == "moved")
        connect(static_cast<KelTabBar *>(bar), &KelTabBar::needMoveBar, this, [&bench] { bench.reset(); });

    const auto send = [bar, at](QEvent::Type type, Qt::MouseButtons held) {
        QMouseEvent event(type, at, bar->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(bar, &event);
    };
    send(QEvent::MouseButtonPress, Qt::LeftButton);
    if (when == "pressed")
        bench.reset();
    if (bench)
        send(QEvent::MouseMove, Qt::LeftButton);
    QVERIFY(!bench);
}

KEL_TEST_MAIN(tst_TabWidgetDrag)
#include "tst_tabwidgetdrag.moc"
