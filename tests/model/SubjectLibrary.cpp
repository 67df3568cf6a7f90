#include "SubjectLibrary.h"

#include "CallText.h"

#include <drvrepo/MON_DRV.h>

using library::Counted;
using library::identifier;
using library::toString;
using Kind = Step::Kind;
using Alias = Step::Alias;

SubjectLibrary::Arguments::Arguments(Step const& step)
    : name(toString(step.name)), key(toString(step.key)), value(toString(step.value)),
      text(toString(step.text)), error(step.alias == Alias::NAME    ? name
                                       : step.alias == Alias::KEY   ? key
                                       : step.alias == Alias::VALUE ? value
                                                                    : text)
{
    for (auto const& attribute : step.attributes)
        attributes.put(toString(attribute.first), toString(attribute.second));
}

SubjectLibrary::SubjectLibrary()
    : repositoryCount_{"R", 1},
      repository_(new library::CountedRepository(CRIT::INSTANCE(), repositoryCount_))
{
    world_.repository = repository_;
    for (int i = 0; i < OBSERVERS; ++i) {
        const std::string label = "o" + std::to_string(i);
        observers_.push_back(std::make_unique<library::TestObserver>(world_, label));
        world_.namePointer(observers_.back().get(), label);
    }
    for (int i = 0; i < GROUP_OBSERVERS; ++i) {
        const std::string label = "p" + std::to_string(i);
        groupObservers_.push_back(std::make_unique<library::TestGroupObserver>(world_, label));
        world_.namePointer(groupObservers_.back().get(), label);
    }
    for (std::size_t i = 0; i < groupObservers_.size(); ++i)
        groupObservers_[i]->react = [this, i] { return react(i); };
    MON_DRV = &monitor_;
}

SubjectLibrary::~SubjectLibrary()
{
    MON_DRV = nullptr;
    record_.reset();
    repository_->release();
}

std::vector<std::string> const& SubjectLibrary::run(Step const& step)
{
    world_.trace.clear();
    perform(step);
    world_.trace.add(counts());
    return world_.trace.lines();
}

void SubjectLibrary::perform(Step const& step)
{
    if (step.kind <= Kind::GET_DRIVER)
        driverStep(step);
    else if (step.kind <= Kind::DROP_KEPT)
        listenerStep(step);
    else if (step.kind <= Kind::GET_BY_POINTER)
        attachmentStep(step);
    else if (step.kind <= Kind::MONITOR)
        queryStep(step);
    else if (step.kind <= Kind::TIMESLOTS)
        groupStep(step);
    else
        recordStep(step);
}

void SubjectLibrary::result(std::string const& operation, XCode const& code, String const& error)
{
    world_.trace.add(call_text::result(operation, code.code(), library::text(error)));
}

std::string SubjectLibrary::counts() const
{
    std::string text = "refs R=" + std::to_string(repositoryCount_.refs);
    for (auto const& count : driverCounts_)
        if (count->refs > 0)
            text += " " + count->label + "=" + std::to_string(count->refs);
    for (auto const& count : delegateCounts_)
        if (count->refs > 0)
            text += " " + count->label + "=" + std::to_string(count->refs);
    return text;
}

/// The name a step passes: its own, or by reference that of the driver in its slot.
String const& SubjectLibrary::nameOf(Step const& step, Arguments const& arguments) const
{
    IDriver* const owner = step.alias == Alias::OWN_NAME ? driver(step.slot) : nullptr;
    return owner == nullptr ? arguments.name : owner->getDriverName();
}

void SubjectLibrary::drop(Slot& slot)
{
    for (; slot.holds > 0; --slot.holds)
        slot.driver->release();
    slot.driver = nullptr;
}

void SubjectLibrary::makeDriver(Step const& step)
{
    Slot& slot = slots_[step.slot];
    driverCounts_.push_back(
        std::make_unique<Counted>(Counted{"D" + std::to_string(driverCounts_.size()), 1}));
    Counted& count = *driverCounts_.back();
    const String name = toString(step.name);
    IDriver* made = nullptr;
    if (step.kind == Kind::MAKE_GROUP) {
        made = new library::TestGroup(world_, count, name);
    } else {
        auto* const driver =
            new library::TestDriver(world_, count, step.id, name, step.number != 0);
        driver->offer(step.bits);
        driver->offerHollow(step.more);
        made = driver;
    }
    drop(slot);
    slot = {made, 1};
}

void SubjectLibrary::getDriver(Step const& step)
{
    IDriver* found = nullptr;
    const XCode code = repository_->getDriver(toString(step.name), step.flag ? nullptr : &found);
    std::string line = "getDriver = " + std::to_string(code.code()) + " " + world_.label(found);
    if (found != nullptr)
        for (auto const& count : driverCounts_)
            if (count->label == world_.label(found))
                line += " " + std::to_string(count->refs);
    world_.trace.add(line);
    if (found != nullptr)
        found->release();
}

void SubjectLibrary::driverStep(Step const& step)
{
    IDriver* const it = driver(step.slot);
    const bool absent = it == nullptr && step.slot >= 0;
    Arguments arguments(step);
    switch (step.kind) {
    case Kind::MAKE_DRIVER:
    case Kind::MAKE_GROUP:
        makeDriver(step);
        break;
    case Kind::DROP_DRIVER:
        drop(slots_[step.slot]);
        break;
    case Kind::HOLD_DRIVER:
        if (it != nullptr) {
            it->addRef();
            ++slots_[step.slot].holds;
        }
        break;
    case Kind::UNHOLD_DRIVER:
        if (slots_[step.slot].holds > 1) {
            it->release();
            --slots_[step.slot].holds;
        }
        break;
    case Kind::SET_INTERFACES:
        if (auto* const driver = dynamic_cast<library::TestDriver*>(it))
            driver->offer(step.bits);
        break;
    case Kind::ADD_DRIVER:
        if (!absent) {
            const std::string label = world_.label(it);
            const XCode code = repository_->addDriver(arguments.error, it);
            result("addDriver " + label, code, arguments.error);
        }
        break;
    case Kind::REMOVE_POINTER:
        if (!absent)
            repository_->removeDriver(it);
        break;
    case Kind::REMOVE_NAME:
        repository_->removeDriver(nameOf(step, arguments));
        break;
    default:
        getDriver(step);
    }
}

void SubjectLibrary::makeDelegate(Step const& step)
{
    auto& slot = delegateSlots_[step.slot];
    if (slot != nullptr)
        slot->release();
    delegateCounts_.push_back(
        std::make_unique<Counted>(Counted{"L" + std::to_string(delegateCounts_.size()), 1}));
    slot = new library::CountedDelegate(*delegateCounts_.back(),
                                        step.other < 0 ? nullptr : observers_[step.other].get());
}

library::CountedDelegate* SubjectLibrary::delegate(Step const& step) const
{
    return step.slot < 0 ? nullptr : delegateSlots_[step.slot];
}

void SubjectLibrary::registerListener(Step const& step)
{
    Arguments a(step);
    TOVA_UUID const& classId = identifier(step.id);
    TOVA_UUID const& iid = identifier(step.iid);
    ObserverDelegate<IDriverRepository>* const forwarder = delegate(step);
    IDriverRepositoryObserver* const observer =
        step.other < 0 ? nullptr : observers_[step.other].get();
    XCode code;
    if (registration::byDelegate(step.bits))
        code = registration::hasAttributes(step.bits)
                   ? repository_->addDriverRepositoryObserver(a.error, a.name, classId, iid,
                                                              a.value, a.attributes, step.number,
                                                              step.veto, step.snapshot, forwarder)
                   : repository_->addDriverRepositoryObserver(a.error, a.name, classId, iid,
                                                              a.value, step.number, step.veto,
                                                              step.snapshot, forwarder);
    else
        code = registration::hasAttributes(step.bits)
                   ? repository_->addDriverRepositoryObserver(a.error, a.name, classId, iid,
                                                              a.value, a.attributes, step.number,
                                                              step.veto, step.snapshot, observer)
                   : repository_->addDriverRepositoryObserver(a.error, a.name, classId, iid,
                                                              a.value, step.number, step.veto,
                                                              step.snapshot, observer);
    result("register", code, a.error);
}

void SubjectLibrary::listenerStep(Step const& step)
{
    switch (step.kind) {
    case Kind::MAKE_DELEGATE:
        makeDelegate(step);
        break;
    case Kind::DROP_DELEGATE:
        if (delegateSlots_[step.slot] != nullptr)
            delegateSlots_[step.slot]->release();
        delegateSlots_[step.slot] = nullptr;
        break;
    case Kind::STOP_DELEGATE:
        if (delegateSlots_[step.slot] != nullptr)
            delegateSlots_[step.slot]->stopNotifications();
        break;
    case Kind::REGISTER:
        registerListener(step);
        break;
    case Kind::UNREGISTER:
        repository_->removeDriverRepositoryObserver(toString(step.name));
        break;
    case Kind::FOLLOW:
        observers_[step.slot]->follow(step.policy);
        break;
    default:
        observers_[step.slot]->dropKept();
    }
}

void SubjectLibrary::attachmentStep(Step const& step)
{
    IDriver* const it = driver(step.slot);
    if (it == nullptr && step.slot >= 0 &&
        (step.kind == Kind::SET_BY_POINTER || step.kind == Kind::GET_BY_POINTER))
        return;
    Arguments a(step);
    String const& name = nameOf(step, a);
    switch (step.kind) {
    case Kind::SET_ATTACHMENT: {
        const XCode code = repository_->setDriverAttachment(a.error, name, a.key, a.value);
        result("set", code, a.error);
        break;
    }
    case Kind::SET_BY_POINTER: {
        const XCode code = repository_->setDriverAttachment(a.error, it, a.key, a.value);
        result("set", code, a.error);
        break;
    }
    case Kind::GET_ATTACHMENT: {
        String const& got = repository_->getDriverAttachment(name, a.key, a.error);
        world_.trace.add((&got == &a.error ? "get " : "another ") + quoted(library::text(got)));
        break;
    }
    default:
        repository_->getDriverAttachment(it, a.key, a.error);
        world_.trace.add("get " + quoted(library::text(a.error)));
    }
}

void SubjectLibrary::getInterface(Step const& step)
{
    void* object = nullptr;
    const XCode code = repository_->getDriverInterface(toString(step.name), identifier(step.iid),
                                                       step.flag ? nullptr : &object);
    world_.trace.add("interface = " + std::to_string(code.code()) + " " + world_.label(object));
    if (object != nullptr)
        static_cast<IUnknown*>(object)->release();
}

void SubjectLibrary::getDrivers(Step const& step)
{
    Arguments a(step);
    const bool own = step.alias == Alias::OWN_NAME && !foundDrivers_.isEmpty();
    String const& pattern = own ? (*foundDrivers_.begin())->getDriverName() : a.name;
    auto const& list =
        step.flag
            ? repository_->getDrivers(identifier(step.id), pattern, a.attributes, foundDrivers_)
            : repository_->getDrivers(identifier(step.id), pattern, foundDrivers_);
    if (&list != &foundDrivers_)
        world_.trace.add("another list");
    for (auto const& found : foundDrivers_)
        world_.trace.add("found " + world_.label(found.get()));
}

void SubjectLibrary::getInterfaces(Step const& step)
{
    Arguments a(step);
    TOVA_UUID const& iid = identifier(step.iid);
    auto const& list =
        step.flag
            ? repository_->getDriverInterfaces(identifier(step.id), a.name, a.attributes, iid,
                                               foundInterfaces_)
            : repository_->getDriverInterfaces(identifier(step.id), a.name, iid, foundInterfaces_);
    if (&list != &foundInterfaces_)
        world_.trace.add("another list");
    for (auto const& found : foundInterfaces_)
        world_.trace.add("found " + world_.label(found.get()));
}

void SubjectLibrary::getInfo(Step const& step)
{
    InfoContainer info;
    IInfo const& described = *static_cast<IInfo*>(repository_);
    String const prefix = toString(step.name);
    if (step.flag)
        described.getInfo(info, step.limits[0], step.limits[1], step.limits[2], step.limits[3],
                          prefix);
    else
        repository_->getInfo(info, step.limits[0], step.limits[1], step.limits[2], step.limits[3],
                             prefix);
    world_.rows(info);
}

void SubjectLibrary::queryStep(Step const& step)
{
    switch (step.kind) {
    case Kind::GET_INTERFACE:
        getInterface(step);
        break;
    case Kind::GET_DRIVERS:
        getDrivers(step);
        break;
    case Kind::GET_INTERFACES:
        getInterfaces(step);
        break;
    case Kind::GET_INFO:
        getInfo(step);
        break;
    default:
        MON_DRV = step.flag ? &monitor_ : nullptr;
        monitor_.setThreshold(static_cast<std::int32_t>(step.number));
    }
}

/// An observer of a group is being called.
bool SubjectLibrary::react(std::size_t observer)
{
    return reactions_[observer].call([this](Step const& step) { perform(step); });
}

void SubjectLibrary::groupStep(Step const& step)
{
    Arguments a(step);
    if (step.kind == Kind::TIMESLOTS) {
        unsigned int mask = step.number;
        const XCode code = IChannelGroup::TIMESLOTS_TEXT_TO_UINT(a.error, a.value, mask);
        result("timeslots", code, a.error);
        String printed("old");
        IChannelGroup::TIMESLOTS_UINT_TO_TEXT(mask, printed);
        world_.trace.add(hex8(mask) + " " + quoted(library::text(printed)));
        return;
    }
    if (step.kind == Kind::GROUP_FOLLOW) {
        groupObservers_[step.slot]->follow(step.policy);
        return;
    }
    if (step.kind == Kind::GROUP_DROP_KEPT) {
        groupObservers_[step.slot]->dropKept();
        return;
    }
    if (step.kind == Kind::GROUP_REACT) {
        reactions_[step.slot].add(step);
        return;
    }
    auto* const it = dynamic_cast<library::TestGroup*>(driver(step.slot));
    if (it == nullptr)
        return;
    IChannelGroupObserver* const observer =
        step.kind == Kind::GROUP_ADD || step.kind == Kind::GROUP_REMOVE
            ? (step.other < 0 ? nullptr : groupObservers_[step.other].get())
            : nullptr;
    if (step.kind == Kind::GROUP_ADD) {
        const XCode code =
            it->addChannelGroupObserver(a.error, observer, step.number, step.veto, step.flag);
        result("group.add", code, a.error);
    } else if (step.kind == Kind::GROUP_REMOVE) {
        it->removeChannelGroupObserver(observer, step.flag);
    } else if (step.kind == Kind::GROUP_SET) {
        const XCode code = it->setTimeslots(a.error, step.number);
        result("group.set", code, a.error);
        if (world_.faces.count(static_cast<IDriver*>(it)) != 0)
            world_.trace.add("timeslots " + hex8(it->getTimeslots()));
    } else {
        InfoContainer info;
        it->getInfo(info, step.limits[0], step.limits[1], step.limits[2], step.limits[3], a.name);
        world_.rows(info);
    }
}

void SubjectLibrary::makeRecord(Step const& step)
{
    record_.reset();
    for (auto& listener : recordListeners_)
        listener.reset();
    IDriver* const it = driver(step.slot);
    if (it != nullptr)
        record_ = std::make_unique<DriverWrapper>(repository_, it);
}

void SubjectLibrary::setRecordListener(Step const& step)
{
    Arguments a(step);
    auto& listener = recordListeners_[step.other];
    // A listener outlives its entry in the record.
    if (listener)
        return;
    listener = std::make_unique<Listener>(
        a.name, identifier(step.id), identifier(step.iid), a.value,
        registration::hasAttributes(step.bits) ? a.attributes : Attributes(), step.number,
        step.veto, step.snapshot, delegate(step));
}

void SubjectLibrary::recordStep(Step const& step)
{
    if (step.kind == Kind::RECORD_MAKE)
        makeRecord(step);
    else if (step.kind == Kind::RECORD_LISTENER)
        setRecordListener(step);
    else if (record_)
        recordCall(step);
}

void SubjectLibrary::recordCall(Step const& step)
{
    Listener* const l = recordListeners_[step.other].get();
    const auto call = static_cast<RecordCall>(step.number);
    const bool needsListener =
        call != RecordCall::ADD && call != RecordCall::REMOVE && call < RecordCall::SET_ATTACHMENT;
    if (l == nullptr && needsListener)
        return;
    DriverWrapper& record = *record_;
    const String key = toString(step.key);
    const String value = toString(step.value);
    String error = toString(step.text);
    const auto number = [this](char const* what, int n) {
        world_.trace.add(std::string(what) + " = " + std::to_string(n));
    };
    XCode code;
    switch (call) {
    case RecordCall::ADD:
        code = record.addListener(error, l);
        result("record.add", code, error);
        break;
    case RecordCall::REMOVE:
        record.removeListener(l);
        break;
    case RecordCall::ADD_ONCE:
        number("addOnce", record.addListenerOnce(l, step.flag));
        break;
    case RecordCall::REMOVE_ONCE:
        number("removeOnce", record.removeListenerOnce(l));
        break;
    case RecordCall::COUNT:
        number("count", record.getListenerCount(l));
        break;
    case RecordCall::IS_ACTIVE:
        number("active", record.isActive(l));
        break;
    case RecordCall::TALKS_TO:
        number("talksTo", record.talksTo(l));
        break;
    case RecordCall::TALKS_TO_WITH:
        number("talksTo", record.talksTo(l, key, value));
        break;
    case RecordCall::SNAPSHOT_INITIAL:
        code = record.snapshotInitial(error, l);
        result("snapshotInitial", code, error);
        break;
    case RecordCall::SNAPSHOT_FINAL:
        record.snapshotFinal(l, key, value);
        break;
    case RecordCall::NOTIFY_ADDED:
        code = record.notifyOnDriverAdded(error, l);
        result("notify", code, error);
        break;
    case RecordCall::NOTIFY_REMOVED:
        record.notifyOnDriverRemoved(l);
        break;
    case RecordCall::NOTIFY_SET:
        code = record.notifyOnDriverAttachmentSet(error, l, key, value);
        result("notify", code, error);
        break;
    case RecordCall::NOTIFY_CLEARED:
        record.notifyOnDriverAttachmentCleared(l, key, value);
        break;
    case RecordCall::SET_ATTACHMENT: {
        const bool stored = step.alias == Alias::VALUE;
        code = record.setAttachment(error, key,
                                    stored ? record.getAttachment(toString(step.name)) : value);
        result("record.set", code, error);
        break;
    }
    case RecordCall::GET_ATTACHMENT:
        world_.trace.add("get " + quoted(library::text(record.getAttachment(key))));
        break;
    default: {
        InfoContainer info;
        record.getInfo(info, step.limits[0], step.limits[1], step.limits[2], step.limits[3],
                       toString(step.name));
        world_.rows(info);
    }
    }
    if (l != nullptr)
        world_.trace.add("counters " + std::to_string(l->count(Listener::DRIVER_ADDED)) + " " +
                         std::to_string(l->count(Listener::DRIVER_REMOVED)) + " " +
                         std::to_string(l->count(Listener::ATTACHMENT_SET)) + " " +
                         std::to_string(l->count(Listener::ATTACHMENT_CLEARED)));
}
