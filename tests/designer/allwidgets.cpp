#include "allwidgets.h"

#include <widgetlist.h>

#include <QColor>
#include <QDateTime>
#include <QDebug>
#include <QMetaProperty>
#include <QTabWidget>
#include <QVBoxLayout>

namespace
{

/// Index of the first property that no class of Qt has.
int firstOwnProperty(const QMetaObject *meta)
{
    while (meta->superClass() && !QByteArray(meta->superClass()->className()).startsWith('Q'))
        meta = meta->superClass();
    return meta->propertyOffset();
}

int keysOf(const QMetaProperty &property)
{
    return property.isEnumType() && !property.isFlagType() ? property.enumerator().keyCount() : 1;
}

/// How often \a widget has to stand on the form for every name of its enumerations.
int copiesOf(const QWidget &widget)
{
    const QMetaObject *meta = widget.metaObject();
    int copies = 1;
    for (int i = firstOwnProperty(meta); i < meta->propertyCount(); ++i) {
        if (meta->property(i).isDesignable(&widget))
            copies = qMax(copies, keysOf(meta->property(i)));
    }
    return copies;
}

/// A value other than \a value that any widget may take; \a copy picks the name of an enumeration.
QVariant changedValue(const QMetaProperty &property, const QVariant &value, int copy)
{
    if (property.isFlagType())
        return value;
    if (property.isEnumType()) {
        const int key = copy % property.enumerator().keyCount();
        return needsMore(property.enumerator(), key) ? value : property.enumerator().value(key);
    }
    switch (int(value.type())) {
    case QVariant::Bool:
        return !value.toBool();
    case QVariant::Int:
        return value.toInt() + 3;
    case QVariant::Double:
        return value.toDouble() * 0.75 + 0.5;
    case QVariant::Color:
        return QColor(12, 34, 56, 78);
    case QVariant::Size:
        return value.toSize() + QSize(4, 5);
    case QVariant::String:
        return QStringLiteral("a < b & \"c\"");
    case QVariant::Date:
        return QDate(2001, 2, 3);
    case QVariant::Time:
        return QTime(4, 5, 6);
    case QVariant::DateTime:
        return QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6));
    default:
        return value;
    }
}

void changeProperties(QWidget &widget, int copy)
{
    const QMetaObject *meta = widget.metaObject();
    for (int i = firstOwnProperty(meta); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (property.isDesignable(&widget))
            property.write(&widget, changedValue(property, property.read(&widget), copy));
    }
}

/// Gives \a widget two pages when it holds pages.
void addPages(QWidget &widget)
{
    auto *tabs = qobject_cast<QTabWidget *>(&widget);
    if (!tabs)
        return;
    for (const char *page : {"one", "two"}) {
        auto *content = new QWidget;
        content->setObjectName(widget.objectName() + QLatin1Char('_') + QLatin1String(page));
        tabs->addTab(content, QLatin1String(page));
    }
}

QString textOf(const QMetaProperty &property, const QVariant &value)
{
    if (property.isFlagType())
        return QString::fromLatin1(property.enumerator().valueToKeys(value.toInt()));
    if (property.isEnumType())
        return QString::fromLatin1(property.enumerator().valueToKey(value.toInt()));
    QString text;
    QDebug(&text).noquote() << value;
    return text;
}

} // namespace

bool needsMore(const QMetaEnum &enumerator, int key)
{
    static const QByteArrayList Names = {"BezierSpline", "TCBSpline", "Custom", "NCurveTypes"};
    return qstrcmp(enumerator.scope(), "QEasingCurve") == 0 && Names.contains(enumerator.key(key));
}

std::unique_ptr<QWidget> makeAllWidgets()
{
    auto window = std::make_unique<QWidget>();
    window->setObjectName(QStringLiteral("AllWidgets"));
    auto *layout = new QVBoxLayout(window.get());
    for (const KelWidgetInfo &info : kelWidgetList()) {
        const int copies = copiesOf(*std::unique_ptr<QWidget>(info.create(nullptr)));
        for (int copy = 0; copy < copies; ++copy) {
            QWidget *widget = info.create(window.get());
            widget->setObjectName(QStringLiteral("%1_%2").arg(info.className).arg(copy));
            addPages(*widget);
            changeProperties(*widget, copy);
            layout->addWidget(widget);
        }
    }
    return window;
}

QStringList ownProperties(const QWidget &widget)
{
    QStringList texts;
    if (const auto *tabs = qobject_cast<const QTabWidget *>(&widget)) {
        for (int page = 0; page < tabs->count(); ++page)
            texts << tabs->widget(page)->objectName() + QStringLiteral(": ") + tabs->tabText(page);
    }
    const QMetaObject *meta = widget.metaObject();
    for (int i = firstOwnProperty(meta); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        // Seen only on a window that is shown.
        if (property.isDesignable(&widget) && qstrcmp(property.name(), "buttonVisible") != 0)
            texts << QStringLiteral("%1 = %2").arg(QString::fromLatin1(property.name()),
                                                   textOf(property, property.read(&widget)));
    }
    return texts;
}
