#include "plugincollection.h"

#include "editorlook.h"
#include "widgetplugin.h"

#include <widgetlist.h>

#include <QCoreApplication>

namespace
{

/// Runs while the plugin is loaded, right behind the library's own start-up: Qt Designer opens its settings
/// before it makes anything of a plugin.
bool startUp()
{
    if (QCoreApplication::applicationName() == QLatin1String("Designer"))
        giveSettingsBack();
    return true;
}

[[maybe_unused]] const bool isStarted = startUp();

} // namespace

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
