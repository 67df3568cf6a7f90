#include "ContainerFixture.h"

namespace
{

using ObserverContainerTest = ContainerFixture;

TEST_F(ObserverContainerTest, AnEmptyOneTellsNobody)
{
    EXPECT_EQ(0, tell().code());
    EXPECT_EQ(&stranger_, refuser_);
    EXPECT_STREQ("before", message_.cString());
    undo();
    undo(&a_);
    EXPECT_EQ("", heard());
    EXPECT_EQ(0u, container_->size());
    EXPECT_EQ(0, container_->busy());
}

TEST_F(ObserverContainerTest, AnEntryOfNobodyIsDead)
{
    const TestContainer::Wrapper entry;
    EXPECT_FALSE(entry.isLive());
    EXPECT_FALSE(entry.isOf(nullptr));
    EXPECT_EQ(nullptr, entry.delegate());
    EXPECT_EQ(0u, entry.priority());
    EXPECT_FALSE(entry.hasVeto());
}

TEST_F(ObserverContainerTest, OrdersByPriorityTheNewestFirst)
{
    add(a_, 5);
    add(b_, 1);
    add(c_, 5);
    EXPECT_EQ(0, tell().code());
    EXPECT_EQ("b: asked\nc: asked\na: asked\n", heard());
    undo();
    EXPECT_EQ("a: undone\nc: undone\nb: undone\n", heard());
    EXPECT_EQ(3u, container_->size());
}

TEST_F(ObserverContainerTest, PrioritiesAreUnsigned)
{
    add(a_, 4294967295u);
    add(b_, 0);
    add(c_, 0x80000000u);
    add(d_, 0x7fffffffu);
    tell();
    EXPECT_EQ("b: asked\nd: asked\nc: asked\na: asked\n", heard());
}

TEST_F(ObserverContainerTest, ARefusalEndsTheWalk)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3);
    b_.answer = XCode(42, "own");
    b_.reason = "line busy";
    const XCode rc = tell();
    EXPECT_EQ(42, rc.code());
    EXPECT_STREQ("own", rc.message().cString());
    EXPECT_STREQ("line busy", message_.cString());
    EXPECT_EQ(&b_, refuser_);
    EXPECT_EQ("a: asked\nb: asked\n", heard()); // and nobody is undone
    undo(refuser_);
    EXPECT_EQ("a: undone\n", heard());
    EXPECT_EQ(0, container_->busy());
}

TEST_F(ObserverContainerTest, TheFirstMayRefuseAndTheLast)
{
    add(a_, 1);
    add(b_, 2);
    a_.answer = XCode(-1);
    EXPECT_EQ(-1, tell().code());
    undo(refuser_);
    EXPECT_EQ("a: asked\n", heard());
    a_.answer = XCode();
    b_.answer = XCode(-2);
    EXPECT_EQ(-2, tell().code());
    undo(refuser_);
    EXPECT_EQ("a: asked\nb: asked\na: undone\n", heard());
}

TEST_F(ObserverContainerTest, ThePlaceForTheRefuserMayBeMissing)
{
    add(a_, 1);
    a_.answer = XCode(5);
    EXPECT_EQ(5, container_
                     ->broadcastDoEvent(message_, TestEvent(), &TestObserver::onAdding,
                                        &TestObserver::onAdded, nullptr)
                     .code());
}

TEST_F(ObserverContainerTest, WithoutVetoIsToldAndNeverStopsTheWalk)
{
    add(a_, 1);
    add(b_, 2, false);
    add(c_, 3);
    b_.answer = XCode(5); // nobody asks for it
    EXPECT_EQ(0, tell().code());
    EXPECT_EQ("a: asked\nb: told\nc: asked\n", heard());
    EXPECT_EQ(&stranger_, refuser_);
    undo();
    EXPECT_EQ("c: undone\nb: undone\na: undone\n", heard());
}

TEST_F(ObserverContainerTest, AnswersWithTheLastAnswerOfAVetoHolder)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3, false);
    a_.answer = XCode(0, "first");
    b_.answer = XCode(0, "second");
    const XCode rc = tell();
    EXPECT_EQ(0, rc.code());
    EXPECT_STREQ("second", rc.message().cString());
    b_.answer = XCode();
    EXPECT_STREQ("", tell().message().cString());
    EXPECT_EQ(&stranger_, refuser_);
    EXPECT_STREQ("before", message_.cString());
}

TEST_F(ObserverContainerTest, UndoWithAStrangerTellsAll)
{
    add(a_, 1);
    add(b_, 2);
    undo(&stranger_);
    EXPECT_EQ("b: undone\na: undone\n", heard());
}

TEST_F(ObserverContainerTest, UndoGoesBackFromTheLastEntryOfTheRefuser)
{
    add(a_, 1);
    add(b_, 2);
    add(a_, 3);
    add(c_, 4);
    EXPECT_EQ(4u, container_->size());
    undo(&a_);
    EXPECT_EQ("b: undone\na: undone\n", heard());
    undo(&b_);
    EXPECT_EQ("a: undone\n", heard());
}

TEST_F(ObserverContainerTest, OneObserverTwiceIsTwoEntries)
{
    add(a_, 1);
    add(a_, 1, false);
    EXPECT_EQ(2u, container_->size());
    tell();
    EXPECT_EQ("a: told\na: asked\n", heard());
    container_->remove(&a_); // the first from the front: the newest
    tell();
    EXPECT_EQ("a: asked\n", heard());
    EXPECT_EQ(1u, container_->size());
}

TEST_F(ObserverContainerTest, OneDelegateTwiceIsCounted)
{
    SubjectDelegate* const delegate = add(a_, 5);
    container_->add(delegate, 1, false); // its place and right stay
    EXPECT_EQ(1u, container_->size());
    EXPECT_EQ(1, delegate->references());
    add(b_, 3);
    tell();
    EXPECT_EQ("b: asked\na: asked\n", heard());
    container_->remove(&a_);
    EXPECT_EQ(2u, container_->size());
    tell();
    EXPECT_EQ("b: asked\na: asked\n", heard());
    container_->remove(&a_);
    EXPECT_EQ(1u, container_->size());
    EXPECT_EQ(1, SubjectDelegate::living());
    tell();
    EXPECT_EQ("b: asked\n", heard());
}

TEST_F(ObserverContainerTest, HoldsOneReferenceOnADelegate)
{
    SubjectDelegate* const delegate = new SubjectDelegate(&a_);
    container_->add(delegate, 1, true);
    EXPECT_EQ(2, delegate->references());
    tell();
    undo();
    EXPECT_EQ(2, delegate->references());
    container_->remove(&a_);
    EXPECT_EQ(1, delegate->references());
    container_->add(delegate, 1, true);
    EXPECT_EQ(2, delegate->references());
    heard();
    container_.reset(); // tells nobody and stops nobody
    EXPECT_EQ(1, delegate->references());
    EXPECT_EQ(&a_, delegate->observer());
    EXPECT_EQ("", heard());
    delegate->release();
}

TEST_F(ObserverContainerTest, RemovingAStrangerChangesNothing)
{
    add(a_, 1);
    container_->remove(&stranger_);
    EXPECT_EQ(1u, container_->size());
    tell();
    EXPECT_EQ("a: asked\n", heard());
}

TEST_F(ObserverContainerTest, AStoppedVetoHolderCountsAsHavingAccepted)
{
    SubjectDelegate* const delegate = add(a_, 1);
    add(b_, 2);
    a_.answer = XCode(5);
    delegate->stopNotifications();
    EXPECT_EQ(0, tell().code());
    EXPECT_EQ("b: asked\n", heard());
    undo();
    EXPECT_EQ("b: undone\n", heard());
    EXPECT_EQ(2u, container_->size()); // its entry stays
    container_->remove(&a_);           // and is no longer found by the observer
    EXPECT_EQ(2u, container_->size());
}

TEST_F(ObserverContainerTest, KnowsItsDelegates)
{
    SubjectDelegate* const delegate = new SubjectDelegate(&a_);
    EXPECT_FALSE(container_->has(delegate));
    container_->add(delegate, 1, true);
    EXPECT_TRUE(container_->has(delegate));
    container_->remove(&a_);
    EXPECT_FALSE(container_->has(delegate));
    delegate->release();
}

TEST_F(ObserverContainerTest, EachObserverGetsACloneOfItsOwn)
{
    TestSubject* const subject = new TestSubject;
    {
        TestEvent event(subject);
        const std::uint32_t word = 7;
        event.data.copyOnWrite().addTail(&word, sizeof word);
        std::unique_ptr<TestEvent> kept;
        const auto alter = [&](TestEvent& given) {
            EXPECT_NE(&event, &given);
            EXPECT_EQ(subject, given.source.get());
            EXPECT_EQ(3, subject->references());
            given.data.copyOnWrite().addTail(&word, sizeof word);
            given.source.reset();
        };
        a_.action = alter;
        b_.action = alter;
        c_.action = [&](TestEvent& given) { kept.reset(given.clone()); };
        add(a_, 1);
        add(b_, 2, false);
        add(c_, 3, false);
        EXPECT_EQ(0, tell(event).code());
        EXPECT_EQ("a: asked 7\nb: told 7\nc: told 7\n", heard());
        EXPECT_EQ(4u, event.data.buffer().size());
        EXPECT_EQ(3, subject->references()); // the event and the one kept
        EXPECT_EQ(7u, kept->data.word(0));
        kept.reset();
        c_.action = nullptr;
        container_->broadcastUndoEvent(event, &TestObserver::onRemoved, nullptr);
        EXPECT_EQ("c: undone 7\nb: undone 7\na: undone 7\n", heard());
    }
    EXPECT_EQ(1, subject->references());
    subject->release();
}

/// Can be cloned every other time only.
class RareEvent : public TestEvent
{
public:
    TestEvent* clone() const override { return ++asked_ % 2 == 0 ? nullptr : new TestEvent(*this); }

private:
    mutable int asked_ = 0;
};

TEST_F(ObserverContainerTest, WhoGetsNoCloneIsPassedOver)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3, false);
    add(d_, 4, false);
    b_.answer = XCode(5);
    const RareEvent event;
    EXPECT_EQ(0, tell(event).code());
    EXPECT_EQ("a: asked\nc: told\n", heard());
    const RareEvent undone;
    container_->broadcastUndoEvent(undone, &TestObserver::onRemoved, nullptr);
    EXPECT_EQ("d: undone\nb: undone\n", heard());
}

} // namespace
