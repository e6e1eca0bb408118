/// \file
/// Files for tests of catalogues.
#pragma once

#include <catalogue/cataloguedatabase.h>
#include <command.h>

#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

#include <memory>

/// A folder of its own for each test function, and files in it.
class CatalogueFolder
{
protected:
    void renewFolder() { m_folder = std::make_unique<QTemporaryDir>(); }
    void removeFolder() { m_folder.reset(); }

    QString folderPath() const { return m_folder->path(); }
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

    QString write(const char *name, const QByteArray &content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", name);
        return file.fileName();
    }

    QByteArray content(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

/// A catalogue of one device with one row of each kind.
const QByteArray SmallSource = "vendors = [{id = 1, name = \"Acme\"}]\n"
                               "devices = [{id = 3, name = \"Relay\", vendor = \"Acme\"}]\n"
                               "commands = [{id = 11, device = \"Relay\", command = \"A1 %id 01\"}]\n"
                               "answers = [{id = 12, device = \"Relay\", command = \"A2 %id %0\"}]\n"
                               "instances = [{id = 5, device = \"Relay\", name = \"Hall\", device_id = 7}]\n"
                               "objects = [{id = 10, device = \"Relay\", name = \"hall\"}]\n"
                               "packets = [{id = 100, object = \"hall\", name = \"on\", command = \"01 %0\"}]\n";

/// What \a action throws, empty for nothing.
template <typename Action>
QString errorOf(Action action)
{
    try {
        action();
    } catch (const CommandError &error) {
        return QString::fromStdString(error.what());
    }
    return QString();
}

/// Every row of the seven tables in their order, with the type of each cell.
inline QStringList rowsOf(const QString &path)
{
    static const QStringList Columns = {
        QStringLiteral("vendors:id,name"),
        QStringLiteral("devices:id,name,vendor,vname,gname,desc"),
        QStringLiteral("commands:id,command,description,device"),
        QStringLiteral("answers:id,command,description,device"),
        QStringLiteral("current:id,device,name,device_id"),
        QStringLiteral("properties:object_id,device_id,name,value"),
        QStringLiteral("packets:id,name,args_count,flags,command,desc,object_id"),
    };
    QStringList rows;
    CatalogueConnection connection(path, CatalogueConnection::Access::Read);
    for (const QString &table : Columns) {
        QStringList columns;
        for (const QString &column : table.section(QLatin1Char(':'), 1).split(QLatin1Char(',')))
            columns << QStringLiteral("quote(\"%1\")||hex(\"%1\")").arg(column);
        QSqlQuery query(connection.database());
        const QString name = table.section(QLatin1Char(':'), 0, 0);
        if (!query.exec(QStringLiteral("SELECT %1 FROM %2 ORDER BY rowid").arg(columns.join(QLatin1Char(',')), name)))
            qFatal("no table %s", qPrintable(name));
        while (query.next()) {
            QStringList row = {name};
            for (int i = 0; i < columns.size(); ++i)
                row << query.value(i).toString();
            rows << row.join(QLatin1Char('|'));
        }
    }
    return rows;
}
