#include "buttonlog.h"
#include "testmain.h"

#include <QButtonGroup>
#include <QPropertyAnimation>
#include <QWindow>
#include <functional>

/// Presses and releases: what the face shows and what is announced, in which order.
class tst_KelButtonMouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pressAndRelease_data();
    void pressAndRelease();
    void releaseOutside();
    void doubleClick();
    void throughTheWindow();
    void checkable();
    void togglesAsAnyButton_data();
    void togglesAsAnyButton();
    void onlyTheMouseIsNumbered();
    void disabledIsDeaf();
    void pressAnimatesToTheDownColour();
    void releaseJumpsAndFadesSlowly();
    void notAnimatedReleaseEndsInTheStateColour();
    void fadeIsToTheStateThatAHandlerSet();
    void handlerMayDeleteTheButton_data();
    void handlerMayDeleteTheButton();
};

static QString face(const QColor &color)
{
    return QStringLiteral("face ") + color.name();
}

static void prepare(KelButton &button)
{
    button.setAnimated(false);
    button.setClickID(9);
    button.setYesID(1);
    button.setNoID(2);
    button.resize(60, 40);
}

void tst_KelButtonMouse::pressAndRelease_data()
{
    QTest::addColumn<int>("mouseButton");
    QTest::addColumn<bool>("clicks");
    QTest::newRow("left") << int(Qt::LeftButton) << true;
    QTest::newRow("right") << int(Qt::RightButton) << false;
    QTest::newRow("middle") << int(Qt::MiddleButton) << false;
}

void tst_KelButtonMouse::pressAndRelease()
{
    QFETCH(int, mouseButton);
    QFETCH(bool, clicks);

    KelButton button;
    prepare(button);
    ButtonLog log(&button);
    const QString down = face(Qt::yellow);
    const QString gray = face(button.grayColor());

    QTest::mousePress(&button, static_cast<Qt::MouseButton>(mouseButton));
    QStringList expected(down);
    if (clicks)
        expected << QStringLiteral("pressed");
    expected << QStringLiteral("pressedID 9");
    QCOMPARE(log.take(), expected);

    QTest::mouseRelease(&button, static_cast<Qt::MouseButton>(mouseButton));
    expected = QStringList(gray);
    if (clicks)
        expected << QStringLiteral("released") << QStringLiteral("clickedID 9") << QStringLiteral("clicked false");
    expected << QStringLiteral("releasedID 9");
    QCOMPARE(log.take(), expected);
    QCOMPARE(button.state(), KelButton::Gray);
}

void tst_KelButtonMouse::releaseOutside()
{
    KelButton button;
    prepare(button);
    QTest::mousePress(&button, Qt::LeftButton);
    ButtonLog log(&button);
    QTest::mouseMove(&button, QPoint(500, 500));
    QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(500, 500));
    const QStringList lines = log.take();
    QCOMPARE(lines.count(QStringLiteral("releasedID 9")), 1);
    QVERIFY(!lines.contains(QStringLiteral("clickedID 9")));
    QCOMPARE(lines.filter(QStringLiteral("face")), QStringList(face(button.grayColor())));
}

void tst_KelButtonMouse::doubleClick()
{
    KelButton button;
    prepare(button);
    ButtonLog log(&button);
    QTest::mouseDClick(&button, Qt::LeftButton); // Of a double click, only the second press.
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(
        log.take().filter(QStringLiteral("ID")),
        QStringList({QStringLiteral("pressedID 9"), QStringLiteral("clickedID 9"), QStringLiteral("releasedID 9")}));
}

void tst_KelButtonMouse::throughTheWindow()
{
    QWidget window;
    KelButton button(&window);
    prepare(button);
    window.resize(200, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    ButtonLog log(&button);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(150, 80));
    QStringList lines = log.take();
    QCOMPARE(lines.count(QStringLiteral("pressedID 9")), 1);
    QCOMPARE(lines.count(QStringLiteral("releasedID 9")), 1);
    QCOMPARE(lines.count(QStringLiteral("clickedID 9")), 0);

    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(10, 10));
    lines = log.take();
    QCOMPARE(lines.count(QStringLiteral("pressedID 9")), 2);
    QCOMPARE(lines.count(QStringLiteral("releasedID 9")), 2);
}

void tst_KelButtonMouse::checkable()
{
    KelButton button;
    prepare(button);
    button.setCheckable(true);
    button.setChecked(true);
    button.setStateYes();
    QTest::mousePress(&button, Qt::LeftButton);
    ButtonLog log(&button);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(log.take(),
             QStringList({face(Qt::green), QStringLiteral("stateChanged 0 1"), QStringLiteral("stateChangedID 9 0 1"),
                          face(button.grayColor()), QStringLiteral("toggledID 9 false"),
                          QStringLiteral("toggled false"), QStringLiteral("released"), QStringLiteral("clickedID 9"),
                          QStringLiteral("clicked false"), QStringLiteral("releasedID 9")}));
}

void tst_KelButtonMouse::togglesAsAnyButton_data()
{
    QTest::addColumn<bool>("inGroup");
    QTest::addColumn<bool>("blocked");
    QTest::newRow("alone") << false << false;
    QTest::newRow("in a group") << true << false;
    QTest::newRow("with its signals blocked") << false << true;
}

void tst_KelButtonMouse::togglesAsAnyButton()
{
    QFETCH(bool, inGroup);
    QFETCH(bool, blocked);

    KelButton button;
    KelButton other;
    QButtonGroup group;
    for (KelButton *each : {&button, &other}) {
        each->setCheckable(true);
        if (inGroup)
            group.addButton(each);
    }
    other.setChecked(true);
    QSignalSpy toggled(&button, &KelButton::toggled);
    button.blockSignals(blocked);
    QTest::mouseClick(&button, Qt::LeftButton);
    QVERIFY(button.isChecked());
    QCOMPARE(other.isChecked(), !inGroup);
    QCOMPARE(toggled.size(), blocked ? 0 : 1);
    QCOMPARE(button.signalsBlocked(), blocked);

    QTest::mouseClick(&button, Qt::LeftButton); // The chosen one of a group stays.
    QCOMPARE(button.isChecked(), inGroup);
    QCOMPARE(toggled.size(), blocked ? 0 : (inGroup ? 1 : 2));
}

void tst_KelButtonMouse::onlyTheMouseIsNumbered()
{
    KelButton button;
    prepare(button);
    ButtonLog log(&button);
    button.click();
    QTest::keyClick(&button, Qt::Key_Space);
    const QStringList lines = log.take();
    QCOMPARE(lines.count(QStringLiteral("clickedID 9")), 2);
    QCOMPARE(lines.count(QStringLiteral("pressed")), 2);
    QVERIFY(lines.filter(QStringLiteral("pressedID")).isEmpty());
    QVERIFY(lines.filter(QStringLiteral("releasedID")).isEmpty());
    QVERIFY(lines.filter(QStringLiteral("face")).isEmpty());
}

void tst_KelButtonMouse::disabledIsDeaf()
{
    KelButton button;
    prepare(button);
    button.setEnabled(false);
    ButtonLog log(&button);
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, {});
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(5, 5), Qt::LeftButton, {}, {});
    QCoreApplication::sendEvent(&button, &press);
    QCoreApplication::sendEvent(&button, &release);
    QCOMPARE(log.take(), QStringList());
}

void tst_KelButtonMouse::pressAnimatesToTheDownColour()
{
    KelButton button;
    const auto *animation = button.findChild<QPropertyAnimation *>();
    bool ranBeforeTheBase = false;
    connect(&button, &KelButton::pressed, this,
            [&] { ranBeforeTheBase = animation->state() == QAbstractAnimation::Running; });
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(ranBeforeTheBase);
    QCOMPARE(button.h__currentColor(), button.grayColor());
    QCOMPARE(animation->endValue().value<QColor>(), button.downColor());
    QCOMPARE(animation->duration(), 300);
    QTest::mouseRelease(&button, Qt::LeftButton);
}

void tst_KelButtonMouse::releaseJumpsAndFadesSlowly()
{
    KelButton button;
    const auto *animation = button.findChild<QPropertyAnimation *>();
    QTest::mousePress(&button, Qt::LeftButton);
    ButtonLog log(&button);
    QColor seenByTheBase;
    connect(&button, &KelButton::released, this, [&] { seenByTheBase = button.h__currentColor(); });
    QTest::mouseRelease(&button, Qt::LeftButton);

    QCOMPARE(log.take().value(0), face(Qt::yellow));
    QCOMPARE(seenByTheBase, QColor(Qt::yellow));
    QCOMPARE(animation->state(), QAbstractAnimation::Running);
    QCOMPARE(animation->startValue().value<QColor>(), QColor(Qt::yellow));
    QCOMPARE(animation->endValue().value<QColor>(), button.grayColor());
    QCOMPARE(animation->duration(), 1000);
    QCOMPARE(button.state(), KelButton::Gray);
}

void tst_KelButtonMouse::notAnimatedReleaseEndsInTheStateColour()
{
    KelButton button;
    prepare(button);
    button.setStateNo();
    QTest::mousePress(&button, Qt::LeftButton);
    QCOMPARE(button.h__currentColor(), QColor(Qt::yellow));
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(button.h__currentColor(), QColor(Qt::red));
}

void tst_KelButtonMouse::fadeIsToTheStateThatAHandlerSet()
{
    KelButton button;
    const auto *animation = button.findChild<QPropertyAnimation *>();
    connect(&button, &KelButton::clicked, &button, &KelButton::setStateYes);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(animation->endValue().value<QColor>(), QColor(Qt::green));
    QCOMPARE(animation->startValue().value<QColor>(), QColor(Qt::yellow));
    QCOMPARE(animation->duration(), 300); // The answer came: its own, faster change replaces the fade.
}

class Deleter : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void remove() { delete sender(); }
};

void tst_KelButtonMouse::handlerMayDeleteTheButton_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const char *signal :
         {SIGNAL(pressed()), SIGNAL(pressedID(int)), SIGNAL(released()), SIGNAL(clickedID(int)), SIGNAL(clicked(bool)),
          SIGNAL(releasedID(int)), SIGNAL(toggled(bool)), SIGNAL(toggledID(int, bool)),
          SIGNAL(stateChanged(State, State)), SIGNAL(stateChangedID(int, State, State))})
        QTest::newRow(signal + 1) << QMetaObject::normalizedSignature(signal);
}

void tst_KelButtonMouse::handlerMayDeleteTheButton()
{
    QFETCH(QByteArray, signal);

    QWidget window;
    window.resize(200, 100);
    Deleter deleter;
    const QPointer<KelButton> button(new KelButton(&window));
    button->resize(60, 40);
    button->setCheckable(true);
    button->setChecked(true);
    button->setStateYes();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    connect(button.data(), signal.constData(), &deleter, SLOT(remove()));
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(!button);
}

KEL_TEST_MAIN(tst_KelButtonMouse)
#include "tst_kelbuttonmouse.moc"
