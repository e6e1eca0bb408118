#include "variants.h"

#include "plotvariants.h"
#include "tabvariants.h"

#include <kelbutton.h>
#include <kelclock.h>
#include <kellight.h>
#include <kelslider.h>
#include <kelswitch.h>
#include <kelthermometer.h>
#include <localdevice.h>
#include <qtimerwidget.h>

#include <QHash>
#include <QIcon>
#include <QTime>

#include <initializer_list>
#include <utility>

namespace
{

using Values = QVector<std::pair<const char *, QVariant>>;

/// A look that is made of property values, written in the order given.
GalleryVariant look(const char *caption, const Values &values, bool upright = false)
{
    const auto apply = [values](QWidget &widget) {
        for (const auto &value : values) {
            if (!widget.setProperty(value.first, value.second))
                qFatal("%s has no property %s", widget.metaObject()->className(), value.first);
        }
    };
    return {QString::fromLatin1(caption), apply, upright};
}

/// The look \a variant of a button as a designer shows it.
GalleryVariant inDesigner(GalleryVariant variant)
{
    const auto apply = variant.apply;
    variant.apply = [apply](QWidget &widget) {
        static_cast<KelButton &>(widget).designMode = true;
        apply(widget);
    };
    return variant;
}

QVector<GalleryVariant> buttonVariants()
{
    const QIcon lamp(QStringLiteral(":/icons/light_bulb_100.png"));
    const Values iconAndText = {{"text", "Lamp"}, {"icon", lamp}, {"iconSize", QSize(48, 48)}, {"animated", false}};
    const auto withIcon = [&iconAndText](const Values &more) { return iconAndText + more; };

    return {
        look("text under icon", iconAndText),
        look("text beside icon", withIcon({{"toolButtonStyle", Qt::ToolButtonTextBesideIcon}})),
        look("icon only", withIcon({{"toolButtonStyle", Qt::ToolButtonIconOnly}})),
        look("text only", withIcon({{"toolButtonStyle", Qt::ToolButtonTextOnly}})),
        look("state Gray", {{"text", "Open"}, {"state", KelButton::Gray}}),
        look("state Yes", {{"text", "Open"}, {"state", KelButton::Yes}}),
        look("state No", {{"text", "Open"}, {"state", KelButton::No}}),
        look("icon, state Yes", withIcon({{"state", KelButton::Yes}})),
        look("pressed", {{"text", "Open"}, {"down", true}, {"h__currentColor", QColor(Qt::yellow)}}),
        look("checked", {{"text", "Open"}, {"checkable", true}, {"checked", true}}),
        inDesigner(look("designer: unknown command", {{"text", "Open"}, {"command", "hall.open(1)"}})),
        inDesigner(look("designer: not visible", {{"text", "Open"}, {"buttonVisible", false}})),
    };
}

QVector<GalleryVariant> clockVariants()
{
    return {
        look("14:30", {{"time", QTime(14, 30)}}),
        look("no time yet", {}),
        look("00:05", {{"time", QTime(0, 5)}}),
        look("12:55", {{"time", QTime(12, 55)}}),
        look("09:41, between two numbers", {{"time", QTime(9, 41)}}),
        look("read-only", {{"time", QTime(18, 15)}, {"readOnly", true}}),
    };
}

QVector<GalleryVariant> lightVariants()
{
    return {
        look("Bulb, 100", {{"level", 100.0}}),
        look("Bulb, 60", {{"level", 60.0}}),
        look("Bulb, 15", {{"level", 15.0}}),
        look("Bulb, 0", {{"level", 0.0}}),
        look("LED, 100", {{"iconType", KelLight::LED}, {"level", 100.0}}),
        look("LED, 30", {{"iconType", KelLight::LED}, {"level", 30.0}}),
        look("LED, binary, off", {{"iconType", KelLight::LED}, {"binary", true}, {"on", false}}),
        look("Spot, 60", {{"iconType", KelLight::Spot}, {"level", 60.0}}),
        look("Spot, binary, on", {{"iconType", KelLight::Spot}, {"binary", true}, {"on", true}}),
        look("Spot, binary, off", {{"iconType", KelLight::Spot}, {"binary", true}, {"on", false}}),
    };
}

QVector<GalleryVariant> switchVariants()
{
    QVector<GalleryVariant> variants;
    for (const bool upright : {false, true}) {
        for (const auto style : {KelSwitch::OneSide, KelSwitch::Center}) {
            for (const bool inverted : {false, true}) {
                for (const bool on : {true, false}) {
                    const QString caption =
                        QStringLiteral("%1, %2%3, %4")
                            .arg(style == KelSwitch::Center ? QStringLiteral("Center") : QStringLiteral("OneSide"),
                                 upright ? QStringLiteral("vertical") : QStringLiteral("horizontal"),
                                 inverted ? QStringLiteral(", inverted") : QString(),
                                 on ? QStringLiteral("on") : QStringLiteral("off"));
                    variants << look(caption.toLatin1().constData(),
                                     {{"orientation", upright ? Qt::Vertical : Qt::Horizontal},
                                      {"switchStyle", style},
                                      {"invertedAppearance", inverted},
                                      {"checked", on}},
                                     upright);
                }
            }
        }
    }
    return variants;
}

QVector<GalleryVariant> thermometerVariants()
{
    return {
        look("0, as it comes", {}),
        look("-34", {{"value", -34.0}}),
        look("-12", {{"value", -12.0}}),
        look("14", {{"value", 14.0}}),
        look("38", {{"value", 38.0}}),
        look("wide scale",
             {{"gradMinimum", 0.0}, {"gradMaximum", 1000.0}, {"minimum", 0.0}, {"maximum", 800.0}, {"value", 640.0}}),
        look("room scale",
             {{"gradMinimum", 10.0}, {"gradMaximum", 35.0}, {"minimum", 15.0}, {"maximum", 27.0}, {"value", 22.5}}),
        look("read-only", {{"readOnly", true}, {"value", 25.0}}),
    };
}

QVector<GalleryVariant> sliderVariants()
{
    return {
        look("caption above", {{"title", "Level: %v"}, {"value", 96.0}}),
        look("caption in the bar", {{"title", "Level: %v"}, {"titleInsideBar", true}, {"value", 96.0}}),
        look("MinToValue", {{"barStyle", KelSlider::MinToValue}, {"value", 200.0}}),
        look("MaxToValue", {{"barStyle", KelSlider::MaxToValue}, {"value", 200.0}}),
        look("From0, above zero", {{"minimum", -100.0}, {"maximum", 200.0}, {"value", 120.0}}),
        look("From0, below zero", {{"minimum", -100.0},
                                   {"maximum", 200.0},
                                   {"title", "%v degrees"},
                                   {"titleInsideBar", true},
                                   {"value", -60.0}}),
        look("fine step", {{"maximum", 10.0}, {"precision", 0.25}, {"title", "%v bar"}, {"value", 6.25}}),
        look("no step buttons", {{"showDecInc", false}, {"value", 96.0}}),
        look("no Min and Max", {{"showMinMax", false}, {"value", 96.0}}),
        look(
            "bar alone",
            {{"showMinMax", false}, {"showDecInc", false}, {"title", "%v"}, {"titleInsideBar", true}, {"value", 96.0}}),
        look("read-only", {{"title", "Level: %v"}, {"readOnly", true}, {"value", 96.0}}),
    };
}

QVector<GalleryVariant> timerVariants()
{
    const auto show = [](QWidget &widget) {
        auto &timer = static_cast<QTimerWidget &>(widget);
        timer.visibleAtRunTime = true;
        timer.image = QImage(QStringLiteral(":/icons/qtimerwidget.png"));
    };
    return {{QStringLiteral("kept visible"), show}};
}

QVector<GalleryVariant> deviceVariants()
{
    const auto withRow = [](int row) {
        return [row](QWidget &widget) {
            auto &device = static_cast<LocalDevice &>(widget);
            device.setDeviceReadPath(QStringLiteral("gser:///dev/ttyUSB0:9600"));
            device.setDeviceSendPath(QStringLiteral("gser:///dev/ttyUSB0:9600"));
            device.buildDebug();
            device.setCurrentID(row);
        };
    };
    return {{QStringLiteral("status view"), withRow(1)}, {QStringLiteral("no device chosen"), withRow(-1)}};
}

} // namespace

QVector<GalleryVariant> galleryVariants(const QString &className)
{
    static const QHash<QString, QVector<GalleryVariant> (*)()> Tables = {
        {QStringLiteral("KelButton"), buttonVariants},
        {QStringLiteral("KelClock"), clockVariants},
        {QStringLiteral("KelGraphic"), plotVariants},
        {QStringLiteral("KelLight"), lightVariants},
        {QStringLiteral("KelThermometer"), thermometerVariants},
        {QStringLiteral("KelSwitch"), switchVariants},
        {QStringLiteral("KelSlider"), sliderVariants},
        {QStringLiteral("KelTabWidget"), tabVariants},
        {QStringLiteral("QTimerWidget"), timerVariants},
        {QStringLiteral("LocalDevice"), deviceVariants},
    };
    const auto table = Tables.value(className, nullptr);
    return table ? table() : QVector<GalleryVariant>{look("as it comes", {})};
}
