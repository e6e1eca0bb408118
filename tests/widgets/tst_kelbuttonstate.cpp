#include "buttonbench.h"
#include "buttonlog.h"
#include "testmain.h"

/// States: what the slots make of them and what they announce.
class tst_KelButtonState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goesTo_data();
    void goesTo();
    void sameStateIsSilentButSettlesAgain();
    void sameStateAnimatesAgain();
    void unknownStateIsIgnored_data();
    void unknownStateIsIgnored();
    void signalsComeBeforeTheFace();
    void numberIsReadForEachSignal();
    void stateSetByAHandlerWins();
    void handlerMayDeleteTheButton_data();
    void handlerMayDeleteTheButton();
    void applyStateLeavesTheColour();
    void togglingOff_data();
    void togglingOff();
    void clickFansOut();
    void disableGoesGrayFirst();
    void enables();
};

void tst_KelButtonState::goesTo_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<int>("state");

    const auto row = [](const char *name, int state, Action action) { QTest::newRow(name) << action << state; };
    row("setState Gray", 0, [](KelButton &b) { b.setState(KelButton::Gray); });
    row("setState Yes", 1, [](KelButton &b) { b.setState(KelButton::Yes); });
    row("setState No", 2, [](KelButton &b) { b.setState(KelButton::No); });
    row("setStateGray", 0, [](KelButton &b) { b.setStateGray(); });
    row("setStateYes", 1, [](KelButton &b) { b.setStateYes(); });
    row("setStateNo", 2, [](KelButton &b) { b.setStateNo(); });
    row("setStateYesOrNo true", 1, [](KelButton &b) { b.setStateYesOrNo(true); });
    row("setStateYesOrNo false", 2, [](KelButton &b) { b.setStateYesOrNo(false); });
    row("setStateYesOrGray true", 1, [](KelButton &b) { b.setStateYesOrGray(true); });
    row("setStateYesOrGray false", 0, [](KelButton &b) { b.setStateYesOrGray(false); });
    row("setStateNoOrYes true", 2, [](KelButton &b) { b.setStateNoOrYes(true); });
    row("setStateNoOrYes false", 1, [](KelButton &b) { b.setStateNoOrYes(false); });
    row("setStateNoOrGray true", 2, [](KelButton &b) { b.setStateNoOrGray(true); });
    row("setStateNoOrGray false", 0, [](KelButton &b) { b.setStateNoOrGray(false); });
    row("property", 2, [](KelButton &b) { b.setProperty("state", 2); });
}

void tst_KelButtonState::goesTo()
{
    QFETCH(Action, action);
    QFETCH(int, state);

    const QColor colors[] = {Grayish, Qt::green, Qt::red};
    for (int before = 0; before <= 2; ++before) {
        KelButton button;
        prepare(button);
        button.setState(static_cast<KelButton::State>(before));
        ButtonLog log(&button);

        action(button);
        QCOMPARE(int(button.state()), state);
        QCOMPARE(faceOf(button), colors[state]);

        QStringList expected;
        if (state != before) {
            expected << QStringLiteral("stateChanged %1 %2").arg(state).arg(before)
                     << QStringLiteral("stateChangedID 7 %1 %2").arg(state).arg(before)
                     << QStringLiteral("face ") + colors[state].name();
        }
        QCOMPARE(log.take(), expected);
    }
}

void tst_KelButtonState::sameStateIsSilentButSettlesAgain()
{
    KelButton button;
    prepare(button);
    button.setColor(Blue);
    ButtonLog log(&button);
    button.setState(KelButton::Gray);
    QCOMPARE(log.take(), QStringList(QStringLiteral("face ") + Grayish.name()));
}

void tst_KelButtonState::sameStateAnimatesAgain()
{
    KelButton button;
    button.setCurrentColor(Blue);
    QCOMPARE(animationOf(button)->state(), QAbstractAnimation::Stopped);
    button.setState(KelButton::Gray);
    QCOMPARE(animationOf(button)->state(), QAbstractAnimation::Running);
    QCOMPARE(animationOf(button)->endValue().value<QColor>(), button.grayColor());
}

void tst_KelButtonState::unknownStateIsIgnored_data()
{
    QTest::addColumn<int>("state");
    for (const int state : {-1, 3, 1000})
        QTest::newRow(qPrintable(QString::number(state))) << state;
}

void tst_KelButtonState::unknownStateIsIgnored()
{
    QFETCH(int, state);
    KelButton button;
    prepare(button);
    button.setStateYes();
    button.setCurrentColor(Blue);
    ButtonLog log(&button);

    button.setState(static_cast<KelButton::State>(state));
    button.setStateID(-1, static_cast<KelButton::State>(state));
    QCOMPARE(button.state(), KelButton::Yes);
    QCOMPARE(log.take(), QStringList());
}

void tst_KelButtonState::signalsComeBeforeTheFace()
{
    KelButton button;
    prepare(button);
    QList<QColor> seen;
    connect(&button, &KelButton::stateChanged, this, [&] { seen << faceOf(button); });
    connect(&button, &KelButton::stateChangedID, this, [&] { seen << faceOf(button); });
    button.setStateYes();
    QCOMPARE(seen, QList<QColor>({Grayish, Grayish}));
}

void tst_KelButtonState::numberIsReadForEachSignal()
{
    KelButton button;
    prepare(button);
    ButtonLog log(&button);
    connect(&button, &KelButton::stateChanged, this, [&] { button.setClickID(8); });
    button.applyState(KelButton::No);
    QCOMPARE(log.take(), QStringList({QStringLiteral("stateChanged 2 0"), QStringLiteral("stateChangedID 8 2 0")}));
}

void tst_KelButtonState::stateSetByAHandlerWins()
{
    KelButton button;
    prepare(button);
    ButtonLog log(&button);
    connect(&button, &KelButton::stateChanged, this, [&](int state) {
        if (state == KelButton::Yes)
            button.setStateNo();
    });
    button.setStateYes();

    QCOMPARE(button.state(), KelButton::No);
    QCOMPARE(faceOf(button), QColor(Qt::red));
    QCOMPARE(log.take(), QStringList({QStringLiteral("stateChanged 1 0"), QStringLiteral("stateChanged 2 1"),
                                      QStringLiteral("stateChangedID 7 2 1"), QStringLiteral("face #ff0000"),
                                      QStringLiteral("stateChangedID 7 1 0")}));
}

void tst_KelButtonState::handlerMayDeleteTheButton_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("slot");
    for (const char *signal : {SIGNAL(stateChanged(State, State)), SIGNAL(stateChangedID(int, State, State))}) {
        for (const char *slot : {"setStateGray", "disable", "_toggled"})
            QTest::addRow("%s in %s", signal, slot) << QMetaObject::normalizedSignature(signal) << QByteArray(slot);
    }
}

class Deleter : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void remove() { delete sender(); }
};

void tst_KelButtonState::handlerMayDeleteTheButton()
{
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, slot);

    Deleter deleter;
    const QPointer<KelButton> button(new KelButton);
    button->setStateYes();
    connect(button.data(), signal.constData(), &deleter, SLOT(remove()));
    if (slot == "_toggled")
        QVERIFY(QMetaObject::invokeMethod(button, slot.constData(), Q_ARG(bool, false)));
    else
        QVERIFY(QMetaObject::invokeMethod(button, slot.constData()));
    QVERIFY(!button);
}

void tst_KelButtonState::applyStateLeavesTheColour()
{
    KelButton button;
    prepare(button);
    ButtonLog log(&button);
    button.applyState(KelButton::Yes);
    QCOMPARE(button.state(), KelButton::Yes);
    QCOMPARE(log.take(), QStringList({QStringLiteral("stateChanged 1 0"), QStringLiteral("stateChangedID 7 1 0")}));

    button.applyState(KelButton::Yes);
    QCOMPARE(log.take(), QStringList());

    // What the face settles on is still gray.
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(faceOf(button), Grayish);
}

void tst_KelButtonState::togglingOff_data()
{
    QTest::addColumn<bool>("autoGray");
    QTest::addColumn<bool>("on");
    QTest::addColumn<QStringList>("lines");

    const QString toggledOff = QStringLiteral("toggledID 7 false");
    QTest::newRow("off goes gray before it is announced")
        << true << false
        << QStringList({QStringLiteral("stateChanged 0 1"), QStringLiteral("stateChangedID 7 0 1"),
                        QStringLiteral("face ") + Grayish.name(), toggledOff});
    QTest::newRow("off without fallback keeps the state") << false << false << QStringList(toggledOff);
    QTest::newRow("on keeps the state") << true << true << QStringList(QStringLiteral("toggledID 7 true"));
}

void tst_KelButtonState::togglingOff()
{
    QFETCH(bool, autoGray);
    QFETCH(bool, on);
    QFETCH(QStringList, lines);

    KelButton button;
    prepare(button);
    button.setCheckable(true);
    button.setAutoGray(autoGray);
    button.setChecked(!on);
    button.setStateYes();
    ButtonLog log(&button);
    button.setChecked(on);

    QStringList written = log.take();
    QCOMPARE(written.removeAll(QStringLiteral("toggled ") + QVariant(on).toString()), 1);
    QCOMPARE(written, lines);
}

void tst_KelButtonState::clickFansOut()
{
    KelButton button;
    prepare(button);
    button.setCheckable(true);
    ButtonLog log(&button);
    button.click();
    QCOMPARE(log.take(),
             QStringList({QStringLiteral("pressed"), QStringLiteral("toggledID 7 true"), QStringLiteral("toggled true"),
                          QStringLiteral("released"), QStringLiteral("clickedID 7"), QStringLiteral("clicked true")}));
}

void tst_KelButtonState::disableGoesGrayFirst()
{
    KelButton button;
    prepare(button);
    button.setStateNo();
    ButtonLog log(&button);
    bool enabledThen = false;
    connect(&button, &KelButton::stateChanged, this, [&] { enabledThen = button.isEnabled(); });
    button.disable();
    QVERIFY(enabledThen);
    QCOMPARE(log.take(), QStringList({QStringLiteral("stateChanged 0 2"), QStringLiteral("stateChangedID 7 0 2"),
                                      QStringLiteral("face ") + Grayish.name(), QStringLiteral("disabled")}));
    QVERIFY(!button.isEnabled());
}

void tst_KelButtonState::enables()
{
    KelButton button;
    button.disable();
    button.setStateYes();
    button.enable();
    QVERIFY(button.isEnabled());
    QCOMPARE(button.state(), KelButton::Yes);
}

KEL_TEST_MAIN(tst_KelButtonState)
#include "tst_kelbuttonstate.moc"
