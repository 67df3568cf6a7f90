#include <unistd.h>

#include <drvrepo/CDriver.h>
#include <drvrepo/DRIVER.h>

// Starts, takes one driver in, and ends at once.
int main()
{
    String error;
    const TYPtr<CDriver> port(new CDriver(IDriver::DID_UNKNOWN(), "e1t1 3 17/B-CHANNELS"));
    _exit(DRIVER::INSTANCE()->addDriver(error, port.get()).code());
}
