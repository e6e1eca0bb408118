#include "stderrcapture.h"

#include <cstdio>
#include <unistd.h>

StderrCapture::StderrCapture()
    : m_saved(::dup(STDERR_FILENO))
{
    std::fflush(stderr);
    if (m_saved < 0 || !m_file.open() || ::dup2(m_file.handle(), STDERR_FILENO) < 0)
        qFatal("cannot redirect standard error");
}

StderrCapture::~StderrCapture()
{
    std::fflush(stderr);
    ::dup2(m_saved, STDERR_FILENO);
    ::close(m_saved);
}

QStringList StderrCapture::lines() const
{
    std::fflush(stderr);
    // Opened anew: reading must not move the place where the next line is written.
    QFile file(m_file.fileName());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
