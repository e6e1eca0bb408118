/// \file
/// A catalogue as large as a site may have.
#pragma once

#include <QString>

constexpr int HugeCataloguePackets = 10000;

/// Makes a catalogue at \a path, of 100 objects with 100 packets each and one device with a command and an
/// answer, through a database connection of its own that is closed again.
void makeHugeCatalogue(const QString &path);
