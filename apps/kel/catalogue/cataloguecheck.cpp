#include "catalogue/cataloguecheck.h"

#include "catalogue/cataloguetext.h"
#include "printable.h"

#include <variabletext.h>

#include <QHash>
#include <QSet>

#include <limits>

namespace
{

using namespace CatalogueColumns;
using Kind = CatalogueColumn::Kind;
using Section = CatalogueSection;

constexpr int MaxByte = 255;

QString quoted(const QString &text)
{
    return QLatin1Char('"') + printable(text.left(60)) + QLatin1Char('"');
}

/// Walks all rows once and notes what is wrong.
class RowsChecker
{
public:
    explicit RowsChecker(const CatalogueData &data)
        : m_data(data)
    {
    }

    QVector<CatalogueFinding> check();

private:
    void collectNumbers();
    void checkRow(const CatalogueRow &row);
    void checkCell(const CatalogueRow &row, int column);
    void checkNumber(const CatalogueRow &row, int column, qint64 number);
    void checkText(const CatalogueRow &row, int column, const QString &text);
    void checkName(const CatalogueRow &row);
    QString nameScope(const CatalogueRow &row) const;
    void checkInstance(const CatalogueRow &row);
    void checkDuration(const CatalogueRow &row);
    void report(const CatalogueRow &row, int column, const QString &what);

    const CatalogueData &m_data;
    QVector<CatalogueFinding> m_findings;
    Section m_section = Section::Vendors; ///< Whose rows are being looked at.
    QHash<int, QSet<qint64>> m_numbers;   ///< All Ids of each section.
    QSet<qint64> m_numbersSoFar;          ///< Ids of the section that is being looked at.
    QHash<QString, qint64> m_namesSoFar;  ///< Names of that section, with their rows' numbers.
    QHash<qint64, QString> m_objectNames; ///< By number.
    QSet<qint64> m_devicesWithVendor;
    QSet<qint64> m_devicesThatUseTheirId; ///< Those whose texts hold "%id".
};

QVector<CatalogueFinding> RowsChecker::check()
{
    collectNumbers();
    forEachCatalogueSection([this](Section section) {
        m_section = section;
        m_numbersSoFar.clear();
        m_namesSoFar.clear();
        for (const CatalogueRow &row : m_data.rows(section))
            checkRow(row);
    });
    return m_findings;
}

void RowsChecker::collectNumbers()
{
    forEachCatalogueSection([this](Section section) {
        if (catalogueTable(section).columns.at(Id).kind != Kind::Id)
            return;
        for (const CatalogueRow &row : m_data.rows(section)) {
            if (const auto id = row.number(Id))
                m_numbers[int(section)].insert(*id);
        }
    });
    for (const CatalogueRow &row : m_data.rows(Section::Objects))
        m_objectNames.insert(row.number(Id).value_or(-1), row.text(ObjectName).value_or(QString()));
    for (const CatalogueRow &row : m_data.rows(Section::Devices)) {
        if (!row.isNull(DeviceVendor))
            m_devicesWithVendor.insert(row.number(Id).value_or(-1));
    }
    for (const Section section : {Section::Commands, Section::Answers}) {
        for (const CatalogueRow &row : m_data.rows(section)) {
            if (usesDeviceId(row.text(CommandText).value_or(QString())))
                m_devicesThatUseTheirId.insert(row.number(CommandDevice).value_or(-1));
        }
    }
}

void RowsChecker::checkRow(const CatalogueRow &row)
{
    for (int column = 0; column < row.cells.size(); ++column)
        checkCell(row, column);
    checkName(row);
    if (m_section == Section::Instances)
        checkInstance(row);
    if (m_section == Section::Properties && row.text(PropertyName) == QLatin1String("name"))
        report(row, PropertyName, QStringLiteral("an object's name stands in the section \"objects\""));
    if (m_section == Section::Variables)
        checkDuration(row);
}

void RowsChecker::checkCell(const CatalogueRow &row, int column)
{
    const CatalogueColumn &about = catalogueTable(m_section).columns.at(column);
    if (const auto number = row.number(column))
        checkNumber(row, column, *number);
    else if (const auto text = row.text(column))
        checkText(row, column, *text);
    else if (about.kind == Kind::Id)
        report(row, column, QStringLiteral("has no number"));
}

void RowsChecker::checkNumber(const CatalogueRow &row, int column, qint64 number)
{
    const CatalogueColumn &about = catalogueTable(m_section).columns.at(column);
    const QString key = QLatin1String(about.key);
    const qint64 least = about.kind == Kind::Id ? 0 : std::numeric_limits<int>::min();
    if (number < least || number > std::numeric_limits<int>::max())
        return report(row, column,
                      QStringLiteral("%1 %2 is not between %3 and %4")
                          .arg(key, QString::number(number), QString::number(least),
                               QString::number(std::numeric_limits<int>::max())));
    if (about.kind == Kind::Id) {
        if (m_numbersSoFar.contains(number))
            report(row, column, QStringLiteral("the number is taken already"));
        m_numbersSoFar.insert(number);
    }
    if (about.refersTo && !m_numbers[int(*about.refersTo)].contains(number))
        report(row, column,
               QStringLiteral("there is no %1 %2")
                   .arg(QLatin1String(catalogueTable(*about.refersTo).noun), QString::number(number)));
}

void RowsChecker::checkText(const CatalogueRow &row, int column, const QString &text)
{
    QString fault;
    switch (catalogueTable(m_section).columns.at(column).kind) {
    case Kind::CommandText:
        fault = commandTextFault(text);
        break;
    case Kind::AnswerText:
        fault = answerTextFault(text);
        break;
    case Kind::Template:
        fault = templateFault(text);
        break;
    case Kind::Id:
    case Kind::Number:
        fault = QStringLiteral("%1 is %2, not a number")
                    .arg(QLatin1String(catalogueTable(m_section).columns.at(column).key), quoted(text));
        break;
    case Kind::Text:
        break;
    }
    if (!fault.isEmpty())
        report(row, column, fault);
}

/// A name may come again where something else tells the two apart: devices of two vendors, instances of
/// two devices, packets of objects of two names.
QString RowsChecker::nameScope(const CatalogueRow &row) const
{
    switch (m_section) {
    case Section::Devices:
        return QString::number(row.number(DeviceVendor).value_or(-1));
    case Section::Instances:
        return QString::number(row.number(InstanceDevice).value_or(-1));
    case Section::Packets:
        return m_objectNames.value(row.number(PacketObject).value_or(-1));
    default:
        return QString();
    }
}

void RowsChecker::checkName(const CatalogueRow &row)
{
    // Objects of one name share their packets, and properties belong to their objects.
    const int column = catalogueNameColumn(m_section);
    if (column < 0 || row.isNull(column) || m_section == Section::Objects || m_section == Section::Properties)
        return;
    const QString name = row.text(column).value_or(QString());
    const QString key = nameScope(row) + QLatin1Char('\n') + name;
    const auto taken = m_namesSoFar.constFind(key);
    if (taken == m_namesSoFar.constEnd()) {
        m_namesSoFar.insert(key, row.number(Id).value_or(-1));
        return;
    }
    const QString noun = QLatin1String(catalogueTable(m_section).noun);
    report(row, column,
           m_section == Section::Variables
               ? QStringLiteral("the name is taken already")
               : QStringLiteral("the name %1 is taken by %2 %3").arg(quoted(name), noun, QString::number(*taken)));
}

void RowsChecker::checkInstance(const CatalogueRow &row)
{
    const qint64 device = row.number(InstanceDevice).value_or(-1);
    if (m_numbers[int(Section::Devices)].contains(device) && !m_devicesWithVendor.contains(device))
        report(row, InstanceDevice,
               QStringLiteral("its device %1 has no vendor, so a panel finds no commands for it").arg(device));
    const qint64 address = row.number(InstanceDeviceId).value_or(0);
    if ((address < 0 || address > MaxByte) && m_devicesThatUseTheirId.contains(device))
        report(row, InstanceDeviceId,
               QStringLiteral("device_id %1 is not between 0 and 255, and texts of device %2 hold %id")
                   .arg(QString::number(address), QString::number(device)));
}

void RowsChecker::checkDuration(const CatalogueRow &row)
{
    const QString value = row.text(VariableValue).value_or(QString());
    const QString duration = splitVar(value).second;
    if (duration == QLatin1String("inf"))
        return;
    const QStringList words = duration.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    bool isNumber = false;
    const double number = words.isEmpty() ? 0. : words.first().toDouble(&isNumber);
    if (words.size() != 2 || !isNumber || number < 0.)
        report(row, VariableValue,
               QStringLiteral("the duration %1 is neither \"inf\" nor a number and a unit, as \"10 s\"")
                   .arg(quoted(duration)));
}

void RowsChecker::report(const CatalogueRow &row, int column, const QString &what)
{
    m_findings.append({row.placeOf(column), QStringLiteral("%1: %2").arg(catalogueRowTitle(m_section, row), what)});
}

} // namespace

QVector<CatalogueFinding> checkCatalogueRows(const CatalogueData &data)
{
    return RowsChecker(data).check();
}
