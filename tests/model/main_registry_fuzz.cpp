#include "Harness.h"
#include "NestedHarness.h"

#include <CLI/CLI.hpp>

#include <cinttypes>
#include <csignal>
#include <cstdio>

#include <unistd.h>

namespace
{
std::uint64_t g_program = 0;

/// Says which program it was, so that a crash can be replayed.
void crashed(int signal)
{
    char line[64];
    const int length =
        std::snprintf(line, sizeof line, "signal %d in program %" PRIu64 "\n", signal, g_program);
    static_cast<void>(!write(STDERR_FILENO, line, static_cast<std::size_t>(length)));
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

struct Options
{
    std::uint64_t seed = 1;
    std::uint64_t calls = 100000;
    std::int64_t only = -1;
    bool nest = false;
    bool apart = false;
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

/// Runs one program that nests; tells of a violation, reduced to what it needs.
void nestOne(Options const& options, std::uint64_t index, nested::Report& report)
{
    const NestedProgram program = nestedProgram(options.seed, index);
    const std::string violations = options.apart ? (nested::failsApart(program) ? "fails" : "")
                                                 : nested::violationsOf(program, report);
    if (violations.empty())
        return;
    const NestedProgram reduced = nested::reduce(program);
    std::printf("VIOLATION in program %" PRIu64 " of seed %" PRIu64
                ", replay with: registry_fuzz --nest --seed %" PRIu64 " --program %" PRIu64
                " --apart\n%s\n",
                index, options.seed, options.seed, index, toText(reduced).c_str());
    std::fflush(stdout);
    std::printf("%s\n", nested::storyOf(reduced).c_str());
    std::fflush(stdout);
}

int runNested(Options const& options)
{
    nested::Report report;
    if (options.only >= 0) {
        nestOne(options, static_cast<std::uint64_t>(options.only), report);
    } else {
        for (std::uint64_t index = 0; report.calls < options.calls && report.violations < 10;
             ++index) {
            g_program = index;
            nestOne(options, index, report);
        }
    }
    std::printf("seed %" PRIu64 ": %" PRIu64 " nesting calls, %" PRIu64
                " violations, hash %016" PRIx64 "\n",
                options.seed, report.calls, report.violations, report.hash);
    return report.violations == 0 ? 0 : 1;
}

int run(Options const& options)
{
    harness::Report report;
    if (options.only >= 0) {
        runOne(options, static_cast<std::uint64_t>(options.only), report);
    } else {
        for (std::uint64_t index = 0; report.calls < options.calls && report.differences < 10;
             ++index) {
            g_program = index;
            runOne(options, index, report);
        }
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
    app.add_flag("--nest", options.nest, "programs whose callbacks call back, judged by rules");
    app.add_flag("--apart", options.apart, "a process for each program, for those that crash");
    CLI11_PARSE(app, argc, argv);
    for (int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL})
        std::signal(signal, crashed);
    return options.nest ? runNested(options) : run(options);
}
