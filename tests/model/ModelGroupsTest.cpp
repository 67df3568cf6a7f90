#include "ModelFixture.h"

namespace
{
using model::ChannelGroup;

class ModelGroups : public ModelFixture
{
protected:
    model::ScriptedGroupObserver& listener(std::string const& label, Policy const& policy = {})
    {
        observers_.push_back(
            std::make_unique<model::ScriptedGroupObserver>(process_, label, policy));
        return *observers_.back();
    }

    model::Code join(model::GroupObserver& observer, std::uint32_t priority, bool veto = true,
                     bool notifyCurrent = false)
    {
        return group_.addObserver(error_, &observer, priority, veto, notifyCurrent);
    }

    ChannelGroup group_{process_, "G", "line 1"};

private:
    std::vector<std::unique_ptr<model::ScriptedGroupObserver>> observers_;
};

TEST_F(ModelGroups, UnchangedMaskOnlyLogs)
{
    join(listener("a"), 1);
    process_.monitorPresent = true;
    EXPECT_EQ(0, group_.setTimeslots(error_, 0));
    EXPECT_EQ("log 7 \"line 1: Set Timeslots '00000000'\"\n", heard());
}

TEST_F(ModelGroups, LowNibbleToHighNibble)
{
    auto& a = listener("a");
    auto& b = listener("b");
    auto& c = listener("c");
    join(a, 5);
    join(b, 1, false);
    join(c, 5);
    group_.setTimeslots(error_, 0x0f);
    EXPECT_EQ("b.onTimeslotsAdded G 00000000->0000000f: 0000000f\n"
              "c.onTimeslotsAdded with veto G 00000000->0000000f: 0000000f\n"
              "a.onTimeslotsAdded with veto G 00000000->0000000f: 0000000f\n",
              heard());
    process_.monitorPresent = true;
    EXPECT_EQ(0, group_.setTimeslots(error_, 0xf0));
    EXPECT_EQ(
        "log 7 \"line 1: Set Timeslots '000000f0'\"\n"
        "log 7 \"line 1:   Notify observers: onTimeslotsAdded(0000000f->000000ff: 000000f0)\"\n"
        "b.onTimeslotsAdded G 0000000f->000000ff: 000000f0\n"
        "c.onTimeslotsAdded with veto G 0000000f->000000ff: 000000f0\n"
        "a.onTimeslotsAdded with veto G 0000000f->000000ff: 000000f0\n"
        "log 7 \"line 1:   Notify observers: onTimeslotsRemoved(000000ff->000000f0: 0000000f)\"\n"
        "a.onTimeslotsRemoved G 000000ff->000000f0: 0000000f\n"
        "c.onTimeslotsRemoved G 000000ff->000000f0: 0000000f\n"
        "b.onTimeslotsRemoved G 000000ff->000000f0: 0000000f\n",
        heard());
}

TEST_F(ModelGroups, RefusedAdditionStillRemoves)
{
    join(listener("first"), 1);
    join(listener("second", refuseAll("no")), 2);
    join(listener("third"), 3);
    auto& opener = listener("opener");
    EXPECT_EQ(0, join(opener, 0));
    heard();
    EXPECT_EQ(-1, group_.setTimeslots(error_, 0x0f));
    EXPECT_EQ(0u, group_.getTimeslots());
    EXPECT_EQ("opener.onTimeslotsAdded with veto G 00000000->0000000f: 0000000f\n"
              "first.onTimeslotsAdded with veto G 00000000->0000000f: 0000000f\n"
              "second.onTimeslotsAdded with veto G 00000000->0000000f: 0000000f\n"
              "  answers -1 \"no\"\n"
              "first.onTimeslotsRemoved G 0000000f->00000000: 0000000f\n"
              "opener.onTimeslotsRemoved G 0000000f->00000000: 0000000f\n",
              heard());
    EXPECT_EQ("no", error_);
}

TEST_F(ModelGroups, RefusalOfTheHighNibbleEndsAtZero)
{
    Policy policy = refuseAll("no");
    policy.refuses = Policy::Refuses::TIMESLOTS;
    policy.mask = 0xf0;
    join(listener("first"), 1);
    join(listener("second", policy), 2);
    group_.setTimeslots(error_, 0x0f);
    heard();
    EXPECT_EQ(-1, group_.setTimeslots(error_, 0xf0));
    EXPECT_EQ("first.onTimeslotsAdded with veto G 0000000f->000000ff: 000000f0\n"
              "second.onTimeslotsAdded with veto G 0000000f->000000ff: 000000f0\n"
              "  answers -1 \"no\"\n"
              "first.onTimeslotsRemoved G 000000ff->0000000f: 000000f0\n"
              "second.onTimeslotsRemoved G 0000000f->00000000: 0000000f\n"
              "first.onTimeslotsRemoved G 0000000f->00000000: 0000000f\n",
              heard());
    EXPECT_EQ(0u, group_.getTimeslots());
}

TEST_F(ModelGroups, NotifyCurrentBothWays)
{
    auto& a = listener("a", refuseAll("no"));
    EXPECT_EQ(0, join(a, 1, true, true));
    EXPECT_EQ("", heard());
    group_.removeObserver(&a, true);
    group_.setTimeslots(error_, 3);
    heard();
    process_.monitorPresent = true;
    EXPECT_EQ(-1, join(a, 1, true, true));
    EXPECT_EQ("log 7 \"line 1: Add observer '<pointer>'\"\n"
              "log 7 \"line 1:   Notify observer '<pointer>': onTimeslotsAdded(00000000->00000003: "
              "00000003)\"\n"
              "a.onTimeslotsAdded with veto G 00000000->00000003: 00000003\n  answers -1 \"no\"\n",
              heard());
    group_.removeObserver(&a, true);
    EXPECT_EQ(
        "log 7 \"line 1: Remove observer '<pointer>'\"\n"
        "log 7 \"line 1:   Notify observer '<pointer>': onTimeslotsRemoved(00000003->00000000: "
        "00000003)\"\n"
        "a.onTimeslotsRemoved G 00000003->00000000: 00000003\n",
        heard());
    EXPECT_EQ(-1, group_.addObserver(error_, nullptr, 0, true, true));
    EXPECT_EQ("NO CHANNEL-GROUP OBSERVER SPECIFIED", error_);
    EXPECT_EQ("", heard());
}

TEST_F(ModelGroups, UndoFindsTheLaterEntryOfAnObserverRegisteredTwice)
{
    Policy second = refuseAll("no");
    second.refuses = Policy::Refuses::NTH_CALL;
    second.nth = 2;
    auto& twice = listener("twice", second);
    join(twice, 1);
    join(listener("between"), 2);
    join(twice, 3);
    EXPECT_EQ(-1, group_.setTimeslots(error_, 1));
    EXPECT_EQ("twice.onTimeslotsAdded with veto G 00000000->00000001: 00000001\n"
              "between.onTimeslotsAdded with veto G 00000000->00000001: 00000001\n"
              "twice.onTimeslotsAdded with veto G 00000000->00000001: 00000001\n"
              "  answers -1 \"no\"\n"
              "between.onTimeslotsRemoved G 00000001->00000000: 00000001\n"
              "twice.onTimeslotsRemoved G 00000001->00000000: 00000001\n",
              heard());
}

TEST_F(ModelGroups, Description)
{
    group_.setTimeslots(error_, 0x10002);
    std::vector<model::InfoRow> list;
    group_.getInfo(list, {9, 2, 9, 3}, ">");
    EXPECT_EQ("2.3 >Configuration=\n3.4 Timeslot(s)=1;16\n", text(list));
    list.clear();
    group_.getInfo(list, {2, 2, 9, 0}, ">");
    EXPECT_EQ("2.0 >Configuration=\n", text(list));
    list.clear();
    group_.getInfo(list, {1, 2, 9, 0}, ">");
    EXPECT_EQ("", text(list));
}

TEST_F(ModelGroups, AsADriver)
{
    EXPECT_EQ(0, add(group_));
    EXPECT_EQ("", heard(true));
    EXPECT_EQ(nullptr, group_.repository());
    EXPECT_TRUE(hasInterface(group_, model::wellKnown().channelGroup));
    EXPECT_EQ("0.0 Driver Repository=\n1.0 Drivers=\n2.0 line 1=(DID_ChannelGroup)\n"
              "3.1 Configuration=\n4.2 Timeslot(s)=\n1.0 Listeners=\n",
              rows({9, 0, 9, 0}));
}

struct TimeslotCase
{
    char const* text;
    std::uint32_t mask;
    char const* refusal;
    char const* printed;
};

const TimeslotCase TIMESLOTS[] = {
    {"1-15;17-31", 0xfffefffe, nullptr, "1-15;17-31"},
    {"0", 1, nullptr, "0"},
    {"1,2", 6, nullptr, "1-2"},
    {"3,5 7", 0xa8, nullptr, "3;5;7"},
    {"16", 0x10000, nullptr, "16"},
    {"0-31", 0xffffffff, nullptr, "0-31"},
    {"", 0, nullptr, ""},
    {"5,5,6", 0x60, nullptr, "5-6"},
    {" ;, 1", 2, nullptr, "1"},
    {"1-2-3", 6, nullptr, "1-2"},
    {"31-1", 0, "Start timeslot must be lower than end timeslot", nullptr},
    {"4-4", 0, "Start timeslot must be lower than end timeslot", nullptr},
    {"32", 0, "Timeslot out of range", nullptr},
    {"1-32", 0, "Timeslot out of range", nullptr},
    {"40-2", 0, "Timeslot out of range", nullptr},
    {"2-", 0, "Timeslot out of range", nullptr},
    {"-7", 0, "Timeslot out of range", nullptr},
    {"abc", 0, "Timeslot out of range", nullptr},
    {"1;2;40", 0, "Timeslot out of range", nullptr},
    {"4294967296", 0, "Timeslot out of range", nullptr},
};

TEST(ModelTimeslots, Text)
{
    for (TimeslotCase const& row : TIMESLOTS) {
        SCOPED_TRACE(row.text);
        std::string message = "untouched";
        std::uint32_t mask = 0xabcd;
        const model::Code rc = model::timeslotsFromText(message, row.text, mask);
        EXPECT_EQ(row.refusal == nullptr ? 0 : -1, rc);
        EXPECT_EQ(row.refusal == nullptr ? "untouched" : row.refusal, message);
        EXPECT_EQ(row.refusal == nullptr ? row.mask : 0xabcd, mask);
        if (row.refusal == nullptr) {
            EXPECT_EQ(row.printed, model::timeslotsToText(mask));
        }
    }
}
} // namespace
