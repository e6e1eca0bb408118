#include "panel/formwidgets.h"

#include <widgetlist.h>

#include <QStackedWidget>
#include <QTabWidget>
#include <QToolBox>

namespace
{

bool isContainer(const QWidget *widget)
{
    return qobject_cast<const QTabWidget *>(widget) || qobject_cast<const QStackedWidget *>(widget) ||
           qobject_cast<const QToolBox *>(widget);
}

} // namespace

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

FormWidgets::~FormWidgets()
{
    for (const QPointer<QLayout> &layout : m_layouts) {
        if (layout && !layout->parent())
            delete layout;
    }
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
    QWidget *widget = QUiLoader::createWidget(className, parent, name);
    // Qt's loader makes the pages of a container without a parent and adds them when they are complete. What
    // is on them would miss the panel's palette, of which buttons take their colour when they are made.
    if (widget && !widget->parentWidget() && isContainer(parent))
        widget->setParent(parent);
    return widget;
}

QLayout *FormWidgets::createLayout(const QString &className, QObject *parent, const QString &name)
{
    // Qt forgets a layout that it cannot add, such as the second one of a widget.
    QLayout *layout = QUiLoader::createLayout(className, parent, name);
    m_layouts.emplace_back(layout);
    return layout;
}
