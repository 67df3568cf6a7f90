#ifndef TESTS_FAILURE_CALLOUTS_H
#define TESTS_FAILURE_CALLOUTS_H

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <utility/String.h>

/// What a call-out of a test throws.
struct Thrown : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// What a call-out does when it is its turn to fail.
enum class Manner {
    NONE,
    REFUSE, ///< observers that are asked refuse; nothing else happens
    THROW,
    EXIT,  ///< the thread ends: pthread_exit
    CANCEL ///< the thread is cancelled by itself
};

/// The calls that the library makes to drivers, observers and the monitor, numbered from 1 while
/// they are counted. One of them may fail.
class CallOuts
{
public:
    CallOuts() : reason_("no") {}

    /// From now on call-outs count, and number `n` fails; none when `n` is 0.
    void arm(int n, Manner manner);
    /// Call-outs count no more.
    void disarm() { armed_ = false; }

    /// One call-out, named by `label`. Returns true when an observer that is asked is to refuse;
    /// `error`, if given, takes the reason, also of a failure of another kind.
    bool pass(std::string const& label, String* error = nullptr);

    /// Called just before one fails, but not for a refusal.
    std::function<void()> onFailure;

    /// The names of those counted, in order.
    std::vector<std::string> const& labels() const { return labels_; }

private:
    void fail(std::string const& label) const;

    const String reason_;
    std::vector<std::string> labels_;
    bool armed_ = false;
    std::size_t failing_ = 0;
    Manner manner_ = Manner::NONE;
};

#endif
