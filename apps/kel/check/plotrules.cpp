#include "check/checkinput.h"
#include "check/panelnumbers.h"
#include "check/plotvariables.h"

#include <QPair>
#include <QSet>

namespace
{

/// Whether an answer of \a device gives the argument; true as long as nobody knows.
bool isGiven(const CatalogueDevice *device, int argument)
{
    if (!device)
        return true;
    for (const QString &text : device->make->answers) {
        if (capturesOf(text, device->deviceID).contains(argument))
            return true;
    }
    return false;
}

QString problemOf(const PlotVariable &variable, const CheckInput &input)
{
    const PlotSource &source = variable.source;
    if (!source.error.isEmpty())
        return source.error;
    const FormObject *device = input.panel.object(source.device);
    if (!device || !input.panel.isA(*device, "LocalDevice"))
        return QStringLiteral("there is no device \"%1\"").arg(source.device);
    if (!isGiven(PanelNumbers(input.panel, input.catalogue).deviceOf(*device), source.argument))
        return QStringLiteral("no answer of \"%1\" gives argument %2").arg(source.device).arg(source.argument);
    return QString();
}

} // namespace

void checkPlots(const CheckInput &input)
{
    QSet<QPair<const FormObject *, QString>> shown;
    for (const PlotVariable &variable : plotVariables(input.panel)) {
        QString problem = problemOf(variable, input);
        const QPair<const FormObject *, QString> key(variable.plot, variable.name);
        if (problem.isEmpty() && shown.contains(key))
            problem = QStringLiteral("it stands there twice, so the progress icon never stops");
        shown.insert(key);
        if (!problem.isEmpty())
            input.findings.error(
                Rule::PlotVariable, variable.line,
                QStringLiteral("variable \"%1\" of \"%2\": %3").arg(variable.name, variable.plot->name, problem));
    }
}
