#include "graphictoolbar.h"

#include <QBoxLayout>
#include <QEvent>
#include <QPainter>
#include <QPixmapCache>
#include <QToolButton>
#include <scaling.h>

namespace
{

constexpr float IconFontHeights = 1.4f;

/// What is kept under \a key; \a make makes it first. All plots of a panel show the same few icons.
template <typename Make>
QPixmap kept(const QString &key, Make make)
{
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = QPixmap::fromImage(make());
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

/// The drawing \a name with its black replaced by \a color.
QPixmap tinted(const QString &name, const QColor &color)
{
    const QString key = QStringLiteral("kel tool ") + name;
    return kept(key + color.name(QColor::HexArgb), [&] {
        // Without the format's name Qt would load each of its picture plugins and ask it first.
        const auto decoded = [&name] { return QImage(QStringLiteral(":/toolkit/icons/%1.png").arg(name), "PNG"); };
        QImage image = kept(key, decoded).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), color);
        painter.end();
        return image;
    });
}

} // namespace

GraphicToolBar::GraphicToolBar(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setObjectName(QStringLiteral("toolBar"));

    addButton(Graphic::FitButton, "fit", tr("Show all points and follow them"), true);
    addButton(Graphic::ZoomInButton, "zoom_in", tr("Zoom in"), false);
    addButton(Graphic::ZoomOutButton, "zoom_out", tr("Zoom out"), false);
    addButton(Graphic::GridButton, "grid", tr("Grid"), true);
    addButton(Graphic::CursorButton, "cursor", tr("Read values at the pointer"), true);
    addButton(Graphic::PauseButton, "pause", tr("Hold the picture still"), true);
    addButton(Graphic::ClearButton, "clear", tr("Forget all points"), false);
    addButton(Graphic::LegendButton, "legend", tr("Legend"), true);
    addButton(Graphic::BorderInputsButton, "borders", tr("Bounds of the axes"), true);
    addButton(Graphic::StatusButton, "status", tr("Status line"), true);
    addButton(Graphic::SavePictureButton, "save", tr("Save a picture"), false);
    addButton(Graphic::CopyPictureButton, "copy", tr("Copy a picture"), false);
}

void GraphicToolBar::setButtons(Graphic::Buttons buttons)
{
    const bool isMore = buttons & ~m_shown;
    m_shown = buttons;
    if (isMore)
        renewIcons();
    for (auto it = m_buttons.cbegin(); it != m_buttons.cend(); ++it)
        it.value()->setVisible(buttons.testFlag(it.key()));
    setVisible(buttons & Graphic::AllButtons);
}

void GraphicToolBar::setChecked(Graphic::Button button, bool isChecked)
{
    m_buttons.value(button)->setChecked(isChecked);
}

void GraphicToolBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange:
    case QEvent::StyleChange:
        renewIcons();
        break;
    default:
        break;
    }
}

void GraphicToolBar::addButton(Graphic::Button button, const char *name, const QString &text, bool isCheckable)
{
    auto *toolButton = new QToolButton(this);
    toolButton->setObjectName(QLatin1String(name));
    toolButton->setToolTip(text);
    toolButton->setAccessibleName(text);
    toolButton->setCheckable(isCheckable);
    toolButton->setAutoRaise(true);
    toolButton->setFocusPolicy(Qt::TabFocus);
    connect(toolButton, &QToolButton::clicked, this,
            [this, button](bool isChecked) { Q_EMIT clicked(button, isChecked); });
    layout()->addWidget(toolButton);
    m_buttons.insert(button, toolButton);
}

/// Of the buttons that are shown: each icon has to be decoded and tinted.
void GraphicToolBar::renewIcons()
{
    const QSize size = preferredIconSize(IconFontHeights, this);
    const QColor on = palette().color(QPalette::Active, QPalette::ButtonText);
    const QColor off = palette().color(QPalette::Disabled, QPalette::ButtonText);
    for (auto it = m_buttons.cbegin(); it != m_buttons.cend(); ++it) {
        if (!m_shown.testFlag(it.key()))
            continue;
        QToolButton *button = it.value();
        QIcon icon(tinted(button->objectName(), on));
        icon.addPixmap(tinted(button->objectName(), off), QIcon::Disabled);
        button->setIcon(icon);
        button->setIconSize(size);
    }
}
