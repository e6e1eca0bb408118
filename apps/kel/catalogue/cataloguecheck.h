/// \file
/// What is wrong with the rows of a catalogue.
#pragma once

#include "catalogue/cataloguerows.h"

/// One mistake in one row.
struct CatalogueFinding {
    CataloguePlace place; ///< Where it stands in the source; 0 when the rows came from a database.
    QString text;         ///< "command 11: …", one line.
};

/// Numbers and names that are there twice, references to nothing, texts that cannot be read, values that
/// no byte holds. In the order of the sections and their rows.
QVector<CatalogueFinding> checkCatalogueRows(const CatalogueData &data);
