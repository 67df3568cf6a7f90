#ifndef TESTS_MODEL_HARNESS_H
#define TESTS_MODEL_HARNESS_H

#include "Program.h"

#include <functional>

/// Runs random programs on the model and on the library and compares them after each step.
namespace harness
{
/// Where two runs of a program parted.
struct Difference
{
    bool found = false;
    std::size_t step = 0;
    std::vector<std::string> expected; ///< the lines of the model
    std::vector<std::string> actual;   ///< the lines of the library
};

/// Totals over many programs.
struct Report
{
    std::uint64_t calls = 0;
    std::uint64_t differences = 0;
    std::uint64_t lines = 0;
    std::uint64_t hash = 14695981039346656037u; ///< FNV-1a over every line of the library

    void add(std::vector<std::string> const& lines);
};

/// Runs the program and then the farewell. Also a difference: something still alive afterwards.
Difference compare(Program const& program, Report& report);

/// The program without the steps that are not needed for `fails` to stay true.
Program reduce(Program const& program, std::function<bool(Program const&)> const& fails);

/// The programs of a seed: the `index`-th one, of its own length.
Program programOf(std::uint64_t seed, std::uint64_t index);

/// Both traces side by side, under the step that they belong to.
std::string toText(Difference const& difference, Program const& program);

} // namespace harness

#endif
