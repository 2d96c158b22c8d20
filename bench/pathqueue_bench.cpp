// How quickly a change to a watched file reaches the main thread through CVPathQueue, beside what
// inotify itself takes, and how many changes a second the watcher carries.
//
//   cmake -S . -B build -DCMAKE_BUILD_TYPE=Release && cmake --build build --target pathqueue_bench
//   build/bench/pathqueue_bench
//
// Every latency is from just before the write to the moment the reader has the event: the bare
// inotify reader blocks in read(); the watcher's delegate is called on the main thread while it
// pumps the main run loop.
#include "kit/Objects/CVPathQueue.hpp"

#include "platform/foundation/RunLoop.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int LatencySamples = 10'000;
constexpr int ThroughputFiles = 1'000;

std::map<std::string, std::vector<double>> g_samples; // microseconds, per benchmark
std::map<std::string, double> g_rates;

// A temporary folder of files, removed afterwards.
class Folder {
public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "pathqueue-bench-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) {
            std::perror("mkdtemp");
            std::exit(1);
        }
        m_path = pattern;
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    // Creates the file and opens it for writing.
    int create(const std::string& name) const {
        return ::open(file(name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    }
    std::string file(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

// A write that changes the contents but not the size: one kind of change, one report.
void touch(int fd) {
    if (::pwrite(fd, "z", 1, 0) != 1) {
        std::perror("pwrite");
        std::exit(1);
    }
}

// The sample at or below which `fraction` of the sorted samples lie.
double percentile(const std::vector<double>& sorted, double fraction) {
    auto rank = static_cast<size_t>(std::ceil(fraction * static_cast<double>(sorted.size())));
    return sorted[std::clamp<size_t>(rank, 1, sorted.size()) - 1];
}

void report(benchmark::State& state, const std::string& name, std::vector<double> samples) {
    if (samples.empty()) {
        return;
    }
    std::sort(samples.begin(), samples.end());
    state.counters["p50_us"] = percentile(samples, 0.50);
    state.counters["p99_us"] = percentile(samples, 0.99);
    g_samples[name] = std::move(samples);
}

// The floor: one inotify watch, a write, a blocking read of its notification.
void BM_InotifyWriteToRead(benchmark::State& state) {
    Folder folder;
    int writer = folder.create("file");
    int inotify = ::inotify_init1(IN_CLOEXEC);
    ::inotify_add_watch(inotify, folder.file("file").c_str(), IN_MODIFY);
    alignas(inotify_event) char buffer[4096];
    std::vector<double> samples;
    samples.reserve(LatencySamples);
    for (auto _ : state) {
        auto start = Clock::now();
        touch(writer);
        if (::read(inotify, buffer, sizeof buffer) <= 0) {
            state.SkipWithError("inotify read failed");
            break;
        }
        std::chrono::duration<double> elapsed = Clock::now() - start;
        state.SetIterationTime(elapsed.count());
        samples.push_back(elapsed.count() * 1e6);
    }
    report(state, "inotify", std::move(samples));
    ::close(inotify);
    ::close(writer);
}
BENCHMARK(BM_InotifyWriteToRead)->Iterations(LatencySamples)->UseManualTime()->Unit(benchmark::kMicrosecond);

// The floor with the same two hand-offs the watcher makes: a thread blocked in read() gets the
// notification and wakes the main thread, which was waiting on a condition variable.
void BM_InotifyWriteToReadOnAnotherThread(benchmark::State& state) {
    Folder folder;
    int writer = folder.create("file");
    int inotify = ::inotify_init1(IN_CLOEXEC);
    ::inotify_add_watch(inotify, folder.file("file").c_str(), IN_MODIFY);
    std::mutex mutex;
    std::condition_variable heardOne;
    uint64_t heard = 0;
    bool stopping = false;
    std::thread reader([&] {
        alignas(inotify_event) char buffer[4096];
        while (::read(inotify, buffer, sizeof buffer) > 0) {
            std::lock_guard lock(mutex);
            if (stopping) {
                return;
            }
            ++heard;
            heardOne.notify_all();
        }
    });
    std::vector<double> samples;
    samples.reserve(LatencySamples);
    for (auto _ : state) {
        std::unique_lock lock(mutex);
        uint64_t before = heard;
        lock.unlock();
        auto start = Clock::now();
        touch(writer);
        lock.lock();
        heardOne.wait(lock, [&] { return heard > before; });
        std::chrono::duration<double> elapsed = Clock::now() - start;
        state.SetIterationTime(elapsed.count());
        samples.push_back(elapsed.count() * 1e6);
    }
    {
        std::lock_guard lock(mutex);
        stopping = true;
    }
    touch(writer); // wakes the reader, which then sees it should stop
    reader.join();
    report(state, "inotify-thread", std::move(samples));
    ::close(inotify);
    ::close(writer);
}
BENCHMARK(BM_InotifyWriteToReadOnAnotherThread)
    ->Iterations(LatencySamples)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

// Notes when the delegate was called, and how often.
class TimingDelegate : public corvane::CVPathQueueDelegate {
public:
    void pathQueue(corvane::CVPathQueue&, const std::string&, const std::string&) override {
        lastCall = Clock::now();
        ++calls;
    }
    Clock::time_point lastCall;
    uint64_t calls = 0;
};

// The watcher: a write, the watcher thread, the main queue, the delegate on the main thread.
void BM_PathQueueWriteToDelegate(benchmark::State& state) {
    Folder folder;
    int writer = folder.create("file");
    auto queue = corvane::CVPathQueue::make();
    TimingDelegate delegate;
    queue->setDelegate(&delegate);
    queue->addPath(folder.file("file"));
    std::vector<double> samples;
    samples.reserve(LatencySamples);
    for (auto _ : state) {
        uint64_t before = delegate.calls;
        auto start = Clock::now();
        touch(writer);
        if (!ns::RunLoop::main().runUntil([&] { return delegate.calls > before; }, 1000ms)) {
            state.SkipWithError("a change went unheard");
            break;
        }
        std::chrono::duration<double> elapsed = delegate.lastCall - start;
        state.SetIterationTime(elapsed.count());
        samples.push_back(elapsed.count() * 1e6);
    }
    report(state, "pathqueue", std::move(samples));
    queue->setDelegate(nullptr);
    ::close(writer);
}
BENCHMARK(BM_PathQueueWriteToDelegate)
    ->Iterations(LatencySamples)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

// Throughput: one write to each of 1,000 watched files, then the main thread pumps until every
// change has reached the delegate. Items are changes delivered.
void BM_PathQueueEventsPerSecond(benchmark::State& state) {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur =
        std::max<rlim_t>(limit.rlim_cur, std::min<rlim_t>(limit.rlim_max, 2 * ThroughputFiles + 100));
    ::setrlimit(RLIMIT_NOFILE, &limit);

    Folder folder;
    auto queue = corvane::CVPathQueue::make();
    TimingDelegate delegate;
    queue->setDelegate(&delegate);
    std::vector<int> writers;
    for (int i = 0; i < ThroughputFiles; ++i) {
        writers.push_back(folder.create(std::to_string(i)));
        queue->addPath(folder.file(std::to_string(i)));
    }
    if (queue->numberOfWatchedPaths() != ThroughputFiles) {
        state.SkipWithError("could not watch every file");
        return;
    }
    for (auto _ : state) {
        uint64_t target = delegate.calls + ThroughputFiles;
        for (int fd : writers) {
            touch(fd);
        }
        if (!ns::RunLoop::main().runUntil([&] { return delegate.calls >= target; }, 10'000ms)) {
            state.SkipWithError("changes went unheard");
            break;
        }
        // Changes that inotify merged would leave the count short; none were expected.
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * ThroughputFiles);
    queue->setDelegate(nullptr);
    for (int fd : writers) {
        ::close(fd);
    }
}
BENCHMARK(BM_PathQueueEventsPerSecond)->Unit(benchmark::kMillisecond)->UseRealTime();

// The floor for throughput: one write to each of 1,000 files watched by one inotify instance,
// then reads until every notification is in.
void BM_InotifyEventsPerSecond(benchmark::State& state) {
    Folder folder;
    int inotify = ::inotify_init1(IN_CLOEXEC);
    std::vector<int> writers;
    for (int i = 0; i < ThroughputFiles; ++i) {
        writers.push_back(folder.create(std::to_string(i)));
        ::inotify_add_watch(inotify, folder.file(std::to_string(i)).c_str(), IN_MODIFY);
    }
    alignas(inotify_event) char buffer[64 * 1024];
    for (auto _ : state) {
        for (int fd : writers) {
            touch(fd);
        }
        for (ssize_t received = 0; received < ThroughputFiles;) {
            ssize_t length = ::read(inotify, buffer, sizeof buffer);
            if (length <= 0) {
                state.SkipWithError("inotify read failed");
                return;
            }
            received += length / static_cast<ssize_t>(sizeof(inotify_event)); // no names for files
        }
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * ThroughputFiles);
    for (int fd : writers) {
        ::close(fd);
    }
    ::close(inotify);
}
BENCHMARK(BM_InotifyEventsPerSecond)->Unit(benchmark::kMillisecond)->UseRealTime();

// Keeps the rate that Google Benchmark works out, for the summary.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (auto found = run.counters.find("items_per_second"); found != run.counters.end()) {
                g_rates[run.benchmark_name()] = found->second;
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::printf("\nwrite to reader, microseconds (%d writes each)\n", LatencySamples);
    std::printf("%-40s %10s %10s %10s\n", "", "median", "p99", "max");
    for (const auto& [label, name] : {std::pair{"bare inotify, read on the same thread", "inotify"},
                                      std::pair{"bare inotify, read on another thread", "inotify-thread"},
                                      std::pair{"CVPathQueue, delegate on main thread", "pathqueue"}}) {
        const auto& samples = g_samples[name];
        if (samples.empty()) {
            continue;
        }
        std::printf("%-40s %10.1f %10.1f %10.1f\n", label, percentile(samples, 0.50),
                    percentile(samples, 0.99), samples.back());
    }
    for (const auto& [name, rate] : g_rates) {
        std::printf("%s: %.0f changes delivered per second\n", name.c_str(), rate);
    }
    return 0;
}
