/// \file
/// A catalogue as an SQLite file (docs/formats/catalogue.md) and the variables file beside it.
#pragma once

#include "catalogue/cataloguerows.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

/// A connection of its own to an SQLite file, gone with this object. GUI thread only.
class CatalogueConnection
{
public:
    enum class Access { Read, Write };

    /// Opens \a path; see isOpen(). Waits at most a fraction of a second for a lock.
    CatalogueConnection(const QString &path, Access access);
    ~CatalogueConnection();
    CatalogueConnection(const CatalogueConnection &) = delete;
    CatalogueConnection &operator=(const CatalogueConnection &) = delete;

    bool isOpen() const { return m_isOpen; }
    QSqlDatabase &database() { return m_database; }

private:
    QSqlDatabase m_database;
    bool m_isOpen = false;
};

/// How much of a catalogue is looked at to find out whether it is damaged.
enum class CatalogueCheck {
    Pages, ///< Every page of every table. When one is odd, or some are given up, all of it as with Whole.
    Whole, ///< All that SQLite checks: every row and index too, and whether each page belongs somewhere.
};

/// Throws a CommandError that names \a path when it is missing, locked, damaged or no catalogue, which has
/// to have a table "devices".
void checkCatalogueFile(const QString &path, CatalogueCheck extent = CatalogueCheck::Whole);

/// Everything that a catalogue's files hold.
struct CatalogueFile {
    CatalogueData data;
    QStringList problems;     ///< Missing tables and columns, and cells that are neither a number nor a text.
    QStringList foreignParts; ///< Tables and columns that are none of a catalogue's.

    /// Reads the catalogue \a path and the variables file beside it. Throws as checkCatalogueFile() does.
    static CatalogueFile read(const QString &path);
};

/// The variables file that belongs to the catalogue \a path.
QString variablesPathOf(const QString &path);

/// Writes \a data as a new catalogue to \a path and, with \a hasVariables, its variables file. Both
/// are complete before either takes its place. Throws a CommandError that names the file, and leaves what
/// was there, when something cannot be written, when \a path is there and is no catalogue of this
/// kind alone, and when the variables file was not made here. \a source is named in the variables file.
void writeCatalogueFile(const CatalogueData &data, bool hasVariables, const QString &path, const QString &source);
