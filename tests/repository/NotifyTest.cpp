#include <support/RecordFixture.h>

namespace
{

using Listener = CDriverRepository::Listener;

// The four notifications, each asked for directly.
class Notify : public RecordFixture
{
protected:
    static std::string counts(Listener const* l)
    {
        std::string all;
        for (auto kind : {Listener::DRIVER_ADDED, Listener::DRIVER_REMOVED,
                          Listener::ATTACHMENT_SET, Listener::ATTACHMENT_CLEARED})
            all += std::to_string(l->count(kind)) + " ";
        return all;
    }
    /// All four, in order; the codes of the two that can be refused.
    std::string tellAll(Listener* l)
    {
        const XCode added = record().notifyOnDriverAdded(error_, l);
        const XCode set = record().notifyOnDriverAttachmentSet(error_, l, "slot", "1");
        record().notifyOnDriverAttachmentCleared(l, "slot", "1");
        record().notifyOnDriverRemoved(l);
        return std::to_string(added.code()) + " " + std::to_string(set.code());
    }
};

TEST_F(Notify, TellsWhoeverItIsGiven)
{
    // Neither criteria nor entries matter here.
    Listener* const l = make("a", 1, Terms().prefix("fxs").attribute("k", "v"));
    EXPECT_EQ("0 0", tellAll(l));
    EXPECT_EQ("a: added e1t1 1\na: set e1t1 1 slot=1\na: cleared e1t1 1 slot=1\n"
              "a: removed e1t1 1\n",
              heard());
    EXPECT_EQ("1 1 1 1 ", counts(l));
    EXPECT_EQ(0, record().getListenerCount(l));
}

// Every onDriverAdded is logged "with right of veto": a fixed text, whatever the listener has.
TEST_F(Notify, WritesALineEach)
{
    const std::string lines = "<7> DrvRepo:   e1t1 1: Notify listener 'a' with right of veto: "
                              "onDriverAdded()\n"
                              "<7> DrvRepo:   e1t1 1: Notify listener 'a': "
                              "onDriverAttachmentSet(slot=1)\n"
                              "<7> DrvRepo:   e1t1 1: Notify listener 'a': "
                              "onDriverAttachmentCleared(slot=1)\n"
                              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverRemoved()\n";
    tellAll(make("a", 1));
    EXPECT_EQ(lines, this->lines());
    tellAll(make("a", 1, Terms().veto()));
    EXPECT_EQ(lines, this->lines());
}

TEST_F(Notify, WithoutADelegateDoesNothing)
{
    Listener none("a", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "", {}, 1, true, true, nullptr);
    error_ = "left over";
    EXPECT_EQ("0 0", tellAll(&none));
    EXPECT_EQ("left over", error());
    EXPECT_EQ("", lines());
    EXPECT_EQ("0 0 0 0 ", counts(&none));
}

TEST_F(Notify, OfAStoppedDelegateCountsAndLogsOnly)
{
    observer("a").refuse("", "no");
    Listener* const l = make("a", 1, Terms().veto());
    l->delegate()->stopNotifications();
    EXPECT_EQ("0 0", tellAll(l));
    EXPECT_EQ("", heard());
    EXPECT_EQ("1 1 1 1 ", counts(l));
    EXPECT_EQ("<7> DrvRepo:   e1t1 1: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentSet(slot=1)\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentCleared(slot=1)\n"
              "<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverRemoved()\n",
              lines());
}

TEST_F(Notify, RefusalOfAVetoHolderIsReturnedAndLogged)
{
    observer("a").refuse("added", "no driver", 7);
    observer("a").refuse("set", "no value", -9);
    Listener* const l = make("a", 1, Terms().veto());
    EXPECT_EQ(7, record().notifyOnDriverAdded(error_, l).code());
    EXPECT_EQ("no driver", error());
    EXPECT_EQ("<7> DrvRepo:   e1t1 1: Notify listener 'a' with right of veto: onDriverAdded()\n"
              "<3> DrvRepo:   e1t1 1: NOTIFY LISTENER 'a' FAILED: no driver\n",
              lines());
    EXPECT_EQ(-9, record().notifyOnDriverAttachmentSet(error_, l, "k", "v").code());
    EXPECT_EQ("no value", error());
    EXPECT_EQ("<7> DrvRepo:   e1t1 1: Notify listener 'a': onDriverAttachmentSet(k=v)\n"
              "<3> DrvRepo:   e1t1 1: NOTIFY LISTENER 'a' FAILED: no value\n",
              lines());
}

TEST_F(Notify, CountersCountAttempts)
{
    observer("a").refuse("", "no");
    Listener* const l = make("a", 1, Terms().veto());
    record().notifyOnDriverAdded(error_, l);
    record().notifyOnDriverAttachmentSet(error_, l, "k", "v");
    record().notifyOnDriverRemoved(l);
    EXPECT_EQ("1 1 1 0 ", counts(l)) << "refused ones as well";
    record().notifyOnDriverAdded(error_, l);
    record().notifyOnDriverAttachmentCleared(l, "k", "v");
    EXPECT_EQ("2 1 1 1 ", counts(l));
}

TEST_F(Notify, CounterHasRisenWhenTheObserverIsCalled)
{
    Listener* const l = make("a", 1);
    std::string seen;
    observer("a").then = [&](std::string const&) { seen += counts(l) + "| "; };
    tellAll(l);
    EXPECT_EQ("1 0 0 0 | 1 0 1 0 | 1 0 1 1 | 1 1 1 1 | ", seen);
}

TEST_F(Notify, RefusalWithoutVetoIsDiscardedUnlogged)
{
    observer("a").refuse("", "not me", 5);
    Listener* const l = make("a", 1);
    EXPECT_EQ("0 0", tellAll(l));
    EXPECT_EQ("not me", error()) << "what the observer wrote is left alone";
    EXPECT_EQ(std::string::npos, lines().find("<3>"));
    EXPECT_EQ("1 1 1 1 ", counts(l));
}

TEST_F(Notify, ErrorReachesTheObserverUntouched)
{
    error_ = "before";
    record().notifyOnDriverAdded(error_, make("a", 1, Terms().veto()));
    EXPECT_EQ("before", error());
    observer("a").refuse("added", "");
    EXPECT_EQ(-1, record().notifyOnDriverAdded(error_, make("a", 1, Terms().veto())).code());
    EXPECT_EQ("before", error());
    EXPECT_NE(std::string::npos, lines().find("<3> DrvRepo:   e1t1 1: NOTIFY LISTENER 'a' FAILED: "
                                              "before\n"));
}

TEST_F(Notify, AcceptanceMayLeaveAText)
{
    observer("a").remark("added", "fine");
    EXPECT_EQ(0, record().notifyOnDriverAdded(error_, make("a", 1, Terms().veto())).code());
    EXPECT_EQ("fine", error());
    EXPECT_EQ(std::string::npos, lines().find("<3>"));
}

TEST_F(Notify, DebugLinesNeedAThresholdOfZero)
{
    const RecordingMonitor quiet(-1);
    observer("a").refuse("added", "no");
    tellAll(make("a", 1, Terms().veto()));
    ASSERT_EQ(1u, quiet.lines().size());
    EXPECT_EQ(3, quiet.lines()[0].level);
    EXPECT_EQ("DrvRepo:   e1t1 1: NOTIFY LISTENER 'a' FAILED: no", quiet.lines()[0].text);
}

TEST_F(Notify, WithoutAMonitorIsSilent)
{
    RTD::Monitor const* const monitor = std::exchange(MON_DRV, nullptr);
    observer("a").refuse("added", "no");
    EXPECT_EQ("-1 0", tellAll(make("a", 1, Terms().veto())));
    MON_DRV = monitor;
    EXPECT_EQ("", lines());
    EXPECT_EQ("a: refused e1t1 1\na: set e1t1 1 slot=1\na: cleared e1t1 1 slot=1\n"
              "a: removed e1t1 1\n",
              heard());
}

/// Writes the log lines between what the observers hear.
class StoryMonitor : public RTD::Monitor
{
public:
    explicit StoryMonitor(EventLog& log) : log_(log), before_(std::exchange(MON_DRV, this)) {}
    ~StoryMonitor() override { MON_DRV = before_; }

protected:
    void write(int level, char const*, std::va_list) const override UTILITY_PRINTF(3, 0)
    {
        log_.add("log", std::to_string(level));
    }

private:
    EventLog& log_;
    RTD::Monitor const* before_;
};

TEST_F(Notify, DebugLineComesBeforeTheCallAndTheFailureAfterIt)
{
    const StoryMonitor story(log_);
    observer("a").refuse("", "no");
    tellAll(make("a", 1, Terms().veto()));
    EXPECT_EQ("log: 7\na: refused e1t1 1\nlog: 3\nlog: 7\na: refused e1t1 1 slot=1\nlog: 3\n"
              "log: 7\na: cleared e1t1 1 slot=1\nlog: 7\na: removed e1t1 1\n",
              heard());
}

TEST_F(Notify, TextsGoIntoTheLinesAsTheyAre)
{
    record().notifyOnDriverAttachmentSet(error_, make("100%s", 1), "%d", "%n%s");
    record().notifyOnDriverAttachmentSet(error_, make("", 1), "", "");
    EXPECT_EQ("<7> DrvRepo:   e1t1 1: Notify listener '100%s': onDriverAttachmentSet(%d=%n%s)\n"
              "<7> DrvRepo:   e1t1 1: Notify listener '': onDriverAttachmentSet(=)\n",
              lines());
}

TEST_F(Notify, ErrorMayBeTheKeyOrTheValue)
{
    Listener* const l = make("a", 1, Terms().veto());
    observer("a").refuse("set", "no");
    String text("slot");
    EXPECT_EQ(-1, record().notifyOnDriverAttachmentSet(text, l, text, text).code());
    EXPECT_EQ("no", text);
    EXPECT_EQ("a: refused e1t1 1 slot=slot\n", heard());
}

} // namespace
