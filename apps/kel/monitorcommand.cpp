// kel monitor: the traffic of a port or of a log, with what a catalogue knows about it.
#include "catalogue/cataloguefiles.h"
#include "command.h"
#include "commands.h"
#include "printable.h"
#include "quitonsignals.h"
#include "traffic/logfollower.h"
#include "traffic/portlistener.h"
#include "traffic/trafficdecoder.h"
#include "traffic/trafficlog.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <memory>

namespace
{

struct MonitorOptions {
    std::string path;
    std::string catalogue;
    std::string device;
    std::string log;
    int gapMs = 20;
    bool isOnce = false;
};

TrafficDecoder makeDecoder(const QString &path, const QString &device)
{
    const AnyCatalogue catalogue = AnyCatalogue::read(path);
    if (catalogue.isSource && !catalogue.mistakes.isEmpty())
        throw CommandError(catalogue.mistakes.first());
    return TrafficDecoder(catalogue.data, device);
}

/// Explains entries and writes them to the terminal and, if wanted, to a log.
class Monitor
{
public:
    explicit Monitor(const MonitorOptions &options);

    void show(TrafficEntry entry) const;

    /// Throws when something of what was shown is lost.
    void checkWritten() const;

private:
    TrafficDecoder m_decoder;
    QVector<TrafficLog> m_logs;
};

Monitor::Monitor(const MonitorOptions &options)
{
    const QString catalogue = QString::fromStdString(options.catalogue);
    if (!catalogue.isEmpty())
        m_decoder = makeDecoder(catalogue, QString::fromStdString(options.device));
    m_logs << TrafficLog(QStringLiteral("line"));
    const QString log = QString::fromStdString(options.log);
    if (log.isEmpty())
        return;
    const QString path = QString::fromStdString(options.path);
    if (QFileInfo::exists(log) && QFileInfo(log).canonicalFilePath() == QFileInfo(path).canonicalFilePath())
        throw CommandError(QStringLiteral("%1: a log cannot be written to itself").arg(printable(log)));
    m_logs << TrafficLog::toFile(QStringLiteral("line"), log);
}

void Monitor::show(TrafficEntry entry) const
{
    m_decoder.explain(entry);
    for (const TrafficLog &log : m_logs)
        log.write(entry);
}

void Monitor::checkWritten() const
{
    if (m_logs.first().hasLostLines())
        throw CommandError(QStringLiteral("cannot write to standard output"));
    if (m_logs.last().hasLostLines())
        throw CommandError(QStringLiteral("the log lacks lines"));
}

int followLog(const MonitorOptions &options, const Monitor &monitor)
{
    LogFollower log(QString::fromStdString(options.path));
    QString problem;
    QObject::connect(&log, &LogFollower::entry, &log, [&monitor](const TrafficEntry &entry) { monitor.show(entry); });
    QObject::connect(&log, &LogFollower::failed, &log, [&problem](const QString &error) {
        problem = error;
        QCoreApplication::quit();
    });
    const bool isGood = log.readOn();
    if (isGood && options.isOnce) {
        log.readRest();
    } else if (isGood) {
        log.follow();
        QCoreApplication::exec();
    }
    if (!problem.isEmpty())
        throw CommandError(problem);
    return EXIT_SUCCESS;
}

int listen(const MonitorOptions &options, const Monitor &monitor)
{
    const PortListener port(QString::fromStdString(options.path), options.gapMs);
    QObject::connect(&port, &PortListener::message, &port, [&monitor](const QByteArray &bytes) {
        TrafficEntry entry;
        entry.time = QTime::currentTime();
        entry.end = QStringLiteral("line");
        entry.direction = TrafficEntry::Direction::Unknown;
        entry.bytes = bytes;
        monitor.show(entry);
    });
    TrafficEntry note;
    note.time = QTime::currentTime();
    note.end = QStringLiteral("line");
    note.remark = QStringLiteral("listens to %1").arg(QString::fromStdString(options.path));
    monitor.show(note);
    return QCoreApplication::exec();
}

int runMonitor(Program &program, const MonitorOptions &options)
{
    const QCoreApplication application(program.argc, program.argv);
    const QString path = QString::fromStdString(options.path);
    const bool isPort = path.contains(QLatin1String("://"));
    const QFileInfo info(path);
    if (!isPort && !info.exists())
        throw CommandError(QStringLiteral("%1: there is no such port or log").arg(printable(path)));
    if (!isPort && info.isDir())
        throw CommandError(QStringLiteral("%1: a folder is no port and no log").arg(printable(path)));
    if (options.catalogue.empty() && !options.device.empty())
        throw CommandError(QStringLiteral("--device needs the catalogue that it stands in (--db)"));
    const Monitor monitor(options);
    quitOnSignals();
    const int status = !isPort && info.isFile() ? followLog(options, monitor) : listen(options, monitor);
    monitor.checkWritten();
    return status;
}

} // namespace

void addMonitorCommand(Program &program)
{
    auto options = std::make_shared<MonitorOptions>();
    CLI::App *command = program.line.add_subcommand("monitor", "Show what goes over a port, or follow a log");
    command->add_option("path", options->path, "A port (full path or file), or the log of kel panel --log")->required();
    command->add_option("--db", options->catalogue, "The catalogue that knows the messages (SQLite or TOML)");
    command->add_option("--device", options->device, "Explain this instance only, by its name or number");
    command->add_option("--log", options->log, "Write it to this file too, for kel sim --replay");
    command->add_option("--gap", options->gapMs, "Silence that ends a message, in ms (20)")
        ->check(CLI::Range(1, 10000));
    command->add_flag("--once", options->isOnce, "End when the log is read instead of following it");
    command->callback(
        [&program, options] { program.chosen = [&program, options] { return runMonitor(program, *options); }; });
}
