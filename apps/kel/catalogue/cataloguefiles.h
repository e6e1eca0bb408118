/// \file
/// Catalogues in either form, the SQLite file that runs or the TOML source that people write.
#pragma once

#include "catalogue/cataloguecheck.h"
#include "catalogue/cataloguerows.h"

#include <QByteArray>
#include <QStringList>

/// A catalogue of either form with everything that is wrong with it.
struct AnyCatalogue {
    CatalogueData data;
    bool isSource = false; ///< A source with mistakes may lack what they are about.
    QStringList mistakes;  ///< "FILE:LINE:COLUMN: …" of a source, "FILE: …" of a database, one line each.

    /// Reads \a path. Throws a CommandError that names it when it is neither form or cannot be read.
    static AnyCatalogue read(const QString &path);
};

/// The content of a source, cut off above CatalogueSource::MaxSize. Throws a CommandError when \a path is
/// no readable file.
QByteArray readCatalogueSource(const QString &path);

/// \a findings as lines that name \a file.
QStringList findingLines(const QString &file, const QVector<CatalogueFinding> &findings);
