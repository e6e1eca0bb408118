#include "argumenttype.h"

#include <algorithm>
#include <iterator>

namespace Kv_Designer
{
namespace
{

struct Word {
    QLatin1String text;
    ArgumentType type;
    int size;
};

// "byte" and "uchar" mean what every other word means; they stand here to be told from slips.
const Word Words[] = {
    {QLatin1String("byte"), ArgumentType::UInt8, 1},    {QLatin1String("uchar"), ArgumentType::UInt8, 1},
    {QLatin1String("sbyte"), ArgumentType::Int8, 1},    {QLatin1String("char"), ArgumentType::Int8, 1},
    {QLatin1String("word"), ArgumentType::UInt16, 2},   {QLatin1String("ushort"), ArgumentType::UInt16, 2},
    {QLatin1String("sword"), ArgumentType::Int16, 2},   {QLatin1String("short"), ArgumentType::Int16, 2},
    {QLatin1String("dword"), ArgumentType::UInt32, 4},  {QLatin1String("uint"), ArgumentType::UInt32, 4},
    {QLatin1String("sdword"), ArgumentType::Int32, 4},  {QLatin1String("int"), ArgumentType::Int32, 4},
    {QLatin1String("qword"), ArgumentType::UInt64, 8},  {QLatin1String("ullong"), ArgumentType::UInt64, 8},
    {QLatin1String("sqword"), ArgumentType::Int64, 8},  {QLatin1String("llong"), ArgumentType::Int64, 8},
    {QLatin1String("float"), ArgumentType::Float32, 4}, {QLatin1String("double"), ArgumentType::Float64, 8},
};

} // namespace

TypePart readTypePart(const QString &text)
{
    TypePart part;
    QString word = text.trimmed().toLower();
    if (word.startsWith(QLatin1Char('~'))) {
        part.swapBytes = true;
        word.remove(0, 1);
    }
    if (word.endsWith(QLatin1Char('~'))) {
        part.swapBytes = true;
        word.chop(1);
    }
    word = word.trimmed();
    if (word.isEmpty())
        return part;

    const auto found =
        std::find_if(std::begin(Words), std::end(Words), [&word](const Word &known) { return word == known.text; });
    part.isKnown = found != std::end(Words);
    if (part.isKnown) {
        part.type = found->type;
        part.size = found->size;
    }
    return part;
}

QString typeWord(ArgumentType type)
{
    const auto found =
        std::find_if(std::begin(Words), std::end(Words), [type](const Word &known) { return known.type == type; });
    return found != std::end(Words) ? QString(found->text) : QString();
}

} // namespace Kv_Designer
