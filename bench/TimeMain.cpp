#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <thread>

#include <unistd.h>

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include "Cases.h"

// bench [--second-thread] [--benchmark_...]    times every case: WORK/SYSTEM/N/L
// bench --count                                reads cases, for callgrind

namespace
{

int s_status = 0;

Cases allCases()
{
    Cases cases;
    for (auto const add : {addLibrary, addD1, addD2, addC1, addE1, addE2, addE3})
        add(cases);
    return cases;
}

std::unique_ptr<Work> s_work; // of the case that is being timed
std::string s_workName;

void checkWork()
{
    if (s_work == nullptr || s_work->isRight())
        return;
    std::fprintf(stderr, "%s: told wrongly\n", s_workName.c_str());
    s_status = 1;
}

/// How many operations are timed together.
unsigned batchOf(std::string const& work)
{
    if (work[1] == '1')
        return 256;
    return work[1] == '5' || work[1] == '7' ? 1 : 16;
}

/// The benchmark calls this several times for a case, to find out how often it can run.
void timeCase(benchmark::State& state, Case const& c, unsigned n, unsigned l,
              std::string const& name)
{
    if (s_workName != name) {
        checkWork();
        s_work.reset();
        s_work = c.make(n, l);
        s_workName = name;
    }
    const unsigned batch = batchOf(c.work);
    while (state.KeepRunningBatch(batch))
        s_work->run(batch);
}

void registerCase(Case const& c, unsigned n, unsigned l)
{
    const std::string name =
        c.work + '/' + c.system + '/' + std::to_string(n) + '/' + std::to_string(l);
    benchmark::RegisterBenchmark(name.c_str(),
                                 [=](benchmark::State& state) { timeCase(state, c, n, l, name); });
}

/// The systems of one work at one size stand together: what disturbs one disturbs all.
void registerCases(Cases const& cases)
{
    std::vector<std::string> works;
    for (Case const& c : cases)
        if (c.work != FILL && c.work != FILL_NEW &&
            std::find(works.begin(), works.end(), c.work) == works.end())
            works.push_back(c.work);
    for (unsigned n : {16u, 256u, 4096u, 65536u})
        for (std::string const& work : works)
            for (unsigned l : {0u, 1u, 10u, 100u})
                for (Case const& c : cases)
                    if (c.work == work && (c.growsWithN || n == 16) &&
                        (c.growsWithL ? c.growsWithN || l != 0 : l == 0))
                        registerCase(c, n, l);
}

/// Under callgrind, dumps what the operations of each case cost, and then twice as many: the
/// difference is free of what belongs to no operation.
void count(Cases const& cases)
{
    Order order;
    while (read(std::cin, order)) {
        const std::unique_ptr<Work> work = order.make(cases);
        const std::string once = order.text() + " 1";
        const std::string twice = order.text() + " 2";
        work->run(order.operations);
        CALLGRIND_START_INSTRUMENTATION;
        CALLGRIND_ZERO_STATS;
        work->run(order.operations);
        CALLGRIND_DUMP_STATS_AT(once.c_str());
        work->run(2 * order.operations);
        CALLGRIND_DUMP_STATS_AT(twice.c_str());
        CALLGRIND_STOP_INSTRUMENTATION;
        if (!work->isRight()) {
            std::fprintf(stderr, "%s: told wrongly\n", order.text().c_str());
            s_status = 1;
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    const Cases cases = allCases();
    if (argc > 1 && std::strcmp(argv[1], "--count") == 0) {
        count(cases);
        return s_status;
    }
    if (argc > 1 && std::strcmp(argv[1], "--second-thread") == 0) {
        std::thread([] { pause(); }).detach();
        argv[1] = argv[0];
        ++argv;
        --argc;
    }
    registerCases(cases);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    checkWork();
    return s_status;
}
