#include "Judge.h"

#include <gtest/gtest.h>

namespace
{
using Method = Judge::Method;
using Operation = Judge::Operation;

/// Tells the judge stories about driver #0 "d" and listener #0 "l", which wants snapshots.
class JudgeTest : public ::testing::Test
{
protected:
    JudgeTest()
    {
        Judge::Driver driver;
        driver.name = "d";
        judge_.add(driver);
        listener(true);
    }

    int listener(bool veto, bool snapshot = true, Judge::Table const& attributes = {})
    {
        Judge::Registration l;
        l.name = "l";
        l.veto = veto;
        l.snapshot = snapshot;
        l.attributes = attributes;
        return judge_.add(l);
    }

    void begin(Operation operation, std::string const& key = "", std::string const& value = "")
    {
        Judge::Call call;
        call.operation = operation;
        call.driver = 0;
        call.registration = who_;
        call.name =
            operation == Operation::REGISTER || operation == Operation::UNREGISTER ? "l" : "d";
        call.key = key;
        call.value = value;
        judge_.begin(call);
    }
    /// The end of an operation that did what it should: the driver is there or not.
    void end(bool there = true, std::int32_t code = 0, int thrown = 0)
    {
        Judge::Look look;
        look.driver = there ? 0 : -1;
        look.registered = there;
        look.value = value_;
        judge_.end({code, thrown, ""}, look);
    }

    void tell(Method method, std::string const& key = "", std::string const& value = "",
              std::int32_t code = 0, int thrown = 0)
    {
        beginTell(method, key, value);
        judge_.endTell({code, thrown, ""});
    }
    void beginTell(Method method, std::string const& key = "", std::string const& value = "")
    {
        Judge::Look look;
        look.driver = 0;
        look.value = value;
        judge_.beginTell(who_, method, 0, key, value, look);
    }

    void met()
    {
        begin(Operation::ADD_DRIVER);
        tell(Method::ADDED);
        end();
    }

    /// The registry in quiet: the listener active or not, with these attachments.
    void quiet(bool active, Judge::Table const& attachments = {})
    {
        Judge::State state;
        state.overtaken = true;
        state.listeners.push_back({who_, {9, 9, 9, 9}});
        state.drivers.push_back({0, attachments, {}});
        if (active)
            state.drivers.back().active.push_back(who_);
        judge_.quiet(state);
    }

    /// All that was found, or "legal".
    std::string verdict() const
    {
        std::string text;
        for (std::string const& violation : judge_.violations())
            text += (text.empty() ? "" : "\n") + violation;
        return text.empty() ? "legal" : text;
    }

    Judge judge_;
    int who_ = 0;
    std::string value_; ///< what looks find
};

const std::string WHO = "listener #0 \"l\", driver #0 \"d\"";

TEST_F(JudgeTest, ComingAttachmentsGoing)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::SET, "k", "a");
    value_ = "a";
    end();
    quiet(true, {{"k", "a"}});
    begin(Operation::REMOVE_DRIVER);
    tell(Method::CLEARED, "k", "a");
    tell(Method::REMOVED);
    end();
    judge_.quiet(Judge::State());
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, SecondComing)
{
    met();
    begin(Operation::REGISTER);
    tell(Method::ADDED);
    EXPECT_EQ(WHO + ": a second coming", verdict());
}

TEST_F(JudgeTest, GoingWithoutComing)
{
    begin(Operation::REMOVE_DRIVER);
    tell(Method::REMOVED);
    EXPECT_EQ(WHO + ": a going without a coming", verdict());
}

TEST_F(JudgeTest, SecondGoing)
{
    met();
    begin(Operation::REMOVE_DRIVER);
    tell(Method::REMOVED);
    tell(Method::REMOVED);
    EXPECT_EQ(WHO + ": a going without a coming", verdict());
}

TEST_F(JudgeTest, RefusedComingHasNoGoing)
{
    begin(Operation::ADD_DRIVER);
    tell(Method::ADDED, "", "", -1);
    end(false, -1);
    EXPECT_EQ("legal", verdict());
    begin(Operation::REMOVE_DRIVER);
    tell(Method::REMOVED);
    EXPECT_EQ(WHO + ": a going without a coming", verdict());
}

TEST_F(JudgeTest, RefusalWithoutVetoDoesNotCount)
{
    who_ = listener(false);
    begin(Operation::ADD_DRIVER);
    tell(Method::ADDED, "", "", -1);
    end();
    begin(Operation::REMOVE_DRIVER);
    end(false);
    EXPECT_EQ("listener #1 \"l\", driver #0 \"d\": not told the going when the removal returned",
              verdict());
}

TEST_F(JudgeTest, RefusalOfAWithdrawnComingDoesNotCount)
{
    begin(Operation::ADD_DRIVER);
    beginTell(Method::ADDED);
    begin(Operation::REMOVE_DRIVER);
    tell(Method::REMOVED);
    end(false);
    judge_.endTell({-1, 0, ""});
    end(false, -1);
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, RemovalReturnsBeforeTheGoing)
{
    begin(Operation::ADD_DRIVER);
    beginTell(Method::ADDED);
    begin(Operation::REMOVE_DRIVER);
    end(false);
    EXPECT_EQ(WHO + ": not told the going when the removal returned", verdict());
}

TEST_F(JudgeTest, RefusedSnapshotIsFollowedByTheGoing)
{
    begin(Operation::ADD_DRIVER);
    tell(Method::ADDED);
    tell(Method::SET, "a", "1");
    tell(Method::SET, "k", "2", -1);
    tell(Method::CLEARED, "e", "");
    tell(Method::CLEARED, "a", "1");
    tell(Method::REMOVED);
    end(false, -1);
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, RefusedSnapshotWithoutTheGoing)
{
    begin(Operation::ADD_DRIVER);
    tell(Method::ADDED);
    tell(Method::SET, "k", "2", -1);
    end(false, -1);
    EXPECT_EQ(WHO + ": refused its snapshot and was not told the going", verdict());
}

TEST_F(JudgeTest, RefusedAttachmentIsNotCleared)
{
    begin(Operation::ADD_DRIVER);
    tell(Method::ADDED);
    tell(Method::SET, "k", "2", -1);
    tell(Method::CLEARED, "k", "2");
    EXPECT_EQ(WHO + ": told that \"k\"=\"2\" is gone, which it does not hold", verdict());
}

TEST_F(JudgeTest, JoinerThatRefusesItsSnapshotIsNotToldTheGoing)
{
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::ADDED);
    tell(Method::SET, "m", "1");
    tell(Method::SET, "k", "a", -1);
    tell(Method::CLEARED, "m", "1");
    end(true, -1);
    EXPECT_EQ("legal", verdict());
    // It may stay out although it matches, until it no longer does.
    quiet(false);
    EXPECT_EQ("legal", verdict());
    begin(Operation::REMOVE_DRIVER);
    tell(Method::REMOVED);
    EXPECT_EQ(WHO + ": a going without a coming", verdict());
}

TEST_F(JudgeTest, JoinerThatRefusedIsToldTheGoing)
{
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::ADDED);
    tell(Method::SET, "k", "a", -1);
    tell(Method::REMOVED);
    EXPECT_EQ(WHO + ": joined through a change, refused, and was told the going", verdict());
}

TEST_F(JudgeTest, RefusedValueLeavesTheKnown)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::SET, "k", "a", -1);
    end(true, -1);
    quiet(true, {{"k", ""}});
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, ClearOfAValueNeverHeard)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "");
    tell(Method::CLEARED, "k", "a");
    EXPECT_EQ(WHO + ": told that \"k\"=\"a\" is gone, which it does not hold", verdict());
}

TEST_F(JudgeTest, ClearOfAnotherValue)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::SET, "k", "a");
    tell(Method::CLEARED, "k", "b");
    EXPECT_EQ(WHO + ": told that \"k\"=\"b\" is gone, which it does not hold", verdict());
}

TEST_F(JudgeTest, WithoutSnapshotClearsOfValuesNeverHeardAreLegal)
{
    who_ = listener(false, false);
    begin(Operation::SET_ATTACHMENT, "k", "a");
    value_ = "a";
    end();
    met();
    begin(Operation::SET_ATTACHMENT, "k", "");
    tell(Method::CLEARED, "k", "a");
    value_ = "";
    end();
    quiet(true, {{"k", ""}});
    EXPECT_EQ("legal", verdict());
    begin(Operation::SET_ATTACHMENT, "m", "");
    tell(Method::CLEARED, "m", "never set");
    EXPECT_EQ("listener #1 \"l\", driver #0 \"d\": told that \"m\"=\"never set\" is gone, which "
              "it does not hold",
              verdict());
}

TEST_F(JudgeTest, SetOverAHeldValue)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "b");
    tell(Method::SET, "k", "a");
    tell(Method::SET, "k", "b");
    EXPECT_EQ(WHO + ": told \"k\"=\"b\" while it holds \"a\"", verdict());
}

TEST_F(JudgeTest, SetOfWhatIsNotStored)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "b");
    Judge::Look look;
    look.driver = 0;
    judge_.beginTell(0, Method::SET, 0, "k", "b", look);
    EXPECT_EQ(WHO + ": told \"k\"=\"b\", but it is \"\"", verdict());
}

TEST_F(JudgeTest, AttachmentWithoutComing)
{
    begin(Operation::SET_ATTACHMENT, "k", "b");
    tell(Method::SET, "k", "b");
    EXPECT_EQ(WHO + ": an attachment without a coming", verdict());
}

TEST_F(JudgeTest, ClearAfterTheGoing)
{
    met();
    begin(Operation::REMOVE_DRIVER);
    tell(Method::REMOVED);
    tell(Method::CLEARED, "k", "");
    EXPECT_EQ(WHO + ": a clear without a coming\n" + WHO +
                  ": told that \"k\"=\"\" is gone, which it does not hold",
              verdict());
}

TEST_F(JudgeTest, CallAfterTheRemovalReturned)
{
    met();
    begin(Operation::UNREGISTER);
    tell(Method::REMOVED);
    end(false);
    EXPECT_EQ("legal", verdict());
    begin(Operation::ADD_DRIVER);
    tell(Method::ADDED);
    EXPECT_EQ(WHO + ": called after its removal returned", verdict());
}

TEST_F(JudgeTest, RemovalOfTheListenerReturnsBeforeTheGoing)
{
    met();
    begin(Operation::UNREGISTER);
    end(false);
    EXPECT_EQ(WHO + ": not told the going when its removal returned", verdict());
}

TEST_F(JudgeTest, RefusalOfALeavingListenerDoesNotCount)
{
    met();
    begin(Operation::UNREGISTER);
    judge_.beginCallOut(true);
    judge_.endCallOut(0);
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::SET, "k", "a", -1);
    value_ = "a";
    end();
    tell(Method::CLEARED, "k", "a");
    tell(Method::REMOVED);
    end(false);
    EXPECT_EQ("legal", verdict());
}

// Found by registry_fuzz --nest --seed 20261125 --program 42436.
TEST_F(JudgeTest, LeavingListenerHasNotHeardTheValueThatItThrewAt)
{
    met();
    begin(Operation::UNREGISTER);
    judge_.beginCallOut(true);
    judge_.endCallOut(0);
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::SET, "k", "a", 0, 1);
    end(true, 0, 1);
    begin(Operation::SET_ATTACHMENT, "k", "b");
    tell(Method::SET, "k", "b");
    value_ = "b";
    end();
    EXPECT_EQ("legal", verdict());
    tell(Method::CLEARED, "k", "a");
    EXPECT_EQ(WHO + ": told that \"k\"=\"a\" is gone, which it does not hold", verdict());
}

TEST_F(JudgeTest, FailedRegistrationTellsEveryGoing)
{
    begin(Operation::REGISTER);
    tell(Method::ADDED);
    end(false, -1);
    EXPECT_EQ(WHO + ": the failed registration told no going", verdict());
}

TEST_F(JudgeTest, NewValueFromInsideTheLogLineOfARefusedSnapshot)
{
    begin(Operation::REGISTER);
    tell(Method::ADDED);
    tell(Method::SET, "k", "a", -1);
    judge_.beginCallOut(true);
    judge_.endCallOut(0);
    begin(Operation::SET_ATTACHMENT, "m", "b");
    tell(Method::SET, "m", "b");
    value_ = "b";
    end();
    tell(Method::CLEARED, "m", "b");
    EXPECT_EQ("legal", verdict());
    begin(Operation::SET_ATTACHMENT, "m", "c");
    tell(Method::SET, "m", "c");
    EXPECT_EQ(WHO + ": an attachment without a coming", verdict());
}

TEST_F(JudgeTest, SecondRefusalOfARefusedRegistrationMayCountOrNot)
{
    begin(Operation::REGISTER);
    tell(Method::ADDED);
    tell(Method::SET, "k", "a", -1);
    begin(Operation::SET_ATTACHMENT, "m", "b");
    tell(Method::SET, "m", "b", -1);
    end(true, -1);
    tell(Method::REMOVED);
    end(false, -1);
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, RemovalFromInsideTheRollBackOfAJoinersRefusal)
{
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::ADDED);
    tell(Method::SET, "m", "b", -1);
    begin(Operation::UNREGISTER);
    end(false);
    begin(Operation::REMOVE_DRIVER);
    end(false);
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, DriverThatThrowsIntoTheSnapshotOfAJoiner)
{
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::ADDED);
    judge_.beginCallOut();
    judge_.endCallOut(7);
    end(true, 0, 7);
    begin(Operation::UNREGISTER);
    end(false);
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, StoppedDelegate)
{
    met();
    judge_.stopped(0);
    begin(Operation::REMOVE_DRIVER);
    end(false);
    EXPECT_EQ("legal", verdict());
    begin(Operation::ADD_DRIVER);
    tell(Method::ADDED);
    EXPECT_NE("legal", verdict());
}

TEST_F(JudgeTest, ResultsAgainstALook)
{
    begin(Operation::ADD_DRIVER);
    end(false, 0);
    begin(Operation::ADD_DRIVER);
    end(true, -1);
    begin(Operation::SET_ATTACHMENT, "k", "a");
    end(false, 0);
    begin(Operation::SET_ATTACHMENT, "k", "a");
    value_ = "b";
    end(true, 0);
    begin(Operation::SET_ATTACHMENT, "k", "a");
    end(true, -1);
    begin(Operation::REGISTER);
    end(false, 0);
    begin(Operation::REGISTER);
    end(true, -1);
    EXPECT_EQ("addDriver says success for driver #0, which is not there\n"
              "addDriver says failure for driver #0, which is there\n"
              "setDriverAttachment succeeds for \"d\", which is not there\n"
              "setDriverAttachment = 0 left \"b\" instead of \"a\"\n"
              "setDriverAttachment = -1 left \"b\" instead of \"\"\n"
              "listener #0 \"l\": registered, but not in the list\n"
              "listener #0 \"l\": not registered, but in the list",
              verdict());
}

TEST_F(JudgeTest, AReplacedValueMayStand)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "a");
    beginTell(Method::SET, "k", "a");
    begin(Operation::SET_ATTACHMENT, "k", "b");
    tell(Method::CLEARED, "k", "a");
    tell(Method::SET, "k", "b");
    value_ = "b";
    end();
    judge_.endTell({-1, 0, ""});
    end();
    quiet(true, {{"k", "b"}});
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, TheFirstExceptionComesOut)
{
    met();
    begin(Operation::REMOVE_DRIVER);
    tell(Method::REMOVED, "", "", 0, 7);
    EXPECT_TRUE(judge_.isHandlingException());
    end(false, 0, 7);
    EXPECT_EQ("legal", verdict());
    begin(Operation::OTHER);
    end(true, 0, 7);
    begin(Operation::OTHER);
    judge_.beginCallOut();
    judge_.endCallOut(8);
    end();
    EXPECT_EQ("an operation threw #7, its first call-out that threw #0\n"
              "an operation threw #0, its first call-out that threw #8",
              verdict());
}

TEST_F(JudgeTest, ThrowingRefusesWithoutVetoToo)
{
    who_ = listener(false);
    begin(Operation::ADD_DRIVER);
    tell(Method::ADDED, "", "", 0, 3);
    end(false, 0, 3);
    judge_.quiet(Judge::State());
    EXPECT_EQ("legal", verdict());
}

TEST_F(JudgeTest, QuietActivity)
{
    quiet(false);
    EXPECT_EQ(WHO + ": matches but is not active", verdict());
}

TEST_F(JudgeTest, QuietActivityWithoutComing)
{
    quiet(true);
    EXPECT_EQ(WHO + ": active without a coming", verdict());
}

TEST_F(JudgeTest, QuietActivityWithoutMatch)
{
    who_ = listener(true, true, {{"k", "a"}});
    met();
    quiet(true, {{"k", "b"}});
    EXPECT_EQ("listener #1 \"l\", driver #0 \"d\": active without matching", verdict());
}

TEST_F(JudgeTest, QuietInactivityWithoutGoing)
{
    who_ = listener(true, true, {{"k", "a"}});
    met();
    quiet(false, {{"k", "b"}});
    EXPECT_EQ("listener #1 \"l\", driver #0 \"d\": inactive without a going", verdict());
}

TEST_F(JudgeTest, QuietLastWord)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::SET, "k", "a");
    value_ = "a";
    end();
    quiet(true, {{"k", "b"}, {"m", "c"}});
    EXPECT_EQ(WHO + ": last heard \"k\"=\"a\", but it is \"b\"\n" + WHO +
                  ": never heard of \"m\"=\"c\"",
              verdict());
}

TEST_F(JudgeTest, QuietLastWordOfAClear)
{
    met();
    begin(Operation::SET_ATTACHMENT, "k", "a");
    tell(Method::SET, "k", "a");
    tell(Method::CLEARED, "k", "a");
    value_ = "a";
    end();
    quiet(true, {{"k", "a"}});
    EXPECT_EQ(WHO + ": last heard \"k\"=\"\", but it is \"a\"", verdict());
}

TEST_F(JudgeTest, QuietKnowsAGoneDriver)
{
    met();
    judge_.quiet(Judge::State());
    EXPECT_EQ(WHO + ": knows a driver that is gone", verdict());
}

TEST_F(JudgeTest, QuietCounters)
{
    met();
    Judge::State state;
    state.listeners.push_back({0, {2, 0, 0, 0}});
    state.drivers.push_back({0, {}, {0}});
    judge_.quiet(state);
    EXPECT_EQ("listener #0 \"l\": wrong counters", verdict());
}

TEST_F(JudgeTest, QuietOrder)
{
    Judge::Registration late;
    late.name = "late";
    late.prefix = "x";
    late.priority = 5;
    const int number = judge_.add(late);
    Judge::State state;
    state.overtaken = true;
    state.listeners.push_back({number, {0, 0, 0, 0}});
    state.listeners.push_back({0, {0, 0, 0, 0}});
    judge_.quiet(state);
    EXPECT_EQ("listener #0 \"l\": stands behind a higher priority", verdict());
}
} // namespace
