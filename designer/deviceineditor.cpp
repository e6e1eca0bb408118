#include "deviceineditor.h"

#include "editorlook.h"

#include <kelglobals.h>

#include <QPainter>
#include <QTimer>
#include <QVariant>

namespace
{

constexpr int FollowPeriodMs = 500;
constexpr int Margin = 6;
constexpr int IconStrip = 82; ///< What the device's own picture and its margin take at the right.

QString deviceLine(const LocalDevice &device)
{
    const QString name = device.property("__devname").toString();
    if (!name.isEmpty())
        return name;
    if (device.currentID() < 0)
        return QStringLiteral("No device (currentID %1)").arg(device.currentID());
    if (!Kel::commandsDB.database.isOpen())
        return QStringLiteral("currentID %1, no catalogue open").arg(device.currentID());
    return QStringLiteral("currentID %1 is not in the catalogue").arg(device.currentID());
}

QString portLine(const QString &verb, const QString &path)
{
    return path.isEmpty() ? QStringLiteral("%1 nothing").arg(verb) : QStringLiteral("%1 %2").arg(verb, path);
}

} // namespace

QStringList bindingText(const LocalDevice &device)
{
    return {deviceLine(device), portLine(QStringLiteral("reads"), device.deviceReadPath()),
            portLine(QStringLiteral("sends"), device.deviceSendPath())};
}

DeviceInEditor::DeviceInEditor(QWidget *parent)
    : LocalDevice(parent)
{
    // The properties announce no change.
    auto *timer = new QTimer(this);
    timer->callOnTimeout(this, [this] { follow(); });
    timer->start(FollowPeriodMs);
}

void DeviceInEditor::follow()
{
    if (isVisible() && bindingText(*this) != m_shown)
        update();
}

void DeviceInEditor::showEvent(QShowEvent *event)
{
    if (isOnEditedForm(*this))
        QWidget::showEvent(event);
    else
        LocalDevice::showEvent(event);
}

void DeviceInEditor::paintEvent(QPaintEvent *event)
{
    m_shown = bindingText(*this);
    const QRect text = rect().adjusted(Margin, Margin, -IconStrip, -Margin);
    {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        const int lineHeight = painter.fontMetrics().lineSpacing();
        QRect line(text.topLeft(), QSize(text.width(), lineHeight));
        for (const QString &words : m_shown) {
            painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                             painter.fontMetrics().elidedText(words, Qt::ElideMiddle, text.width()));
            line.translate(0, lineHeight);
        }
    }
    LocalDevice::paintEvent(event);
}
