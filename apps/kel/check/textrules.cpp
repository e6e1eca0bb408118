#include "check/checkinput.h"
#include "check/panelnumbers.h"

#include <answerpattern.h>
#include <commandtextfault.h>

#include <QPair>
#include <QSet>

namespace
{

constexpr int MaxByte = 255;

/// One device whose texts are looked at, and the line of the form that brings it in.
struct TextSource {
    const CatalogueDevice &device;
    int line;
};

Rule ruleOf(TextFault::Kind kind)
{
    switch (kind) {
    case TextFault::Kind::NotANumber:
        return Rule::BadWord;
    case TextFault::Kind::OutsideAByte:
        return Rule::AnswerValue;
    case TextFault::Kind::BadExpression:
        return Rule::BadExpression;
    }
    return Rule::BadWord;
}

/// "answer 12 "A2 %0" of Relay"
QString nameOfText(const char *what, int number, const QString &text, const CatalogueMake &make)
{
    return QStringLiteral("%1 %2 \"%3\" of %4").arg(QLatin1String(what), QString::number(number), text, make.name);
}

/// Whether every message that \a late matches is one that \a early matches. No fixed value of \a late is
/// above 255.
bool covers(const QVector<int> &early, const QVector<int> &late)
{
    if (early.size() != late.size())
        return false;
    for (int i = 0; i < early.size(); ++i) {
        if (early.at(i) >= 0 && early.at(i) != late.at(i))
            return false;
    }
    return true;
}

bool canMatch(const QVector<int> &pattern)
{
    return std::none_of(pattern.cbegin(), pattern.cend(), [](int element) { return element > MaxByte; });
}

class TextRules
{
public:
    explicit TextRules(Findings &findings)
        : m_findings(findings)
    {
    }

    void check(const TextSource &source)
    {
        const CatalogueMake &make = *source.device.make;
        // Devices of one make share its texts, and those of one id on the bus their patterns too.
        if (!m_makes.contains(&make))
            checkCommands(source);
        m_makes.insert(&make);
        const QPair<const CatalogueMake *, int> key(&make, source.device.deviceID);
        if (m_patterns.contains(key))
            return;
        m_patterns.insert(key);
        checkAnswers(source);
        checkShadows(source);
    }

private:
    void checkCommands(const TextSource &source)
    {
        const CatalogueMake &make = *source.device.make;
        for (auto command = make.commands.cbegin(); command != make.commands.cend(); ++command) {
            for (const TextFault &fault : findCommandFaults(*command))
                tell(source, ruleOf(fault.kind), nameOfText("command", command.key(), *command, make), fault);
        }
    }

    void checkAnswers(const TextSource &source)
    {
        const CatalogueMake &make = *source.device.make;
        for (auto answer = make.answers.cbegin(); answer != make.answers.cend(); ++answer) {
            for (const TextFault &fault : findAnswerFaults(*answer, source.device.deviceID))
                tell(source, ruleOf(fault.kind), nameOfText("answer", answer.key(), *answer, make), fault);
        }
    }

    void checkShadows(const TextSource &source)
    {
        const CatalogueMake &make = *source.device.make;
        QMap<int, QVector<QPair<int, QVector<int>>>> earlier; // by length
        for (auto answer = make.answers.cbegin(); answer != make.answers.cend(); ++answer) {
            const QVector<int> pattern = AnswerPattern::fromText(*answer, source.device.deviceID).elements();
            if (!canMatch(pattern))
                continue;
            auto &ofLength = earlier[int(pattern.size())];
            const auto hides = [&pattern](const auto &early) { return covers(early.second, pattern); };
            const auto found = std::find_if(ofLength.cbegin(), ofLength.cend(), hides);
            if (found == ofLength.cend()) {
                ofLength.append({answer.key(), pattern});
                continue;
            }
            tellOnce(source.line, Rule::ShadowedAnswer,
                     QStringLiteral("%1 never matches: answer %2 \"%3\" takes all its messages before")
                         .arg(nameOfText("answer", answer.key(), *answer, make), QString::number(found->first),
                              make.answers.value(found->first)));
        }
    }

    void tell(const TextSource &source, Rule rule, const QString &text, const TextFault &fault)
    {
        tellOnce(source.line, rule, QStringLiteral("%1: \"%2\" %3").arg(text, fault.word, fault.reason));
    }

    void tellOnce(int line, Rule rule, const QString &message)
    {
        if (m_told.contains(message))
            return;
        m_told.insert(message);
        m_findings.error(rule, line, message);
    }

    Findings &m_findings;
    QSet<const CatalogueMake *> m_makes;
    QSet<QPair<const CatalogueMake *, int>> m_patterns;
    QSet<QString> m_told;
};

} // namespace

void checkTexts(const CheckInput &input)
{
    const PanelNumbers numbers(input.panel, input.catalogue);
    TextRules rules(input.findings);
    for (const FormObject &object : input.panel.form().objects) {
        if (const CatalogueDevice *device = numbers.deviceOf(object))
            rules.check({*device, object.properties.value(QStringLiteral("currentID")).line});
    }
}
