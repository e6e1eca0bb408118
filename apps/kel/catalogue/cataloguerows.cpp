#include "catalogue/cataloguerows.h"

#include "printable.h"

namespace
{

using Kind = CatalogueColumn::Kind;
using Section = CatalogueSection;

/// In the order of CatalogueSection; the first columns as CatalogueColumns counts them.
const std::array<CatalogueTable, CatalogueSectionCount> Tables = {{
    {"vendors", "vendors", "vendor", {{"id", "id", Kind::Id, {}, true}, {"name", "name", Kind::Text, {}, true}}},
    {"devices",
     "devices",
     "device",
     {{"id", "id", Kind::Id, {}, true},
      {"name", "name", Kind::Text, {}, true},
      {"vendor", "vendor", Kind::Number, Section::Vendors, false},
      {"vname", "vname", Kind::Text, {}, false},
      {"gname", "gname", Kind::Text, {}, false},
      {"desc", "desc", Kind::Text, {}, false}}},
    {"commands",
     "commands",
     "command",
     {{"id", "id", Kind::Id, {}, true},
      {"device", "device", Kind::Number, Section::Devices, true},
      {"command", "command", Kind::CommandText, {}, true},
      {"description", "description", Kind::Text, {}, false}}},
    {"answers",
     "answers",
     "answer",
     {{"id", "id", Kind::Id, {}, true},
      {"device", "device", Kind::Number, Section::Devices, true},
      {"command", "command", Kind::AnswerText, {}, true},
      {"description", "description", Kind::Text, {}, false}}},
    {"instances",
     "current",
     "instance",
     {{"id", "id", Kind::Id, {}, true},
      {"device", "device", Kind::Number, Section::Devices, true},
      {"name", "name", Kind::Text, {}, true},
      {"device_id", "device_id", Kind::Number, {}, true}}},
    {"objects",
     "properties",
     "object",
     {{"id", "object_id", Kind::Id, {}, true},
      {"device", "device_id", Kind::Number, Section::Devices, true},
      {"name", "value", Kind::Text, {}, true}}},
    {"properties",
     "properties",
     "property",
     {{"object", "object_id", Kind::Number, {}, true},
      {"device", "device_id", Kind::Number, Section::Devices, true},
      {"name", "name", Kind::Text, {}, true},
      {"value", "value", Kind::Text, {}, true}}},
    {"packets",
     "packets",
     "packet",
     {{"id", "id", Kind::Id, {}, true},
      {"object", "object_id", Kind::Number, Section::Objects, true},
      {"name", "name", Kind::Text, {}, true},
      {"args_count", "args_count", Kind::Number, {}, false},
      {"flags", "flags", Kind::Number, {}, false},
      {"command", "command", Kind::Template, {}, true},
      {"desc", "desc", Kind::Text, {}, false}}},
    {"variables", "", "variable", {{"name", "", Kind::Text, {}, true}, {"value", "", Kind::Text, {}, true}}},
}};

} // namespace

std::optional<qint64> CatalogueRow::number(int column) const
{
    const auto *held = std::get_if<qint64>(&cells.at(column));
    return held ? std::optional<qint64>(*held) : std::nullopt;
}

std::optional<QString> CatalogueRow::text(int column) const
{
    const auto *held = std::get_if<QString>(&cells.at(column));
    return held ? std::optional<QString>(*held) : std::nullopt;
}

int CatalogueTable::indexOf(const QString &key) const
{
    for (int i = 0; i < columns.size(); ++i) {
        if (key == QLatin1String(columns.at(i).key))
            return i;
    }
    return -1;
}

const CatalogueTable &catalogueTable(CatalogueSection section)
{
    return Tables[std::size_t(section)];
}

int catalogueNameColumn(CatalogueSection section)
{
    return catalogueTable(section).indexOf(QStringLiteral("name"));
}

QString catalogueRowTitle(CatalogueSection section, const CatalogueRow &row)
{
    const CatalogueTable &table = catalogueTable(section);
    const QString noun = QLatin1String(table.noun);
    if (section == Section::Variables || section == Section::Properties) {
        const std::optional<QString> name = row.text(catalogueNameColumn(section));
        return name ? QStringLiteral("%1 \"%2\"").arg(noun, printable(name->left(60))) : noun;
    }
    const std::optional<qint64> id = row.number(CatalogueColumns::Id);
    return id ? QStringLiteral("%1 %2").arg(noun, QString::number(*id)) : noun;
}
