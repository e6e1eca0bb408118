#include "panel/panelfiles.h"

#include "command.h"
#include "printable.h"

#include <serverproject.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>

using Kv_Designer::ServerProject;

namespace
{

const char *const ProjectMark = "NWPF";
const char *const DatabaseMark = "SQLite format 3";
/// No path is longer.
constexpr qint64 MaxPathSize = 64 * 1024;

CommandError failure(const QString &path, const QString &what)
{
    return CommandError(printable(path) + QStringLiteral(": ") + what);
}

QString besideProject(const QString &path, const QString &name)
{
    const QFileInfo project(path);
    if (QFileInfo(name).isAbsolute() || project.path() == QLatin1String("."))
        return name;
    return project.dir().filePath(name);
}

/// The catalogue that \a commandFile is or names; empty when there is no such file.
QString namedCatalogue(const QString &project, const QString &commandFile)
{
    const QString path = besideProject(project, commandFile);
    QFile file(path);
    if (commandFile.isEmpty() || !QFileInfo(path).isFile())
        return QString();
    if (!file.open(QIODevice::ReadOnly))
        throw failure(path, file.errorString());
    QByteArray content = file.read(MaxPathSize);
    if (content.startsWith(DatabaseMark))
        return path;
    const int zero = content.indexOf('\0');
    const QString named = QString::fromUtf8(zero < 0 ? content : content.left(zero));
    if (named.endsWith(QLatin1Char('\n')))
        throw failure(path, QStringLiteral("ends with a line break, which would belong to the catalogue's path"));
    return named.isEmpty() ? QString() : besideProject(project, named);
}

/// The project in \a path, or nothing when it is none.
std::optional<ServerProject> readProject(const QString &path)
{
    QFile file(path);
    // A pipe would keep us waiting; what is no project is for the form loader to judge.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.peek(4) != ProjectMark)
        return std::nullopt;
    ServerProject project;
    if (project.read(file) != ServerProject::ReadResult::Good)
        throw failure(path, QStringLiteral("a server project without a readable version: cut short, or damaged"));
    return project;
}

} // namespace

PanelFiles PanelFiles::of(const QString &path)
{
    PanelFiles files;
    const std::optional<ServerProject> project = readProject(path);
    if (!project) {
        files.form = path;
        return files;
    }
    if (project->uiFile.isEmpty())
        throw failure(path, QStringLiteral("the project names no form"));
    files.form = besideProject(path, project->uiFile);
    files.catalogue = namedCatalogue(path, project->cmFile);
    if (!project->scriptFiles.isEmpty())
        files.ignored
            << QStringLiteral("%1: a panel runs no scripts, those of the project are left alone").arg(printable(path));
    return files;
}

QString PanelFiles::catalogueOf(const QString &path)
{
    const std::optional<ServerProject> project = readProject(path);
    return project ? namedCatalogue(path, project->cmFile) : QString();
}
