/// \file
/// A catalogue in memory: its sections, their columns and rows, whatever file they came from.
#pragma once

#include <QString>
#include <QVector>

#include <array>
#include <cstddef>
#include <optional>
#include <variant>

/// The sections of a catalogue's source, in the order in which they are written.
enum class CatalogueSection { Vendors, Devices, Commands, Answers, Instances, Objects, Properties, Packets, Variables };
constexpr int CatalogueSectionCount = 9;

/// Line and column, both from 1; 0 in what was read from a database.
struct CataloguePlace {
    int line = 0;
    int column = 0;
};

/// A cell: nothing (NULL in the database), a number or a text.
using CatalogueCell = std::variant<std::monostate, qint64, QString>;

/// One row, a cell for each column of its section.
struct CatalogueRow {
    QVector<CatalogueCell> cells;
    QVector<CataloguePlace> places; ///< Of each cell; without elements when it came from a database.
    CataloguePlace place;           ///< Where the row begins.

    bool isNull(int column) const { return std::holds_alternative<std::monostate>(cells.at(column)); }
    std::optional<qint64> number(int column) const; ///< Nothing when the cell holds no number.
    std::optional<QString> text(int column) const;  ///< Nothing when the cell holds no text.
    CataloguePlace placeOf(int column) const { return places.isEmpty() ? place : places.at(column); }
};

/// All rows of a catalogue.
class CatalogueData
{
public:
    QVector<CatalogueRow> &rows(CatalogueSection section) { return m_rows[std::size_t(section)]; }
    const QVector<CatalogueRow> &rows(CatalogueSection section) const { return m_rows[std::size_t(section)]; }

private:
    std::array<QVector<CatalogueRow>, CatalogueSectionCount> m_rows;
};

/// What a column of a section holds, and where it stands in the database.
struct CatalogueColumn {
    enum class Kind { Id, Number, Text, CommandText, AnswerText, Template };

    const char *key;                          ///< In the source and in what is shown.
    const char *column;                       ///< In the database's table.
    Kind kind = Kind::Text;                   ///< Id is a number from 0 that no other row of the section has.
    std::optional<CatalogueSection> refersTo; ///< Set when the number is the Id of a row there.
    bool isRequired = false;                  ///< A source has to give it.

    bool isNumber() const { return kind == Kind::Id || kind == Kind::Number; }
};

/// A section: its names and its columns.
struct CatalogueTable {
    const char *section; ///< In the source.
    const char *table;   ///< In the database; empty for variables, which stand in a file of their own.
    const char *noun;    ///< What one row is called in a message.
    QVector<CatalogueColumn> columns;

    int indexOf(const QString &key) const; ///< Of the column with this key; -1 when there is none.
};

const CatalogueTable &catalogueTable(CatalogueSection section);

/// Calls \a action with each section, in order.
template <typename Action>
void forEachCatalogueSection(Action action)
{
    for (int i = 0; i < CatalogueSectionCount; ++i)
        action(CatalogueSection(i));
}

/// Number of a column of a section, for those who need a certain one.
namespace CatalogueColumns
{
constexpr int Id = 0; ///< Of every section that has one.
constexpr int VendorName = 1;
constexpr int DeviceName = 1;
constexpr int DeviceVendor = 2;
constexpr int DeviceVname = 3;
constexpr int CommandDevice = 1; ///< Of commands and of answers.
constexpr int CommandText = 2;
constexpr int CommandDescription = 3;
constexpr int InstanceDevice = 1;
constexpr int InstanceName = 2;
constexpr int InstanceDeviceId = 3;
constexpr int ObjectDevice = 1;
constexpr int ObjectName = 2;
constexpr int PropertyName = 2;
constexpr int PacketObject = 1;
constexpr int PacketName = 2;
constexpr int PacketArgsCount = 3;
constexpr int PacketFlags = 4;
constexpr int PacketCommand = 5;
constexpr int VariableName = 0;
constexpr int VariableValue = 1;
} // namespace CatalogueColumns

/// The column whose text is a row's name, to which a reference may point; -1 when rows have none.
int catalogueNameColumn(CatalogueSection section);

/// "command 11", or "a command" when it has no number: how a message names \a row.
QString catalogueRowTitle(CatalogueSection section, const CatalogueRow &row);
