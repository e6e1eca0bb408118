/// \file
/// One widget of the list as Qt Designer asks about it.
#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

struct KelWidgetInfo;

/// Answers from the widget list. Whoever calls initialize() is an editor: widgets made afterwards look
/// as they do while a form is edited. A form loader that finds the plugin does not call it and gets
/// widgets as they run.
class WidgetPlugin : public QDesignerCustomWidgetInterface
{
public:
    explicit WidgetPlugin(const KelWidgetInfo &info); ///< \a info outlives this object.

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QString domXml() const override;
    bool isInitialized() const override { return m_isInEditor; }
    void initialize(QDesignerFormEditorInterface *core) override;
    QWidget *createWidget(QWidget *parent) override;

private:
    const KelWidgetInfo &m_info;
    bool m_isInEditor = false;
};
