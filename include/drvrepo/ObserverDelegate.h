#ifndef DRVREPO_OBSERVERDELEGATE_H
#define DRVREPO_OBSERVERDELEGATE_H

#include <utility/RefCount.h>
#include <utility/String.h>
#include <utility/XCode.h>

#include <drvrepo/ObserverEvent.h>

/// Stands between a subject `T` and one of its observers, and can be cut off.
///
/// Ownership   starts with one reference, its creator's; deletes itself with the last one. The
///             observer is not owned: whoever destroys it calls `stopNotifications` first.
/// Reentrancy  the observer may let go of it: it looks at nothing of its own after the call. What
///             calls it holds it so long, for those derived from this.
/// Locking     the count is atomic, the rest needs the subject's lock.
/// The virtual operations are binary contract, in the order given here, the destructor last.
template <class T> class ObserverDelegate
{
public:
    /// The interface of `T`'s observers.
    using TObserver = typename T::Observer;

    /// Forwards to `observer`, which may be null.
    explicit ObserverDelegate(TObserver* observer) : observer_(observer) {}
    ObserverDelegate(ObserverDelegate const&) = delete;
    ObserverDelegate& operator=(ObserverDelegate const&) = delete;

    /// Takes a further reference.
    virtual void addRef() { refs_.increment(); }
    /// Gives a reference back; the last one deletes the delegate.
    virtual void release()
    {
        if (refs_.decrement())
            delete this;
    }
    /// From now on every event is swallowed; an event that could be refused is accepted.
    virtual void stopNotifications() { observer_ = nullptr; }
    /// Calls a notification method of the observer.
    virtual void notifyEvent(void (TObserver::*method)(ObserverEvent<T>&), ObserverEvent<T>& event)
    {
        if (observer_ != nullptr)
            (observer_->*method)(event);
    }
    /// Calls a method of the observer that may refuse; returns its answer. `message` takes the
    /// reason of a refusal.
    virtual XCode notifyEvent(String& message,
                              XCode (TObserver::*method)(String&, ObserverEvent<T>&),
                              ObserverEvent<T>& event)
    {
        return observer_ != nullptr ? (observer_->*method)(message, event) : XCode();
    }
    virtual ~ObserverDelegate() = default;

    /// The observer, null once notifications were stopped.
    TObserver* observer() const { return observer_; }

private:
    AtomicRefCount refs_;
    TObserver* observer_;
};

#endif
