#include <gtest/gtest.h>

#include "TestSubject.h"

namespace
{

class ObserverDelegateTest : public testing::Test
{
protected:
    ~ObserverDelegateTest() override { EXPECT_EQ(0, SubjectDelegate::living()); }

    EventLog log_;
    TestObserver observer_{log_, "a"};
    TestEvent event_;
    String message_{"before"};
};

TEST_F(ObserverDelegateTest, TheLastReleaseDeletesIt)
{
    ObserverDelegate<TestSubject>* const delegate = new SubjectDelegate(&observer_);
    EXPECT_EQ(&observer_, delegate->observer());
    delegate->addRef();
    delegate->release();
    EXPECT_EQ(1, SubjectDelegate::living());
    delegate->release();
    EXPECT_EQ(0, SubjectDelegate::living());
    EXPECT_EQ("", log_.take()); // the observer is neither owned nor told
}

TEST_F(ObserverDelegateTest, CallsTheNotificationMethod)
{
    const TYPtr<SubjectDelegate> delegate(new SubjectDelegate(&observer_));
    (*delegate).notifyEvent(&TestObserver::onAdded, event_);
    (*delegate).notifyEvent(&TestObserver::onRemoved, event_);
    EXPECT_EQ("a: told\na: undone\n", log_.take());
}

TEST_F(ObserverDelegateTest, AnswersAsTheObserverDoes)
{
    const TYPtr<SubjectDelegate> delegate(new SubjectDelegate(&observer_));
    EXPECT_EQ(0, (*delegate).notifyEvent(message_, &TestObserver::onAdding, event_).code());
    EXPECT_STREQ("before", message_.cString());
    observer_.answer = XCode(0, "noted");
    XCode rc = (*delegate).notifyEvent(message_, &TestObserver::onAdding, event_);
    EXPECT_EQ(0, rc.code());
    EXPECT_STREQ("noted", rc.message().cString());
    observer_.answer = XCode(9, "own");
    observer_.reason = "line busy";
    rc = (*delegate).notifyEvent(message_, &TestObserver::onAdding, event_);
    EXPECT_EQ(9, rc.code());
    EXPECT_STREQ("own", rc.message().cString());
    EXPECT_STREQ("line busy", message_.cString());
    EXPECT_EQ("a: asked\na: asked\na: asked\n", log_.take());
}

TEST_F(ObserverDelegateTest, HandsOnTheVeryEvent)
{
    const TYPtr<SubjectDelegate> delegate(new SubjectDelegate(&observer_));
    TestEvent const* seen = nullptr;
    observer_.action = [&seen](TestEvent& event) { seen = &event; };
    (*delegate).notifyEvent(&TestObserver::onAdded, event_);
    EXPECT_EQ(&event_, seen);
    seen = nullptr;
    (*delegate).notifyEvent(message_, &TestObserver::onAdding, event_);
    EXPECT_EQ(&event_, seen);
}

TEST_F(ObserverDelegateTest, OnceStoppedSwallowsEverything)
{
    observer_.answer = XCode(9);
    const TYPtr<SubjectDelegate> delegate(new SubjectDelegate(&observer_));
    (*delegate).stopNotifications();
    EXPECT_EQ(nullptr, (*delegate).observer());
    (*delegate).notifyEvent(&TestObserver::onAdded, event_);
    EXPECT_EQ(0, (*delegate).notifyEvent(message_, &TestObserver::onAdding, event_).code());
    EXPECT_STREQ("before", message_.cString());
    (*delegate).stopNotifications();
    EXPECT_EQ("", log_.take());
    EXPECT_EQ(1, (*delegate).references()); // it lives on
}

TEST_F(ObserverDelegateTest, WithoutAnObserverIsAsGoodAsStopped)
{
    const TYPtr<SubjectDelegate> delegate(new SubjectDelegate(nullptr));
    (*delegate).notifyEvent(&TestObserver::onAdded, event_);
    EXPECT_EQ(0, (*delegate).notifyEvent(message_, &TestObserver::onAdding, event_).code());
}

// The observer lets go of the delegate that is just calling it.
TEST_F(ObserverDelegateTest, MayGoDuringItsOwnCall)
{
    TYPtr<SubjectDelegate> delegate(new SubjectDelegate(&observer_));
    observer_.action = [&](TestEvent&) { delegate.reset(); };
    delegate.get()->notifyEvent(&TestObserver::onAdded, event_);
    EXPECT_EQ(0, SubjectDelegate::living());

    delegate.reset(new SubjectDelegate(&observer_));
    observer_.answer = XCode(3, "own");
    const XCode rc = delegate.get()->notifyEvent(message_, &TestObserver::onAdding, event_);
    EXPECT_EQ(3, rc.code());
    EXPECT_STREQ("own", rc.message().cString());
    EXPECT_STREQ("no", message_.cString());
    EXPECT_EQ(0, SubjectDelegate::living());
    EXPECT_EQ("a: told\na: asked\n", log_.take());
}

TEST_F(ObserverDelegateTest, MayBeStoppedFromInsideItsOwnCall)
{
    const TYPtr<SubjectDelegate> delegate(new SubjectDelegate(&observer_));
    observer_.answer = XCode(3);
    observer_.action = [&](TestEvent&) { (*delegate).stopNotifications(); };
    EXPECT_EQ(3, (*delegate).notifyEvent(message_, &TestObserver::onAdding, event_).code());
    EXPECT_EQ(0, (*delegate).notifyEvent(message_, &TestObserver::onAdding, event_).code());
    EXPECT_EQ("a: asked\n", log_.take());
}

TEST_F(ObserverDelegateTest, CallsMethodsVirtually)
{
    class Derived : public TestObserver
    {
    public:
        using TestObserver::TestObserver;
        void onAdded(TestEvent& event) override { onRemoved(event); }
    };
    Derived derived(log_, "derived");
    const TYPtr<SubjectDelegate> delegate(new SubjectDelegate(&derived));
    (*delegate).notifyEvent(&TestObserver::onAdded, event_);
    EXPECT_EQ("derived: undone\n", log_.take());
}

} // namespace
