#include <climits>

#include <gtest/gtest.h>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IDriverRepositoryObserver.h>

#include <support/RecordingMonitor.h>

namespace
{

/// MON_DRV before any test could set it.
RTD::Monitor const* const s_atStart = MON_DRV;

/// Refuses every driver.
class Refuser : public IDriverRepositoryObserver
{
public:
    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>&) override
    {
        error = "busy";
        return XCode(7);
    }
    void onDriverRemoved(ObserverEvent<IDriverRepository>&) override {}
    XCode onDriverAttachmentSet(String&, ObserverEvent<IDriverRepository>&) override
    {
        return XCode();
    }
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>&) override {}
};

class Log : public testing::Test
{
protected:
    Log()
    {
        EXPECT_EQ(0, (*repository_)
                         .addDriverRepositoryObserver(error_, "L", TOVA_UUID::INVALID(),
                                                      TOVA_UUID::INVALID(), "", 1, true, true,
                                                      &refuser_)
                         .code());
    }
    ~Log() override { (*repository_).removeDriverRepositoryObserver("L"); }

    /// A debug line, a refusal, and so two lines at the error level.
    void work()
    {
        const TYPtr<IDriver> driver(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
        EXPECT_EQ(7, (*repository_).addDriver(error_, driver.get()).code());
    }

    TYEventLoop loop_;
    Refuser refuser_;
    String error_;
    const TYPtr<IDriverRepository> repository_{new CDriverRepository(loop_)};
};

char const* const ERRORS = "<3> DrvRepo:   fxs 1: NOTIFY LISTENER 'L' FAILED: busy\n"
                           "<3> DrvRepo: ADDING DRIVER 'fxs 1' FAILED: busy\n";
char const* const ALL =
    "<7> DrvRepo: Add driver 'fxs 1'\n"
    "<7> DrvRepo:   fxs 1: Notify listener 'L' with right of veto: onDriverAdded()\n"
    "<3> DrvRepo:   fxs 1: NOTIFY LISTENER 'L' FAILED: busy\n"
    "<3> DrvRepo: ADDING DRIVER 'fxs 1' FAILED: busy\n";

TEST_F(Log, StartsWithoutAMonitor)
{
    EXPECT_EQ(nullptr, s_atStart);
}

TEST_F(Log, WithoutAMonitorNothingIsWritten)
{
    RecordingMonitor monitor;
    MON_DRV = nullptr;
    work();
    EXPECT_EQ("", monitor.take());
    EXPECT_EQ(nullptr, MON_DRV); // and nobody sets one
}

TEST_F(Log, DebugLinesAreWrittenFromTheirVerbosityOn)
{
    for (std::int32_t threshold : {0, 1, 7, INT_MAX}) {
        SCOPED_TRACE(threshold);
        RecordingMonitor monitor(threshold);
        work();
        EXPECT_EQ(ALL, monitor.take());
    }
}

TEST_F(Log, BelowItOnlyErrorsAre)
{
    for (std::int32_t threshold : {-1, -7, INT_MIN}) {
        SCOPED_TRACE(threshold);
        RecordingMonitor monitor(threshold);
        work();
        EXPECT_EQ(ERRORS, monitor.take());
    }
}

TEST_F(Log, TheThresholdMayChange)
{
    RecordingMonitor monitor;
    monitor.setThreshold(-1);
    work();
    EXPECT_EQ(ERRORS, monitor.take());
    monitor.setThreshold(0);
    work();
    EXPECT_EQ(ALL, monitor.take());
}

TEST_F(Log, GoesToTheMonitorOfTheMoment)
{
    RecordingMonitor first;
    {
        RecordingMonitor second;
        work();
        EXPECT_EQ(ALL, second.take());
    }
    EXPECT_EQ("", first.take());
    work();
    EXPECT_EQ(ALL, first.take());
}

// Names may hold what a format would take for a directive, and be long.
TEST_F(Log, TextsAreNoFormats)
{
    RecordingMonitor monitor;
    const TYPtr<IDriver> group(new CChannelGroup("100%s%n %d"));
    void* out = nullptr;
    ASSERT_EQ(0, (*group).queryInterface(IChannelGroup::IID(), &out).code());
    const TYPtr<IChannelGroup> timeslots(static_cast<IChannelGroup*>(out));
    EXPECT_EQ(0, (*timeslots).setTimeslots(error_, 0).code());
    EXPECT_EQ("<7> 100%s%n %d: Set Timeslots '00000000'\n", monitor.take());
    EXPECT_EQ(0, (*timeslots).setTimeslots(error_, 4294967295u).code());
    EXPECT_EQ(
        "<7> 100%s%n %d: Set Timeslots 'ffffffff'\n"
        "<7> 100%s%n %d:   Notify observers: onTimeslotsAdded(00000000->ffffffff: ffffffff)\n",
        monitor.take());
}

} // namespace
