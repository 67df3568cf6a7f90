#ifndef TESTS_MODEL_REACTIONS_H
#define TESTS_MODEL_REACTIONS_H

#include "Program.h"

#include <functional>

/// What an observer of a group is to do at some of its next calls.
class Reactions
{
public:
    /// Takes up a GROUP_REACT step.
    void add(Step const& step) { waiting_.push_back(step); }

    /// One more call: performs the steps whose turn it is. Returns whether the call is refused.
    bool call(std::function<void(Step const&)> const& perform)
    {
        bool refuses = false;
        std::vector<Step> due;
        for (std::size_t i = 0; i < waiting_.size();) {
            if (waiting_[i].number-- > 0) {
                ++i;
                continue;
            }
            due.push_back(waiting_[i]);
            waiting_.erase(waiting_.begin() + static_cast<std::ptrdiff_t>(i));
        }
        for (Step const& step : due) {
            for (Step const& nested : step.nested)
                perform(nested);
            refuses = refuses || step.flag;
        }
        return refuses;
    }

private:
    std::vector<Step> waiting_;
};

#endif
