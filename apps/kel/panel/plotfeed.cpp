#include "panel/plotfeed.h"

#include <kelgraphic.h>
#include <localdevice.h>

#include <QDateTime>

#include <algorithm>

namespace
{

constexpr double MsPerSecond = 1000.0;
constexpr double FirstSeconds = 60.0; // along the time axis before anything came

/// The present time as the time axis of a plot counts it: seconds since 1970.
double now()
{
    return double(QDateTime::currentMSecsSinceEpoch()) / MsPerSecond;
}

/// All widgets of a kind in \a window, itself included.
template <typename Widget>
QList<Widget *> widgetsIn(QWidget &window)
{
    QList<Widget *> found = window.findChildren<Widget *>();
    if (auto *itself = qobject_cast<Widget *>(&window))
        found.prepend(itself);
    return found;
}

LocalDevice *findDevice(QWidget &window, const QString &name)
{
    const QList<LocalDevice *> devices = widgetsIn<LocalDevice>(window);
    const auto found = std::find_if(devices.cbegin(), devices.cend(),
                                    [&name](const LocalDevice *device) { return device->objectName() == name; });
    return found == devices.cend() ? nullptr : *found;
}

void feedCurve(KelGraphic &plot, int curve, const QString &variable, LocalDevice &device, int argument)
{
    QObject::connect(&device, &LocalDevice::receivedAnswerArg, &plot, [=, &plot](int number, int value) {
        if (number != argument)
            return;
        plot.addPoint(now(), value, curve);
        // Again with every point, so that a plot that was started anew hears of it too.
        plot.graphicDone(variable);
    });
}

/// Empties \a plot, turns its icon, and lets it show the present time until there are points to show.
void startNow(KelGraphic &plot)
{
    plot.setTimeAxis(true);
    plot.reset();
    plot.setVisibleRange(Graphic::XAxis, now(), now() + FirstSeconds);
    plot.setFitted(true);
}

/// Feeds one curve; what is wrong with its variable, empty when it is fed.
QString feedVariable(QWidget &window, KelGraphic &plot, int curve)
{
    const QStringList variables = plot.variableNames();
    const QString &variable = variables.at(curve);
    const PlotSource source = PlotSource::fromText(variable);
    if (!source.error.isEmpty())
        return source.error;
    LocalDevice *device = findDevice(window, source.device);
    if (!device)
        return QStringLiteral("there is no device \"%1\"").arg(source.device);
    feedCurve(plot, curve, variable, *device, source.argument);
    // Done variables are counted by name: two of one name are one, and the plot waits for another for ever.
    return variables.indexOf(variable) < curve
               ? QStringLiteral("it stands there twice, so the progress icon never stops")
               : QString();
}

} // namespace

PlotSource PlotSource::fromText(const QString &text)
{
    PlotSource source;
    const int dot = text.lastIndexOf(QLatin1Char('.'));
    if (dot < 1) {
        source.error = QStringLiteral("it is not DEVICE.NUMBER");
        return source;
    }
    const QString number = text.mid(dot + 1);
    const bool hasDigitsOnly = std::all_of(number.cbegin(), number.cend(),
                                           [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    bool isNumber = false;
    source.argument = number.toInt(&isNumber);
    if (!isNumber || !hasDigitsOnly) {
        source.argument = -1;
        source.error = QStringLiteral("\"%1\" is no argument number").arg(number);
        return source;
    }
    source.device = text.left(dot);
    return source;
}

QStringList feedPlots(QWidget &window)
{
    QStringList complaints;
    for (KelGraphic *plot : widgetsIn<KelGraphic>(window)) {
        const QStringList variables = plot->variables();
        if (variables.isEmpty())
            continue;
        for (int curve = 0; curve < variables.size(); ++curve) {
            const QString problem = feedVariable(window, *plot, curve);
            if (!problem.isEmpty())
                complaints << QStringLiteral("%1: variable \"%2\": %3")
                                  .arg(plot->objectName(), variables.at(curve), problem)
                                  .simplified();
        }
        startNow(*plot);
    }
    return complaints;
}
