#include "ShellGroup.h"

#include "Output.h"
#include "ShellListener.h"
#include "Text.h"

std::string timeslotText(unsigned timeslots)
{
    String text;
    IChannelGroup::TIMESLOTS_UINT_TO_TEXT(timeslots, text);
    return text.isEmpty() ? "none" : toStd(text);
}

ShellGroup* shellGroup(IDriver& driver)
{
    // Asked for nothing but whether; the reference that keeps the driver is the caller's.
    if (driver.queryInterface(IChannelGroup::IID(), nullptr).code() != 0)
        return nullptr;
    return static_cast<ShellGroup*>(&driver);
}

GroupObserver::GroupObserver(Output& output, std::string const& name, std::string const& group,
                             Refusals const& refusals)
    : output_(output), name_(name), group_(group), refusals_(refusals)
{
    output_.addName(name_, static_cast<IChannelGroupObserver*>(this));
}

GroupObserver::~GroupObserver()
{
    output_.removeName(name_, static_cast<IChannelGroupObserver*>(this));
}

XCode GroupObserver::onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event)
{
    unsigned const changed = event.data.word(2);
    bool const refused = refusals_.refusesAdded([&](std::string const& text) {
        String error;
        unsigned timeslots = 0;
        IChannelGroup::TIMESLOTS_TEXT_TO_UINT(error, toString(text), timeslots);
        return (timeslots & changed) != 0;
    });
    if (!refused) {
        heard("added ", event);
        return XCode();
    }
    output_.heard(name_, group_ + ": refused " + timeslotText(changed) + " " +
                             refusalText(refusals_.text(), true));
    message = toString(refusals_.text());
    return XCode(-1);
}

void GroupObserver::onTimeslotsAdded(ObserverEvent<IChannelGroup>& event)
{
    heard("added ", event);
}

void GroupObserver::onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event)
{
    heard("removed ", event);
}

void GroupObserver::heard(char const* what, ObserverEvent<IChannelGroup> const& event)
{
    output_.heard(name_, group_ + ": " + what + timeslotText(event.data.word(2)) + " (" +
                             timeslotText(event.data.word(0)) + " -> " +
                             timeslotText(event.data.word(1)) + ")");
}

void ShellGroup::addRef()
{
    ++references_;
    CChannelGroup::addRef();
}

void ShellGroup::release()
{
    --references_;
    CChannelGroup::release();
}

XCode ShellGroup::observe(Output& output, String& error, Wish const& wish)
{
    if (observers_.count(wish.name) != 0) {
        error.format("Observer '%s' already exists", wish.name.c_str());
        return XCode(-1);
    }
    auto observer =
        std::make_unique<GroupObserver>(output, wish.name, toStd(getDriverName()), wish.refusals);
    XCode const result =
        addChannelGroupObserver(error, observer.get(), wish.priority, wish.veto, wish.current);
    if (result.code() == 0)
        observers_[wish.name] = std::move(observer);
    return result;
}

bool ShellGroup::unobserve(std::string const& name, bool current)
{
    auto const found = observers_.find(name);
    if (found == observers_.end())
        return false;
    removeChannelGroupObserver(found->second.get(), current);
    observers_.erase(found);
    return true;
}

std::vector<std::string> ShellGroup::observers() const
{
    std::vector<std::string> names;
    for (auto const& entry : observers_)
        names.push_back(entry.first);
    return names;
}
