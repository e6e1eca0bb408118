/// \file
/// Speed as a ratio: a job of ours beside a peer that does the same work, interleaved in one run.
#pragma once

#include <functional>
#include <optional>
#include <string>

/// One way to do a job.
struct Contender {
    std::string name;
    std::function<void()> run; ///< Does the whole job once; cheap jobs loop inside.
};

/// Registers a comparison. \a goal is the largest wanted ratio of our time to the peer's.
void compare(const std::string &job, const Contender &ours, const Contender &peer, std::optional<double> goal = {});

/// Runs all registered comparisons interleaved, prints one table of medians of five and their ratios
/// (and JSON with `--json FILE`), and returns the exit status. Call it at the end of `main`.
int runComparisons(int argc, char **argv);
