#include "NestedHarness.h"

#include "NestedRun.h"
#include "Reduce.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace nested
{
namespace
{
constexpr unsigned SECONDS = 10;

std::string lines(std::vector<std::string> const& list)
{
    std::string text;
    for (std::string const& line : list)
        text += line + "\n";
    return text;
}
} // namespace

std::string violationsOf(NestedProgram const& program, Report& report)
{
    NestedRun run(program);
    run.run();
    report.calls += run.calls();
    report.hash = (report.hash ^ run.hash()) * 1099511628211u;
    if (!run.violations().empty())
        ++report.violations;
    return lines(run.violations());
}

bool failsApart(NestedProgram const& program)
{
    const pid_t child = fork();
    if (child == 0) {
        // What goes wrong here is told by the run that follows.
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDERR_FILENO);
        alarm(SECONDS);
        Report report;
        _exit(violationsOf(program, report).empty() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status != 0;
}

NestedProgram reduce(NestedProgram program)
{
    program.reactions = reduceList(program.reactions, [&](std::vector<Reaction> const& list) {
        return failsApart({program.actions, list});
    });
    program.actions = reduceList(program.actions, [&](std::vector<Action> const& list) {
        return failsApart({list, program.reactions});
    });
    for (std::size_t i = 0; i < program.reactions.size(); ++i) {
        NestedProgram trial = program;
        program.reactions[i].actions =
            reduceList(program.reactions[i].actions, [&trial, i](std::vector<Action> const& list) {
                trial.reactions[i].actions = list;
                return failsApart(trial);
            });
    }
    return program;
}

std::string storyOf(NestedProgram const& program)
{
    NestedRun run(program);
    run.run(true);
    return run.story() + lines(run.violations());
}

} // namespace nested
