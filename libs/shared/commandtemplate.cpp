#include "commandtemplate.h"

#include "argumentvalue.h"
#include "templatefault.h"

#include <QDebug>

#include <algorithm>
#include <cstring>

namespace Kv_Designer
{
namespace
{

/// Most runs of constants are a byte or two long: too short to be worth a call of memcmp.
inline bool areEqual(const char *a, const char *b, int length)
{
    for (int i = 0; i < length; ++i) {
        if (a[i] != b[i])
            return false;
    }
    return true;
}

/// Copies \a size bytes. Messages of 8 to 16 bytes are the usual ones: two halves that may overlap take
/// less time than a call of memcpy.
inline void copyMessage(char *to, const char *from, int size)
{
    constexpr int Half = 8;
    if (size < Half || size > 2 * Half) {
        std::memcpy(to, from, static_cast<std::size_t>(size));
        return;
    }
    std::memcpy(to, from, Half);
    std::memcpy(to + size - Half, from + size - Half, Half);
}

} // namespace

CommandTemplate CommandTemplate::fromText(const QString &text)
{
    CommandTemplate result;
    result.m_valid = !findTemplateFault(text);

    const QVector<CommandArgument> entries = packetArgumentsFromText(text);
    result.m_image.fill('\0', entries.size());
    result.m_expected.fill('\0', entries.size());
    result.m_argumentCount = customArgumentsCount(entries);
    for (int i = 0; i < entries.size(); i += entries.at(i).size)
        result.append(entries.at(i), i);
    return result;
}

QStringList CommandTemplate::argumentNames() const
{
    QStringList names;
    const int count = std::min(m_argumentCount, MaxReference + 1);
    names.reserve(count);
    for (int slot = 0; slot < count; ++slot)
        names.append(m_names.value(slot));
    return names;
}

bool CommandTemplate::encode(const QVector<QVariant> &values, QByteArray &out) const
{
    if (values.size() < m_argumentCount) {
        qDebug() << "Invalid arguments count!";
        out.clear();
        return false;
    }

    if (out.size() != m_image.size())
        out.resize(m_image.size());
    char *bytes = out.data();
    copyMessage(bytes, m_image.constData(), m_image.size());
    const QVariant *given = values.constData();
    for (const Field &field : m_fields)
        field.coder->write(given[field.slot], bytes + field.offset);
    return true;
}

bool CommandTemplate::match(const QByteArray &data, QVector<QVariant> &values) const
{
    if (data.size() < m_expected.size())
        return false;

    const char *bytes = data.constData();
    for (const Step &step : m_steps) {
        if (step.kind == Step::Kind::Capture) {
            const Field &field = m_fields.at(step.at);
            QVariant *place = placeOf(field.slot, values);
            if (place == nullptr)
                return false;
            field.coder->read(bytes + field.offset, *place);
        } else if (step.kind == Step::Kind::Refuse ||
                   !areEqual(bytes + step.at, m_expected.constData() + step.at, step.length)) {
            return false;
        }
    }
    return true;
}

void CommandTemplate::append(const CommandArgument &argument, int offset)
{
    if (argument.any)
        return; // sent as the zeros of the image, skipped while matching
    if (argument.value < 0)
        appendReference(argument, offset);
    else
        appendConstant(argument, offset);
}

void CommandTemplate::appendReference(const CommandArgument &argument, int offset)
{
    const int slot = referenceOf(argument.value);
    m_steps.append({Step::Kind::Capture, m_fields.size(), 0});
    m_fields.append({coderFor(argument.type, argument.swapBytes), offset, slot});
    if (!argument.name.isEmpty() && !m_names.contains(slot))
        m_names.insert(slot, argument.name);
}

void CommandTemplate::appendConstant(const CommandArgument &argument, int offset)
{
    encodeConstant(argument, m_image.data() + offset);
    if (argument.value > 255) { // no byte can equal it
        m_steps.append({Step::Kind::Refuse, offset, argument.size});
        return;
    }

    // An answer is compared with the whole constant byte by byte, not with its encoding.
    std::memset(m_expected.data() + offset, argument.value, static_cast<std::size_t>(argument.size));
    const bool continues = !m_steps.isEmpty() && m_steps.last().kind == Step::Kind::Compare &&
                           m_steps.last().at + m_steps.last().length == offset;
    if (continues)
        m_steps.last().length += argument.size;
    else
        m_steps.append({Step::Kind::Compare, offset, argument.size});
}

} // namespace Kv_Designer
