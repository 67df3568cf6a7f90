#include "Harness.h"

#include "RandomProgram.h"
#include "Reduce.h"
#include "SubjectLibrary.h"
#include "SubjectModel.h"

namespace harness
{
namespace
{
/// What must be left once everything was given back: the repository with its maker's reference.
const std::vector<std::string> NOTHING_LEFT = {"refs R=1"};

bool differ(Subject& model, Subject& library, Step const& step, Difference& difference,
            Report& report)
{
    std::vector<std::string> const& expected = model.run(step);
    std::vector<std::string> const& actual = library.run(step);
    report.add(actual);
    if (expected == actual)
        return false;
    difference.found = true;
    difference.expected = expected;
    difference.actual = actual;
    return true;
}

bool differOverall(Program const& program, Difference& difference, Report& report)
{
    SubjectModel model;
    SubjectLibrary library;
    for (Step const& step : program) {
        if (differ(model, library, step, difference, report))
            return true;
        ++difference.step;
        ++report.calls;
    }
    for (Step const& step : farewell())
        if (differ(model, library, step, difference, report))
            return true;
    std::vector<std::string> const& left = library.run(farewell().back());
    if (left == NOTHING_LEFT)
        return false;
    difference.found = true;
    difference.expected = NOTHING_LEFT;
    difference.actual = left;
    return true;
}

std::string block(std::vector<std::string> const& lines)
{
    std::string text;
    for (std::string const& line : lines)
        text += "    " + line + "\n";
    return text;
}
} // namespace

void Report::add(std::vector<std::string> const& added)
{
    const std::uint64_t prime = 1099511628211u;
    for (std::string const& line : added) {
        for (char c : line)
            hash = (hash ^ static_cast<unsigned char>(c)) * prime;
        hash = (hash ^ '\n') * prime;
    }
    lines += added.size();
}

Difference compare(Program const& program, Report& report)
{
    Difference difference;
    const std::int32_t before = library::identifierReferences();
    const bool found = differOverall(program, difference, report);
    const std::int32_t after = library::identifierReferences();
    if (!found && before != after) {
        difference.found = true;
        difference.expected = {"references on identifiers: " + std::to_string(before)};
        difference.actual = {"references on identifiers: " + std::to_string(after)};
    }
    if (difference.found)
        ++report.differences;
    return difference;
}

Program reduce(Program const& program, std::function<bool(Program const&)> const& fails)
{
    return reduceList(program, fails);
}

Program programOf(std::uint64_t seed, std::uint64_t index)
{
    const std::uint64_t own = Random::derive(seed, index);
    const std::size_t length = 40 + Random(own).below(300);
    return randomProgram(own, length);
}

std::string toText(Difference const& difference, Program const& program)
{
    std::string text;
    for (std::size_t i = 0; i <= difference.step && i < program.size(); ++i)
        text += (i == difference.step ? "> " : "  ") + ::toText(program[i]) + "\n";
    if (difference.step >= program.size())
        text += "> (farewell)\n";
    return text + "  model:\n" + block(difference.expected) + "  library:\n" +
           block(difference.actual);
}

} // namespace harness
