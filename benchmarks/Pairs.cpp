#include "Pairs.h"

#include "Output.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

namespace
{
constexpr int Repetitions = 31;
constexpr int QuickRepetitions = 7;

/// Collects the time of every repetition under the benchmark's name; prints nothing.
class Collector final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.error_occurred)
                m_error = run.run_name.function_name + ": " + run.error_message;
            else if (run.run_type == Run::RT_Iteration)
                m_times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
        }
    }

    double median(const std::string &name)
    {
        std::vector<double> &times = m_times[name];
        if (times.empty()) {
            std::fprintf(stderr, "nothing was measured of %s %s\n", name.c_str(), m_error.c_str());
            std::exit(1);
        }
        std::sort(times.begin(), times.end());
        const std::size_t middle = times.size() / 2;
        return times.size() % 2 == 1 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
    }

private:
    std::map<std::string, std::vector<double>> m_times;
    std::string m_error;
};

std::string floorName(const Pair &pair)
{
    return pair.name + ".floor";
}
} // namespace

int runPairs(int argc, char **argv, const std::vector<Pair> &pairs)
{
    const bool quick = std::any_of(
        argv + 1, argv + argc, [](const char *argument) { return std::string_view(argument) == "--quick"; });
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    char *flags[] = {argv[0], interleaving.data()};
    int flagCount = 2;
    benchmark::Initialize(&flagCount, flags);
    const auto add = [quick](const std::string &name, const auto &function, benchmark::TimeUnit unit) {
        benchmark::RegisterBenchmark(name.c_str(), function)
            ->Repetitions(quick ? QuickRepetitions : Repetitions)
            ->MinTime(0.05)
            ->UseRealTime()
            ->Unit(unit);
    };
    for (const Pair &pair : pairs) {
        add(pair.name, pair.value, pair.unit);
        add(floorName(pair), pair.floor, pair.unit);
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    for (const Pair &pair : pairs)
        std::fprintf(measuredOutput(),
                     "{\"name\": \"%s\", \"value\": %.6g, \"floor\": %.6g, \"unit\": \"%s\"}\n",
                     pair.name.c_str(), collector.median(pair.name), collector.median(floorName(pair)),
                     benchmark::GetTimeUnitString(pair.unit));
    return 0;
}
