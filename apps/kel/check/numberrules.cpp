#include "check/checkinput.h"
#include "check/panelnumbers.h"

#include <QMap>
#include <QPair>

#include <algorithm>

namespace
{

/// A wire to a slot that listens to a number, with all that is known about both.
struct NumberedWire {
    const CheckedWire *wire = nullptr;
    NumberedSlot slot;
    std::optional<SentNumbers> sent;

    bool mayMeet() const { return !sent || !slot.number || sent->numbers.contains(*slot.number); }
};

using WireGroup = QVector<const NumberedWire *>;
/// Wires by an object and a signal, or an object and a property, in the order of the form.
using WireGroups = QMap<QPair<const FormObject *, QString>, WireGroup>;

QVector<NumberedWire> numberedWires(const CheckInput &input)
{
    const PanelNumbers numbers(input.panel, input.catalogue);
    QVector<NumberedWire> wires;
    for (const CheckedWire &wire : input.panel.wires()) {
        if (!wire.isGood())
            continue;
        if (const std::optional<NumberedSlot> slot = numbers.heardBy(wire))
            wires.append({&wire, *slot, numbers.sentBy(wire)});
    }
    return wires;
}

QString numberText(const NumberedWire &wire)
{
    return QStringLiteral("%1 %2 of \"%3\"")
        .arg(wire.slot.property)
        .arg(*wire.slot.number)
        .arg(wire.wire->receiver->name);
}

/// A signal with a number reaches many widgets so that one of them, at least, acts.
void checkSenders(const CheckInput &input, const QVector<NumberedWire> &wires, QSet<const NumberedWire *> &told)
{
    WireGroups groups;
    for (const NumberedWire &wire : wires) {
        if (!wire.slot.isChoosing)
            groups[{wire.wire->sender, QString::fromLatin1(wire.wire->ends.signal.methodSignature())}].append(&wire);
    }
    for (const WireGroup &group : qAsConst(groups)) {
        if (std::any_of(group.cbegin(), group.cend(), [](const NumberedWire *wire) { return wire->mayMeet(); }))
            continue;
        const NumberedWire &first = *group.constFirst();
        const QString who = group.size() == 1
                                ? QStringLiteral("the widget that it reaches listens to %1").arg(numberText(first))
                                : QStringLiteral("none of the %1 widgets that it reaches listens to that "
                                                 "number")
                                      .arg(group.size());
        input.findings.error(
            Rule::UnmatchedNumber, first.wire->text->line,
            QStringLiteral("%1 carries %2, but %3").arg(first.wire->text->signal, first.sent->source, who));
        for (const NumberedWire *wire : group)
            told.insert(wire);
    }
}

/// A widget that listens to a number may be reached by many signals, one of which carries it.
void checkReceivers(const CheckInput &input, const QVector<NumberedWire> &wires, const QSet<const NumberedWire *> &told)
{
    WireGroups groups;
    for (const NumberedWire &wire : wires)
        groups[{wire.wire->receiver, wire.slot.property}].append(&wire);
    for (const WireGroup &group : qAsConst(groups)) {
        const bool isQuiet = std::any_of(group.cbegin(), group.cend(), [&told](const NumberedWire *wire) {
            return wire->mayMeet() || told.contains(wire);
        });
        if (isQuiet)
            continue;
        const NumberedWire &first = *group.constFirst();
        const QString effect = first.slot.isChoosing
                                   ? QStringLiteral("so %1 always takes its second choice").arg(first.wire->text->slot)
                                   : QStringLiteral("so %1 never acts").arg(first.wire->text->slot);
        input.findings.error(
            Rule::UnmatchedNumber, first.wire->text->line,
            QStringLiteral("%1 is not among %2, %3").arg(numberText(first), first.sent->source, effect));
    }
}

} // namespace

void checkNumbers(const CheckInput &input)
{
    const QVector<NumberedWire> wires = numberedWires(input);
    QSet<const NumberedWire *> told;
    checkSenders(input, wires, told);
    checkReceivers(input, wires, told);
}
