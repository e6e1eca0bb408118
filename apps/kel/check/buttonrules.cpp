#include "check/checkinput.h"

#include <kelbutton.h>
#include <kelglobals.h>

namespace
{

/// What the catalogue lacks of a button's \a command; empty when it has it.
QString problemOf(const QString &command)
{
    QString object;
    QString method;
    KelButton::parseCommand(command, &object, &method, nullptr);
    if (object.isEmpty() && method.isEmpty())
        return QStringLiteral("it is not OBJECT.METHOD");
    if (!Kel::commandsDB.hasObject(object))
        return QStringLiteral("the catalogue has no object \"%1\"").arg(object);
    if (!Kel::commandsDB.hasPacket(object, method))
        return QStringLiteral("the object \"%1\" has no packet \"%2\"").arg(object, method);
    return QString();
}

} // namespace

void checkButtons(const CheckInput &input)
{
    if (!input.catalogue)
        return;
    const QString name = QStringLiteral("command");
    for (const FormObject &object : input.panel.form().objects) {
        const FormProperty command = object.properties.value(name);
        if (command.text.isEmpty() || !input.panel.isA(object, "KelButton"))
            continue;
        const QString problem = problemOf(command.text);
        if (!problem.isEmpty())
            input.findings.error(
                Rule::UnknownCommand, command.line,
                QStringLiteral("command \"%1\" of \"%2\": %3").arg(command.text, object.name, problem));
    }
}
