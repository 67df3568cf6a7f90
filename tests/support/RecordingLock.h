#ifndef SUPPORT_RECORDINGLOCK_H
#define SUPPORT_RECORDINGLOCK_H

#include <string>

#include <utility/Lock.h>

/// A lock that is none: writes down what is done with it, "lock;" and "unlock;".
class RecordingLock : public Lock
{
public:
    /// `answer` is what `lock` returns.
    explicit RecordingLock(std::int32_t answer = 0) : answer_(answer) {}

    XCode lock() override
    {
        ++held_;
        story_ += "lock;";
        return XCode(answer_);
    }
    void unlock() override
    {
        --held_;
        story_ += "unlock;";
    }

    /// How often it is held now.
    int held() const { return held_; }
    /// What was done, in order.
    std::string const& story() const { return story_; }
    void note(char const* what) { story_ += what; }

private:
    std::int32_t answer_;
    int held_ = 0;
    std::string story_;
};

#endif
