#include "check/panelnumbers.h"

#include <answerpattern.h>

namespace
{

/// The name of the method's first argument when that is a whole number, otherwise empty.
QString firstNumberOf(const QMetaMethod &method)
{
    if (method.parameterCount() == 0 || method.parameterType(0) != QMetaType::Int)
        return QString();
    return QString::fromLatin1(method.parameterNames().constFirst());
}

} // namespace

PanelNumbers::PanelNumbers(const CheckedPanel &panel, CatalogueModel *catalogue)
    : m_panel(panel)
    , m_catalogue(catalogue)
{
}

const CatalogueDevice *PanelNumbers::deviceOf(const FormObject &object) const
{
    if (!m_catalogue || !m_panel.isA(object, "LocalDevice") || m_panel.isSetByWire(object, QStringLiteral("currentID")))
        return nullptr;
    const CatalogueDevice &device = m_catalogue->device(m_panel.numberOf(object, QStringLiteral("currentID")));
    return device.problem.isEmpty() ? &device : nullptr;
}

std::optional<SentNumbers> PanelNumbers::sentBy(const CheckedWire &wire) const
{
    if (!wire.sender)
        return std::nullopt;
    const FormObject &sender = *wire.sender;
    const QString argument = firstNumberOf(wire.ends.signal);
    if (argument == QLatin1String("id")) {
        // What a widget sends is its own number, whichever name that has.
        for (const char *name : {"clickID", "emitID"}) {
            const QString property = QLatin1String(name);
            if (!m_panel.hasProperty(sender, property))
                continue;
            if (m_panel.isSetByWire(sender, property))
                return std::nullopt;
            const int number = m_panel.numberOf(sender, property);
            return SentNumbers{{number}, QStringLiteral("%1 %2 of \"%3\"").arg(property).arg(number).arg(sender.name)};
        }
        return std::nullopt;
    }

    const CatalogueDevice *device = deviceOf(sender);
    if (!device)
        return std::nullopt;
    SentNumbers sent;
    if (argument == QLatin1String("answer_ID")) {
        sent.source = QStringLiteral("the answers of \"%1\"").arg(sender.name);
        for (auto answer = device->make->answers.keyBegin(); answer != device->make->answers.keyEnd(); ++answer)
            sent.numbers.insert(*answer);
        return sent;
    }
    if (argument == QLatin1String("arg_num")) {
        sent.source = QStringLiteral("the arguments in answers of \"%1\"").arg(sender.name);
        for (const QString &text : device->make->answers)
            sent.numbers.unite(capturesOf(text, device->deviceID));
        return sent;
    }
    return std::nullopt;
}

std::optional<NumberedSlot> PanelNumbers::heardBy(const CheckedWire &wire) const
{
    const QLatin1String Suffix("_id");
    const QString argument = firstNumberOf(wire.ends.slot);
    if (!wire.receiver || !argument.endsWith(Suffix))
        return std::nullopt;
    NumberedSlot slot;
    slot.property = argument.left(argument.size() - Suffix.size()) + QLatin1String("ID");
    if (!m_panel.hasProperty(*wire.receiver, slot.property))
        return std::nullopt;
    slot.isChoosing = !wire.slotName().endsWith(QLatin1String("ID"));
    if (!m_panel.isSetByWire(*wire.receiver, slot.property))
        slot.number = m_panel.numberOf(*wire.receiver, slot.property);
    return slot;
}

QSet<int> capturesOf(const QString &text, int deviceID)
{
    QSet<int> captures;
    const AnswerPattern pattern = AnswerPattern::fromText(text, deviceID);
    for (const int element : pattern.elements()) {
        if (element < 0)
            captures.insert(~element);
    }
    return captures;
}
