/// \file
/// The text of a device command and the bytes that it stands for.
#pragma once

#include <QMap>
#include <QString>
#include <QVector>

#include <functional>

#include <kelwidgetsexport.h>
#include <pistring.h>

class PIByteArray;
class PIEvaluator;

/// A command text, read once and turned into bytes as often as it is sent. Its tokens, separated by
/// spaces, give one byte each, the low 8 bits of: a hexadecimal number ("1F", no number is 0), the
/// device's own id ("%id"), an argument ("%N", no number is argument 0) or the rounded real part of an
/// expression ("%(a0*2)", all that follows the "%"). A value class for one thread.
class KEL_WIDGETS_EXPORT CommandText
{
public:
    /// Gets the text of an expression's error, once for each expression that gave no byte.
    using ErrorHandler = std::function<void(const QString &error)>;

    /// Every text is a command; an empty one has no bytes.
    static CommandText fromText(const QString &text);

    /// The bytes with the given \a arguments, the device's own id and the variables of \a evaluator.
    /// An argument that \a arguments lacks is created there as 0. An expression that fails its check, or
    /// whose result is not finite, is told to \a onError and adds no byte.
    PIByteArray bytes(QMap<int, int> &arguments, int deviceID, PIEvaluator &evaluator,
                      const ErrorHandler &onError = {}) const;

private:
    enum class Kind { Fixed, DeviceId, Argument, Expression };

    struct Token {
        Kind kind = Kind::Fixed;
        int number = 0; ///< The value of Fixed, the argument's number of Argument.
        PIString expression;
    };

    static Token tokenFromText(const QString &text);

    QVector<Token> m_tokens;
};
