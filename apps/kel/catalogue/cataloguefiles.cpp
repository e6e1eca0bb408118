#include "catalogue/cataloguefiles.h"

#include "catalogue/cataloguedatabase.h"
#include "catalogue/cataloguesource.h"
#include "printable.h"
#include "wholefile.h"

#include <QFile>
#include <QFileInfo>

namespace
{

const char DatabaseMark[] = "SQLite format 3"; // and a zero byte, as the array has

bool isDatabase(const QString &path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
           file.read(sizeof DatabaseMark) == QByteArray(DatabaseMark, sizeof DatabaseMark);
}

} // namespace

QByteArray readCatalogueSource(const QString &path)
{
    return readWholeFile(path, CatalogueSource::MaxSize);
}

QStringList findingLines(const QString &file, const QVector<CatalogueFinding> &findings)
{
    QStringList lines;
    for (const CatalogueFinding &finding : findings) {
        const QString place = finding.place.line > 0
                                  ? QStringLiteral(":%1:%2").arg(QString::number(finding.place.line),
                                                                 QString::number(finding.place.column))
                                  : QString();
        lines << QStringLiteral("%1%2: %3").arg(printable(file), place, finding.text);
    }
    return lines;
}

AnyCatalogue AnyCatalogue::read(const QString &path)
{
    AnyCatalogue any;
    if (!isDatabase(path)) {
        const CatalogueSource source = CatalogueSource::fromText(readCatalogueSource(path));
        any.data = source.data;
        any.isSource = true;
        any.mistakes = findingLines(path, source.findings);
        return any;
    }
    const CatalogueFile file = CatalogueFile::read(path);
    any.data = file.data;
    for (const QString &problem : file.problems)
        any.mistakes << QStringLiteral("%1: %2").arg(printable(path), problem);
    any.mistakes += findingLines(path, checkCatalogueRows(file.data));
    return any;
}
