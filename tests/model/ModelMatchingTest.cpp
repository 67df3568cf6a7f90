#include "ModelFixture.h"

namespace
{
using model::Driver;
using model::DriverRecord;
using model::Identifier;
using model::Listener;

const Identifier E1 = {{{1, 2, 3, 4}}, "DID_E1"};
const Identifier E1_TWIN = {{{1, 2, 3, 4}}, "DID_E1_TWIN"};
const Identifier BRI = {{{1, 2, 3, 5}}, "DID_BRI"};
const Identifier NOBODY = {{{0, 0, 0, 0}}, "nobody"};
const Identifier DIAL = {{{9, 9, 9, 9}}, "IDial"};

class ModelMatching : public ModelFixture
{
protected:
    bool talks(Listener const& l, Driver& driver)
    {
        DriverRecord record(process_, &repository_, &driver);
        const bool answer = record.talksTo(l);
        record.end();
        return answer;
    }
};

TEST_F(ModelMatching, EmptyCriteriaSelectEverything)
{
    EXPECT_TRUE(talks(wants("l"), make("")));
    EXPECT_TRUE(talks(wants("l"), make("x", E1)));
    Listener l = wants("l");
    l.classId = NOBODY;
    l.interfaceId = NOBODY;
    EXPECT_TRUE(talks(l, make("x", E1)));
}

TEST_F(ModelMatching, PrefixIsPlainAndCaseSensitive)
{
    Listener l = wants("l");
    l.prefix = "e1";
    EXPECT_TRUE(talks(l, make("e1t1 0")));
    EXPECT_TRUE(talks(l, make("e1")));
    EXPECT_FALSE(talks(l, make("xe1")));
    EXPECT_FALSE(talks(l, make("E1t1")));
    EXPECT_FALSE(talks(l, make("e")));
}

TEST_F(ModelMatching, TypesAreEqualByTheirBytes)
{
    Listener l = wants("l");
    l.classId = E1_TWIN;
    EXPECT_TRUE(talks(l, make("x", E1)));
    EXPECT_FALSE(talks(l, make("x", BRI)));
}

TEST_F(ModelMatching, InterfaceIsAskedOfTheDriver)
{
    Listener l = wants("l");
    l.interfaceId = DIAL;
    Driver& driver = make("x");
    EXPECT_FALSE(talks(l, driver));
    driver.interfaces.push_back(DIAL);
    EXPECT_TRUE(talks(l, driver));
    EXPECT_EQ(1, driver.refs());
}

TEST_F(ModelMatching, AttributesArePrefixesOfTheStoredValue)
{
    Listener l = wants("l");
    l.attributes.put("k", "ab");
    l.attributes.put("absent", "");
    Driver& driver = make("x");
    DriverRecord record(process_, &repository_, &driver);
    EXPECT_FALSE(record.talksTo(l));
    record.setAttachment(error_, "k", "a");
    EXPECT_FALSE(record.talksTo(l));
    EXPECT_TRUE(record.talksTo(l, "k", "abc"));
    record.setAttachment(error_, "k", "abc");
    EXPECT_TRUE(record.talksTo(l));
    EXPECT_FALSE(record.talksTo(l, "k", ""));
    EXPECT_TRUE(record.talksTo(l, "other", ""));
    record.setAttachment(error_, "k", "");
    EXPECT_FALSE(record.talksTo(l));
    record.end();
}

TEST_F(ModelMatching, ChangeOfAnAttachmentDoesNotAskForInterfaces)
{
    Listener l = wants("l");
    l.interfaceId = DIAL;
    DriverRecord record(process_, &repository_, &make("x"));
    EXPECT_FALSE(record.talksTo(l));
    EXPECT_TRUE(record.talksTo(l, "k", "v"));
    record.end();
}

/// A record used by itself, with listeners nobody else knows.
class ModelEntries : public ModelFixture
{
protected:
    std::shared_ptr<Listener> listener(Listener const& fields, Policy const& policy = {})
    {
        Listener l = fields;
        l.delegate = std::make_shared<model::Delegate>();
        l.delegate->observer = &observer(l.name, policy);
        return model::makeListener(l);
    }

    DriverRecord record_{process_, &repository_, &make("d")};
};

TEST_F(ModelEntries, CountsPerListener)
{
    const auto l = listener(wants("l"));
    EXPECT_EQ(-1, record_.removeListenerOnce(l.get()));
    EXPECT_EQ(1, record_.addListenerOnce(l, true));
    EXPECT_EQ(2, record_.addListenerOnce(l, false));
    EXPECT_TRUE(record_.isActive(l.get()));
    EXPECT_EQ(1, record_.removeListenerOnce(l.get()));
    EXPECT_EQ(0, record_.removeListenerOnce(l.get()));
    EXPECT_FALSE(record_.isActive(l.get()));
    EXPECT_EQ(0, record_.removeListenerOnce(l.get()));
    EXPECT_EQ(1u, record_.listeners().size());
}

TEST_F(ModelEntries, EntriesAtZeroAreSteppedOver)
{
    const auto gone = listener(wants("gone", 5));
    record_.addListenerOnce(gone, true);
    record_.removeListenerOnce(gone.get());
    record_.addListenerOnce(listener(wants("three", 3)), true);
    record_.addListenerOnce(listener(wants("another three", 3)), true);
    std::string order;
    for (model::Entry const& entry : record_.listeners())
        order += entry.listener->name + ",";
    EXPECT_EQ("gone,another three,three,", order);
}

TEST_F(ModelEntries, NullListener)
{
    EXPECT_EQ(-1, record_.addListener(error_, nullptr));
    EXPECT_EQ("No listener specified", error_);
    record_.removeListener(nullptr);
    EXPECT_EQ("", heard());
}

TEST_F(ModelEntries, NoMatchIsCountedButInactive)
{
    Listener fields = wants("l");
    fields.prefix = "x";
    const auto l = listener(fields);
    EXPECT_EQ(0, record_.addListener(error_, l));
    EXPECT_EQ("", error_);
    EXPECT_FALSE(record_.isActive(l.get()));
    EXPECT_EQ(1, record_.getListenerCount(l.get()));
    EXPECT_EQ("", heard());
}

TEST_F(ModelEntries, TwiceAddedIsToldOnceAndLeavesWithTheSecondRemoval)
{
    const auto l = listener(wants("l"));
    record_.setAttachment(error_, "a", "1");
    record_.addListener(error_, l);
    record_.addListener(error_, l);
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"a\"=\"1\"\n", heard());
    record_.removeListener(l.get());
    EXPECT_EQ("", heard());
    record_.removeListener(l.get());
    EXPECT_EQ("l.onDriverAttachmentCleared d \"a\"=\"1\"\nl.onDriverRemoved d\n", heard());
}

TEST_F(ModelEntries, SnapshotsMirrorEachOtherAndSkipWhatTheMatchImplies)
{
    Listener fields = wants("l");
    fields.attributes.put("b", "2");
    fields.attributes.put("c", "");
    record_.setAttachment(error_, "a", "1");
    record_.setAttachment(error_, "b", "22");
    record_.setAttachment(error_, "e", "x");
    record_.setAttachment(error_, "e", "");
    record_.setAttachment(error_, "c", "3");
    const auto l = listener(fields);
    record_.addListener(error_, l);
    record_.removeListener(l.get());
    EXPECT_EQ("l.onDriverAdded d\n"
              "l.onDriverAttachmentSet d \"a\"=\"1\"\nl.onDriverAttachmentSet d \"c\"=\"3\"\n"
              "l.onDriverAttachmentCleared d \"c\"=\"3\"\n"
              "l.onDriverAttachmentCleared d \"a\"=\"1\"\nl.onDriverRemoved d\n",
              heard());
}

TEST_F(ModelEntries, WithoutSnapshotFlagOnlyComingAndGoing)
{
    Listener fields = wants("l");
    fields.snapshot = false;
    const auto l = listener(fields);
    record_.setAttachment(error_, "a", "1");
    record_.addListener(error_, l);
    record_.removeListener(l.get());
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverRemoved d\n", heard());
}

TEST_F(ModelEntries, RefusedSnapshotTellsTheClearingOfEmptyOnesAndTheRemoval)
{
    record_.setAttachment(error_, "a", "1");
    record_.setAttachment(error_, "e", "x");
    record_.setAttachment(error_, "e", "");
    record_.setAttachment(error_, "z", "9");
    const auto l = listener(wants("l"), refuseSet("z", "9", "no z"));
    EXPECT_EQ(-1, record_.addListener(error_, l));
    EXPECT_EQ("no z", error_);
    EXPECT_EQ("l.onDriverAdded d\nl.onDriverAttachmentSet d \"a\"=\"1\"\n"
              "l.onDriverAttachmentSet d \"z\"=\"9\"\n  answers -1 \"no z\"\n"
              "l.onDriverAttachmentCleared d \"e\"=\"\"\n"
              "l.onDriverAttachmentCleared d \"a\"=\"1\"\nl.onDriverRemoved d\n",
              heard());
    EXPECT_EQ(0, record_.getListenerCount(l.get()));
}

TEST_F(ModelEntries, RefusedComingIsNotFollowedByAGoing)
{
    const auto l = listener(wants("l"), refuseAll("no"));
    EXPECT_EQ(-1, record_.addListener(error_, l));
    EXPECT_EQ("l.onDriverAdded d given \"junk\"\n  answers -1 \"no\"\n", heard());
    EXPECT_EQ(0, record_.getListenerCount(l.get()));
}

TEST_F(ModelEntries, StoppedDelegateCountsAndAccepts)
{
    const auto l = listener(wants("l"), refuseAll("no"));
    l->delegate->stopNotifications();
    EXPECT_EQ(0, record_.addListener(error_, l));
    EXPECT_EQ("", heard());
    EXPECT_EQ(1u, l->counters.added);
}

TEST_F(ModelEntries, NullDelegateIsNeitherCountedNorLogged)
{
    process_.monitorPresent = true;
    const auto l = model::makeListener(wants("l"));
    EXPECT_EQ(0, record_.addListener(error_, l));
    record_.removeListener(l.get());
    EXPECT_EQ("", heard());
    EXPECT_EQ(0u, l->counters.added + l->counters.removed);
}

TEST_F(ModelEntries, CountersCountAttempts)
{
    const auto l = listener(wants("l"), refuseAll("no"));
    record_.notifyOnDriverAdded(error_, *l);
    record_.notifyOnDriverAttachmentSet(error_, *l, "k", "v");
    record_.notifyOnDriverRemoved(*l);
    EXPECT_EQ(1u, l->counters.added);
    EXPECT_EQ(1u, l->counters.removed);
    EXPECT_EQ(1u, l->counters.set);
    EXPECT_EQ(0u, l->counters.cleared);
}

TEST_F(ModelEntries, LogLinesOfTheFour)
{
    process_.monitorPresent = true;
    const auto l = listener(wants("l"));
    record_.notifyOnDriverAttachmentSet(error_, *l, "k", "v");
    record_.notifyOnDriverAttachmentCleared(*l, "k", "v");
    EXPECT_EQ("log 7 \"DrvRepo:   d: Notify listener 'l': onDriverAttachmentSet(k=v)\"\n"
              "l.onDriverAttachmentSet d \"k\"=\"v\" given \"junk\"\n"
              "log 7 \"DrvRepo:   d: Notify listener 'l': onDriverAttachmentCleared(k=v)\"\n"
              "l.onDriverAttachmentCleared d \"k\"=\"v\"\n",
              heard());
}
} // namespace
