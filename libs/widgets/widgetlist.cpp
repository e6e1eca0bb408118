#include "widgetlist.h"

#include "kelbutton.h"
#include "kellight.h"
#include "localdevice.h"

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
        {QStringLiteral("KelLight"), group(), QStringLiteral(":/icons/light_bulb_100.png"),
         QStringLiteral("Dimmable light"),
         QStringLiteral("Lamp that glows with its level. A click switches it, a drag around its ring dims it."),
         QSize(120, 120), false, create<KelLight>},
        {QStringLiteral("LocalDevice"), group(), QStringLiteral(":/icons/local_device.png"),
         QStringLiteral("Device of the catalogue"),
         QStringLiteral("Stands for one device: sends its commands by number and turns its answers into signals. "
                        "It is not seen while the panel runs."),
         QSize(230, 95), false, create<LocalDevice>},
    };
    return List;
}
