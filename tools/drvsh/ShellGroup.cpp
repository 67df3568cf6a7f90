#include "ShellGroup.h"

#include "Output.h"
#include "Text.h"

std::string timeslotText(unsigned timeslots)
{
    String text;
    IChannelGroup::TIMESLOTS_UINT_TO_TEXT(timeslots, text);
    return toStd(text);
}

ShellGroup* shellGroup(IDriver& driver)
{
    // Asked for nothing but whether; the reference that keeps the driver is the caller's.
    if (driver.queryInterface(IChannelGroup::IID(), nullptr).code() != 0)
        return nullptr;
    return static_cast<ShellGroup*>(&driver);
}

namespace
{
/// The notice that an event is, to that observer.
Notice notice(Notice::What what, Hearer const& hearer, ObserverEvent<IChannelGroup> const& event)
{
    Notice notice;
    notice.what = what;
    notice.hearer = hearer.name;
    notice.subject = hearer.group;
    notice.ofGroup = true;
    notice.before = timeslotText(event.data.word(0));
    notice.after = timeslotText(event.data.word(1));
    notice.timeslots = timeslotText(event.data.word(2));
    return notice;
}
} // namespace

GroupObserver::GroupObserver(Output& output, Hearer const& self, Refusals const& refusals)
    : output_(output), self_(self), refusals_(refusals)
{
    output_.addHearer(self_, static_cast<IChannelGroupObserver*>(this));
}

GroupObserver::~GroupObserver()
{
    output_.removeHearer(self_, static_cast<IChannelGroupObserver*>(this));
}

XCode GroupObserver::onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event)
{
    Notice added = notice(Notice::What::Added, self_, event);
    bool const refused = refusals_.refusesAdded([&](std::string const& text) {
        String error;
        unsigned timeslots = 0;
        IChannelGroup::TIMESLOTS_TEXT_TO_UINT(error, toString(text), timeslots);
        return (timeslots & event.data.word(2)) != 0;
    });
    if (refused)
        added.refusal = Refusal{refusals_.text(), true};
    output_.told(added);
    if (!refused)
        return XCode();
    message = toString(refusals_.text());
    return XCode(-1);
}

void GroupObserver::onTimeslotsAdded(ObserverEvent<IChannelGroup>& event)
{
    output_.told(notice(Notice::What::Added, self_, event));
}

void GroupObserver::onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event)
{
    output_.told(notice(Notice::What::Removed, self_, event));
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
    Hearer const self = {wish.name, toStd(getDriverName()), wish.priority, wish.veto};
    auto observer = std::make_unique<GroupObserver>(output, self, wish.refusals);
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
