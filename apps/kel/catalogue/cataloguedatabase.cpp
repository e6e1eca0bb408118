#include "catalogue/cataloguedatabase.h"

#include "command.h"
#include "printable.h"

#include <qpiconfig.h>

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUrl>
#include <QVariant>

#include <limits>

namespace
{

using Section = CatalogueSection;

[[noreturn]] void fail(const QString &file, const QString &what)
{
    throw CommandError(QStringLiteral("%1: %2").arg(file, what.simplified()));
}

bool isLocked(const QSqlError &error)
{
    constexpr int SqliteBusy = 5;
    constexpr int SqliteLocked = 6;
    const int code = error.nativeErrorCode().toInt() & 0xFF;
    return code == SqliteBusy || code == SqliteLocked;
}

QString reasonOf(const QSqlError &error)
{
    if (isLocked(error))
        return QStringLiteral("the catalogue is locked by another program");
    return QStringLiteral("not a readable catalogue (%1)").arg(error.databaseText());
}

/// Whether the changes of the catalogue \a path go to a log beside it and none is there, so that nobody has it open.
bool isAtRestWithLog(const QString &path)
{
    constexpr qint64 HeaderSize = 20;
    constexpr char LoggedFormat = 2; // of those who write and of those who read, the last two bytes
    const QString real = QFileInfo(path).canonicalFilePath();
    QFile file(real);
    if (!QFileInfo(real).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray header = file.read(HeaderSize);
    return header.size() == HeaderSize && header.endsWith(QByteArray(2, LoggedFormat)) &&
           !QFileInfo::exists(real + QStringLiteral("-wal"));
}

/// The first line of SQLite's own check of the file's structure; "ok" when there is nothing to say.
void checkStructure(const QString &path, QSqlDatabase &database)
{
    QSqlQuery check(database);
    if (!check.exec(QStringLiteral("PRAGMA quick_check(1)")) || !check.next())
        fail(path, reasonOf(check.lastError()));
    const QString result = check.value(0).toString();
    if (result != QLatin1String("ok"))
        fail(path, QStringLiteral("the catalogue is damaged (%1)").arg(result));
}

QString inQuotes(const QString &name)
{
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

/// Sums of rows, for which the database goes to every page of every table; a virtual table has none of its own.
QString countOfRows(QSqlDatabase &database)
{
    QString counts = QStringLiteral("SELECT 0");
    QSqlQuery tables(database);
    if (!tables.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' AND rootpage>0")))
        return QString();
    while (tables.next())
        counts += QStringLiteral("+(SELECT count(*) FROM %1 NOT INDEXED)").arg(inQuotes(tables.value(0).toString()));
    return counts;
}

/// Whether the pages of all tables are well-formed and lead to each other, and none is free. Costs a tenth of SQLite's
/// own check; what is told of a catalogue that is not whole is that one's.
bool hasGoodPages(const QString &path, QSqlDatabase &database)
{
    QSqlQuery query(database);
    const auto isGood = [&query](const QString &statement) { return query.exec(statement) && query.next(); };
    const bool areGood = isGood(QStringLiteral("PRAGMA freelist_count")) && query.value(0).toInt() == 0 &&
                         query.exec(QStringLiteral("PRAGMA cell_size_check=ON")) && isGood(countOfRows(database));
    if (!areGood && isLocked(query.lastError()))
        fail(path, reasonOf(query.lastError())); // without waiting for it a second time
    return areGood;
}

/// Reads the tables of an open catalogue.
class TablesReader
{
public:
    TablesReader(CatalogueFile &file, const QString &path, QSqlDatabase &database)
        : m_file(file)
        , m_path(path)
        , m_database(database)
    {
    }

    void read();

private:
    void findForeignParts();
    QStringList knownColumns(const QString &table) const;
    void readSection(Section section);
    QString statement(Section section, const QSqlRecord &there);
    CatalogueRow rowOf(Section section, const QSqlQuery &query, int number);
    CatalogueCell cellOf(const CatalogueColumn &column, const QSqlQuery &query, int at, const QString &where);
    std::optional<QString> textOf(const QByteArray &bytes, const QString &given) const;

    CatalogueFile &m_file;
    QString m_path;
    QSqlDatabase &m_database;
    QByteArray m_encoding;
};

void TablesReader::read()
{
    QSqlQuery encoding(m_database);
    if (encoding.exec(QStringLiteral("PRAGMA encoding")) && encoding.next())
        m_encoding = encoding.value(0).toByteArray();
    findForeignParts();
    forEachCatalogueSection([this](Section section) {
        if (section != Section::Variables)
            readSection(section);
    });
}

QStringList TablesReader::knownColumns(const QString &table) const
{
    QStringList known;
    forEachCatalogueSection([&](Section section) {
        if (table.compare(QLatin1String(catalogueTable(section).table), Qt::CaseInsensitive) != 0)
            return;
        for (const CatalogueColumn &column : catalogueTable(section).columns)
            known << QLatin1String(column.column);
    });
    return known;
}

void TablesReader::findForeignParts()
{
    const QStringList tables = m_database.tables(QSql::AllTables);
    for (const QString &table : tables) {
        if (table.startsWith(QLatin1String("sqlite_")))
            continue;
        const QStringList known = knownColumns(table);
        if (known.isEmpty()) {
            m_file.foreignParts << QStringLiteral("table %1").arg(printable(table));
            continue;
        }
        const QSqlRecord record = m_database.record(table);
        for (int i = 0; i < record.count(); ++i) {
            if (!known.contains(record.fieldName(i), Qt::CaseInsensitive))
                m_file.foreignParts
                    << QStringLiteral("column %1 of table %2").arg(printable(record.fieldName(i)), printable(table));
        }
    }
}

/// Selects each column three times: its type, its value and its bytes. A missing column is read as nothing.
QString TablesReader::statement(Section section, const QSqlRecord &there)
{
    QStringList columns;
    const CatalogueTable &table = catalogueTable(section);
    for (const CatalogueColumn &column : table.columns) {
        const QString name = QLatin1String(column.column);
        if (!there.contains(name)) {
            m_file.problems << QStringLiteral("table %1 has no column \"%2\"").arg(QLatin1String(table.table), name);
            columns << QStringLiteral("'null',NULL,NULL");
        } else {
            columns << QStringLiteral("typeof(%1),%1,CAST(%1 AS BLOB)").arg(inQuotes(name));
        }
    }
    QString which;
    if (there.contains(QStringLiteral("name"))) {
        if (section == Section::Objects)
            which = QStringLiteral(" WHERE name='name'");
        else if (section == Section::Properties)
            which = QStringLiteral(" WHERE name IS NOT 'name'");
    }
    return QStringLiteral("SELECT %1 FROM %2%3").arg(columns.join(QLatin1Char(',')), QLatin1String(table.table), which);
}

void TablesReader::readSection(Section section)
{
    const QString table = QLatin1String(catalogueTable(section).table);
    if (!m_database.tables(QSql::AllTables).contains(table, Qt::CaseInsensitive)) {
        if (section != Section::Properties) // its table was missed with the objects
            m_file.problems << QStringLiteral("there is no table \"%1\"").arg(table);
        return;
    }
    const QString select = statement(section, m_database.record(table));
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    // A table whose rows have no number of their own has an order of its own.
    if (!query.exec(select + QStringLiteral(" ORDER BY rowid")) && !query.exec(select))
        fail(m_path, reasonOf(query.lastError()));
    for (int number = 1; query.next(); ++number)
        m_file.data.rows(section).append(rowOf(section, query, number));
    if (query.lastError().isValid())
        fail(m_path, reasonOf(query.lastError()));
}

CatalogueRow TablesReader::rowOf(Section section, const QSqlQuery &query, int number)
{
    const CatalogueTable &table = catalogueTable(section);
    CatalogueRow row;
    for (int column = 0; column < table.columns.size(); ++column) {
        const CatalogueColumn &about = table.columns.at(column);
        const QString where =
            QStringLiteral("%1, row %2, column %3")
                .arg(QLatin1String(table.table), QString::number(number), QLatin1String(about.column));
        row.cells.append(cellOf(about, query, 3 * column, where));
    }
    return row;
}

CatalogueCell TablesReader::cellOf(const CatalogueColumn &column, const QSqlQuery &query, int at, const QString &where)
{
    const QString type = query.value(at).toString();
    const QVariant value = query.value(at + 1);
    if (type == QLatin1String("null"))
        return {};
    if (type == QLatin1String("integer"))
        return column.isNumber() ? CatalogueCell(value.toLongLong()) : CatalogueCell(value.toString());
    if (type == QLatin1String("text")) {
        if (const std::optional<QString> text = textOf(query.value(at + 2).toByteArray(), value.toString()))
            return *text;
        m_file.problems << QStringLiteral("%1: the text is not well-formed").arg(where);
        return {};
    }
    m_file.problems << QStringLiteral("%1: neither a whole number nor a text").arg(where);
    return {};
}

/// The driver mends what is no text and changes some characters, so that the \a bytes count; in databases that are
/// not in UTF-8 it is what was \a given, for want of better. Nothing when the bytes are no text.
std::optional<QString> TablesReader::textOf(const QByteArray &bytes, const QString &given) const
{
    if (m_encoding != "UTF-8")
        return QLatin1String("") + given;
    const QByteArray marked = 'x' + bytes; // a mark of the byte order at the front would be dropped
    const QString text = QString::fromUtf8(marked.constData(), marked.size()).mid(1);
    return text.toUtf8() == bytes ? std::optional<QString>(text) : std::nullopt;
}

void readVariables(CatalogueFile &file, const QString &path)
{
    const QPIConfig config(variablesPathOf(path));
    const QList<QPIConfig::Leaf> leaves = config.allLeaves();
    for (const QPIConfig::Leaf &leaf : leaves) {
        CatalogueRow row;
        row.cells = {leaf.fullName(), leaf.value()};
        file.data.rows(Section::Variables).append(row);
    }
}

} // namespace

CatalogueConnection::CatalogueConnection(const QString &path, Access access)
{
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("kel catalogue"));
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=200");
    QString name = path;
    if (access == Access::Read)
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    // Whoever reads such a catalogue makes a log, and one who only reads leaves it behind.
    if (access == Access::Read && isAtRestWithLog(path)) {
        options += QStringLiteral(";QSQLITE_OPEN_URI");
        name = QString::fromLatin1(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded()) +
               QStringLiteral("?immutable=1");
    }
    m_database.setConnectOptions(options);
    m_database.setDatabaseName(name);
    m_isOpen = m_database.open();
}

CatalogueConnection::~CatalogueConnection()
{
    const QString name = m_database.connectionName();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

void checkCatalogueFile(const QString &path, CatalogueCheck extent)
{
    const QFileInfo info(path);
    if (!info.exists())
        fail(path, QStringLiteral("there is no such catalogue"));
    if (!info.isFile())
        fail(path, QStringLiteral("the catalogue is not a file"));
    if (!info.isReadable())
        fail(path, QStringLiteral("the catalogue may not be read"));
    if (info.suffix() == QLatin1String("toml"))
        fail(path, QStringLiteral("the source of a catalogue; \"kel catalog make\" makes a catalogue of it"));

    CatalogueConnection connection(path, CatalogueConnection::Access::Read);
    if (!connection.isOpen())
        fail(path, reasonOf(connection.database().lastError()));
    if (extent == CatalogueCheck::Whole || !hasGoodPages(path, connection.database()))
        checkStructure(path, connection.database());
    if (!connection.database().tables(QSql::AllTables).contains(QStringLiteral("devices"), Qt::CaseInsensitive))
        fail(path, QStringLiteral("not a catalogue: it has no table \"devices\""));
}

CatalogueFile CatalogueFile::read(const QString &path)
{
    checkCatalogueFile(path);
    CatalogueFile file;
    {
        CatalogueConnection connection(path, CatalogueConnection::Access::Read);
        if (!connection.isOpen())
            fail(path, reasonOf(connection.database().lastError()));
        TablesReader(file, path, connection.database()).read();
    }
    file.problems.removeDuplicates();
    readVariables(file, path);
    return file;
}

QString variablesPathOf(const QString &path)
{
    const QFileInfo info(path);
    return info.path() + QLatin1Char('/') + info.baseName() + QStringLiteral(".var");
}
