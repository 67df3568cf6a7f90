#ifndef DRVREPO_DRIVER_H
#define DRVREPO_DRIVER_H

#include <drvrepo/IDriverRepository.h>

/// The counted pointer to the process's repository. `DRIVER::INSTANCE()->addDriver(...)` holds the
/// event loop's lock for that call; `*` and raw pointers don't.
class DRVREPO_EXPORT DRIVER : public TYPPtr<IDriverRepository>
{
public:
    /// Makes the repository on CRIT::INSTANCE() at the first call, from any thread. Given back at
    /// exit; the repository goes then unless somebody else holds a reference.
    static DRIVER& INSTANCE();

private:
    DRIVER();
};

#endif
