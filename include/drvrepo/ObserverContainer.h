#ifndef DRVREPO_OBSERVERCONTAINER_H
#define DRVREPO_OBSERVERCONTAINER_H

#include <memory>
#include <new>
#include <typeinfo>

#include <utility/String.h>
#include <utility/TOVA_List.h>
#include <utility/TYPtr.h>

#include <drvrepo/ObserverDelegate.h>

/// A subject's observers: told of a change front to back, of its undoing back to front.
///
/// Order       ascending priority; among equals the newest registration first.
/// Ownership   entries are owned; a live entry holds one reference on its delegate.
/// Reentrancy  observers may add and remove from inside a notification: while `busy_` is above 0
///             nothing is unlinked, entries only die (count below 1), and are skipped from then on.
/// Locking     none; the caller holds the subject's lock.
/// Each observer is handed a clone that is as the event was, and may take or alter what is in it.
template <class T> class ObserverContainer
{
public:
    /// @{
    /// Short for what `T` says.
    using TObserver = typename T::Observer;
    using Event = ObserverEvent<T>;
    using Delegate = ObserverDelegate<T>;
    using DoMethod = XCode (TObserver::*)(String&, Event&);
    using NotifyMethod = void (TObserver::*)(Event&);
    /// @}

    /// One registration.
    class Wrapper
    {
    public:
        /// A dead one.
        Wrapper() = default;
        /// A live one, counted once; takes over the reference that `delegate` holds.
        Wrapper(TYPtr<Delegate> delegate, std::uint32_t priority, bool veto)
            : delegate_(std::move(delegate)), priority_(priority), veto_(veto), count_(1)
        {}

        /// @{
        /// As registered; a dead entry has no delegate any more.
        Delegate* delegate() const { return delegate_.get(); }
        std::uint32_t priority() const { return priority_; }
        bool hasVeto() const { return veto_; }
        /// @}
        /// Whether anybody still registers it; dead entries are skipped, and freed later.
        bool isLive() const { return count_ >= 1; }
        /// Whether this is a live registration of that observer.
        bool isOf(TObserver const* observer) const
        {
            return isLive() && delegate_ && delegate_.get()->observer() == observer;
        }

    private:
        friend class ObserverContainer;

        TYPtr<Delegate> delegate_;
        std::uint32_t priority_ = 0;
        bool veto_ = false;
        std::int32_t count_ = 0;
        std::uint32_t informed_ = 0; // how many of the broadcasts under way it need not be told
    };

    /// Where an entry stands.
    using Place = typename TOVA_List<Wrapper>::Iterator;

    /// Where a broadcast ended early.
    struct Stop
    {
        Place place;              ///< of the entry that was asked last
        TYPtr<Delegate> delegate; ///< of the entry there, also when that has died
    };

    /// Counts a broadcast for the length of a scope.
    class BusyScope
    {
    public:
        /// The container must outlive the scope.
        explicit BusyScope(ObserverContainer& container) : container_(container)
        {
            ++container_.busy_;
        }
        BusyScope(BusyScope const&) = delete;
        BusyScope& operator=(BusyScope const&) = delete;
        ~BusyScope() { --container_.busy_; }

    private:
        ObserverContainer& container_;
    };

    ObserverContainer() = default;
    ObserverContainer(ObserverContainer const&) = delete;
    ObserverContainer& operator=(ObserverContainer const&) = delete;

    /// Registers a delegate, which gets a further reference; one that is registered already is
    /// only counted once more. `veto`: it gets the method that may refuse. Failure:
    /// std::bad_alloc, nothing registered.
    void add(Delegate* delegate, std::uint32_t priority, bool veto)
    {
        purge();
        for (Wrapper& entry : list_)
            if (entry.isLive() && entry.delegate() == delegate) {
                ++entry.count_;
                return;
            }
        Event::reserve();
        Place place = list_.begin();
        while (place != list_.end() && place->priority_ < priority)
            ++place;
        list_.insert(place, Wrapper(TYPtr<Delegate>::share(delegate), priority, veto));
    }

    /// Takes back one registration of the first live entry of that observer; unknown ones are
    /// passed over.
    void remove(TObserver const* observer)
    {
        TYPtr<Delegate> released;
        for (Wrapper& entry : list_)
            if (entry.isOf(observer)) {
                if (--entry.count_ == 0) {
                    released = std::move(entry.delegate_);
                    Visit::keep(visits_, entry, released);
                }
                break;
            }
        purge();
    }

    /// Whether that very delegate is registered.
    bool has(Delegate const* delegate) const
    {
        for (Wrapper const& entry : list_)
            if (entry.isLive() && entry.delegate() == delegate)
                return true;
        return false;
    }

    /// The registration of that delegate has learned by other means what the broadcasts under way
    /// tell; they pass it by.
    void setInformed(Delegate const* delegate)
    {
        for (Wrapper& entry : list_)
            if (entry.isLive() && entry.delegate() == delegate)
                entry.informed_ = doing_;
        anyInformed_ = doing_ != 0;
    }

    /// The stop of a broadcast that reached everybody.
    Stop nowhere() { return Stop{list_.end(), TYPtr<Delegate>()}; }
    /// The stop of a broadcast that reached nobody.
    Stop atFront() { return Stop{list_.begin(), TYPtr<Delegate>()}; }

    /// Entries, dead ones included.
    std::uint32_t size() const { return list_.count(); }
    /// Broadcasts under way.
    std::int32_t busy() const { return busy_; }

    /// Tells every live entry in order, through `doMethod` those with the right of veto, and stops
    /// at the first refusal. Returns the last answer of a veto holder; after a refusal `*refuser`
    /// is who refused, else untouched; null is allowed. `message` belongs to the observers.
    XCode broadcastDoEvent(String& message, Event const& event, DoMethod doMethod,
                           NotifyMethod notifyMethod, TObserver** refuser)
    {
        Stop stop;
        XCode rc = broadcastDoEvent(message, event, doMethod, notifyMethod, stop);
        if (rc.code() != 0 && refuser != nullptr && stop.delegate)
            *refuser = stop.delegate.get()->observer();
        return rc;
    }

    /// Tells live entries in reverse order: all, or those before the last live entry of `refuser`.
    void broadcastUndoEvent(Event const& event, NotifyMethod method, TObserver* refuser)
    {
        tellBackward(event, method, refuser != nullptr ? lastOf(refuser) : list_.end());
    }

    /// The same for a subject that undoes what was refused, or cut short by an exception: `stop`
    /// learns where. The subject keeps a BusyScope until it has undone, so that the place stays.
    XCode broadcastDoEvent(String& message, Event const& event, DoMethod doMethod,
                           NotifyMethod notifyMethod, Stop& stop)
    {
        DoScope doing(*this, stop);
        Clones clones(event);
        XCode answer;
        for (stop.place = list_.begin(); stop.place != list_.end(); ++stop.place) {
            Wrapper const& entry = *stop.place;
            if (!entry.isLive() || entry.informed_ >= doing.level)
                continue;
            Event* clone = nullptr;
            try {
                clone = clones.next();
            } catch (std::bad_alloc const&) {
                return XCode::OUT_OF_MEMORY(message);
            }
            if (clone == nullptr || !entry.isLive()) // cloning calls out
                continue;
            doing.begin(entry);
            if (entry.veto_)
                answer = entry.delegate()->notifyEvent(message, doMethod, *clone);
            else
                entry.delegate()->notifyEvent(notifyMethod, *clone);
            if (entry.veto_ && answer.code() != 0)
                break;
            doing.end();
        }
        return answer;
    }

    /// Undoes before `stop`, which is sought by its observer as above. One that died or was cut
    /// off meanwhile, or was not asked, has only its place.
    void broadcastUndoEvent(Event const& event, NotifyMethod method, Stop const& stop)
    {
        const bool stands =
            stop.delegate && stop.place->isLive() && stop.place->delegate()->observer() != nullptr;
        tellBackward(event, method,
                     stands ? lastOf(stop.place->delegate()->observer()) : stop.place);
    }

private:
    /// A broadcast, and whom it is calling. An entry that dies in its call gives up its delegate;
    /// the broadcasts that are calling it hold that on: it is needed until the call returns, and
    /// may then still have to say who it was.
    class Visit
    {
    public:
        explicit Visit(ObserverContainer& container)
            : busy_(container), container_(container), outer_(container.visits_)
        {
            container.visits_ = this;
        }
        Visit(Visit const&) = delete;
        Visit& operator=(Visit const&) = delete;
        ~Visit() { container_.visits_ = outer_; }

        /// The entry, which lives, is about to be called.
        void begin(Wrapper const& entry) { called_ = &entry; }
        /// It has returned.
        void end()
        {
            called_ = nullptr;
            if (kept_)
                kept_.reset();
        }
        /// The delegate in call, null without one.
        TYPtr<Delegate> delegate() const
        {
            return called_ != nullptr && called_->isLive() ? called_->delegate_ : kept_;
        }

        /// An entry has died and gives up its delegate.
        static void keep(Visit* visit, Wrapper const& dead, TYPtr<Delegate> const& delegate)
        {
            for (; visit != nullptr; visit = visit->outer_)
                if (visit->called_ == &dead)
                    visit->kept_ = delegate;
        }

    private:
        const BusyScope busy_;
        ObserverContainer& container_;
        Visit* const outer_;
        Wrapper const* called_ = nullptr;
        TYPtr<Delegate> kept_;
    };

    /// A broadcast forward; `stop` learns whom it was calling when it ended. Entries marked with
    /// its level or a deeper one are informed.
    class DoScope : public Visit
    {
    public:
        DoScope(ObserverContainer& container, Stop& stop)
            : Visit(container), level(++container.doing_), container_(container), stop_(stop)
        {}
        ~DoScope()
        {
            stop_.delegate = this->delegate();
            --container_.doing_;
            if (container_.anyInformed_)
                container_.settleInformed();
        }

        const std::uint32_t level;

    private:
        ObserverContainer& container_;
        Stop& stop_;
    };

    /// Clones of an event, one at a time. The one before serves again where nobody could tell the
    /// difference: its class copies nothing but what is seen here, and the observer left it as it
    /// was. So a broadcast counts the subject once, not once an observer.
    class Clones
    {
    public:
        explicit Clones(Event const& event)
            : event_(event), servesAgain_(typeid(event) == typeid(Event))
        {}

        /// A clone for the next observer; null when the event gives none. Failure: std::bad_alloc.
        Event* next()
        {
            if (clone_ != nullptr && servesAgain_ && clone_->hasContentOf(event_))
                return clone_.get();
            clone_.reset();
            clone_.reset(event_.clone());
            return clone_.get();
        }

    private:
        Event const& event_;
        const bool servesAgain_;
        std::unique_ptr<Event> clone_;
    };

    /// A broadcast forward has ended: entries informed of it are so no more.
    void settleInformed()
    {
        for (Wrapper& entry : list_)
            if (entry.informed_ > doing_)
                entry.informed_ = doing_;
        anyInformed_ = doing_ != 0;
    }

    void purge()
    {
        if (busy_ != 0)
            return;
        for (Place at = list_.begin(); at != list_.end();)
            if (at->isLive())
                ++at;
            else
                at = list_.remove(at);
    }

    /// The place of the last live entry of an observer, the end without one.
    Place lastOf(TObserver const* observer)
    {
        for (Place at = list_.end(); at != list_.begin();)
            if ((--at)->isOf(observer))
                return at;
        return list_.end();
    }

    /// Tells the live entries before a place, last first; after an exception the rest as well,
    /// before it goes on.
    void tellBackward(Event const& event, NotifyMethod method, Place from)
    {
        Visit visit(*this);
        Clones clones(event);
        const auto tellRest = [&] {
            while (from != list_.begin())
                tell(visit, clones, method, *--from);
        };
        try {
            tellRest();
        } catch (...) {
            tellRest();
            throw;
        }
    }

    void tell(Visit& visit, Clones& clones, NotifyMethod method, Wrapper const& entry)
    {
        if (!entry.isLive())
            return;
        Event* const clone = clones.next();
        if (clone == nullptr || !entry.isLive()) // cloning calls out
            return;
        visit.begin(entry);
        entry.delegate()->notifyEvent(method, *clone);
        visit.end();
    }

    TOVA_List<Wrapper> list_;
    std::int32_t busy_ = 0;
    std::uint32_t doing_ = 0;  // of these, the broadcasts forward
    bool anyInformed_ = false; // in one of these
    Visit* visits_ = nullptr;  // all broadcasts under way, the latest first
};

#endif
