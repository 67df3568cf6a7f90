#ifndef SUPPORT_GROUPFIXTURE_H
#define SUPPORT_GROUPFIXTURE_H

#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/testkit/RecordingObserver.h>

#include <support/RecordingMonitor.h>

/// A channel group that counts the references on it.
class TestGroup : public CChannelGroup
{
public:
    explicit TestGroup(String const& name) : CChannelGroup(name) { ++living_; }
    ~TestGroup() override { --living_; }

    /// Test groups that exist.
    static int living() { return living_; }
    /// References on this one, the creator's included.
    int references() const { return references_; }

    void addRef() override
    {
        ++references_;
        CChannelGroup::addRef();
    }
    void release() override
    {
        --references_;
        CChannelGroup::release();
    }

private:
    inline static int living_ = 0;

    int references_ = 1;
};

/// A channel group "B", observers by name, and what was heard and logged.
class GroupFixture : public ::testing::Test
{
protected:
    GroupFixture() : group_(new TestGroup("B")) {}
    ~GroupFixture() override { EXPECT_EQ(1, group().references()); }

    TestGroup& group() const { return *group_.get(); }

    /// The observer of that name; made when first asked for.
    RecordingGroupObserver& observer(std::string const& name)
    {
        auto& made = observers_[name];
        if (made == nullptr)
            made = std::make_unique<RecordingGroupObserver>(log_, name);
        return *made;
    }
    /// The observer's address as log lines print it.
    std::string addressOf(std::string const& name)
    {
        IChannelGroupObserver const* const observed = &observer(name);
        char text[40];
        std::snprintf(text, sizeof text, "%p", static_cast<void const*>(observed));
        return text;
    }

    /// Registers an observer without the right of veto.
    XCode observe(std::string const& name, unsigned priority, bool notifyCurrent = false)
    {
        const bool veto = false;
        return group().addChannelGroupObserver(message_, &observer(name), priority, veto,
                                               notifyCurrent);
    }
    /// Registers one with the right.
    XCode observeWithVeto(std::string const& name, unsigned priority, bool notifyCurrent = false)
    {
        const bool veto = true;
        return group().addChannelGroupObserver(message_, &observer(name), priority, veto,
                                               notifyCurrent);
    }
    void unobserve(std::string const& name, bool notifyCurrent = false)
    {
        group().removeChannelGroupObserver(&observer(name), notifyCurrent);
    }
    /// Sets the timeslots; what was heard, and behind that the code, if that is a failure.
    std::string set(unsigned timeslots)
    {
        const XCode rc = group().setTimeslots(message_, timeslots);
        return heard() + (rc.code() != 0 ? std::to_string(rc.code()) : "");
    }

    std::string heard() { return log_.take(); }
    std::string lines() { return monitor_.take(); }
    std::string message() const { return message_.cString(); }

    EventLog log_;
    RecordingMonitor monitor_;
    String message_;

private:
    std::map<std::string, std::unique_ptr<RecordingGroupObserver>> observers_;
    TYPtr<TestGroup> group_;
};

#endif
