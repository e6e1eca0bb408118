// makeform PLUGIN FILE: writes the window with all widgets as a form, by the code with which Qt's own tools
// write forms, and with the classes as the Designer plugin describes them.

#include "allwidgets.h"

#include <QApplication>
#include <QBuffer>
#include <QDomDocument>
#include <QFile>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QTabWidget>
#include <QtDesigner/QFormBuilder>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <widgetlist.h>

#include <algorithm>
#include <cstdio>
#include <map>

namespace
{

bool isOurs(const QWidget &widget)
{
    const auto &list = kelWidgetList();
    return std::any_of(list.begin(), list.end(), [&](const KelWidgetInfo &info) {
        return info.className == QLatin1String(widget.metaObject()->className());
    });
}

/// Leaves out what our widgets are made of and what is not to be edited, as an editor does.
class FormWriter : public QFormBuilder
{
protected:
    DomWidget *createDom(QWidget *widget, DomWidget *parent, bool recursive) override
    {
        return QFormBuilder::createDom(widget, parent, recursive && !isOurs(*widget));
    }
    using QFormBuilder::createDom;

    bool checkProperty(QObject *object, const QString &name) const override
    {
        const QMetaObject *meta = object->metaObject();
        const QMetaProperty property = meta->property(meta->indexOfProperty(name.toLatin1().constData()));
        return property.isDesignable(object) && QFormBuilder::checkProperty(object, name);
    }
};

/// The object name of \a element, which the form builder writes as a property and editors as an attribute.
QString moveName(QDomElement element)
{
    QDomElement property = element.firstChildElement(QStringLiteral("property"));
    while (property.attribute(QStringLiteral("name")) != QLatin1String("objectName"))
        property = property.nextSiblingElement(QStringLiteral("property"));
    const QString name = property.text().trimmed();
    element.setAttribute(QStringLiteral("name"), name);
    element.removeChild(property);
    return name;
}

/// Puts the properties of \a element, which stands for \a widget, into the order of the class, in which an
/// editor writes them and a form loader then sets them.
void sortProperties(QDomElement element, const QWidget &widget)
{
    std::map<int, QDomElement> properties;
    QDomElement property = element.firstChildElement(QStringLiteral("property"));
    while (!property.isNull()) {
        const QByteArray name = property.attribute(QStringLiteral("name")).toLatin1();
        properties[widget.metaObject()->indexOfProperty(name.constData())] = property;
        property = property.nextSiblingElement(QStringLiteral("property"));
    }
    for (auto last = properties.rbegin(); last != properties.rend(); ++last)
        element.insertBefore(last->second, element.firstChild());
}

/// Adds the pages of \a tabs to their \a element.
void addPages(QDomElement element, const QTabWidget &tabs)
{
    QDomDocument form = element.ownerDocument();
    for (int i = 0; i < tabs.count(); ++i) {
        QDomElement page = form.createElement(QStringLiteral("widget"));
        page.setAttribute(QStringLiteral("class"), QStringLiteral("QWidget"));
        page.setAttribute(QStringLiteral("name"), tabs.widget(i)->objectName());
        QDomElement title = form.createElement(QStringLiteral("attribute"));
        title.setAttribute(QStringLiteral("name"), QStringLiteral("title"));
        QDomElement text = form.createElement(QStringLiteral("string"));
        text.appendChild(form.createTextNode(tabs.tabText(i)));
        title.appendChild(text);
        page.appendChild(title);
        element.appendChild(page);
    }
}

/// The form of \a window as an editor writes it.
QByteArray formOf(QWidget &window)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    FormWriter().save(&buffer, &window);

    QDomDocument form;
    form.setContent(buffer.data());
    const QDomNodeList nodes = form.elementsByTagName(QStringLiteral("widget"));
    QVector<QDomElement> elements;
    for (int i = 0; i < nodes.size(); ++i)
        elements << nodes.at(i).toElement();
    for (const QDomElement &element : qAsConst(elements)) {
        const auto *widget = window.findChild<QWidget *>(moveName(element));
        if (widget)
            sortProperties(element, *widget);
        if (const auto *tabs = qobject_cast<const QTabWidget *>(widget))
            addPages(element, *tabs);
    }
    return form.toByteArray(1);
}

/// The <customwidget> element of each widget in the plugin.
QByteArray classDescriptions(const QString &pluginPath)
{
    QPluginLoader plugin(pluginPath);
    auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(plugin.instance());
    if (!collection) {
        std::fprintf(stderr, "makeform: %s\n", qPrintable(plugin.errorString()));
        return QByteArray();
    }
    const QRegularExpression element(QStringLiteral("<customwidget>.*</customwidget>"));
    QByteArray descriptions;
    for (const QDesignerCustomWidgetInterface *widget : collection->customWidgets())
        descriptions += element.match(widget->domXml()).captured().toUtf8() + '\n';
    return "<customwidgets>\n" + descriptions + "</customwidgets>\n";
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 3)
        return 2;
    const QByteArray classes = classDescriptions(QString::fromLocal8Bit(argv[1]));
    if (classes.isEmpty())
        return 1;

    QCoreApplication::setLibraryPaths({}); // no other plugins
    QByteArray text = formOf(*makeAllWidgets());
    text.replace("</ui>", classes + "</ui>");
    QFile file(QString::fromLocal8Bit(argv[2]));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? 0 : 1;
}
