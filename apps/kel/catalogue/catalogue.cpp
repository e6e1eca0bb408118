#include "catalogue/catalogue.h"

#include "catalogue/cataloguefiles.h"
#include "catalogue/cataloguesource.h"
#include "command.h"

#include <kelglobals.h>

#include <QSqlError>

namespace
{

void requireOpenCatalogue(const QString &path)
{
    if (!Kel::commandsDB.database.isOpen())
        throw CommandError(QStringLiteral("%1: not a readable catalogue (%2)")
                               .arg(path, Kel::commandsDB.database.lastError().databaseText()));
}

} // namespace

void openCatalogue(const QString &path)
{
    checkCatalogueFile(path);
    Kel::commandsDB.setDatabase(path);
    requireOpenCatalogue(path);
}

void openCatalogueUnread(const QString &path, CatalogueCheck extent)
{
    checkCatalogueFile(path, extent);
    Kel::commandsDB.openDatabase(path);
    requireOpenCatalogue(path);
}

void makeCatalogue(const QString &source, const QString &path)
{
    const CatalogueSource read = CatalogueSource::fromText(readCatalogueSource(source));
    const QStringList lines = findingLines(source, read.findings);
    if (lines.size() > 1)
        throw CommandError(
            QStringLiteral("%1 (and %2 more, see kel catalog check)").arg(lines.first()).arg(lines.size() - 1));
    if (!lines.isEmpty())
        throw CommandError(lines.first());
    writeCatalogueFile(read.data, read.hasVariables, path, source);
}
