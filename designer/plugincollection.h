/// \file
/// What Qt Designer finds when it loads the plugin.
#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <memory>
#include <vector>

class WidgetPlugin;

/// All widgets of the list, each as Qt Designer asks about it.
class PluginCollection : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QDesignerCustomWidgetCollectionInterface_iid)
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit PluginCollection(QObject *parent = nullptr);
    ~PluginCollection() override;

    /// In the order of the list; they live as long as the collection.
    QList<QDesignerCustomWidgetInterface *> customWidgets() const override;

private:
    std::vector<std::unique_ptr<WidgetPlugin>> m_widgets;
};
