/// \file
/// What the program under test writes to standard error.
#pragma once

#include <QStringList>
#include <QTemporaryFile>

/// Sends standard error to a file from its construction to its destruction.
class StderrCapture
{
public:
    StderrCapture();
    ~StderrCapture();
    StderrCapture(const StderrCapture &) = delete;
    StderrCapture &operator=(const StderrCapture &) = delete;

    QStringList lines() const; ///< All whole lines so far.

private:
    QTemporaryFile m_file;
    int m_saved;
};
