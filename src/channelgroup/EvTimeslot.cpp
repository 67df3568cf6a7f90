#include <drvrepo/IChannelGroup.h>

IChannelGroup::EvTimeslot::EvTimeslot() = default;

IChannelGroup::EvTimeslot::EvTimeslot(IChannelGroup* group, unsigned int before, unsigned int after,
                                      unsigned int changed)
    : ObserverEvent<IChannelGroup>(group), oldTimeslots(before), newTimeslots(after),
      changedTimeslots(changed)
{}

IChannelGroup::EvTimeslot::~EvTimeslot() = default;

IChannelGroup::EvTimeslot* IChannelGroup::EvTimeslot::clone() const
{
    return new EvTimeslot(*this);
}
