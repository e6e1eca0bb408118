#include "drawnpictures.h"
#include "testmain.h"

#include <QSet>
#include <kelthermometerface.h>

#include <functional>

/// Pictures that thermometers share which look alike.
class tst_ThermometerShared : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void alikeThermometersSharePictures();
    void otherFontsAreOtherPictures();
    void memoryIsBounded();
    void levelLeavesOthersAsTheyAre();
    void thermometersThatDifferShareNothing_data();
    void thermometersThatDifferShareNothing();
};

namespace
{

/// A thermometer to paint.
struct Sample {
    QSize size = {60, 150};
    ThermometerBounds bounds = {-50.0, 50.0};
    qreal pixelRatio = 1.0;
    double level = 0.0;
    QColor color = Qt::red;
};

using Change = std::function<void(Sample &)>;

void paint(ThermometerFace &face, QPainter &painter, const Sample &sample)
{
    face.paint(painter, layoutThermometer(sample.size), {sample.level, sample.bounds, sample.color}, sample.pixelRatio);
}

QImage painted(ThermometerFace &face, const Sample &sample)
{
    QImage image((QSizeF(sample.size) * sample.pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(sample.pixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(face, painter, sample);
    return image;
}

QImage paintedAnew(const Sample &sample)
{
    ThermometerFace face;
    return painted(face, sample);
}

QVector<qint64> picturesOf(const Sample &sample)
{
    ThermometerFace face;
    DrawnPictures device(sample.size);
    QPainter painter(&device);
    paint(face, painter, sample);
    painter.end();
    return device.keys(true);
}

void forgetPictures()
{
    emit qGuiApp->fontDatabaseChanged();
}

} // namespace

Q_DECLARE_METATYPE(Change)

void tst_ThermometerShared::init()
{
    forgetPictures();
}

void tst_ThermometerShared::alikeThermometersSharePictures()
{
    const QVector<qint64> pictures = picturesOf(Sample());
    QVERIFY(pictures.size() >= 3);
    QCOMPARE(picturesOf(Sample()), pictures);

    Sample higher;
    higher.level = 20.0;
    higher.color = Qt::blue;
    QCOMPARE(picturesOf(higher), pictures);
}

void tst_ThermometerShared::otherFontsAreOtherPictures()
{
    const QVector<qint64> pictures = picturesOf(Sample());
    forgetPictures();
    QVERIFY(picturesOf(Sample()) != pictures);
}

void tst_ThermometerShared::memoryIsBounded()
{
    const QVector<qint64> pictures = picturesOf(Sample());
    for (int i = 0; i < 8; ++i) { // Each has pictures of a mebibyte and more.
        Sample large;
        large.size = QSize(400, 1000 + i);
        paintedAnew(large);
    }
    QVERIFY(picturesOf(Sample()) != pictures);
}

void tst_ThermometerShared::levelLeavesOthersAsTheyAre()
{
    Sample high;
    high.level = 30.0;
    high.color = Qt::blue;
    const QImage highAlone = paintedAnew(high);
    forgetPictures();

    ThermometerFace one;
    ThermometerFace two;
    const QImage low = painted(one, Sample());
    QVERIFY(low != highAlone);
    QCOMPARE(painted(two, high), highAlone);
    QCOMPARE(painted(one, Sample()), low);
    QCOMPARE(painted(two, Sample()), low);
    QCOMPARE(painted(one, high), highAlone);
    QCOMPARE(paintedAnew(Sample()), low);
}

void tst_ThermometerShared::thermometersThatDifferShareNothing_data()
{
    QTest::addColumn<Change>("change");

    const auto put = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    put("width", [](Sample &sample) { sample.size.rwidth() += 10; });
    put("height", [](Sample &sample) { sample.size.rheight() += 10; });
    put("bottom of the scale", [](Sample &sample) { sample.bounds.bottom = -40.0; });
    put("top of the scale", [](Sample &sample) { sample.bounds.top = 40.0; });
    put("two pixels for one", [](Sample &sample) { sample.pixelRatio = 2.0; });
    put("pixels that are not whole", [](Sample &sample) { sample.pixelRatio = 1.5; });
    put("font of the application", [](Sample &) {
        QFont font = QApplication::font();
        font.setUnderline(true);
        QApplication::setFont(font);
    });
}

// A thermometer beside one that differs from it in one thing looks as it does alone.
void tst_ThermometerShared::thermometersThatDifferShareNothing()
{
    QFETCH(Change, change);
    const QFont usual = QApplication::font();
    Sample changed;
    change(changed);
    const QImage alone = paintedAnew(changed);

    forgetPictures();
    QApplication::setFont(usual);
    const QImage other = paintedAnew(Sample());
    change(changed = Sample());
    const QImage beside = paintedAnew(changed);
    QApplication::setFont(usual);
    QCOMPARE(beside, alone);
    QVERIFY(other != alone);
}

KEL_TEST_MAIN(tst_ThermometerShared)
#include "tst_thermometershared.moc"
