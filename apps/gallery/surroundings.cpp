#include "surroundings.h"

#include <QApplication>
#include <QFontInfo>
#include <QLocale>
#include <QStyleFactory>

#include <cstdio>

namespace
{

constexpr int FontPoints = 10;

/// Offscreen, Qt tells of each window that there is no window manager to tell of its size, some machines
/// give a program no folder to run in, and a device tells the debug output what it read; none is news here.
void printTrouble(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && !text.startsWith(QLatin1String("This plugin does not support")) &&
        !text.startsWith(QLatin1String("QStandardPaths")))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

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
