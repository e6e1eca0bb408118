#include "localdevice.h"

#include <answerpattern.h>

#include <QDebug>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <optional>

namespace
{

/// Runs \a statement with its one \a value on the application's default database, which need not be
/// there. Nothing when it does not run.
std::optional<QSqlQuery> runQuery(const QString &statement, int value)
{
    const QSqlDatabase catalogue = QSqlDatabase::database(QLatin1String(QSqlDatabase::defaultConnection), false);
    if (!catalogue.isOpen())
        return std::nullopt;
    QSqlQuery query(catalogue);
    query.setForwardOnly(true);
    if (!query.prepare(statement))
        return std::nullopt;
    query.addBindValue(value);
    if (!query.exec())
        return std::nullopt;
    return query;
}

/// Filled in one step, as the texts themselves contain %0 and %1.
QString listLine(int id, const QString &text, const QString &description)
{
    return QStringLiteral("\n%1: %2 (%3)").arg(QString::number(id), text, description);
}

} // namespace

void LocalDevice::setCurrentID(int id)
{
    if (id == m_currentID)
        return;
    m_title.clear();
    m_commandsText = QStringLiteral("Commands:");
    m_answersText = QStringLiteral("Answers:");
    setToolTip(QString());
    m_currentID = id;
    if (loadSelection())
        timerEvent(nullptr);
}

/// Whether the catalogue could be asked, so that there is something new to show: also that the device
/// is not in it.
bool LocalDevice::loadSelection()
{
    std::optional<QSqlQuery> current = runQuery(
        QStringLiteral("SELECT current.device,current.name,current.device_id FROM current WHERE (current.id=?);"),
        m_currentID);
    if (!current)
        return false;
    if (!current->next())
        return true;
    const int device = current->value(0).toInt();
    const QString instanceName = current->value(1).toString();
    deviceID = current->value(2).toInt();

    bool known = false;
    if (!loadNames(device, instanceName, known))
        return false;
    if (!known)
        return true;
    if (!loadCommands(device) || !loadAnswers(device))
        return false;
    setToolTip(QStringLiteral("%1\n%2\n%3").arg(m_title, m_commandsText, m_answersText));
    return true;
}

bool LocalDevice::loadNames(int device, const QString &instanceName, bool &known)
{
    std::optional<QSqlQuery> names =
        runQuery(QStringLiteral("SELECT devices.name,vendors.name FROM devices,vendors WHERE (devices.id=? AND "
                                "devices.vendor=vendors.id);"),
                 device);
    if (!names)
        return false;

    commands.clear();
    commandDescriptions.clear();
    answers.clear();
    setProperty("__devname", QString());
    known = names->next();
    if (!known)
        return true;

    const QString name = prepareDevName(
        QStringLiteral("%1 (%2 %3)").arg(instanceName, names->value(0).toString(), names->value(1).toString()));
    setProperty("__devname", name);
    m_title = QStringLiteral("%1\nid(current) = %2, id(device) = %3")
                  .arg(name, QString::number(m_currentID), QString::number(deviceID));
    return true;
}

QString LocalDevice::prepareDevName(const QString &name)
{
    return name + QStringLiteral(" [local]");
}

bool LocalDevice::loadCommands(int device)
{
    std::optional<QSqlQuery> rows =
        runQuery(QStringLiteral("SELECT commands.id,commands.command,commands.description FROM commands WHERE "
                                "(commands.device=?);"),
                 device);
    if (!rows)
        return false;
    while (rows->next()) {
        const int id = rows->value(0).toInt();
        const QString text = rows->value(1).toString();
        const QString description = rows->value(2).toString();
        commands[id] = text;
        commandDescriptions[id] = description;
        m_commandsText += listLine(id, text, description);
    }
    qDebug() << "commands" << commands;
    return true;
}

bool LocalDevice::loadAnswers(int device)
{
    std::optional<QSqlQuery> rows =
        runQuery(QStringLiteral("SELECT answers.id,answers.command,answers.description FROM answers WHERE "
                                "(answers.device=?);"),
                 device);
    if (!rows)
        return false;
    while (rows->next()) {
        const int id = rows->value(0).toInt();
        const QString text = rows->value(1).toString();
        m_answersText += listLine(id, text, rows->value(2).toString());
        answers[id] = AnswerPattern::fromText(text, deviceID).elements();
    }
    qDebug() << "answers" << answers;
    return true;
}
