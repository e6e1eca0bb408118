#include "stderrcapture.h"
#include "testmain.h"

#include <picollection.h>
#include <piiodevice.h>
#include <piqt.h>

#include <memory>
#include <stdexcept>

namespace
{

/// A device without a far end that counts what is done to it.
class CountingDevice : public PIIODevice
{
public:
    PIString className() const override { return "CountingDevice"; }
    PIString fullPathPrefix() const override { return "count"; }
    PIIODevice *copy() const override { return new CountingDevice; }
    bool openDevice() override
    {
        ++opened;
        return doesOpen || refuseOpen("it does not want to");
    }
    bool closeDevice() override
    {
        ++closed;
        return true;
    }
    int writeDevice(const void *data, int size) override
    {
        written.append(data, size);
        return size;
    }
    PIString constructFullPathDevice() const override { return path(); }
    void configureFromFullPathDevice(const PIString &text) override { setPath(text); }

    using PIIODevice::received;
    using PIIODevice::setAway;

    bool doesOpen = true;
    int opened = 0;
    int closed = 0;
    PIByteArray written;
};

std::unique_ptr<PIIODevice> created(const char *fullPath)
{
    return std::unique_ptr<PIIODevice>(PIIODevice::createFromFullPath(fullPath));
}

} // namespace

class tst_IoDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindsRegisterThemselves();
    void isMadeFromItsFullPath();
    void malformedPathGivesNullAndALine_data();
    void malformedPathGivesNullAndALine();
    void fullPathStartsWithThePrefix();
    void pathIsAProperty();
    void secondOpenDoesNothing();
    void failedOpenIsFollowedByClose();
    void quietOpenWritesNothing();
    void isNotOpenedWhileAway();
    void writesReachTheDevice();
    void receiverGetsBytes();
    void receiverMayReplaceItself();
    void failingReceiverIsSurvived();
};

void tst_IoDevice::kindsRegisterThemselves()
{
    QMap<QString, QString> names;
    for (const PIObject *object : PICollection::groupElements("__PIIODevices__"))
        names[PI2QString(object->className())] = PI2QString(object->name());

    QCOMPARE(names.value("PISerial"), QStringLiteral("__S__collection_PISerial__"));
    QCOMPARE(names.value("PITcp"), QStringLiteral("__S__collection_PITcp__"));
}

void tst_IoDevice::isMadeFromItsFullPath()
{
    CountingDevice prototype;
    QVERIFY(PICollection::addToGroup("__PIIODevices__", &prototype));

    const auto device = created("count://a place: 1");

    QVERIFY(device != nullptr);
    QCOMPARE(PI2QString(device->className()), QStringLiteral("CountingDevice"));
    QVERIFY(device.get() != &prototype);
    QCOMPARE(PI2QString(device->path()), QStringLiteral("a place: 1"));
    QVERIFY(prototype.path().isEmpty());
    QVERIFY(!device->isOpened());
}

void tst_IoDevice::malformedPathGivesNullAndALine_data()
{
    QTest::addColumn<QByteArray>("path");

    for (const char *path :
         {"", "/dev/ttyS0", "://x", "nothing://x", "SER:///dev/x", "ser://", "ser://:9600", "gser://",
          "ser:///dev/x:fast", "ser:///dev/x:9600:eight", "ser:/dev/x", "tcp://", "tcp://host",
          "tcp://host:", "tcp://host:0", "tcp://host:65536", "tcp://host:http", "tcp://:5"})
        QTest::newRow(path) << QByteArray(path);
}

void tst_IoDevice::malformedPathGivesNullAndALine()
{
    QFETCH(QByteArray, path);
    const StderrCapture console;

    QVERIFY(created(path.constData()) == nullptr);

    QCOMPARE(console.lines().size(), 1);
    QVERIFY2(console.lines().constFirst().contains(QString(path)), qPrintable(console.lines().constFirst()));
    QVERIFY(!PIIODevice::fullPathError(path.constData()).isEmpty());
}

void tst_IoDevice::fullPathStartsWithThePrefix()
{
    CountingDevice device;
    device.setPath("here");
    QCOMPARE(PI2QString(device.constructFullPath()), QStringLiteral("count://here"));
    device.setPath("");
    QVERIFY(device.constructFullPath().isEmpty());
}

void tst_IoDevice::pathIsAProperty()
{
    CountingDevice device;
    QVERIFY(device.property("path").isValid());
    device.setProperty("path", "there");
    QCOMPARE(PI2QString(device.path()), QStringLiteral("there"));
}

void tst_IoDevice::secondOpenDoesNothing()
{
    CountingDevice device;

    QVERIFY(device.open());
    QVERIFY(device.open());
    device.setAway(true);
    QVERIFY(device.open());

    QCOMPARE(device.opened, 1);
    QCOMPARE(device.closed, 0);
    QVERIFY(device.close());
    QVERIFY(!device.isOpened());
}

void tst_IoDevice::failedOpenIsFollowedByClose()
{
    CountingDevice device;
    const StderrCapture console;
    device.doesOpen = false;

    QVERIFY(!device.open());

    QCOMPARE(device.closed, 1);
    QVERIFY(!device.isOpened());
    QCOMPARE(PI2QString(device.openError()), QStringLiteral("it does not want to"));
    QCOMPARE(console.lines(), QStringList("it does not want to"));

    device.doesOpen = true;
    QVERIFY(device.open());
    QVERIFY(device.openError().isEmpty());
}

void tst_IoDevice::quietOpenWritesNothing()
{
    CountingDevice device;
    const StderrCapture console;
    device.doesOpen = false;

    QVERIFY(!device.openQuietly());
    QVERIFY(!device.openError().isEmpty());
    QVERIFY(console.lines().isEmpty());
}

void tst_IoDevice::isNotOpenedWhileAway()
{
    CountingDevice device;
    QVERIFY(device.open());
    QVERIFY(device.isOpened());
    device.setAway(true);
    QVERIFY(!device.isOpened());
    device.setAway(false);
    QVERIFY(device.isOpened());
}

void tst_IoDevice::writesReachTheDevice()
{
    CountingDevice device;
    QCOMPARE(device.write("ab", 2), 2);
    QCOMPARE(device.write(PIByteArray("c", 1)), 1);
    QVERIFY(device.written == PIByteArray("abc", 3));
}

void tst_IoDevice::receiverGetsBytes()
{
    CountingDevice device;
    PIByteArray got;
    device.received(PIByteArray("x", 1));
    device.setReceiver([&](const PIByteArray &bytes) { got.append(bytes); });
    device.received(PIByteArray("ab", 2));
    device.setReceiver(nullptr);
    device.received(PIByteArray("c", 1));
    QVERIFY(got == PIByteArray("ab", 2));
}

void tst_IoDevice::receiverMayReplaceItself()
{
    CountingDevice device;
    int first = 0;
    int second = 0;
    const QByteArray kept("what the first receiver holds while it runs");
    device.setReceiver([&device, &first, &second, kept](const PIByteArray &) {
        device.setReceiver([&second](const PIByteArray &) { ++second; });
        first += int(kept.size());
    });
    device.received(PIByteArray("a", 1));
    device.received(PIByteArray("b", 1));
    QCOMPARE(first, int(kept.size()));
    QCOMPARE(second, 1);
}

void tst_IoDevice::failingReceiverIsSurvived()
{
    CountingDevice device;
    const StderrCapture console;
    device.setReceiver([](const PIByteArray &) { throw std::runtime_error("no"); });
    device.received(PIByteArray("a", 1));
    QCOMPARE(console.lines().size(), 1);
}

KEL_TEST_MAIN(tst_IoDevice)
#include "tst_iodevice.moc"
