#ifndef DRVREPO_MON_DRV_H
#define DRVREPO_MON_DRV_H

#include <utility/Monitor.h>

#include <drvrepo/Export.h>

/// Where the library writes its log lines. Null, and so silent, until the host process sets it;
/// the library never does. The monitor stays the host's and must outlive its use.
extern DRVREPO_EXPORT RTD::Monitor const* MON_DRV;

#endif
