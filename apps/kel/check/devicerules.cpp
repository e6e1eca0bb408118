#include "check/checkinput.h"
#include "check/panelnumbers.h"
#include "check/plotvariables.h"

#include <commandtextfault.h>

#include <algorithm>

namespace
{

const QLatin1String CurrentID("currentID");

/// The line of the form that says which device it is, or else where the device is.
int lineOf(const FormObject &object)
{
    const int line = object.properties.value(CurrentID).line;
    return line > 0 ? line : object.line;
}

bool endsAt(const CheckedWire &wire, const char *signature)
{
    return wire.isGood() && wire.ends.slot.methodSignature() == signature;
}

bool isAnswerSignal(const CheckedWire &wire)
{
    return wire.signalName().startsWith(QLatin1String("receivedAnswer"));
}

/// The arguments of a device that the panel sets.
struct SetArguments {
    bool all = false; ///< A wire sets some that the form does not name.
    QSet<int> numbers;

    bool contains(int number) const { return all || numbers.contains(number); }
};

/// What of a device's answers reaches a widget.
struct Hearing {
    bool everyAnswer = false;
    bool everyArgument = false;
    QSet<int> answers;
    QSet<int> arguments;

    bool isDeaf() const { return !everyAnswer && !everyArgument && answers.isEmpty() && arguments.isEmpty(); }

    bool hears(int answer, const QSet<int> &captures) const
    {
        return everyAnswer || answers.contains(answer) || (everyArgument && !captures.isEmpty()) ||
               captures.intersects(arguments);
    }
};

class DeviceRules
{
public:
    explicit DeviceRules(const CheckInput &input)
        : m_input(input)
        , m_numbers(input.panel, input.catalogue)
    {
        for (const PlotVariable &variable : plotVariables(input.panel)) {
            if (variable.source.error.isEmpty())
                m_plotted[variable.source.device].insert(variable.source.argument);
        }
    }

    void check()
    {
        for (const FormObject &object : m_input.panel.form().objects) {
            if (!m_input.panel.isA(object, "LocalDevice"))
                continue;
            checkSelection(object);
            if (const CatalogueDevice *device = m_numbers.deviceOf(object)) {
                checkSending(object, *device);
                m_sharing[device->row].append(&object);
            }
        }
        for (auto sharing = m_sharing.cbegin(); sharing != m_sharing.cend(); ++sharing)
            checkListening(m_input.catalogue->device(sharing.key()), *sharing);
    }

private:
    void checkSelection(const FormObject &object);
    void checkSending(const FormObject &object, const CatalogueDevice &device);
    void checkArguments(const FormObject &object, const CatalogueDevice &device, int command, int line,
                        QSet<int> &told);
    void checkListening(const CatalogueDevice &device, const QVector<const FormObject *> &objects);
    SetArguments argumentsSetFor(const FormObject &object) const;
    void addHearing(const CheckedWire &wire, Hearing &hearing) const;

    const CheckInput &m_input;
    PanelNumbers m_numbers;
    QHash<QString, QSet<int>> m_plotted;              ///< Arguments that plots show, by device.
    QMap<int, QVector<const FormObject *>> m_sharing; ///< Objects that stand for one device, by its row.
};

/// Which row of the catalogue the device is.
void DeviceRules::checkSelection(const FormObject &object)
{
    const CheckedPanel &panel = m_input.panel;
    if (panel.isSetByWire(object, CurrentID))
        return;
    const int row = panel.numberOf(object, CurrentID);
    constexpr int NoRow = -1;
    if (row == NoRow) {
        // Without a device it can still pass texts and bytes on, but it knows no numbers.
        const auto to = panel.wiresTo(object);
        const auto from = panel.wiresFrom(object);
        const bool isUsed =
            std::any_of(to.cbegin(), to.cend(), [](const auto *wire) { return endsAt(*wire, "sendCommand(int)"); }) ||
            std::any_of(from.cbegin(), from.cend(), [](const auto *wire) { return isAnswerSignal(*wire); });
        if (isUsed)
            m_input.findings.error(
                Rule::UnknownDevice, lineOf(object),
                QStringLiteral("\"%1\" has no currentID, so it has no commands and no answers").arg(object.name));
        return;
    }
    const QString problem = m_input.catalogue ? m_input.catalogue->device(row).problem : QString();
    if (!problem.isEmpty())
        m_input.findings.error(Rule::UnknownDevice, lineOf(object),
                               QStringLiteral("currentID of \"%1\": %2").arg(object.name, problem));
}

/// The numbers that the device is asked to send.
void DeviceRules::checkSending(const FormObject &object, const CatalogueDevice &device)
{
    const QMap<int, QString> &commands = device.make->commands;
    QSet<int> told;
    for (const CheckedWire *wire : m_input.panel.wiresTo(object)) {
        if (!endsAt(*wire, "sendCommand(int)"))
            continue;
        const std::optional<SentNumbers> sent = m_numbers.sentBy(*wire);
        if (!sent || sent->numbers.isEmpty())
            continue;
        bool isKnown = false;
        for (const int number : sent->numbers) {
            if (!commands.contains(number))
                continue;
            isKnown = true;
            checkArguments(object, device, number, wire->text->line, told);
        }
        if (!isKnown)
            m_input.findings.error(Rule::UnknownSend, wire->text->line,
                                   QStringLiteral("%1 is no command of \"%2\" (%3, %4): it sends an empty message")
                                       .arg(sent->source, object.name, device.name, device.make->name));
    }
}

/// The arguments of one command that is sent by the wire in line \a line.
void DeviceRules::checkArguments(const FormObject &object, const CatalogueDevice &device, int command, int line,
                                 QSet<int> &told)
{
    const SetArguments set = argumentsSetFor(object);
    const QString text = device.make->commands.value(command);
    const TextArguments used = argumentsOfCommand(text);
    QList<int> numbers = (used.named + used.inExpressions).values();
    std::sort(numbers.begin(), numbers.end());
    for (const int number : qAsConst(numbers)) {
        if (set.contains(number) || told.contains(number))
            continue;
        told.insert(number);
        const QString message = QStringLiteral("command %1 \"%2\" of \"%3\" uses argument %4, which nothing sets: %5");
        if (used.inExpressions.contains(number))
            m_input.findings.error(Rule::UnsetArgument, line,
                                   message.arg(QString::number(command), text, object.name, QString::number(number),
                                               QStringLiteral("its expression sends no byte")));
        else
            m_input.findings.warning(Rule::UnsetArgument, line,
                                     message.arg(QString::number(command), text, object.name, QString::number(number),
                                                 QStringLiteral("it is always 00")));
    }
}

/// A wire that cannot be made counts too: its own finding is enough.
SetArguments DeviceRules::argumentsSetFor(const FormObject &object) const
{
    SetArguments set;
    for (const CheckedWire *wire : m_input.panel.wiresTo(object)) {
        const QLatin1String Setter("setArgument");
        const QString slot = wire->slotName();
        if (!slot.startsWith(Setter))
            continue;
        bool isNumber = false;
        const int number = slot.mid(Setter.size()).toInt(&isNumber);
        if (isNumber) {
            set.numbers.insert(number);
            continue;
        }
        const std::optional<SentNumbers> sent = wire->isGood() ? m_numbers.sentBy(*wire) : std::nullopt;
        if (sent)
            set.numbers.unite(sent->numbers);
        else
            set.all = true;
    }
    return set;
}

/// Whether the answers of one device reach anybody; several objects of the panel may stand for it.
void DeviceRules::checkListening(const CatalogueDevice &device, const QVector<const FormObject *> &objects)
{
    Hearing hearing;
    for (const FormObject *object : objects) {
        hearing.arguments.unite(m_plotted.value(object->name));
        for (const CheckedWire *wire : m_input.panel.wiresFrom(*object))
            addHearing(*wire, hearing);
    }

    const QMap<int, QString> &answers = device.make->answers;
    const FormObject &first = *objects.constFirst();
    if (hearing.isDeaf() && answers.size() > 1) {
        m_input.findings.warning(Rule::UnheardAnswer, lineOf(first),
                                 QStringLiteral("no widget listens to any of the %1 answers of \"%2\" (%3)")
                                     .arg(answers.size())
                                     .arg(first.name, device.make->name));
        return;
    }
    for (auto answer = answers.cbegin(); answer != answers.cend(); ++answer) {
        if (!hearing.hears(answer.key(), capturesOf(*answer, device.deviceID)))
            m_input.findings.warning(Rule::UnheardAnswer, lineOf(first),
                                     QStringLiteral("no widget listens to answer %1 \"%2\" of \"%3\" (%4)")
                                         .arg(QString::number(answer.key()), *answer, first.name, device.make->name));
    }
}

void DeviceRules::addHearing(const CheckedWire &wire, Hearing &hearing) const
{
    if (!isAnswerSignal(wire))
        return;
    const std::optional<NumberedSlot> slot = wire.isGood() ? m_numbers.heardBy(wire) : std::nullopt;
    const bool isOneNumber = slot && !slot->isChoosing && slot->number;
    const QString signal = wire.signalName();
    if (signal == QLatin1String("receivedAnswerID")) {
        if (isOneNumber)
            hearing.answers.insert(*slot->number);
        else
            hearing.everyAnswer = true;
        return;
    }
    const QLatin1String OfArgument("receivedAnswerArg");
    bool isNumber = false;
    const int argument = signal.mid(OfArgument.size()).toInt(&isNumber);
    if (isNumber)
        hearing.arguments.insert(argument);
    else if (isOneNumber)
        hearing.arguments.insert(*slot->number);
    else
        hearing.everyArgument = true;
}

} // namespace

void checkDevices(const CheckInput &input)
{
    DeviceRules(input).check();
}
