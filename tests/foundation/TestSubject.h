#ifndef FOUNDATION_TESTSUBJECT_H
#define FOUNDATION_TESTSUBJECT_H

#include <functional>
#include <string>

#include <drvrepo/ObserverContainer.h>
#include <drvrepo/testkit/EventLog.h>

#include <support/CountedObject.h>

class TestObserver;

/// The smallest subject that the observer framework can serve.
class TestSubject : public CountedObject
{
public:
    using Observer = TestObserver;
};

using TestEvent = ObserverEvent<TestSubject>;
using TestContainer = ObserverContainer<TestSubject>;

/// An observer that writes down what it hears and, where it is told to, refuses or does something.
/// Of an event it writes the words.
class TestObserver
{
public:
    TestObserver(EventLog& log, char const* name) : log_(log), name_(name) {}
    virtual ~TestObserver() = default;

    virtual XCode onAdding(String& message, TestEvent& event)
    {
        hear("asked", event);
        if (answer.code() != 0)
            message = reason;
        return answer;
    }
    virtual void onAdded(TestEvent& event) { hear("told", event); }
    virtual void onRemoved(TestEvent& event) { hear("undone", event); }

    /// What `onAdding` answers, and the reason that it leaves for a refusal.
    XCode answer;
    String reason = "no";
    /// Runs in every call, after the event was written down.
    std::function<void(TestEvent&)> action;

private:
    void hear(char const* what, TestEvent& event)
    {
        std::string words;
        for (unsigned i = 0; i < event.data.buffer().size() / 4; ++i)
            words += " " + std::to_string(event.data.word(i));
        log_.add(name_, what + words);
        if (action)
            action(event);
    }

    EventLog& log_;
    std::string name_;
};

/// A delegate that counts the references on it.
class SubjectDelegate : public ObserverDelegate<TestSubject>
{
public:
    explicit SubjectDelegate(TestObserver* observer) : ObserverDelegate<TestSubject>(observer)
    {
        ++living_;
    }
    ~SubjectDelegate() override { --living_; }

    /// Test delegates that exist.
    static int living() { return living_; }
    /// References on this one, the creator's included.
    int references() const { return references_; }

    void addRef() override
    {
        ++references_;
        ObserverDelegate<TestSubject>::addRef();
    }
    void release() override
    {
        --references_;
        ObserverDelegate<TestSubject>::release();
    }

private:
    inline static int living_ = 0;

    int references_ = 1;
};

#endif
