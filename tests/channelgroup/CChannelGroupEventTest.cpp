#include <memory>
#include <type_traits>
#include <typeinfo>

#include <support/GroupFixture.h>

namespace
{

using EvTimeslot = IChannelGroup::EvTimeslot;
using Event = ObserverEvent<IChannelGroup>;

// The typed form of a change, for code that builds such events with named fields.
using GroupEvent = GroupFixture;

TEST_F(GroupEvent, StartsWithNothing)
{
    const EvTimeslot event;
    EXPECT_FALSE(event.source);
    EXPECT_EQ(0u, event.oldTimeslots);
    EXPECT_EQ(0u, event.newTimeslots);
    EXPECT_EQ(0u, event.changedTimeslots);
    EXPECT_EQ(0u, event.data.buffer().size());
}

TEST_F(GroupEvent, HoldsTheGroupAndTheThreeMasks)
{
    {
        const EvTimeslot event(&group(), 0x0F, 0xFF, 0xF0);
        EXPECT_EQ(static_cast<IChannelGroup*>(&group()), event.source.get());
        EXPECT_EQ(2, group().references());
        EXPECT_EQ(0x0Fu, event.oldTimeslots);
        EXPECT_EQ(0xFFu, event.newTimeslots);
        EXPECT_EQ(0xF0u, event.changedTimeslots);
        EXPECT_EQ(0u, event.data.buffer().size()) << "the fields carry them, not the data";
    }
    EXPECT_EQ(1, group().references());
    const EvTimeslot nobodys(nullptr, 1, 2, 3);
    EXPECT_FALSE(nobodys.source);
}

TEST_F(GroupEvent, CopySharesSourceAndData)
{
    auto event = std::make_unique<EvTimeslot>(&group(), 1, 3, 2);
    const std::uint32_t word = 9;
    event->data.copyOnWrite().addTail(&word, sizeof word);
    const EvTimeslot copy(*event);
    EXPECT_EQ(3, group().references());
    event->data.copyOnWrite().addTail(&word, sizeof word);
    event.reset();
    EXPECT_EQ(2, group().references());
    EXPECT_EQ(static_cast<IChannelGroup*>(&group()), copy.source.get());
    EXPECT_EQ(4u, copy.data.buffer().size());
    EXPECT_EQ(9u, copy.data.word(0));
    EXPECT_EQ(1u, copy.oldTimeslots);
    EXPECT_EQ(3u, copy.newTimeslots);
    EXPECT_EQ(2u, copy.changedTimeslots);
}

TEST_F(GroupEvent, CloneIsOfItsOwnType)
{
    const EvTimeslot event(&group(), 1, 3, 2);
    Event const& base = event;
    const std::unique_ptr<Event> clone(base.clone());
    Event const& cloned = *clone;
    ASSERT_TRUE(typeid(cloned) == typeid(EvTimeslot));
    auto const& copy = static_cast<EvTimeslot const&>(cloned);
    EXPECT_EQ(3, group().references());
    EXPECT_EQ(1u, copy.oldTimeslots);
    EXPECT_EQ(3u, copy.newTimeslots);
    EXPECT_EQ(2u, copy.changedTimeslots);
}

/// Looks at the type and the content of what the group sends.
class Witness : public RecordingGroupObserver
{
public:
    using RecordingGroupObserver::RecordingGroupObserver;
    XCode onTimeslotsAdded(String&, Event& event) override
    {
        look(event);
        return XCode();
    }
    void onTimeslotsAdded(Event& event) override { look(event); }
    void onTimeslotsRemoved(Event& event) override { look(event); }

    unsigned plain = 0;

private:
    void look(Event& event)
    {
        EXPECT_EQ(12u, event.data.buffer().size());
        EXPECT_TRUE(typeid(event) != typeid(EvTimeslot));
        const std::unique_ptr<Event> clone(event.clone());
        EXPECT_EQ(changeOf(event), changeOf(*clone));
        EXPECT_EQ(event.source.get(), clone->source.get());
        ++plain;
    }
};

TEST_F(GroupEvent, SentOnesCarryThreeWordsAndNoNamedFields)
{
    Witness witness(log_, "witness");
    group().addChannelGroupObserver(message_, &witness, 1, true, false);
    set(1);
    set(0);
    set(1);
    group().addChannelGroupObserver(message_, &witness, 1, false, true);
    group().removeChannelGroupObserver(&witness, true);
    group().removeChannelGroupObserver(&witness, true);
    EXPECT_EQ(6u, witness.plain);
}

} // namespace
