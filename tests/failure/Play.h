#ifndef TESTS_FAILURE_PLAY_H
#define TESTS_FAILURE_PLAY_H

#include <functional>

#include "Scenarios.h"

/// What came of a scenario in which one call-out failed.
struct Play
{
    std::vector<std::string> labels; ///< of the call-outs, in order
    std::string thrown;              ///< what arrived at the caller: the label of who threw
    std::string look;
    std::string statistics; ///< the same with the counters
    std::string heard;    ///< during the operation; " failed" behind what was refused or thrown at
    std::string failures; ///< lines of the error level
    std::string probe;
    std::string faults; ///< references left, and lies told
    Outcome outcome;
};

/// How a play is set up.
struct Setting
{
    int failing = 0; ///< the number of the call-out that fails, none when 0
    Manner manner = Manner::NONE;
    bool allMayRefuse = false;
    bool guarded = false;
};

/// Plays a scenario. `run` calls the operation, on this thread or another one.
Play play(Scenario const& scenario, Setting const& setting,
          std::function<void(std::function<void()> const&)> const& run);
/// On this thread.
Play play(Scenario const& scenario, Setting const& setting);
/// The scenario up to its operation.
Play playNothing(Scenario const& scenario);

/// Checks what came of a failure of call-out `failing`: what arrives at the caller apart.
class FailureCheck
{
public:
    explicit FailureCheck(Scenario const& scenario);

    /// How often somebody is called out to when nothing fails.
    int callOuts() const { return static_cast<int>(good_.labels.size()); }
    std::string const& label(int number) const
    {
        return good_.labels[static_cast<std::size_t>(number) - 1];
    }
    void check(int failing, Play const& failed) const;

private:
    bool isComing(std::string const& label) const;
    void checkRefused(int failing, Play const& failed) const;
    void checkGone(int failing, Play const& failed) const;
    void checkComing(int failing, Play const& failed) const;

    Scenario const& scenario_;
    Play untouched_;
    Play good_;
    std::set<std::string> changed_; // how things may look when a change is cut short
};

#endif
