#include "devicebench.h"
#include "testmain.h"

#include <cstring>

class tst_LocalDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void methodsStandInOrder();
    void propertiesAndDefaults();
    void settersStore();
    void virtualsFollowThoseOfTheWidget();
    void enableAndDisable();
};

static const char *const Methods[] = {
    "receivedAnswerID(int)",
    "receivedAnswerArg(int,int)",
    "receivedAnswerArg0(int)",
    "receivedAnswerArg1(int)",
    "receivedAnswerArg2(int)",
    "receivedAnswerArg3(int)",
    "sending(PIByteArray)",
    "dataReceived(QByteArray,QString)",
    "enable()",
    "disable()",
    "setCurrentID(int)",
    "setDeviceReadPath(QString)",
    "setDeviceSendPath(QString)",
    "setTwitchGPIO(bool)",
    "setTwitchPinNumber(int)",
    "setTwitchPinReadState(bool)",
    "setTwitchPinSendState(bool)",
    "setArgument(int,int)",
    "setArgument0(int)",
    "setArgument1(int)",
    "setArgument2(int)",
    "setArgument3(int)",
    "sendCommand(int)",
    "sendCommand(QString)",
    "sendPrepared(PIByteArray)",
};

static const QList<QByteArray> Parameters[] = {
    {"answer_ID"},
    {"arg_num", "arg_value"},
    {"arg0"},
    {"arg1"},
    {"arg2"},
    {"arg3"},
    {"data"},
    {"data", "from"},
    {},
    {},
    {"id"},
    {"path"},
    {"path"},
    {"yes"},
    {"pin"},
    {"level"},
    {"level"},
    {"arg_num", "value"},
    {"value"},
    {"value"},
    {"value"},
    {"value"},
    {"cmd_ID"},
    {"cmd"},
    {"data"},
};

void tst_LocalDevice::methodsStandInOrder()
{
    const QMetaObject &meta = LocalDevice::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 25);
    for (int i = 0; i < 25; ++i) {
        const QMetaMethod method = meta.method(meta.methodOffset() + i);
        QCOMPARE(method.methodSignature(), QByteArray(Methods[i]));
        QCOMPARE(method.parameterNames(), Parameters[i]);
        QCOMPARE(method.methodType(), i < 7 ? QMetaMethod::Signal : QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Public);
    }
}

void tst_LocalDevice::propertiesAndDefaults()
{
    const QList<QPair<QByteArray, QVariant>> expected = {
        {"currentID", -1},       {"deviceReadPath", QString()}, {"deviceSendPath", QString()}, {"twitchGPIO", true},
        {"twitchPinNumber", 18}, {"twitchPinReadState", false}, {"twitchPinSendState", true},
    };
    const BenchDevice device;
    const QMetaObject &meta = LocalDevice::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const QMetaProperty property = meta.property(meta.propertyOffset() + i);
        QCOMPARE(QByteArray(property.name()), expected.at(i).first);
        QCOMPARE(property.read(&device), expected.at(i).second);
        QVERIFY(property.isWritable());
    }
    QCOMPARE(device.deviceID, -1);
    QCOMPARE(device.sentCount, 0);
    QCOMPARE(device.receivedCount, 0);
    QVERIFY(device.commands.isEmpty() && device.commandDescriptions.isEmpty() && device.answers.isEmpty());
    QVERIFY(device.arguments.isEmpty() && device.answerArguments.isEmpty());
    QCOMPARE(device.toolTip(), QStringLiteral("Unknown device"));
    QCOMPARE(device.sizeHint(), QSize(230, 95));
    QVERIFY(device.isEnabled());
}

void tst_LocalDevice::settersStore()
{
    BenchDevice device;
    const QList<QPair<const char *, QVariant>> values = {
        {"deviceReadPath", QStringLiteral("ser://a")},
        {"deviceSendPath", QStringLiteral("ser://b")},
        {"twitchGPIO", false},
        {"twitchPinNumber", -7},
        {"twitchPinReadState", true},
        {"twitchPinSendState", false},
    };
    for (const auto &value : values) {
        QVERIFY(device.setProperty(value.first, value.second));
        QCOMPARE(device.property(value.first), value.second);
    }
    device.setDeviceReadPath(QStringLiteral("r"));
    device.setDeviceSendPath(QStringLiteral("s"));
    device.setTwitchGPIO(true);
    device.setTwitchPinNumber(4);
    device.setTwitchPinReadState(false);
    device.setTwitchPinSendState(true);
    QCOMPARE(device.deviceReadPath(), QStringLiteral("r"));
    QCOMPARE(device.deviceSendPath(), QStringLiteral("s"));
    QCOMPARE(device.twitchGPIO(), true);
    QCOMPARE(device.twitchPinNumber(), 4);
    QCOMPARE(device.twitchPinReadState(), false);
    QCOMPARE(device.twitchPinSendState(), true);
}

/// The place of a virtual function in its class's table, as the C++ ABI of Linux stores it in a member
/// pointer (1 + offset in bytes).
template <typename Member>
static std::ptrdiff_t tablePlace(Member member)
{
    std::ptrdiff_t word = 0;
    std::memcpy(&word, &member, sizeof word);
    return word;
}

class LastOfWidget : public QWidget
{
public:
    static std::ptrdiff_t place() { return tablePlace(&LastOfWidget::focusNextPrevChild); }
};

void tst_LocalDevice::virtualsFollowThoseOfTheWidget()
{
#if defined(__x86_64__)
    const auto step = static_cast<std::ptrdiff_t>(sizeof(void *));
    const std::ptrdiff_t first = tablePlace(&LocalDevice::send);
    QVERIFY(first % 2 == 1);
    QVERIFY(first > LastOfWidget::place());
    QCOMPARE(tablePlace(&LocalDevice::received), first + step);
    QCOMPARE(tablePlace(&LocalDevice::prepareDevName), first + 2 * step);
    QCOMPARE(tablePlace(&LocalDevice::additionalDevInfo), first + 3 * step);
#else
    QSKIP("member pointers are stored differently here");
#endif
}

void tst_LocalDevice::enableAndDisable()
{
    LocalDevice device;
    device.disable();
    QVERIFY(!device.isEnabled());
    device.enable();
    QVERIFY(device.isEnabled());
}

KEL_TEST_MAIN(tst_LocalDevice)
#include "tst_localdevice.moc"
