#include "LibraryObjects.h"

#include "CallText.h"

#include <drvrepo/Identifiers.h>

#include <cstdio>
#include <typeinfo>

namespace library
{
namespace
{
/// Made once; the handles here hold one reference on each record.
std::vector<TOVA_UUID> const& ownIdentifiers()
{
    static const std::vector<TOVA_UUID> ids = [] {
        std::vector<TOVA_UUID> list(ID_COUNT);
        for (int index = 0; index < ID_COUNT; ++index) {
            if (index != ID_ZERO && index < ID_A)
                continue;
            IdWords const& own = ownId(index);
            list[static_cast<std::size_t>(index)] =
                TOVA_UUID::create(own.words[0], own.words[1], own.words[2], own.words[3], own.name);
        }
        return list;
    }();
    return ids;
}

bool isIn(std::uint32_t bits, TOVA_UUID const& iid)
{
    for (std::size_t i = 0; i < INTERFACE_BITS.size(); ++i)
        if ((bits >> i & 1u) != 0 && identifier(INTERFACE_BITS[i]) == iid)
            return true;
    return false;
}
} // namespace

std::string text(String const& string)
{
    return std::string(string.cString(), static_cast<std::size_t>(string.length()));
}

String toString(std::string const& text)
{
    return String(text.data(), 0, static_cast<long>(text.size()));
}

TOVA_UUID const& identifier(int index)
{
    switch (index) {
    case ID_INVALID:
        return TOVA_UUID::INVALID();
    case ID_UNKNOWN:
        return IID_Unknown();
    case ID_DRIVER:
        return IDriver::IID();
    case ID_INFO:
        return IInfo::IID();
    case ID_CHANNEL_GROUP:
        return IChannelGroup::IID();
    case ID_DID_CHANNEL_GROUP:
        return DID_ChannelGroup();
    default:
        return ownIdentifiers()[static_cast<std::size_t>(index)];
    }
}

std::int32_t identifierReferences()
{
    std::int32_t sum = 0;
    for (TOVA_UUID const& id : ownIdentifiers())
        sum += id.data().references;
    return sum;
}

std::string World::label(void const* object) const
{
    const auto at = faces.find(object);
    return at == faces.end() ? (object == nullptr ? "null" : "stranger") : at->second;
}

void World::namePointer(void const* pointer, std::string const& name)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%p", pointer);
    pointerNames.emplace_back(buffer, "<" + name + ">");
}

std::string World::withoutPointers(std::string line) const
{
    if (line.find("0x") == std::string::npos)
        return line;
    for (auto const& named : pointerNames) {
        const std::size_t at = line.find(named.first);
        if (at != std::string::npos)
            line.replace(at, named.first.size(), named.second);
    }
    return line;
}

void World::rows(InfoContainer const& info)
{
    for (InfoContainer::Row const& row : info.rows())
        trace.add("row " + std::to_string(row.depth) + "." + std::to_string(row.detail) + " " +
                  quoted(shown(text(row.key))) + "=" +
                  quoted(withoutPointers(shown(text(row.value)))));
}

TestDriver::TestDriver(World& world, Counted& count, int did, String const& name, bool nests)
    : CDriver(identifier(did), name), world_(world), count_(count), nests_(nests)
{
    world_.faces[static_cast<IDriver*>(this)] = count_.label;
    world_.faces[static_cast<IFace*>(this)] = count_.label + "/face";
    world_.faces[static_cast<IInfo*>(this)] = count_.label + "/info";
}

TestDriver::~TestDriver()
{
    world_.faces.erase(static_cast<IDriver*>(this));
    world_.faces.erase(static_cast<IFace*>(this));
    world_.faces.erase(static_cast<IInfo*>(this));
    world_.trace.add(count_.label + " destroyed");
}

XCode TestDriver::queryInterface(TOVA_UUID const& iid, void** out)
{
    if (isIn(offered_, iid)) {
        if (out == nullptr)
            return XCode();
        addRef();
        if (iid == IInfo::IID())
            *out = static_cast<IInfo*>(this);
        else
            *out = static_cast<IFace*>(this);
        return XCode();
    }
    const XCode base = CDriver::queryInterface(iid, out);
    return isIn(hollow_, iid) ? XCode() : base;
}

void TestDriver::addRef()
{
    ++count_.refs;
    CDriver::addRef();
}

void TestDriver::release()
{
    --count_.refs;
    CDriver::release();
}

void TestDriver::setDriverRepository(IDriverRepository* repository)
{
    CDriver::setDriverRepository(repository);
    world_.trace.add(count_.label + ".setDriverRepository(" +
                     (repository == nullptr             ? "null"
                      : repository == world_.repository ? "R"
                                                        : "stranger") +
                     ")");
}

InfoContainer& TestDriver::getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                                   unsigned int maxDetail, unsigned int detail,
                                   String const& prefix) const
{
    String key = prefix;
    info.add(depth, detail, key.concat("own"), toString(count_.label));
    if (nests_ && depth < maxDepth) {
        auto& repository = *static_cast<CDriverRepository*>(world_.repository);
        repository.getInfo(info, maxDepth, depth + 1, maxDetail, detail, toString(count_.label));
    }
    return info;
}

TestGroup::TestGroup(World& world, Counted& count, String const& name)
    : CChannelGroup(name), world_(world), count_(count)
{
    world_.faces[static_cast<IDriver*>(this)] = count_.label;
    world_.faces[static_cast<IChannelGroup*>(this)] = count_.label + "/group";
    world_.faces[static_cast<IInfo*>(this)] = count_.label + "/info";
}

TestGroup::~TestGroup()
{
    world_.faces.erase(static_cast<IDriver*>(this));
    world_.faces.erase(static_cast<IChannelGroup*>(this));
    world_.faces.erase(static_cast<IInfo*>(this));
    world_.trace.add(count_.label + " destroyed");
}

void TestGroup::addRef()
{
    ++count_.refs;
    CChannelGroup::addRef();
}

void TestGroup::release()
{
    --count_.refs;
    CChannelGroup::release();
}

void CountedDelegate::addRef()
{
    ++count_.refs;
    ObserverDelegate<IDriverRepository>::addRef();
}

void CountedDelegate::release()
{
    --count_.refs;
    ObserverDelegate<IDriverRepository>::release();
}

void CountedRepository::addRef()
{
    ++count_.refs;
    CDriverRepository::addRef();
}

void CountedRepository::release()
{
    --count_.refs;
    CDriverRepository::release();
}

/// The event as what it is; says so in the trace if it isn't what it should be.
template <class E> E& TestObserver::checked(ObserverEvent<IDriverRepository>& event)
{
    if (typeid(event) != typeid(E))
        world_.trace.add("wrong type of event");
    if (event.source.get() != world_.repository)
        world_.trace.add("wrong source");
    if (event.data.buffer().size() != 0)
        world_.trace.add("event with data");
    return static_cast<E&>(event);
}

void TestObserver::look(EvDriver& event, String const& key)
{
    if (state_.policy().peeks) {
        IDriver* const driver = event.driver.get();
        String value;
        const bool registered =
            event.source->getDriver(driver->getDriverName(), nullptr).code() == 0;
        event.source->getDriverAttachment(driver, key, value);
        world_.trace.add(
            call_text::seen(registered, text(value), driver->getDriverRepository() != nullptr));
    }
    if (state_.policy().keeps)
        kept_.emplace_back(event.clone());
}

/// An observer may do with its event what it likes.
void TestObserver::scribble(EvDriver& event)
{
    const std::uint32_t junk = 0x6a756e6b;
    event.source.reset();
    event.driver.reset();
    event.data.copyOnWrite().addTail(&junk, sizeof junk);
    if (auto* attachment = dynamic_cast<EvAttachment*>(&event)) {
        attachment->key = "scribbled";
        attachment->value = "scribbled";
    }
}

XCode TestObserver::answer(std::int32_t code, std::string const& before, std::string const& after,
                           String& error)
{
    if (before != after)
        error = toString(after);
    call_text::answer(world_.trace, code, before, after);
    return XCode(code);
}

XCode TestObserver::onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event)
{
    auto& ev = checked<EvDriver>(event);
    const std::string before = text(error);
    const std::string name = text(ev.driver->getDriverName());
    world_.trace.add(call_text::added(label_, world_.label(ev.driver.get()), before));
    look(ev, String());
    if (state_.policy().scribbles)
        scribble(ev);
    std::string after = before;
    const std::int32_t code = state_.added(name, after);
    return answer(code, before, after, error);
}

void TestObserver::onDriverRemoved(ObserverEvent<IDriverRepository>& event)
{
    auto& ev = checked<EvDriver>(event);
    world_.trace.add(call_text::removed(label_, world_.label(ev.driver.get())));
    look(ev, String());
    if (state_.policy().scribbles)
        scribble(ev);
}

XCode TestObserver::onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event)
{
    auto& ev = checked<EvAttachment>(event);
    const std::string before = text(error);
    const std::string key = text(ev.key);
    const std::string value = text(ev.value);
    world_.trace.add(call_text::set(label_, world_.label(ev.driver.get()), key, value, before));
    look(ev, ev.key);
    if (state_.policy().scribbles)
        scribble(ev);
    std::string after = before;
    const std::int32_t code = state_.set(key, value, after);
    return answer(code, before, after, error);
}

void TestObserver::onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event)
{
    auto& ev = checked<EvAttachment>(event);
    world_.trace.add(
        call_text::cleared(label_, world_.label(ev.driver.get()), text(ev.key), text(ev.value)));
    look(ev, ev.key);
    if (state_.policy().scribbles)
        scribble(ev);
}

void TestObserver::dropKept()
{
    for (auto& event : kept_) {
        auto const& ev = static_cast<EvDriver const&>(*event);
        auto const* attachment = dynamic_cast<EvAttachment const*>(&ev);
        world_.trace.add(label_ + " kept " + world_.label(ev.driver.get()) + " " +
                         quoted(attachment == nullptr ? "" : text(attachment->key)) + "=" +
                         quoted(attachment == nullptr ? "" : text(attachment->value)));
        event.reset();
    }
    kept_.clear();
}

std::string TestGroupObserver::told(std::string const& method,
                                    ObserverEvent<IChannelGroup> const& event) const
{
    std::string group = world_.label(event.source.get());
    group = group.substr(0, group.find('/'));
    return call_text::timeslots(label_, method, group, event.data.word(0), event.data.word(1),
                                event.data.word(2));
}

/// Returns whether a reaction wants to refuse.
bool TestGroupObserver::hear(std::string const& method, ObserverEvent<IChannelGroup>& event)
{
    world_.trace.add(told(method, event));
    if (event.data.buffer().size() != 12)
        world_.trace.add("event with other data");
    if (state_.policy().peeks)
        world_.trace.add("  sees " + hex8(event.source->getTimeslots()));
    if (state_.policy().keeps)
        kept_.emplace_back(event.clone());
    if (state_.policy().scribbles) {
        const std::uint32_t junk = 0x6a756e6b;
        event.source.reset();
        event.data.copyOnWrite().addTail(&junk, sizeof junk);
    }
    return react && react();
}

XCode TestGroupObserver::onTimeslotsAdded(String& message, ObserverEvent<IChannelGroup>& event)
{
    const std::string before = text(message);
    const std::uint32_t changed = event.data.word(2);
    const bool refuses = hear("onTimeslotsAdded with veto", event);
    std::string after = before;
    std::int32_t code = state_.timeslots(changed, after);
    if (refuses)
        code = -1;
    if (before != after)
        message = toString(after);
    call_text::answer(world_.trace, code, before, after);
    return XCode(code);
}

void TestGroupObserver::onTimeslotsAdded(ObserverEvent<IChannelGroup>& event)
{
    hear("onTimeslotsAdded", event);
}

void TestGroupObserver::onTimeslotsRemoved(ObserverEvent<IChannelGroup>& event)
{
    hear("onTimeslotsRemoved", event);
}

void TestGroupObserver::dropKept()
{
    for (auto& event : kept_) {
        world_.trace.add(told("kept", *event));
        event.reset();
    }
    kept_.clear();
}

void TraceMonitor::write(int level, char const* fmt, std::va_list arguments) const
{
    char buffer[512];
    std::vsnprintf(buffer, sizeof buffer, fmt, arguments);
    world_.trace.add("log " + std::to_string(level) + " " + quoted(world_.withoutPointers(buffer)));
}

} // namespace library
