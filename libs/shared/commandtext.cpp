#include "commandtext.h"

#include "tokens.h"

#include <pibytearray.h>
#include <pievaluator.h>
#include <piqt.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace
{

unsigned char lowByte(int value)
{
    return static_cast<unsigned char>(value);
}

/// The low 8 bits of \a value rounded half away from zero, in 64 bits; beyond them of the nearest
/// number in range.
unsigned char lowByteOfRounded(double value)
{
    using Wide = std::numeric_limits<std::int64_t>;
    constexpr double TooLarge = 9223372036854775808.0; // 2^63, the first that does not fit

    const double shifted = value >= 0.0 ? value + 0.5 : value - 0.5;
    if (shifted >= TooLarge)
        return static_cast<unsigned char>(Wide::max());
    if (shifted < -TooLarge)
        return static_cast<unsigned char>(Wide::min());
    return static_cast<unsigned char>(static_cast<std::int64_t>(shifted));
}

/// Nothing, with the reason in \a error, when \a expression has no finite value.
std::optional<double> realValue(const PIString &expression, PIEvaluator &evaluator, QString &error)
{
    if (!evaluator.check(expression)) {
        error = PI2QString(evaluator.error());
        return std::nullopt;
    }
    const std::complex<double> value = evaluator.evaluate();
    if (std::isfinite(value.real()) && std::isfinite(value.imag()))
        return value.real();
    error = PI2QString(evaluator.error());
    if (error.isEmpty())
        error = QStringLiteral("The result is not finite.");
    return std::nullopt;
}

} // namespace

CommandText CommandText::fromText(const QString &text)
{
    const QStringList tokens = spaceSeparatedTokens(text);
    CommandText command;
    command.m_tokens.reserve(tokens.size());
    for (const QString &token : tokens)
        command.m_tokens.append(tokenFromText(token));
    return command;
}

CommandText::Token CommandText::tokenFromText(const QString &text)
{
    if (!text.startsWith(QLatin1Char('%')))
        return {Kind::Fixed, text.toInt(nullptr, 16), {}};
    if (text == QLatin1String("%id"))
        return {Kind::DeviceId, 0, {}};
    const QString rest = text.mid(1);
    if (rest.startsWith(QLatin1Char('(')))
        return {Kind::Expression, 0, Q2PIString(rest)};
    return {Kind::Argument, rest.toInt(), {}};
}

PIByteArray CommandText::bytes(QMap<int, int> &arguments, int deviceID, PIEvaluator &evaluator,
                               const ErrorHandler &onError) const
{
    PIByteArray result;
    for (const Token &token : m_tokens) {
        switch (token.kind) {
        case Kind::Fixed:
            result.append(lowByte(token.number));
            break;
        case Kind::DeviceId:
            result.append(lowByte(deviceID));
            break;
        case Kind::Argument:
            result.append(lowByte(arguments[token.number]));
            break;
        case Kind::Expression: {
            // The evaluator keeps what it has checked, so from the second sending on this only computes.
            QString error;
            if (const std::optional<double> value = realValue(token.expression, evaluator, error))
                result.append(lowByteOfRounded(*value));
            else if (onError)
                onError(error);
            break;
        }
        }
    }
    return result;
}
