#include "NestedRun.h"

#include <drvrepo/MON_DRV.h>

#include <algorithm>

#include "NestedObjects.h"
#include "Raised.h"

using library::toString;

namespace
{
constexpr int MAX_DEPTH = 5;
constexpr std::uint64_t MAX_CALLS = 3000;
} // namespace

NestedRun::NestedRun(NestedProgram const& program)
    : program_(program), repositoryCount_{"R", 1},
      repository_(new Repository(*this, repositoryCount_)), sink_(std::make_unique<Sink>(*this))
{
    slots_.fill(-1);
    MON_DRV = sink_.get();
}

NestedRun::~NestedRun()
{
    MON_DRV = nullptr;
}

void NestedRun::say(std::string const& line)
{
    for (char c : line)
        hash_ = (hash_ ^ static_cast<unsigned char>(c)) * 1099511628211u;
    if (told_)
        story_ += std::string(static_cast<std::size_t>(2 * indent_), ' ') + line + "\n";
}

/// What the judge found first is what counts; the rest follows from it.
void NestedRun::adoptViolations()
{
    if (violations_.empty())
        violations_ = judge_.violations();
}

void NestedRun::run(bool told)
{
    told_ = told;
    for (Action const& action : program_.actions) {
        if (left_ || !violations_.empty())
            break;
        perform(action);
        checkQuiet();
    }
    if (!left_ && violations_.empty()) {
        leave();
    }
    if (!violations_.empty())
        return;
    for (int slot = 0; slot < NESTED_SLOTS; ++slot)
        while (slots_[static_cast<std::size_t>(slot)] >= 0)
            dropDriver(slot);
    for (auto& registration : registrations_)
        if (registration->delegate != nullptr)
            registration->delegate->release();
    if (!destroyed_)
        complain("the repository outlives its last reference");
    for (auto const& driver : drivers_)
        if (driver->count.refs != 0)
            complain("driver #" + std::to_string(&driver - drivers_.data()) + " is left with " +
                     std::to_string(driver->count.refs) + " references");
    for (auto const& registration : registrations_)
        if (registration->delegate != nullptr && registration->count.refs != 0)
            complain("a delegate is left with " + std::to_string(registration->count.refs) +
                     " references");
}

template <class Call> void NestedRun::operate(Judge::Call const& call, Call const& body)
{
    ++calls_;
    const Raised deeper(depth_);
    const Raised indented(indent_);
    const bool judged = !left_;
    if (judged)
        judge_.begin(call);
    Judge::Outcome outcome;
    try {
        String error("junk");
        outcome.code = body(error).code();
        outcome.text = library::text(error);
    } catch (Thrown const& thrown) {
        outcome.thrown = thrown.id;
    }
    say("= " + std::to_string(outcome.code) + " " + quoted(outcome.text) +
        (outcome.thrown == 0 ? "" : " threw #" + std::to_string(outcome.thrown)));
    if (judged && !left_) {
        judge_.end(outcome, lookAfter(call));
        adoptViolations();
    }
    if (outcome.thrown != 0)
        throw Thrown{outcome.thrown};
}

Judge::Look NestedRun::lookAfter(Judge::Call const& call)
{
    Judge::Look look;
    if (call.operation == Judge::Operation::ADD_DRIVER ||
        call.operation == Judge::Operation::SET_ATTACHMENT)
        look = lookAt(call.name, call.key);
    if (call.operation == Judge::Operation::REGISTER)
        look.registered = isRegistered(call.registration);
    return look;
}

void NestedRun::perform(Action const& action)
{
    if (left_ || calls_ > MAX_CALLS || depth_ >= MAX_DEPTH || !violations_.empty())
        return;
    say(toText(action));
    try {
        switch (action.kind) {
        case Action::Kind::MAKE_DRIVER:
            makeDriver(action);
            break;
        case Action::Kind::DROP_DRIVER:
            dropDriver(action.slot);
            break;
        case Action::Kind::ADD_DRIVER:
            addDriver(action);
            break;
        case Action::Kind::REMOVE_POINTER:
        case Action::Kind::REMOVE_NAME:
            removeDriver(action);
            break;
        case Action::Kind::REGISTER:
            registerListener(action);
            break;
        case Action::Kind::UNREGISTER:
            unregister(action.name);
            break;
        case Action::Kind::STOP:
            stop(action);
            break;
        case Action::Kind::SET:
        case Action::Kind::SET_BY_POINTER:
            setAttachment(action);
            break;
        case Action::Kind::LEAVE:
            if (otherCallOuts_ == 0 && notEntered_ == 0)
                leave();
            break;
        default:
            look(action);
        }
    } catch (Thrown const&) {
        if (depth_ > 0)
            throw;
    }
}

void NestedRun::makeDriver(Action const& action)
{
    Judge::Driver facts;
    facts.name = action.name;
    facts.type = static_cast<int>(action.number);
    for (int i = 0; i < NESTED_INTERFACES; ++i)
        if ((action.bits >> i & 1u) != 0)
            facts.interfaces.push_back(i + 1);
    const int id = judge_.add(facts);
    drivers_.push_back(std::make_unique<Made>());
    Driver* const driver = new Driver(*this, id, action);
    drivers_[static_cast<std::size_t>(id)]->object = driver;
    // A destructor may fill the slot again.
    dropDriver(action.slot);
    if (slots_[static_cast<std::size_t>(action.slot)] >= 0)
        driver->release();
    else
        slots_[static_cast<std::size_t>(action.slot)] = id;
}

void NestedRun::dropDriver(int slot)
{
    const int id = slots_[static_cast<std::size_t>(slot)];
    slots_[static_cast<std::size_t>(slot)] = -1;
    if (id >= 0)
        drivers_[static_cast<std::size_t>(id)]->object->release();
}

void NestedRun::addDriver(Action const& action)
{
    const int id = slots_[static_cast<std::size_t>(action.slot)];
    if (id < 0)
        return;
    const TYPtr<IDriver> held =
        TYPtr<IDriver>::share(drivers_[static_cast<std::size_t>(id)]->object);
    Judge::Call call;
    call.operation = Judge::Operation::ADD_DRIVER;
    call.driver = id;
    {
        const Raised looking(looking_);
        call.name = library::text(held.get()->getDriverName());
    }
    Entering entering(*this, drivers_[static_cast<std::size_t>(id)]->entering);
    operate(call, [&](String& error) { return repository_->addDriver(error, held.get()); });
}

void NestedRun::removeDriver(Action const& action)
{
    Judge::Call call;
    call.operation = Judge::Operation::REMOVE_DRIVER;
    call.name = action.name;
    if (action.kind == Action::Kind::REMOVE_NAME) {
        operate(call, [&](String&) {
            repository_->removeDriver(toString(action.name));
            return XCode();
        });
        return;
    }
    const int id = slots_[static_cast<std::size_t>(action.slot)];
    if (id < 0)
        return;
    const TYPtr<IDriver> held =
        TYPtr<IDriver>::share(drivers_[static_cast<std::size_t>(id)]->object);
    {
        const Raised looking(looking_);
        call.name = library::text(held.get()->getDriverName());
    }
    operate(call, [&](String&) {
        repository_->removeDriver(held.get());
        return XCode();
    });
}

void NestedRun::registerListener(Action const& action)
{
    Judge::Registration facts;
    facts.name = action.name;
    facts.classId = static_cast<int>(action.number);
    facts.interfaceId = static_cast<int>(action.bits);
    facts.prefix = action.prefix;
    facts.priority = action.priority;
    facts.veto = action.veto;
    facts.snapshot = action.snapshot;
    IDriverRepository::Attributes attributes;
    for (auto const& attribute : action.attributes)
        attributes.put(toString(attribute.first), toString(attribute.second));
    for (auto const& entry : attributes)
        facts.attributes.emplace_back(library::text(entry.key), library::text(entry.value));
    const int id = judge_.add(facts);
    registrations_.push_back(std::make_unique<Registration>(*this, id, action.name));
    Registration& mine = *registrations_.back();
    if (action.byDelegate)
        mine.delegate = new library::CountedDelegate(mine.count, &mine.observer);
    Judge::Call call;
    call.operation = Judge::Operation::REGISTER;
    call.registration = id;
    call.name = action.name;
    const String name = toString(action.name);
    const String prefix = toString(action.prefix);
    Entering entering(*this, mine.entering);
    operate(call, [&](String& error) {
        if (mine.delegate == nullptr)
            return repository_->addDriverRepositoryObserver(
                error, name, typeId(action.number), interfaceId(action.bits), prefix, attributes,
                action.priority, action.veto, action.snapshot, &mine.observer);
        ObserverDelegate<IDriverRepository>* const delegate = mine.delegate;
        return repository_->addDriverRepositoryObserver(
            error, name, typeId(action.number), interfaceId(action.bits), prefix, attributes,
            action.priority, action.veto, action.snapshot, delegate);
    });
}

void NestedRun::unregister(std::string const& name)
{
    Judge::Call call;
    call.operation = Judge::Operation::UNREGISTER;
    call.name = name;
    operate(call, [&](String&) {
        repository_->removeDriverRepositoryObserver(toString(name));
        return XCode();
    });
}

void NestedRun::stop(Action const& action)
{
    int back = action.slot;
    for (std::size_t i = registrations_.size(); i-- > 0;) {
        if (registrations_[i]->delegate == nullptr || back-- > 0)
            continue;
        registrations_[i]->delegate->stopNotifications();
        judge_.stopped(static_cast<int>(i));
        return;
    }
}

void NestedRun::setAttachment(Action const& action)
{
    Judge::Call call;
    call.operation = Judge::Operation::SET_ATTACHMENT;
    call.name = action.name;
    call.key = action.key;
    call.value = action.value;
    const String key = toString(action.key);
    const String value = toString(action.value);
    if (action.kind == Action::Kind::SET) {
        operate(call, [&](String& error) {
            return repository_->setDriverAttachment(error, toString(action.name), key, value);
        });
        return;
    }
    const int id = slots_[static_cast<std::size_t>(action.slot)];
    if (id < 0)
        return;
    const TYPtr<IDriver> held =
        TYPtr<IDriver>::share(drivers_[static_cast<std::size_t>(id)]->object);
    {
        const Raised looking(looking_);
        call.name = library::text(held.get()->getDriverName());
    }
    operate(call, [&](String& error) {
        return repository_->setDriverAttachment(error, held.get(), key, value);
    });
}

void NestedRun::look(Action const& action)
{
    Judge::Call call;
    operate(call, [&](String& error) {
        if (action.kind == Action::Kind::GET) {
            repository_->getDriverAttachment(toString(action.name), toString(action.key), error);
        } else if (action.kind == Action::Kind::FIND) {
            TOVA_List<TYPPtr<IDriver>> drivers;
            TOVA_List<TYPPtr<IUnknown>> interfaces;
            repository_->getDrivers(typeId(action.number), toString(action.prefix), drivers);
            repository_->getDriverInterfaces(TOVA_UUID::INVALID(), toString(action.prefix),
                                             interfaceId(1), interfaces);
        } else {
            InfoContainer info;
            repository_->getInfo(info, 99, 0, 99, 0, String());
        }
        return XCode();
    });
}

/// Runs something, unless the repository was given back, and ignores what it throws.
template <class Body> void NestedRun::ignoring(Body const& body)
{
    if (left_)
        return;
    try {
        body();
    } catch (Thrown const&) {
        say("(ignored)");
    }
}

/// Takes everything out once; a farewell may bring somebody in again.
void NestedRun::clearOut()
{
    for (std::string const& name : NESTED_LISTENER_NAMES)
        ignoring([&] { unregister(name); });
    for (std::string const& name : NESTED_DRIVER_NAMES) {
        Action action;
        action.kind = Action::Kind::REMOVE_NAME;
        action.name = name;
        ignoring([&] { removeDriver(action); });
    }
}

/// Everything out, then the last reference: the repository goes when nothing runs any more.
void NestedRun::leave()
{
    for (int round = 0; !left_ && round < MAX_DEPTH; ++round) {
        clearOut();
        if (left_)
            return;
        const Judge::State rest = state();
        if (!rest.listeners.empty() || !rest.drivers.empty())
            continue;
        left_ = true;
        repository_->release();
        return;
    }
    if (!left_)
        complain("what was removed is still there");
}
