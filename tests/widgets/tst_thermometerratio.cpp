#include "drawnpictures.h"
#include "testmain.h"
#include "thermometerbench.h"

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
    DrawnPictures device(size);
    thermometer.render(&device, QPoint(), QRegion(), QWidget::RenderFlags());

    const QSize most = (QSizeF(size) * thermometer.devicePixelRatioF()).toSize();
    QVERIFY(!device.all().isEmpty());
    for (const DrawnPictures::Drawn &picture : device.all()) {
        QVERIFY(!picture.size.isEmpty());
        QCOMPARE(picture.size.boundedTo(most), picture.size);
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
