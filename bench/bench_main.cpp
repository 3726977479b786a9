// Runs every benchmark (console output, and JSON with --benchmark_out), then
// prints the performance table: each measure as the ratio taken within this
// run, beside its goal.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include <benchmark/benchmark.h>

namespace {

// Keeps the counters of every run by benchmark name while the console shows them.
class CollectingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            for (const auto& counter : run.counters) counters_[NameOf(run)][counter.first] = counter.second;
        ConsoleReporter::ReportRuns(runs);
    }

    // The counter, or NaN when the benchmark did not run.
    double Counter(const std::string& benchmark, const std::string& counter) const {
        auto run = counters_.find(benchmark);
        if (run == counters_.end()) return std::nan("");
        auto value = run->second.find(counter);
        return value == run->second.end() ? std::nan("") : value->second;
    }

private:
    // The registered name and its arguments, without the run settings.
    static std::string NameOf(const Run& run) {
        const auto& name = run.run_name;
        return name.args.empty() ? name.function_name : name.function_name + "/" + name.args;
    }

    std::map<std::string, std::map<std::string, double>> counters_;
};

struct Row {
    const char* measure;
    const char* benchmark;
    const char* counter;
    const char* format;
    double goal;
    const char* goalText;
};

void PrintTable(const CollectingReporter& results) {
    const Row rows[] = {
        {"event -> serial callback, 1 camera, / bare parse", "event/cameras:1", "ratio", "%.2f x", 1.3, "<= 1.3 x"},
        {"same, the 4096th of 4096 cameras", "event/cameras:4096", "ratio", "%.2f x", 1.3, "<= 1.3 x"},
        {"IOCTL op 2, 1024 cameras x 32 presets, apply + save / bare parse", "update/device-per-camera", "ratio",
         "%.2f x", 2.5, "<= 2.5 x"},
        {"same, all cameras under one Device: growth per doubling / bare parse's", "update/one-device",
         "doubling_growth_ratio", "%.2f x", 1.1, "<= 1.1 x"},
        {"Open loading that VORNA.xml / bare parse of the file", "open", "ratio", "%.2f x", 2.5, "<= 2.5 x"},
        {"peak heap during the first op 2, growth / bare parse's", "update/first-memory", "ratio", "%.2f x", 1.5,
         "<= 1.5 x"},
        {"repeat cadence and tour dwell, lateness p99, quiet process", "worker/lateness", "p99_idle_ms", "%.2f ms",
         0.5, "<= 0.5 ms"},
        {"same, every core busy", "worker/lateness", "p99_busy_ms", "%.2f ms", 2.0, "<= 2 ms"},
        {"worker CPU, 256 idle bound cameras", "worker/cpu/cameras:256/touring:0",
         "cpu_percent_of_core", "%.3f %%", 0.05, "<= 0.05 %"},
        {"stop latency p99 in frame times, 2400 baud, 32 repeating cameras", "line/stop-latency/baud:2400/cameras:32",
         "scheduler_p99_frames", "%.2f", 2.0, "<= 2"},
        {"same, 9600 baud", "line/stop-latency/baud:9600/cameras:32", "scheduler_p99_frames", "%.2f", 2.0, "<= 2"},
        {"decode Pelco-D, CPU per second of 115200-baud traffic", "decode/Pelco-D", "ms_per_wire_second", "%.3f ms", 1.0, "<= 1 ms"},
        {"same, Pelco-P", "decode/Pelco-P", "ms_per_wire_second", "%.3f ms", 1.0, "<= 1 ms"},
        {"same, Panasonic", "decode/Panasonic", "ms_per_wire_second", "%.3f ms", 1.0, "<= 1 ms"},
        {"same, AD-RS422", "decode/AD-RS422", "ms_per_wire_second", "%.3f ms", 1.0, "<= 1 ms"},
        {"same, Bosch", "decode/Bosch", "ms_per_wire_second", "%.3f ms", 1.0, "<= 1 ms"},
        {"same, GE-ASCII", "decode/GE-ASCII", "ms_per_wire_second", "%.3f ms", 1.0, "<= 1 ms"},
        {"same, GE-Impac", "decode/GE-Impac", "ms_per_wire_second", "%.3f ms", 1.0, "<= 1 ms"},
        {"same, AD-M3200 Multi", "decode/AD-M3200 Multi", "ms_per_wire_second", "%.3f ms", 1.0, "<= 1 ms"},
        {"identify protocol and baud, 1 s of 9600-baud traffic read at 8 rates", "decode/identify", "identify_ms",
         "%.1f ms", 100.0, "<= 100 ms"},
    };
    std::printf("\n| measure | result | goal | met |\n|---|---|---|---|\n");
    for (const Row& row : rows) {
        const double value = results.Counter(row.benchmark, row.counter);
        char text[32];
        std::snprintf(text, sizeof text, row.format, value);
        std::printf("| %s | %s | %s | %s |\n", row.measure, std::isnan(value) ? "not run" : text, row.goalText,
                    std::isnan(value) ? "-" : value <= row.goal ? "yes" : "NO");
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    // The module reads and writes VORNA.xml in the working directory; a memory
    // file system keeps disk syncs out of the figures.
    char directory[] = "/dev/shm/vorna-bench-XXXXXX";
    char fallback[] = "/tmp/vorna-bench-XXXXXX";
    const char* workdir = mkdtemp(directory);
    if (workdir == nullptr) workdir = mkdtemp(fallback);
    if (workdir == nullptr || chdir(workdir) != 0) {
        std::perror("vorna_bench: working directory");
        return 1;
    }
    CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    PrintTable(reporter);
    std::filesystem::remove_all(workdir);
    return 0;
}
