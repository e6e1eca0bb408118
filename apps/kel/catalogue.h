/// \file
/// Opens and makes catalogues, and says in a line what is wrong with one.
#pragma once

#include <QString>

/// Makes \a path the application's catalogue (Kel::commandsDB) after a look at it. Throws a
/// CommandError that names the file when it is missing, locked, damaged or no catalogue; waits at most
/// a fraction of a second for a lock. GUI thread only.
void openCatalogue(const QString &path);

/// Makes a catalogue at \a path from the SQL statements in the file \a source, each ended by a
/// semicolon at the end of a line. Throws a CommandError that names the file; then there is no file at
/// \a path, as when it was there before.
void makeCatalogue(const QString &source, const QString &path);
