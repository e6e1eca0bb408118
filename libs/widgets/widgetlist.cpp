#include "widgetlist.h"

#include "kelbutton.h"
#include "kelclock.h"
#include "kelgraphic.h"
#include "kellight.h"
#include "kelslider.h"
#include "kelswitch.h"
#include "keltabwidget.h"
#include "kelthermometer.h"
#include "localdevice.h"
#include "qtimerwidget.h"

namespace
{

template <typename Widget>
QWidget *create(QWidget *parent)
{
    return new Widget(parent);
}

QString group()
{
    return QStringLiteral("Kel Widgets");
}

} // namespace

const QVector<KelWidgetInfo> &kelWidgetList()
{
    static const QVector<KelWidgetInfo> List = {
        {QStringLiteral("KelButton"), group(), QStringLiteral(":/icons/kelbutton.png"), QStringLiteral("Touch button"),
         QStringLiteral("Push button whose face shows a device's answer in colour. Its clicks carry a number."),
         QSize(120, 72), false, create<KelButton>},
        {QStringLiteral("KelClock"), group(), QStringLiteral(":/icons/kelclock.png"), QStringLiteral("Clock"),
         QStringLiteral("Sets a time of day by a tap or a drag on the numbers of two clock faces."), QSize(320, 160),
         false, create<KelClock>},
        {QStringLiteral("KelGraphic"), group(), QStringLiteral(":/icons/kelgraphic.png"), QStringLiteral("Plot"),
         QStringLiteral("Draws the values of devices over time. An icon turns until every curve has its data."),
         QSize(400, 240), false, create<KelGraphic>},
        {QStringLiteral("KelLight"), group(), QStringLiteral(":/icons/light_bulb_100.png"),
         QStringLiteral("Dimmable light"),
         QStringLiteral("Lamp that glows with its level. A click switches it, a drag around its ring dims it."),
         QSize(120, 120), false, create<KelLight>},
        {QStringLiteral("KelSlider"), group(), QStringLiteral(":/icons/kelslider.png"), QStringLiteral("Slider"),
         QStringLiteral("Sets a number by a bar that is pressed or dragged, and by large buttons."), QSize(480, 72),
         false, create<KelSlider>},
        {QStringLiteral("KelSwitch"), group(), QStringLiteral(":/icons/kelswitch.png"), QStringLiteral("Switch"),
         QStringLiteral("Switch with two positions. A click toggles it, and its handle can be dragged."), QSize(96, 36),
         false, create<KelSwitch>},
        {QStringLiteral("KelTabWidget"), group(), QStringLiteral(":/icons/keltabwidget.png"),
         QStringLiteral("Tab widget"),
         QStringLiteral("Pages behind tabs. A finger drags the tabs when they need more room than there is."),
         QSize(240, 160), true, create<KelTabWidget>},
        {QStringLiteral("KelThermometer"), group(), QStringLiteral(":/icons/kelthermometer.png"),
         QStringLiteral("Thermometer"),
         QStringLiteral("Shows a temperature as a column of liquid that turns from blue to red. A press sets it."),
         QSize(120, 300), false, create<KelThermometer>},
        {QStringLiteral("QTimerWidget"), group(), QStringLiteral(":/icons/qtimerwidget.png"), QStringLiteral("Timer"),
         QStringLiteral("Ticks at an interval, once or again and again. It is not seen while the panel runs."),
         QSize(32, 32), false, create<QTimerWidget>},
        {QStringLiteral("LocalDevice"), group(), QStringLiteral(":/icons/local_device.png"),
         QStringLiteral("Device of the catalogue"),
         QStringLiteral("Stands for one device: sends its commands by number and turns its answers into signals. "
                        "It is not seen while the panel runs."),
         QSize(230, 95), false, create<LocalDevice>},
    };
    return List;
}
