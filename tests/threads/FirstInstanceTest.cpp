#include <set>

#include <gtest/gtest.h>

#include <drvrepo/CDriver.h>
#include <drvrepo/DRIVER.h>

#include <support/Child.h>

#include "FourThreads.h"

// The process's repository is made by whichever thread asks first. A process has one such moment,
// so that each try needs a process of its own.

namespace
{

/// In a new process: four threads ask at once. Returns how many repositories they got.
int askAtOnce()
{
    IDriverRepository* got[THREADS] = {};
    onFourThreads([&got](int thread) {
        got[thread] = DRIVER::INSTANCE().get();
        const String name(String().format("fxs %d", thread));
        const TYPtr<CDriver> driver(new CDriver(IDriver::DID_UNKNOWN(), name));
        String error;
        DRIVER::INSTANCE()->addDriver(error, driver.get());
        DRIVER::INSTANCE()->removeDriver(driver.get());
    });
    return static_cast<int>(std::set<IDriverRepository*>(got, got + THREADS).size());
}

TEST(FirstInstance, IsOneWhoeverAsksFirst)
{
    const auto leave = [](int status) { std::exit(status); };
    for (int process = rounds(50); process > 0; --process)
        ASSERT_EQ("0: 1", inChild(
                              [](std::FILE* out) {
                                  std::fprintf(out, "%d", askAtOnce());
                                  return 0;
                              },
                              leave));
}

} // namespace
