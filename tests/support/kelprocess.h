/// \file
/// Runs the program `kel` as people do and keeps what it printed.
#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QStringList>

/// What one run of `kel` left behind.
struct KelRun {
    int exitCode = -1;    ///< -1 when it crashed or had to be stopped.
    QByteArray output;    ///< Standard output.
    QByteArray errors;    ///< Standard error.
    qint64 elapsedMs = 0; ///< Wall time from start to end.

    /// The lines of standard error, without the empty one after the last line break.
    QList<QByteArray> errorLines() const { return errors.trimmed().split('\n'); }
};

/// Path of the program of this build; test programs stand beside it.
QString kelProgramPath();

/// Runs `kel` with \a arguments in \a folder (empty: the current one) and waits for its end, at most
/// \a timeoutMs. \a environment is added to the test's own as NAME=VALUE; NAME= takes a variable away.
KelRun runKel(const QStringList &arguments, const QString &folder = QString(), const QStringList &environment = {},
              int timeoutMs = 30000);

/// Prepares \a process for `kel` the same way without starting it.
void setUpKel(QProcess &process, const QStringList &arguments, const QString &folder = QString(),
              const QStringList &environment = {});
