#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <pthread.h>
#include <sys/mman.h>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IChannelGroupObserver.h>
#include <drvrepo/IDriverRepositoryObserver.h>

// Components answer one another: 256 operations, each called from inside the one before, fit into a
// stack of 256 KiB on the target, also when the innermost one is refused or throws.

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define LARGE_FRAMES
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define LARGE_FRAMES
#endif
#endif

namespace
{

constexpr int LEVELS = 256;
// The target's words are half as wide as those of a development machine.
constexpr std::size_t STACK = (sizeof(void*) == 4 ? 256 : 512) * 1024;

struct TooDeep
{};

enum class Bottom { ACCEPTS, REFUSES, THROWS };

/// A name for each level.
String nameOf(int level)
{
    return String().format("x%d", level);
}

/// Everybody around a repository and a group, and one observer that goes one level deeper each time
/// that it hears something.
class Well : public IDriverRepositoryObserver, public IChannelGroupObserver
{
public:
    using Event = ObserverEvent<IDriverRepository>;
    using GroupEvent = ObserverEvent<IChannelGroup>;

    Well(void (*deeper)(Well&), Bottom bottom)
        : repository(new CDriverRepository(loop_)), group(new CChannelGroup("B")), deeper_(deeper),
          bottom_(bottom)
    {
        for (int number = 0; number <= LEVELS + 1; ++number) {
            names.push_back(nameOf(number));
            drivers.emplace_back(new CDriver(IDriver::DID_UNKNOWN(), names.back()));
        }
    }

    XCode onDriverAdded(String&, Event&) override { return answer(); }
    void onDriverRemoved(Event&) override { answer(); }
    XCode onDriverAttachmentSet(String&, Event&) override { return answer(); }
    void onDriverAttachmentCleared(Event&) override { answer(); }
    XCode onTimeslotsAdded(String&, GroupEvent&) override { return answer(); }
    void onTimeslotsAdded(GroupEvent&) override { answer(); }
    void onTimeslotsRemoved(GroupEvent&) override { answer(); }

    void listen(int number)
    {
        const bool veto = true;
        const bool snapshot = true;
        repository.get()->addDriverRepositoryObserver(
            error, names[static_cast<std::size_t>(number)], TOVA_UUID::INVALID(),
            TOVA_UUID::INVALID(), String::EMPTY(), 1, veto, snapshot, this);
    }
    IDriver* driver(int number) { return drivers[static_cast<std::size_t>(number)].get(); }
    void set(int number, String const& value)
    {
        repository.get()->setDriverAttachment(error, driver(0),
                                              names[static_cast<std::size_t>(number)], value);
    }
    void go() { deeper_(*this); }

    /// Takes everything out again, quietly.
    void empty()
    {
        quiet = true;
        for (String const& name : names) {
            repository.get()->removeDriverRepositoryObserver(name);
            repository.get()->removeDriver(name);
        }
    }

    TYEventLoop loop_;
    TYPtr<CDriverRepository> repository;
    TYPtr<CChannelGroup> group;
    std::vector<String> names;
    std::vector<TYPtr<CDriver>> drivers;
    String error;
    int level = 0;
    bool quiet = true;
    bool backwards = false; // on the way back somebody is told again, and does nothing

private:
    XCode answer()
    {
        if (quiet || backwards)
            return XCode();
        if (++level <= LEVELS) {
            deeper_(*this);
            return XCode();
        }
        backwards = true;
        if (bottom_ == Bottom::THROWS)
            throw TooDeep();
        return XCode(bottom_ == Bottom::REFUSES ? -1 : 0);
    }

    void (*const deeper_)(Well&);
    const Bottom bottom_;
};

/// A way down: what is there before, and what each level does.
struct Way
{
    char const* name;
    void (*prepare)(Well&);
    void (*deeper)(Well&);
};

const Way WAYS[] = {
    {"drivers come", [](Well& w) { w.listen(0); },
     [](Well& w) { w.repository.get()->addDriver(w.error, w.driver(w.level + 1)); }},
    {"drivers go",
     [](Well& w) {
         w.listen(0);
         for (TYPtr<CDriver> const& driver : w.drivers)
             w.repository.get()->addDriver(w.error, driver.get());
     },
     [](Well& w) { w.repository.get()->removeDriver(w.driver(w.level + 1)); }},
    {"listeners come", [](Well& w) { w.repository.get()->addDriver(w.error, w.driver(0)); },
     [](Well& w) { w.listen(w.level + 1); }},
    {"listeners go",
     [](Well& w) {
         w.repository.get()->addDriver(w.error, w.driver(0));
         for (int number = 0; number <= LEVELS + 1; ++number)
             w.listen(number);
     },
     [](Well& w) {
         w.repository.get()->removeDriverRepositoryObserver(
             w.names[static_cast<std::size_t>(w.level) + 1]);
     }},
    {"attachments come",
     [](Well& w) {
         w.listen(0);
         w.repository.get()->addDriver(w.error, w.driver(0));
     },
     [](Well& w) { w.set(w.level + 1, w.names[1]); }},
    {"attachments go",
     [](Well& w) {
         w.listen(0);
         w.repository.get()->addDriver(w.error, w.driver(0));
         for (int number = 0; number <= LEVELS + 1; ++number)
             w.set(number, w.names[1]);
     },
     [](Well& w) { w.set(w.level + 1, String::EMPTY()); }},
    {"timeslots come and go",
     [](Well& w) {
         const bool veto = true;
         const bool notifyCurrent = false;
         w.group.get()->addChannelGroupObserver(w.error, &w, 1, veto, notifyCurrent);
     },
     [](Well& w) { w.group.get()->setTimeslots(w.error, w.level % 2 == 0 ? 1 : 0); }},
};

/// A stack whose bytes show how much of it was used.
class Stack
{
public:
    Stack()
        : block_(mmap(nullptr, STACK, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        std::memset(block_, MARK, STACK);
    }
    Stack(Stack const&) = delete;
    Stack& operator=(Stack const&) = delete;
    ~Stack() { munmap(block_, STACK); }

    /// Runs `start(argument)` on it to the end.
    void run(void* (*start)(void*), void* argument)
    {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        ASSERT_EQ(0, pthread_attr_setstack(&attributes, block_, STACK));
        pthread_t thread;
        ASSERT_EQ(0, pthread_create(&thread, &attributes, start, argument));
        pthread_join(thread, nullptr);
        pthread_attr_destroy(&attributes);
    }
    std::size_t used() const
    {
        auto const* const bytes = static_cast<unsigned char const*>(block_);
        return static_cast<std::size_t>(
            STACK - (std::find_if(bytes, bytes + STACK, [](unsigned char c) { return c != MARK; }) -
                     bytes));
    }

private:
    static constexpr unsigned char MARK = 0xa5;

    void* const block_;
};

extern "C" void* goDown(void* well)
{
    try {
        static_cast<Well*>(well)->go();
    } catch (TooDeep const&) {
    }
    return nullptr;
}

class Depth : public testing::TestWithParam<Bottom>
{};

TEST_P(Depth, OfEachKindFitsIntoASmallStack)
{
#ifdef LARGE_FRAMES
    GTEST_SKIP() << "the sanitizer's frames are larger";
#endif
    for (Way const& way : WAYS) {
        Well well(way.deeper, GetParam());
        way.prepare(well);
        well.quiet = false;
        Stack stack;
        stack.run(goDown, &well);
        EXPECT_EQ(LEVELS + 1, well.level) << way.name;
        std::printf("%-22s %3zu KiB, %zu bytes a level\n", way.name, stack.used() / 1024,
                    stack.used() / LEVELS);
        EXPECT_LT(stack.used(), STACK - 1024) << way.name;
        well.empty();
    }
}

INSTANTIATE_TEST_SUITE_P(Bottom, Depth,
                         testing::Values(Bottom::ACCEPTS, Bottom::REFUSES, Bottom::THROWS),
                         [](testing::TestParamInfo<Bottom> const& at) {
                             return at.param == Bottom::ACCEPTS   ? "Accepts"
                                    : at.param == Bottom::REFUSES ? "Refuses"
                                                                  : "Throws";
                         });

} // namespace
