#ifndef FOUNDATION_CONTAINERFIXTURE_H
#define FOUNDATION_CONTAINERFIXTURE_H

#include <memory>

#include <gtest/gtest.h>

#include "TestSubject.h"

/// A container, observers a to d and x, and the story of what they hear.
class ContainerFixture : public testing::Test
{
protected:
    ~ContainerFixture() override
    {
        container_.reset();
        EXPECT_EQ(0, SubjectDelegate::living());
    }

    /// Registers an observer; the container alone holds its delegate then.
    SubjectDelegate* add(TestObserver& observer, unsigned priority, bool veto = true)
    {
        SubjectDelegate* const delegate = new SubjectDelegate(&observer);
        container_->add(delegate, priority, veto);
        delegate->release();
        return delegate;
    }

    XCode tell() { return tell(TestEvent()); }
    XCode tell(TestEvent const& event)
    {
        return container_->broadcastDoEvent(message_, event, &TestObserver::onAdding,
                                            &TestObserver::onAdded, &refuser_);
    }
    void undo(TestObserver* refuser = nullptr)
    {
        container_->broadcastUndoEvent(TestEvent(), &TestObserver::onRemoved, refuser);
    }
    std::string heard() { return log_.take(); }

    EventLog log_;
    TestObserver a_{log_, "a"};
    TestObserver b_{log_, "b"};
    TestObserver c_{log_, "c"};
    TestObserver d_{log_, "d"};
    TestObserver stranger_{log_, "stranger"};
    String message_{"before"};
    TestObserver* refuser_ = &stranger_; // to see whether it is touched
    std::unique_ptr<TestContainer> container_{new TestContainer};
};

#endif
