#ifndef DRVREPO_TESTKIT_FAULTINJECTOR_H
#define DRVREPO_TESTKIT_FAULTINJECTOR_H

#include <stdexcept>

#include <drvrepo/IChannelGroupObserver.h>
#include <drvrepo/IDriverRepositoryObserver.h>

/// When an injector strikes: refuses, or throws at, the n-th of what its observer is told. For
/// tests of what a component does when a change is rolled back. Registered behind the component,
/// with the right of veto and the highest priority value, an injector lets the component hear of
/// everything first. Given an observer to stand before, it fails in that one's name.
///
///     FaultInjector injector;
///     injector.strikeEach([&] {
///         // register, add, attach; look whether the component is as it should be
///     });
class FaultPart
{
public:
    /// What it does when it strikes.
    enum Fault {
        REFUSE, ///< counts what can be refused
        THROW   ///< counts everything, and throws Thrown
    };

    /// What it throws, with TEXT.
    struct Thrown : std::runtime_error
    {
        using std::runtime_error::runtime_error;
    };

    static constexpr std::int32_t CODE = -77;        ///< what it refuses with
    static constexpr char const TEXT[] = "injected"; ///< the reason that it gives

    /// Never strikes until it is armed.
    explicit FaultPart(Fault fault) : fault_(fault) {}

    /// Strikes once, at the `nth` from now; 0: never.
    void arm(unsigned nth)
    {
        nth_ = nth;
        count_ = 0;
    }
    /// Whether it struck since it was armed.
    bool struck() const { return nth_ != 0 && count_ >= nth_; }
    /// How many it counted since it was armed.
    unsigned count() const { return count_; }

    /// Runs the scenario armed for the first, then for the second, and so on, until it hears less
    /// than that. Returns how often it struck.
    template <class Scenario> unsigned strikeEach(Scenario scenario)
    {
        for (unsigned nth = 1;; ++nth) {
            arm(nth);
            scenario();
            if (!struck())
                return nth - 1;
        }
    }

protected:
    ~FaultPart() = default;

    /// What can be refused: a refusal, or the answer of `observer`, which may be null.
    template <class Observer, class Event>
    XCode answer(Observer* observer, XCode (Observer::*method)(String&, Event&), String& error,
                 Event& event)
    {
        if (++count_ != nth_)
            return observer != nullptr ? (observer->*method)(error, event) : XCode();
        error = TEXT;
        if (fault_ == THROW)
            throw Thrown(TEXT);
        return XCode(CODE);
    }
    /// What cannot.
    template <class Observer, class Event>
    void hear(Observer* observer, void (Observer::*method)(Event&), Event& event)
    {
        if (fault_ == THROW && ++count_ == nth_)
            throw Thrown(TEXT);
        if (observer != nullptr)
            (observer->*method)(event);
    }

private:
    const Fault fault_;
    unsigned nth_ = 0;
    unsigned count_ = 0;
};

/// Strikes at news of drivers; drivers that come and values that are set can be refused.
class FaultInjector : public IDriverRepositoryObserver, public FaultPart
{
public:
    /// What observers of a repository are handed.
    using Event = ObserverEvent<IDriverRepository>;

    /// `next`, which may be null, is told whatever it doesn't strike; it must live longer.
    explicit FaultInjector(Fault fault = REFUSE, IDriverRepositoryObserver* next = nullptr)
        : FaultPart(fault), next_(next)
    {}

    XCode onDriverAdded(String& error, Event& event) override
    {
        return answer(next_, &IDriverRepositoryObserver::onDriverAdded, error, event);
    }
    void onDriverRemoved(Event& event) override
    {
        hear(next_, &IDriverRepositoryObserver::onDriverRemoved, event);
    }
    XCode onDriverAttachmentSet(String& error, Event& event) override
    {
        return answer(next_, &IDriverRepositoryObserver::onDriverAttachmentSet, error, event);
    }
    void onDriverAttachmentCleared(Event& event) override
    {
        hear(next_, &IDriverRepositoryObserver::onDriverAttachmentCleared, event);
    }

private:
    IDriverRepositoryObserver* const next_;
};

/// Strikes at news of timeslots; with the right of veto, those that come can be refused.
class GroupFaultInjector : public IChannelGroupObserver, public FaultPart
{
public:
    /// What observers of a group are handed.
    using Event = ObserverEvent<IChannelGroup>;

    /// `next`, which may be null, is told whatever it doesn't strike; it must live longer.
    explicit GroupFaultInjector(Fault fault = REFUSE, IChannelGroupObserver* next = nullptr)
        : FaultPart(fault), next_(next)
    {}

    XCode onTimeslotsAdded(String& message, Event& event) override
    {
        return answer(next_, &IChannelGroupObserver::onTimeslotsAdded, message, event);
    }
    void onTimeslotsAdded(Event& event) override
    {
        hear(next_, &IChannelGroupObserver::onTimeslotsAdded, event);
    }
    void onTimeslotsRemoved(Event& event) override
    {
        hear(next_, &IChannelGroupObserver::onTimeslotsRemoved, event);
    }

private:
    IChannelGroupObserver* const next_;
};

#endif
