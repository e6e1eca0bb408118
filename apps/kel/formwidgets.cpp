#include "formwidgets.h"

#include <widgetlist.h>

#include <QWidget>

WithoutLibraryPaths::WithoutLibraryPaths()
    : m_paths(QCoreApplication::libraryPaths())
{
    QCoreApplication::setLibraryPaths({});
}

void WithoutLibraryPaths::restore()
{
    QCoreApplication::setLibraryPaths(m_paths);
}

FormWidgets::FormWidgets()
{
    clearPluginPaths();
    restore();
}

QStringList FormWidgets::knownClasses() const
{
    QStringList classes = availableWidgets();
    classes << QStringLiteral("Line") << QStringLiteral("QLayoutWidget");
    for (const KelWidgetInfo &widget : kelWidgetList())
        classes << widget.className;
    return classes;
}

QWidget *FormWidgets::createWidget(const QString &className, QWidget *parent, const QString &name)
{
    for (const KelWidgetInfo &info : kelWidgetList()) {
        if (info.className != className)
            continue;
        QWidget *widget = info.create(parent);
        widget->setObjectName(name);
        return widget;
    }
    return QUiLoader::createWidget(className, parent, name);
}
