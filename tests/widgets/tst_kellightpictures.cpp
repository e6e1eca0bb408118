#include "testmain.h"

#include <kellightpictures.h>

#include <QImage>

#include <cstdlib>
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
    void eachArtworkIsDecodedOnce();
    void artworkIsTwiceAsLarge_data();
    void artworkIsTwiceAsLarge();
    void looksLikeTheLargestArtwork_data();
    void looksLikeTheLargestArtwork();
    void boundsTellPicturesApart();
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

const std::vector<KelLight::IconType> Types = {KelLight::Bulb, KelLight::LED, KelLight::Spot};
const std::vector<LampStage> Stages = {LampStage::Off, LampStage::Full, LampStage::Warm, LampStage::Halo};

/// The resource of \a side pixels, scaled to \a size.
QImage scaledArtwork(KelLight::IconType type, LampStage stage, int side, const QSize &size)
{
    static const char *const types[] = {"bulb", "led", "spot"};
    static const char *const stages[] = {"0", "100", "w", "h"};
    QString name = QStringLiteral(":/icons/light_%1_%2").arg(QLatin1String(types[type]), stages[int(stage)]);
    if (side != 512)
        name += QStringLiteral("_%1").arg(side);
    const QImage artwork(name + QStringLiteral(".png"));
    if (artwork.size() != QSize(side, side))
        return {};
    return artwork.convertToFormat(QImage::Format_ARGB32_Premultiplied)
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// How far two pictures of one size are apart, in steps of 255 of a premultiplied channel.
struct Distance {
    double mean = 0.0;
    int most = 0;
};

Distance distance(const QImage &a, const QImage &b)
{
    Distance result;
    for (int y = 0; y < a.height(); ++y) {
        const uchar *lineA = a.constScanLine(y);
        const uchar *lineB = b.constScanLine(y);
        for (int i = 0; i < a.width() * 4; ++i) {
            const int apart = std::abs(lineA[i] - lineB[i]);
            result.mean += apart;
            result.most = qMax(result.most, apart);
        }
    }
    result.mean /= a.width() * a.height() * 4.0;
    return result;
}

// What is measured is 0.57 on the mean and 31 at an edge; two pictures of different lamps or stages are never nearer to
// each other than 4.1 and 78.
constexpr double MeanBound = 0.7;
constexpr int MostBound = 36;

} // namespace

Q_DECLARE_METATYPE(LampStage)

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

void tst_KelLightPictures::eachArtworkIsDecodedOnce()
{
    const auto look = [](int side) { lampPicture(KelLight::LED, LampStage::Halo, QSize(side, side)); };
    look(60);
    const int before = decodedLampPictures();
    look(61);
    look(80);
    QCOMPARE(decodedLampPictures(), before);
    look(81);
    QCOMPARE(decodedLampPictures(), before + 1);
    look(128);
    QCOMPARE(decodedLampPictures(), before + 1);
    look(129);
    QCOMPARE(decodedLampPictures(), before + 2);
    look(513);
    look(62);
    look(120);
    QCOMPARE(decodedLampPictures(), before + 2);
}

void tst_KelLightPictures::artworkIsTwiceAsLarge_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("side");

    QTest::newRow("one pixel") << QSize(1, 1) << 160;
    QTest::newRow("smallest, to its edge") << QSize(80, 80) << 160;
    QTest::newRow("above the smallest") << QSize(81, 81) << 256;
    QTest::newRow("wider than the smallest") << QSize(81, 20) << 256;
    QTest::newRow("higher than the smallest") << QSize(20, 81) << 256;
    QTest::newRow("middle, to its edge") << QSize(128, 128) << 256;
    QTest::newRow("above the middle") << QSize(129, 129) << 512;
    QTest::newRow("half of the largest") << QSize(256, 256) << 512;
    QTest::newRow("above half of the largest") << QSize(257, 257) << 512;
    QTest::newRow("as large as the largest") << QSize(512, 512) << 512;
    QTest::newRow("larger than all") << QSize(513, 513) << 512;
}

void tst_KelLightPictures::artworkIsTwiceAsLarge()
{
    QFETCH(QSize, size);
    QFETCH(int, side);

    for (const KelLight::IconType type : Types) {
        for (const LampStage stage : Stages) {
            const QImage picture = lampPicture(type, stage, size);
            for (const int other : {160, 256, 512}) {
                const QImage scaled = scaledArtwork(type, stage, other, size);
                QCOMPARE(scaled.size(), size);
                if (other == side)
                    QVERIFY(picture == scaled);
                else if (size.width() > 1)
                    QVERIFY(picture != scaled);
            }
        }
    }
}

void tst_KelLightPictures::looksLikeTheLargestArtwork_data()
{
    QTest::addColumn<KelLight::IconType>("type");
    QTest::addColumn<LampStage>("stage");
    QTest::addColumn<QSize>("size");

    const char *const types[] = {"bulb", "led", "spot"};
    const char *const stages[] = {"off", "full", "warm", "halo"};
    for (const KelLight::IconType type : Types) {
        for (const LampStage stage : Stages) {
            for (const QSize &size : {QSize(20, 20), QSize(34, 34), QSize(64, 64), QSize(68, 68), QSize(73, 73),
                                      QSize(79, 79), QSize(80, 60), QSize(81, 81), QSize(100, 100), QSize(120, 120),
                                      QSize(128, 128), QSize(60, 128), QSize(129, 129)}) {
                QTest::addRow("%s, %s, %d x %d", types[type], stages[int(stage)], size.width(), size.height())
                    << type << stage << size;
            }
        }
    }
}

void tst_KelLightPictures::looksLikeTheLargestArtwork()
{
    QFETCH(KelLight::IconType, type);
    QFETCH(LampStage, stage);
    QFETCH(QSize, size);

    const Distance apart = distance(lampPicture(type, stage, size), scaledArtwork(type, stage, 512, size));
    QVERIFY2(apart.mean <= MeanBound, qPrintable(QString::number(apart.mean)));
    QVERIFY2(apart.most <= MostBound, qPrintable(QString::number(apart.most)));
}

// The bounds above say something only if the picture of another stage or lamp breaks them.
void tst_KelLightPictures::boundsTellPicturesApart()
{
    for (const int side : {20, 80, 128}) {
        const QSize size(side, side);
        for (const KelLight::IconType type : Types) {
            for (const LampStage stage : Stages) {
                for (const KelLight::IconType otherType : Types) {
                    for (const LampStage otherStage : Stages) {
                        if (type == otherType && stage == otherStage)
                            continue;
                        const Distance apart =
                            distance(lampPicture(type, stage, size), lampPicture(otherType, otherStage, size));
                        QVERIFY2(apart.mean > 4 * MeanBound, qPrintable(QString::number(apart.mean)));
                        QVERIFY2(apart.most > MostBound, qPrintable(QString::number(apart.most)));
                    }
                }
            }
        }
    }
}

KEL_TEST_MAIN(tst_KelLightPictures)
#include "tst_kellightpictures.moc"
