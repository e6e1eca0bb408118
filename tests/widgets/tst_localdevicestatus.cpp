#include "devicebench.h"
#include "stderrcapture.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

class WireDevice : public BenchDevice
{
    Q_OBJECT

public:
    QString additionalDevInfo() override { return QStringLiteral("over the wire"); }
};

class tst_LocalDeviceStatus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void viewIsBuiltOnce();
    void viewHasNoTextAtFirst();
    void viewSaysUnknown();
    void viewTellsAll();
    void selectionRefreshesAtOnce();
    void viewFollows();
    void withoutViewTheToolTipStays();
    void timerEventsReachTheBase();

    void hidesItself_data();
    void hidesItself();
    void showEventIsIgnored();
    void staysShownWithView();
    void iconIsPainted_data();
    void iconIsPainted();
    void iconShowsBesideTheView();

private:
    TempCatalogue m_catalogue;
};

void tst_LocalDeviceStatus::initTestCase()
{
    m_catalogue.addVendor(3, QStringLiteral("Acme"));
    m_catalogue.addDevice(20, QStringLiteral("Relay"), 3);
    m_catalogue.addCurrent(1, 20, QStringLiteral("Hall"), 5);
    m_catalogue.addCommand(10, 20, QStringLiteral("AA %id 00"), QStringLiteral("off"));
    m_catalogue.addAnswer(31, 20, QStringLiteral("AA %0"), QStringLiteral("state"));
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    db.setDatabaseName(m_catalogue.path());
    QVERIFY(db.open());
}

void tst_LocalDeviceStatus::cleanupTestCase()
{
    QSqlDatabase::database().close();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

void tst_LocalDeviceStatus::viewIsBuiltOnce()
{
    LocalDevice device;
    QVERIFY(!device.layout());
    device.buildDebug();
    device.buildDebug();
    const QList<QScrollArea *> areas = device.findChildren<QScrollArea *>();
    QCOMPARE(areas.size(), 1);
    QCOMPARE(device.findChildren<QLabel *>().size(), 1);
    auto *label = qobject_cast<QLabel *>(areas.first()->widget());
    QVERIFY(label);
    QVERIFY(areas.first()->widgetResizable());
    QCOMPARE(label->alignment(), Qt::AlignLeft | Qt::AlignTop);
    QVERIFY(qobject_cast<QVBoxLayout *>(device.layout()));
    QCOMPARE(device.layout()->contentsMargins(), QMargins());
    QCOMPARE(device.layout()->count(), 1);
    QCOMPARE(device.layout()->itemAt(0)->widget(), areas.first());
}

void tst_LocalDeviceStatus::viewHasNoTextAtFirst()
{
    LocalDevice device;
    device.setCurrentID(1);
    const QString toolTip = device.toolTip();
    device.buildDebug();
    QCOMPARE(device.findChild<QLabel *>()->text(), QString());
    QCOMPARE(device.toolTip(), toolTip);
}

void tst_LocalDeviceStatus::viewSaysUnknown()
{
    LocalDevice device;
    device.buildDebug();
    device.setToolTip(QString());
    QTRY_COMPARE(device.findChild<QLabel *>()->text(), QStringLiteral("Unknown device"));
    QCOMPARE(device.toolTip(), QStringLiteral("Unknown device"));
}

void tst_LocalDeviceStatus::viewTellsAll()
{
    WireDevice device;
    device.setDeviceReadPath(QStringLiteral("ser://r"));
    device.setDeviceSendPath(QStringLiteral("ser://s"));
    device.receivedCount = 12;
    device.buildDebug();
    device.setCurrentID(1);
    const QString text = QStringLiteral("Hall (Relay Acme) [local]\n"
                                        "id(current) = 1, id(device) = 5\n"
                                        "Device Read: ser://r\n"
                                        "Device Send: ser://s\n"
                                        "over the wire\n"
                                        "Sended / Received: 0 / 12\n"
                                        "\n"
                                        "Commands:\n10: AA %id 00 (off)\n"
                                        "\n"
                                        "Answers:\n31: AA %0 (state)");
    QCOMPARE(device.findChild<QLabel *>()->text(), text);
    QCOMPARE(device.toolTip(), text);
}

void tst_LocalDeviceStatus::selectionRefreshesAtOnce()
{
    LocalDevice device;
    device.buildDebug();
    device.setCurrentID(1);
    QVERIFY(device.findChild<QLabel *>()->text().startsWith(QStringLiteral("Hall (Relay Acme)")));
    device.setCurrentID(99);
    QCOMPARE(device.findChild<QLabel *>()->text(), QStringLiteral("Unknown device"));
    QCOMPARE(device.toolTip(), QStringLiteral("Unknown device"));
}

void tst_LocalDeviceStatus::viewFollows()
{
    BenchDevice device;
    device.setCurrentID(1);
    device.buildDebug();
    const StderrCapture quiet;
    device.receivedLocal("\xAA\x01");
    device.sendCommand(10);
    QTRY_VERIFY(device.toolTip().contains(QStringLiteral("\nSended / Received: 0 / 1\n")));
    device.setDeviceReadPath(QStringLiteral("later"));
    QTRY_VERIFY(device.findChild<QLabel *>()->text().contains(QStringLiteral("\nDevice Read: later\n")));
}

void tst_LocalDeviceStatus::withoutViewTheToolTipStays()
{
    BenchDevice device;
    device.setCurrentID(1);
    QVERIFY(device.toolTip().contains(QStringLiteral("id(device) = 5\nCommands:\n")));
    QTest::qWait(250);
    QVERIFY(device.toolTip().contains(QStringLiteral("id(device) = 5\nCommands:\n")));
}

/// Counts timer events on their way to the device.
class TimerCount : public QObject
{
    Q_OBJECT

public:
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Timer ? 1 : 0;
        return false;
    }
};

void tst_LocalDeviceStatus::timerEventsReachTheBase()
{
    LocalDevice device;
    TimerCount timers;
    device.installEventFilter(&timers);
    QTest::qWait(250);
    QCOMPARE(timers.count, 0);
    device.buildDebug();
    QTRY_VERIFY(timers.count >= 3);
}

void tst_LocalDeviceStatus::hidesItself_data()
{
    QTest::addColumn<bool>("inPanel");

    QTest::newRow("alone") << false;
    QTest::newRow("inside a visible parent") << true;
}

void tst_LocalDeviceStatus::hidesItself()
{
    QFETCH(bool, inPanel);

    QWidget panel;
    LocalDevice inside(&panel);
    LocalDevice alone;
    panel.show();
    alone.show();
    QVERIFY(panel.isVisible());
    const LocalDevice &device = inPanel ? inside : alone;
    QVERIFY(!device.isVisible());
    QVERIFY(device.isHidden());
}

class ShownDevice : public LocalDevice
{
    Q_OBJECT

public:
    bool accepted(QShowEvent *event)
    {
        event->accept();
        showEvent(event);
        return event->isAccepted();
    }
};

void tst_LocalDeviceStatus::showEventIsIgnored()
{
    ShownDevice device;
    QShowEvent event;
    QVERIFY(!device.accepted(&event));
    device.buildDebug();
    QVERIFY(device.accepted(&event));
}

void tst_LocalDeviceStatus::staysShownWithView()
{
    QWidget panel;
    LocalDevice device(&panel);
    panel.show();
    QVERIFY(device.isHidden());
    device.buildDebug();
    device.show();
    QVERIFY(device.isVisible());
}

/// What the widget itself paints, on white.
static QImage painted(LocalDevice &device, QSize size)
{
    device.resize(size);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    device.render(&image, {}, {}, QWidget::RenderFlags());
    return image;
}

void tst_LocalDeviceStatus::iconIsPainted_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("place");

    QTest::newRow("first size") << QSize(230, 95) << QPoint(154, 8);
    QTest::newRow("wide") << QSize(400, 60) << QPoint(324, 8);
    QTest::newRow("narrower than the icon and its margin") << QSize(50, 95) << QPoint(-26, 8);
}

void tst_LocalDeviceStatus::iconIsPainted()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, place);

    QImage expected(size, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::white);
    const QImage icon = QImage(QStringLiteral(":/icons/local_device.png"))
                            .scaled(48, 48, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QCOMPARE(icon.size(), QSize(48, 48));
    QPainter(&expected).drawImage(place, icon);

    LocalDevice device;
    QCOMPARE(painted(device, size), expected);
}

void tst_LocalDeviceStatus::iconShowsBesideTheView()
{
    LocalDevice device;
    device.buildDebug();
    device.resize(230, 95);
    const QImage image = device.grab().toImage();
    const QImage icon = QImage(QStringLiteral(":/icons/local_device.png"))
                            .scaled(48, 48, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    // The middle of the chip, where the icon is opaque.
    QCOMPARE(image.pixelColor(154 + 18, 8 + 27), icon.pixelColor(18, 27));
    const QScrollArea *area = device.findChild<QScrollArea *>();
    QVERIFY(area->viewport()->mapTo(&device, area->viewport()->rect().topRight()).x() < 154);
}

KEL_TEST_MAIN(tst_LocalDeviceStatus)
#include "tst_localdevicestatus.moc"
