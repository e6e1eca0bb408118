#include "kellightpictures.h"

#include "builtinpicture.h"

#include <QCache>

#include <array>
#include <tuple>

namespace
{

constexpr int TypesCount = 3;
constexpr int StagesCount = 4;

/// Kibibytes of scaled pictures that are kept. What a lamp shows lives on with it, so this only decides how many sizes
/// are there without scaling them anew.
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

/// A picture of the resource set as it is there, decoded when it is needed first.
const QImage &source(int type, int stage)
{
    static const char *const types[TypesCount] = {"bulb", "led", "spot"};
    static const char *const stages[StagesCount] = {"0", "100", "w", "h"};
    static std::array<QImage, TypesCount * StagesCount> decoded;

    QImage &picture = decoded[size_t(type * StagesCount + stage)];
    if (picture.isNull()) {
        ++decodedCount;
        const QByteArray name = QByteArray("light_") + types[type] + '_' + stages[stage];
        picture = readBuiltInPicture(name.constData()).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    return picture;
}

} // namespace

QImage lampPicture(KelLight::IconType type, LampStage stage, const QSize &size)
{
    static QCache<ScaledKey, QImage> scaled(ScaledLimit);

    if (size.isEmpty())
        return {};
    const ScaledKey key{int(type), int(stage), size};
    if (const QImage *known = scaled.object(key))
        return *known;
    const QImage picture = source(key.type, key.stage).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.insert(key, new QImage(picture), qMax(1, int(picture.sizeInBytes() / 1024)));
    return picture;
}

int decodedLampPictures()
{
    return decodedCount;
}
