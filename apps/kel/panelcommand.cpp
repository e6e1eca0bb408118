#include "application.h"
#include "catalogue/catalogue.h"
#include "command.h"
#include "commands.h"
#include "panel/deviceroutes.h"
#include "panel/formloader.h"
#include "panel/latereading.h"
#include "panel/panelclicks.h"
#include "panel/panelfiles.h"
#include "panel/paneltrace.h"
#include "panel/plotfeed.h"
#include "quitonsignals.h"
#include "screenshot.h"

#include <kelglobals.h>
#include <localdevice.h>

#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace
{

struct PanelOptions {
    std::string form;
    std::string catalogue;
    std::string screenshot;
    std::string log;
    std::vector<std::string> clicks;
    int gapMs = 20;
    int afterMs = 500;
    bool trace = false;
};

QStringList clickedNames(const PanelOptions &options)
{
    QStringList names;
    for (const std::string &name : options.clicks)
        names << QString::fromStdString(name);
    return names;
}

int takeScreenshot(QWidget &window, const QString &path, int afterMs)
{
    // A signal ends the loop early; then there is no picture.
    QTimer::singleShot(afterMs, &window, [] { QCoreApplication::exit(EXIT_SUCCESS + 1); });
    if (QCoreApplication::exec() == EXIT_SUCCESS)
        return EXIT_FAILURE;
    saveScreenshot(window, path);
    return EXIT_SUCCESS;
}

PanelFiles findFiles(const PanelOptions &options)
{
    PanelFiles files = PanelFiles::of(QString::fromStdString(options.form));
    for (const QString &ignored : qAsConst(files.ignored))
        std::fprintf(stderr, "kel: %s\n", qPrintable(ignored));
    if (!options.catalogue.empty())
        files.catalogue = QString::fromStdString(options.catalogue);
    return files;
}

bool hasCatalogueDevice(const QWidget &window)
{
    const QList<LocalDevice *> devices = window.findChildren<LocalDevice *>();
    return std::any_of(devices.begin(), devices.end(), [](const LocalDevice *d) { return d->currentID() >= 0; });
}

/// Runs until the end of the panel. Throws what is wrong with the \a catalogue and was not seen before it was opened.
int runWindow(QWidget &window, const QString &catalogue, const PanelOptions &options)
{
    std::unique_ptr<CommandError> fault;
    if (!catalogue.isEmpty())
        readCatalogueAfterFirstFrame(window, catalogue, [&fault](const CommandError &wrong) {
            fault = std::make_unique<CommandError>(wrong);
            QCoreApplication::exit();
        });
    window.show();
    const QString screenshot = QString::fromStdString(options.screenshot);
    const int status =
        screenshot.isEmpty() ? QApplication::exec() : takeScreenshot(window, screenshot, options.afterMs);
    if (fault)
        throw CommandError(*fault);
    return status;
}

int runPanel(Program &program, const PanelOptions &options)
{
    const auto application = makeApplication(program);
    const QString screenshot = QString::fromStdString(options.screenshot);
    if (!screenshot.isEmpty())
        checkScreenshotPath(screenshot);

    // Only who looks at a panel gains from a sooner frame.
    const bool isSeen = screenshot.isEmpty() && !isWithoutDisplay();
    const PanelFiles files = findFiles(options);
    if (!files.catalogue.isEmpty())
        openCatalogueUnread(files.catalogue, isSeen ? CatalogueCheck::Pages : CatalogueCheck::Whole);
    const QString path = files.form;
    const LoadedForm form = loadForm(path);
    for (const QString &complaint : form.complaints)
        std::fprintf(stderr, "kel: %s\n", qPrintable(complaint));
    if (files.catalogue.isEmpty() && hasCatalogueDevice(*form.window))
        std::fprintf(stderr, "kel: without a catalogue (--db) the devices know no command and no answer\n");
    for (const QString &complaint : feedPlots(*form.window))
        std::fprintf(stderr, "kel: %s: %s\n", qPrintable(path), qPrintable(complaint));

    Kel::connection.setMessageGap(options.gapMs);
    DeviceRoutes routes(Kel::connection, path);
    if (options.trace)
        traceRoutes(routes, TrafficLog(QStringLiteral("panel")));
    if (!options.log.empty())
        traceRoutes(routes, TrafficLog::toFile(QStringLiteral("panel"), QString::fromStdString(options.log)));
    routes.open(*form.window);
    clickButtons(*form.window, clickedNames(options));
    // Last of all, so that what is wrong with the files is said without a display too.
    if (isWithoutDisplay() && screenshot.isEmpty())
        throw CommandError(QStringLiteral("no display to show %1 on (--screenshot saves it as a picture)").arg(path));
    quitOnSignals();
    return runWindow(*form.window, files.catalogue, options);
}

} // namespace

void addPanelCommand(Program &program)
{
    auto options = std::make_shared<PanelOptions>();
    CLI::App *command = program.line.add_subcommand("panel", "Run a panel made in Qt Designer");
    command->add_option("form", options->form, "The form (.ui) or the project file")->required();
    command->add_option("--db", options->catalogue, "The command catalogue (SQLite), in place of a project's");
    command->add_option("--screenshot", options->screenshot, "Save a picture of the panel and end");
    command->add_option("--after", options->afterMs, "When the picture is taken, in ms (500)")
        ->check(CLI::Range(0, 600000));
    command->add_option("--click", options->clicks, "Click the button of this name (more than once for several)")
        ->allow_extra_args(false);
    command->add_option("--gap", options->gapMs, "Silence that ends a message, in ms (20)")
        ->check(CLI::Range(0, 10000));
    command->add_option("--log", options->log, "Write what goes over the ports to this file, for kel monitor");
    command->add_flag("--trace", options->trace, "Print what goes over the ports");
    command->callback(
        [&program, options] { program.chosen = [&program, options] { return runPanel(program, *options); }; });
}
