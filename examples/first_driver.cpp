// A first driver: derive it from CDriver, add it, find it again, take it out.

#include <cstdio>

#include <drvrepo/CDriver.h>
#include <drvrepo/DRIVER.h>

namespace
{

/// An E1 port. The base class keeps type, name and reference count; what makes a port a port is
/// its own affair.
class E1Port : public CDriver
{
public:
    explicit E1Port(String const& name) : CDriver(IDriver::DID_UNKNOWN(), name) {}

    void blink() const { std::printf("%s: blinking\n", getDriverName().cString()); }
};

} // namespace

int main()
{
    // A driver name has a type word, up to three numbers and further components.
    String name;
    const unsigned int absent = 4294967295u;
    IDriver::BUILD_DRIVER_NAME(name, IDriver::Port::E1T1, 0, 3, absent, "", "", "", "");

    // A new object has one reference, ours; TYPtr takes it over and gives it back in the end.
    const TYPtr<E1Port> port(new E1Port(name));

    // `->` on INSTANCE() holds the repository's lock for that one call.
    String error;
    XCode rc = DRIVER::INSTANCE()->addDriver(error, port.get());
    if (rc.code() != 0) {
        std::printf("not added: %s\n", error.cString());
        return 1;
    }

    // Whoever looks it up gets a reference of his own.
    IDriver* found = nullptr;
    rc = DRIVER::INSTANCE()->getDriver("e1t1 0 3", &found);
    const TYPtr<IDriver> held(found);
    if (rc.code() != 0 || held.get() != port.get())
        return 1;
    std::printf("found %s\n", held->getDriverName().cString());
    static_cast<E1Port const*>(held.get())->blink();

    DRIVER::INSTANCE()->removeDriver(port.get());
    return DRIVER::INSTANCE()->getDriver("e1t1 0 3", nullptr).code() == -1 ? 0 : 1;
}
