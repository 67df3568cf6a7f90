#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>

// bench_start ROUNDS PROGRAM...: runs the programs in turn, ROUNDS times, and prints for each the
// median of the milliseconds from its start to its end.

extern char** environ;

namespace
{

double run(char* program)
{
    using Clock = std::chrono::steady_clock;
    char* const arguments[] = {program, nullptr};
    pid_t child = 0;
    int status = -1;
    const Clock::time_point start = Clock::now();
    if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(child, &status, 0) != child || status != 0) {
        std::fprintf(stderr, "%s failed\n", program);
        std::exit(1);
    }
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fputs("bench_start ROUNDS PROGRAM...\n", stderr);
        return 2;
    }
    const int rounds = std::max(1, std::atoi(argv[1]));
    std::vector<std::vector<double>> times(static_cast<std::size_t>(argc));
    for (int round = 0; round < rounds; ++round)
        for (int i = 2; i < argc; ++i)
            times[static_cast<std::size_t>(i)].push_back(run(argv[i]));
    for (int i = 2; i < argc; ++i) {
        std::vector<double>& mine = times[static_cast<std::size_t>(i)];
        std::sort(mine.begin(), mine.end());
        std::printf("%s %.3f\n", argv[i], mine[mine.size() / 2]);
    }
}
