#include "catalogue.h"
#include "page.h"
#include "surroundings.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

namespace
{

constexpr int ExitFailure = 1;
constexpr int ExitWrongUsage = 2;

int complain(const QString &text)
{
    std::fprintf(stderr, "kel_gallery: %s\n", qPrintable(text));
    return ExitFailure;
}

void save(const QImage &image, const QDir &folder, const QString &name)
{
    const QString path = folder.filePath(name.toLower() + QStringLiteral(".png"));
    if (!image.save(path, "PNG", 0))
        throw GalleryError(path.toStdString() + ": cannot be written");
}

void saveAll(const QDir &folder)
{
    for (const KelWidgetInfo &info : kelWidgetList())
        save(galleryPage(info, galleryVariants(info.className)), folder, info.className);
    save(gallerySheet(kelWidgetList()), folder, QStringLiteral("sheet"));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: kel_gallery FOLDER\n");
        return ExitWrongUsage;
    }
    forgetSurroundings();
    const QApplication application(argc, argv);
    if (!dress())
        return complain(QStringLiteral("the font DejaVu Sans is missing (Debian: fonts-dejavu-core)"));
    if (!openGalleryCatalogue())
        return complain(QStringLiteral("no catalogue can be opened"));

    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!folder.mkpath(QStringLiteral(".")))
        return complain(QStringLiteral("%1: no folder can be made there").arg(folder.path()));
    try {
        saveAll(folder);
    } catch (const std::exception &error) {
        return complain(QString::fromStdString(error.what()));
    }
    return 0;
}
