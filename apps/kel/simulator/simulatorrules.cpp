#include "simulator/simulatorrules.h"

#include <QStringList>

#include <initializer_list>
#include <utility>

namespace
{

constexpr int MaxArgument = 9999;
constexpr int MaxWaitMs = 60 * 60 * 1000;
constexpr int MinPeriodMs = 10;
constexpr int MaxPeriodMs = 24 * 60 * 60 * 1000;
constexpr int MaxDeviceId = 255;

/// Reads a rules file line by line; the first wrong line ends it.
class RulesReader
{
public:
    explicit RulesReader(const QString &fileName)
        : m_fileName(fileName)
    {
    }

    SimulatorRules read(const QByteArray &text);

private:
    using Words = QStringList;

    void readLine(const QString &line);
    void readDevice(const Words &words);
    void readOn(const Words &words);
    void readEvery(const Words &words);
    void readReply(const Words &words);
    void readSet(const Words &words);
    void readWait(const Words &words);

    bool isToken(const QString &token, bool expressionsAllowed);
    bool isArgumentToken(const QString &token);
    bool checkTokens(const Words &tokens, bool expressionsAllowed);
    bool readNumber(const QString &text, int least, int most, const char *what, int *number);
    SimulatorDeviceRules *device();
    void addStep(SimulatorStep step);
    void fail(const QString &what);

    QString m_fileName;
    int m_line = 0;
    QVector<SimulatorStep> *m_block = nullptr; ///< Steps of the block that is open; null before a device.
    bool m_isBlock = false;                    ///< False while a device's start values are read.
    SimulatorRules m_rules;
};

SimulatorRules RulesReader::read(const QByteArray &text)
{
    for (const QByteArray &line : text.split('\n')) {
        ++m_line;
        readLine(QString::fromUtf8(line));
        if (!m_rules.error.isEmpty())
            return m_rules;
    }
    if (m_rules.devices.isEmpty())
        fail(QStringLiteral("no \"device\" line in the whole file"));
    return m_rules;
}

void RulesReader::readLine(const QString &line)
{
    const Words words = line.section(QLatin1Char('#'), 0, 0).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return;

    using Reader = void (RulesReader::*)(const Words &);
    static const std::initializer_list<std::pair<const char *, Reader>> Readers = {
        {"device", &RulesReader::readDevice}, {"on", &RulesReader::readOn},   {"every", &RulesReader::readEvery},
        {"reply", &RulesReader::readReply},   {"set", &RulesReader::readSet}, {"wait", &RulesReader::readWait},
    };
    for (const auto &[keyword, reader] : Readers) {
        if (words.first() == QLatin1String(keyword))
            return (this->*reader)(words.mid(1));
    }
    fail(QStringLiteral("\"%1\" is none of: device, on, every, reply, set, wait").arg(words.first().left(40)));
}

void RulesReader::readDevice(const Words &words)
{
    if (words.size() != 3 || words[1] != QLatin1String("id"))
        return fail(QStringLiteral("a device is written: device NAME id NUMBER"));
    SimulatorDeviceRules device;
    device.name = words[0];
    if (!readNumber(words[2], 0, MaxDeviceId, "a device number", &device.id))
        return;
    m_rules.devices.append(device);
    m_block = &m_rules.devices.last().startValues;
    m_isBlock = false;
}

void RulesReader::readOn(const Words &words)
{
    if (!device())
        return;
    if (words.isEmpty())
        return fail(QStringLiteral("\"on\" needs the bytes of a request"));
    if (!checkTokens(words, false))
        return;
    SimulatorRule rule;
    rule.line = m_line;
    rule.request = AnswerPattern::fromText(words.join(QLatin1Char(' ')), device()->id);
    device()->rules.append(rule);
    m_block = &device()->rules.last().steps;
    m_isBlock = true;
}

void RulesReader::readEvery(const Words &words)
{
    if (!device())
        return;
    if (words.size() != 1)
        return fail(QStringLiteral("a report is written: every MILLISECONDS"));
    SimulatorReport report;
    report.line = m_line;
    if (!readNumber(words[0], MinPeriodMs, MaxPeriodMs, "a period in ms", &report.periodMs))
        return;
    device()->reports.append(report);
    m_block = &device()->reports.last().steps;
    m_isBlock = true;
}

void RulesReader::readReply(const Words &words)
{
    if (!device())
        return;
    if (!m_isBlock)
        return fail(QStringLiteral("\"reply\" belongs below an \"on\" or \"every\" line"));
    if (words.isEmpty())
        return fail(QStringLiteral("\"reply\" needs the bytes to send"));
    if (!checkTokens(words, true))
        return;
    SimulatorStep step;
    step.kind = SimulatorStep::Kind::Reply;
    step.text = CommandText::fromText(words.join(QLatin1Char(' ')));
    addStep(step);
}

void RulesReader::readSet(const Words &words)
{
    if (!device())
        return;
    if (words.size() < 3 || words[1] != QLatin1String("="))
        return fail(QStringLiteral("a value is written: set NUMBER = EXPRESSION"));
    SimulatorStep step;
    step.kind = SimulatorStep::Kind::Set;
    if (!readNumber(words[0], 0, MaxArgument, "an argument's number", &step.argument))
        return;
    // Command texts know no spaces inside an expression; here they are welcome and taken out.
    const QString expression = QLatin1Char('(') + words.mid(2).join(QString()) + QLatin1Char(')');
    device()->arguments.insert(step.argument);
    device()->expressions.append({m_line, expression});
    step.text = CommandText::fromText(QLatin1Char('%') + expression);
    addStep(step);
}

void RulesReader::readWait(const Words &words)
{
    if (!device())
        return;
    if (!m_isBlock || words.size() != 1)
        return fail(QStringLiteral("a delay is written below \"on\" or \"every\": wait MILLISECONDS"));
    SimulatorStep step;
    step.kind = SimulatorStep::Kind::Wait;
    if (readNumber(words[0], 0, MaxWaitMs, "a delay in ms", &step.waitMs))
        addStep(step);
}

bool RulesReader::checkTokens(const Words &tokens, bool expressionsAllowed)
{
    for (const QString &token : tokens) {
        if (!isToken(token, expressionsAllowed)) {
            const QString kinds = expressionsAllowed
                                      ? QStringLiteral("a byte (00 to FF), %id, %NUMBER or %(EXPRESSION)")
                                      : QStringLiteral("a byte (00 to FF), %id or %NUMBER");
            fail(QStringLiteral("\"%1\" is not %2").arg(token.left(40), kinds));
            return false;
        }
    }
    return true;
}

bool RulesReader::isToken(const QString &token, bool expressionsAllowed)
{
    if (token == QLatin1String("%id"))
        return true;
    if (token.startsWith(QLatin1String("%("))) {
        device()->expressions.append({m_line, token.mid(1)});
        return expressionsAllowed;
    }
    if (token.startsWith(QLatin1Char('%')))
        return isArgumentToken(token);
    bool isNumber = false;
    return token.size() <= 2 && token.toUInt(&isNumber, 16) <= 0xFF && isNumber && token.at(0) != QLatin1Char('+');
}

bool RulesReader::isArgumentToken(const QString &token)
{
    bool isNumber = false;
    const uint number = token.midRef(1).toUInt(&isNumber, 10);
    if (!isNumber || number > uint(MaxArgument))
        return false;
    device()->arguments.insert(int(number));
    return true;
}

bool RulesReader::readNumber(const QString &text, int least, int most, const char *what, int *number)
{
    bool isNumber = false;
    *number = text.toInt(&isNumber, 10);
    if (isNumber && *number >= least && *number <= most)
        return true;
    fail(QStringLiteral("\"%1\" is not %2 from %3 to %4")
             .arg(text.left(40), QString::fromLatin1(what), QString::number(least), QString::number(most)));
    return false;
}

SimulatorDeviceRules *RulesReader::device()
{
    if (m_rules.devices.isEmpty()) {
        fail(QStringLiteral("a \"device\" line must come first"));
        return nullptr;
    }
    return &m_rules.devices.last();
}

void RulesReader::addStep(SimulatorStep step)
{
    step.line = m_line;
    m_block->append(std::move(step));
}

void RulesReader::fail(const QString &what)
{
    m_rules.error = QStringLiteral("%1:%2: %3").arg(m_fileName, QString::number(m_line), what);
}

} // namespace

SimulatorRules SimulatorRules::fromText(const QByteArray &text, const QString &fileName)
{
    return RulesReader(fileName).read(text);
}
