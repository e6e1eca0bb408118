#include "catalogue.h"
#include "page.h"

#include <QApplication>
#include <QDir>
#include <QFontInfo>
#include <QLocale>
#include <QStyleFactory>

#include <cstdio>

namespace
{

constexpr int ExitFailure = 1;
constexpr int ExitWrongUsage = 2;
constexpr int FontPoints = 10;

/// Offscreen, Qt tells of each window that there is no window manager to tell of its size, and a device
/// tells the debug output what it read; neither is news here.
void printTrouble(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && !text.startsWith(QLatin1String("This plugin does not support")))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

/// Nothing of the place where the program runs may show in the pictures.
void forgetSurroundings()
{
    for (const char *name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR", "QT_FONT_DPI",
                             "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME"})
        qunsetenv(name);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TZ", "UTC");
    QLocale::setDefault(QLocale::c());
    qInstallMessageHandler(printTrouble);
}

bool dress()
{
    const QFont font(QStringLiteral("DejaVu Sans"), FontPoints);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(font);
    return QFontInfo(font).family() == font.family();
}

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
