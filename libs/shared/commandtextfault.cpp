#include "commandtextfault.h"

#include "tokens.h"

#include <pievaluator.h>
#include <piqt.h>

#include <QRegularExpression>

#include <array>
#include <cmath>
#include <optional>

namespace
{

using Kind = TextFault::Kind;

constexpr int MaxByte = 255;

bool isExpression(const QString &word)
{
    return word.startsWith(QLatin1String("%("));
}

bool isArgument(const QString &word)
{
    return word.startsWith(QLatin1Char('%')) && !isExpression(word) && word != QLatin1String("%id");
}

/// The variables "aN" in \a expression that arguments stand for.
QSet<int> argumentsOfExpression(const QString &expression)
{
    static const QRegularExpression Name(QStringLiteral("(?<![A-Za-z0-9_])a(0|[1-9][0-9]*)(?![A-Za-z0-9_])"));
    QSet<int> arguments;
    for (auto match = Name.globalMatch(expression); match.hasNext();) {
        bool isNumber = false;
        const int number = match.next().captured(1).toInt(&isNumber);
        if (isNumber)
            arguments.insert(number);
    }
    return arguments;
}

/// Whether the expression has a finite value for these values of its arguments; why not in \a error.
bool hasValue(PIEvaluator &evaluator, const PIString &expression, QString &error)
{
    if (!evaluator.check(expression)) {
        error = PI2QString(evaluator.error());
        return false;
    }
    const std::complex<double> value = evaluator.evaluate();
    if (std::isfinite(value.real()) && std::isfinite(value.imag()))
        return true;
    error = PI2QString(evaluator.error());
    if (error.isEmpty())
        error = QStringLiteral("the result is not finite");
    return false;
}

/// Why \a expression, with its brackets, never gives a byte; nothing when it can.
std::optional<QString> faultOfExpression(const QString &expression)
{
    // Some values may well be forbidden, such as a divisor of 0: only what fails with all of these does so
    // always.
    constexpr std::array<std::array<double, 2>, 3> Values = {{{1.0, 1.0}, {100.0, -7.0}, {0.0, 0.0}}};

    const QSet<int> arguments = argumentsOfExpression(expression);
    QString firstError;
    for (const auto &[start, step] : Values) {
        PIEvaluator evaluator;
        for (const int argument : arguments) {
            const QByteArray name = "a" + QByteArray::number(argument);
            evaluator.content().addVariable(PIString(name.constData()), start + step * argument);
        }
        evaluator.content().sortVariables();
        QString error;
        if (hasValue(evaluator, Q2PIString(expression), error))
            return std::nullopt;
        if (firstError.isEmpty())
            firstError = error;
    }
    return firstError;
}

/// How many of the words from \a first on belong to the expression that begins there, when spaces cut it up.
int wordsOfExpression(const QStringList &words, int first)
{
    int open = 0;
    for (int i = first; i < words.size(); ++i) {
        open += int(words.at(i).count(QLatin1Char('('))) - int(words.at(i).count(QLatin1Char(')')));
        if (open <= 0)
            return i - first + 1;
    }
    return 1;
}

/// Looks at the expression that begins with word \a first; \a count gets the number of its words.
std::optional<TextFault> expressionFault(const QStringList &words, int first, int &count)
{
    count = 1;
    const QString &word = words.at(first);
    const std::optional<QString> error = faultOfExpression(word.mid(1));
    if (!error)
        return std::nullopt;

    const int cutUp = wordsOfExpression(words, first);
    const QString joined = words.mid(first, cutUp).join(QString());
    if (cutUp > 1 && !faultOfExpression(joined.mid(1))) {
        count = cutUp;
        return TextFault{Kind::BadExpression, words.mid(first, cutUp).join(QLatin1Char(' ')),
                         QStringLiteral("has spaces inside, which end it: write \"%1\"").arg(joined)};
    }
    return TextFault{Kind::BadExpression, word, QStringLiteral("gives no byte: %1").arg(error->simplified())};
}

/// What an argument's word lacks.
std::optional<TextFault> argumentFault(const QString &word)
{
    bool isNumber = false;
    word.mid(1).toInt(&isNumber);
    if (isNumber)
        return std::nullopt;
    return TextFault{Kind::NotANumber, word, QStringLiteral("is no argument's number, so it means argument 0")};
}

/// A capture of an argument below 0 is no capture: its element is a fixed value.
std::optional<TextFault> captureFault(const QString &word)
{
    const int fixed = ~word.mid(1).toInt();
    if (fixed < 0)
        return argumentFault(word);
    if (fixed > MaxByte)
        return TextFault{Kind::OutsideAByte, word,
                         QStringLiteral("is the fixed value %1, above 255, so no message matches").arg(fixed)};
    return TextFault{Kind::NotANumber, word,
                     QStringLiteral("is no argument's number, so it expects the byte %1")
                         .arg(QString::number(fixed, 16).rightJustified(2, QLatin1Char('0')).toUpper())};
}

std::optional<TextFault> answerFault(const QString &word, int deviceID)
{
    if (isExpression(word))
        return TextFault{Kind::NotANumber, word,
                         QStringLiteral("is an expression, which answers do not have, so it means argument 0")};
    if (isArgument(word))
        return captureFault(word);

    bool isNumber = true;
    const bool isId = word == QLatin1String("%id");
    const int value = isId ? deviceID : word.toInt(&isNumber, 16);
    if (!isNumber)
        return TextFault{Kind::NotANumber, word, QStringLiteral("is no number, so it expects 00")};
    if (value >= 0 && value <= MaxByte)
        return std::nullopt;
    const QString shown =
        isId ? QStringLiteral("is the device's own id %1").arg(deviceID) : QStringLiteral("is %1").arg(value);
    return TextFault{Kind::OutsideAByte, word,
                     value < 0 ? shown + QStringLiteral(", below 0, so it takes any byte as argument %1").arg(~value)
                               : shown + QStringLiteral(", above 255, so no message matches")};
}

} // namespace

QVector<TextFault> findCommandFaults(const QString &text)
{
    const QStringList words = spaceSeparatedTokens(text);
    QVector<TextFault> faults;
    for (int i = 0; i < words.size();) {
        const QString &word = words.at(i);
        std::optional<TextFault> fault;
        int count = 1;
        bool isNumber = true;
        if (isExpression(word))
            fault = expressionFault(words, i, count);
        else if (isArgument(word))
            fault = argumentFault(word);
        else if (word != QLatin1String("%id"))
            word.toInt(&isNumber, 16);
        if (!isNumber)
            fault = TextFault{Kind::NotANumber, word, QStringLiteral("is no number, so it sends 00")};
        if (fault)
            faults.append(*fault);
        i += count;
    }
    return faults;
}

QVector<TextFault> findAnswerFaults(const QString &text, int deviceID)
{
    QVector<TextFault> faults;
    const QStringList words = spaceSeparatedTokens(text);
    for (const QString &word : words) {
        if (const std::optional<TextFault> fault = answerFault(word, deviceID))
            faults.append(*fault);
    }
    return faults;
}

TextArguments argumentsOfCommand(const QString &text)
{
    TextArguments arguments;
    const QStringList words = spaceSeparatedTokens(text);
    for (const QString &word : words) {
        if (isExpression(word))
            arguments.inExpressions.unite(argumentsOfExpression(word));
        else if (isArgument(word))
            arguments.named.insert(word.mid(1).toInt());
    }
    return arguments;
}
