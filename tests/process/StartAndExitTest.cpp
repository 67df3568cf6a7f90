#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/DRIVER.h>
#include <drvrepo/IDriverRepositoryObserver.h>
#include <drvrepo/Identifiers.h>

#include <support/Child.h>
#include <support/ScriptLeaks.h>

// How the process's repository begins and ends among the static objects of a program. Each case
// runs in a process of its own and ends by std::exit: its exit handlers and destructors run.

namespace
{

/// Runs `body` in a child that exits with 0; what it wrote.
template <class Body> std::string exiting(Body body)
{
    const auto leave = [](int status) { std::exit(status); };
    return inChild(
        [&body](std::FILE* out) {
            body(out);
            return 0;
        },
        leave);
}

class Deaf : public IDriverRepositoryObserver
{
public:
    using Event = ObserverEvent<IDriverRepository>;

    XCode onDriverAdded(String&, Event&) override { return XCode(); }
    void onDriverRemoved(Event&) override {}
    XCode onDriverAttachmentSet(String&, Event&) override { return XCode(); }
    void onDriverAttachmentCleared(Event&) override {}
};

/// A static part of a program, with a driver and a listener in the registry until its end.
class Component
{
public:
    explicit Component(std::FILE* out) : out_(out) {}
    Component(Component const&) = delete;
    Component& operator=(Component const&) = delete;
    ~Component()
    {
        if (!registry_)
            return;
        registry_.get()->removeDriverRepositoryObserver("component");
        registry_.get()->removeDriver(driver_.get());
        std::fprintf(out_, "%s", driver_.get()->getDriverRepository() == nullptr ? "out" : "in");
        std::fflush(out_);
    }

    void start()
    {
        registry_ = TYPtr<IDriverRepository>::share(DRIVER::INSTANCE().get());
        driver_.reset(new CDriver(IDriver::DID_UNKNOWN(), "component"));
        String error;
        registry_.get()->addDriver(error, driver_.get());
        registry_.get()->addDriverRepositoryObserver(error, "component", TOVA_UUID::INVALID(),
                                                     TOVA_UUID::INVALID(), "", 1, true, true,
                                                     &observer_);
        std::fprintf(out_, "%s, ",
                     driver_.get()->getDriverRepository() == registry_.get() ? "in" : "out");
        std::fflush(out_);
    }

private:
    std::FILE* const out_;
    Deaf observer_;
    TYPtr<IDriverRepository> registry_;
    TYPtr<CDriver> driver_;
};

TEST(StartAndExit, RegistryThatNobodyAsksForIsNotMade)
{
    EXPECT_EQ("0: ", exiting([](std::FILE*) {}));
}

TEST(StartAndExit, RegistryEndsWithTheProcess)
{
    EXPECT_EQ("0: made", exiting([](std::FILE* out) {
                  if (DRIVER::INSTANCE())
                      std::fprintf(out, "made");
              }));
}

// The component goes before the registry does.
TEST(StartAndExit, ComponentMadeAfterTheFirstInstance)
{
    EXPECT_EQ("0: in, out", exiting([](std::FILE* out) {
                  DRIVER::INSTANCE();
                  static Component component(out);
                  component.start();
              }));
}

// The registry's own reference goes first; the component's keeps it.
TEST(StartAndExit, ComponentMadeBeforeTheFirstInstance)
{
    EXPECT_EQ("0: in, out", exiting([](std::FILE* out) {
                  static Component component(out);
                  component.start();
              }));
}

// What is left inside is not torn down, and stays for good: the one case without a watch for leaks.
TEST(StartAndExit, WhatIsLeftInsideIsLeftAlone)
{
    EXPECT_EQ("0: ready", exiting([](std::FILE* out) {
                  const LeaksWanted leaks;
                  static Deaf observer;
                  String error;
                  CDriver* const driver = new CDriver(IDriver::DID_UNKNOWN(), "left");
                  DRIVER::INSTANCE()->addDriver(error, driver);
                  DRIVER::INSTANCE()->setDriverAttachment(error, "left", "key", "value");
                  DRIVER::INSTANCE()->addDriverRepositoryObserver(
                      error, "left", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "", 1, true, true,
                      &observer);
                  driver->release();
                  std::fprintf(out, "ready");
              }));
}

std::FILE* s_out = nullptr;

/// An exit handler that was there before the identifiers, and so runs when they are gone.
void useIdentifiers()
{
    const TOVA_UUID copies[] = {IDriver::IID(),       IDriver::DID_UNKNOWN(), DID_ChannelGroup(),
                                IChannelGroup::IID(), CID_Driver(),           TOVA_UUID::INVALID()};
    const TOVA_UUID again(copies[0]);
    const bool good = again == IDriver::IID() && copies[1] != copies[2] &&
                      std::string(copies[4].name()) == "CID_Driver";
    std::fprintf(s_out, "%s", good ? "good" : "bad");
    std::fflush(s_out);
}

TEST(StartAndExit, IdentifiersServeExitHandlers)
{
    EXPECT_EQ("0: good", exiting([](std::FILE* out) {
                  s_out = out;
                  std::atexit(useIdentifiers);
                  const TYPtr<CDriver> driver(new CDriver(IDriver::DID_UNKNOWN(), "fxs 1"));
                  const TYPtr<CChannelGroup> group(new CChannelGroup("B"));
                  void* face = nullptr;
                  group.get()->queryInterface(IInfo::IID(), &face);
                  group.get()->release();
                  CID_Driver();
              }));
}

// The thread is never joined: it works until the process is gone.
TEST(StartAndExit, ThreadUsesStringsAndIdentifiersWhileTheProcessExits)
{
    for (int process = 0; process < 20; ++process)
        EXPECT_EQ("0: ready", exiting([](std::FILE* out) {
                      static std::atomic<int> turns{0};
                      static const String& shared = *new String("shared");
                      std::thread([] {
                          for (;;) {
                              String copy(shared);
                              copy.concatf(" %d", turns.load());
                              const TOVA_UUID id(IDriver::IID());
                              if (id == IDriver::IID() && copy.startsWith(shared))
                                  ++turns;
                          }
                      }).detach();
                      while (turns < 100)
                          std::this_thread::yield();
                      DRIVER::INSTANCE();
                      std::fprintf(out, "ready");
                  }));
}

} // namespace
