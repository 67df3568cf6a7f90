#include <drvrepo/ScopedDriver.h>
#include <drvrepo/ScopedListener.h>

#include <support/Allocations.h>
#include <support/RepositoryFixture.h>

namespace
{

class ScopesMemory : public RepositoryFixture
{
protected:
    /// Lets each request for memory fail in turn, until all are granted. Returns how many failed.
    template <class Attempt> int starve(Attempt attempt)
    {
        for (int n = 0;; ++n) {
            XCode rc;
            bool happened = false;
            {
                const allocations::Failing failing(static_cast<std::uint64_t>(n));
                rc = attempt();
                happened = failing.happened();
            }
            if (!happened) {
                EXPECT_EQ(0, rc.code());
                return n;
            }
            EXPECT_EQ(-1, rc.code()) << n;
            EXPECT_EQ("Out of memory", error()) << n;
            EXPECT_EQ("", listeners()) << n;
            EXPECT_EQ("", drivers()) << n;
            EXPECT_EQ(1, repository().references()) << n;
        }
    }
};

TEST_F(ScopesMemory, ListenerThatFindsNoneListensToNothing)
{
    MON_DRV = nullptr;
    const String name("scoped");
    const ListenerTerms terms;
    RecordingObserver& x = observer("x");
    ScopedListener listener;
    EXPECT_LE(3, starve([&] {
                  XCode rc = listener.start(error_, repository(), name, terms, x);
                  EXPECT_EQ(rc.code() == 0, listener.isListening());
                  return rc;
              }));
}

TEST_F(ScopesMemory, DriverThatFindsNoneIsNotHeld)
{
    MON_DRV = nullptr;
    const TYPtr<CDriver> own(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
    ScopedDriver scoped;
    EXPECT_LE(2, starve([&] {
                  XCode rc = scoped.add(error_, repository(), *own);
                  EXPECT_EQ(rc.code() == 0, scoped.driver() != nullptr);
                  return rc;
              }));
}

} // namespace
