#include <drvrepo/CDriverRepository.h>
#include <drvrepo/DRIVER.h>

DRIVER::DRIVER()
{
    reset(new CDriverRepository(CRIT::INSTANCE()));
}

DRIVER& DRIVER::INSTANCE()
{
    static DRIVER instance;
    return instance;
}
