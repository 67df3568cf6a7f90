// Numbers that other builds have compiled in, checked when this is compiled. What compares the
// recorded interface takes two exchanged enumerators for the same.
#include <drvrepo/IDriver.h>
#include <drvrepo/Listener.h>

using Port = IDriver::Port;
static_assert(Port::TYPE_UNKNOWN == 0, "");
static_assert(Port::TYPE_E1T1 == 1, "");
static_assert(Port::TYPE_BRI == 2, "");
static_assert(Port::TYPE_FXS == 3, "");
static_assert(Port::TYPE_FXO == 4, "");

using Listener = CDriverRepository::Listener;
static_assert(Listener::DRIVER_ADDED == 0, "");
static_assert(Listener::DRIVER_REMOVED == 1, "");
static_assert(Listener::ATTACHMENT_SET == 2, "");
static_assert(Listener::ATTACHMENT_CLEARED == 3, "");
