#include "plugincollection.h"

#include "widgetplugin.h"

#include <widgetlist.h>

PluginCollection::PluginCollection(QObject *parent)
    : QObject(parent)
{
    for (const KelWidgetInfo &info : kelWidgetList())
        m_widgets.push_back(std::make_unique<WidgetPlugin>(info));
}

PluginCollection::~PluginCollection() = default;

QList<QDesignerCustomWidgetInterface *> PluginCollection::customWidgets() const
{
    QList<QDesignerCustomWidgetInterface *> widgets;
    for (const auto &widget : m_widgets)
        widgets << widget.get();
    return widgets;
}
