/// \file
/// What the check of a panel finds.
#pragma once

#include "check/rule.h"

#include <QString>
#include <QVector>

/// How much a finding matters.
enum class Severity {
    Warning, ///< It works, but hardly as meant.
    Error,   ///< It cannot work.
};

/// One thing that is wrong, and where.
struct Finding {
    QString file;
    int line = 1; ///< From 1.
    Rule rule = Rule::UnknownObject;
    Severity severity = Severity::Error;
    QString message; ///< One sentence without a full stop.
};

/// The findings of one check as they come, all in one file at a time.
class Findings
{
public:
    /// Later findings are in \a file.
    void setFile(const QString &file) { m_file = file; }

    void error(Rule rule, int line, const QString &message) { add(rule, Severity::Error, line, message); }
    void warning(Rule rule, int line, const QString &message) { add(rule, Severity::Warning, line, message); }

    /// All of them, by file, line and rule.
    QVector<Finding> sorted() const;

private:
    void add(Rule rule, Severity severity, int line, const QString &message);

    QString m_file;
    QVector<Finding> m_findings;
};
