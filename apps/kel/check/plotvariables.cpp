#include "check/plotvariables.h"

namespace
{

/// The name in "name=title"; a text that does not begin with a name is one itself.
QString nameIn(const QString &text)
{
    const int equals = text.indexOf(QLatin1Char('='));
    return equals > 0 ? text.left(equals).trimmed() : text;
}

void splitName(PlotVariable &variable)
{
    const int dot = variable.name.lastIndexOf(QLatin1Char('.'));
    bool isNumber = false;
    variable.argument = variable.name.mid(dot + 1).toInt(&isNumber);
    variable.device = variable.name.left(dot);
    if (dot < 1 || !isNumber || variable.argument < 0)
        variable.problem = QStringLiteral("it is not DEVICE.NUMBER");
}

} // namespace

QVector<PlotVariable> plotVariables(const CheckedPanel &panel)
{
    QVector<PlotVariable> variables;
    const QString property = QStringLiteral("variables");
    for (const FormObject &object : panel.form().objects) {
        const auto set = object.properties.constFind(property);
        if (set == object.properties.constEnd() || !panel.isA(object, "KelGraphic"))
            continue;
        for (const QString &text : set->list) {
            PlotVariable variable;
            variable.plot = &object;
            variable.line = set->line;
            variable.name = nameIn(text);
            splitName(variable);
            variables.append(variable);
        }
    }
    return variables;
}
