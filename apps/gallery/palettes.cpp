#include "palettes.h"

namespace
{

struct Colors {
    QColor window;
    QColor base;
    QColor button;
    QColor text;
    QColor dark;
    QColor disabledText;
    QColor highlight;
    QColor highlightedText;
};

QPalette paletteOf(const Colors &colors)
{
    QPalette palette(colors.button, colors.window);
    palette.setColor(QPalette::Base, colors.base);
    palette.setColor(QPalette::AlternateBase, colors.window);
    palette.setColor(QPalette::Dark, colors.dark);
    palette.setColor(QPalette::Highlight, colors.highlight);
    palette.setColor(QPalette::HighlightedText, colors.highlightedText);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, colors.text);
        palette.setColor(QPalette::Disabled, role, colors.disabledText);
    }
    return palette;
}

QColor gray(int level)
{
    return QColor(level, level, level);
}

} // namespace

const QVector<GalleryPalette> &galleryPalettes()
{
    static const QVector<GalleryPalette> Palettes = {
        {QStringLiteral("light palette"), paletteOf({gray(239), Qt::white, gray(239), Qt::black, gray(159), gray(150),
                                                     QColor(48, 140, 198), Qt::white})},
        {QStringLiteral("dark palette"),
         paletteOf({gray(45), gray(30), gray(58), gray(235), gray(120), gray(125), QColor(42, 130, 218), Qt::white})},
    };
    return Palettes;
}
