#include "testmain.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <kelbutton.h>

/// What the form loader, a property editor and connections by name see of the button.
class tst_KelButtonMeta : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void propertiesInOrder();
    void property_data();
    void property();
    void hiddenPropertyIsNotEdited();
    void stateEnum();
    void signalNames();
    void slotNames_data();
    void slotNames();
    void noOtherSlots();
    void privateSlots();
    void defaultsOfAPlainButton_data();
    void defaultsOfAPlainButton();
    void hostMembers();
    void constructedWithNumberAndText();
    void styleAndSizePolicy();
    void animationAsMade();
};

static const QMetaObject &meta = KelButton::staticMetaObject;

void tst_KelButtonMeta::propertiesInOrder()
{
    QStringList names;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        names << QString::fromLatin1(meta.property(i).name());
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("downColor upColor grayColor yesColor noColor h__currentColor state buttonVisible autoGray "
                            "animated animationDuration releaseDuration animationCurve blinkDelay clickID yesID noID "
                            "command"));
}

void tst_KelButtonMeta::property_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QVariant>("value");

    for (const char *name : {"downColor", "upColor", "grayColor", "yesColor", "noColor", "h__currentColor"})
        QTest::newRow(name) << QByteArray("QColor") << QVariant(QColor(1, 2, 3));
    QTest::newRow("state") << QByteArray("State") << QVariant(2);
    for (const char *name : {"autoGray", "animated"})
        QTest::newRow(name) << QByteArray("bool") << QVariant(false);
    for (const char *name : {"animationDuration", "releaseDuration", "blinkDelay", "clickID", "yesID", "noID"})
        QTest::newRow(name) << QByteArray("int") << QVariant(123);
    QTest::newRow("animationCurve") << QByteArray("QEasingCurve::Type") << QVariant(int(QEasingCurve::InOutQuad));
    QTest::newRow("command") << QByteArray("QString") << QVariant(QStringLiteral("a.b"));
}

void tst_KelButtonMeta::property()
{
    QFETCH(QByteArray, type);
    QFETCH(QVariant, value);

    const QMetaProperty property = meta.property(meta.indexOfProperty(QTest::currentDataTag()));
    QCOMPARE(QByteArray(property.typeName()).replace("KelButton::", ""), type);

    KelButton button;
    QVERIFY(property.write(&button, value));
    if (property.isEnumType())
        QCOMPARE(property.read(&button).toInt(), value.toInt());
    else
        QCOMPARE(property.read(&button), value);
}

void tst_KelButtonMeta::hiddenPropertyIsNotEdited()
{
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const bool hidden = QByteArray(property.name()).startsWith("h__");
        QCOMPARE(property.isDesignable(), !hidden);
        QCOMPARE(property.isStored(), !hidden);
        QVERIFY(property.isReadable() && property.isWritable());
    }
}

void tst_KelButtonMeta::stateEnum()
{
    const QMetaEnum states = meta.enumerator(meta.indexOfEnumerator("State"));
    QCOMPARE(states.keyCount(), 3);
    QCOMPARE(states.keyToValue("Gray"), 0);
    QCOMPARE(states.keyToValue("Yes"), 1);
    QCOMPARE(states.keyToValue("No"), 2);
    QVERIFY(meta.property(meta.indexOfProperty("state")).isEnumType());
    QVERIFY(meta.property(meta.indexOfProperty("animationCurve")).isEnumType());
}

static QStringList ownMethods(QMetaMethod::MethodType type, QMetaMethod::Access access)
{
    QStringList lines;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() != type || method.access() != access)
            continue;
        const QList<QByteArray> names = method.parameterNames();
        lines << QString::fromLatin1(method.methodSignature() + ' ' + names.join(','));
    }
    return lines;
}

void tst_KelButtonMeta::signalNames()
{
    QCOMPARE(ownMethods(QMetaMethod::Signal, QMetaMethod::Public),
             QStringList({QStringLiteral("clickedID(int) id"), QStringLiteral("pressedID(int) id"),
                          QStringLiteral("releasedID(int) id"), QStringLiteral("toggledID(int,bool) id,on"),
                          QStringLiteral("stateChanged(State,State) state,prev_state"),
                          QStringLiteral("stateChangedID(int,State,State) id,state,prev_state")}));
}

static const char *const SlotLines[] = {
    "enable() ",
    "disable() ",
    "setClickID(int) id",
    "setYesID(int) id",
    "setNoID(int) id",
    "setButtonVisible(bool) yes",
    "setCommand(QString) cmd",
    "setDownColor(QColor) col",
    "setUpColor(QColor) col",
    "setGrayColor(QColor) col",
    "setYesColor(QColor) col",
    "setNoColor(QColor) col",
    "setState(State) s",
    "setStateGray() ",
    "setStateYes() ",
    "setStateNo() ",
    "setStateYesOrNo(bool) yes",
    "setStateYesOrGray(bool) yes",
    "setStateNoOrYes(bool) no",
    "setStateNoOrGray(bool) no",
    "blinkYes() ",
    "blinkNo() ",
    "blinkYesOrNo(bool) yes",
    "blinkNoOrYes(bool) no",
    "setColor(QColor) col",
    "setCurrentColor(QColor) col",
    "setAutoGray(bool) yes",
    "setAnimated(bool) yes",
    "setAnimationDuration(int) dur",
    "setReleaseDuration(int) dur",
    "setBlinkDelay(int) dur",
    "setAnimationCurve(QEasingCurve::Type) curve",
    "delayedClick() ",
    "delayedToggle() ",
    "enableID(int) yes_id",
    "disableID(int) yes_id",
    "setStateID(int,State) yes_id,s",
    "setStateGrayID(int) yes_id",
    "setStateYesID(int) yes_id",
    "setStateNoID(int) no_id",
    "setStateYesOrNoID(int,bool) yes_id,yes",
    "setStateYesOrGrayID(int,bool) yes_id,yes",
    "setStateNoOrYesID(int,bool) no_id,no",
    "setStateNoOrGrayID(int,bool) no_id,no",
    "blinkYesID(int) yes_id",
    "blinkYesOrNoID(int,bool) yes_id,yes",
    "blinkNoID(int) no_id",
    "blinkNoOrYesID(int,bool) no_id,no",
    "delayedClickID(int) yes_id",
    "delayedToggleID(int) yes_id",
    "setStateYesIDOrGray(int) yes_id",
    "setStateYesIDOrNo(int) yes_id",
    "setStateNoIDOrYes(int) no_id",
    "setStateNoIDOrGray(int) no_id",
};

void tst_KelButtonMeta::slotNames_data()
{
    QTest::addColumn<QString>("line");
    for (const char *line : SlotLines)
        QTest::newRow(line) << QString::fromLatin1(line);
}

void tst_KelButtonMeta::slotNames()
{
    QFETCH(QString, line);
    QVERIFY(ownMethods(QMetaMethod::Slot, QMetaMethod::Public).contains(line));
}

void tst_KelButtonMeta::noOtherSlots()
{
    QCOMPARE(ownMethods(QMetaMethod::Slot, QMetaMethod::Public).size(), int(std::size(SlotLines)));
    QCOMPARE(ownMethods(QMetaMethod::Slot, QMetaMethod::Protected), QStringList());
}

void tst_KelButtonMeta::privateSlots()
{
    QCOMPARE(ownMethods(QMetaMethod::Slot, QMetaMethod::Private),
             QStringList({QStringLiteral("_clicked() "), QStringLiteral("_toggled(bool) on")}));
}

void tst_KelButtonMeta::defaultsOfAPlainButton_data()
{
    QTest::addColumn<QVariant>("value");

    const QColor face = QToolButton().palette().color(QPalette::Button);
    for (const char *name : {"upColor", "grayColor", "h__currentColor"})
        QTest::newRow(name) << QVariant(face);
    QTest::newRow("downColor") << QVariant(QColor(Qt::yellow));
    QTest::newRow("yesColor") << QVariant(QColor(Qt::green));
    QTest::newRow("noColor") << QVariant(QColor(Qt::red));
    QTest::newRow("state") << QVariant(0);
    QTest::newRow("autoGray") << QVariant(true);
    QTest::newRow("animated") << QVariant(true);
    QTest::newRow("animationDuration") << QVariant(300);
    QTest::newRow("releaseDuration") << QVariant(1000);
    QTest::newRow("animationCurve") << QVariant(int(QEasingCurve::OutSine));
    QTest::newRow("blinkDelay") << QVariant(500);
    for (const char *name : {"clickID", "yesID", "noID"})
        QTest::newRow(name) << QVariant(-1);
    QTest::newRow("command") << QVariant(QString());
}

void tst_KelButtonMeta::defaultsOfAPlainButton()
{
    QFETCH(QVariant, value);
    const KelButton button;
    const QVariant read = button.property(QTest::currentDataTag());
    if (value.type() == QVariant::Int)
        QCOMPARE(read.toInt(), value.toInt());
    else
        QCOMPARE(read, value);
}

void tst_KelButtonMeta::hostMembers()
{
    KelButton button;
    QCOMPARE(button.designMode, false);
    QCOMPARE(button.connectCheckTimer, -1);
    QCOMPARE(button.autoConnectPending, true);
    button.designMode = true;
    QCOMPARE(button.buttonVisible(), true);
}

void tst_KelButtonMeta::constructedWithNumberAndText()
{
    const KelButton button(42, QStringLiteral("Go"));
    QCOMPARE(button.parentWidget(), nullptr);
    QCOMPARE(button.clickID(), 42);
    QCOMPARE(button.yesID(), 42);
    QCOMPARE(button.noID(), 42);
    QCOMPARE(button.text(), QStringLiteral("Go"));
    QCOMPARE(button.state(), KelButton::Gray);
    QCOMPARE(button.toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
}

void tst_KelButtonMeta::styleAndSizePolicy()
{
    const KelButton button;
    QCOMPARE(button.sizePolicy(), QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred));
    QCOMPARE(button.toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
}

void tst_KelButtonMeta::animationAsMade()
{
    const KelButton button;
    const auto *animation = button.findChild<QPropertyAnimation *>();
    QVERIFY(animation != nullptr);
    QCOMPARE(animation->targetObject(), &button);
    QCOMPARE(animation->propertyName(), QByteArray("h__currentColor"));
    QCOMPARE(animation->easingCurve().type(), QEasingCurve::OutSine);
    QCOMPARE(animation->duration(), 350);
    QCOMPARE(animation->state(), QAbstractAnimation::Stopped);
}

KEL_TEST_MAIN(tst_KelButtonMeta)
#include "tst_kelbuttonmeta.moc"
