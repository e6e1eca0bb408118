#include "blankdevice.h"
#include "testmain.h"
#include "thermometerbench.h"

#include <QPaintEngine>

/// The kept pictures on screens with more pixels than the widgets count.
class tst_ThermometerRatio : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameAsStepByStep_data();
    void sameAsStepByStep();
    void picturesHaveNoMoreThanTheWidget_data();
    void picturesHaveNoMoreThanTheWidget();
};

namespace
{

/// Remembers how large the pictures are that are drawn, in their own pixels, and draws nothing.
class PictureSizes : public BlankDevice
{
public:
    using BlankDevice::BlankDevice;

    QPaintEngine *paintEngine() const override { return &m_engine; }

    QVector<QSize> sizes() const { return m_engine.sizes; }

private:
    struct Engine : QPaintEngine {
        Engine()
            : QPaintEngine(QPaintEngine::AllFeatures)
        {
        }

        bool begin(QPaintDevice *) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState &) override {}
        Type type() const override { return QPaintEngine::User; }
        void drawPixmap(const QRectF &, const QPixmap &picture, const QRectF &) override { sizes << picture.size(); }
        void drawImage(const QRectF &, const QImage &picture, const QRectF &, Qt::ImageConversionFlags) override
        {
            sizes << picture.size();
        }
        void drawPath(const QPainterPath &) override {}
        void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}

        QVector<QSize> sizes;
    };

    mutable Engine m_engine;
};

} // namespace

void tst_ThermometerRatio::sameAsStepByStep_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("level");
    for (const QSize size : {QSize(60, 150), QSize(120, 300), QSize(301, 700)}) {
        for (const double level : {-50.0, -13.0, 50.0})
            QTest::addRow("%d x %d at %g", size.width(), size.height(), level) << size << level;
    }
}

void tst_ThermometerRatio::sameAsStepByStep()
{
    QFETCH(QSize, size);
    QFETCH(double, level);

    StepByStep reference;
    reference.size = size;
    reference.level = level;
    KelThermometer thermometer;
    reference.applyTo(thermometer);
    const qreal ratio = thermometer.devicePixelRatioF();
    QVERIFY(ratio > 1.0);
    rendered(thermometer, Qt::white, QImage::Format_RGB32, ratio);
    QCOMPARE(reference.difference(thermometer, Qt::white, QImage::Format_RGB32, ratio), QString());
}

void tst_ThermometerRatio::picturesHaveNoMoreThanTheWidget_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(60, 150), QSize(120, 300), QSize(301, 700)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void tst_ThermometerRatio::picturesHaveNoMoreThanTheWidget()
{
    QFETCH(QSize, size);

    KelThermometer thermometer;
    thermometer.resize(size);
    PictureSizes device(size);
    thermometer.render(&device, QPoint(), QRegion(), QWidget::RenderFlags());

    const QSize most = (QSizeF(size) * thermometer.devicePixelRatioF()).toSize();
    QVERIFY(!device.sizes().isEmpty());
    for (const QSize &picture : device.sizes()) {
        QVERIFY(!picture.isEmpty());
        QCOMPARE(picture.boundedTo(most), picture);
    }
}

int main(int argc, char **argv)
{
    int failures = 0;
    for (const char *ratio : {"2", "1.5"}) {
        qputenv("QT_SCALE_FACTOR", ratio);
        QApplication application(argc, argv);
        tst_ThermometerRatio test;
        failures += runKelTest(&test, application.arguments());
    }
    return failures;
}

#include "tst_thermometerratio.moc"
