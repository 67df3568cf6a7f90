#ifndef DRVREPO_TESTKIT_RECORDINGOBSERVER_H
#define DRVREPO_TESTKIT_RECORDINGOBSERVER_H

#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

#include <drvrepo/IChannelGroupObserver.h>
#include <drvrepo/IDriverRepositoryObserver.h>
#include <drvrepo/testkit/EventLog.h>

/// An observer's part in a test: it writes what it hears into the log, answers as it was told to,
/// and then does what `then` says.
///
/// What it hears is written as in the transcripts: "added fxs 1", "set fxs 1 key=value", ... Each
/// order is for everything that begins with its text; the first that fits counts.
class ObserverPart
{
public:
    /// Writes into `log`, which must live longer, as `name`.
    ObserverPart(EventLog& log, std::string name) : log_(log), name_(std::move(name)) {}

    /// Answers `code` with `text` as the reason, and writes "refused" for what it refuses.
    void refuse(std::string what, std::string text, std::int32_t code = -1)
    {
        orders_.push_back(Order{std::move(what), std::move(text), code});
    }
    /// Accepts, and leaves `text` where the reason of a refusal would stand.
    void remark(std::string what, std::string text)
    {
        orders_.push_back(Order{std::move(what), std::move(text), 0});
    }
    /// Takes all orders back.
    void accept() { orders_.clear(); }

    /// Who it is in the log.
    std::string const& name() const { return name_; }

    /// Called with what was heard when the line is written, before the answer; may throw.
    std::function<void(std::string const& what)> then;

protected:
    ~ObserverPart() = default;

    /// Hears `verb` of `what` and answers.
    XCode answer(String& error, std::string const& verb, std::string const& what)
    {
        const std::string heard = verb + " " + what;
        const Order order = orderFor(heard); // a copy: `then` may change the orders
        log_.add(name_, order.code != 0 ? "refused " + what : heard);
        if (!order.text.empty())
            error = order.text.c_str();
        if (then)
            then(heard);
        return XCode(order.code);
    }
    /// Hears what cannot be refused.
    void hear(std::string const& what)
    {
        log_.add(name_, what);
        if (then)
            then(what);
    }

private:
    struct Order
    {
        std::string what;
        std::string text;
        std::int32_t code;
    };

    Order orderFor(std::string const& heard) const
    {
        for (Order const& order : orders_)
            if (heard.compare(0, order.what.size(), order.what) == 0)
                return order;
        return Order{"", "", 0};
    }

    EventLog& log_;
    std::string name_;
    std::vector<Order> orders_;
};

/// Hears of drivers: "added NAME", "removed NAME", "set NAME KEY=VALUE", "cleared NAME KEY=VALUE";
/// "refused NAME" and "refused NAME KEY=VALUE" when it refuses.
class RecordingObserver : public IDriverRepositoryObserver, public ObserverPart
{
public:
    /// What observers of a repository are handed.
    using Event = ObserverEvent<IDriverRepository>;
    using ObserverPart::ObserverPart;

    XCode onDriverAdded(String& error, Event& event) override
    {
        return answer(error, "added", driverOf(event));
    }
    void onDriverRemoved(Event& event) override { hear("removed " + driverOf(event)); }
    XCode onDriverAttachmentSet(String& error, Event& event) override
    {
        return answer(error, "set", attachmentOf(event));
    }
    void onDriverAttachmentCleared(Event& event) override
    {
        hear("cleared " + attachmentOf(event));
    }

    /// The name of the driver that an event is about.
    static std::string driverOf(Event const& event)
    {
        auto const& driver = static_cast<IDriverRepository::EvDriver const&>(event).driver;
        return driver ? driver.get()->getDriverName().cString() : "(no driver)";
    }
    /// The same with key and value: "fxs 1 key=value".
    static std::string attachmentOf(Event const& event)
    {
        auto const& change = static_cast<IDriverRepository::EvAttachment const&>(event);
        return driverOf(event) + " " + change.key.cString() + "=" + change.value.cString();
    }
};

/// Hears of timeslots, as OLD->NEW: CHANGED in hexadecimal: "asked ..." by the method that can
/// refuse, "added ..." by the other, "removed ..."; "refused ..." when it refuses.
class RecordingGroupObserver : public IChannelGroupObserver, public ObserverPart
{
public:
    /// What observers of a channel group are handed.
    using Event = ObserverEvent<IChannelGroup>;
    using ObserverPart::ObserverPart;

    XCode onTimeslotsAdded(String& message, Event& event) override
    {
        return answer(message, "asked", changeOf(event));
    }
    void onTimeslotsAdded(Event& event) override { hear("added " + changeOf(event)); }
    void onTimeslotsRemoved(Event& event) override { hear("removed " + changeOf(event)); }

    /// The masks of an event: before, after, the bits that changed.
    static std::string changeOf(Event const& event)
    {
        char text[40];
        std::snprintf(text, sizeof text, "%8.8x->%8.8x: %8.8x", event.data.word(0),
                      event.data.word(1), event.data.word(2));
        return text;
    }
};

#endif
