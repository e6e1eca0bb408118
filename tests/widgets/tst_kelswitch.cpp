#include "testmain.h"

#include <QButtonGroup>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QPropertyAnimation>
#include <QSignalSpy>
#include <kelswitch.h>
#include <scaling.h>

class tst_KelSwitch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void properties();
    void methods();
    void defaults();
    void animationsAsMade();
    void sizes_data();
    void sizes();
    void nonsenseScaleIsIgnored();
    void switchingAnimates_data();
    void switchingAnimates();
    void clickToggles();
    void keyToggles();
    void readOnlyIsDeaf();
    void readOnlyWhileHeldDown();
    void enableAndDisable();
    void pressOutsideTheTrack_data();
    void pressOutsideTheTrack();
    void pressInsideStopsTheHandleOnly();
    void smallMovesAreNoDrag();
    void drag_data();
    void drag();
    void dragIsClamped();
    void dragEnds_data();
    void dragEnds();
    void dragBackAnimatesHome();
    void dragReleasedOutside();
    void deletedByTheEndOfADrag();
    void groupMayRefuse();
};

static QList<QPropertyAnimation *> animationsOf(const KelSwitch &button)
{
    return button.findChildren<QPropertyAnimation *>();
}

static bool running(const KelSwitch &button, const QByteArray &property)
{
    for (const QPropertyAnimation *animation : animationsOf(button)) {
        if (animation->propertyName() == property)
            return animation->state() == QAbstractAnimation::Running;
    }
    return false;
}

/// Ends what is moving and puts the handle to \a position.
static void settle(KelSwitch &button, float position)
{
    for (QPropertyAnimation *animation : animationsOf(button))
        animation->stop();
    button.setProperty("h__anim", position);
}

static void press(KelSwitch &button, QPoint at)
{
    QTest::mousePress(&button, Qt::LeftButton, {}, at);
}

// QTest's own move tells no pressed button.
static void move(KelSwitch &button, QPoint to)
{
    QMouseEvent event(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&button, &event);
}

static void release(KelSwitch &button, QPoint at)
{
    QTest::mouseRelease(&button, Qt::LeftButton, {}, at);
}

void tst_KelSwitch::properties()
{
    const QMetaObject &meta = KelSwitch::staticMetaObject;
    QStringList lines;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        lines << QString::fromLatin1(property.typeName() + QByteArray(" ") + property.name());
        const bool hidden = QByteArray(property.name()).startsWith("h__");
        QCOMPARE(property.isDesignable(), !hidden);
        QCOMPARE(property.isStored(), !hidden);
        QVERIFY(property.isWritable());
    }
    QCOMPARE(lines.join(QLatin1String(", ")).remove(QLatin1String("KelSwitch::")),
             QStringLiteral("bool readOnly, bool invertedAppearance, Qt::Orientation orientation, "
                            "SwitchStyle switchStyle, QColor fillColor, QColor backColor, double scale, "
                            "float h__anim, float h__anim_s"));
    const QMetaEnum styles = meta.enumerator(meta.indexOfEnumerator("SwitchStyle"));
    QCOMPARE(styles.keyToValue("OneSide"), 0);
    QCOMPARE(styles.keyToValue("Center"), 1);
    QCOMPARE(styles.keyCount(), 2);
}

void tst_KelSwitch::methods()
{
    const QMetaObject &meta = KelSwitch::staticMetaObject;
    QStringList lines;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        lines << QString::fromLatin1(method.methodSignature()) +
                     (method.access() == QMetaMethod::Private ? QStringLiteral(" private") : QString());
    }
    QCOMPARE(lines.join(QLatin1String(", ")),
             QStringLiteral("enable(), disable(), setReadOnly(bool), setInvertedAppearance(bool), "
                            "setOrientation(Qt::Orientation), setSwitchStyle(SwitchStyle), setFillColor(QColor), "
                            "setBackColor(QColor), setScale(double), setOn(), setOff(), s_anim(float) private, "
                            "s_anim_s(float) private"));
}

void tst_KelSwitch::defaults()
{
    KelSwitch button;
    QVERIFY(button.isCheckable());
    QVERIFY(!button.isChecked());
    QCOMPARE(button.sizePolicy(), QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred));
    QCOMPARE(button.fillColor(), QColor(255, 245, 60, 255));
    QCOMPARE(button.backColor(), QColor(216, 216, 216, 255));
    QCOMPARE(button.orientation(), Qt::Horizontal);
    QCOMPARE(button.switchStyle(), KelSwitch::OneSide);
    QCOMPARE(button.h__anim(), 1.0f);
    QCOMPARE(button.h__anim_s(), 1.0f);
    QCOMPARE(button.scale(), 1.0);
    QCOMPARE(button.readOnly(), false);
    QCOMPARE(button.invertedAppearance(), false);

    QVERIFY(button.setProperty("switchStyle", 1));
    QCOMPARE(button.switchStyle(), KelSwitch::Center);
    QVERIFY(button.setProperty("orientation", int(Qt::Vertical)));
    QCOMPARE(button.orientation(), Qt::Vertical);
    QVERIFY(button.setProperty("h__anim_s", 0.25f));
    QCOMPARE(button.h__anim_s(), 0.25f);
}

void tst_KelSwitch::animationsAsMade()
{
    const KelSwitch button;
    const auto animations = animationsOf(button);
    QCOMPARE(animations.size(), 2);
    QCOMPARE(animations.at(0)->propertyName(), QByteArray("h__anim"));
    QCOMPARE(animations.at(1)->propertyName(), QByteArray("h__anim_s"));
    for (const QPropertyAnimation *animation : animations) {
        QCOMPARE(animation->targetObject(), &button);
        QCOMPARE(animation->duration(), 200);
        QCOMPARE(animation->easingCurve().type(), QEasingCurve::InOutQuad);
    }
}

void tst_KelSwitch::sizes_data()
{
    QTest::addColumn<double>("scale");
    for (const double scale : {1.0, 2.0, 0.37, 1.8})
        QTest::addRow("%g", scale) << scale;
}

void tst_KelSwitch::sizes()
{
    QFETCH(double, scale);
    KelSwitch button;
    button.setScale(scale);
    const int f = int(fontHeight(nullptr) * scale * 1.25);
    QCOMPARE(button.sizeHint(), QSize(3 * f, f + 4));
    button.setOrientation(Qt::Vertical);
    QCOMPARE(button.sizeHint(), QSize(f + 4, 3 * f));
    const int side = qRound(appScale(nullptr) * 10);
    QCOMPARE(button.minimumSizeHint(), QSize(side, side));
}

void tst_KelSwitch::nonsenseScaleIsIgnored()
{
    KelSwitch button;
    button.setScale(2.0);
    button.setScale(std::numeric_limits<double>::quiet_NaN());
    button.setScale(std::numeric_limits<double>::infinity());
    QCOMPARE(button.scale(), 2.0);
    button.setScale(1e300);
    QVERIFY(button.sizeHint().width() >= QWIDGETSIZE_MAX);
}

void tst_KelSwitch::switchingAnimates_data()
{
    QTest::addColumn<QByteArray>("slot");
    for (const char *slot : {"setOn", "toggle", "click"})
        QTest::newRow(slot) << QByteArray(slot);
}

void tst_KelSwitch::switchingAnimates()
{
    QFETCH(QByteArray, slot);
    KelSwitch button;
    QVERIFY(QMetaObject::invokeMethod(&button, slot.constData()));
    QVERIFY(button.isChecked());
    QCOMPARE(button.h__anim(), 1.0f);
    for (const QPropertyAnimation *animation : animationsOf(button)) {
        QCOMPARE(animation->state(), QAbstractAnimation::Running);
        QCOMPARE(animation->startValue().toFloat(), 1.0f);
        QCOMPARE(animation->endValue().toFloat(), 0.0f);
    }
    QTRY_COMPARE(button.h__anim(), 0.0f);
    QTRY_COMPARE(button.h__anim_s(), 0.0f);
    button.setOff();
    QVERIFY(!button.isChecked());
    QTRY_COMPARE(button.h__anim(), 1.0f);
    QTRY_COMPARE(button.h__anim_s(), 1.0f);
}

void tst_KelSwitch::clickToggles()
{
    KelSwitch button;
    button.resize(90, 30);
    QSignalSpy clicked(&button, &KelSwitch::clicked);
    QSignalSpy toggled(&button, &KelSwitch::toggled);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(10, 15));
    QVERIFY(button.isChecked());
    QVERIFY(running(button, "h__anim") && running(button, "h__anim_s"));
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(10, 15));
    QVERIFY(!button.isChecked());
    QCOMPARE(clicked.size(), 2);
    QCOMPARE(toggled.size(), 2);
}

void tst_KelSwitch::keyToggles()
{
    KelSwitch button;
    QTest::keyClick(&button, Qt::Key_Space);
    QVERIFY(button.isChecked());
    QVERIFY(running(button, "h__anim"));
}

void tst_KelSwitch::readOnlyIsDeaf()
{
    KelSwitch button;
    button.resize(90, 30);
    button.setReadOnly(true);
    QSignalSpy clicked(&button, &KelSwitch::clicked);
    press(button, QPoint(70, 15));
    move(button, QPoint(40, 15));
    move(button, QPoint(20, 15));
    QCOMPARE(button.h__anim(), 1.0f);
    release(button, QPoint(20, 15));
    QVERIFY(!button.isDown());
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::keyClick(&button, Qt::Key_Space);
    button.click();
    QVERIFY(!button.isChecked());
    QVERIFY(!running(button, "h__anim"));
    QCOMPARE(clicked.size(), 2); // By key and by code, as of any button.

    button.setOn();
    QVERIFY(button.isChecked());
    QVERIFY(running(button, "h__anim") && running(button, "h__anim_s"));
}

void tst_KelSwitch::readOnlyWhileHeldDown()
{
    KelSwitch button;
    button.resize(90, 30);
    QSignalSpy released(&button, &KelSwitch::released);
    press(button, QPoint(45, 15));
    QVERIFY(button.isDown());
    button.setReadOnly(true);
    release(button, QPoint(45, 15));
    QVERIFY(!button.isDown() && !button.isChecked());
    QCOMPARE(released.size(), 1);

    // That press is over: nothing is dragged later on.
    button.setReadOnly(false);
    settle(button, 0.5f);
    move(button, QPoint(5, 15));
    move(button, QPoint(80, 15));
    QCOMPARE(button.h__anim(), 0.5f);
}

void tst_KelSwitch::enableAndDisable()
{
    KelSwitch button;
    button.disable();
    QVERIFY(!button.isEnabled());
    button.enable();
    QVERIFY(button.isEnabled());
}

void tst_KelSwitch::pressOutsideTheTrack_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<bool>("inside");
    const int flat = Qt::Horizontal;
    const int high = Qt::Vertical;
    QTest::newRow("left of it") << QSize(300, 40) << flat << QPoint(89, 20) << false;
    QTest::newRow("its left end") << QSize(300, 40) << flat << QPoint(90, 20) << true;
    QTest::newRow("right of it") << QSize(300, 40) << flat << QPoint(211, 20) << false;
    QTest::newRow("above it") << QSize(90, 90) << flat << QPoint(45, 29) << false;
    QTest::newRow("its upper edge") << QSize(90, 90) << flat << QPoint(45, 30) << true;
    QTest::newRow("below it") << QSize(90, 90) << flat << QPoint(45, 61) << false;
    QTest::newRow("vertical, above it") << QSize(40, 300) << high << QPoint(20, 89) << false;
    QTest::newRow("vertical, its upper end") << QSize(40, 300) << high << QPoint(20, 90) << true;
    QTest::newRow("vertical, left of it") << QSize(90, 90) << high << QPoint(29, 45) << false;
}

void tst_KelSwitch::pressOutsideTheTrack()
{
    QFETCH(QSize, size);
    QFETCH(int, orientation);
    QFETCH(QPoint, at);
    QFETCH(bool, inside);

    KelSwitch button;
    button.resize(size);
    button.setOrientation(static_cast<Qt::Orientation>(orientation));
    settle(button, 0.75f);
    QSignalSpy pressed(&button, &KelSwitch::pressed);
    QMouseEvent event(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, {});
    event.ignore();
    QCoreApplication::sendEvent(&button, &event);
    QVERIFY(event.isAccepted());
    QCOMPARE(pressed.size(), inside ? 1 : 0);
    QCOMPARE(running(button, "h__anim"), !inside);
    QCOMPARE(running(button, "h__anim_s"), !inside);
    QCOMPARE(button.h__anim(), 0.75f);

    move(button, QPoint(size.width() / 2, size.height() / 2));
    release(button, at);
    QCOMPARE(button.isDown(), false);
    if (!inside) {
        QVERIFY(!button.isChecked());
        QTRY_COMPARE(button.h__anim(), 1.0f);
    }
}

void tst_KelSwitch::pressInsideStopsTheHandleOnly()
{
    KelSwitch button;
    button.resize(90, 30);
    button.setOn();
    press(button, QPoint(45, 15));
    QVERIFY(!running(button, "h__anim"));
    QVERIFY(running(button, "h__anim_s"));
    release(button, QPoint(45, 15));
    QVERIFY(!button.isChecked());
    QVERIFY(running(button, "h__anim"));
}

void tst_KelSwitch::smallMovesAreNoDrag()
{
    const int distance = QApplication::startDragDistance();
    KelSwitch button;
    button.resize(300, 100);
    settle(button, 0.5f);
    press(button, QPoint(150, 50));
    move(button, QPoint(150 + distance, 50));
    move(button, QPoint(150, 50));
    move(button, QPoint(150 + distance - 1, 51)); // Measured from the press, not from the last move.
    QCOMPARE(button.h__anim(), 0.5f);
    QSignalSpy clicked(&button, &KelSwitch::clicked);
    release(button, QPoint(150, 50));
    QCOMPARE(clicked.size(), 1);
    QVERIFY(button.isChecked());
}

void tst_KelSwitch::drag_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("inverted");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<double>("result");

    // A move by 30 along a track of 300, right and down, from the middle position.
    const int flat = Qt::Horizontal;
    const int high = Qt::Vertical;
    const QPoint first(100, 100);
    const QPoint second(200, 200);
    QTest::newRow("side") << 0 << flat << false << first << 0.5 - 0.2;
    QTest::newRow("side, inverted") << 0 << flat << true << first << 0.5 + 0.2;
    QTest::newRow("side, vertical") << 0 << high << false << first << 0.5 + 0.2;
    QTest::newRow("side, vertical, inverted") << 0 << high << true << first << 0.5 - 0.2;
    QTest::newRow("centre, first half") << 1 << flat << false << first << 0.5 - 0.4;
    QTest::newRow("centre, second half") << 1 << flat << false << second << 0.5 + 0.4;
    QTest::newRow("centre, first half, inverted") << 1 << flat << true << first << 0.5 + 0.4;
    QTest::newRow("centre, second half, inverted") << 1 << flat << true << second << 0.5 - 0.4;
    QTest::newRow("centre, vertical, first half") << 1 << high << false << first << 0.5 - 0.4;
    QTest::newRow("centre, vertical, second half") << 1 << high << false << second << 0.5 + 0.4;
}

void tst_KelSwitch::drag()
{
    QFETCH(int, style);
    QFETCH(int, orientation);
    QFETCH(bool, inverted);
    QFETCH(QPoint, from);
    QFETCH(double, result);

    const bool flat = orientation == Qt::Horizontal;
    KelSwitch button;
    button.setOrientation(static_cast<Qt::Orientation>(orientation));
    button.setSwitchStyle(static_cast<KelSwitch::SwitchStyle>(style));
    button.setInvertedAppearance(inverted);
    button.resize(flat ? QSize(300, 120) : QSize(120, 300));
    const QPoint start = flat ? QPoint(from.x(), 60) : QPoint(60, from.y());
    settle(button, 0.5f);

    press(button, start);
    const QPoint begun = start + QPoint(20, 20);
    move(button, begun);
    QCOMPARE(button.h__anim(), 0.5f); // The move that starts the drag only gets a grip.
    move(button, begun + QPoint(flat ? 30 : -7, flat ? -7 : 30));
    QCOMPARE(button.h__anim(), float(result));
    QVERIFY(!running(button, "h__anim"));
}

void tst_KelSwitch::dragIsClamped()
{
    KelSwitch button;
    button.resize(300, 100);
    settle(button, 0.5f);
    press(button, QPoint(150, 50));
    move(button, QPoint(170, 50));
    move(button, QPoint(290, 50));
    QCOMPARE(button.h__anim(), 0.0f);
    move(button, QPoint(275, 50)); // A move that was clamped still took the pointer along.
    QCOMPARE(button.h__anim(), 0.1f);
    move(button, QPoint(0, 50));
    QCOMPARE(button.h__anim(), 1.0f);
}

void tst_KelSwitch::dragEnds_data()
{
    QTest::addColumn<float>("position");
    QTest::addColumn<bool>("on");
    QTest::newRow("nearer to on") << 0.4f << true;
    QTest::newRow("exactly between") << 0.5f << true;
    QTest::newRow("nearer to off") << 0.51f << false;
}

void tst_KelSwitch::dragEnds()
{
    QFETCH(float, position);
    QFETCH(bool, on);
    for (const bool before : {false, true}) {
        KelSwitch button;
        button.resize(300, 100);
        button.setChecked(before);
        QSignalSpy clicked(&button, &KelSwitch::clicked);
        QSignalSpy released(&button, &KelSwitch::released);
        QSignalSpy toggled(&button, &KelSwitch::toggled);
        press(button, QPoint(150, 50));
        move(button, QPoint(170, 50));
        settle(button, position);
        release(button, QPoint(170, 50));
        QCOMPARE(button.isChecked(), on);
        QCOMPARE(clicked.size(), 0);
        QCOMPARE(released.size(), 1);
        QCOMPARE(toggled.size(), on == before ? 0 : 1);
        QVERIFY(!button.isDown());
        QTRY_COMPARE(button.h__anim(), on ? 0.0f : 1.0f);

        // The next press is no drag any more.
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(150, 50));
        QCOMPARE(button.isChecked(), !on);
    }
}

void tst_KelSwitch::dragBackAnimatesHome()
{
    KelSwitch button;
    button.resize(300, 100);
    press(button, QPoint(50, 50));
    move(button, QPoint(70, 50));
    move(button, QPoint(80, 50));
    QVERIFY(button.h__anim() < 1.0f);
    release(button, QPoint(80, 50));
    QVERIFY(running(button, "h__anim"));
    QTRY_COMPARE(button.h__anim(), 1.0f);
}

void tst_KelSwitch::dragReleasedOutside()
{
    KelSwitch button;
    button.resize(300, 100);
    QSignalSpy released(&button, &KelSwitch::released);
    QSignalSpy clicked(&button, &KelSwitch::clicked);
    press(button, QPoint(150, 50));
    move(button, QPoint(170, 50));
    move(button, QPoint(500, 50));
    release(button, QPoint(500, 50));
    QVERIFY(button.isChecked());
    QCOMPARE(released.size(), 1);
    QCOMPARE(clicked.size(), 0);
}

void tst_KelSwitch::deletedByTheEndOfADrag()
{
    auto *button = new KelSwitch;
    const QPointer<KelSwitch> alive(button);
    button->resize(300, 100);
    button->show();
    int toggles = 0;
    connect(button, &KelSwitch::toggled, [&toggles] { ++toggles; });
    connect(button, &KelSwitch::released, [button] { delete button; });
    press(*button, QPoint(150, 50));
    move(*button, QPoint(170, 50));
    move(*button, QPoint(280, 50));
    QVERIFY(alive);
    // QTest's own release asks the widget once more.
    QMouseEvent event(QEvent::MouseButtonRelease, QPoint(280, 50), Qt::LeftButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(button, &event);
    QVERIFY(!alive);
    QCOMPARE(toggles, 0);
}

void tst_KelSwitch::groupMayRefuse()
{
    KelSwitch button;
    QButtonGroup group;
    group.addButton(&button);
    button.resize(300, 100);
    button.setOn();
    settle(button, 0.0f);
    press(button, QPoint(250, 50));
    move(button, QPoint(230, 50));
    move(button, QPoint(0, 50));
    QCOMPARE(button.h__anim(), 1.0f);
    release(button, QPoint(0, 50));
    QVERIFY(button.isChecked());
    QTRY_COMPARE(button.h__anim(), 0.0f);
}

KEL_TEST_MAIN(tst_KelSwitch)
#include "tst_kelswitch.moc"
