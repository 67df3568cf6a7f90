#include "ShellListener.h"

#include "Output.h"
#include "Text.h"

namespace
{
std::string driverName(ObserverEvent<IDriverRepository> const& event)
{
    auto const& coming = static_cast<IDriverRepository::EvDriver const&>(event);
    return toStd(coming.driver->getDriverName());
}

IDriverRepository::EvAttachment const& attachment(ObserverEvent<IDriverRepository> const& event)
{
    return static_cast<IDriverRepository::EvAttachment const&>(event);
}

std::string pair(IDriverRepository::EvAttachment const& event)
{
    return toStd(event.key) + "=" + toStd(event.value);
}
} // namespace

std::string refusalText(std::string const& reason, bool veto)
{
    return "(\"" + reason + "\")" + (veto ? "" : ", without right of veto");
}

ShellListener::ShellListener(Output& output, std::string const& name, Refusals const& refusals,
                             bool veto)
    : output_(output), name_(name), refusals_(refusals), veto_(veto)
{
    output_.addName(name_, static_cast<IDriverRepositoryObserver*>(this));
}

ShellListener::~ShellListener()
{
    output_.removeName(name_, static_cast<IDriverRepositoryObserver*>(this));
}

XCode ShellListener::onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event)
{
    std::string const driver = driverName(event);
    if (refusals_.refusesAdded([&](std::string const& prefix) {
            return driver.compare(0, prefix.size(), prefix) == 0;
        }))
        return refuse(error, driver + ": refused");
    output_.heard(name_, driver + ": added");
    return XCode();
}

void ShellListener::onDriverRemoved(ObserverEvent<IDriverRepository>& event)
{
    output_.heard(name_, driverName(event) + ": removed");
}

XCode ShellListener::onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event)
{
    IDriverRepository::EvAttachment const& set = attachment(event);
    if (refusals_.refusesSet(toStd(set.key), toStd(set.value)))
        return refuse(error, driverName(event) + ": refused " + pair(set));
    output_.heard(name_, driverName(event) + ": set " + pair(set));
    return XCode();
}

void ShellListener::onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event)
{
    output_.heard(name_, driverName(event) + ": cleared " + pair(attachment(event)));
}

XCode ShellListener::refuse(String& error, std::string const& what)
{
    output_.heard(name_, what + " " + refusalText(refusals_.text(), veto_));
    error = toString(refusals_.text());
    return XCode(-1);
}
