/// \file
/// Looks a panel over without running it.
#pragma once

#include "check/finding.h"

#include <QByteArray>
#include <QString>

/// What is wrong with the panel in \a path, a form or a project file, and with what it uses of the open
/// catalogue (Kel::commandsDB); without one only the panel is looked at. Throws a CommandError, in one
/// line that names the file, when it cannot be looked at. GUI thread only.
QVector<Finding> checkPanel(const QString &path);

/// Adds to \a findings what is wrong with the form \a text, which \a path names; otherwise as checkPanel().
void checkForm(const QByteArray &text, const QString &path, Findings &findings);
