#include "Harness.h"

#include <CLI/CLI.hpp>

#include <cinttypes>
#include <cstdio>

namespace
{
struct Options
{
    std::uint64_t seed = 1;
    std::uint64_t calls = 100000;
    std::int64_t only = -1;
};

bool fails(Program const& program)
{
    harness::Report unused;
    return harness::compare(program, unused).found;
}

/// Compares one program; tells of a difference, reduced to what it needs.
void runOne(Options const& options, std::uint64_t index, harness::Report& report)
{
    const Program program = harness::programOf(options.seed, index);
    if (!harness::compare(program, report).found)
        return;
    const Program reduced = harness::reduce(program, fails);
    harness::Report unused;
    const harness::Difference difference = harness::compare(reduced, unused);
    std::printf("DIFFERENCE in program %" PRIu64 " of seed %" PRIu64
                ", replay with: registry_fuzz --seed %" PRIu64 " --program %" PRIu64 "\n%s\n",
                index, options.seed, options.seed, index,
                harness::toText(difference, reduced).c_str());
    std::fflush(stdout);
}

int run(Options const& options)
{
    harness::Report report;
    if (options.only >= 0) {
        runOne(options, static_cast<std::uint64_t>(options.only), report);
    } else {
        for (std::uint64_t index = 0; report.calls < options.calls && report.differences < 10;
             ++index)
            runOne(options, index, report);
    }
    std::printf("seed %" PRIu64 ": %" PRIu64 " calls, %" PRIu64 " lines, %" PRIu64
                " differences, hash %016" PRIx64 "\n",
                options.seed, report.calls, report.lines, report.differences, report.hash);
    return report.differences == 0 ? 0 : 1;
}
} // namespace

int main(int argc, char** argv)
{
    Options options;
    CLI::App app("Runs random programs on the library and on a model of it, and compares.");
    app.add_option("--seed", options.seed, "which programs");
    app.add_option("--calls", options.calls, "how many calls at least");
    app.add_option("--program", options.only, "only this program of the seed");
    CLI11_PARSE(app, argc, argv);
    return run(options);
}
