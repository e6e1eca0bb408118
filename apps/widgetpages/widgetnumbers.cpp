#include "widgetnumbers.h"

#include <QMetaProperty>

#include <algorithm>

namespace
{

bool hasProperty(const QMetaObject &meta, const QString &name)
{
    return meta.indexOfProperty(name.toLatin1().constData()) >= 0;
}

WidgetNumber &numberNamed(QVector<WidgetNumber> &numbers, const QString &name)
{
    const auto found =
        std::find_if(numbers.begin(), numbers.end(), [&](const WidgetNumber &n) { return n.name == name; });
    if (found != numbers.end())
        return *found;
    WidgetNumber number;
    number.name = name;
    numbers << number;
    return numbers.last();
}

void addOnce(QStringList &names, const QString &name)
{
    if (!names.contains(name))
        names << name;
}

} // namespace

QString numberProperty(const QMetaObject &meta, const QString &parameter)
{
    if (parameter == QLatin1String("id")) {
        for (const char *name : {"emitID", "clickID"}) {
            if (hasProperty(meta, QString::fromLatin1(name)))
                return QString::fromLatin1(name);
        }
        return QString();
    }
    const QString name = parameter.section(QLatin1Char('_'), 0, 0) + QStringLiteral("ID");
    return parameter.endsWith(QLatin1String("_id")) && hasProperty(meta, name) ? name : QString();
}

QString numberParameter(const QMetaMethod &method)
{
    if (method.parameterCount() == 0 || method.parameterType(0) != QMetaType::Int)
        return QString();
    const QString name = QString::fromLatin1(method.parameterNames().first());
    const bool isSetter = method.methodType() == QMetaMethod::Slot && name == QLatin1String("id");
    const bool isNumber = name == QLatin1String("id") || name.endsWith(QLatin1String("_id")) ||
                          name.endsWith(QLatin1String("_ID")) || name.endsWith(QLatin1String("_num"));
    return isNumber && !isSetter ? name : QString();
}

QVector<WidgetNumber> widgetNumbers(const QMetaObject &meta, const QVector<QMetaMethod> &methods)
{
    QVector<WidgetNumber> numbers;
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const QString name = QString::fromLatin1(meta.property(i).name());
        if (name.endsWith(QLatin1String("ID")))
            numberNamed(numbers, name).isProperty = true;
    }
    for (const QMetaMethod &method : methods) {
        const QString parameter = numberParameter(method);
        if (parameter.isEmpty())
            continue;
        const QString property = numberProperty(meta, parameter);
        WidgetNumber &number = numberNamed(numbers, property.isEmpty() ? parameter : property);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        addOnce(isSignal ? number.carriedBy : number.listenedBy, QString::fromLatin1(method.name()));
    }
    return numbers;
}
