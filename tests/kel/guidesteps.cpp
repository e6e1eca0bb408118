#include "guidesteps.h"

#include <QRegularExpression>

namespace
{

const QChar Any(0x2026); // The ellipsis.

/// A fenced block, with what stands between it and the block before.
struct Fence {
    QString before;
    QString language;
    QString text;
    int line = 0;
};

QVector<Fence> fencesOf(const QString &guide)
{
    QVector<Fence> fences;
    Fence fence;
    bool isInside = false;
    int number = 0;
    for (const QString &line : guide.split(QLatin1Char('\n'))) {
        ++number;
        const bool isMark = line.startsWith(QLatin1String("```"));
        if (isMark && isInside) {
            fences << fence;
            fence = Fence();
        } else if (isMark) {
            fence.language = line.mid(3);
            fence.line = number;
        } else {
            (isInside ? fence.text : fence.before) += line + QLatin1Char('\n');
        }
        isInside = isMark != isInside;
    }
    return fences;
}

void addExamples(QVector<GuideStep> &steps, const Fence &fence, QString (*example)(const QString &))
{
    static const QRegularExpression link(QStringLiteral(R"(\[`([^`]+)`\]\(\.\./examples/([^)]+)\))"));
    auto found = link.globalMatch(fence.before);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        GuideStep step;
        step.kind = GuideStep::SaveFile;
        step.line = fence.line;
        step.file = match.captured(1);
        step.text = example(match.captured(2));
        steps << step;
    }
}

GuideStep stepOf(const Fence &fence)
{
    static const QRegularExpression save(QStringLiteral("[Ss]ave this as `([^`]+)`"));
    GuideStep step;
    step.line = fence.line;
    step.text = fence.text;
    const QRegularExpressionMatch named = save.match(fence.before);
    if (named.hasMatch()) {
        step.kind = GuideStep::SaveFile;
        step.file = named.captured(1);
    } else if (fence.before.contains(QLatin1String("<!-- by hand -->"))) {
        step.kind = GuideStep::ByHand;
    } else if (fence.before.contains(QLatin1String("<!-- goes on -->"))) {
        step.kind = GuideStep::GoesOn;
    }
    return step;
}

QRegularExpression patternOf(const QString &shown)
{
    static const QRegularExpression time(QStringLiteral(R"(\d\d:\d\d:\d\d\\\.\d\d\d)"));
    const bool isBegun = shown.endsWith(Any);
    QString pattern = QRegularExpression::escape(isBegun ? shown.chopped(1) : shown);
    pattern.replace(QLatin1String("\\:"), QLatin1String(":"));
    pattern.replace(time, QStringLiteral(R"(\d\d:\d\d:\d\d\.\d\d\d)"));
    return QRegularExpression(QStringLiteral("\\A%1%2\\z").arg(pattern, isBegun ? QStringLiteral(".*") : QString()));
}

} // namespace

QVector<GuideStep> guideSteps(const QString &guide, QString (*example)(const QString &path))
{
    QVector<GuideStep> steps;
    for (const Fence &fence : fencesOf(guide)) {
        addExamples(steps, fence, example);
        const GuideStep step = stepOf(fence);
        const bool isOutput = fence.language.isEmpty() && fence.before.trimmed().isEmpty() && !steps.isEmpty() &&
                              (steps.last().kind == GuideStep::Run || steps.last().kind == GuideStep::GoesOn);
        if (isOutput)
            steps.last().shown = fence.text.chopped(1).split(QLatin1Char('\n'));
        else if (step.kind == GuideStep::SaveFile || fence.language == QLatin1String("sh"))
            steps << step;
    }
    return steps;
}

QString guideDifference(const QStringList &shown, const QStringList &printed)
{
    int next = 0;
    bool maySkip = false;
    for (const QString &line : shown) {
        if (line == QString(Any)) {
            maySkip = true;
            continue;
        }
        const QRegularExpression pattern = patternOf(line);
        while (maySkip && next < printed.size() && !pattern.match(printed.at(next)).hasMatch())
            ++next;
        if (next >= printed.size())
            return QStringLiteral("not printed: %1").arg(line);
        if (!pattern.match(printed.at(next)).hasMatch())
            return QStringLiteral("shown: %1\nprinted: %2").arg(line, printed.at(next));
        ++next;
        maySkip = false;
    }
    return maySkip || next == printed.size() ? QString() : QStringLiteral("not shown: %1").arg(printed.at(next));
}
