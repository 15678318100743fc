#include <media/names/FileNameParser.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace
{
constexpr int Rounds = 200; // over one name, since the clock itself takes a while

class Collector final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            m_times.push_back(run.GetAdjustedRealTime());
    }
    std::vector<double> m_times;
};
} // namespace

/// For each line of standard input the time that its reading takes, in microseconds, in the lines' order.
int main(int, char **argv)
{
    int argumentCount = 1;
    benchmark::Initialize(&argumentCount, argv);
    for (std::string line; std::getline(std::cin, line);) {
        const QString name = QString::fromStdString(line);
        benchmark::RegisterBenchmark(line.c_str(),
                                     [name](benchmark::State &state) {
                                         for (const auto _ : state)
                                             benchmark::DoNotOptimize(parseVideoName(name));
                                     })
            ->Iterations(Rounds)
            ->UseRealTime()
            ->Unit(benchmark::kMicrosecond);
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    for (const double microseconds : collector.m_times)
        std::printf("%.4f\n", microseconds);
    return 0;
}
