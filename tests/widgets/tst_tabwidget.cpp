#include "tabbench.h"
#include "testmain.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QSignalSpy>

#include <memory>

/// The widget around the bar: what the meta-object tells, numbers, sizes, sides and the frame.
class tst_TabWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void methodsInOrder_data();
    void methodsInOrder();
    void moveBarIsPrivate();
    void properties_data();
    void properties();
    void barHasNoProperties();
    void enumerations();
    void asMade();

    void setCurrentIndex_data();
    void setCurrentIndex();
    void baseBeforeSignal();
    void nothingElseEmits();
    void deletedByItsOwnSignal();
    void numberedSlots_data();
    void numberedSlots();

    void sizes();
    void autoSide_data();
    void autoSide();
    void autoSideOfAThinWidget_data();
    void autoSideOfAThinWidget();
    void autoSideOfALineWithoutTabs();
    void sideChangesAtAResizeOnly();
    void autoSideIsOffAtFirst();
    void theExampleGoesToTheLeft();
    void frame_data();
    void frame();
};

void tst_TabWidget::methodsInOrder_data()
{
    QTest::addColumn<bool>("ofBar");
    QTest::addColumn<QByteArrayList>("expected");

    QTest::newRow("widget") << false
                            << QByteArrayList{"currentChangedID(int,int)",
                                              "moveBar()",
                                              "enable()",
                                              "disable()",
                                              "setCurrentIndex(int)",
                                              "setEmitID(int)",
                                              "setSetID(int)",
                                              "enableID(int)",
                                              "disableID(int)",
                                              "setEnabledID(int,bool)",
                                              "setDisabledID(int,bool)",
                                              "setAutoSide(bool)",
                                              "setPreferredVerticalSide(VerticalSide)",
                                              "setPreferredHorizontalSide(HorizontalSide)"};
    QTest::newRow("bar") << true << QByteArrayList{"needMoveBar()"};
}

void tst_TabWidget::methodsInOrder()
{
    QFETCH(bool, ofBar);
    QFETCH(QByteArrayList, expected);

    const QMetaObject *meta = ofBar ? &KelTabBar::staticMetaObject : &KelTabWidget::staticMetaObject;
    QByteArrayList methods;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        methods << meta->method(i).methodSignature();
        const bool isSignal = methods.size() == 1;
        QCOMPARE(meta->method(i).methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
    }
    QCOMPARE(methods, expected);
}

void tst_TabWidget::moveBarIsPrivate()
{
    const QMetaObject &meta = KelTabWidget::staticMetaObject;
    QCOMPARE(meta.method(meta.indexOfSlot("moveBar()")).access(), QMetaMethod::Private);
    QCOMPARE(meta.method(meta.indexOfSlot("enable()")).access(), QMetaMethod::Public);
    const QMetaMethod enabledId = meta.method(meta.indexOfSlot("setEnabledID(int,bool)"));
    QCOMPARE(enabledId.parameterNames(), (QByteArrayList{"set_id", "on"}));
    const QMetaMethod disabledId = meta.method(meta.indexOfSlot("setDisabledID(int,bool)"));
    QCOMPARE(disabledId.parameterNames(), (QByteArrayList{"set_id", "off"}));
    const QMetaMethod changed = meta.method(meta.indexOfSignal("currentChangedID(int,int)"));
    QCOMPARE(changed.parameterNames(), (QByteArrayList{"id", "index"}));
}

void tst_TabWidget::properties_data()
{
    QTest::addColumn<QVariant>("atFirst");
    QTest::addColumn<QVariant>("other");

    QTest::newRow("emitID") << QVariant(-1) << QVariant(7);
    QTest::newRow("setID") << QVariant(-1) << QVariant(0);
    QTest::newRow("autoSide") << QVariant(false) << QVariant(true);
    QTest::newRow("preferredVerticalSide") << QVariant(0) << QVariant(1);
    QTest::newRow("preferredHorizontalSide") << QVariant(0) << QVariant(1);
}

void tst_TabWidget::properties()
{
    QFETCH(QVariant, atFirst);
    QFETCH(QVariant, other);
    const QMetaObject &meta = KelTabWidget::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 5);
    const QMetaProperty property = meta.property(meta.indexOfProperty(QTest::currentDataTag()));
    QVERIFY(property.isReadable() && property.isWritable() && property.isDesignable() && property.isStored());

    TabBench bench(3);
    bench.widget.resize(600, 120);
    QSignalSpy needsPlace(&bench.bar(), SIGNAL(needMoveBar()));
    QSignalSpy announced(&bench.widget, &KelTabWidget::currentChangedID);
    QCOMPARE(property.read(&bench.widget).toInt(), atFirst.toInt());
    QVERIFY(property.write(&bench.widget, other));
    QCOMPARE(property.read(&bench.widget).toInt(), other.toInt());

    // Nothing is done with the value at once.
    QCoreApplication::sendPostedEvents();
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::North);
    QCOMPARE(needsPlace.size(), 0);
    QCOMPARE(announced.size(), 0);
}

void tst_TabWidget::barHasNoProperties()
{
    const QMetaObject &meta = KelTabBar::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
    QCOMPARE(meta.superClass(), &QTabBar::staticMetaObject);
    QCOMPARE(KelTabWidget::staticMetaObject.superClass(), &QTabWidget::staticMetaObject);
}

void tst_TabWidget::enumerations()
{
    const QMetaObject &meta = KelTabWidget::staticMetaObject;
    const QMetaEnum vertical = meta.enumerator(meta.indexOfEnumerator("VerticalSide"));
    QCOMPARE(vertical.keyCount(), 2);
    QCOMPARE(vertical.keyToValue("Top"), 0);
    QCOMPARE(vertical.keyToValue("Bottom"), 1);
    const QMetaEnum horizontal = meta.enumerator(meta.indexOfEnumerator("HorizontalSide"));
    QCOMPARE(horizontal.keyCount(), 2);
    QCOMPARE(horizontal.keyToValue("Left"), 0);
    QCOMPARE(horizontal.keyToValue("Right"), 1);
}

void tst_TabWidget::asMade()
{
    KelTabWidget widget;
    QVERIFY(qobject_cast<KelTabBar *>(widget.tabBar()));
    QCOMPARE(widget.tabBar()->parentWidget(), &widget);
    QVERIFY(!widget.usesScrollButtons());
    QCOMPARE(widget.tabPosition(), QTabWidget::North);

    const KelTabBar bar;
    QVERIFY(!bar.usesScrollButtons());
    QVERIFY(bar.expanding());
    QVERIFY(!QImage(QStringLiteral(":/icons/arrow-left.png")).isNull());
    QVERIFY(!QImage(QStringLiteral(":/icons/arrow-right.png")).isNull());
}

void tst_TabWidget::setCurrentIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("shown");

    QTest::newRow("another page") << 2 << 2;
    QTest::newRow("the same page") << 0 << 0;
    QTest::newRow("none") << -1 << 0;
    QTest::newRow("behind the last") << 99 << 0;
}

void tst_TabWidget::setCurrentIndex()
{
    QFETCH(int, index);
    QFETCH(int, shown);
    TabBench bench(3);
    bench.widget.setEmitID(7);
    QSignalSpy announced(&bench.widget, &KelTabWidget::currentChangedID);

    QVERIFY(QMetaObject::invokeMethod(&bench.widget, "setCurrentIndex", Q_ARG(int, index)));
    QCOMPARE(announced, (QList<QVariantList>{{7, index}}));
    QCOMPARE(bench.widget.currentIndex(), shown);
}

void tst_TabWidget::baseBeforeSignal()
{
    TabBench bench(3);
    QVector<int> shown;
    QStringList order;
    connect(&bench.widget, &QTabWidget::currentChanged, this, [&] { order << QStringLiteral("changed"); });
    connect(&bench.widget, &KelTabWidget::currentChangedID, this, [&] {
        order << QStringLiteral("numbered");
        shown << bench.widget.currentIndex();
    });
    bench.widget.setCurrentIndex(1);
    QCOMPARE(shown, QVector<int>{1});
    QCOMPARE(order, (QStringList{QStringLiteral("changed"), QStringLiteral("numbered")}));
}

void tst_TabWidget::nothingElseEmits()
{
    TabBench bench(3);
    QSignalSpy announced(&bench.widget, &KelTabWidget::currentChangedID);
    QSignalSpy changed(&bench.widget, &QTabWidget::currentChanged);

    bench.press(bench.middleOf(2));
    bench.release(bench.middleOf(2));
    QCOMPARE(bench.widget.currentIndex(), 2);
    bench.widget.setCurrentWidget(bench.widget.widget(1));
    bench.widget.setProperty("currentIndex", 0);
    QTest::keyClick(&bench.bar(), Qt::Key_Right);
    bench.widget.insertTab(0, new QWidget, QStringLiteral("New"));
    bench.widget.removeTab(bench.widget.currentIndex());
    QVERIFY(changed.size() >= 4);
    QCOMPARE(announced.size(), 0);
}

void tst_TabWidget::deletedByItsOwnSignal()
{
    QPointer<KelTabWidget> widget = new KelTabWidget;
    widget->addTab(new QWidget, QStringLiteral("One"));
    widget->addTab(new QWidget, QStringLiteral("Two"));
    bool isAnnounced = false;
    connect(widget, &KelTabWidget::currentChangedID, this, [&isAnnounced] { isAnnounced = true; });
    connect(widget, &QTabWidget::currentChanged, this, [widget] { delete widget; });
    widget->setCurrentIndex(1);
    QVERIFY(!widget);
    QVERIFY(!isAnnounced);
}

void tst_TabWidget::numberedSlots_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<bool>("hasArgument");
    QTest::addColumn<bool>("argument");
    QTest::addColumn<bool>("enabled"); // Afterwards, when the number matches.

    QTest::newRow("enableID") << QByteArray("enableID") << false << false << true;
    QTest::newRow("disableID") << QByteArray("disableID") << false << false << false;
    QTest::newRow("setEnabledID true") << QByteArray("setEnabledID") << true << true << true;
    QTest::newRow("setEnabledID false") << QByteArray("setEnabledID") << true << false << false;
    QTest::newRow("setDisabledID true") << QByteArray("setDisabledID") << true << true << false;
    QTest::newRow("setDisabledID false") << QByteArray("setDisabledID") << true << false << true;
}

void tst_TabWidget::numberedSlots()
{
    QFETCH(QByteArray, slot);
    QFETCH(bool, hasArgument);
    QFETCH(bool, argument);
    QFETCH(bool, enabled);

    KelTabWidget widget;
    const auto call = [&](int id) {
        const char *name = slot.constData();
        return hasArgument ? QMetaObject::invokeMethod(&widget, name, Q_ARG(int, id), Q_ARG(bool, argument))
                           : QMetaObject::invokeMethod(&widget, name, Q_ARG(int, id));
    };
    for (const int own : {-1, 0, 5}) {
        widget.setSetID(own);
        widget.setEmitID(own + 1); // The number of what it emits is not the one that it listens to.
        for (const int other : {own - 1, own + 1, own + 100}) {
            widget.setEnabled(!enabled);
            QVERIFY(call(other));
            QCOMPARE(widget.isEnabled(), !enabled);
        }
        QVERIFY(call(own));
        QCOMPARE(widget.isEnabled(), enabled);
    }

    widget.disable();
    QVERIFY(!widget.isEnabled());
    widget.enable();
    QVERIFY(widget.isEnabled());
}

void tst_TabWidget::sizes()
{
    TabBench bench(20);
    QCOMPARE(bench.widget.minimumSizeHint().width(), 1);
    QCOMPARE(bench.widget.minimumSizeHint().height(), bench.widget.QTabWidget::minimumSizeHint().height());
    QVERIFY(bench.widget.minimumSizeHint().height() >= bench.bar().height());
    QCOMPARE(bench.widget.sizeHint(), bench.widget.QTabWidget::sizeHint());
}

void tst_TabWidget::autoSide_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("along");  // What remains beside the bar, in the direction in question.
    QTest::addColumn<int>("across"); // And in the other.
    QTest::addColumn<int>("vertical");
    QTest::addColumn<int>("horizontal");
    QTest::addColumn<int>("to");

    for (const int from : {QTabWidget::North, QTabWidget::South}) {
        const QByteArray name = from == QTabWidget::North ? "above" : "below";
        QTest::newRow((name + ", wide enough").constData()) << from << 120 << 100 << 0 << 0 << int(QTabWidget::West);
        QTest::newRow((name + ", to the right").constData()) << from << 240 << 100 << 0 << 1 << int(QTabWidget::East);
        QTest::newRow((name + ", one pixel less").constData()) << from << 119 << 100 << 0 << 1 << from;
        QTest::newRow((name + ", one pixel higher").constData()) << from << 120 << 101 << 0 << 1 << from;
        QTest::newRow((name + ", high").constData()) << from << 100 << 240 << 1 << 1 << from;
    }
    for (const int from : {QTabWidget::West, QTabWidget::East}) {
        const QByteArray name = from == QTabWidget::West ? "left" : "right";
        QTest::newRow((name + ", high enough").constData()) << from << 120 << 100 << 0 << 0 << int(QTabWidget::North);
        QTest::newRow((name + ", to the bottom").constData()) << from << 240 << 100 << 1 << 0 << int(QTabWidget::South);
        QTest::newRow((name + ", one pixel less").constData()) << from << 119 << 100 << 1 << 0 << from;
        QTest::newRow((name + ", one pixel wider").constData()) << from << 120 << 101 << 1 << 0 << from;
        QTest::newRow((name + ", wide").constData()) << from << 100 << 240 << 1 << 1 << from;
    }
}

void tst_TabWidget::autoSide()
{
    QFETCH(int, from);
    QFETCH(int, along);
    QFETCH(int, across);
    TabBench bench(2);
    bench.widget.setTabPosition(QTabWidget::TabPosition(from));
    QFETCH(int, vertical);
    QFETCH(int, horizontal);
    bench.widget.setPreferredVerticalSide(KelTabWidget::VerticalSide(vertical));
    bench.widget.setPreferredHorizontalSide(KelTabWidget::HorizontalSide(horizontal));
    bench.widget.setAutoSide(true);

    const bool above = from == QTabWidget::North || from == QTabWidget::South;
    const int bar = above ? bench.bar().height() : bench.bar().width();
    QVERIFY(bar > 10 && bar < 60);
    const QSize size(bar + along, bar + across);
    bench.widget.resize(above ? size : size.transposed());
    QFETCH(int, to);
    QCOMPARE(int(bench.widget.tabPosition()), to);
}

void tst_TabWidget::autoSideOfAThinWidget_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<QSize>("size"); // Negative numbers count from the bar's thickness: -1 is exactly as thick.

    for (const int from : {QTabWidget::North, QTabWidget::West}) {
        const QByteArray name = from == QTabWidget::North ? "above" : "left";
        QTest::newRow((name + ", flat").constData()) << from << QSize(400, 1);
        QTest::newRow((name + ", thin").constData()) << from << QSize(1, 400);
        QTest::newRow((name + ", smaller than the bar").constData()) << from << QSize(3, 2);
        QTest::newRow((name + ", thinner, but higher").constData()) << from << QSize(2, 20);
        QTest::newRow((name + ", lower, but wider").constData()) << from << QSize(20, 2);
        QTest::newRow((name + ", lower than the bar").constData()) << from << QSize(400, 5);
        QTest::newRow((name + ", as low as the bar").constData()) << from << QSize(400, -1);
        QTest::newRow((name + ", as narrow as the bar").constData()) << from << QSize(-1, 400);
    }
}

void tst_TabWidget::autoSideOfAThinWidget()
{
    QFETCH(int, from);
    QFETCH(QSize, size);
    TabBench bench(2);
    bench.widget.setTabPosition(QTabWidget::TabPosition(from));
    bench.widget.setAutoSide(true);
    const int bar = from == QTabWidget::North ? bench.bar().height() : bench.bar().width();
    bench.widget.resize(size.width() < 0 ? bar : size.width(), size.height() < 0 ? bar : size.height());
    QCOMPARE(int(bench.widget.tabPosition()), from);
}

// An empty bar takes nothing away, yet a line has no sides to choose from.
void tst_TabWidget::autoSideOfALineWithoutTabs()
{
    TabBench bench(0);
    bench.widget.setAutoSide(true);
    bench.widget.resize(400, 1);
    QCOMPARE(bench.bar().height(), 0);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::North);
    bench.widget.resize(400, 2);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::West);
    bench.widget.resize(1, 400);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::West);
}

void tst_TabWidget::sideChangesAtAResizeOnly()
{
    TabBench bench(2);
    bench.widget.resize(400, 200);
    bench.widget.setAutoSide(true);
    bench.widget.addTab(new QWidget, QStringLiteral("More"));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::North);
    bench.widget.resize(401, 200);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::West);
    bench.widget.setPreferredHorizontalSide(KelTabWidget::Right);
    bench.widget.resize(402, 200);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::West); // They are on a long side already.
    bench.widget.resize(200, 400);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::North);
}

void tst_TabWidget::autoSideIsOffAtFirst()
{
    TabBench bench(2);
    bench.widget.resize(400, 200);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::North);
    bench.widget.setTabPosition(QTabWidget::East);
    bench.widget.resize(200, 400);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::East);
}

void tst_TabWidget::theExampleGoesToTheLeft()
{
    TabBench bench(2);
    bench.widget.setStyleSheet(QStringLiteral("QTabBar::tab { height: 30px; }"));
    bench.widget.setAutoSide(true);
    bench.widget.resize(400, 200);
    QCOMPARE(bench.widget.tabPosition(), QTabWidget::West);
}

void tst_TabWidget::frame_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<int>("tabs");

    for (const int tabs : {2, 20}) {
        QTest::addRow("above, %d tabs", tabs) << int(QTabWidget::North) << tabs;
        QTest::addRow("below, %d tabs", tabs) << int(QTabWidget::South) << tabs;
        QTest::addRow("left, %d tabs", tabs) << int(QTabWidget::West) << tabs;
        QTest::addRow("right, %d tabs", tabs) << int(QTabWidget::East) << tabs;
    }
}

/// A plain tab widget with the same tabs, for what the base class paints.
static std::unique_ptr<QTabWidget> plainTwin(const TabBench &bench)
{
    auto twin = std::make_unique<QTabWidget>();
    twin->setUsesScrollButtons(false);
    twin->setTabPosition(bench.widget.tabPosition());
    for (int i = 0; i < bench.widget.count(); ++i)
        twin->addTab(new QWidget, bench.widget.tabText(i));
    twin->resize(bench.widget.size());
    return twin;
}

void tst_TabWidget::frame()
{
    QFETCH(int, side);
    QFETCH(int, tabs);
    PaintLog style;
    TabBench bench(tabs);
    bench.widget.setStyle(&style);
    bench.widget.setTabPosition(QTabWidget::TabPosition(side));
    QCoreApplication::sendPostedEvents();
    style.frames = 0;
    bench.widget.grab();
    QCOMPARE(style.frames, 1);

    const QStyleOptionTabWidgetFrame painted = style.frame;
    const bool above = side == QTabWidget::North || side == QTabWidget::South;
    if (above) {
        QCOMPARE(painted.tabBarSize.width(), bench.widget.width());
        QStyleOptionTabWidgetFrame whole = painted;
        whole.rect = bench.widget.rect();
        QCOMPARE(painted.rect, style.subElementRect(QStyle::SE_TabWidgetTabPane, &whole, &bench.widget));
        QVERIFY(painted.rect.height() > bench.widget.height() / 2);
    } else {
        const std::unique_ptr<QTabWidget> twin = plainTwin(bench);
        twin->setStyle(&style);
        twin->show();
        QVERIFY(QTest::qWaitForWindowExposed(twin.get()));
        twin->grab();
        QCOMPARE(painted.tabBarSize, style.frame.tabBarSize);
        QCOMPARE(painted.rect, style.frame.rect);
        twin->setStyle(nullptr);
    }
    QCOMPARE(painted.shape, bench.bar().shape());
    bench.widget.setStyle(nullptr);
}

KEL_TEST_MAIN(tst_TabWidget)
#include "tst_tabwidget.moc"
