// kel doctor: says why a widget does not appear or a panel does not run, and what helps.
#include "command.h"
#include "commands.h"
#include "doctor/machinefacts.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>

namespace
{

struct DoctorOptions {
    std::vector<std::string> pluginFolders;
    std::string catalogue;
    bool isForPanels = false;
    bool isProbe = false;
};

const char *wordOf(Diagnosis::State state)
{
    switch (state) {
    case Diagnosis::State::Good:
        return "ok";
    case Diagnosis::State::Note:
        return "note";
    case Diagnosis::State::Broken:
        break;
    }
    return "BROKEN";
}

void print(const Diagnosis &finding)
{
    constexpr const char *Line = "%-7s %s\n";
    std::printf(Line, wordOf(finding.state), qPrintable(finding.text));
    if (!finding.mend.isEmpty())
        std::printf(Line, "", qPrintable(QStringLiteral("-> ") + finding.mend));
}

int examine(Program &program, const DoctorOptions &options)
{
    if (options.isProbe)
        return probeDisplay(program.argc, program.argv);

    const QCoreApplication application(program.argc, program.argv);
    DoctorQuestions questions;
    questions.isForDesigner = !options.isForPanels;
    for (const std::string &folder : options.pluginFolders)
        questions.pluginFolders << QString::fromStdString(folder);
    questions.catalogue = QString::fromStdString(options.catalogue);
    if (questions.catalogue.isEmpty() && questions.isForDesigner)
        questions.catalogue = qEnvironmentVariable("KEL_CATALOGUE"); // which the Designer plugin opens

    int broken = 0;
    for (const Diagnosis &finding : diagnose(lookAround(questions))) {
        print(finding);
        broken += finding.state == Diagnosis::State::Broken ? 1 : 0;
    }
    std::printf("%s\n", broken == 0   ? "Nothing is broken."
                        : broken == 1 ? "One thing is broken."
                                      : qPrintable(QStringLiteral("%1 things are broken.").arg(broken)));
    return broken == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

void addDoctorCommand(Program &program)
{
    auto options = std::make_shared<DoctorOptions>();
    CLI::App *command =
        program.line.add_subcommand("doctor", "Say why a widget does not appear or a panel does not run");
    command->add_option("--db", options->catalogue, "Look at this command catalogue too");
    command->add_flag("--panel", options->isForPanels, "Only what a running panel needs, without Qt Designer");
    command->add_option("--plugins", options->pluginFolders, "Folder to look for the Designer plugin in, not Qt's own");
    command->add_flag("--probe-display", options->isProbe)->group("");
    command->callback(
        [&program, options] { program.chosen = [&program, options] { return examine(program, *options); }; });
}
