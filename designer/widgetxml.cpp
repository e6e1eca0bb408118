#include "widgetxml.h"

#include <widgetlist.h>

#include <QMetaProperty>
#include <QTabWidget>
#include <QXmlStreamWriter>

#include <algorithm>
#include <memory>

namespace
{

bool isOurs(const QString &className)
{
    const auto &list = kelWidgetList();
    return std::any_of(list.begin(), list.end(),
                       [&](const KelWidgetInfo &info) { return info.className == className; });
}

/// The nearest ancestor that Designer knows by itself: the first class of Qt, whose names begin with Q and
/// a capital.
QString extendedClass(const QMetaObject *meta)
{
    for (meta = meta->superClass(); meta; meta = meta->superClass()) {
        const QString name = QString::fromLatin1(meta->className());
        if (name.size() > 1 && name.at(0) == QLatin1Char('Q') && name.at(1).isUpper() && !isOurs(name))
            return name;
    }
    return QStringLiteral("QWidget");
}

/// "kelButton" for KelButton, "timerWidget" for QTimerWidget, as Designer names Qt's own widgets.
QString objectName(QString className)
{
    if (className.size() > 1 && className.at(0) == QLatin1Char('Q') && className.at(1).isUpper())
        className.remove(0, 1);
    return className.left(1).toLower() + className.mid(1);
}

void writeNumber(QXmlStreamWriter &xml, const QString &name, int number)
{
    xml.writeTextElement(name, QString::number(number));
}

void writeString(QXmlStreamWriter &xml, const QString &element, const QString &name, const QString &text)
{
    xml.writeStartElement(element);
    xml.writeAttribute(QStringLiteral("name"), name);
    xml.writeTextElement(QStringLiteral("string"), text);
    xml.writeEndElement();
}

void writeGeometry(QXmlStreamWriter &xml, const QSize &size)
{
    xml.writeStartElement(QStringLiteral("property"));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("geometry"));
    xml.writeStartElement(QStringLiteral("rect"));
    writeNumber(xml, QStringLiteral("x"), 0);
    writeNumber(xml, QStringLiteral("y"), 0);
    writeNumber(xml, QStringLiteral("width"), size.width());
    writeNumber(xml, QStringLiteral("height"), size.height());
    xml.writeEndElement();
    xml.writeEndElement();
}

void writePage(QXmlStreamWriter &xml, int number)
{
    xml.writeStartElement(QStringLiteral("widget"));
    xml.writeAttribute(QStringLiteral("class"), QStringLiteral("QWidget"));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("page%1").arg(number));
    writeString(xml, QStringLiteral("attribute"), QStringLiteral("title"), QStringLiteral("Page %1").arg(number));
    xml.writeEndElement();
}

void writeWidget(QXmlStreamWriter &xml, const KelWidgetInfo &info, QWidget &widget)
{
    xml.writeStartElement(QStringLiteral("widget"));
    xml.writeAttribute(QStringLiteral("class"), info.className);
    xml.writeAttribute(QStringLiteral("name"), objectName(info.className));
    writeGeometry(xml, info.firstSize);
    if (widget.metaObject()->indexOfProperty("text") >= 0)
        writeString(xml, QStringLiteral("property"), QStringLiteral("text"), info.toolTip);
    if (qobject_cast<QTabWidget *>(&widget) != nullptr) {
        writePage(xml, 1);
        writePage(xml, 2);
    }
    xml.writeEndElement();
}

/// Texts of our own properties are commands and paths: they are edited in one line and not translated.
void writeTextProperties(QXmlStreamWriter &xml, const QMetaObject *meta)
{
    xml.writeStartElement(QStringLiteral("propertyspecifications"));
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        if (meta->property(i).type() != QVariant::String)
            continue;
        xml.writeStartElement(QStringLiteral("stringpropertyspecification"));
        xml.writeAttribute(QStringLiteral("name"), QString::fromLatin1(meta->property(i).name()));
        xml.writeAttribute(QStringLiteral("notr"), QStringLiteral("true"));
        xml.writeAttribute(QStringLiteral("type"), QStringLiteral("singleline"));
        xml.writeEndElement();
    }
    xml.writeEndElement();
}

void writeClass(QXmlStreamWriter &xml, const KelWidgetInfo &info, const QMetaObject *meta, const QString &header)
{
    xml.writeStartElement(QStringLiteral("customwidgets"));
    xml.writeStartElement(QStringLiteral("customwidget"));
    xml.writeTextElement(QStringLiteral("class"), info.className);
    xml.writeTextElement(QStringLiteral("extends"), extendedClass(meta));
    xml.writeTextElement(QStringLiteral("header"), header);
    if (info.isContainer)
        writeNumber(xml, QStringLiteral("container"), 1);
    writeTextProperties(xml, meta);
    xml.writeEndElement();
    xml.writeEndElement();
}

} // namespace

QString widgetXml(const KelWidgetInfo &info, const QString &header)
{
    const std::unique_ptr<QWidget> widget(info.create(nullptr));
    QString text;
    QXmlStreamWriter xml(&text);
    xml.writeStartElement(QStringLiteral("ui"));
    xml.writeAttribute(QStringLiteral("language"), QStringLiteral("c++"));
    writeWidget(xml, info, *widget);
    writeClass(xml, info, widget->metaObject(), header);
    xml.writeEndElement();
    return text;
}
