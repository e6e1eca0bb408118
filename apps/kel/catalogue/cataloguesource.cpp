#include "catalogue/cataloguesource.h"

#include "catalogue/tomldepth.h"
#include "catalogue/tomlfile.h"
#include "printable.h"

#include <commandargument.h>

#include <QHash>

#include <algorithm>
#include <string_view>

namespace
{

using namespace CatalogueColumns;
using Section = CatalogueSection;

constexpr int MaxDotsOfALine = 4;
constexpr std::string_view NullKey = "null";

/// A mark of the byte order at the front of a text would be dropped, so something stands before it.
QString textOf(std::string_view text)
{
    const QByteArray marked = 'x' + QByteArray(text.data(), int(text.size()));
    return QString::fromUtf8(marked.constData(), marked.size()).mid(1);
}

QString quoted(const QString &text)
{
    return QLatin1Char('"') + printable(text.left(60)) + QLatin1Char('"');
}

CataloguePlace placeOf(const toml::source_region &region)
{
    return {int(region.begin.line), int(region.begin.column)};
}

/// "a number", as a message names the type of a value.
QString typeName(const toml::node &node)
{
    switch (node.type()) {
    case toml::node_type::table:
        return QStringLiteral("a table");
    case toml::node_type::array:
        return QStringLiteral("a list");
    case toml::node_type::string:
        return QStringLiteral("a text");
    case toml::node_type::integer:
        return QStringLiteral("a whole number");
    case toml::node_type::floating_point:
        return QStringLiteral("a number with a fraction");
    case toml::node_type::boolean:
        return QStringLiteral("true or false");
    default:
        return QStringLiteral("a date or time");
    }
}

/// Turns a parsed file into rows and notes everything that does not fit.
class SourceReader
{
public:
    CatalogueSource read(const QByteArray &text);

private:
    void readFile(const toml::table &file);
    void readSection(Section section, const toml::node &node);
    void readRow(const toml::table &given);
    void readKey(const toml::key &key, const toml::node &node, CatalogueRow &row);
    void readCell(int column, const toml::node &node, CatalogueRow &row);
    void readNulls(const toml::node &node, CatalogueRow &row, QVector<bool> &isNull);
    void checkRequired(const CatalogueRow &row, const QVector<bool> &isGiven);
    void resolveNames();
    void resolveName(Section section, int column, CatalogueRow &row);
    void fillDefaults();
    void report(CataloguePlace place, const QString &what);

    CatalogueSource m_source;
    Section m_section = Section::Vendors; ///< Whose rows are being read.
    /// Cells that \c null names, by section: they get no default.
    QHash<int, QVector<QVector<bool>>> m_nulls;
    QHash<int, QMultiHash<QString, qint64>> m_names; ///< Ids of each section by name.
};

CatalogueSource SourceReader::read(const QByteArray &text)
{
    if (text.size() > CatalogueSource::MaxSize) {
        report({}, QStringLiteral("larger than %1 MiB, so hardly a catalogue's source")
                       .arg(CatalogueSource::MaxSize / 1024 / 1024));
        return m_source;
    }
    if (const int line = firstDeepTomlLine(text, MaxDotsOfALine)) {
        report({line, 1}, QStringLiteral("more than %1 dots between names").arg(MaxDotsOfALine));
        return m_source;
    }
    const toml::parse_result result = toml::parse(std::string_view(text.constData(), size_t(text.size())));
    if (!result) {
        report(placeOf(result.error().source()),
               printable(textOf(result.error().description()).simplified().left(200)));
        return m_source;
    }
    readFile(result.table());
    resolveNames();
    if (m_source.findings.isEmpty()) {
        fillDefaults();
        m_source.findings = checkCatalogueRows(m_source.data);
    }
    std::stable_sort(m_source.findings.begin(), m_source.findings.end(),
                     [](const CatalogueFinding &a, const CatalogueFinding &b) {
                         return std::pair(a.place.line, a.place.column) < std::pair(b.place.line, b.place.column);
                     });
    return m_source;
}

void SourceReader::readFile(const toml::table &file)
{
    for (const auto &[key, node] : file) {
        const QString name = textOf(key.str());
        bool isKnown = false;
        forEachCatalogueSection([&, this, &value = node](Section section) {
            if (name != QLatin1String(catalogueTable(section).section))
                return;
            isKnown = true;
            readSection(section, value);
        });
        if (!isKnown)
            report(placeOf(key.source()),
                   QStringLiteral("%1 is none of: vendors, devices, commands, answers, instances, objects, "
                                  "properties, packets, variables")
                       .arg(quoted(name)));
    }
}

void SourceReader::readSection(Section section, const toml::node &node)
{
    m_section = section;
    m_source.hasVariables = m_source.hasVariables || section == Section::Variables;
    const QString name = QLatin1String(catalogueTable(section).section);
    const toml::array *rows = node.as_array();
    if (!rows)
        return report(placeOf(node.source()), QStringLiteral("%1 is %2, not a list of rows: write [[%1]], or %1 = "
                                                             "[{…}, {…}]")
                                                  .arg(name, typeName(node)));
    for (const toml::node &row : *rows) {
        if (const toml::table *given = row.as_table())
            readRow(*given);
        else
            report(placeOf(row.source()), QStringLiteral("a row of %1 is %2, not a table").arg(name, typeName(row)));
    }
}

void SourceReader::readRow(const toml::table &given)
{
    const int count = catalogueTable(m_section).columns.size();
    CatalogueRow row;
    row.place = placeOf(given.source());
    row.cells.resize(count);
    row.places.fill(row.place, count);
    QVector<bool> isNull(count, false);
    if (const toml::node *nulls = given.get(NullKey))
        readNulls(*nulls, row, isNull);
    for (const auto &[key, node] : given) {
        if (key.str() != NullKey)
            readKey(key, node, row);
    }
    QVector<bool> isGiven = isNull;
    for (int column = 0; column < count; ++column) {
        if (isNull.at(column) && !row.isNull(column))
            report(row.placeOf(column), QStringLiteral("%1 has a value and is named as null")
                                            .arg(QLatin1String(catalogueTable(m_section).columns.at(column).key)));
        isGiven[column] = isNull.at(column) || given.contains(catalogueTable(m_section).columns.at(column).key);
    }
    checkRequired(row, isGiven);
    m_source.data.rows(m_section).append(row);
    m_nulls[int(m_section)].append(isNull);
    const int nameColumn = catalogueNameColumn(m_section);
    const auto id = row.number(Id);
    if (id && nameColumn >= 0 && row.text(nameColumn))
        m_names[int(m_section)].insert(*row.text(nameColumn), *id);
}

void SourceReader::readKey(const toml::key &key, const toml::node &node, CatalogueRow &row)
{
    const QString name = textOf(key.str());
    const int column = catalogueTable(m_section).indexOf(name);
    if (column >= 0)
        return readCell(column, node, row);
    QStringList known;
    for (const CatalogueColumn &about : catalogueTable(m_section).columns)
        known << QLatin1String(about.key);
    report(placeOf(key.source()),
           QStringLiteral("%1 is none of the keys of %2: %3")
               .arg(quoted(name), QLatin1String(catalogueTable(m_section).section), known.join(QStringLiteral(", "))));
}

void SourceReader::readCell(int column, const toml::node &node, CatalogueRow &row)
{
    const CatalogueColumn &about = catalogueTable(m_section).columns.at(column);
    row.places[column] = placeOf(node.source());
    const bool isText = node.is_string();
    if (isText && (!about.isNumber() || about.refersTo)) {
        row.cells[column] = textOf(node.as_string()->get());
    } else if (node.is_integer() && about.isNumber()) {
        row.cells[column] = qint64(node.as_integer()->get());
    } else {
        const QString wanted = about.refersTo     ? QStringLiteral("a whole number or a name")
                               : about.isNumber() ? QStringLiteral("a whole number")
                                                  : QStringLiteral("a text");
        report(row.placeOf(column),
               QStringLiteral("%1 is %2, not %3").arg(QLatin1String(about.key), typeName(node), wanted));
    }
}

void SourceReader::readNulls(const toml::node &node, CatalogueRow &row, QVector<bool> &isNull)
{
    const toml::array *keys = node.as_array();
    if (!keys)
        return report(placeOf(node.source()), QStringLiteral("null is %1, not a list of keys").arg(typeName(node)));
    for (const toml::node &key : *keys) {
        const QString name = key.is_string() ? textOf(key.as_string()->get()) : QString();
        const int column = catalogueTable(m_section).indexOf(name);
        if (column < 0) {
            report(placeOf(key.source()), QStringLiteral("null names %1, no key of %2")
                                              .arg(key.is_string() ? quoted(name) : typeName(key),
                                                   QLatin1String(catalogueTable(m_section).section)));
            continue;
        }
        isNull[column] = true;
        row.places[column] = placeOf(key.source());
    }
}

void SourceReader::checkRequired(const CatalogueRow &row, const QVector<bool> &isGiven)
{
    const QVector<CatalogueColumn> &columns = catalogueTable(m_section).columns;
    for (int column = 0; column < columns.size(); ++column) {
        if (columns.at(column).isRequired && !isGiven.at(column))
            report(row.place, QStringLiteral("%1: the key \"%2\" is missing")
                                  .arg(catalogueRowTitle(m_section, row), QLatin1String(columns.at(column).key)));
    }
}

void SourceReader::resolveNames()
{
    forEachCatalogueSection([this](Section section) {
        const QVector<CatalogueColumn> &columns = catalogueTable(section).columns;
        for (CatalogueRow &row : m_source.data.rows(section)) {
            for (int column = 0; column < columns.size(); ++column) {
                if (columns.at(column).refersTo && row.text(column))
                    resolveName(section, column, row);
            }
        }
    });
}

void SourceReader::resolveName(Section section, int column, CatalogueRow &row)
{
    const Section target = *catalogueTable(section).columns.at(column).refersTo;
    const QString noun = QLatin1String(catalogueTable(target).noun);
    const QString name = *row.text(column);
    const QList<qint64> ids = m_names.value(int(target)).values(name);
    if (ids.size() == 1) {
        row.cells[column] = ids.first();
        return;
    }
    const QString title = catalogueRowTitle(section, row);
    report(row.placeOf(column), ids.isEmpty()
                                    ? QStringLiteral("%1: there is no %2 %3").arg(title, noun, quoted(name))
                                    : QStringLiteral("%1: %2 %3 is not the only one of this name; give its number")
                                          .arg(title, noun, quoted(name)));
}

/// What a source may leave to us, since it follows from something else in it.
void SourceReader::fillDefaults()
{
    QHash<qint64, QString> vendors;
    for (const CatalogueRow &vendor : m_source.data.rows(Section::Vendors))
        vendors.insert(vendor.number(Id).value_or(-1), vendor.text(VendorName).value_or(QString()));

    QVector<CatalogueRow> &devices = m_source.data.rows(Section::Devices);
    for (int i = 0; i < devices.size(); ++i) {
        const auto vendor = devices.at(i).number(DeviceVendor);
        const bool isLeftOut =
            devices.at(i).isNull(DeviceVname) && !m_nulls[int(Section::Devices)].at(i).at(DeviceVname);
        if (isLeftOut && vendor && vendors.contains(*vendor))
            devices[i].cells[DeviceVname] = vendors.value(*vendor);
    }

    QVector<CatalogueRow> &packets = m_source.data.rows(Section::Packets);
    for (int i = 0; i < packets.size(); ++i) {
        const QVector<bool> &isNull = m_nulls[int(Section::Packets)].at(i);
        const QString command = packets.at(i).text(PacketCommand).value_or(QString());
        if (packets.at(i).isNull(PacketArgsCount) && !isNull.at(PacketArgsCount))
            packets[i].cells[PacketArgsCount] = qint64(customArgumentsCount(packetArgumentsFromText(command)));
        if (packets.at(i).isNull(PacketFlags) && !isNull.at(PacketFlags))
            packets[i].cells[PacketFlags] = qint64(0);
    }
}

void SourceReader::report(CataloguePlace place, const QString &what)
{
    m_source.findings.append({place, what});
}

} // namespace

CatalogueSource CatalogueSource::fromText(const QByteArray &text)
{
    return SourceReader().read(text);
}
