#include "kellightpictures.h"

#include "builtinpicture.h"
#include "sharedlooks.h"

#include <array>
#include <tuple>

namespace
{

constexpr int TypesCount = 3;
constexpr int StagesCount = 4;

/// The sizes in which the resource set has the artwork.
struct Artwork {
    int side; // in pixels
    const char *suffix;
};
constexpr std::array<Artwork, 3> Artworks = {{{160, "_160"}, {256, "_256"}, {512, ""}}};

/// How much larger than a picture the artwork is that it is scaled from. What is scaled from nearly its own size gets
/// soft: its edges are up to a third off what the largest artwork gives. From twice the size it is an eighth.
constexpr int ArtworkScale = 2;

/// Kibibytes of scaled pictures that are kept.
constexpr int ScaledLimit = 8 * 1024;

struct ScaledKey {
    int type;
    int stage;
    QSize size;

    bool operator==(const ScaledKey &other) const
    {
        return type == other.type && stage == other.stage && size == other.size;
    }
};

uint qHash(const ScaledKey &key, uint seed)
{
    return ::qHash((qint64(key.size.width()) << 32) + key.size.height(), seed) +
           uint(key.type * StagesCount + key.stage);
}

int decodedCount = 0;

/// The number of the artwork that a picture of \a size is scaled from.
size_t artworkFor(const QSize &size)
{
    const int wanted = ArtworkScale * qMax(size.width(), size.height());
    size_t number = 0;
    while (number + 1 < Artworks.size() && Artworks[number].side < wanted)
        ++number;
    return number;
}

/// A picture of the resource set as it is there, decoded when it is needed first.
const QImage &source(int type, int stage, size_t artwork)
{
    static const char *const types[TypesCount] = {"bulb", "led", "spot"};
    static const char *const stages[StagesCount] = {"0", "100", "w", "h"};
    static std::array<std::array<QImage, TypesCount * StagesCount>, Artworks.size()> decoded;

    QImage &picture = decoded[artwork][size_t(type * StagesCount + stage)];
    if (picture.isNull()) {
        ++decodedCount;
        const QByteArray name = QByteArray("light_") + types[type] + '_' + stages[stage] + Artworks[artwork].suffix;
        picture = readBuiltInPicture(name.constData()).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    return picture;
}

} // namespace

QImage lampPicture(KelLight::IconType type, LampStage stage, const QSize &size)
{
    using Scaled = SharedLooks<ScaledKey, QImage, ScaledLimit>;

    if (size.isEmpty())
        return {};
    const ScaledKey key{int(type), int(stage), size};
    if (const QImage *known = Scaled::find(key))
        return *known;
    const QImage &artwork = source(key.type, key.stage, artworkFor(size));
    const QImage picture = artwork.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    Scaled::keep(key, picture, int(picture.sizeInBytes() / 1024));
    return picture;
}

int decodedLampPictures()
{
    return decodedCount;
}
