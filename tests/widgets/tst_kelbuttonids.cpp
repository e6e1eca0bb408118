#include "buttonlog.h"
#include "testmain.h"

#include <QMetaMethod>
#include <limits>

/// Numbered slots: each acts as its plain twin for its own number and does nothing for any other.
class tst_KelButtonIds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTwinIsKnown();
    void twin_data();
    void twin();
    void chooser_data();
    void chooser();
    void choosersAnnounce();
};

static const QMetaObject &meta = KelButton::staticMetaObject;
static constexpr int ClickId = 100;

/// Slots of the button whose name ends in ID and whose first parameter is an identifier.
static QList<QMetaMethod> twins()
{
    QList<QMetaMethod> found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == QMetaMethod::Slot && method.name().endsWith("ID") &&
            method.parameterNames().value(0).endsWith("_id"))
            found << method;
    }
    return found;
}

/// A button in a state from which every slot changes something that the log sees.
static void prepare(KelButton &button, int yesId, int noId)
{
    button.setAnimated(false);
    button.setCheckable(true);
    button.setBlinkDelay(0);
    button.setClickID(ClickId);
    button.setYesID(yesId);
    button.setNoID(noId);
    button.setColor(Qt::blue);
    button.setState(KelButton::Gray);
    button.setColor(Qt::blue);
}

/// What calling \a method does, its effects after the call included.
static QStringList effects(const QMetaMethod &method, const QVariantList &arguments, int yesId, int noId, bool enabled)
{
    KelButton button;
    prepare(button, yesId, noId);
    button.setEnabled(enabled);
    ButtonLog log(&button);

    const auto stateOf = [&](int i) { return static_cast<KelButton::State>(arguments.value(i).toInt()); };
    QVector<QGenericArgument> passed;
    QList<int> ints;
    QList<bool> bools;
    QList<KelButton::State> states;
    for (int i = 0; i < arguments.size(); ++i) {
        ints << arguments.at(i).toInt();
        bools << arguments.at(i).toBool();
        states << stateOf(i);
    }
    for (int i = 0; i < arguments.size(); ++i) {
        const QByteArray type = method.parameterTypes().at(i);
        if (type == "int")
            passed << Q_ARG(int, ints[i]);
        else if (type == "bool")
            passed << Q_ARG(bool, bools[i]);
        else
            passed << QGenericArgument("State", &states[i]);
    }
    if (!method.invoke(&button, Qt::DirectConnection, passed.value(0), passed.value(1)))
        return {QStringLiteral("not callable")};

    // Delayed calls are posted, and a blink without delay is a timer that is due.
    QCoreApplication::sendPostedEvents(&button);
    QCoreApplication::processEvents();
    return log.take();
}

void tst_KelButtonIds::everyTwinIsKnown()
{
    QStringList names;
    for (const QMetaMethod &method : twins())
        names << QString::fromLatin1(method.name() + ' ' + method.parameterNames().at(0));
    QCOMPARE(names.join(QLatin1String(", ")),
             QStringLiteral("enableID yes_id, disableID yes_id, setStateID yes_id, setStateGrayID yes_id, "
                            "setStateYesID yes_id, setStateNoID no_id, setStateYesOrNoID yes_id, "
                            "setStateYesOrGrayID yes_id, setStateNoOrYesID no_id, setStateNoOrGrayID no_id, "
                            "blinkYesID yes_id, blinkYesOrNoID yes_id, blinkNoID no_id, blinkNoOrYesID no_id, "
                            "delayedClickID yes_id, delayedToggleID yes_id"));
}

void tst_KelButtonIds::twin_data()
{
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QVariant>("value");

    for (const QMetaMethod &method : twins()) {
        QVariantList values{QVariant()};
        if (method.parameterCount() == 2)
            values = method.parameterTypes().at(1) == "bool" ? QVariantList{true, false} : QVariantList{0, 1, 2};
        for (const QVariant &value : values)
            QTest::addRow("%s %s", method.name().constData(), qPrintable(value.toString()))
                << method.methodSignature() << value;
    }
}

void tst_KelButtonIds::twin()
{
    QFETCH(QByteArray, signature);
    QFETCH(QVariant, value);

    const QMetaMethod method = meta.method(meta.indexOfMethod(signature.constData()));
    QByteArray plainSignature = signature;
    plainSignature.replace("ID(int,", "(").replace("ID(int)", "()");
    const QMetaMethod plain = meta.method(meta.indexOfMethod(plainSignature.constData()));
    QVERIFY2(plain.isValid(), plainSignature.constData());
    const bool listensToNo = method.parameterNames().at(0) == "no_id";
    const bool enabled = method.name() != "enableID";
    const QVariantList rest = value.isValid() ? QVariantList{value} : QVariantList{};

    const int most = std::numeric_limits<int>::max();
    for (const int own : {5, 0, -1, most}) {
        const int other = 6;
        const int yesId = listensToNo ? other : own;
        const int noId = listensToNo ? own : other;
        const QStringList expected = effects(plain, rest, yesId, noId, enabled);
        QVERIFY(!expected.isEmpty());
        QCOMPARE(effects(method, QVariantList{own} + rest, yesId, noId, enabled), expected);
        for (const int stranger : {other, ClickId, own > 0 ? own - 1 : own + 1, own == -1 ? 1 : -1, 1 << 20})
            QCOMPARE(effects(method, QVariantList{stranger} + rest, yesId, noId, enabled), QStringList());
    }
}

void tst_KelButtonIds::chooser_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("own");
    QTest::addColumn<int>("equal");
    QTest::addColumn<int>("different");
    QTest::newRow("setStateYesIDOrGray") << QByteArray("setStateYesIDOrGray") << 4 << 1 << 0;
    QTest::newRow("setStateYesIDOrNo") << QByteArray("setStateYesIDOrNo") << 4 << 1 << 2;
    QTest::newRow("setStateNoIDOrYes") << QByteArray("setStateNoIDOrYes") << 3 << 2 << 1;
    QTest::newRow("setStateNoIDOrGray") << QByteArray("setStateNoIDOrGray") << 3 << 2 << 0;
}

void tst_KelButtonIds::chooser()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, own);
    QFETCH(int, equal);
    QFETCH(int, different);

    for (int before = 0; before <= 2; ++before) {
        for (const int id : {4, 3, 5, -1, 0, ClickId}) {
            KelButton button;
            prepare(button, 4, 3);
            button.setState(static_cast<KelButton::State>(before));
            QVERIFY(QMetaObject::invokeMethod(&button, slot.constData(), Q_ARG(int, id)));
            QCOMPARE(int(button.state()), id == own ? equal : different);
            const QColor colors[] = {button.grayColor(), Qt::green, Qt::red};
            QCOMPARE(button.h__currentColor(), colors[button.state()]);
        }
    }
}

void tst_KelButtonIds::choosersAnnounce()
{
    KelButton button;
    prepare(button, 4, 3);
    button.setStateYes();
    ButtonLog log(&button);
    button.setStateYesIDOrGray(5);
    QCOMPARE(log.take().mid(0, 2),
             QStringList({QStringLiteral("stateChanged 0 1"), QStringLiteral("stateChangedID 100 0 1")}));
}

KEL_TEST_MAIN(tst_KelButtonIds)
#include "tst_kelbuttonids.moc"
