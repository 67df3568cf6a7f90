#include "SubjectModel.h"

#include "CallText.h"

using model::ChannelGroup;
using model::Code;
using model::Driver;
using model::Identifier;
using model::InfoLimits;
using model::InfoRow;
using model::Listener;
using model::Table;
using Kind = Step::Kind;
using Alias = Step::Alias;

namespace
{
Identifier identifier(int index)
{
    model::WellKnown const& known = model::wellKnown();
    switch (index) {
    case ID_INVALID:
        return known.invalid;
    case ID_UNKNOWN:
        return known.unknown;
    case ID_DRIVER:
        return known.driver;
    case ID_INFO:
        return known.info;
    case ID_CHANNEL_GROUP:
        return known.channelGroup;
    case ID_DID_CHANNEL_GROUP:
        return known.didChannelGroup;
    default:
        return {ownId(index).words, ownId(index).name};
    }
}

Table table(std::vector<std::pair<std::string, std::string>> const& pairs)
{
    Table table;
    for (auto const& pair : pairs)
        table.put(pair.first, pair.second);
    return table;
}

InfoLimits limitsOf(Step const& step)
{
    return {step.limits[0], step.limits[1], step.limits[2], step.limits[3]};
}

std::vector<Identifier> interfacesOf(std::uint32_t bits)
{
    std::vector<Identifier> list;
    for (std::size_t i = 0; i < INTERFACE_BITS.size(); ++i)
        if ((bits >> i & 1u) != 0)
            list.push_back(identifier(INTERFACE_BITS[i]));
    return list;
}

std::vector<Identifier> offered(std::uint32_t bits)
{
    std::vector<Identifier> list = {model::wellKnown().unknown, model::wellKnown().driver};
    for (Identifier const& iid : interfacesOf(bits))
        list.push_back(iid);
    return list;
}

/// Which part of an object an interface is.
std::string face(Identifier const& iid)
{
    if (iid == model::wellKnown().unknown || iid == model::wellKnown().driver)
        return "";
    if (iid == model::wellKnown().info)
        return "/info";
    return iid == model::wellKnown().channelGroup ? "/group" : "/face";
}

std::string label(Driver const* driver)
{
    return driver == nullptr ? "null" : driver->label();
}
} // namespace

SubjectModel::SubjectModel()
{
    for (int i = 0; i < OBSERVERS; ++i)
        observers_.push_back(
            std::make_unique<model::ScriptedObserver>(process_, "o" + std::to_string(i)));
    for (int i = 0; i < GROUP_OBSERVERS; ++i)
        groupObservers_.push_back(
            std::make_unique<model::ScriptedGroupObserver>(process_, "p" + std::to_string(i)));
    for (std::size_t i = 0; i < groupObservers_.size(); ++i)
        groupObservers_[i]->react = [this, i] { return react(i); };
    process_.pointerText = [this](void const* observer) {
        for (std::size_t i = 0; i < observers_.size(); ++i)
            if (observer == static_cast<model::Observer*>(observers_[i].get()))
                return "<o" + std::to_string(i) + ">";
        for (std::size_t i = 0; i < groupObservers_.size(); ++i)
            if (observer == static_cast<model::GroupObserver*>(groupObservers_[i].get()))
                return "<p" + std::to_string(i) + ">";
        return std::string("(nil)");
    };
}

std::vector<std::string> const& SubjectModel::run(Step const& step)
{
    process_.trace.clear();
    perform(step);
    process_.trace.add(counts());
    return process_.trace.lines();
}

void SubjectModel::perform(Step const& step)
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

void SubjectModel::result(std::string const& operation, Code code)
{
    process_.trace.add(call_text::result(operation, code, error_));
}

void SubjectModel::row(InfoRow const& row)
{
    process_.trace.add("row " + std::to_string(row.depth) + "." + std::to_string(row.detail) + " " +
                       quoted(shown(row.key)) + "=" + quoted(shown(row.value)));
}

void SubjectModel::rows(std::vector<InfoRow> const& rows)
{
    for (InfoRow const& each : rows)
        row(each);
}

std::string SubjectModel::counts() const
{
    std::string text = "refs R=" + std::to_string(repository_.refs());
    for (auto const& driver : drivers_)
        if (driver->refs() > 0)
            text += " " + driver->label() + "=" + std::to_string(driver->refs());
    for (std::size_t i = 0; i < delegates_.size(); ++i)
        if (delegates_[i]->refs > 0)
            text += " L" + std::to_string(i) + "=" + std::to_string(delegates_[i]->refs);
    return text;
}

/// The name a step passes: its own, or that of the driver in its slot.
std::string SubjectModel::nameOf(Step const& step)
{
    Driver* const owner = step.alias == Alias::OWN_NAME ? driver(step.slot) : nullptr;
    return owner == nullptr ? step.name : owner->name();
}

/// What `error` holds before the call: an argument, if it is the same object.
std::string SubjectModel::firstError(Step const& step) const
{
    switch (step.alias) {
    case Alias::NAME:
        return step.name;
    case Alias::KEY:
        return step.key;
    case Alias::VALUE:
        return step.value;
    default:
        return step.text;
    }
}

void SubjectModel::take(Slot& slot, std::unique_ptr<Driver> driver)
{
    drop(slot);
    slot.driver = driver.get();
    slot.holds = 1;
    drivers_.push_back(std::move(driver));
}

void SubjectModel::drop(Slot& slot)
{
    for (; slot.holds > 0; --slot.holds)
        slot.driver->release();
    slot.driver = nullptr;
}

void SubjectModel::makeDriver(Step const& step)
{
    const std::string label = "D" + std::to_string(drivers_.size());
    if (step.kind == Kind::MAKE_GROUP) {
        take(slots_[step.slot], std::make_unique<ChannelGroup>(process_, label, step.name));
        return;
    }
    auto driver = std::make_unique<Driver>(process_, label, identifier(step.id), step.name);
    driver->interfaces = offered(step.bits);
    driver->hollow = interfacesOf(step.more);
    const bool nests = step.number != 0;
    driver->describe = [this, label, nests](std::vector<InfoRow>& rows, InfoLimits const& limits) {
        addRow(rows, limits, 0, 0, "own", label);
        if (nests)
            repository_.getInfo(rows, limits.beneath(1, 0), label);
    };
    take(slots_[step.slot], std::move(driver));
}

void SubjectModel::driverStep(Step const& step)
{
    Driver* const it = driver(step.slot);
    const bool absent = it == nullptr && step.slot >= 0;
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
        if (it != nullptr && dynamic_cast<ChannelGroup*>(it) == nullptr)
            it->interfaces = offered(step.bits);
        break;
    case Kind::ADD_DRIVER:
        if (absent)
            break;
        error_ = step.text;
        result("addDriver " + label(it), repository_.addDriver(error_, it));
        break;
    case Kind::REMOVE_POINTER:
        if (!absent)
            repository_.removeDriver(it);
        break;
    case Kind::REMOVE_NAME:
        repository_.removeDriver(nameOf(step));
        break;
    default: {
        Driver* found = nullptr;
        const Code code = repository_.getDriver(step.name, step.flag ? nullptr : &found);
        process_.trace.add("getDriver = " + std::to_string(code) + " " + label(found) +
                           (found == nullptr ? "" : " " + std::to_string(found->refs())));
        if (found != nullptr)
            found->release();
    }
    }
}

void SubjectModel::makeDelegate(Step const& step)
{
    auto& slot = delegateSlots_[step.slot];
    if (slot)
        slot->release();
    slot = std::make_shared<model::Delegate>();
    slot->observer = step.other < 0 ? nullptr : observers_[step.other].get();
    delegates_.push_back(slot);
}

Listener SubjectModel::fields(Step const& step)
{
    Listener l;
    l.name = step.name;
    l.classId = identifier(step.id);
    l.interfaceId = identifier(step.iid);
    l.prefix = step.value;
    l.priority = step.number;
    l.rightOfVeto = step.veto;
    l.snapshot = step.snapshot;
    if (registration::hasAttributes(step.bits))
        l.attributes = table(step.attributes);
    if (registration::byDelegate(step.bits) && step.slot >= 0)
        l.delegate = delegateSlots_[step.slot];
    return l;
}

void SubjectModel::registerListener(Step const& step)
{
    error_ = firstError(step);
    if (registration::byDelegate(step.bits)) {
        result("register", repository_.addObserver(error_, fields(step)));
        return;
    }
    model::Observer* const observer = step.other < 0 ? nullptr : observers_[step.other].get();
    result("register", repository_.addObserver(error_, fields(step), observer));
}

void SubjectModel::listenerStep(Step const& step)
{
    switch (step.kind) {
    case Kind::MAKE_DELEGATE:
        makeDelegate(step);
        break;
    case Kind::DROP_DELEGATE:
        if (delegateSlots_[step.slot])
            delegateSlots_[step.slot]->release();
        delegateSlots_[step.slot].reset();
        break;
    case Kind::STOP_DELEGATE:
        if (delegateSlots_[step.slot])
            delegateSlots_[step.slot]->stopNotifications();
        break;
    case Kind::REGISTER:
        registerListener(step);
        break;
    case Kind::UNREGISTER:
        repository_.removeObserver(step.name);
        break;
    case Kind::FOLLOW:
        observers_[step.slot]->follow(step.policy);
        break;
    default:
        observers_[step.slot]->dropKept();
    }
}

void SubjectModel::attachmentStep(Step const& step)
{
    Driver* const it = driver(step.slot);
    const bool absent = it == nullptr && step.slot >= 0;
    error_ = firstError(step);
    switch (step.kind) {
    case Kind::SET_ATTACHMENT:
        result("set", repository_.setDriverAttachment(error_, nameOf(step), step.key, step.value));
        break;
    case Kind::SET_BY_POINTER:
        if (!absent)
            result("set", repository_.setDriverAttachment(error_, it, step.key, step.value));
        break;
    case Kind::GET_ATTACHMENT:
        process_.trace.add("get " +
                           quoted(repository_.getDriverAttachment(nameOf(step), step.key)));
        break;
    default:
        if (!absent)
            process_.trace.add("get " + quoted(repository_.getDriverAttachment(it, step.key)));
    }
}

void SubjectModel::queryStep(Step const& step)
{
    const Table attributes = table(step.attributes);
    Table const* const given = step.flag ? &attributes : nullptr;
    switch (step.kind) {
    case Kind::GET_INTERFACE: {
        Driver* object = nullptr;
        const Identifier iid = identifier(step.iid);
        const Code code =
            repository_.getDriverInterface(step.name, iid, step.flag ? nullptr : &object);
        process_.trace.add("interface = " + std::to_string(code) + " " + label(object) +
                           (object == nullptr ? "" : face(iid)));
        if (object != nullptr)
            object->release();
        break;
    }
    case Kind::GET_DRIVERS: {
        const bool own = step.alias == Alias::OWN_NAME && !foundDrivers_.empty();
        const std::string pattern = own ? foundDrivers_.front()->name() : step.name;
        repository_.getDrivers(identifier(step.id), pattern, given, foundDrivers_);
        for (Driver const* found : foundDrivers_)
            process_.trace.add("found " + found->label());
        break;
    }
    case Kind::GET_INTERFACES: {
        const Identifier iid = identifier(step.iid);
        repository_.getDriverInterfaces(identifier(step.id), step.name, given, iid,
                                        foundInterfaces_);
        for (Driver const* found : foundInterfaces_)
            process_.trace.add("found " + found->label() + face(iid));
        break;
    }
    case Kind::GET_INFO: {
        std::vector<InfoRow> list;
        repository_.getInfo(list, limitsOf(step), step.name);
        rows(list);
        break;
    }
    default:
        process_.monitorPresent = step.flag;
        process_.threshold = static_cast<std::int32_t>(step.number);
    }
}

ChannelGroup* SubjectModel::group(int slot)
{
    return dynamic_cast<ChannelGroup*>(driver(slot));
}

model::GroupObserver* SubjectModel::groupObserver(int index)
{
    return index < 0 ? nullptr : groupObservers_[index].get();
}

/// An observer of a group is being called; the texts of the call under way stay as they are.
bool SubjectModel::react(std::size_t observer)
{
    const std::string error = error_;
    const bool refuses = reactions_[observer].call([this](Step const& step) { perform(step); });
    error_ = error;
    return refuses;
}

void SubjectModel::groupStep(Step const& step)
{
    if (step.kind == Kind::TIMESLOTS) {
        std::uint32_t mask = step.number;
        error_ = step.text;
        result("timeslots", model::timeslotsFromText(error_, step.value, mask));
        process_.trace.add(hex8(mask) + " " + quoted(model::timeslotsToText(mask)));
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
    ChannelGroup* const it = group(step.slot);
    if (it == nullptr)
        return;
    error_ = step.text;
    if (step.kind == Kind::GROUP_ADD) {
        result("group.add", it->addObserver(error_, groupObserver(step.other), step.number,
                                            step.veto, step.flag));
    } else if (step.kind == Kind::GROUP_REMOVE) {
        it->removeObserver(groupObserver(step.other), step.flag);
    } else if (step.kind == Kind::GROUP_SET) {
        result("group.set", it->setTimeslots(error_, step.number));
        if (it->refs() > 0)
            process_.trace.add("timeslots " + hex8(it->getTimeslots()));
    } else {
        std::vector<InfoRow> list;
        it->getInfo(list, limitsOf(step), step.name);
        rows(list);
    }
}

void SubjectModel::makeRecord(Step const& step)
{
    if (record_)
        record_->end();
    record_.reset();
    for (auto& listener : recordListeners_) {
        if (listener)
            endListener(*listener);
        listener.reset();
    }
    Driver* const it = driver(step.slot);
    if (it != nullptr)
        record_ = std::make_unique<model::DriverRecord>(process_, &repository_, it);
}

void SubjectModel::setRecordListener(Step const& step)
{
    auto& listener = recordListeners_[step.other];
    // A listener outlives its entry in the record.
    if (!listener)
        listener = model::makeListener(fields(step));
}

void SubjectModel::recordStep(Step const& step)
{
    if (step.kind == Kind::RECORD_MAKE)
        makeRecord(step);
    else if (step.kind == Kind::RECORD_LISTENER)
        setRecordListener(step);
    else if (record_)
        recordCall(step);
}

void SubjectModel::recordCall(Step const& step)
{
    auto const& l = recordListeners_[step.other];
    const auto call = static_cast<RecordCall>(step.number);
    const bool needsListener =
        call != RecordCall::ADD && call != RecordCall::REMOVE && call < RecordCall::SET_ATTACHMENT;
    if (!l && needsListener)
        return;
    error_ = step.text;
    model::DriverRecord& record = *record_;
    const auto number = [this](char const* what, std::int32_t n) {
        process_.trace.add(std::string(what) + " = " + std::to_string(n));
    };
    switch (call) {
    case RecordCall::ADD:
        result("record.add", record.addListener(error_, l));
        break;
    case RecordCall::REMOVE:
        record.removeListener(l.get());
        break;
    case RecordCall::ADD_ONCE:
        number("addOnce", record.addListenerOnce(l, step.flag));
        break;
    case RecordCall::REMOVE_ONCE:
        number("removeOnce", record.removeListenerOnce(l.get()));
        break;
    case RecordCall::COUNT:
        number("count", record.getListenerCount(l.get()));
        break;
    case RecordCall::IS_ACTIVE:
        number("active", record.isActive(l.get()));
        break;
    case RecordCall::TALKS_TO:
        number("talksTo", record.talksTo(*l));
        break;
    case RecordCall::TALKS_TO_WITH:
        number("talksTo", record.talksTo(*l, step.key, step.value));
        break;
    case RecordCall::SNAPSHOT_INITIAL:
        result("snapshotInitial", record.snapshotInitial(error_, l.get()));
        break;
    case RecordCall::SNAPSHOT_FINAL:
        record.snapshotFinal(l.get(), step.key, step.value);
        break;
    case RecordCall::NOTIFY_ADDED:
        result("notify", record.notifyOnDriverAdded(error_, *l));
        break;
    case RecordCall::NOTIFY_REMOVED:
        record.notifyOnDriverRemoved(*l);
        break;
    case RecordCall::NOTIFY_SET:
        result("notify", record.notifyOnDriverAttachmentSet(error_, *l, step.key, step.value));
        break;
    case RecordCall::NOTIFY_CLEARED:
        record.notifyOnDriverAttachmentCleared(*l, step.key, step.value);
        break;
    case RecordCall::SET_ATTACHMENT: {
        // The value may be passed by reference to another attachment's place in the table.
        const bool stored = step.alias == Alias::VALUE;
        result("record.set",
               record.setAttachment(error_, step.key,
                                    stored ? record.getAttachment(step.name) : step.value));
        break;
    }
    case RecordCall::GET_ATTACHMENT:
        process_.trace.add("get " + quoted(record.getAttachment(step.key)));
        break;
    default: {
        std::vector<InfoRow> list;
        record.getInfo(list, limitsOf(step), step.name);
        rows(list);
    }
    }
    if (l)
        process_.trace.add("counters " + std::to_string(l->counters.added) + " " +
                           std::to_string(l->counters.removed) + " " +
                           std::to_string(l->counters.set) + " " +
                           std::to_string(l->counters.cleared));
}
