#include "widgetplugin.h"

#include "deviceineditor.h"
#include "editorlook.h"
#include "widgetxml.h"

#include <widgetlist.h>

#include <QIcon>

WidgetPlugin::WidgetPlugin(const KelWidgetInfo &info)
    : m_info(info)
{
}

QString WidgetPlugin::name() const
{
    return m_info.className;
}

QString WidgetPlugin::group() const
{
    return m_info.group;
}

QString WidgetPlugin::toolTip() const
{
    return m_info.toolTip;
}

QString WidgetPlugin::whatsThis() const
{
    return m_info.whatsThis;
}

QString WidgetPlugin::includeFile() const
{
    return m_info.className.toLower() + QStringLiteral(".h");
}

QIcon WidgetPlugin::icon() const
{
    return QIcon(m_info.icon);
}

bool WidgetPlugin::isContainer() const
{
    return m_info.isContainer;
}

QString WidgetPlugin::domXml() const
{
    return widgetXml(m_info, includeFile());
}

void WidgetPlugin::initialize(QDesignerFormEditorInterface *)
{
    if (m_isInEditor)
        return;
    m_isInEditor = true;
    prepareEditor();
}

QWidget *WidgetPlugin::createWidget(QWidget *parent)
{
    if (m_isInEditor && m_info.className == QLatin1String(LocalDevice::staticMetaObject.className()))
        return new DeviceInEditor(parent);
    QWidget *widget = m_info.create(parent);
    if (m_isInEditor)
        giveEditorLook(*widget);
    return widget;
}
