#ifndef DRVREPO_ICHANNELGROUPOBSERVER_H
#define DRVREPO_ICHANNELGROUPOBSERVER_H

#include <drvrepo/IChannelGroup.h>

/// Told about timeslots of a channel group, on the thread that made the change. The event's `data`
/// carries three words: the mask before, the mask after, the bits changed. The order of the
/// virtual operations is binary contract.
class DRVREPO_EXPORT IChannelGroupObserver
{
public:
    /// Timeslots were added; told to observers with the right of veto. A code other than 0 refuses
    /// them, the reason goes into `message`.
    virtual XCode onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event) = 0;
    /// Timeslots were added; told to observers without that right.
    virtual void onTimeslotsAdded(ObserverEvent<IChannelGroup>& event) = 0;
    /// Timeslots were removed, or an addition was withdrawn.
    virtual void onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event) = 0;
    virtual ~IChannelGroupObserver();
};

#endif
