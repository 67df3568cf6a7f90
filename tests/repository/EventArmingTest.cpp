#include <utility>
#include <vector>

#include <support/RepositoryFixture.h>

namespace
{

using EvDriver = IDriverRepository::EvDriver;
using EvAttachment = IDriverRepository::EvAttachment;
using Event = ObserverEvent<IDriverRepository>;

/// Notes what it is given, and leaves nothing of it as it was; a gentle one but for a byte of data.
class Spoiler final : public IDriverRepositoryObserver
{
public:
    bool gentle = false;

    XCode onDriverAdded(String&, Event& event) override
    {
        note(static_cast<EvDriver&>(event), "added");
        return XCode();
    }
    void onDriverRemoved(Event& event) override { note(static_cast<EvDriver&>(event), "removed"); }
    XCode onDriverAttachmentSet(String&, Event& event) override
    {
        note(static_cast<EvAttachment&>(event), "set");
        return XCode();
    }
    void onDriverAttachmentCleared(Event& event) override
    {
        note(static_cast<EvAttachment&>(event), "cleared");
    }

    std::string take() { return std::exchange(noted_, ""); }

private:
    void note(EvDriver& event, std::string const& what)
    {
        noted_ += (noted_.empty() ? "" : ", ") + what;
        if (!event.source)
            noted_ += " by nobody";
        noted_ += event.driver ? std::string(" ") + event.driver.get()->getDriverName().cString()
                               : std::string(" nobody");
        noted_ += " " + std::to_string(event.data.buffer().size());
        event.data.copyOnWrite().addTail("spoilt", gentle ? 1 : 6);
        if (gentle)
            return;
        event.source.reset();
        event.driver.reset();
    }
    void note(EvAttachment& event, std::string const& what)
    {
        note(static_cast<EvDriver&>(event),
             what + " " + event.key.cString() + "=" + event.value.cString());
        event.key = gentle ? event.key : "spoilt";
        event.value = gentle ? event.value : "spoilt";
    }

    std::string noted_;
};

struct EventArming : RepositoryFixture
{
    EventArming()
    {
        for (char const* name : {"1", "2", "3"})
            EXPECT_EQ(0, repository()
                             .addDriverRepositoryObserver(error_, name, TOVA_UUID::INVALID(),
                                                          TOVA_UUID::INVALID(), "", 1, false, true,
                                                          &spoiler_)
                             .code());
    }
    ~EventArming() override
    {
        for (char const* name : {"1", "2", "3"})
            repository().removeDriverRepositoryObserver(name);
    }

    Spoiler spoiler_;
};

TEST_F(EventArming, EachListenerFindsEveryFieldAsItShouldBe)
{
    add("d");
    EXPECT_EQ("added d 0, added d 0, added d 0", spoiler_.take());
    attach("d", "k", "1");
    EXPECT_EQ("set k=1 d 0, set k=1 d 0, set k=1 d 0", spoiler_.take());
    attach("d", "k", "2");
    EXPECT_EQ("cleared k=1 d 0, cleared k=1 d 0, cleared k=1 d 0, "
              "set k=2 d 0, set k=2 d 0, set k=2 d 0",
              spoiler_.take());
    remove("d");
    EXPECT_EQ("cleared k=2 d 0, removed d 0, cleared k=2 d 0, removed d 0, "
              "cleared k=2 d 0, removed d 0",
              spoiler_.take());
}

TEST_F(EventArming, OneByteThatAListenerLeavesIsNotHandedOn)
{
    spoiler_.gentle = true;
    add("d");
    attach("d", "k", "1");
    EXPECT_EQ("added d 0, added d 0, added d 0, set k=1 d 0, set k=1 d 0, set k=1 d 0",
              spoiler_.take());
    attach("d", "k", "");
    remove("d");
    EXPECT_EQ("cleared k=1 d 0, cleared k=1 d 0, cleared k=1 d 0, "
              "removed d 0, removed d 0, removed d 0",
              spoiler_.take());
}

TEST_F(EventArming, ARegistrationTellsOfEachDriverAsItIs)
{
    add("d");
    add("e");
    attach("d", "k", "1");
    attach("e", "m", "2");
    repository().removeDriverRepositoryObserver("2");
    spoiler_.take();
    repository().addDriverRepositoryObserver(error_, "2", TOVA_UUID::INVALID(),
                                             TOVA_UUID::INVALID(), "", 1, false, true, &spoiler_);
    EXPECT_EQ("added d 0, set k=1 d 0, added e 0, set m=2 e 0", spoiler_.take());
    repository().removeDriverRepositoryObserver("2");
    EXPECT_EQ("cleared m=2 e 0, removed e 0, cleared k=1 d 0, removed d 0", spoiler_.take());
}

/// Says what its event holds before and after it has itself removed from inside.
class Leaver final : public RecordingObserver
{
public:
    Leaver(EventLog& log, IDriverRepository& repository)
        : RecordingObserver(log, "L"), repository_(repository)
    {}

    void onDriverAttachmentCleared(Event& event) override
    {
        auto const& attachment = static_cast<EvAttachment&>(event);
        const std::string before = attachment.key.cString();
        repository_.removeDriverRepositoryObserver("L");
        seen_ += before + attachment.key.cString() + attachment.value.cString() + " ";
    }

    std::string seen_;

private:
    IDriverRepository& repository_;
};

TEST_F(RepositoryFixture, WhatIsToldFromInsideLeavesTheEventOfTheOuterCallAlone)
{
    Leaver leaver(log_, repository());
    add("d");
    attach("d", "k", "1");
    attach("d", "m", "2");
    repository().addDriverRepositoryObserver(error_, "L", TOVA_UUID::INVALID(),
                                             TOVA_UUID::INVALID(), "", 1, false, true, &leaver);
    repository().removeDriverRepositoryObserver("L");
    EXPECT_EQ("kk1 mm2 ", leaver.seen_);
}

} // namespace
