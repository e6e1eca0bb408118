// kel project: make, print, change and check server project files.
#include "command.h"
#include "commands.h"
#include "printable.h"
#include "wholefile.h"

#include <serverproject.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

using Kv_Designer::ServerProject;

namespace
{

/// What stands on the command line behind `kel project show` and its siblings.
struct Input {
    std::string file;
    std::vector<std::string> words; ///< Scripts, or NAME=VALUE.
    bool isJson = false;
    bool isForced = false;
};

/// The fields that hold one name, as the command line and JSON call them.
struct NameField {
    const char *name;
    const char *label;
    QString ServerProject::*field;
};

constexpr std::array<NameField, 5> NameFields = {{
    {"uiFile", "form", &ServerProject::uiFile},
    {"dataFile", "data", &ServerProject::dataFile},
    {"varFile", "variables", &ServerProject::varFile},
    {"cmFile", "commands", &ServerProject::cmFile},
    {"mainScript", "main script", &ServerProject::mainScript},
}};

CommandError failure(const QString &path, const QString &what)
{
    return CommandError(printable(path) + QStringLiteral(": ") + what);
}

ServerProject readProject(const QString &path)
{
    // a pipe would keep us waiting, and a project is never one
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        throw failure(path, QStringLiteral("not a file"));
    if (path.isEmpty())
        throw CommandError(QStringLiteral("the project's name is empty"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw failure(path, file.errorString());

    ServerProject project;
    switch (project.read(file)) {
    case ServerProject::ReadResult::Good:
        return project;
    case ServerProject::ReadResult::NotAProject:
        throw failure(path, QStringLiteral("not a server project"));
    case ServerProject::ReadResult::WrongVersion:
        break;
    }
    throw failure(path, QStringLiteral("a server project without a readable version: cut short, or damaged"));
}

/// Writes all of the file or leaves it as it was.
void writeProject(const QString &path, const ServerProject &project)
{
    writeWholeFile(path, project.toByteArray());
}

int print(const QByteArray &output)
{
    const auto size = static_cast<std::size_t>(output.size());
    if (std::fwrite(output.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        throw CommandError(QStringLiteral("cannot write to standard output"));
    return 0;
}

QByteArray line(const QString &label, const QString &text)
{
    constexpr int LabelWidth = 12;
    return (label.leftJustified(LabelWidth) + printable(text)).trimmed().toUtf8() + '\n';
}

QByteArray textOf(const ServerProject &project)
{
    QByteArray text = line(QStringLiteral("version"), QString::number(project.version));
    for (const NameField &field : NameFields)
        text += line(QLatin1String(field.label), project.*field.field);
    for (const QString &script : project.scriptFiles)
        text += line(QStringLiteral("script"), script);
    return text;
}

QByteArray jsonOf(const ServerProject &project)
{
    QJsonObject object;
    object.insert(QStringLiteral("version"), project.version);
    object.insert(QStringLiteral("scriptFiles"), QJsonArray::fromStringList(project.scriptFiles));
    for (const NameField &field : NameFields) {
        const QString &name = project.*field.field;
        object.insert(QLatin1String(field.name), name.isNull() ? QJsonValue() : QJsonValue(name));
    }
    return QJsonDocument(object).toJson();
}

int makeNew(const Input &input)
{
    const QString path = QString::fromStdString(input.file);
    if (!input.isForced && QFileInfo::exists(path))
        throw failure(path, QStringLiteral("is there already (--force writes over it)"));
    ServerProject project;
    project.makeEmptyNames(QFileInfo(path).fileName()); // the files live beside it
    writeProject(path, project);
    return 0;
}

int show(const Input &input)
{
    const ServerProject project = readProject(QString::fromStdString(input.file));
    return print(input.isJson ? jsonOf(project) : textOf(project));
}

void setVersion(ServerProject &project, const QString &value)
{
    bool isNumber = false;
    const int version = value.toInt(&isNumber);
    if (!isNumber || version <= 0)
        throw CommandError(QStringLiteral("version=%1: the version is a number above 0").arg(printable(value)));
    project.version = version;
}

void setField(ServerProject &project, const QString &word)
{
    const int equals = word.indexOf(QLatin1Char('='));
    const QString name = word.left(equals);
    const QString value = word.mid(equals + 1);
    if (equals < 0)
        throw CommandError(QStringLiteral("%1: write NAME=VALUE").arg(printable(word)));
    if (name == QLatin1String("version"))
        return setVersion(project, value);
    for (const NameField &field : NameFields) {
        if (name == QLatin1String(field.name)) {
            project.*field.field = value.isEmpty() ? QString() : value;
            return;
        }
    }
    throw CommandError(QStringLiteral("%1: the fields are version, uiFile, dataFile, varFile, cmFile and mainScript")
                           .arg(printable(word)));
}

/// Reads the project, lets \a change work on it with each word, and writes it when all went well.
int changeProject(const Input &input, const std::function<void(ServerProject &, const QString &)> &change)
{
    const QString path = QString::fromStdString(input.file);
    ServerProject project = readProject(path);
    for (const std::string &word : input.words)
        change(project, QString::fromStdString(word));
    if (!project.mainScript.isEmpty() && !project.scriptFiles.contains(project.mainScript))
        throw failure(path, QStringLiteral("main script %1 is none of the scripts").arg(printable(project.mainScript)));
    writeProject(path, project);
    return 0;
}

int set(const Input &input)
{
    return changeProject(input, setField);
}

int addScript(const Input &input)
{
    return changeProject(input, [](ServerProject &project, const QString &script) {
        if (script.isEmpty())
            throw CommandError(QStringLiteral("a script needs a name"));
        if (!project.addScriptFile(script))
            throw CommandError(QStringLiteral("%1: is a script of the project already").arg(printable(script)));
    });
}

int removeScript(const Input &input)
{
    return changeProject(input, [](ServerProject &project, const QString &script) {
        if (script.isEmpty() || !project.scriptFiles.contains(script))
            throw CommandError(QStringLiteral("%1: is no script of the project").arg(printable(script)));
        project.removeScriptFile(script);
    });
}

int check(const Input &input)
{
    const QString path = QString::fromStdString(input.file);
    const ServerProject project = readProject(path);
    const QDir folder = QFileInfo(path).absoluteDir();

    int missing = 0;
    QByteArray report;
    const QStringList names = QStringList{project.uiFile} + project.getAssFiles();
    for (const QString &name : names) {
        if (name.isEmpty())
            continue;
        const bool isThere = QFileInfo(folder.absoluteFilePath(name)).isFile();
        missing += isThere ? 0 : 1;
        report += line(isThere ? QStringLiteral("found") : QStringLiteral("missing"), name);
    }
    print(report);

    if (!project.mainScript.isEmpty() && !project.scriptFiles.contains(project.mainScript))
        throw failure(path, QStringLiteral("main script %1 is none of the scripts").arg(printable(project.mainScript)));
    if (missing > 0)
        throw failure(path, missing == 1 ? QStringLiteral("1 file is missing")
                                         : QStringLiteral("%1 files are missing").arg(missing));
    return 0;
}

using Job = int (*)(const Input &);

CLI::App *addJob(Program &program, CLI::App &group, const char *name, const char *help, Job job, Input *&input)
{
    CLI::App *line = group.add_subcommand(name, help);
    const auto kept = std::make_shared<Input>();
    line->add_option("file", kept->file, "The project file")->required();
    line->callback([&program, kept, job] { program.chosen = [kept, job] { return job(*kept); }; });
    input = kept.get();
    return line;
}

} // namespace

void addProjectCommand(Program &program)
{
    CLI::App *group = program.line.add_subcommand("project", "Make, print, change and check server project files");
    group->require_subcommand(1);
    Input *input = nullptr;

    CLI::App *line = addJob(program, *group, "new", "Make a project with the usual file names", makeNew, input);
    line->add_flag("--force", input->isForced, "Write over a file that is there");

    line = addJob(program, *group, "show", "Print what a project names", show, input);
    line->add_flag("--json", input->isJson, "Print JSON");

    line = addJob(program, *group, "set", "Change fields of a project", set, input);
    line->add_option("fields", input->words, "NAME=VALUE; names are those of show --json, no value clears")->required();

    line = addJob(program, *group, "add-script", "Add scripts at the end", addScript, input);
    line->add_option("scripts", input->words, "Names of scripts")->required();

    line = addJob(program, *group, "remove-script", "Remove scripts", removeScript, input);
    line->add_option("scripts", input->words, "Names of scripts")->required();

    addJob(program, *group, "check", "Tell which files of a project exist", check, input);
}
