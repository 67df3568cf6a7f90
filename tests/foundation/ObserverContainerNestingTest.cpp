#include <stdexcept>
#include <string>
#include <utility>

#include "ContainerFixture.h"

namespace
{

/// Observers that change the container from inside a notification. By where the disruption falls.
using ObserverContainerNesting = ContainerFixture;

TEST_F(ObserverContainerNesting, WhoRemovesItselfIsOnlyMarked)
{
    add(a_, 1);
    add(b_, 2, false);
    add(c_, 3);
    b_.action = [&](TestEvent&) {
        EXPECT_EQ(1, container_->busy());
        container_->remove(&b_);
        EXPECT_EQ(3u, container_->size());       // dead, still linked
        EXPECT_EQ(3, SubjectDelegate::living()); // held over its own call
    };
    EXPECT_EQ(0, tell().code());
    EXPECT_EQ("a: asked\nb: told\nc: asked\n", heard());
    EXPECT_EQ(0, container_->busy());
    EXPECT_EQ(3u, container_->size());
    EXPECT_EQ(2, SubjectDelegate::living()); // the delegate went at once, after its own call
    tell();
    EXPECT_EQ("a: asked\nc: asked\n", heard());
    undo();
    EXPECT_EQ("c: undone\na: undone\n", heard());
    EXPECT_EQ(3u, container_->size());
    container_->remove(&stranger_); // the first remove after the broadcast unlinks it
    EXPECT_EQ(2u, container_->size());
}

TEST_F(ObserverContainerNesting, TheFirstAddUnlinksTheDeadAsWell)
{
    add(a_, 1);
    a_.action = [&](TestEvent&) { container_->remove(&a_); };
    tell();
    EXPECT_EQ(1u, container_->size());
    add(b_, 1);
    EXPECT_EQ(1u, container_->size());
    heard();
    tell();
    EXPECT_EQ("b: asked\n", heard());
}

TEST_F(ObserverContainerNesting, RemovingOneBehind)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3);
    a_.action = [&](TestEvent&) { container_->remove(&b_); };
    tell();
    EXPECT_EQ("a: asked\nc: asked\n", heard());
}

TEST_F(ObserverContainerNesting, RemovingOneBefore)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3);
    b_.action = [&](TestEvent&) { container_->remove(&a_); };
    tell();
    EXPECT_EQ("a: asked\nb: asked\nc: asked\n", heard());
    undo();
    EXPECT_EQ("c: undone\nb: undone\n", heard());
}

TEST_F(ObserverContainerNesting, RemovingAll)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3);
    a_.action = [&](TestEvent&) {
        for (TestObserver* observer : {&a_, &b_, &c_})
            container_->remove(observer);
    };
    EXPECT_EQ(0, tell().code());
    EXPECT_EQ("a: asked\n", heard());
    EXPECT_EQ(0, SubjectDelegate::living());
    undo();
    undo(&b_);
    EXPECT_EQ("", heard());
}

TEST_F(ObserverContainerNesting, RemovingDuringAnUndo)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3);
    c_.action = [&](TestEvent&) {
        EXPECT_EQ(1, container_->busy());
        container_->remove(&b_);
        container_->remove(&c_);
    };
    undo();
    EXPECT_EQ("c: undone\na: undone\n", heard());
    EXPECT_EQ(3u, container_->size());
    EXPECT_EQ(0, container_->busy());
    container_->remove(&stranger_);
    EXPECT_EQ(1u, container_->size());
}

TEST_F(ObserverContainerNesting, AddingBehindIsVisitedAddingBeforeIsNot)
{
    add(b_, 2);
    bool once = true;
    b_.action = [&](TestEvent&) {
        if (!once)
            return;
        once = false;
        add(a_, 1);
        add(c_, 3);
        EXPECT_EQ(3u, container_->size());
    };
    tell();
    EXPECT_EQ("b: asked\nc: asked\n", heard());
    tell();
    EXPECT_EQ("a: asked\nb: asked\nc: asked\n", heard());
}

TEST_F(ObserverContainerNesting, WhoLearnedByOtherMeansIsPassedByOnce)
{
    add(a_, 1);
    bool once = true;
    a_.action = [&](TestEvent&) {
        if (once)
            container_->setInformed(add(b_, 2));
        once = false;
    };
    tell();
    EXPECT_EQ("a: asked\n", heard());
    tell();
    EXPECT_EQ("a: asked\nb: asked\n", heard());
}

TEST_F(ObserverContainerNesting, LeavingAndComingBackIsANewEntry)
{
    add(a_, 1);
    add(b_, 2);
    bool once = true;
    a_.action = [&](TestEvent&) {
        if (!once)
            return;
        once = false;
        container_->remove(&a_);
        add(a_, 3);
        EXPECT_EQ(3u, container_->size());
    };
    tell();
    EXPECT_EQ("a: asked\nb: asked\na: asked\n", heard());
    undo(&b_);
    EXPECT_EQ("", heard()); // the dead entry before it is passed over
    undo(&a_);
    EXPECT_EQ("b: undone\n", heard());
}

TEST_F(ObserverContainerNesting, BroadcastsNest)
{
    add(a_, 1);
    add(b_, 2);
    int depth = 0;
    int deepest = 0;
    a_.action = [&](TestEvent&) {
        if (++depth < 3)
            tell();
        deepest = std::max(deepest, static_cast<int>(container_->busy()));
        container_->remove(&b_);
        EXPECT_EQ(2u, container_->size());
        --depth;
    };
    tell();
    EXPECT_EQ("a: asked\na: asked\na: asked\n", heard());
    EXPECT_EQ(3, deepest);
    EXPECT_EQ(0, container_->busy());
    EXPECT_EQ(2u, container_->size());
    container_->remove(&stranger_);
    EXPECT_EQ(1u, container_->size());
}

// Whoever is derived from a delegate may still look at its own after the call.
TEST_F(ObserverContainerNesting, ADelegateLivesUntilItsOwnCallReturns)
{
    std::string living;
    bool nests = false;
    a_.action = [&](TestEvent&) {
        if (std::exchange(nests, false))
            undo(); // leaves in this call inside of its other one
        container_->remove(&a_);
        living += std::to_string(SubjectDelegate::living());
    };
    for (const bool veto : {false, true}) {
        add(a_, 1, veto);
        tell();
        EXPECT_EQ(0, SubjectDelegate::living());
    }
    add(a_, 1);
    undo();
    EXPECT_EQ(0, SubjectDelegate::living());
    add(a_, 1);
    nests = true;
    tell();
    EXPECT_EQ(0, SubjectDelegate::living());
    EXPECT_EQ("11111", living);
}

TEST_F(ObserverContainerNesting, ARefuserThatRemovesItselfIsNamedAllTheSame)
{
    add(a_, 1);
    add(b_, 2);
    b_.answer = XCode(5);
    b_.action = [&](TestEvent&) { container_->remove(&b_); };
    EXPECT_EQ(5, tell().code());
    EXPECT_EQ(&b_, refuser_);
    EXPECT_EQ("a: asked\nb: asked\n", heard());
}

TEST_F(ObserverContainerNesting, AnExceptionEndsTheWalkForward)
{
    add(a_, 1);
    add(b_, 2);
    a_.action = [](TestEvent&) { throw std::runtime_error("from an observer"); };
    EXPECT_THROW(tell(), std::runtime_error);
    EXPECT_EQ("a: asked\n", heard());
    EXPECT_EQ(0, container_->busy());
    a_.action = nullptr;
    EXPECT_EQ(0, tell().code());
    EXPECT_EQ("a: asked\nb: asked\n", heard());
}

TEST_F(ObserverContainerNesting, AnExceptionDoesNotEndAnUndo)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3);
    b_.action = [](TestEvent&) { throw std::runtime_error("from an observer"); };
    EXPECT_THROW(undo(), std::runtime_error);
    EXPECT_EQ("c: undone\nb: undone\na: undone\n", heard());
    EXPECT_EQ(0, container_->busy());
    container_->remove(&a_);
    EXPECT_EQ(2u, container_->size());
}

TEST_F(ObserverContainerNesting, ASubjectUndoesFromThePlaceOfTheRefuser)
{
    add(a_, 1);
    add(b_, 2);
    add(c_, 3);
    b_.answer = XCode(5);
    const TestContainer::BusyScope busy(*container_);
    TestContainer::Stop stop = container_->atFront();
    EXPECT_EQ(5, container_
                     ->broadcastDoEvent(message_, TestEvent(), &TestObserver::onAdding,
                                        &TestObserver::onAdded, stop)
                     .code());
    container_->remove(&b_); // only its place is left
    heard();
    container_->broadcastUndoEvent(TestEvent(), &TestObserver::onRemoved, stop);
    EXPECT_EQ("a: undone\n", heard());
    container_->broadcastUndoEvent(TestEvent(), &TestObserver::onRemoved, container_->nowhere());
    EXPECT_EQ("c: undone\na: undone\n", heard());
    container_->broadcastUndoEvent(TestEvent(), &TestObserver::onRemoved, container_->atFront());
    EXPECT_EQ("", heard());
}

} // namespace
