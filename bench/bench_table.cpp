#include "bench_table.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace bench {
namespace {

// A benchmark's name and arguments, without the settings (a minimum time, say) that
// Google Benchmark adds to its full name.
std::string Name(const benchmark::BenchmarkReporter::Run& run) {
    const std::string& arguments = run.run_name.args;
    return run.run_name.function_name + (arguments.empty() ? "" : "/" + arguments);
}

// Keeps every run's figures instead of printing them.
class Collector : public benchmark::BenchmarkReporter {
public:
    std::map<std::string, benchmark::BenchmarkReporter::Run> runs;

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& reports) override {
        for (const Run& run : reports) {
            if (run.run_type == Run::RT_Iteration) runs[Name(run)] = run;
        }
    }
};

double Counter(const benchmark::BenchmarkReporter::Run& run, const char* name) {
    const auto found = run.counters.find(name);
    return found == run.counters.end() ? 0.0 : static_cast<double>(found->second);
}

double Value(const benchmark::BenchmarkReporter::Run& run, Figure::Measure measure) {
    switch (measure) {
        case Figure::Measure::ItemsPerSecond:
            return Counter(run, "items_per_second");
        case Figure::Measure::MegapixelsPerSecond:
            return Counter(run, "items_per_second") / 1e6;
        case Figure::Measure::MegabytesPerSecond:
            return Counter(run, "bytes_per_second") / 1e6;
        case Figure::Measure::NanosecondsPerIteration:
            break;
    }
    return run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
}

const char* Unit(Figure::Measure measure) {
    switch (measure) {
        case Figure::Measure::ItemsPerSecond:
            return "items/s";
        case Figure::Measure::MegapixelsPerSecond:
            return "Mpix/s";
        case Figure::Measure::MegabytesPerSecond:
            return "MB/s";
        case Figure::Measure::NanosecondsPerIteration:
            break;
    }
    return "ns";
}

}  // namespace

int RunTable(int argc, char** argv, const std::vector<Figure>& figures) {
    benchmark::Initialize(&argc, argv);
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    for (const Figure& figure : figures) {
        std::vector<std::pair<std::string, std::string>> pairs = figure.slowest_of;
        if (pairs.empty()) pairs.emplace_back(figure.measured, figure.reference);
        bool found = false;
        std::string slowest;
        double value = 0, reference_value = 0, ratio = 0;
        for (const auto& [measured_name, reference_name] : pairs) {
            const auto measured = collector.runs.find(measured_name);
            const auto reference = collector.runs.find(reference_name);
            if (measured == collector.runs.end() || reference == collector.runs.end()) continue;
            const double this_value = Value(measured->second, figure.measure);
            const double this_reference = Value(reference->second, figure.measure);
            const double this_ratio = this_reference > 0 ? this_value / this_reference : 0.0;
            if (found && this_ratio >= ratio) continue;
            found = true;
            slowest = measured_name;
            value = this_value;
            reference_value = this_reference;
            ratio = this_ratio;
        }
        if (!found) continue;
        std::printf("%s  %.4g %s  ref=%.4g %s  ratio=%.3g  target=%s  %s%s\n", figure.name.c_str(),
                    value, Unit(figure.measure), reference_value, Unit(figure.measure), ratio,
                    figure.target.c_str(), figure.meets(value, reference_value) ? "ok" : "MISS",
                    figure.slowest_of.empty() ? "" : ("  (" + slowest + ")").c_str());
    }
    std::fflush(stdout);
    benchmark::Shutdown();
    return 0;
}

}  // namespace bench
