#include "check/checkinput.h"

namespace
{

QString message(const CheckedWire &wire, const QString &problem)
{
    return QStringLiteral("connection %1: %2").arg(describe(*wire.text), problem);
}

void checkWire(const CheckInput &input, const CheckedWire &wire)
{
    const int line = wire.text->line;
    if (!wire.hasSender)
        input.findings.error(Rule::UnknownObject, line,
                             message(wire, missingEnd(QStringLiteral("sender"), wire.text->sender)));
    if (!wire.hasReceiver)
        input.findings.error(Rule::UnknownObject, line,
                             message(wire, missingEnd(QStringLiteral("receiver"), wire.text->receiver)));
    switch (wire.ends.fit) {
    case FormWire::Fit::Good:
        break;
    case FormWire::Fit::NoSignal:
        input.findings.error(Rule::UnknownSignal, line, message(wire, wire.ends.problem));
        break;
    case FormWire::Fit::NoSlot:
        input.findings.error(Rule::UnknownSlot, line, message(wire, wire.ends.problem));
        break;
    case FormWire::Fit::OtherArguments:
        input.findings.error(Rule::ArgumentMismatch, line, message(wire, wire.ends.problem));
        break;
    }
}

void checkNames(const CheckInput &input)
{
    for (const FormObject &object : input.panel.form().objects) {
        const FormObject *first = input.panel.object(object.name);
        if (first && first != &object)
            input.findings.warning(Rule::DuplicateName, object.line,
                                   QStringLiteral("\"%1\" is the name of an object in line %2 already; connections "
                                                  "reach that one")
                                       .arg(object.name)
                                       .arg(first->line));
    }
}

} // namespace

void checkConnections(const CheckInput &input)
{
    checkNames(input);
    for (const CheckedWire &wire : input.panel.wires())
        checkWire(input, wire);
}
