#include "command.h"
#include "commands.h"

#include <QString>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <string>
#include <unistd.h>

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

/// A port or a file that is opened must not get the number of a stream that the caller closed: what is printed would go
/// into it. What takes the number instead refuses to be used, so that lost output is still a failure.
void keepStreamNumbers()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) == -1)
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY); // takes the lowest free number
    }
}

/// Names of files become texts on their way, which would change those that are none.
bool areTexts(int count, char **words)
{
    return std::all_of(words, words + count,
                       [](const char *word) { return QString::fromUtf8(word).toStdString() == word; });
}

/// Not everything that is printed is looked at when it is; \a status, unless some of it got lost.
int statusAfterOutput(int status)
{
    const bool isWritten = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    return isWritten ? status : complain("cannot write to standard output", std::max(status, ExitFailure));
}

} // namespace

int main(int argc, char **argv)
{
    keepStreamNumbers();
    if (!areTexts(argc, argv))
        return complain("the command line has bytes that are no UTF-8 text", ExitWrongUsage);
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
        return statusAfterOutput(program.line.exit(help));
    } catch (const CLI::RequiredError &error) {
        if (argc > 1 && program.line.get_subcommands().empty())
            return complain(std::string("there is no command \"") + argv[1] + "\" (kel --help tells more)",
                            ExitWrongUsage);
        return complain(error.what() + std::string(" (kel --help tells more)"), ExitWrongUsage);
    } catch (const CLI::ParseError &error) {
        return complain(error.what() + std::string(" (kel --help tells more)"), ExitWrongUsage);
    }

    try {
        return statusAfterOutput(program.chosen());
    } catch (const UnusableInput &error) {
        return complain(error.what(), ExitUnusable);
    } catch (const std::exception &error) {
        return complain(error.what(), ExitFailure);
    }
}
