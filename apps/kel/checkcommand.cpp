// kel check: looks a panel and its catalogue over without running them.
#include "application.h"
#include "catalogue/catalogue.h"
#include "check/check.h"
#include "check/report.h"
#include "command.h"
#include "commands.h"
#include "panel/panelfiles.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace
{

constexpr int ExitClean = 0;
constexpr int ExitFindings = 1;

struct CheckOptions {
    std::string file;
    std::string catalogue;
    std::vector<std::string> except; ///< Names of rules that are not wanted.
    bool isJson = false;
    bool isSarif = false;
};

void print(const QByteArray &output)
{
    const auto size = static_cast<std::size_t>(output.size());
    if (std::fwrite(output.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        throw CommandError(QStringLiteral("cannot write to standard output"));
}

QVector<Finding> wantedFindings(const QString &path, const CheckOptions &options)
{
    QVector<Finding> findings = checkPanel(path);
    const auto isUnwanted = [&options](const Finding &finding) {
        const std::string name = nameOf(finding.rule).toStdString();
        return std::find(options.except.cbegin(), options.except.cend(), name) != options.except.cend();
    };
    findings.erase(std::remove_if(findings.begin(), findings.end(), isUnwanted), findings.end());
    return findings;
}

/// The catalogue that is given, or else the one that kel panel would take for a project.
QString findCatalogue(const CheckOptions &options, const QString &path)
{
    if (!options.catalogue.empty())
        return QString::fromStdString(options.catalogue);
    return PanelFiles::catalogueOf(path);
}

int checkAndPrint(const CheckOptions &options)
{
    const QString path = QString::fromStdString(options.file);
    const QString catalogue = findCatalogue(options, path);
    if (!catalogue.isEmpty())
        openCatalogue(catalogue);
    const QVector<Finding> findings = wantedFindings(path, options);
    if (options.isJson)
        print(jsonReport(findings, path));
    else
        print(options.isSarif ? sarifReport(findings) : textReport(findings));
    if (catalogue.isEmpty())
        std::fputs("kel: without a catalogue (--db) only the panel itself was checked\n", stderr);
    return findings.isEmpty() ? ExitClean : ExitFindings;
}

int runCheck(Program &program, const CheckOptions &options)
{
    // Status 1 is for findings, so whatever keeps us from looking needs another.
    try {
        // Nothing is shown, so it does not matter whether there is a display, or one that can be reached.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const auto application = makeApplication(program);
        return checkAndPrint(options);
    } catch (const std::exception &error) {
        throw UnusableInput(QString::fromStdString(error.what()));
    }
}

CLI::IsMember oneOfTheRules()
{
    std::vector<std::string> names;
    for (const RuleInfo &rule : checkRules())
        names.push_back(rule.name.toStdString());
    return CLI::IsMember(names);
}

} // namespace

void addCheckCommand(Program &program)
{
    auto options = std::make_shared<CheckOptions>();
    CLI::App *command = program.line.add_subcommand("check", "Find what cannot work in a panel, without running it");
    command->add_option("file", options->file, "The form (.ui) or the project file")->required();
    command->add_option("--db", options->catalogue, "The command catalogue (SQLite)");
    command->add_option("--except", options->except, "Leave a rule out (more than once for several)")
        ->check(oneOfTheRules())
        ->expected(1)
        ->take_all();
    CLI::Option *json = command->add_flag("--json", options->isJson, "Print JSON");
    command->add_flag("--sarif", options->isSarif, "Print SARIF 2.1.0, for tools that show findings")->excludes(json);
    command->callback(
        [&program, options] { program.chosen = [&program, options] { return runCheck(program, *options); }; });
}
