#include "command.h"
#include "commands.h"
#include "quitonsignals.h"
#include "simulator/ptyline.h"
#include "simulator/simulator.h"
#include "simulator/tcpline.h"

#include <QCoreApplication>

#include <memory>

namespace
{

struct SimOptions {
    std::string rules;
    std::string replay;
    std::string link;
    int tcpPort = -1;
    int gapMs = 20;
};

std::unique_ptr<SimulatorLine> makeLine(const SimOptions &options)
{
    if (options.tcpPort >= 0)
        return std::make_unique<TcpLine>(quint16(options.tcpPort));
    return std::make_unique<PtyLine>(QString::fromStdString(options.link));
}

int runSim(Program &program, const SimOptions &options)
{
    const QCoreApplication application(program.argc, program.argv);
    const TrafficLog log(QStringLiteral("device"));
    std::unique_ptr<Simulator> simulator;
    if (options.replay.empty()) {
        const SimulatorRules rules = Simulator::readRules(QString::fromStdString(options.rules));
        simulator = std::make_unique<Simulator>(rules, makeLine(options), options.gapMs, log);
    } else {
        const TrafficReplay replay = TrafficReplay::fromFile(QString::fromStdString(options.replay));
        simulator = std::make_unique<Simulator>(replay, makeLine(options), options.gapMs, log);
        log.note(QStringLiteral("replays %1 requests").arg(replay.requests()));
        if (replay.leftOut() > 0)
            log.note(QStringLiteral("leaves out %1 messages whose sender is not known").arg(replay.leftOut()));
    }
    quitOnSignals();
    log.note(QStringLiteral("listens on %1").arg(simulator->lineName()));
    return QCoreApplication::exec();
}

} // namespace

void addSimCommand(Program &program)
{
    auto options = std::make_shared<SimOptions>();
    CLI::App *command = program.line.add_subcommand("sim", "A device that answers from a rules file or a recorded log");
    CLI::Option_group *source = command->add_option_group("What it answers");
    source->add_option("rules", options->rules, "The rules file (docs/formats/simulator-rules.md)");
    source->add_option("--replay", options->replay, "Give the answers of this log (docs/formats/traffic-log.md)");
    source->require_option(1);
    CLI::Option *link = command->add_option("--link", options->link, "Make a symbolic link to the pseudo terminal");
    command->add_option("--tcp", options->tcpPort, "Listen on this TCP port instead; 0 takes a free one")
        ->check(CLI::Range(0, 65535))
        ->excludes(link);
    command->add_option("--gap", options->gapMs, "Silence that ends a request, in ms (20)")
        ->check(CLI::Range(1, 10000));
    command->callback(
        [&program, options] { program.chosen = [&program, options] { return runSim(program, *options); }; });
}
