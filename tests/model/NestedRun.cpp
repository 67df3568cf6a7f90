#include "NestedRun.h"

#include <drvrepo/MON_DRV.h>

#include <algorithm>
#include <cstdio>

using library::toString;

namespace
{
constexpr int MAX_DEPTH = 5;
constexpr std::uint64_t MAX_CALLS = 3000;

TOVA_UUID const& typeId(std::uint32_t type)
{
    const int ids[] = {ID_INVALID, ID_A, ID_B};
    return library::identifier(ids[type]);
}

TOVA_UUID const& interfaceId(std::uint32_t interface)
{
    const int ids[] = {ID_INVALID, ID_A, ID_C};
    return library::identifier(ids[interface]);
}

/// Raised for the length of a scope.
class Raised
{
public:
    explicit Raised(int& count) : count_(count) { ++count_; }
    ~Raised() { --count_; }
    Raised(Raised const&) = delete;
    Raised& operator=(Raised const&) = delete;

private:
    int& count_;
};

char const* const METHODS[] = {"added", "removed", "set", "cleared"};
} // namespace

/// An addition that the registry may yet turn down unseen: until it calls out about the newcomer,
/// nothing can be taken out for good.
class NestedRun::Entering
{
public:
    Entering(NestedRun& run, Entering*& place) : run_(run), place_(place), outer_(place)
    {
        place_ = this;
        ++run_.notEntered_;
    }
    ~Entering()
    {
        entered();
        place_ = outer_;
    }
    Entering(Entering const&) = delete;
    Entering& operator=(Entering const&) = delete;

    void entered()
    {
        run_.notEntered_ -= entered_ ? 0 : 1;
        entered_ = true;
    }

private:
    NestedRun& run_;
    Entering*& place_;
    Entering* outer_;
    bool entered_ = false;
};

class NestedRun::Observer : public IDriverRepositoryObserver
{
public:
    Observer(NestedRun& run, int id) : run_(run), id_(id) {}

    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) override
    {
        return XCode(run_.tell(id_, Judge::Method::ADDED, &error, event).code);
    }
    void onDriverRemoved(ObserverEvent<IDriverRepository>& event) override
    {
        run_.tell(id_, Judge::Method::REMOVED, nullptr, event);
    }
    XCode onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event) override
    {
        return XCode(run_.tell(id_, Judge::Method::SET, &error, event).code);
    }
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) override
    {
        run_.tell(id_, Judge::Method::CLEARED, nullptr, event);
    }

private:
    NestedRun& run_;
    int id_;
};

class NestedRun::Driver : public CDriver
{
public:
    Driver(NestedRun& run, int id, Action const& action)
        : CDriver(typeId(action.number), toString(action.name)), run_(run), id_(id),
          interfaces_(action.bits)
    {}
    ~Driver() override
    {
        run_.callOut(CallOut::DESTRUCTOR, "#" + std::to_string(id_));
        run_.drivers_[static_cast<std::size_t>(id_)]->object = nullptr;
    }

    int id() const { return id_; }

    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        run_.callOut(CallOut::QUERY_INTERFACE, "#" + std::to_string(id_));
        for (std::uint32_t i = 0; i < NESTED_INTERFACES; ++i)
            if ((interfaces_ >> i & 1u) != 0 && iid == interfaceId(i + 1)) {
                if (out != nullptr) {
                    addRef();
                    *out = static_cast<IDriver*>(this);
                }
                return XCode();
            }
        return CDriver::queryInterface(iid, out);
    }
    void addRef() override
    {
        ++count().refs;
        CDriver::addRef();
    }
    void release() override
    {
        --count().refs;
        CDriver::release();
    }
    TOVA_UUID const& getDID() const override
    {
        run_.callOut(CallOut::GET_TYPE, "#" + std::to_string(id_));
        return CDriver::getDID();
    }
    String const& getDriverName() const override
    {
        run_.callOut(CallOut::GET_NAME, "#" + std::to_string(id_));
        return CDriver::getDriverName();
    }
    void setDriverRepository(IDriverRepository* repository) override
    {
        CDriver::setDriverRepository(repository);
        Entering* const entering = run_.drivers_[static_cast<std::size_t>(id_)]->entering;
        if (repository != nullptr && entering != nullptr)
            entering->entered();
        run_.callOut(CallOut::SET_REPOSITORY,
                     "#" + std::to_string(id_) + (repository == nullptr ? " null" : ""));
    }

private:
    library::Counted& count() { return run_.drivers_[static_cast<std::size_t>(id_)]->count; }

    NestedRun& run_;
    int id_;
    std::uint32_t interfaces_;
};

class NestedRun::Repository : public library::CountedRepository
{
public:
    Repository(NestedRun& run, library::Counted& count)
        : CountedRepository(CRIT::INSTANCE(), count), run_(run)
    {}
    ~Repository() override { run_.destroyed_ = true; }

private:
    NestedRun& run_;
};

class NestedRun::Sink : public RTD::Monitor
{
public:
    explicit Sink(NestedRun& run) : run_(run) {}

protected:
    void write(int, char const* fmt, std::va_list arguments) const override UTILITY_PRINTF(3, 0)
    {
        char buffer[512];
        std::vsnprintf(buffer, sizeof buffer, fmt, arguments);
        run_.callOut(CallOut::LOG, buffer);
    }

private:
    NestedRun& run_;
};

struct NestedRun::Registration
{
    Registration(NestedRun& run, int id, std::string const& called)
        : observer(run, id), name(called)
    {}
    Observer observer;
    std::string name;
    Entering* entering = nullptr;
    library::Counted count;
    library::CountedDelegate* delegate = nullptr; ///< of a registration by delegate
};

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

Reaction const* NestedRun::next(CallOut callOut)
{
    const std::uint32_t ordinal = ordinals_[static_cast<std::size_t>(callOut)]++;
    for (Reaction const& reaction : program_.reactions)
        if (reaction.callOut == callOut && reaction.ordinal == ordinal)
            return &reaction;
    return nullptr;
}

/// What the program does at this call-out; throws if that throws.
Judge::Outcome NestedRun::react(CallOut callOut)
{
    Judge::Outcome outcome;
    Reaction const* const reaction = next(callOut);
    if (reaction == nullptr)
        return outcome;
    overtaken_ |= callOut > CallOut::CLEARED;
    for (Action const& action : reaction->actions) {
        try {
            const Raised indented(indent_);
            perform(action);
        } catch (Thrown const&) {
            if (!reaction->catches && !judge_.isHandlingException())
                throw;
        }
    }
    if (reaction->answer == Reaction::Answer::REFUSE)
        outcome.code = reaction->code;
    if (reaction->answer == Reaction::Answer::THROW && !judge_.isHandlingException())
        throw Thrown{++lastThrown_};
    return outcome;
}

/// A call of a driver or the monitor.
void NestedRun::callOut(CallOut kind, std::string const& what)
{
    if (looking_ > 0 || left_ || depth_ == 0)
        return;
    if (kind != CallOut::GET_NAME && kind != CallOut::GET_TYPE && kind != CallOut::QUERY_INTERFACE)
        say(std::string("- ") + nameOf(kind) + " " + what);
    const Raised indented(indent_);
    const Raised other(otherCallOuts_);
    if (kind == CallOut::DESTRUCTOR)
        judge_.freeing();
    judge_.beginCallOut(kind == CallOut::LOG);
    int thrown = 0;
    try {
        react(kind);
    } catch (Thrown const& exception) {
        say(std::string("throws #") + std::to_string(exception.id) + " from " + nameOf(kind));
        thrown = exception.id;
    }
    judge_.endCallOut(thrown);
    if (thrown != 0)
        throw Thrown{thrown};
}

Judge::Outcome NestedRun::tell(int registration, Judge::Method method, String* error,
                               ObserverEvent<IDriverRepository>& event)
{
    auto& ev = static_cast<IDriverRepository::EvDriver&>(event);
    const bool attachment = method == Judge::Method::SET || method == Judge::Method::CLEARED;
    std::string key;
    std::string value;
    if (attachment) {
        key = library::text(static_cast<IDriverRepository::EvAttachment&>(event).key);
        value = library::text(static_cast<IDriverRepository::EvAttachment&>(event).value);
    }
    const int driver = idOf(ev.driver.get());
    say("* #" + std::to_string(registration) + " " + METHODS[static_cast<int>(method)] + " #" +
        std::to_string(driver) + (attachment ? " " + quoted(key) + "=" + quoted(value) : ""));
    if (left_) {
        complain("listener #" + std::to_string(registration) + " is called when all were removed");
        return {};
    }
    const Raised indented(indent_);
    Entering* const entering = registrations_[static_cast<std::size_t>(registration)]->entering;
    if (entering != nullptr)
        entering->entered();
    std::string name;
    {
        const Raised looking(looking_);
        name = library::text(ev.driver.get()->getDriverName());
    }
    judge_.beginTell(registration, method, driver, key, value, lookAt(name, key));
    Judge::Outcome outcome;
    try {
        outcome = react(static_cast<CallOut>(method));
    } catch (Thrown const& thrown) {
        say("throws #" + std::to_string(thrown.id));
        outcome.thrown = thrown.id;
    }
    if (outcome.code != 0 && error != nullptr) {
        *error = "refused";
        say("refuses " + std::to_string(outcome.code));
    }
    if (!left_)
        judge_.endTell(outcome);
    if (outcome.thrown != 0)
        throw Thrown{outcome.thrown};
    return outcome;
}

int NestedRun::idOf(IDriver const* driver) const
{
    return driver == nullptr ? -1 : static_cast<Driver const*>(driver)->id();
}

Judge::Look NestedRun::lookAt(std::string const& driver, std::string const& key)
{
    const Raised looking(looking_);
    Judge::Look look;
    IDriver* found = nullptr;
    repository_->getDriver(toString(driver), &found);
    look.driver = idOf(found);
    if (found != nullptr)
        found->release();
    String value;
    repository_->getDriverAttachment(toString(driver), toString(key), value);
    look.value = library::text(value);
    return look;
}

bool NestedRun::isRegistered(int registration)
{
    const Judge::State now = state();
    return std::any_of(now.listeners.begin(), now.listeners.end(),
                       [registration](Judge::ListenerState const& listener) {
                           return listener.registration == registration;
                       });
}

/// The registration of that name whose delegate was stopped while a listener held it.
int NestedRun::stoppedOne(std::string const& name) const
{
    for (std::size_t i = registrations_.size(); i-- > 0;) {
        Registration const& each = *registrations_[i];
        if (each.delegate != nullptr && each.delegate->observer() == nullptr &&
            each.count.refs > 1 && each.name == name)
            return static_cast<int>(i);
    }
    return -1;
}

/// The registry as its own description shows it.
Judge::State NestedRun::state()
{
    const Raised looking(looking_);
    InfoContainer info;
    repository_->getInfo(info, 99, 0, 99, 0, String());
    Judge::State state;
    state.overtaken = overtaken_;
    std::map<std::string, int> byName;
    std::vector<std::vector<std::string>> active;
    bool inListeners = false;
    std::string section;
    std::string name;
    std::map<std::string, int> observers;
    for (std::size_t i = 0; i < registrations_.size(); ++i) {
        char text[40];
        std::snprintf(text, sizeof text, "%p",
                      static_cast<void const*>(&registrations_[i]->observer));
        observers[text] = static_cast<int>(i);
    }
    for (InfoContainer::Row const& row : info.rows()) {
        const std::string key = library::text(row.key);
        const std::string value = library::text(row.value);
        if (row.depth == 0) {
            continue;
        } else if (row.depth == 1) {
            inListeners = key == "Listeners";
        } else if (row.depth == 2 && !inListeners) {
            IDriver* found = nullptr;
            repository_->getDriver(row.key, &found);
            state.drivers.push_back({idOf(found), {}, {}});
            active.emplace_back();
            if (found != nullptr)
                found->release();
        } else if (row.depth == 2) {
            name = key;
            state.listeners.push_back({-1, {0, 0, 0, 0}});
        } else if (row.depth == 3) {
            section = key;
            if (inListeners && key == "Observer") {
                const int id = observers.count(value) != 0 ? observers[value] : stoppedOne(name);
                state.listeners.back().registration = id;
                byName[name] = id;
            }
        } else if (!inListeners && section == "Attachments") {
            state.drivers.back().attachments.emplace_back(key, value);
        } else if (!inListeners) {
            active.back().push_back(key);
        } else if (row.detail == 3) {
            const char* const keys[] = {"onDriverAdded", "onDriverRemoved", "onAttachmentSet",
                                        "onAttachmentCleared"};
            for (int i = 0; i < 4; ++i)
                if (key == keys[i])
                    state.listeners.back().counts[i] =
                        static_cast<std::uint32_t>(std::stoul(value));
        }
    }
    for (std::size_t i = 0; i < state.drivers.size(); ++i)
        for (std::string const& who : active[i])
            state.drivers[i].active.push_back(byName[who]);
    return state;
}

void NestedRun::checkReferences()
{
    const Judge::State now = state();
    if (repositoryCount_.refs != 1)
        complain("the repository has " + std::to_string(repositoryCount_.refs) + " references");
    for (std::size_t i = 0; i < drivers_.size(); ++i) {
        const int id = static_cast<int>(i);
        const auto held = std::count(slots_.begin(), slots_.end(), id);
        const auto listed =
            std::count_if(now.drivers.begin(), now.drivers.end(),
                          [id](Judge::DriverState const& driver) { return driver.driver == id; });
        if (drivers_[i]->count.refs != held + listed)
            complain("driver #" + std::to_string(id) + " has " +
                     std::to_string(drivers_[i]->count.refs) + " references instead of " +
                     std::to_string(held + listed));
    }
    for (std::size_t i = 0; i < registrations_.size(); ++i) {
        Registration const& mine = *registrations_[i];
        if (mine.delegate == nullptr || mine.delegate->observer() == nullptr)
            continue;
        const auto listed = std::count_if(now.listeners.begin(), now.listeners.end(),
                                          [i](Judge::ListenerState const& listener) {
                                              return listener.registration == static_cast<int>(i);
                                          });
        if (mine.count.refs != 1 + listed)
            complain("the delegate of listener #" + std::to_string(i) + " has " +
                     std::to_string(mine.count.refs) + " references instead of " +
                     std::to_string(1 + listed));
    }
}

void NestedRun::checkQuiet()
{
    if (left_ || !violations_.empty())
        return;
    judge_.quiet(state());
    adoptViolations();
    if (violations_.empty())
        checkReferences();
}
