// How much of a core the worker cycle takes: CPU time of the worker thread
// per second of wall time, for idle bound cameras and for touring ones.
#include <benchmark/benchmark.h>
#include <time.h>

#include <chrono>
#include <thread>

#include "core/ptz_controller.h"
#include "env/environment.h"
#include "host/host_sender.h"
#include "protocols/pelco_d.h"

using namespace vorna;

namespace {

int DiscardMessage(HostMessage*, int) { return 0; }

double ThreadCpuSeconds() {
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec / 1e9;
}

void AddCameras(PtzController& controller, int count, bool touring) {
    CProtocol* pelco = controller.protocols["Pelco-D"].get();
    for (int i = 0; i < count; ++i) {
        auto camera = std::make_unique<PtzCamera>();
        camera->protocol = pelco;
        camera->stream = 1;
        camera->inputNumber = i;
        camera->lastCommandTime = NowMs();
        if (touring) {
            camera->tourEnabled = true;
            camera->tourDwell = 1;
            camera->tour = {{1, 1}, {2, 2}};
        }
        controller.cameras.Append(std::move(camera));
    }
}

void BM_WorkerCpu(benchmark::State& state) {
    const int cameras = static_cast<int>(state.range(0));
    const bool touring = state.range(1) != 0;
    g_hostCallback = &DiscardMessage;
    double cpuPercent = 0;
    for (auto _ : state) {
        PtzController controller;
        controller.protocols["Pelco-D"] = std::make_unique<CPelcoD>();
        AddCameras(controller, cameras, touring);
        controller.started = true;
        double cpu = 0;
        const auto start = std::chrono::steady_clock::now();
        std::thread worker([&] {
            const double before = ThreadCpuSeconds();
            controller.RunWorkerCycle();
            cpu = ThreadCpuSeconds() - before;
        });
        std::this_thread::sleep_for(std::chrono::seconds(2));
        controller.StopAxes();
        worker.join();
        const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        cpuPercent = 100.0 * cpu / wall;
    }
    state.counters["cpu_percent_of_core"] = cpuPercent;
}

}  // namespace

BENCHMARK(BM_WorkerCpu)
    ->Name("worker/cpu")
    ->ArgNames({"cameras", "touring"})
    ->Args({256, 0})
    ->Args({256, 1})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
