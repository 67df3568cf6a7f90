#ifndef TESTS_MODEL_PROCESS_H
#define TESTS_MODEL_PROCESS_H

#include "Trace.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A naive second implementation of the registry in plain standard containers, slow and literal.
/// It shares no code with the library; random programs compare the two step by step.
namespace model
{
/// A result: 0 success, -1 an own failure, anything else the code of the observer that refused.
using Code = std::int32_t;

/// An identifier: four words decide, the name is for people.
struct Identifier
{
    std::array<std::uint32_t, 4> words = {{0, 0, 0, 0}};
    std::string name = "INVALID";

    bool operator==(Identifier const& other) const { return words == other.words; }
    bool operator!=(Identifier const& other) const { return words != other.words; }
};

/// The identifiers to which the registry itself attaches a meaning.
struct WellKnown
{
    Identifier invalid; ///< four zero words: no identifier, in a filter any identifier
    Identifier unknown;
    Identifier info;
    Identifier driver;
    Identifier channelGroup;
    Identifier didChannelGroup;
};

WellKnown const& wellKnown();

/// Texts by key, in the order in which the keys were first put.
class Table
{
public:
    using Entry = std::pair<std::string, std::string>;

    /// The value under `key`, or null.
    std::string const* find(std::string const& key) const;

    /// Stores the value; a key already there keeps its place.
    void put(std::string const& key, std::string const& value);

    bool empty() const { return entries_.empty(); }
    std::vector<Entry> const& entries() const { return entries_; }

private:
    std::vector<Entry> entries_;
};

struct InfoRow
{
    std::uint32_t depth;
    std::uint32_t detail;
    std::string key;
    std::string value;
};

/// The limits of a description: where its top row stands, and what is still wanted.
/// 64 bits wide, so that adding to them never wraps.
struct InfoLimits
{
    std::uint64_t maxDepth;
    std::uint64_t depth;
    std::uint64_t maxDetail;
    std::uint64_t detail;

    /// The limits for something `i` levels deeper and `j` levels more detailed.
    InfoLimits beneath(std::uint64_t i, std::uint64_t j) const
    {
        return {maxDepth, depth + i, maxDetail, detail + j};
    }
    bool wanted() const { return depth <= maxDepth && detail <= maxDetail; }
};

/// Adds a row at (depth + i, detail + j) if the limits want it.
void addRow(std::vector<InfoRow>& rows, InfoLimits const& limits, unsigned i, unsigned j,
            std::string const& key, std::string const& value);

/// What a process has once: its log, the story of the run, the nesting of its descriptions.
struct Process
{
    Trace trace;

    bool monitorPresent = true;
    std::int32_t threshold = 0;

    int nestedRepositoryInfo = 0;
    int nestedDriverInfo = 0;

    /// What "%p" prints of an observer; the argument may be null.
    std::function<std::string(void const* observer)> pointerText;

    /// Writes at level 3 whenever a monitor is present.
    void error(std::string const& line);

    /// Writes at level 7 if `verbosity` is at most the monitor's threshold.
    void debug(std::int32_t verbosity, std::string const& line);
};

} // namespace model

#endif
