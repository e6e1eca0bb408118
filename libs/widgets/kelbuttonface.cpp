#include "kelbuttonface.h"

namespace
{

constexpr double UsedShare = 0.9; // Of the button, for icon and text together.
constexpr int Margin = 4;         // Around the used share, and between icon and text.

} // namespace

QSize buttonIconSize(const QSize &button, const QSize &icon, const QSize &text, Qt::ToolButtonStyle style)
{
    QSize room(qRound(button.width() * UsedShare) - Margin, qRound(button.height() * UsedShare) - Margin);
    if (style == Qt::ToolButtonTextBesideIcon)
        room.rwidth() -= text.width();
    else if (style == Qt::ToolButtonTextUnderIcon)
        room.rheight() -= text.height();

    if (icon.width() <= room.width() && icon.height() <= room.height())
        return icon;
    return room.isEmpty() ? QSize(0, 0) : icon.scaled(room, Qt::KeepAspectRatio);
}

ButtonFace layoutButtonFace(const QSize &button, const QSize &icon, const QSize &text, Qt::ToolButtonStyle style)
{
    const int width = button.width();
    const int height = button.height();

    ButtonFace face;
    if (!text.isValid() || style == Qt::ToolButtonIconOnly) {
        face.icon = QRect(QPoint((width - icon.width()) / 2, (height - icon.height()) / 2), icon);
    } else if (style == Qt::ToolButtonTextBesideIcon) {
        face.icon =
            QRect(QPoint((width - text.width() - icon.width()) / 2 - Margin, (height - icon.height()) / 2), icon);
        face.text = QRect((width - text.width() + icon.width()) / 2 + Margin, 0, text.width(), height);
        face.textAlignment = Qt::AlignCenter;
    } else {
        const int top = (icon.height() + height - text.height()) / 2 + Margin;
        face.icon =
            QRect(QPoint((width - icon.width()) / 2, (height - icon.height() - text.height()) / 2 - Margin), icon);
        face.text = QRect(0, top, width, height - top);
        face.textAlignment = Qt::AlignHCenter | Qt::AlignTop;
    }
    return face;
}
