#include "comparison.h"

#include "subjects.h"

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

namespace
{

constexpr int Repetitions = 5;
constexpr double SecondsPerRepetition = 0.1;

struct Job {
    std::string name;
    Contender ours;
    Contender peer;
    std::optional<double> goal;
};

/// What is being compared now, and what came out so far.
struct Session {
    std::vector<Job> jobs;
    std::vector<std::unique_ptr<QWidget>> widgets;
    std::vector<Measurement> rows;
    BenchmarkOptions options;
};

Session &session()
{
    static Session only;
    return only;
}

struct CommandLine {
    QString json;
    std::vector<std::string_view> names;
};

/// Keeps the median time of each benchmark, in nanoseconds, and prints nothing. It is the processor's time:
/// the jobs wait for nobody, and what other programs take meanwhile is not theirs.
class Medians : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.aggregate_name == "median")
                nanoseconds[run.run_name.function_name] = run.GetAdjustedCPUTime();
        }
    }

    std::map<std::string, double> nanoseconds;
};

void addBenchmark(const char *name, const std::function<void()> &run)
{
    benchmark::RegisterBenchmark(name,
                                 [&run](benchmark::State &state) {
                                     for (auto unused : state) {
                                         (void)unused;
                                         run();
                                     }
                                 })
        ->Repetitions(Repetitions)
        ->MinTime(SecondsPerRepetition)
        ->ReportAggregatesOnly();
}

/// Times both contenders of \a job in turn, so that what else the machine does slows both alike.
Measurement timed(const Job &job)
{
    addBenchmark("ours", job.ours.run);
    addBenchmark("peer", job.peer.run);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    benchmark::ClearRegisteredBenchmarks();
    return {job.name,
            job.ours.name,
            medians.nanoseconds["ours"] / job.ours.count,
            job.peer.name,
            medians.nanoseconds["peer"] / job.peer.count,
            job.goal};
}

const char *verdict(const Measurement &row)
{
    if (!row.goal)
        return "";
    return row.oursNs <= *row.goal * row.peerNs ? "met" : "missed";
}

void printHead()
{
    std::printf("%-34s %-22s %13s  %-24s %13s %7s %6s\n", "job", "ours", "ns", "peer", "ns", "ratio", "goal");
}

void print(const Measurement &row)
{
    char goal[16] = "-";
    if (row.goal)
        std::snprintf(goal, sizeof goal, "%.3f", *row.goal);
    std::printf("%-34s %-22s %13.1f  %-24s %13.1f %7.3f %6s %s\n", row.job.c_str(), row.ours.c_str(), row.oursNs,
                row.peer.c_str(), row.peerNs, row.oursNs / row.peerNs, goal, verdict(row));
    std::fflush(stdout);
}

QJsonObject toJson(const Measurement &row)
{
    return {{"job", QString::fromStdString(row.job)},
            {"ours", QString::fromStdString(row.ours)},
            {"ours_ns", row.oursNs},
            {"peer", QString::fromStdString(row.peer)},
            {"peer_ns", row.peerNs},
            {"ratio", row.oursNs / row.peerNs},
            {"goal", row.goal ? QJsonValue(*row.goal) : QJsonValue()},
            {"met", row.goal ? QJsonValue(row.oursNs <= *row.goal * row.peerNs) : QJsonValue()}};
}

void writeJson(const QString &path)
{
    QJsonArray rows;
    for (const Measurement &row : session().rows)
        rows.append(toJson(row));
    QFile file(path);
    const QByteArray text = QJsonDocument(rows).toJson();
    require(file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush(),
            "cannot write " + path.toStdString());
}

/// Prepares a subject, times its comparisons and lets go of all that it needed.
void runSubject(const Subject &subject)
{
    subject.add();
    for (const Job &job : session().jobs)
        report(timed(job));
    session().jobs.clear();
    session().widgets.clear();
}

void usage(std::FILE *to)
{
    std::fprintf(to, "usage: kel_bench [--json FILE] [--long] [SUBJECT...]\n\nsubjects:");
    for (const Subject &subject : Subjects)
        std::fprintf(to, " %s", subject.name);
    std::fprintf(to, "\n");
}

[[noreturn]] void refuse(std::string_view word)
{
    std::fprintf(stderr, "kel_bench: what is \"%.*s\"?\n", static_cast<int>(word.size()), word.data());
    usage(stderr);
    std::exit(2);
}

CommandLine readCommandLine(int argc, char **argv)
{
    CommandLine line;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        const auto isSubject = [word](const Subject &subject) { return word == subject.name; };
        if (word == "--json" && i + 1 < argc) {
            line.json = QString::fromLocal8Bit(argv[++i]);
        } else if (word == "--long") {
            session().options.isLong = true;
        } else if (word == "--help") {
            usage(stdout);
            std::exit(0);
        } else if (std::any_of(std::begin(Subjects), std::end(Subjects), isSubject)) {
            line.names.push_back(word);
        } else {
            refuse(word);
        }
    }
    return line;
}

void initializeBenchmarks()
{
    char program[] = "kel_bench";
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    char *options[] = {program, interleave, nullptr};
    int count = 2;
    benchmark::Initialize(&count, options);
}

} // namespace

void compare(const std::string &job, const Contender &ours, const Contender &peer, std::optional<double> goal)
{
    if (ours.result && peer.result) {
        const std::string result = ours.result();
        require(result == peer.result(), job + ": " + ours.name + " and " + peer.name + " differ");
    }
    session().jobs.push_back({job, ours, peer, goal});
}

void report(const Measurement &measurement)
{
    session().rows.push_back(measurement);
    print(measurement);
}

void keep(QWidget *widget)
{
    session().widgets.emplace_back(widget);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void require(bool holds, const std::string &what)
{
    if (holds)
        return;
    std::fprintf(stderr, "kel_bench: %s\n", what.c_str());
    std::exit(1);
}

const BenchmarkOptions &benchmarkOptions()
{
    return session().options;
}

int runBenchmarks(int argc, char **argv)
{
    const CommandLine line = readCommandLine(argc, argv);
    initializeBenchmarks();
    printHead();
    for (const Subject &subject : Subjects) {
        const bool isWanted =
            line.names.empty() || std::find(line.names.begin(), line.names.end(), subject.name) != line.names.end();
        if (isWanted)
            runSubject(subject);
    }
    if (!line.json.isEmpty())
        writeJson(line.json);
    return 0;
}
