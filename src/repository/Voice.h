#ifndef REPOSITORY_VOICE_H
#define REPOSITORY_VOICE_H

#include <optional>

#include <drvrepo/DriverWrapper.h>

/// The events that a walk hands to one observer after the other. Made when first needed and kept,
/// since taking the references of an event costs more than all the rest of telling it; armed anew
/// in every field each time, since observers may change what they are given.
struct CDriverRepository::DriverWrapper::Voice
{
    template <class Event> struct Kept
    {
        std::optional<Event> event;
        bool lent = false;
    };

    Voice() {} // not `= default`, or the compiler clears all the room for events each time
    Voice(Voice const&) = delete;
    Voice& operator=(Voice const&) = delete;

    Kept<EvDriver> driver;
    Kept<EvAttachment> attachment;
};

/// An event of a walk's for the time of one call; one of its own when an observer further out has
/// that of the walk in its hands.
template <class Event> class CDriverRepository::DriverWrapper::Loan
{
public:
    template <class... Texts>
    Loan(Voice::Kept<Event>& kept, IDriverRepository* repository, IDriver* driver,
         Texts const&... texts)
        : kept_(&kept)
    {
        if (kept.lent || !kept.event || !isArmed(*kept.event, repository, driver, texts...))
            prepare(repository, driver, texts...);
        else
            kept.lent = true;
    }
    Loan(Loan const&) = delete;
    Loan& operator=(Loan const&) = delete;
    ~Loan() { kept_->lent = false; }

    Event& operator*() const { return *kept_->event; }

private:
    template <class... Texts>
    [[gnu::noinline]] void prepare(IDriverRepository* repository, IDriver* driver,
                                   Texts const&... texts)
    {
        if (kept_->lent)
            kept_ = &own_;
        kept_->lent = true; // before references are taken, which may call in
        if (kept_->event)
            arm(*kept_->event, repository, driver, texts...);
        else
            kept_->event.emplace(repository, driver, texts...);
    }

    static bool isArmed(EvDriver const& event, IDriverRepository const* repository,
                        IDriver const* driver)
    {
        return event.source.get() == repository && event.driver.get() == driver &&
               event.data.buffer().size() == 0;
    }
    static bool isArmed(EvAttachment const& event, IDriverRepository const* repository,
                        IDriver const* driver, String const& key, String const& value)
    {
        return isArmed(event, repository, driver) && event.key.buffer() == key.buffer() &&
               event.value.buffer() == value.buffer();
    }

    template <class T> static void refer(TYPtr<T>& held, T* object)
    {
        if (held.get() != object)
            held.reset(TYPtr<T>::share(object).detach());
    }
    static void arm(EvDriver& event, IDriverRepository* repository, IDriver* driver)
    {
        refer(event.source, repository);
        refer(event.driver, driver);
        if (event.data.buffer().size() != 0)
            event.data = TYMarshaller();
    }
    static void arm(EvAttachment& event, IDriverRepository* repository, IDriver* driver,
                    String const& key, String const& value)
    {
        arm(event, repository, driver);
        event.key = key;
        event.value = value;
    }

    Voice::Kept<Event> own_;
    Voice::Kept<Event>* kept_;
};

#endif
