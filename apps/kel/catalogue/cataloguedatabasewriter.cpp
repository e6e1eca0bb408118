#include "catalogue/cataloguedatabase.h"

#include "command.h"

#include <qpiconfig.h>

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryFile>
#include <QVariant>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using Section = CatalogueSection;

/// First line of the variables files that are made here, by which they are known again.
const char *const VariablesHeader = "# Made by kel catalog make";

/// The rows keep the order of the source, so the numbers are unique without being the rows' own.
const char *const Schema[] = {
    "CREATE TABLE vendors (id INTEGER NOT NULL UNIQUE, name TEXT)",
    "CREATE TABLE devices (id INTEGER NOT NULL UNIQUE, name TEXT, vendor INTEGER, vname TEXT, gname TEXT, "
    "\"desc\" TEXT)",
    "CREATE TABLE commands (id INTEGER NOT NULL UNIQUE, device INTEGER, command TEXT, description TEXT)",
    "CREATE TABLE answers (id INTEGER NOT NULL UNIQUE, device INTEGER, command TEXT, description TEXT)",
    "CREATE TABLE current (id INTEGER NOT NULL UNIQUE, device INTEGER, name TEXT, device_id INTEGER)",
    "CREATE TABLE properties (object_id INTEGER, device_id INTEGER, name TEXT, value TEXT)",
    "CREATE TABLE packets (id INTEGER NOT NULL UNIQUE, object_id INTEGER, name TEXT, args_count INTEGER, "
    "flags INTEGER, command TEXT, \"desc\" TEXT)",
};

[[noreturn]] void fail(const QString &file, const QString &what)
{
    throw CommandError(QStringLiteral("%1: %2").arg(file, what.simplified()));
}

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

/// A file beside the one that it shall become; gone with this object unless it took that place.
class NewFile
{
public:
    explicit NewFile(const QString &target)
        : m_target(QFileInfo(target).exists() ? QFileInfo(target).canonicalFilePath() : target)
        , m_file(m_target + QStringLiteral(".XXXXXX"))
    {
        if (!m_file.open())
            fail(target, m_file.errorString());
    }

    QTemporaryFile &file() { return m_file; }
    QString path() const { return m_file.fileName(); }

    void takePlace()
    {
        giveUsualRights();
        if (::fsync(m_file.handle()) != 0 ||
            std::rename(QFile::encodeName(path()).constData(), QFile::encodeName(m_target).constData()) != 0)
            fail(m_target, systemError());
        m_file.setAutoRemove(false);
    }

private:
    /// Those of the file that it replaces, or those that any new file gets.
    void giveUsualRights()
    {
        struct stat there = {};
        mode_t mode = 0;
        if (::stat(QFile::encodeName(m_target).constData(), &there) == 0) {
            mode = there.st_mode & 07777;
        } else {
            const mode_t mask = ::umask(0);
            ::umask(mask);
            mode = 0666 & ~mask;
        }
        ::fchmod(m_file.handle(), mode);
    }

    QString m_target;
    QTemporaryFile m_file;
};

/// Why \a path must not be written over; nothing when it may, or is not there.
void checkTarget(const QString &path)
{
    for (const char *left : {"-journal", "-wal"}) {
        if (QFileInfo::exists(path + QLatin1String(left)))
            fail(path, QStringLiteral("%1%2 is there: a program writes the catalogue, or was stopped while it did")
                           .arg(QFileInfo(path).fileName(), QLatin1String(left)));
    }
    if (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink())
        return;
    QString reason;
    try {
        const CatalogueFile there = CatalogueFile::read(path);
        if (there.foreignParts.isEmpty())
            return;
        reason = QStringLiteral("it has more than a catalogue: ") + there.foreignParts.first();
    } catch (const CommandError &error) {
        reason = QString::fromStdString(error.what()).mid(path.size() + 2);
    }
    fail(path, QStringLiteral("is there already and not written over: %1").arg(reason));
}

void checkVariablesTarget(const QString &path)
{
    if (!QFileInfo::exists(path))
        return;
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        fail(path, QStringLiteral("is there already and cannot be read"));
    if (!file.readLine(200).startsWith(VariablesHeader))
        fail(path, QStringLiteral("is there already and was not made by kel catalog make"));
}

/// The text of a variables file that reads as \a data again.
QByteArray variablesText(const CatalogueData &data, const QString &source)
{
    QByteArray text = VariablesHeader + (" from " + QFileInfo(source).fileName().simplified().toUtf8()) + ".\n";
    for (const CatalogueRow &row : data.rows(Section::Variables)) {
        const QString name = row.text(CatalogueColumns::VariableName).value_or(QString());
        const QString value = row.text(CatalogueColumns::VariableValue).value_or(QString());
        // A value that begins with "#" has no space before it, else it would be a comment.
        text += QStringLiteral("%1 =%2%3\n")
                    .arg(name, value.startsWith(QLatin1Char('#')) ? QString() : QStringLiteral(" "), value)
                    .toUtf8();
    }
    return text;
}

/// Variables whose name or value means something else in a variables file.
void checkVariables(const CatalogueData &data, const QByteArray &text, const QString &source)
{
    const QList<QPIConfig::Leaf> leaves = QPIConfig::fromText(text).allLeaves();
    const QVector<CatalogueRow> &rows = data.rows(Section::Variables);
    for (int i = 0; i < rows.size(); ++i) {
        const bool isSame = i < leaves.size() &&
                            leaves.at(i).fullName() == rows.at(i).text(CatalogueColumns::VariableName) &&
                            leaves.at(i).value() == rows.at(i).text(CatalogueColumns::VariableValue);
        if (!isSame)
            fail(source, QStringLiteral("%1 cannot be written to a variables file")
                             .arg(catalogueRowTitle(Section::Variables, rows.at(i))));
    }
}

void insertRows(QSqlQuery &query, Section section, const QVector<CatalogueRow> &rows)
{
    const CatalogueTable &table = catalogueTable(section);
    QStringList columns;
    QStringList marks;
    for (const CatalogueColumn &column : table.columns) {
        columns << QLatin1Char('"') + QString(QLatin1String(column.column)) + QLatin1Char('"');
        // The driver's own way for texts drops a mark of the byte order at the front, or turns the bytes round.
        marks << (column.isNumber() ? QStringLiteral("?") : QStringLiteral("CAST(? AS TEXT)"));
    }
    if (section == Section::Objects) {
        columns << QStringLiteral("name");
        marks << QStringLiteral("'name'");
    }
    if (!query.prepare(
            QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                .arg(QLatin1String(table.table), columns.join(QLatin1Char(',')), marks.join(QLatin1Char(',')))))
        return;
    for (const CatalogueRow &row : rows) {
        for (int column = 0; column < table.columns.size(); ++column) {
            QVariant value;
            if (const auto number = row.number(column))
                value = *number;
            else if (const auto text = row.text(column))
                value = text->isEmpty() ? QByteArray("") : text->toUtf8(); // an array that is null would be NULL
            query.bindValue(column, value);
        }
        if (!query.exec())
            return;
    }
}

/// Fills the database \a path, which is empty; the text of what went wrong.
QString fillDatabase(const CatalogueData &data, const QString &path)
{
    CatalogueConnection connection(path, CatalogueConnection::Access::Write);
    if (!connection.isOpen())
        return connection.database().lastError().databaseText();
    QSqlQuery query(connection.database());
    connection.database().transaction();
    for (const char *statement : Schema) {
        if (!query.exec(QLatin1String(statement)))
            return query.lastError().databaseText();
    }
    QString problem;
    forEachCatalogueSection([&](Section section) {
        if (section == Section::Variables || !problem.isEmpty())
            return;
        insertRows(query, section, data.rows(section));
        problem = query.lastError().databaseText();
    });
    query.finish();
    if (problem.isEmpty() && !connection.database().commit())
        problem = connection.database().lastError().databaseText();
    return problem;
}

} // namespace

void writeCatalogueFile(const CatalogueData &data, bool hasVariables, const QString &path, const QString &source)
{
    checkTarget(path);
    const QString variablesPath = variablesPathOf(path);
    std::unique_ptr<NewFile> variables;
    if (hasVariables) {
        checkVariablesTarget(variablesPath);
        const QByteArray text = variablesText(data, source);
        checkVariables(data, text, source);
        variables = std::make_unique<NewFile>(variablesPath);
        if (variables->file().write(text) != text.size() || !variables->file().flush())
            fail(variablesPath, variables->file().errorString());
    }
    NewFile database(path);
    const QString problem = fillDatabase(data, database.path());
    if (!problem.isEmpty())
        fail(path, problem);
    if (variables)
        variables->takePlace();
    database.takePlace();
}
