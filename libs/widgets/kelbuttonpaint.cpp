// How the button looks: its face, and the marks that a designer sees.
#include "kelbutton.h"

#include "builtinpicture.h"
#include "commonpalette.h"
#include "kelbuttonface.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionToolButton>

#include <utility>

namespace
{

constexpr double SizeHintRoom = 0.1; // Of the icon, added to the hint.

constexpr QPoint ConnectionMark(4, 4);
constexpr int InvisibleMarkFromRight = 20;
constexpr int InvisibleMarkTop = 4;

// The bound command stands beside its mark, its small letters level with the mark's middle.
constexpr double CommandFontScale = 0.75;
constexpr double CommandLetterShare = 0.666;
constexpr int CommandLeft = 24;
constexpr int MarkHeight = 16;
constexpr int MarkBottom = 20;

QFont scaledFont(QFont font, double factor)
{
    if (font.pointSizeF() > 0.0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(qMax(1, qRound(font.pixelSize() * factor)));
    return font;
}

QIcon::Mode iconMode(const QStyleOption &option)
{
    if (!option.state.testFlag(QStyle::State_Enabled))
        return QIcon::Disabled;
    return option.state.testFlag(QStyle::State_MouseOver) ? QIcon::Active : QIcon::Normal;
}

// A picture that came out smaller than its place stands in the middle of it.
void drawIcon(QPainter &painter, const QIcon &icon, const QRect &place, QIcon::Mode mode, QIcon::State state)
{
    if (place.isEmpty())
        return;
    const QPixmap pixmap = icon.pixmap(place.size(), mode, state);
    const QSize size = pixmap.size() / pixmap.devicePixelRatio();
    painter.drawPixmap(place.x() + (place.width() - size.width()) / 2, place.y() + (place.height() - size.height()) / 2,
                       pixmap);
}

void drawText(QPainter &painter, const QString &text, const ButtonFace &face, const QStyleOption &option,
              const QWidget &button)
{
    const QStyle *style = button.style();
    const bool underlined = style->styleHint(QStyle::SH_UnderlineShortcut, &option, &button) != 0;
    const int flags = static_cast<int>(face.textAlignment) | (underlined ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);

    painter.save();
    painter.setFont(button.font());
    style->drawItemText(&painter, face.text, flags, option.palette, option.state.testFlag(QStyle::State_Enabled), text,
                        QPalette::ButtonText);
    painter.restore();
}

} // namespace

QSize KelButton::sizeHint() const
{
    const QSize hint = QToolButton::sizeHint();
    if (icon().isNull() || toolButtonStyle() == Qt::ToolButtonTextOnly)
        return hint;
    const QSize picture = icon().actualSize(iconSize());
    return hint + QSize(qRound(picture.width() * SizeHintRoom), qRound(picture.height() * SizeHintRoom));
}

void KelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);

    drawButton(painter);
    if (designMode && !m_command.isEmpty())
        drawConnection(painter);
}

void KelButton::drawButton(QPainter &painter)
{
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.palette = commonPalette(option.palette);
    const Qt::ToolButtonStyle buttonStyle = option.toolButtonStyle;

    if (option.icon.isNull() || buttonStyle == Qt::ToolButtonTextOnly) {
        style()->drawComplexControl(QStyle::CC_ToolButton, &option, &painter, this);
    } else {
        const QString text = std::exchange(option.text, QString());
        const QIcon icon = std::exchange(option.icon, QIcon());
        style()->drawComplexControl(QStyle::CC_ToolButton, &option, &painter, this);

        const bool hasText = !text.isEmpty() && buttonStyle != Qt::ToolButtonIconOnly;
        const QSize textSize = hasText ? fontMetrics().size(0, text) : QSize(-1, -1);
        const QSize iconSize = buttonIconSize(size(), icon.actualSize(option.iconSize), textSize, buttonStyle);
        const ButtonFace face = layoutButtonFace(size(), iconSize, textSize, buttonStyle);

        drawIcon(painter, icon, face.icon, iconMode(option), isChecked() ? QIcon::On : QIcon::Off);
        if (hasText)
            drawText(painter, text, face, option, *this);
    }

    if (designMode && !m_buttonVisible) {
        static const QImage invisible = readBuiltInPicture("invisible");
        painter.drawImage(width() - InvisibleMarkFromRight, InvisibleMarkTop, invisible);
    }
}

void KelButton::drawConnection(QPainter &painter) const
{
    static const QImage connected = readBuiltInPicture("connected");
    static const QImage disconnected = readBuiltInPicture("disconnected");
    const QFont font = scaledFont(painter.font(), CommandFontScale);
    const int letters = static_cast<int>(QFontMetrics(font, painter.device()).height() * CommandLetterShare);

    painter.save();
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawImage(ConnectionMark, m_connected ? connected : disconnected);
    painter.drawText(CommandLeft, (letters - MarkHeight) / 2 + MarkBottom, m_command);
    painter.restore();
}
