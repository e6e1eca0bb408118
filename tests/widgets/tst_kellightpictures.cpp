#include "testmain.h"

#include <kellightpictures.h>

#include <QImage>

#include <memory>
#include <vector>

class tst_KelLightPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyWhatIsSeenIsDecoded();
    void theRestFollowsTheFirstFrame();
    void lampsShareTheirPictures();
    void eachLampHasItsOwnPicture();
    void sizesDiffer();
    void noSizeNoPicture();
};

namespace
{

constexpr QSize LampSize(128, 130);

void paint(KelLight &light, double level)
{
    light.setProperty("h__anim", level);
    QImage image(light.size(), QImage::Format_ARGB32_Premultiplied);
    light.render(&image);
}

} // namespace

// First of all: the process has not painted a lamp yet.
void tst_KelLightPictures::onlyWhatIsSeenIsDecoded()
{
    std::vector<std::unique_ptr<KelLight>> lights;
    for (int i = 0; i < 6; ++i) {
        lights.push_back(std::make_unique<KelLight>());
        lights.back()->resize(LampSize);
    }
    QCOMPARE(decodedLampPictures(), 0);
    for (const auto &light : lights)
        paint(*light, 0.0);
    QCOMPARE(decodedLampPictures(), 1); // the lamp without light, once for all
    paint(*lights[0], 50.0);
    QCOMPARE(decodedLampPictures(), 3);
    paint(*lights[1], 100.0);
    QCOMPARE(decodedLampPictures(), 4);
    for (const auto &light : lights)
        paint(*light, 100.0);
    QCOMPARE(decodedLampPictures(), 4);
}

void tst_KelLightPictures::theRestFollowsTheFirstFrame()
{
    KelLight light;
    light.resize(LampSize);
    light.setIconType(KelLight::Spot);
    const int before = decodedLampPictures();
    paint(light, 0.0);
    QCOMPARE(decodedLampPictures(), before + 1);
    QTRY_COMPARE(decodedLampPictures(), before + 4);
}

void tst_KelLightPictures::lampsShareTheirPictures()
{
    const QImage one = lampPicture(KelLight::LED, LampStage::Full, QSize(64, 64));
    const QImage two = lampPicture(KelLight::LED, LampStage::Full, QSize(64, 64));
    QCOMPARE(one.size(), QSize(64, 64));
    QCOMPARE(one.constBits(), two.constBits());
}

void tst_KelLightPictures::eachLampHasItsOwnPicture()
{
    std::vector<QImage> pictures;
    for (const KelLight::IconType type : {KelLight::Bulb, KelLight::LED, KelLight::Spot}) {
        for (const LampStage stage : {LampStage::Off, LampStage::Full, LampStage::Warm, LampStage::Halo}) {
            const QImage picture = lampPicture(type, stage, QSize(50, 50));
            QVERIFY(!picture.isNull());
            for (const QImage &other : pictures)
                QVERIFY(picture != other);
            pictures.push_back(picture);
        }
    }
}

void tst_KelLightPictures::sizesDiffer()
{
    QCOMPARE(lampPicture(KelLight::Bulb, LampStage::Off, QSize(40, 50)).size(), QSize(40, 50));
    QCOMPARE(lampPicture(KelLight::Bulb, LampStage::Off, QSize(50, 40)).size(), QSize(50, 40));
    // Larger than all that is kept ready, and there all the same.
    QCOMPARE(lampPicture(KelLight::Bulb, LampStage::Off, QSize(2000, 2000)).size(), QSize(2000, 2000));
}

void tst_KelLightPictures::noSizeNoPicture()
{
    QVERIFY(lampPicture(KelLight::Bulb, LampStage::Off, QSize()).isNull());
    QVERIFY(lampPicture(KelLight::Bulb, LampStage::Off, QSize(0, 10)).isNull());
}

KEL_TEST_MAIN(tst_KelLightPictures)
#include "tst_kellightpictures.moc"
