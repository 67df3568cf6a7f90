#include "SoakWorld.h"

#include <support/Allocations.h>

#include <CLI/CLI.hpp>

#include <cinttypes>
#include <cstdio>
#include <ctime>

namespace
{

double processorSeconds()
{
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// What is alive in the settled state.
struct Living
{
    std::int64_t blocks;
    std::int64_t bytes;
};

} // namespace

int main(int argc, char** argv)
{
    CLI::App app(
        "Random calls on one repository of 64 drivers and 32 listeners. After each slice "
        "each driver must list each listener once. Then it is settled into the same state, "
        "where as much memory must be alive as the first time: nothing is left over.");
    std::uint64_t calls = 1000000;
    std::uint64_t slice = 100000;
    std::uint32_t seed = 1;
    app.add_option("--calls", calls, "how many, those from inside callbacks included");
    app.add_option("--slice", slice, "calls between two looks")->check(CLI::PositiveNumber);
    app.add_option("--seed", seed, "of the random numbers");
    CLI11_PARSE(app, argc, argv);

    SoakWorld world(seed);
    world.settle();
    const Living first = {allocations::living(), allocations::bytes()};
    double fastest = 0;
    double slowest = 0;
    std::uint64_t slices = 0;
    while (world.calls() < calls) {
        const std::uint64_t begin = world.calls();
        const double before = processorSeconds();
        while (world.calls() - begin < slice)
            world.call();
        const double each =
            (processorSeconds() - before) / static_cast<double>(world.calls() - begin);
        fastest = slices == 0 || each < fastest ? each : fastest;
        slowest = each > slowest ? each : slowest;
        ++slices;
        if (!world.isTidy()) {
            std::printf("after %" PRIu64 " calls (seed %" PRIu32 "): a driver's list of listeners "
                        "is not that of the repository\n",
                        world.calls(), seed);
            return 1;
        }
        world.settle();
        const Living now = {allocations::living(), allocations::bytes()};
        if (now.blocks != first.blocks || now.bytes != first.bytes) {
            std::printf("after %" PRIu64 " calls (seed %" PRIu32 "): %" PRId64 " blocks, %" PRId64
                        " bytes alive, at first %" PRId64 ", %" PRId64 "\n",
                        world.calls(), seed, now.blocks, now.bytes, first.blocks, first.bytes);
            return 1;
        }
    }
    std::printf("seed %" PRIu32 ": %" PRIu64 " calls in %" PRIu64 " slices, each time %" PRId64
                " blocks and %" PRId64 " bytes alive; a call took %.0f to %.0f ns\n",
                seed, world.calls(), slices, first.blocks, first.bytes, 1e9 * fastest,
                1e9 * slowest);
    return 0;
}
