#include "traffic/trafficdecoder.h"

#include "command.h"
#include "printable.h"

#include <answerpattern.h>
#include <commandtext.h>
#include <commandtextfault.h>
#include <pibytearray.h>
#include <pievaluator.h>

#include <QMap>
#include <QStringList>

namespace
{

using namespace CatalogueColumns;
using Section = CatalogueSection;

bool isNamed(const CatalogueRow &instance, const QString &wanted)
{
    return wanted.isEmpty() || instance.text(InstanceName) == wanted ||
           QString::number(instance.number(Id).value_or(-1)) == wanted;
}

/// " (%0 = 5, %1 = 7)", what the bytes are for arguments.
QString argumentsText(const QVector<int> &pattern, const QByteArray &bytes, int anyByte)
{
    QMap<int, int> arguments;
    for (int i = 0; i < pattern.size(); ++i) {
        if (pattern.at(i) < 0 && pattern.at(i) != anyByte)
            arguments.insert(~pattern.at(i), static_cast<unsigned char>(bytes.at(i)));
    }
    QStringList parts;
    for (auto argument = arguments.cbegin(); argument != arguments.cend(); ++argument)
        parts << QStringLiteral("%%1 = %2").arg(QString::number(argument.key()), QString::number(argument.value()));
    return parts.isEmpty() ? QString() : QStringLiteral(" (") + parts.join(QStringLiteral(", ")) + QLatin1Char(')');
}

} // namespace

TrafficDecoder::TrafficDecoder(const CatalogueData &data, const QString &instance)
{
    bool isFound = false;
    for (const CatalogueRow &row : data.rows(Section::Instances)) {
        if (!isNamed(row, instance))
            continue;
        isFound = true;
        addTexts(data, Section::Commands, row);
        addTexts(data, Section::Answers, row);
    }
    if (!isFound && !instance.isEmpty())
        throw CommandError(QStringLiteral("the catalogue has no instance \"%1\"").arg(printable(instance)));
}

void TrafficDecoder::addTexts(const CatalogueData &data, Section section, const CatalogueRow &instance)
{
    const int deviceId = int(instance.number(InstanceDeviceId).value_or(0));
    QMap<qint64, Message> inOrder; // a device looks through its answers by their numbers
    for (const CatalogueRow &row : data.rows(section)) {
        if (row.number(CommandDevice) != instance.number(InstanceDevice) || row.isNull(CommandDevice))
            continue;
        Message message;
        const QString text = row.text(CatalogueColumns::CommandText).value_or(QString());
        message.isCommand = section == Section::Commands;
        message.pattern =
            message.isCommand ? commandPattern(text, deviceId) : AnswerPattern::fromText(text, deviceId).elements();
        for (const int element : qAsConst(message.pattern))
            message.fixedBytes += element >= 0 ? 1 : 0;
        const QString description = row.text(CommandDescription).value_or(QString());
        message.title = instance.text(InstanceName).value_or(QString()) + QStringLiteral(": ") +
                        catalogueRowTitle(section, row) +
                        (description.isEmpty() ? QString() : QStringLiteral(", ") + description);
        inOrder.insert(row.number(Id).value_or(-1), message);
    }
    for (const Message &message : qAsConst(inOrder))
        m_messages.append(message);
}

QVector<int> TrafficDecoder::commandPattern(const QString &text, int deviceId)
{
    QVector<int> pattern;
    const QStringList tokens = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &token : tokens) {
        if (token == QLatin1String("%id"))
            pattern << (deviceId & 0xFF);
        else if (token.startsWith(QLatin1String("%(")))
            pattern << expressionElement(token);
        else if (token.startsWith(QLatin1Char('%')))
            pattern << ~token.mid(1).toInt();
        else
            pattern << (token.toInt(nullptr, 16) & 0xFF);
    }
    return pattern;
}

/// An expression without arguments is as good as a byte.
int TrafficDecoder::expressionElement(const QString &token)
{
    if (!argumentsOfCommand(token).inExpressions.isEmpty())
        return AnyByte;
    QMap<int, int> arguments;
    PIEvaluator evaluator;
    const PIByteArray bytes = ::CommandText::fromText(token).bytes(arguments, 0, evaluator);
    return bytes.size() == 1 ? int(static_cast<unsigned char>(bytes[0])) : AnyByte;
}

void TrafficDecoder::explain(TrafficEntry &entry) const
{
    using Direction = TrafficEntry::Direction;
    if (entry.direction == Direction::Note)
        return;
    const Message *found = nullptr;
    if (entry.direction == Direction::Unknown) {
        const Message *command = find(entry.bytes, true);
        const Message *answer = find(entry.bytes, false);
        found = command && (!answer || command->fixedBytes >= answer->fixedBytes) ? command : answer;
        if (found)
            entry.direction = found->isCommand ? Direction::Sent : Direction::Received;
    } else {
        found = find(entry.bytes, entry.isRequest());
    }
    if (found)
        entry.remark = found->title + argumentsText(found->pattern, entry.bytes, AnyByte);
}

/// Of commands the one that says most about the bytes, of answers the first, as a device takes them.
const TrafficDecoder::Message *TrafficDecoder::find(const QByteArray &bytes, bool isCommand) const
{
    const Message *best = nullptr;
    for (const Message &message : m_messages) {
        if (message.isCommand != isCommand || !isMatch(message, bytes))
            continue;
        if (!isCommand)
            return &message;
        if (!best || message.fixedBytes > best->fixedBytes)
            best = &message;
    }
    return best;
}

bool TrafficDecoder::isMatch(const Message &message, const QByteArray &bytes)
{
    if (message.pattern.size() != bytes.size())
        return false;
    for (int i = 0; i < bytes.size(); ++i) {
        const int element = message.pattern.at(i);
        if (element >= 0 && element != static_cast<unsigned char>(bytes.at(i)))
            return false;
    }
    return true;
}
