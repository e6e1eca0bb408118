#include "comparison.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

namespace
{

constexpr int Repetitions = 5;

struct Job {
    std::string name;
    std::string ours;
    std::string peer;
    std::optional<double> goal;
};

std::vector<Job> &jobs()
{
    static std::vector<Job> all;
    return all;
}

/// Keeps the median time of each benchmark, in nanoseconds, and prints nothing.
class Medians : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.aggregate_name == "median")
                nanoseconds[run.run_name.function_name] = run.real_accumulated_time * 1e9;
        }
    }

    std::map<std::string, double> nanoseconds;
};

void addBenchmark(const std::string &name, const std::function<void()> &run)
{
    benchmark::RegisterBenchmark(name.c_str(),
                                 [run](benchmark::State &state) {
                                     for (auto unused : state) {
                                         (void)unused;
                                         run();
                                     }
                                 })
        ->Repetitions(Repetitions)
        ->ReportAggregatesOnly()
        ->UseRealTime();
}

const char *verdict(const Job &job, double ratio)
{
    if (!job.goal)
        return "";
    return ratio <= *job.goal ? "met" : "missed";
}

void print(const Job &job, double ours, double peer, std::FILE *json)
{
    const double ratio = ours / peer;
    const std::string goal = job.goal ? std::to_string(*job.goal).substr(0, 5) : "-";
    std::printf("%-34s %-22s %12.0f  %-22s %12.0f %7.3f %7s %s\n", job.name.c_str(), job.ours.c_str(), ours,
                job.peer.c_str(), peer, ratio, goal.c_str(), verdict(job, ratio));
    if (json != nullptr)
        std::fprintf(json,
                     "{\"job\": \"%s\", \"ours\": \"%s\", \"ours_ns\": %.1f, \"peer\": \"%s\", \"peer_ns\": %.1f, "
                     "\"ratio\": %.4f, \"goal\": %s}\n",
                     job.name.c_str(), job.ours.c_str(), ours, job.peer.c_str(), peer, ratio,
                     job.goal ? goal.c_str() : "null");
}

} // namespace

void compare(const std::string &job, const Contender &ours, const Contender &peer, std::optional<double> goal)
{
    jobs().push_back({job, ours.name, peer.name, goal});
    const std::string prefix = std::to_string(jobs().size());
    addBenchmark(prefix + " ours", ours.run);
    addBenchmark(prefix + " peer", peer.run);
}

int runComparisons(int argc, char **argv)
{
    std::FILE *json = nullptr;
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "--json") == 0)
            json = std::fopen(argv[i + 1], "a");
    }

    char program[] = "bench";
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    char *options[] = {program, interleave, nullptr};
    int count = 2;
    benchmark::Initialize(&count, options);

    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);

    std::printf("%-34s %-22s %12s  %-22s %12s %7s %7s\n", "job", "ours", "ns", "peer", "ns", "ratio", "goal");
    for (std::size_t i = 0; i < jobs().size(); ++i) {
        const std::string prefix = std::to_string(i + 1);
        print(jobs()[i], medians.nanoseconds[prefix + " ours"], medians.nanoseconds[prefix + " peer"], json);
    }
    if (json != nullptr)
        std::fclose(json);
    return 0;
}
