#include "check/finding.h"

#include <algorithm>
#include <tuple>

QVector<Finding> Findings::sorted() const
{
    QVector<Finding> findings = m_findings;
    std::stable_sort(findings.begin(), findings.end(), [](const Finding &a, const Finding &b) {
        return std::tie(a.file, a.line, a.rule) < std::tie(b.file, b.line, b.rule);
    });
    return findings;
}

void Findings::add(Rule rule, Severity severity, int line, const QString &message)
{
    m_findings.append({m_file, std::max(line, 1), rule, severity, message.simplified()});
}
