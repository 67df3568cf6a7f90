#ifndef TESTS_MODEL_POLICY_H
#define TESTS_MODEL_POLICY_H

#include <cstdint>
#include <string>

/// How an observer answers. The same policy is given to the observer of the model and to the
/// observer of the library, and asked the same questions, so both answer alike.
struct Policy
{
    enum class Refuses {
        NEVER,
        ALWAYS,
        ADDED,     ///< a driver whose name begins with `name`
        SET,       ///< the attachment `name` = `value`
        NTH_CALL,  ///< the `nth` refusable call and each further multiple of `nth`
        TIMESLOTS, ///< added timeslots of which one lies in `mask`
    };

    Refuses refuses = Refuses::NEVER;
    std::string name;
    std::string value;
    std::uint32_t nth = 1;
    std::uint32_t mask = 0;
    std::int32_t code = -1; ///< the code of a refusal
    std::string words;      ///< the reason given
    bool silent = false;    ///< refuses without writing a reason
    bool chatters = false;  ///< writes `words` when it accepts, too
    bool peeks = false;     ///< looks the driver up in the repository during each call
    bool keeps = false;     ///< keeps a clone of every event
    bool scribbles = false; ///< overwrites the fields of the event it was given
};

/// A policy at work: counts the refusable calls.
class PolicyState
{
public:
    explicit PolicyState(Policy policy = Policy()) : policy_(std::move(policy)) {}

    Policy const& policy() const { return policy_; }

    /// Answer to an added driver; `error` receives the words as the policy says.
    std::int32_t added(std::string const& driverName, std::string& error);

    /// Answer to a set attachment.
    std::int32_t set(std::string const& key, std::string const& value, std::string& error);

    /// Answer to added timeslots.
    std::int32_t timeslots(std::uint32_t changed, std::string& error);

private:
    std::int32_t answer(bool refuse, std::string& error) const;
    bool isNthCall() const;

    Policy policy_;
    std::uint32_t calls_ = 0;
};

#endif
