#include "check/check.h"

#include "check/checkinput.h"
#include "command.h"
#include "panel/formloader.h"

#include <kelglobals.h>
#include <serverproject.h>

#include <QBuffer>
#include <QDir>
#include <QFileInfo>

using Kv_Designer::ServerProject;

namespace
{

/// Where \a name, which stands in the project \a path, is; relative as the project is.
QString besideProject(const QString &path, const QString &name)
{
    const QFileInfo project(path);
    if (QFileInfo(name).isAbsolute() || project.path() == QLatin1String("."))
        return name;
    return project.dir().filePath(name);
}

void checkScripts(const ServerProject &project, const QString &path, Findings &findings)
{
    // What a project file says has no line.
    constexpr int Line = 1;
    findings.setFile(path);
    QStringList scripts = project.scriptFiles;
    scripts.removeDuplicates();
    for (const QString &script : qAsConst(scripts)) {
        if (!script.isEmpty() && !QFileInfo(besideProject(path, script)).isFile())
            findings.error(Rule::MissingFile, Line, QStringLiteral("there is no script \"%1\"").arg(script));
    }
    if (!project.mainScript.isEmpty() && !project.scriptFiles.contains(project.mainScript))
        findings.error(Rule::MainScript, Line,
                       QStringLiteral("the main script \"%1\" is none of the scripts").arg(project.mainScript));
}

void checkProject(QByteArray bytes, const QString &path, Findings &findings)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    ServerProject project;
    if (project.read(buffer) != ServerProject::ReadResult::Good)
        throw CommandError(
            QStringLiteral("%1: a server project without a readable version: cut short, or damaged").arg(path));
    checkScripts(project, path, findings);
    if (project.uiFile.isEmpty())
        return;
    const QString form = besideProject(path, project.uiFile);
    checkForm(readFormFile(form), form, findings);
}

} // namespace

void checkForm(const QByteArray &text, const QString &path, Findings &findings)
{
    CatalogueModel catalogue;
    const CheckedPanel panel(text, path);
    findings.setFile(path);
    const CheckInput input{panel, Kel::commandsDB.database.isOpen() ? &catalogue : nullptr, findings};
    checkConnections(input);
    checkNumbers(input);
    checkButtons(input);
    checkDevices(input);
    checkTexts(input);
    checkPlots(input);
    checkPictures(input);
}

QVector<Finding> checkPanel(const QString &path)
{
    const QByteArray bytes = readFormFile(path);
    Findings findings;
    if (bytes.startsWith("NWPF"))
        checkProject(bytes, path, findings);
    else
        checkForm(bytes, path, findings);
    return findings.sorted();
}
