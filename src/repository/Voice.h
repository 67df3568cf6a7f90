#ifndef REPOSITORY_VOICE_H
#define REPOSITORY_VOICE_H

#include <optional>

#include <drvrepo/DriverWrapper.h>

/// The events that a walk hands to one observer after the other. Made when first needed and kept,
/// since taking the references of an event costs more than all the rest of telling it; armed anew
/// in every field each time, since observers may change what they are given.
class CDriverRepository::DriverWrapper::Voice
{
public:
    Voice() = default;
    Voice(Voice const&) = delete;
    Voice& operator=(Voice const&) = delete;

private:
    template <class Event> friend class Loan;

    template <class Event> struct Kept
    {
        std::optional<Event> event;
        bool lent = false;
    };

    Kept<EvDriver>& keptFor(EvDriver const*) { return driver_; }
    Kept<EvAttachment>& keptFor(EvAttachment const*) { return attachment_; }

    Kept<EvDriver> driver_;
    Kept<EvAttachment> attachment_;
};

/// An event of a walk's for the time of one call; one of its own when an observer further out has
/// that of the walk in its hands.
template <class Event> class CDriverRepository::DriverWrapper::Loan
{
public:
    template <class... Texts>
    Loan(Voice& voice, IDriverRepository* repository, IDriver* driver, Texts const&... texts)
    {
        Voice::Kept<Event>& kept = voice.keptFor(static_cast<Event const*>(nullptr));
        if (kept.lent) {
            own_.emplace(repository, driver, texts...);
            event_ = &*own_;
            return;
        }
        lent_ = &kept.lent;
        *lent_ = true;
        if (kept.event)
            arm(*kept.event, repository, driver, texts...);
        else
            kept.event.emplace(repository, driver, texts...);
        event_ = &*kept.event;
    }
    Loan(Loan const&) = delete;
    Loan& operator=(Loan const&) = delete;
    ~Loan()
    {
        if (lent_ != nullptr)
            *lent_ = false;
    }

    Event& operator*() const { return *event_; }

private:
    template <class T> static void refer(TYPtr<T>& held, T* object)
    {
        if (held.get() != object)
            held = TYPtr<T>::share(object);
    }
    static void refer(String& held, String const& text)
    {
        if (held.buffer() != text.buffer())
            held = text;
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
        refer(event.key, key);
        refer(event.value, value);
    }

    std::optional<Event> own_;
    Event* event_ = nullptr;
    bool* lent_ = nullptr;
};

#endif
