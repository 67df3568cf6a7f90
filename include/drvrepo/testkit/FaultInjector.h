#ifndef DRVREPO_TESTKIT_FAULTINJECTOR_H
#define DRVREPO_TESTKIT_FAULTINJECTOR_H

#include <stdexcept>

#include <drvrepo/IDriverRepositoryObserver.h>

/// An observer that refuses, or throws at, the n-th of what it is told: for tests of what a
/// component does when a change is rolled back. Registered behind the component, with the right of
/// veto and the highest priority value, it lets the component hear of everything first. Given an
/// observer to stand before, it fails in its name.
///
///     FaultInjector injector;
///     injector.strikeEach([&] {
///         // register, add, attach; look whether the component is as it should be
///     });
class FaultInjector : public IDriverRepositoryObserver
{
public:
    /// What observers of a repository are handed.
    using Event = ObserverEvent<IDriverRepository>;

    /// What it does when it strikes.
    enum Fault {
        REFUSE, ///< counts what can be refused: drivers that come and values that are set
        THROW   ///< counts everything, and throws Thrown
    };

    /// The exception.
    struct Thrown : std::runtime_error
    {
        using std::runtime_error::runtime_error;
    };

    static constexpr std::int32_t CODE = -77;        ///< what it refuses with
    static constexpr char const TEXT[] = "injected"; ///< the reason that it gives, and throws

    /// `next`, which may be null, is told whatever it doesn't strike; it must live longer.
    explicit FaultInjector(Fault fault = REFUSE, IDriverRepositoryObserver* next = nullptr)
        : fault_(fault), next_(next)
    {}

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

    XCode onDriverAdded(String& error, Event& event) override
    {
        return answer(error, &IDriverRepositoryObserver::onDriverAdded, event);
    }
    void onDriverRemoved(Event& event) override
    {
        hear(&IDriverRepositoryObserver::onDriverRemoved, event);
    }
    XCode onDriverAttachmentSet(String& error, Event& event) override
    {
        return answer(error, &IDriverRepositoryObserver::onDriverAttachmentSet, event);
    }
    void onDriverAttachmentCleared(Event& event) override
    {
        hear(&IDriverRepositoryObserver::onDriverAttachmentCleared, event);
    }

private:
    using Observer = IDriverRepositoryObserver;

    XCode answer(String& error, XCode (Observer::*method)(String&, Event&), Event& event)
    {
        if (strikes()) {
            error = TEXT;
            if (fault_ == THROW)
                throw Thrown(TEXT);
            return XCode(CODE);
        }
        return next_ != nullptr ? (next_->*method)(error, event) : XCode();
    }
    void hear(void (Observer::*method)(Event&), Event& event)
    {
        if (fault_ == THROW && strikes())
            throw Thrown(TEXT);
        if (next_ != nullptr)
            (next_->*method)(event);
    }
    bool strikes() { return ++count_ == nth_; }

    const Fault fault_;
    Observer* const next_;
    unsigned nth_ = 0;
    unsigned count_ = 0;
};

#endif
