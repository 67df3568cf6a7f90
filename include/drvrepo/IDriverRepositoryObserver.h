#ifndef DRVREPO_IDRIVERREPOSITORYOBSERVER_H
#define DRVREPO_IDRIVERREPOSITORYOBSERVER_H

#include <drvrepo/IDriverRepository.h>

/// Told about drivers that a listener's criteria select, synchronously, on the thread that made
/// the change. May call back into the repository from any of the four.
///
/// The event of the first two is an IDriverRepository::EvDriver, of the others an
/// IDriverRepository::EvAttachment; it lives for the length of the call, clone it to keep it.
/// The order of the virtual operations is binary contract.
class DRVREPO_EXPORT IDriverRepositoryObserver
{
public:
    /// A driver has come. A code other than 0 refuses it, if the listener has the right of veto;
    /// the reason goes into `error`.
    virtual XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) = 0;
    /// A driver has gone, or concerns the listener no more.
    virtual void onDriverRemoved(ObserverEvent<IDriverRepository>& event) = 0;
    /// An attachment has a new value. Can be refused like `onDriverAdded`.
    virtual XCode onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event) = 0;
    /// An attachment has lost the value that the event names.
    virtual void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) = 0;
    virtual ~IDriverRepositoryObserver();
};

#endif
