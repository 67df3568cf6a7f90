#ifndef TESTS_MODEL_TRACE_H
#define TESTS_MODEL_TRACE_H

#include <cstdint>
#include <string>
#include <vector>

/// What happened, one line an event, in order. Both sides of a comparison write one of these,
/// so nothing in a line may depend on addresses or on the width of a word.
class Trace
{
public:
    void add(std::string line) { lines_.push_back(std::move(line)); }
    std::vector<std::string> const& lines() const { return lines_; }
    void clear() { lines_.clear(); }

    /// All lines, each followed by a line end.
    std::string text() const;

private:
    std::vector<std::string> lines_;
};

/// The text between double quotes; quotes, backslashes and unprintable bytes are escaped.
std::string quoted(std::string const& text);

/// What "%s" prints of a text: the bytes before its first zero byte.
std::string shown(std::string const& text);

/// What "%8.8lx" prints of a mask.
std::string hex8(std::uint32_t mask);

#endif
