#include "application.h"
#include "catalogue/catalogue.h"
#include "command.h"
#include "commands.h"
#include "demoscenario.h"
#include "examples.h"
#include "panel/deviceroutes.h"
#include "panel/formloader.h"
#include "panel/paneltrace.h"
#include "panel/plotfeed.h"
#include "quitonsignals.h"
#include "simulator/ptyline.h"
#include "simulator/simulator.h"

#include <kelglobals.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace
{

/// The port that the hall's form names; the demo puts its pseudo terminal in its place.
const QLatin1String HallPort("/tmp/kel-hall");
constexpr int GapMs = 20;

void copyExample(const QString &file, const QDir &folder)
{
    const QString target = folder.filePath(file);
    QFile::remove(target);
    QFile source(examplePath(QStringLiteral("hall/") + file));
    if (!source.copy(target))
        throw CommandError(QStringLiteral("%1: %2").arg(target, source.errorString()));
}

/// Makes the hall's catalogue, with its variables beside it.
QString makeHallCatalogue(const QDir &folder)
{
    const QString catalogue = folder.filePath(QStringLiteral("hall.sqlite"));
    makeCatalogue(examplePath(QStringLiteral("hall/hall.toml")), catalogue);
    return catalogue;
}

int writeInto(const QString &path)
{
    if (!QDir().mkpath(path))
        throw CommandError(QStringLiteral("%1: the folder cannot be made").arg(path));
    const QDir folder(path);
    makeHallCatalogue(folder);
    for (const char *file : {"hall.ui", "hall.rules", "hall.toml"})
        copyExample(QLatin1String(file), folder);
    std::printf("kel sim %s --link %s\nkel panel %s --db=%s\n",
                qPrintable(folder.filePath(QStringLiteral("hall.rules"))), HallPort.latin1(),
                qPrintable(folder.filePath(QStringLiteral("hall.ui"))),
                qPrintable(folder.filePath(QStringLiteral("hall.sqlite"))));
    return EXIT_SUCCESS;
}

int runDemo(Program &program, const std::string &into)
{
    const auto application = makeApplication(program);
    if (!into.empty())
        return writeInto(QString::fromStdString(into));

    const QTemporaryDir folder;
    openCatalogue(makeHallCatalogue(QDir(folder.path())));
    const Simulator simulator(Simulator::readRules(examplePath(QStringLiteral("hall/hall.rules"))),
                              std::make_unique<PtyLine>(), GapMs, TrafficLog(QStringLiteral("device")));

    const QString path = examplePath(QStringLiteral("hall/hall.ui"));
    const LoadedForm form = loadForm(path);
    feedPlots(*form.window);
    const TrafficLog log(QStringLiteral("panel"));
    DeviceRoutes routes(Kel::connection, path);
    routes.setPortName(HallPort, simulator.lineName());
    traceRoutes(routes, log);
    routes.open(*form.window);
    log.note(QStringLiteral("devices are at %1").arg(simulator.lineName()));

    quitOnSignals();
    form.window->show();
    if (isOnScreen())
        return QApplication::exec();
    DemoScenario(*form.window, log).play(QDir::current().filePath(QStringLiteral("demo.png")));
    return EXIT_SUCCESS;
}

} // namespace

void addDemoCommand(Program &program)
{
    auto into = std::make_shared<std::string>();
    CLI::App *command = program.line.add_subcommand("demo", "An example panel with simulated devices");
    command->add_option("--into", *into, "Write the example's files to this folder instead, to play with them");
    command->callback([&program, into] { program.chosen = [&program, into] { return runDemo(program, *into); }; });
}
