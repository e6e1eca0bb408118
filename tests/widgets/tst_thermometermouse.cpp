#include "mousedrag.h"
#include "testmain.h"
#include "thermometerbench.h"

#include <QPointer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <functional>

/// A thermometer under the pointer.
class tst_ThermometerMouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void press_data();
    void press();
    void everyPlaceOfTheRow_data();
    void everyPlaceOfTheRow();
    void everyButton_data();
    void everyButton();
    void drag();
    void rowsAreRounded_data();
    void rowsAreRounded();
    void moveWithoutAButton();
    void pictureMeetsThePointer();
    void readOnly();
    void readOnlyWhileDragged();
    void disabled();
    void disabledWhileDragged();
    void tooShort();
    void deletedWhilePressed();
    void anythingAtAnyTime();
};

/// What a press on row \a y gives at \a size, on the usual scale.
static double valueAt(const QSize &size, int y)
{
    const float width = float(size.width());
    const float height = float(size.height());
    const float r = qMin(width, height) / qBound(2.0f, 7 - height / width, 7.0f);
    const auto u = float(1 - (y - double(r) / 2) / double(height - 2.5f * r));
    return qBound(-50.0, double(u) * 100.0 - 50.0, 50.0);
}

void tst_ThermometerMouse::press_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("y");
    QTest::addColumn<double>("about");
    QTest::newRow("above the scale") << QSize(120, 300) << 0 << 50.0;
    QTest::newRow("top") << QSize(120, 300) << 13 << 50.0;
    QTest::newRow("below the top") << QSize(120, 300) << 14 << 49.714;
    QTest::newRow("upper part") << QSize(120, 300) << 60 << 30.0;
    QTest::newRow("lower part") << QSize(120, 300) << 211 << -34.714;
    QTest::newRow("above the bottom") << QSize(120, 300) << 246 << -49.714;
    QTest::newRow("below the bottom") << QSize(120, 300) << 247 << -50.0;
    QTest::newRow("bulb") << QSize(120, 300) << 290 << -50.0;
    QTest::newRow("small") << QSize(30, 60) << 9 << 36.667;
    QTest::newRow("large") << QSize(240, 600) << 100 << 34.286;
    QTest::newRow("slim") << QSize(50, 400) << 200 << -5.556;
    QTest::newRow("lying") << QSize(300, 60) << 30 << -17.442;
}

void tst_ThermometerMouse::press()
{
    QFETCH(QSize, size);
    QFETCH(int, y);
    QFETCH(double, about);

    KelThermometer thermometer;
    thermometer.resize(size);
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(size.width() / 2, y));
    QVERIFY2(qAbs(thermometer.value() - about) < 0.3, QByteArray::number(thermometer.value()).constData());
    QVERIFY(thermometer.value() == valueAt(size, y)); // to the bit
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().first().toDouble(), thermometer.value());
    QTest::mouseRelease(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(size.width() / 2, 3));
    QCOMPARE(spy.size(), 1); // a release sets nothing
}

void tst_ThermometerMouse::everyPlaceOfTheRow_data()
{
    QTest::addColumn<int>("x");
    for (const int x : {0, 1, 40, 60, 119})
        QTest::addRow("%d", x) << x;
}

void tst_ThermometerMouse::everyPlaceOfTheRow()
{
    QFETCH(int, x);
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(x, 100));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 100));
}

void tst_ThermometerMouse::everyButton_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("left") << int(Qt::LeftButton);
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
    QTest::newRow("back") << int(Qt::BackButton);
}

void tst_ThermometerMouse::everyButton()
{
    QFETCH(int, button);
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QTest::mousePress(&thermometer, Qt::MouseButton(button), Qt::NoModifier, QPoint(60, 100));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 100));
    dragMouse(&thermometer, QPointF(60, 150), Qt::MouseButton(button));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 150));
}

void tst_ThermometerMouse::drag()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QSignalSpy spy(&thermometer, &KelThermometer::valueChanged);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    for (const int y : {101, 140, 90, 30}) {
        dragMouse(&thermometer, QPointF(60, y));
        QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), y));
    }
    QCOMPARE(spy.size(), 5);
    dragMouse(&thermometer, QPointF(60, -5000));
    QCOMPARE(thermometer.value(), 50.0);
    dragMouse(&thermometer, QPointF(900, -9000));
    QCOMPARE(spy.size(), 6); // 50 it was
    dragMouse(&thermometer, QPointF(60, 5000));
    QCOMPARE(thermometer.value(), -50.0);
}

void tst_ThermometerMouse::rowsAreRounded_data()
{
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("row");
    QTest::newRow("down") << 99.49 << 99;
    QTest::newRow("half") << 99.5 << 100;
    QTest::newRow("up") << 99.51 << 100;
}

void tst_ThermometerMouse::rowsAreRounded()
{
    QFETCH(double, y);
    QFETCH(int, row);
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    dragMouse(&thermometer, QPointF(60, y));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), row));
}

void tst_ThermometerMouse::moveWithoutAButton()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    thermometer.setMouseTracking(true);
    dragMouse(&thermometer, QPointF(60, 100), Qt::NoButton);
    QCOMPARE(thermometer.value(), 0.0);
}

void tst_ThermometerMouse::pictureMeetsThePointer()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    for (const int y : {40, 99, 130, 201}) {
        QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, y));
        settle(thermometer, thermometer.value());
        const QImage image = rendered(thermometer, Qt::green);
        QVERIFY(QColor(image.pixel(70, y - 2)).green() > 240);
        QVERIFY(QColor(image.pixel(70, y + 1)).green() < 240);
    }
}

void tst_ThermometerMouse::readOnly()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    thermometer.setReadOnly(true);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    dragMouse(&thermometer, QPointF(60, 150));
    QCOMPARE(thermometer.value(), 0.0);
}

void tst_ThermometerMouse::readOnlyWhileDragged()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    thermometer.setReadOnly(true);
    dragMouse(&thermometer, QPointF(60, 150));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 100));
    thermometer.setReadOnly(false);
    dragMouse(&thermometer, QPointF(60, 150));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 150));
}

void tst_ThermometerMouse::disabled()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    thermometer.disable();
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    QCOMPARE(thermometer.value(), 0.0);
}

void tst_ThermometerMouse::disabledWhileDragged()
{
    KelThermometer thermometer;
    thermometer.resize(120, 300);
    QTest::mousePress(&thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    thermometer.disable();
    dragMouse(&thermometer, QPointF(60, 150));
    QCOMPARE(thermometer.value(), valueAt(QSize(120, 300), 100));
}

void tst_ThermometerMouse::tooShort()
{
    KelThermometer thermometer;
    for (const QSize size : {QSize(100, 7), QSize(4, 6), QSize(1, 1), QSize(0, 50), QSize(50, 0), QSize(0, 0)}) {
        thermometer.resize(size);
        for (const int y : {0, 3, 6}) {
            QMouseEvent press(QEvent::MouseButtonPress, QPointF(0, y), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&thermometer, &press);
            dragMouse(&thermometer, QPointF(0, y));
        }
        QCOMPARE(thermometer.value(), 0.0);
    }
}

void tst_ThermometerMouse::deletedWhilePressed()
{
    const QPointer<KelThermometer> thermometer(new KelThermometer());
    thermometer->resize(120, 300);
    connect(thermometer, &KelThermometer::valueChanged, this, [thermometer] { delete thermometer; });
    QTest::mousePress(thermometer, Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
    QVERIFY(thermometer.isNull());
}

/// A panel on which chance does to a thermometer what operators and programs may do.
class Chance
{
public:
    explicit Chance(quint32 seed)
        : m_random(seed)
        , m_thermometer(new KelThermometer(&m_panel))
    {
        m_panel.resize(400, 800);
        m_thermometer->resize(120, 300);
        m_panel.show();
        QObject::connect(m_thermometer, &KelThermometer::valueChanged, m_thermometer, [this](double value) {
            m_isInOrder = m_isInOrder && value == m_thermometer->value();
            if (below(4) == 0)
                anything(); // in the middle of it
        });
    }

    /// Whether everything was in order while \a steps things happened.
    bool live(int steps)
    {
        for (int i = 0; i < steps && m_thermometer; ++i) {
            anything();
            if (!m_thermometer)
                break;
            const double kept =
                qMax(qMin(m_thermometer->value(), m_thermometer->gradMaximum()), m_thermometer->gradMinimum());
            m_isInOrder = m_isInOrder && kept == m_thermometer->value() && qIsFinite(m_thermometer->h__anim());
        }
        return m_isInOrder && comesToRest();
    }

private:
    int below(int bound) { return int(m_random.bounded(bound)); }
    double number() { return m_random.bounded(240.0) - 120.0; }

    bool comesToRest()
    {
        if (!m_thermometer)
            return true;
        auto *animation = m_thermometer->findChild<QPropertyAnimation *>();
        if (animation->state() != QAbstractAnimation::Running)
            return true;
        animation->setCurrentTime(animation->duration());
        return m_thermometer && qAbs(double(m_thermometer->h__anim()) - m_thermometer->value()) < 1e-4;
    }

    void anything()
    {
        KelThermometer *const it = m_thermometer;
        const QPointF place(below(130), below(320) - 10);
        const QVector<std::function<void()>> deeds = {
            [=] { QTest::mousePress(it, Qt::LeftButton, Qt::NoModifier, it->rect().center()); },
            [=] { dragMouse(it, place); },
            [=] { dragMouse(it, place); },
            [=] { QTest::mouseRelease(it, Qt::LeftButton, Qt::NoModifier, it->rect().center()); },
            [=] { frame(); },
            [=] { frame(); },
            [=] { it->setValue(number()); },
            [=] { it->setGradMinimum(number()); },
            [=] { it->setGradMaximum(number()); },
            [=] { it->setMinimum(number()); },
            [=] { it->setVisible(below(2) == 0); },
            [=] { it->setEnabled(below(2) == 0); },
            [=] { it->setReadOnly(below(3) == 0); },
            [=] { it->resize(1 + below(140), 1 + below(320)); },
            [=] { m_panel.setVisible(below(2) == 0); },
            [=] { it->animate(); },
            [=] { QCoreApplication::processEvents(); },
            [=] { rendered(*it); },
        };
        const int choice = below(deeds.size() * 4 + 1);
        if (choice == deeds.size() * 4)
            delete m_thermometer;
        else
            deeds.at(choice % deeds.size())();
    }

    void frame()
    {
        auto *animation = m_thermometer->findChild<QPropertyAnimation *>();
        if (animation->state() == QAbstractAnimation::Running)
            animation->setCurrentTime(qMin(animation->duration(), animation->currentTime() + below(90)));
    }

    QRandomGenerator m_random;
    QWidget m_panel;
    QPointer<KelThermometer> m_thermometer;
    bool m_isInOrder = true;
};

void tst_ThermometerMouse::anythingAtAnyTime()
{
    for (quint32 seed = 1; seed <= 400; ++seed) {
        Chance chance(seed);
        QVERIFY2(chance.live(60), QByteArray::number(seed).constData());
    }
}

KEL_TEST_MAIN(tst_ThermometerMouse)
#include "tst_thermometermouse.moc"
