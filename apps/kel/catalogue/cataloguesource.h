/// \file
/// The source of a catalogue, a TOML file that people write (docs/formats/catalogue-source.md).
#pragma once

#include "catalogue/cataloguecheck.h"
#include "catalogue/cataloguerows.h"

#include <QByteArray>

/// A source as it was read. With findings it makes no catalogue.
struct CatalogueSource {
    CatalogueData data;
    bool hasVariables = false;          ///< The source has the section "variables", maybe an empty one.
    QVector<CatalogueFinding> findings; ///< What is wrong, in the order of the file.

    static constexpr int MaxSize = 16 * 1024 * 1024; ///< Bytes of the file.

    /// Reads and checks \a text. Any bytes are safe to give.
    static CatalogueSource fromText(const QByteArray &text);
};

/// The source that fromText() reads as \a data again, cell by cell. Number columns must hold no text,
/// and texts must be valid UTF-16. References are written as names where a name is enough.
QByteArray catalogueSourceText(const CatalogueData &data);
