#include "ShellListener.h"

#include "Output.h"
#include "Text.h"

namespace
{
/// The notice that an event is, to the one of that name.
Notice notice(Notice::What what, std::string const& hearer,
              ObserverEvent<IDriverRepository> const& event)
{
    auto const& driver = static_cast<IDriverRepository::EvDriver const&>(event);
    Notice notice;
    notice.what = what;
    notice.hearer = hearer;
    notice.subject = toStd(driver.driver->getDriverName());
    if (what == Notice::What::Set || what == Notice::What::Cleared) {
        auto const& attachment = static_cast<IDriverRepository::EvAttachment const&>(event);
        notice.key = toStd(attachment.key);
        notice.value = toStd(attachment.value);
    }
    return notice;
}
} // namespace

ShellListener::ShellListener(Output& output, Hearer const& self, Refusals const& refusals)
    : output_(output), self_(self), refusals_(refusals)
{
    output_.addHearer(self_, static_cast<IDriverRepositoryObserver*>(this));
}

ShellListener::~ShellListener()
{
    output_.removeHearer(self_, static_cast<IDriverRepositoryObserver*>(this));
}

XCode ShellListener::onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event)
{
    Notice const added = notice(Notice::What::Added, self_.name, event);
    bool const refused = refusals_.refusesAdded([&](std::string const& prefix) {
        return added.subject.compare(0, prefix.size(), prefix) == 0;
    });
    return tell(added, refused, error);
}

void ShellListener::onDriverRemoved(ObserverEvent<IDriverRepository>& event)
{
    output_.told(notice(Notice::What::Removed, self_.name, event));
}

XCode ShellListener::onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event)
{
    Notice const set = notice(Notice::What::Set, self_.name, event);
    return tell(set, refusals_.refusesSet(set.key, set.value), error);
}

void ShellListener::onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event)
{
    output_.told(notice(Notice::What::Cleared, self_.name, event));
}

XCode ShellListener::tell(Notice notice, bool refused, String& error)
{
    if (refused)
        notice.refusal = Refusal{refusals_.text(), self_.veto};
    output_.told(notice);
    if (!refused)
        return XCode();
    error = toString(refusals_.text());
    return XCode(-1);
}
