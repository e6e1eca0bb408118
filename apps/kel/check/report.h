/// \file
/// How findings are written.
#pragma once

#include "check/finding.h"

#include <QByteArray>

/// A line for each finding, "FILE:LINE: error: message [rule]"; nothing when there is none.
QByteArray textReport(const QVector<Finding> &findings);

/// A JSON object with the panel's \a file and an array of findings.
QByteArray jsonReport(const QVector<Finding> &findings, const QString &file);

/// The findings in the exchange format of static analysis tools, SARIF 2.1.0.
QByteArray sarifReport(const QVector<Finding> &findings);
