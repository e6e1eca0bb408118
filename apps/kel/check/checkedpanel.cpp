#include "check/checkedpanel.h"

#include "command.h"

#include <QAction>
#include <QActionGroup>
#include <QButtonGroup>
#include <QMetaProperty>
#include <QVBoxLayout>
#include <QVariant>
#include <QWidget>

namespace
{

/// The name of a method in "clickedID(int)".
QString nameOfMethod(const QString &signature)
{
    return signature.left(signature.indexOf(QLatin1Char('('))).trimmed();
}

/// An object of no widget class, as the element of a form names it.
std::unique_ptr<QObject> makeOther(const QString &element)
{
    if (element == QLatin1String("action"))
        return std::make_unique<QAction>();
    if (element == QLatin1String("actiongroup"))
        return std::make_unique<QActionGroup>(nullptr);
    if (element == QLatin1String("buttongroup"))
        return std::make_unique<QButtonGroup>();
    // Nothing that is of interest here differs from one layout to another.
    return std::make_unique<QVBoxLayout>();
}

QString slotKey(const QString &object, const QString &slot)
{
    return object + QLatin1Char(' ') + slot;
}

} // namespace

QString CheckedWire::signalName() const
{
    return nameOfMethod(text->signal);
}

QString CheckedWire::slotName() const
{
    return nameOfMethod(text->slot);
}

CheckedPanel::CheckedPanel(const QByteArray &text, const QString &file)
    : m_file(file)
    , m_widgets(std::make_unique<FormWidgets>())
{
    PanelForm looked = PanelForm::fromText(text, file, m_widgets->knownClasses());
    if (!looked.error.isEmpty())
        throw CommandError(looked.error);
    m_form = FormModel::fromText(text);
    for (const FormObject &object : qAsConst(m_form.objects)) {
        exampleOf(object); // so that there is one of each class
        if (!object.name.isEmpty() && !m_byName.contains(object.name))
            m_byName.insert(object.name, &object);
    }
    m_connections = looked.connections;
    readConnections();
}

CheckedPanel::~CheckedPanel() = default;

void CheckedPanel::readConnections()
{
    m_wires.reserve(m_connections.size());
    for (const FormConnection &connection : qAsConst(m_connections))
        m_wires.append(wireOf(connection));
    for (const CheckedWire &wire : qAsConst(m_wires)) {
        if (wire.sender)
            m_wiresFrom[wire.sender].append(&wire);
        if (wire.receiver)
            m_wiresTo[wire.receiver].append(&wire);
        m_slotsWithWires.insert(slotKey(wire.text->receiver, wire.slotName()));
    }
}

CheckedWire CheckedPanel::wireOf(const FormConnection &connection) const
{
    const auto classOfEnd = [this](const FormObject *object, const QString &name) {
        return object ? &classOf(*object) : classOfPart(name);
    };
    CheckedWire wire;
    wire.text = &connection;
    wire.sender = object(connection.sender);
    wire.receiver = object(connection.receiver);
    const QMetaObject *sender = classOfEnd(wire.sender, connection.sender);
    const QMetaObject *receiver = classOfEnd(wire.receiver, connection.receiver);
    wire.hasSender = sender != nullptr;
    wire.hasReceiver = receiver != nullptr;
    if (sender && receiver)
        wire.ends = FormWire::find(connection, *sender, *receiver);
    return wire;
}

/// Widgets bring parts of their own that a connection may name; null when none is called \a name.
const QMetaObject *CheckedPanel::classOfPart(const QString &name) const
{
    if (name.isEmpty())
        return nullptr;
    for (const auto &[className, example] : m_examples) {
        if (const auto *part = example->findChild<QObject *>(name))
            return part->metaObject();
    }
    return nullptr;
}

const QObject &CheckedPanel::exampleOf(const FormObject &object) const
{
    const bool isWidget = object.element == QLatin1String("widget");
    std::unique_ptr<QObject> &example = m_examples[isWidget ? object.className : object.element];
    if (!example && isWidget)
        example.reset(m_widgets->createWidget(object.className, nullptr, QString()));
    if (!example)
        example = isWidget ? std::make_unique<QWidget>() : makeOther(object.element);
    return *example;
}

const QMetaObject &CheckedPanel::classOf(const FormObject &object) const
{
    return *exampleOf(object).metaObject();
}

bool CheckedPanel::isA(const FormObject &object, const char *className) const
{
    return exampleOf(object).inherits(className);
}

bool CheckedPanel::hasProperty(const FormObject &object, const QString &property) const
{
    return classOf(object).indexOfProperty(property.toLatin1().constData()) >= 0;
}

int CheckedPanel::numberOf(const FormObject &object, const QString &property) const
{
    const auto set = object.properties.constFind(property);
    return set != object.properties.constEnd() ? set->text.trimmed().toInt()
                                               : exampleOf(object).property(property.toLatin1().constData()).toInt();
}

bool CheckedPanel::isSetByWire(const FormObject &object, const QString &property) const
{
    const QString setter = QStringLiteral("set") + property.left(1).toUpper() + property.mid(1);
    return m_slotsWithWires.contains(slotKey(object.name, setter));
}
