/// \file
/// Speed as a ratio: a job of ours beside a peer that does the same work, in turn in one process.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QWidget;

/// One way to do a job.
struct Contender {
    std::string name;
    std::function<void()> run;                ///< Does the job, as often as count says.
    int count = 1;                            ///< How often a run does it; the table shows the time of one.
    std::function<std::string()> result = {}; ///< What it brings about, in words; none when it computes nothing.
};

/// Two times that were measured otherwise than by repeating a job, in nanoseconds.
struct Measurement {
    std::string job;
    std::string ours;
    double oursNs = 0.0;
    std::string peer;
    double peerNs = 0.0;
    std::optional<double> goal;
};

/// Adds a comparison to the subject that is being prepared. \a goal is the largest wanted ratio of our
/// time to the peer's. Ends the program when both have results and these differ.
void compare(const std::string &job, const Contender &ours, const Contender &peer, std::optional<double> goal = {});

/// Adds one row to the table at once.
void report(const Measurement &measurement);

/// Keeps \a widget until all comparisons of the subject are done.
void keep(QWidget *widget);

double median(std::vector<double> values); ///< Of an odd number of values.

/// Ends the program with a line on standard error unless \a holds.
void require(bool holds, const std::string &what);

/// What was asked for on the command line.
struct BenchmarkOptions {
    bool isLong = false; ///< Time does not matter: more frames where rare events are looked for.
};
const BenchmarkOptions &benchmarkOptions();

/// Runs the subjects that the command line names, all by default; see `kel_bench --help`.
int runBenchmarks(int argc, char **argv);
