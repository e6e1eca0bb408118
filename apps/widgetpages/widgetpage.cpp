#include "widgetpage.h"

#include "widgetnumbers.h"

#include <QColor>
#include <QMetaProperty>
#include <QSize>
#include <QTime>
#include <QWidget>

#include <memory>

namespace
{

constexpr int LongEnumeration = 16; // Its members are left to the documents of Qt.

/// One widget's page while it is written.
struct Page {
    const KelWidgetInfo &info;
    MemberProse &prose;
    std::unique_ptr<QWidget> widget;
    QVector<const QMetaObject *> classes; ///< The widget's own and those behind it up to the first of Qt.
    QString text;

    const QMetaObject &meta() const { return *classes.first(); }
};

QString code(const QString &text)
{
    return QLatin1Char('`') + text + QLatin1Char('`');
}

QString codes(QStringList names)
{
    for (QString &name : names)
        name = code(name);
    return names.join(QStringLiteral(", "));
}

void addRow(Page &page, QStringList cells)
{
    for (QString &cell : cells)
        cell.replace(QLatin1Char('|'), QStringLiteral("\\|"));
    page.text += QStringLiteral("| %1 |\n").arg(cells.join(QStringLiteral(" | ")));
}

void addHead(Page &page, const QString &title, const QStringList &heads)
{
    page.text += QStringLiteral("\n## %1\n\n").arg(title);
    addRow(page, heads);
    page.text += QLatin1Char('|') + QStringLiteral("---|").repeated(heads.size()) + QLatin1Char('\n');
}

/// Qt's own widgets begin with Q; of ours one does, and it is the one that is asked for.
QVector<const QMetaObject *> ownClasses(const QMetaObject *meta)
{
    QVector<const QMetaObject *> classes = {meta};
    while (meta->superClass() && meta->superClass()->className()[0] != 'Q') {
        meta = meta->superClass();
        classes << meta;
    }
    return classes;
}

QString valueText(const QMetaProperty &property, const QVariant &value)
{
    if (property.isEnumType()) {
        const QByteArray key = property.isFlagType() ? property.enumerator().valueToKeys(value.toInt())
                                                     : property.enumerator().valueToKey(value.toInt());
        return codes(QString::fromLatin1(key).split(QLatin1Char('|')));
    }
    if (value.userType() == QMetaType::QColor)
        return code(value.value<QColor>().name());
    if (value.userType() == QMetaType::QSize)
        return QStringLiteral("%1 × %2").arg(value.toSize().width()).arg(value.toSize().height());
    if (value.userType() == QMetaType::QTime)
        return code(value.toTime().toString(QStringLiteral("HH:mm")));
    const QString text = value.toString();
    return text.isEmpty() ? QStringLiteral("empty") : code(text);
}

void addProperties(Page &page)
{
    addHead(page, QStringLiteral("Properties"), {"name", "type", "at first", "what it is"});
    for (const QMetaObject *meta : page.classes) {
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            const QString name = QString::fromLatin1(property.name());
            if (name.startsWith(QLatin1String("h__")))
                continue;
            QString what = page.prose.get(QString::fromLatin1(meta->className()), name);
            if (!property.isDesignable(page.widget.get()))
                what += QStringLiteral(" Property editors do not show it.");
            addRow(page, {code(name), code(QString::fromLatin1(property.typeName())),
                          valueText(property, property.read(page.widget.get())), what});
        }
    }
}

/// The members of the enumerations that the properties have; those of Qt only where they are few.
void addEnumerations(Page &page)
{
    for (const QMetaObject *meta : page.classes) {
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const QMetaEnum list = meta->property(i).enumerator();
            if (!list.isValid() || list.keyCount() > LongEnumeration)
                continue;
            const QString name = QString::fromLatin1(list.enumName());
            addHead(page, QStringLiteral("Values of %1").arg(QString::fromLatin1(meta->property(i).name())),
                    {"name", "number", "what it means"});
            for (int k = 0; k < list.keyCount(); ++k) {
                const QString key = QString::fromLatin1(list.key(k));
                const QString number =
                    list.isFlag() ? QStringLiteral("0x%1").arg(list.value(k), 0, 16) : QString::number(list.value(k));
                addRow(page, {code(key), number,
                              page.prose.get(QString::fromLatin1(meta->className()), name + QLatin1Char('.') + key)});
            }
        }
    }
}

QVector<QMetaMethod> publicMethods(const QMetaObject &meta, QMetaMethod::MethodType type)
{
    QVector<QMetaMethod> methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == type && method.access() == QMetaMethod::Public)
            methods << method;
    }
    return methods;
}

QVector<QMetaMethod> wiredMethods(const Page &page)
{
    QVector<QMetaMethod> methods;
    for (const QMetaObject *meta : page.classes)
        methods << publicMethods(*meta, QMetaMethod::Signal) << publicMethods(*meta, QMetaMethod::Slot);
    return methods;
}

QString signature(const QMetaMethod &method)
{
    QStringList parameters;
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QString type = QString::fromLatin1(method.parameterTypes().at(i));
        parameters << (type + QLatin1Char(' ') + QString::fromLatin1(method.parameterNames().at(i))).trimmed();
    }
    return QStringLiteral("%1(%2)").arg(QString::fromLatin1(method.name()), parameters.join(QStringLiteral(", ")));
}

/// What follows from the name alone: a setter of a property, a slot that acts as its twin for one number.
QString impliedProse(const QMetaObject &meta, const QMetaMethod &method)
{
    const QString name = QString::fromLatin1(method.name());
    const QString number = numberProperty(meta, numberParameter(method));
    if (method.methodType() == QMetaMethod::Signal)
        return number.isEmpty() || !name.endsWith(QLatin1String("ID"))
                   ? QString()
                   : QStringLiteral("As %1, and carries %2.").arg(code(name.chopped(2)), code(number));
    if (!number.isEmpty() && name.endsWith(QLatin1String("ID")))
        return QStringLiteral("As %1, when %2 is %3.")
            .arg(code(name.chopped(2)), code(QString::fromLatin1(method.parameterNames().first())), code(number));
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const QString property = QString::fromLatin1(meta.property(i).name());
        if (name == QStringLiteral("set") + property.at(0).toUpper() + property.mid(1))
            return QStringLiteral("Sets %1.").arg(code(property));
    }
    return QString();
}

void addMethods(Page &page, QMetaMethod::MethodType type, const QString &title, const QString &what)
{
    bool hasHead = false;
    for (const QMetaObject *meta : page.classes) {
        for (const QMetaMethod &method : publicMethods(*meta, type)) {
            if (!hasHead)
                addHead(page, title, {title.chopped(1).toLower(), what});
            hasHead = true;
            const QString className = QString::fromLatin1(meta->className());
            const QString name = QString::fromLatin1(method.name());
            QString text = page.prose.find(className, QString::fromLatin1(method.methodSignature()));
            if (text.isEmpty())
                text = page.prose.find(className, name);
            if (text.isEmpty())
                text = impliedProse(page.meta(), method);
            addRow(page, {code(signature(method)), text.isEmpty() ? page.prose.get(className, name) : text});
        }
    }
}

void addNumbers(Page &page)
{
    const QVector<WidgetNumber> numbers = widgetNumbers(page.meta(), wiredMethods(page));
    if (numbers.isEmpty())
        return;
    addHead(page, QStringLiteral("Numbers"), {"number", "what it is for", "carried by", "acted on by"});
    for (const WidgetNumber &number : numbers)
        addRow(page, {code(number.name), page.prose.get(page.info.className, number.name), codes(number.carriedBy),
                      codes(number.listenedBy)});
}

void addHeadOfPage(Page &page)
{
    const QString name = page.info.className;
    page.text = QStringLiteral("# %1\n\n%2\n\n![%3](../gallery/%4.png)\n\n%5\n\n")
                    .arg(name, page.info.whatsThis, page.info.toolTip, name.toLower(), page.prose.get(name, "about"));
    QStringList behind;
    for (int i = 1; i < page.classes.size(); ++i)
        behind << QString::fromLatin1(page.classes.at(i)->className());
    const QString qt = QString::fromLatin1(page.classes.last()->superClass()->className());
    page.text += QStringLiteral("```cpp\n#include <%1.h>\n```\n\n").arg(name.toLower());
    if (!behind.isEmpty())
        page.text += QStringLiteral("Inherits %1, whose members are listed here too, and with it %2")
                         .arg(codes(behind), code(qt));
    else
        page.text += QStringLiteral("Inherits %1").arg(code(qt));
    page.text +=
        QStringLiteral(". It has all properties, signals and slots of Qt's `%1`; they are not listed.\n").arg(qt);
}

} // namespace

QString widgetPage(const KelWidgetInfo &info, MemberProse &prose)
{
    Page page{info, prose, std::unique_ptr<QWidget>(info.create(nullptr)), {}, {}};
    page.classes = ownClasses(page.widget->metaObject());
    page.widget->setAttribute(Qt::WA_DontShowOnScreen);
    page.widget->show(); // A button that is not shown says that it is not visible.

    addHeadOfPage(page);
    addProperties(page);
    addEnumerations(page);
    addNumbers(page);
    addMethods(page, QMetaMethod::Signal, QStringLiteral("Signals"), QStringLiteral("when it is emitted"));
    addMethods(page, QMetaMethod::Slot, QStringLiteral("Slots"), QStringLiteral("what it does"));
    page.text += QStringLiteral("\n[All widgets](README.md)\n");
    return page.text;
}

QString widgetIndex(const QVector<KelWidgetInfo> &list)
{
    QString text = QStringLiteral(
        "# Widgets\n\nWhat a property editor and a signal editor offer for each widget. `./dev pages` makes these "
        "pages from the\nwidgets themselves.\n\n![All widgets at their usual size](../gallery/sheet.png)\n\n"
        "| widget | what it is for |\n|---|---|\n");
    for (const KelWidgetInfo &info : list)
        text += QStringLiteral("| [%1](%2.md) | %3 |\n").arg(info.className, info.className.toLower(), info.whatsThis);
    return text +
           QStringLiteral("\nNumbers wire a panel. A signal whose name ends in `ID` carries a number of its widget. A "
                          "slot whose name ends in\n`ID` acts only when the number that comes first is the widget's "
                          "own. So one signal is connected to many widgets, and\nthe right one answers. A number of -1 "
                          "is one that was not set; it matches -1 like any other.\n");
}
