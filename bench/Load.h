#ifndef BENCH_LOAD_H
#define BENCH_LOAD_H

#include <cstdint>
#include <string>
#include <vector>

// The load that every system gets: N drivers on 64 cards, named "e1t1 CARD LINE/B-CHANNELS", with
// two attachments each, and L listeners.

namespace load
{

/// Types of drivers. ANY is for criteria only.
enum Type { ANY, E1T1, FXS };

/// How often a listener was told of what.
struct Told
{
    std::uint64_t added = 0;
    std::uint64_t removed = 0;
    std::uint64_t set = 0;
    std::uint64_t cleared = 0;
};

inline bool operator==(Told const& a, Told const& b)
{
    return a.added == b.added && a.removed == b.removed && a.set == b.set && a.cleared == b.cleared;
}

/// What a listener is registered with. An empty `key` sets no condition.
struct Criteria
{
    std::string name;
    Type type = ANY;
    std::string prefix;
    std::string key;
    std::string value;
    unsigned priority = 0;
    bool snapshot = false; // whether it is told the attachments with a driver; the library only
};

constexpr unsigned CARDS = 64;
constexpr unsigned ZONES = 8;

constexpr char ZONE[] = "zone";
constexpr char STATE[] = "state";
constexpr char IDLE[] = "idle";
constexpr char BUSY[] = "busy";

inline std::string nameOn(unsigned card, unsigned line)
{
    return "e1t1 " + std::to_string(card) + ' ' + std::to_string(line) + "/B-CHANNELS";
}

/// The name of driver `i`. Cards have two digits, so that no card's name begins another's.
inline std::string name(unsigned i)
{
    return nameOn(10 + i % CARDS, i / CARDS);
}

/// The value of attachment ZONE of driver `i`: an eighth of each card's drivers is in each.
inline std::string zone(unsigned zone)
{
    return "zone-" + std::to_string(zone);
}
inline unsigned zoneOf(unsigned i)
{
    return i / CARDS % ZONES;
}

/// 0 to n-1 in an order that the processor can't foresee, the same at every call.
std::vector<unsigned> shuffled(unsigned n);

} // namespace load

#endif
