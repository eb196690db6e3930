// The bench runner: bench [family...] [--large]. Google Benchmark drives; each iteration times a
// batch of ours and a batch of the peer's, in turns.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>
#include <sched.h>
#include <vector>

#include "bench.hpp"
#include "kepcore.h"

namespace {

using Clock = std::chrono::steady_clock;

std::vector<bench::Case> &cases() {
    static std::vector<bench::Case> all;
    return all;
}

std::map<std::string, std::vector<void (*)()>> &families() {
    static std::map<std::string, std::vector<void (*)()>> all;
    return all;
}

double secondsOf(const std::function<void()> &action, std::int64_t calls) {
    const auto start = Clock::now();
    for (std::int64_t i = 0; i < calls; ++i) action();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Calls that take about 20 microseconds, so that the clock's own cost vanishes. Threaded ones take
// longer: another number of threads finds the arrays in another core's caches.
std::int64_t batchOf(const std::function<void()> &action, bool isThreaded) {
    const double seconds = isThreaded ? 2e-3 : 20e-6;
    std::int64_t calls = 1;
    while (secondsOf(action, calls) < seconds) calls *= 2;
    return calls;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// All cores for a threaded case, the one that the bench is pinned to for any other.
class Cores {
public:
    explicit Cores(bool isThreaded) {
        sched_getaffinity(0, sizeof before, &before);
        if (isThreaded) sched_setaffinity(0, sizeof allCores, &allCores);
    }
    ~Cores() { sched_setaffinity(0, sizeof before, &before); }
    static inline cpu_set_t allCores;

private:
    cpu_set_t before;
};

void run(benchmark::State &state, const bench::Case &c) {
    const Cores cores(c.isThreaded);
    if (c.agree && !c.agree()) {
        state.SkipWithError("results differ from the peer's");
        return;
    }
    const std::int64_t ourCalls = batchOf(c.ours, c.isThreaded),
                       theirCalls = batchOf(c.theirs, c.isThreaded);
    std::vector<double> ours, theirs, ratios;
    bool oursFirst = true;
    for (auto _ : state) {
        double a, b;
        if (oursFirst) {
            a = secondsOf(c.ours, ourCalls);
            b = secondsOf(c.theirs, theirCalls);
        } else {
            b = secondsOf(c.theirs, theirCalls);
            a = secondsOf(c.ours, ourCalls);
        }
        oursFirst = !oursFirst;
        state.SetIterationTime(a);
        ours.push_back(a / static_cast<double>(ourCalls));
        theirs.push_back(b / static_cast<double>(theirCalls));
        ratios.push_back(theirs.back() / ours.back());
    }
    state.counters["ours"] = median(ours);
    state.counters["theirs"] = median(theirs);
    state.counters["ratio"] = median(ratios);
}

// One table per family.
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override {
        for (const Run &r : runs) {
            const bench::Case &c = cases()[std::stoul(r.report_label)];
            if (c.family != family) {
                family = c.family;
                std::printf("\n%s\n%-44s %10s %14s  %-26s %14s %7s\n", family.c_str(), "case", "n",
                            "ours ns", "peer", "peer ns", "ratio");
            }
            if (r.error_occurred) {
                std::printf("%-44s %10lld  %s\n", c.name.c_str(), static_cast<long long>(c.n),
                            r.error_message.c_str());
                failed = true;
                continue;
            }
            const auto counter = [&](const char *name) { return r.counters.at(name).value; };
            std::printf("%-44s %10lld %14.1f  %-26s %14.1f %7.2f\n", c.name.c_str(),
                        static_cast<long long>(c.n), counter("ours") * 1e9, c.peer.c_str(),
                        counter("theirs") * 1e9, counter("ratio"));
            std::fflush(stdout);
        }
    }
    bool failed = false;

private:
    std::string family;
};

void pinToOneCore() {
    sched_getaffinity(0, sizeof Cores::allCores, &Cores::allCores);
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(sched_getcpu(), &set);
    sched_setaffinity(0, sizeof set, &set);
}

} // namespace

namespace bench {

void add(Case c) {
    cases().push_back(std::move(c));
}

Family::Family(const char *name, void (*addCases)()) {
    families()[name].push_back(addCases);
}

} // namespace bench

int main(int count, char **arguments) {
    benchmark::Initialize(&count, arguments);
    std::vector<std::string> chosen(arguments + 1, arguments + count);
    bench::large = std::erase(chosen, "--large") > 0;
    for (const std::string &name : chosen) {
        if (families().count(name)) continue;
        std::fprintf(stderr, "bench: no family \"%s\"; there are:", name.c_str());
        for (const auto &family : families()) std::fprintf(stderr, " %s", family.first.c_str());
        std::fprintf(stderr, "\n");
        return 2;
    }
    for (const auto &[name, adders] : families())
        if (chosen.empty() || std::find(chosen.begin(), chosen.end(), name) != chosen.end())
            for (const auto adder : adders) adder();
    pinToOneCore();
    kepSetNumThreads(1); // threaded cases set their own
    for (std::size_t i = 0; i < cases().size(); ++i) {
        const bench::Case &c = cases()[i];
        constexpr int pairs = 41;
        // The label leads from a row to its case: filters leave some out.
        benchmark::RegisterBenchmark((c.family + "/" + c.name + "/" + std::to_string(c.n)).c_str(),
                                     [i](benchmark::State &s) {
                                         s.SetLabel(std::to_string(i));
                                         run(s, cases()[i]);
                                     })
            ->UseManualTime()
            ->Iterations(pairs);
    }
    Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
    return table.failed;
}
