#pragma once
#include <benchmark/benchmark.h>
#include <functional>
#include <string>
#include <vector>

/// One line of the table: what is measured, and the floor that is measured beside it. Both loop over the
/// state as Google Benchmark wants it.
struct Pair
{
    std::string name;
    std::function<void(benchmark::State &)> value;
    std::function<void(benchmark::State &)> floor;
    benchmark::TimeUnit unit = benchmark::kMicrosecond;
};

/// Runs the pairs, values and floors interleaved at random, and prints the median of each as a line of JSON.
/// With
/// "--quick" among the arguments there are fewer repetitions. Gives the exit code.
int runPairs(int argc, char **argv, const std::vector<Pair> &pairs);
