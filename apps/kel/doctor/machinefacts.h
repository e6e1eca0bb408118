/// \file
/// Looks around on a machine for `kel doctor`.
#pragma once

#include "doctor/diagnosis.h"

/// What the user wants to know.
struct DoctorQuestions {
    bool isForDesigner = true;
    QStringList pluginFolders; ///< Looked through in place of Qt's own; empty for Qt's.
    QString catalogue;         ///< Empty for none.
};

/// Gathers what there is to know. Starts this program anew to see whether the display opens, since Qt ends
/// a program when it does not. Needs a core application; opens \a questions.catalogue as the
/// application's.
MachineFacts lookAround(const DoctorQuestions &questions);

/// What the program started anew does: opens the display and prints the platform and the number of fonts.
int probeDisplay(int argc, char **argv);
