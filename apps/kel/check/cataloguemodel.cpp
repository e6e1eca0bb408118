#include "check/cataloguemodel.h"

#include "command.h"

#include <kelglobals.h>

#include <QSqlQuery>
#include <QVariant>

namespace
{

QSqlQuery run(const QString &statement, int value)
{
    QSqlQuery query(Kel::commandsDB.database);
    query.setForwardOnly(true);
    if (query.prepare(statement)) {
        query.addBindValue(value);
        query.exec();
    }
    return query;
}

/// The texts of a make in \a table; a later row takes the place of an earlier one of its number, as it
/// does for the devices of a panel.
QMap<int, QString> readTexts(const QString &table, int make)
{
    QMap<int, QString> texts;
    QSqlQuery rows = run(QStringLiteral("SELECT id,command FROM %1 WHERE device=?").arg(table), make);
    for (int count = 0; rows.next(); ++count) {
        texts.insert(rows.value(0).toInt(), rows.value(1).toString());
        if (count >= CatalogueModel::MaxRows)
            throw CommandError(QStringLiteral("%1: more than %2 %3 for device %4")
                                   .arg(Kel::commandsDB.database.databaseName())
                                   .arg(CatalogueModel::MaxRows)
                                   .arg(table)
                                   .arg(make));
    }
    return texts;
}

} // namespace

const CatalogueDevice &CatalogueModel::device(int currentID)
{
    const auto known = m_devices.find(currentID);
    if (known != m_devices.end())
        return known->second;
    return m_devices.emplace(currentID, readDevice(currentID)).first->second;
}

CatalogueDevice CatalogueModel::readDevice(int currentID)
{
    CatalogueDevice device;
    device.row = currentID;
    QSqlQuery current = run(QStringLiteral("SELECT device,name,device_id FROM current WHERE id=?"), currentID);
    if (!current.next()) {
        device.problem = QStringLiteral("the catalogue has no device %1 in \"current\"").arg(currentID);
        return device;
    }
    const int make = current.value(0).toInt();
    device.name = current.value(1).toString();
    device.deviceID = current.value(2).toInt();
    device.make = readMake(make);
    countTexts(device);
    if (!device.make)
        device.problem =
            QStringLiteral("device %1 \"%2\" of the catalogue is a make %3 that has no row in \"devices\", "
                           "or no vendor")
                .arg(QString::number(currentID), device.name, QString::number(make));
    return device;
}

/// Every device of a make is looked at anew, as its own id stands in the texts.
void CatalogueModel::countTexts(const CatalogueDevice &device)
{
    if (device.make)
        m_texts += int(device.make->commands.size() + device.make->answers.size());
    if (m_texts > MaxTexts)
        throw CommandError(QStringLiteral("%1: the devices of the panel have more than %2 commands and answers")
                               .arg(Kel::commandsDB.database.databaseName())
                               .arg(MaxTexts));
}

const CatalogueMake *CatalogueModel::readMake(int number)
{
    const auto known = m_makes.find(number);
    if (known != m_makes.end())
        return &known->second;
    QSqlQuery names = run(QStringLiteral("SELECT devices.name FROM devices,vendors WHERE devices.id=? AND "
                                         "devices.vendor=vendors.id"),
                          number);
    if (!names.next())
        return nullptr;
    CatalogueMake make;
    make.number = number;
    make.name = names.value(0).toString();
    make.commands = readTexts(QStringLiteral("commands"), number);
    make.answers = readTexts(QStringLiteral("answers"), number);
    return &m_makes.emplace(number, make).first->second;
}
