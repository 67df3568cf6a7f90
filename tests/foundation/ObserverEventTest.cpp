#include <memory>
#include <typeinfo>

#include <gtest/gtest.h>

#include "TestSubject.h"

namespace
{

void add(TestEvent& event, std::uint32_t word)
{
    event.data.copyOnWrite().addTail(&word, sizeof word);
}

class ObserverEventTest : public testing::Test
{
protected:
    ~ObserverEventTest() override
    {
        EXPECT_EQ(1, subject_->references());
        subject_->release();
    }

    TestSubject* subject_ = new TestSubject;
};

TEST_F(ObserverEventTest, DefaultHasNoSourceAndNoData)
{
    const TestEvent event;
    EXPECT_EQ(nullptr, event.source.get());
    EXPECT_EQ(0u, event.data.buffer().size());
    const std::unique_ptr<TestEvent> clone(event.clone());
    ASSERT_NE(nullptr, clone);
    EXPECT_EQ(nullptr, clone->source.get());
    TestSubject* const none = nullptr;
    EXPECT_EQ(nullptr, TestEvent(none).source.get());
}

TEST_F(ObserverEventTest, CountsItsSource)
{
    {
        const TestEvent event(subject_);
        EXPECT_EQ(subject_, event.source.get());
        EXPECT_EQ(2, subject_->references());
        const TestEvent copy(event);
        EXPECT_EQ(3, subject_->references());
        TestEvent assigned;
        assigned = copy;
        EXPECT_EQ(4, subject_->references());
        TestEvent const& same = assigned;
        assigned = same;
        EXPECT_EQ(4, subject_->references());
    }
    EXPECT_EQ(1, subject_->references());
}

TEST_F(ObserverEventTest, ClonesShareSourceAndData)
{
    TestEvent event(subject_);
    for (std::uint32_t i = 0; i < 10; ++i)
        add(event, i);
    std::unique_ptr<TestEvent> clone(event.clone());
    EXPECT_NE(&event, clone.get());
    EXPECT_EQ(subject_, clone->source.get());
    EXPECT_EQ(3, subject_->references());
    EXPECT_EQ(event.data.buffer().data(), clone->data.buffer().data());
    add(*clone, 77);
    add(event, 88);
    EXPECT_EQ(77u, clone->data.word(10));
    EXPECT_EQ(88u, event.data.word(10));
    EXPECT_EQ(44u, clone->data.buffer().size());
    clone.reset();
    EXPECT_EQ(2, subject_->references());
}

TEST_F(ObserverEventTest, AShortEventsClonesAreSeparateToo)
{
    TestEvent event(subject_);
    add(event, 1);
    const std::unique_ptr<TestEvent> clone(event.clone());
    add(*clone, 2);
    EXPECT_EQ(4u, event.data.buffer().size());
    EXPECT_EQ(8u, clone->data.buffer().size());
    EXPECT_EQ(1u, clone->data.word(0));
}

/// An event with a value of its own, of another size.
class NamedEvent : public TestEvent
{
public:
    NamedEvent(TestSubject* subject, char const* of) : TestEvent(subject), name(of) { ++living; }
    NamedEvent(NamedEvent const& other) : TestEvent(other), name(other.name) { ++living; }
    ~NamedEvent() override { --living; }
    NamedEvent* clone() const override { return new NamedEvent(*this); }

    inline static int living = 0;
    String name;
    char room[64] = {};
};

TEST_F(ObserverEventTest, ClonesHaveTheDynamicType)
{
    {
        const NamedEvent event(subject_, "named");
        TestEvent const& base = event;
        const std::unique_ptr<TestEvent> clone(base.clone());
        TestEvent& cloned = *clone;
        EXPECT_TRUE(typeid(NamedEvent) == typeid(cloned));
        EXPECT_STREQ("named", static_cast<NamedEvent&>(cloned).name.cString());
        EXPECT_EQ(2, NamedEvent::living);
        const std::unique_ptr<TestEvent> second(clone->clone());
        EXPECT_EQ(3, NamedEvent::living);
        EXPECT_EQ(4, subject_->references());
    }
    EXPECT_EQ(0, NamedEvent::living);
}

TEST_F(ObserverEventTest, ManyMayLiveAtOnce)
{
    const TestEvent event(subject_);
    std::unique_ptr<TestEvent> clones[10];
    for (int round = 0; round < 3; ++round) {
        for (std::unique_ptr<TestEvent>& clone : clones)
            clone.reset(event.clone());
        for (std::uint32_t i = 0; i < 10; ++i)
            add(*clones[i], i);
        for (std::uint32_t i = 0; i < 10; ++i)
            EXPECT_EQ(i, clones[i]->data.word(0));
        EXPECT_EQ(12, subject_->references());
        for (std::unique_ptr<TestEvent>& clone : clones)
            clone.reset();
        EXPECT_EQ(2, subject_->references());
    }
}

} // namespace
