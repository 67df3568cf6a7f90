#ifndef DRVREPO_IDENTIFIERS_H
#define DRVREPO_IDENTIFIERS_H

#include <utility/TOVA_UUID.h>

#include <drvrepo/Export.h>

// Each identifier is made by its first call, from any thread, on a static record that is never
// counted nor freed: copies stay good after exit handlers have run.

/// The base driver class CDriver.
DRVREPO_EXPORT TOVA_UUID const& CID_Driver();
/// The repository class CDriverRepository.
DRVREPO_EXPORT TOVA_UUID const& CID_DriverRepository();
/// The in-process way of adding a repository observer.
DRVREPO_EXPORT TOVA_UUID const& CID_DriverRepositoryObserverAddLocal();
/// The channel-group class CChannelGroup.
DRVREPO_EXPORT TOVA_UUID const& CID_ChannelGroup();
/// The driver type of channel groups.
DRVREPO_EXPORT TOVA_UUID const& DID_ChannelGroup();

#endif
