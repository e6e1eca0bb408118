#include "check/plotvariables.h"

#include <graphicvariable.h>

QVector<PlotVariable> plotVariables(const CheckedPanel &panel)
{
    QVector<PlotVariable> variables;
    const QString property = QStringLiteral("variables");
    for (const FormObject &object : panel.form().objects) {
        const auto set = object.properties.constFind(property);
        if (set == object.properties.constEnd() || !panel.isA(object, "KelGraphic"))
            continue;
        for (const QString &text : set->list) {
            const QString name = GraphicVariable::fromText(text).left;
            variables.append({&object, set->line, name, PlotSource::fromText(name)});
        }
    }
    return variables;
}
