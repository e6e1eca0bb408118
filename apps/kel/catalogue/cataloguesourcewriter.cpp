#include "catalogue/cataloguesource.h"

#include <commandargument.h>

#include <QHash>
#include <QStringList>

namespace
{

using namespace CatalogueColumns;
using Section = CatalogueSection;

/// \a text as a TOML text on one line.
QString tomlText(const QString &text)
{
    QString written = QStringLiteral("\"");
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            written += QLatin1Char('\\') + QString(c);
        else if (c == QLatin1Char('\n'))
            written += QStringLiteral("\\n");
        else if (c == QLatin1Char('\t'))
            written += QStringLiteral("\\t");
        else if (c.isPrint() || c.isSurrogate())
            written += c;
        else
            written += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return written + QLatin1Char('"');
}

/// Writes the rows of a catalogue, one a line.
class SourceWriter
{
public:
    explicit SourceWriter(const CatalogueData &data);

    QString text() const;

private:
    QString rowText(Section section, const CatalogueRow &row) const;
    QString cellText(const CatalogueColumn &column, const CatalogueCell &cell) const;
    bool isWhatIsFilledIn(Section section, const CatalogueRow &row, int column) const;
    bool isFilledIn(Section section, const CatalogueRow &row, int column) const;

    const CatalogueData &m_data;
    QHash<int, QHash<qint64, QString>> m_uniqueNames; ///< Names by Id, those that only one row has.
    QHash<qint64, QString> m_vendors;
};

SourceWriter::SourceWriter(const CatalogueData &data)
    : m_data(data)
{
    for (const Section section : {Section::Vendors, Section::Devices, Section::Objects}) {
        QHash<QString, int> counts;
        const int nameColumn = catalogueNameColumn(section);
        for (const CatalogueRow &row : data.rows(section))
            ++counts[row.text(nameColumn).value_or(QString())];
        for (const CatalogueRow &row : data.rows(section)) {
            const auto name = row.text(nameColumn);
            const auto id = row.number(Id);
            if (id && name && !name->isEmpty() && counts.value(*name) == 1)
                m_uniqueNames[int(section)].insert(*id, *name);
        }
    }
    for (const CatalogueRow &vendor : data.rows(Section::Vendors)) {
        if (const auto id = vendor.number(Id))
            m_vendors.insert(*id, vendor.text(VendorName).value_or(QString()));
    }
}

QString SourceWriter::text() const
{
    QString written;
    forEachCatalogueSection([this, &written](Section section) {
        if (m_data.rows(section).isEmpty())
            return;
        written += QLatin1String(catalogueTable(section).section) + QStringLiteral(" = [\n");
        for (const CatalogueRow &row : m_data.rows(section))
            written += QStringLiteral("    {%1},\n").arg(rowText(section, row));
        written += QStringLiteral("]\n\n");
    });
    written.chop(1);
    return written;
}

QString SourceWriter::rowText(Section section, const CatalogueRow &row) const
{
    QStringList pairs;
    QStringList nulls;
    const QVector<CatalogueColumn> &columns = catalogueTable(section).columns;
    for (int column = 0; column < columns.size(); ++column) {
        const CatalogueColumn &about = columns.at(column);
        const QString key = QLatin1String(about.key);
        if (!row.isNull(column)) {
            if (!isWhatIsFilledIn(section, row, column))
                pairs << QStringLiteral("%1 = %2").arg(key, cellText(about, row.cells.at(column)));
        } else if (about.isRequired || isFilledIn(section, row, column)) {
            nulls << tomlText(key);
        }
    }
    if (!nulls.isEmpty())
        pairs << QStringLiteral("null = [%1]").arg(nulls.join(QStringLiteral(", ")));
    return pairs.join(QStringLiteral(", "));
}

QString SourceWriter::cellText(const CatalogueColumn &column, const CatalogueCell &cell) const
{
    if (const auto *text = std::get_if<QString>(&cell))
        return tomlText(*text);
    const qint64 number = std::get<qint64>(cell);
    if (column.refersTo) {
        const QHash<qint64, QString> names = m_uniqueNames.value(int(*column.refersTo));
        if (names.contains(number))
            return tomlText(names.value(number));
    }
    return QString::number(number);
}

/// Whether the reader fills this cell in when the row leaves it out.
bool SourceWriter::isFilledIn(Section section, const CatalogueRow &row, int column) const
{
    if (section == Section::Packets)
        return column == PacketArgsCount || column == PacketFlags;
    return section == Section::Devices && column == DeviceVname && row.number(DeviceVendor) &&
           m_vendors.contains(*row.number(DeviceVendor));
}

/// Whether the cell holds just what the reader fills in.
bool SourceWriter::isWhatIsFilledIn(Section section, const CatalogueRow &row, int column) const
{
    if (!isFilledIn(section, row, column))
        return false;
    if (section == Section::Devices)
        return row.text(DeviceVname) == m_vendors.value(*row.number(DeviceVendor));
    if (column == PacketFlags)
        return row.number(PacketFlags) == 0;
    const QString command = row.text(PacketCommand).value_or(QString());
    return row.number(PacketArgsCount) == customArgumentsCount(packetArgumentsFromText(command));
}

} // namespace

QByteArray catalogueSourceText(const CatalogueData &data)
{
    return SourceWriter(data).text().toUtf8();
}
