/// \file
/// Opens and makes catalogues, and says in a line what is wrong with one.
#pragma once

#include "catalogue/cataloguedatabase.h"

#include <QString>

/// Makes \a path the application's catalogue (Kel::commandsDB) after a look at it. Throws a
/// CommandError that names the file when it is missing, locked, damaged or no catalogue; waits at most
/// a fraction of a second for a lock. GUI thread only.
void openCatalogue(const QString &path);

/// The same, but the catalogue's lists stay empty until somebody reads them (KvCommands::read()); its database can be
/// asked at once. Whoever has only the pages checked has the rest to do.
void openCatalogueUnread(const QString &path, CatalogueCheck extent);

/// Makes the catalogue \a path from the TOML file \a source (docs/formats/catalogue-source.md), and the
/// variables file beside it when the source has variables. Throws a CommandError that names the file, for
/// a mistake in the source with its line and column; then nothing was written. A catalogue that is there
/// is replaced at once and as a whole; any other file is left alone.
void makeCatalogue(const QString &source, const QString &path);
