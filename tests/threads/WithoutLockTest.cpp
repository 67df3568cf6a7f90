#include <string>

#include <gtest/gtest.h>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IKernelDriverRepository.h>
#include <drvrepo/Identifiers.h>
#include <drvrepo/ObserverDelegate.h>

#include "FourThreads.h"

// What needs no lock: copies of strings, the counts of repositories, groups and delegates, clones
// of events, identifiers.

namespace
{

TEST(WithoutLock, StringsAreCopiedAndDroppedOnFourThreads)
{
    const String text("shared by all");
    const String empty;
    onFourThreads([&](int) {
        for (int round = rounds(5000); round > 0; --round) {
            String copy(text);
            const String other(copy);
            copy = empty;
            copy = other;
            copy.concatf(" %d", round);
            EXPECT_TRUE(copy.startsWith(text));
        }
    });
    EXPECT_EQ(1, text.buffer()->references());
    EXPECT_STREQ("shared by all", text.cString());
}

/// Takes and gives back references on four threads; the object must outlive that, and go then.
template <class Counted> void countOnFourThreads(Counted* object)
{
    onFourThreads([object](int) {
        for (int round = rounds(5000); round > 0; --round) {
            object->addRef();
            object->release();
        }
        object->addRef();
    });
    for (int thread = 0; thread < THREADS; ++thread)
        object->release();
}

class Group : public CChannelGroup
{
public:
    explicit Group(bool& gone) : CChannelGroup("B"), gone_(gone) {}
    ~Group() override { gone_ = true; }

private:
    bool& gone_;
};

class Repository : public CDriverRepository
{
public:
    Repository(TYEventLoop& loop, bool& gone) : CDriverRepository(loop), gone_(gone) {}
    ~Repository() override { gone_ = true; }

private:
    bool& gone_;
};

class Delegate : public ObserverDelegate<IDriverRepository>
{
public:
    explicit Delegate(bool& gone) : ObserverDelegate<IDriverRepository>(nullptr), gone_(gone) {}
    ~Delegate() override { gone_ = true; }

private:
    bool& gone_;
};

template <class Counted> void expectToGoWithItsLastReference(Counted* object, bool& gone)
{
    countOnFourThreads(object);
    EXPECT_FALSE(gone);
    object->release();
    EXPECT_TRUE(gone);
}

TEST(WithoutLock, ReferencesAreCountedOnFourThreads)
{
    TYEventLoop loop;
    bool groupGone = false;
    expectToGoWithItsLastReference(new Group(groupGone), groupGone);
    bool repositoryGone = false;
    expectToGoWithItsLastReference(new Repository(loop, repositoryGone), repositoryGone);
    bool delegateGone = false;
    expectToGoWithItsLastReference(new Delegate(delegateGone), delegateGone);
}

TEST(WithoutLock, LastReferenceMayBeGivenBackOnAnyThread)
{
    for (int round = rounds(1000); round > 0; --round) {
        bool gone = false;
        Group* const group = new Group(gone);
        for (int thread = 1; thread < THREADS; ++thread)
            group->addRef();
        onFourThreads([group](int) { group->release(); });
        EXPECT_TRUE(gone);
    }
}

TEST(WithoutLock, EventsAreClonedAndDroppedOnFourThreads)
{
    const TYPtr<CChannelGroup> group(new CChannelGroup("B"));
    onFourThreads([&group](int thread) {
        ObserverEvent<IChannelGroup> event(group.get());
        const std::uint32_t words[3] = {static_cast<std::uint32_t>(thread), 2, 3};
        event.data.copyOnWrite().addTail(words, sizeof words);
        for (int round = rounds(5000); round > 0; --round) {
            const std::unique_ptr<ObserverEvent<IChannelGroup>> first(event.clone());
            const std::unique_ptr<ObserverEvent<IChannelGroup>> second(first->clone());
            EXPECT_EQ(words[0], second->data.word(0));
        }
    });
}

/// All identifiers, as one text of their names.
std::string allNames()
{
    std::string names;
    for (TOVA_UUID const* id :
         {&CID_Driver(), &CID_DriverRepository(), &CID_DriverRepositoryObserverAddLocal(),
          &CID_ChannelGroup(), &DID_ChannelGroup(), &IChannelGroup::IID(), &IDriver::IID(),
          &IDriver::CID_PROXY(), &IDriver::CID_STUB(), &IDriver::DID_UNKNOWN(),
          &IDriverRepository::IID(), &IKernelDriverRepository::IID(), &IID_Unknown(), &IInfo::IID(),
          &TOVA_UUID::INVALID()}) {
        const TOVA_UUID copy(*id);
        names += std::string(copy == *id ? " " : "!") + copy.name();
    }
    return names;
}

TEST(WithoutLock, IdentifiersAreUsedOnFourThreads)
{
    onFourThreads([](int) {
        for (int round = rounds(2000); round > 0; --round)
            EXPECT_EQ(" CID_Driver CID_DriverRepository CID_DriverRepositoryObserverAddLocal"
                      " CID_ChannelGroup DID_ChannelGroup IChannelGroup IDriver CDriverProxy"
                      " CDriverStub DID_UNKNOWN IDriverRepository IKernelDriverRepository IUnknown"
                      " IInfo INVALID",
                      allNames());
    });
}

} // namespace
