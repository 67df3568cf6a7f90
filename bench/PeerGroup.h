#ifndef BENCH_PEERGROUP_H
#define BENCH_PEERGROUP_H

#include <cstdint>

#include "Load.h"

namespace peers
{

/// What a group's observers are told.
struct Change
{
    std::uint32_t before;
    std::uint32_t after;
    std::uint32_t changed;
    std::uint32_t serial; // of the announcement; 0 where nobody asks
};

constexpr std::uint32_t BEFORE = 0x0f;
constexpr std::uint32_t AFTER = 0xff;
constexpr std::uint32_t CHANGED = 0xf0;

/// What stands between a signal and an observer. A signal that takes back what was announced
/// reaches everybody connected; the stub passes it on to an observer that had accepted.
class GroupStub
{
public:
    GroupStub(bool refuses, load::Told& told) : refuses_(refuses), told_(told) {}

    bool added(Change const& change)
    {
        ++told_.added;
        if (refuses_)
            return false;
        accepted_ = change.serial;
        return true;
    }
    void removed(Change const& change)
    {
        if (accepted_ == change.serial)
            ++told_.removed;
    }

private:
    const bool refuses_;
    load::Told& told_;
    std::uint32_t accepted_ = 0;
};

} // namespace peers

#endif
