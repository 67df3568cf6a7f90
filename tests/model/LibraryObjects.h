#ifndef TESTS_MODEL_LIBRARY_OBJECTS_H
#define TESTS_MODEL_LIBRARY_OBJECTS_H

#include "Policy.h"
#include "Program.h"
#include "Trace.h"

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IDriverRepositoryObserver.h>
#include <drvrepo/ObserverDelegate.h>
#include <utility/InfoContainer.h>
#include <utility/Monitor.h>

#include <functional>
#include <map>
#include <memory>

/// The drivers, observers and counters with which a program works on the library.
namespace library
{
std::string text(String const& string);
String toString(std::string const& text);

/// The identifier of an index of Program.h.
TOVA_UUID const& identifier(int index);

/// How many references there are on the identifiers of our own making.
std::int32_t identifierReferences();

/// An object whose references are counted beside the library.
struct Counted
{
    std::string label;
    std::int32_t refs = 1;
};

/// What the objects of one run share.
struct World
{
    Trace trace;
    IDriverRepository* repository = nullptr;
    /// The parts of living objects by address: "D1", "D1/face".
    std::map<void const*, std::string> faces;
    /// Texts of addresses, and what stands for them in a trace.
    std::vector<std::pair<std::string, std::string>> pointerNames;

    std::string label(void const* object) const;
    void namePointer(void const* pointer, std::string const& name);
    /// The text with the addresses of observers replaced by their names.
    std::string withoutPointers(std::string text) const;
    void rows(InfoContainer const& info);
};

/// Some interface of a driver, a base of its own.
class IFace : public IUnknown
{};

class TestDriver : public CDriver, public IFace, public IInfo
{
public:
    TestDriver(World& world, Counted& count, int did, String const& name, bool nests);
    ~TestDriver() override;

    void offer(std::uint32_t bits) { offered_ = bits; }
    void offerHollow(std::uint32_t bits) { hollow_ = bits; }

    XCode queryInterface(TOVA_UUID const& iid, void** out) override;
    void addRef() override;
    void release() override;
    Lock* getLock() override { return CDriver::getLock(); }
    void setDriverRepository(IDriverRepository* repository) override;
    InfoContainer& getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                           unsigned int maxDetail, unsigned int detail,
                           String const& prefix) const override;

private:
    World& world_;
    Counted& count_;
    std::uint32_t offered_ = 0;
    std::uint32_t hollow_ = 0;
    bool nests_;
};

class TestGroup : public CChannelGroup
{
public:
    TestGroup(World& world, Counted& count, String const& name);
    ~TestGroup() override;
    void addRef() override;
    void release() override;

private:
    World& world_;
    Counted& count_;
};

class CountedDelegate : public ObserverDelegate<IDriverRepository>
{
public:
    CountedDelegate(Counted& count, IDriverRepositoryObserver* observer)
        : ObserverDelegate<IDriverRepository>(observer), count_(count)
    {}
    void addRef() override;
    void release() override;

private:
    Counted& count_;
};

class CountedRepository : public CDriverRepository
{
public:
    CountedRepository(TYEventLoop& loop, Counted& count) : CDriverRepository(loop), count_(count) {}
    void addRef() override;
    void release() override;

private:
    Counted& count_;
};

/// Answers by a policy and writes down what it hears.
class TestObserver : public IDriverRepositoryObserver
{
public:
    TestObserver(World& world, std::string label) : world_(world), label_(std::move(label)) {}

    void follow(Policy policy) { state_ = PolicyState(std::move(policy)); }
    void dropKept();

    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) override;
    void onDriverRemoved(ObserverEvent<IDriverRepository>& event) override;
    XCode onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event) override;
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) override;

private:
    using EvDriver = IDriverRepository::EvDriver;
    using EvAttachment = IDriverRepository::EvAttachment;

    template <class E> E& checked(ObserverEvent<IDriverRepository>& event);
    void look(EvDriver& event, String const& key);
    XCode answer(std::int32_t code, std::string const& before, std::string const& after,
                 String& error);
    void scribble(EvDriver& event);

    World& world_;
    std::string label_;
    PolicyState state_;
    std::vector<std::unique_ptr<ObserverEvent<IDriverRepository>>> kept_;
};

/// The same for the observers of a group.
class TestGroupObserver : public IChannelGroupObserver
{
public:
    TestGroupObserver(World& world, std::string label) : world_(world), label_(std::move(label)) {}

    void follow(Policy policy) { state_ = PolicyState(std::move(policy)); }

    /// What else is done at each call; true: what can be refused is refused.
    std::function<bool()> react;
    void dropKept();

    XCode onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event) override;
    void onTimeslotsAdded(ObserverEvent<IChannelGroup>& event) override;
    void onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event) override;

private:
    std::string told(std::string const& method, ObserverEvent<IChannelGroup> const& event) const;
    bool hear(std::string const& method, ObserverEvent<IChannelGroup>& event);

    World& world_;
    std::string label_;
    PolicyState state_;
    std::vector<std::unique_ptr<ObserverEvent<IChannelGroup>>> kept_;
};

/// Writes log lines into the trace.
class TraceMonitor : public RTD::Monitor
{
public:
    explicit TraceMonitor(World& world) : world_(world) {}

protected:
    void write(int level, char const* fmt, std::va_list arguments) const override
        UTILITY_PRINTF(3, 0);

private:
    World& world_;
};

} // namespace library

#endif
