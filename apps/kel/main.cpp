#include "command.h"
#include "commands.h"

#include <cstdio>
#include <exception>
#include <string>

namespace
{

constexpr int ExitFailure = 1;
constexpr int ExitWrongUsage = 2;
constexpr int ExitUnusable = 2;

/// One line, whatever control characters came in with the input that it quotes.
int complain(std::string line, int status)
{
    for (char &c : line) {
        if (static_cast<unsigned char>(c) < ' ' || c == 0x7F)
            c = ' ';
    }
    std::fprintf(stderr, "kel: %s\n", line.c_str());
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    Program program;
    program.argc = argc;
    program.argv = argv;
    program.line.name("kel");
    program.line.description("Operator panels that talk to devices");
    program.line.require_subcommand(1);
    addCatalogCommand(program);
    addCheckCommand(program);
    addDemoCommand(program);
    addDoctorCommand(program);
    addMonitorCommand(program);
    addPanelCommand(program);
    addProjectCommand(program);
    addSimCommand(program);
    addTemplateCommand(program);

    try {
        program.line.parse(argc, argv);
    } catch (const CLI::Success &help) {
        return program.line.exit(help);
    } catch (const CLI::RequiredError &error) {
        if (argc > 1 && program.line.get_subcommands().empty())
            return complain(std::string("there is no command \"") + argv[1] + "\" (kel --help tells more)",
                            ExitWrongUsage);
        std::fprintf(stderr, "kel: %s (kel --help tells more)\n", error.what());
        return ExitWrongUsage;
    } catch (const CLI::ParseError &error) {
        std::fprintf(stderr, "kel: %s (kel --help tells more)\n", error.what());
        return ExitWrongUsage;
    }

    try {
        return program.chosen();
    } catch (const UnusableInput &error) {
        return complain(error.what(), ExitUnusable);
    } catch (const std::exception &error) {
        return complain(error.what(), ExitFailure);
    }
}
