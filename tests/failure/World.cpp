#include "World.h"

#include <cstdio>

#include <support/InfoText.h>

#include "Heap.h"
#include "Judge.h"

/// A driver whose virtual operations are call-outs, but for those that count its references.
class World::Driver : public CDriver
{
public:
    Driver(World& world, std::string const& name)
        : CDriver(IDriver::DID_UNKNOWN(), name.c_str()), world_(world), name_(name)
    {}

    int references() const { return references_; }
    void publish(char const* key, char const* value) { published_[key] = value; }

    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        world_.callOuts.pass(name_ + ".query");
        return CDriver::queryInterface(iid, out);
    }
    void addRef() override
    {
        ++references_;
        CDriver::addRef();
    }
    void release() override
    {
        --references_;
        CDriver::release();
    }
    TOVA_UUID const& getDID() const override
    {
        world_.callOuts.pass(name_ + ".did");
        return CDriver::getDID();
    }
    String const& getDriverName() const override
    {
        world_.callOuts.pass(name_ + ".name");
        return CDriver::getDriverName();
    }
    void setDriverRepository(IDriverRepository* repository) override
    {
        CDriver::setDriverRepository(repository);
        for (auto const& at : published_)
            if (repository != nullptr)
                world_.set(name_.c_str(), at.first.c_str(), at.second.c_str());
        world_.callOuts.pass(name_ + (repository != nullptr ? ".in" : ".out"));
    }

private:
    World& world_;
    const std::string name_;
    int references_ = 1;
    std::map<std::string, std::string> published_;
};

class World::Listening : public IDriverRepositoryObserver
{
public:
    using Event = ObserverEvent<IDriverRepository>;

    Listening(World& world, std::string const& name)
        : delegate(new TestDelegate(this)), world_(world), name_(name)
    {}

    XCode onDriverAdded(String& error, Event& event) override { return ask(error, '+', event); }
    void onDriverRemoved(Event& event) override { tell('-', event); }
    XCode onDriverAttachmentSet(String& error, Event& event) override
    {
        return ask(error, '+', event);
    }
    void onDriverAttachmentCleared(Event& event) override { tell('-', event); }

    const TYPtr<TestDelegate> delegate;

private:
    XCode ask(String& error, char sign, Event const& event)
    {
        const int refusal = -7;
        return XCode(world_.hear(textOf(sign, event), &error) ? refusal : 0);
    }
    void tell(char sign, Event const& event) { world_.hear(textOf(sign, event), nullptr); }
    std::string textOf(char sign, Event const& event) const
    {
        const heap::Exempt exempt;
        std::string what =
            name_ + sign +
            world_.nameOf(static_cast<IDriverRepository::EvDriver const&>(event).driver.get());
        if (auto const* change = attachmentOf(event))
            what += std::string(".") + change->key.cString() + "=" + change->value.cString();
        return what;
    }
    static IDriverRepository::EvAttachment const* attachmentOf(Event const& event)
    {
        return dynamic_cast<IDriverRepository::EvAttachment const*>(&event);
    }

    World& world_;
    const std::string name_;
};

/// An observer of the group.
class World::Observing : public IChannelGroupObserver
{
public:
    using Event = ObserverEvent<IChannelGroup>;

    Observing(World& world, std::string const& name) : world_(world), name_(name) {}

    XCode onTimeslotsAdded(String& message, Event& event) override
    {
        const int refusal = -8;
        return XCode(world_.hear(textOf('+', event), &message) ? refusal : 0);
    }
    void onTimeslotsAdded(Event& event) override
    {
        String ignored; // in the world where all may refuse, the same comes with a message
        world_.hear(textOf('+', event), &ignored);
    }
    void onTimeslotsRemoved(Event& event) override { world_.hear(textOf('-', event), nullptr); }

private:
    std::string textOf(char sign, Event const& event) const
    {
        const heap::Exempt exempt;
        char text[40];
        std::snprintf(text, sizeof text, "%x->%x", event.data.word(0), event.data.word(1));
        return name_ + sign + text;
    }

    World& world_;
    const std::string name_;
};

/// Each line is a call-out.
class World::Log : public RTD::Monitor
{
public:
    explicit Log(World& world) : world_(world) { MON_DRV = this; }
    ~Log() override { MON_DRV = nullptr; }

protected:
    void write(int level, char const* fmt, std::va_list arguments) const override
        UTILITY_PRINTF(3, 0)
    {
        char line[400];
        std::vsnprintf(line, sizeof line, fmt, arguments);
        if (level == RTD::LEVEL_ERROR) {
            const heap::Exempt exempt;
            world_.failures_.push_back(line);
        }
        world_.callOuts.pass(labelOf(line));
    }

private:
    static std::string labelOf(char const* line)
    {
        const heap::Exempt exempt;
        std::string label = std::string("log: ") + line;
        const std::size_t address = label.find("0x"); // differs from world to world
        if (address != std::string::npos)
            label.erase(address, label.find_first_of("':", address) - address);
        return label;
    }

    World& world_;
};

char const* const World::FAILED = "!";

World::World(bool allMayRefuse)
    : allMayRefuse_(allMayRefuse), repository_(new TestRepository(loop_)),
      group_(new TestGroup("B")), log_(std::make_unique<Log>(*this))
{
    callOuts.onFailure = [this] {
        const heap::Exempt exempt;
        heard_.push_back(Heard{FAILED, true, telling_});
    };
}

World::~World()
{
    if (!ended_)
        end();
    log_.reset();
    repository_->release();
}

void World::plan(char const* name, unsigned priority, Terms const& terms)
{
    listening(name);
    ListenerPlan& plan = plans_[name];
    plan.priority = priority;
    plan.terms = terms;
    if (allMayRefuse_)
        plan.terms.veto();
}

void World::planObserver(char const* name, unsigned priority, bool veto, bool notifyCurrent)
{
    observing(name);
    observerPlans_[name] = ObserverPlan{priority, veto || allMayRefuse_, notifyCurrent};
}

void World::on(std::string const& what, std::function<void()> reaction)
{
    reactions_[what] = std::move(reaction);
}

void World::publish(char const* driver, char const* key, char const* value)
{
    this->driver(driver);
    drivers_[driver].get()->publish(key, value);
}

namespace
{

/// Sets a variable for the length of a scope.
class Turn
{
public:
    Turn(int& variable, int value) : variable_(variable), before_(variable) { variable = value; }
    Turn(Turn const&) = delete;
    Turn& operator=(Turn const&) = delete;
    ~Turn() { variable_ = before_; }

private:
    int& variable_;
    const int before_;
};

} // namespace

bool World::hear(std::string const& what, String* error)
{
    std::function<void()> reaction;
    const std::size_t entry = heard_.size();
    {
        const heap::Exempt exempt;
        heard_.push_back(Heard{what, true, telling_});
        const auto found = reactions_.find(what);
        if (found != reactions_.end()) {
            reaction = std::move(found->second);
            reactions_.erase(found);
        }
    }
    const Turn turn(telling_, static_cast<int>(entry));
    if (reaction)
        react(reaction);
    const bool told = refusals_.count(what) != 0;
    if (told && error != nullptr)
        *error = text("refused");
    const bool refuses = callOuts.pass(what, error) || told;
    heard_[entry].failed = refuses;
    if (refuses)
        requestsAtRefusal = heap::count();
    return refuses;
}

void World::react(std::function<void()> const& reaction) const
{
    try {
        reaction();
    } catch (Thrown const&) {
        if (!guarded)
            throw;
    }
}

void World::note(XCode const& rc, String const& error)
{
    const heap::Exempt exempt;
    outcome = Outcome{rc.code(), error.cString()};
}

String const& World::text(std::string const& text)
{
    const heap::Exempt exempt;
    return texts_.emplace(text, text.c_str()).first->second;
}

/// Not asked of the driver itself: that would be a call-out of the test's own.
std::string World::nameOf(IDriver const* driver) const
{
    for (auto const& at : drivers_)
        if (at.second.get() == driver)
            return at.first;
    return "B";
}

IDriver* World::driver(char const* name)
{
    const heap::Exempt exempt;
    if (name == std::string("B"))
        return group_.get();
    TYPtr<Driver>& made = drivers_[name];
    if (!made)
        made.reset(new Driver(*this, name));
    return made.get();
}

World::Listening& World::listening(char const* name)
{
    const heap::Exempt exempt;
    auto& made = listeners_[name];
    if (made == nullptr)
        made = std::make_unique<Listening>(*this, name);
    return *made;
}

World::Observing& World::observing(char const* name)
{
    const heap::Exempt exempt;
    auto& made = observers_[name];
    if (made == nullptr)
        made = std::make_unique<Observing>(*this, name);
    return *made;
}

TestDelegate* World::delegate(char const* name)
{
    return listening(name).delegate.get();
}

void World::add(char const* driver)
{
    String error(text("left over"));
    const XCode rc = repository_->addDriver(error, this->driver(driver));
    note(rc, error);
}

void World::remove(char const* driver)
{
    repository_->removeDriver(this->driver(driver));
}

void World::removeByName(char const* driver)
{
    repository_->removeDriver(text(driver));
}

void World::listen(char const* name)
{
    String error(text("left over"));
    Listening& listening = this->listening(name);
    ListenerPlan const& plan = plans_.at(text(name).cString());
    const XCode rc = repository_->addDriverRepositoryObserver(
        error, text(name), plan.terms.did(), plan.terms.iid(), plan.terms.prefix(),
        plan.terms.attributes(), plan.priority, plan.terms.hasRightOfVeto(),
        plan.terms.wantsSnapshot(), listening.delegate.get());
    note(rc, error);
}

void World::listenPlainly(char const* name)
{
    String error(text("left over"));
    Listening& listening = this->listening(name);
    ListenerPlan const& plan = plans_.at(text(name).cString());
    const XCode rc = repository_->addDriverRepositoryObserver(
        error, text(name), plan.terms.did(), plan.terms.iid(), plan.terms.prefix(), plan.priority,
        plan.terms.hasRightOfVeto(), plan.terms.wantsSnapshot(), &listening);
    note(rc, error);
}

void World::unlisten(char const* name)
{
    repository_->removeDriverRepositoryObserver(text(name));
}

void World::set(char const* driver, char const* key, char const* value)
{
    String error(text("left over"));
    const XCode rc = repository_->setDriverAttachment(error, text(driver), text(key), text(value));
    note(rc, error);
}

void World::setByDriver(char const* driver, char const* key, char const* value)
{
    String error(text("left over"));
    const XCode rc =
        repository_->setDriverAttachment(error, this->driver(driver), text(key), text(value));
    note(rc, error);
}

void World::observe(char const* name)
{
    String message(text("left over"));
    Observing& observing = this->observing(name);
    ObserverPlan const& plan = observerPlans_.at(text(name).cString());
    const XCode rc = group().addChannelGroupObserver(message, &observing, plan.priority, plan.veto,
                                                     plan.notifyCurrent);
    note(rc, message);
}

void World::unobserve(char const* name, bool notifyCurrent)
{
    group().removeChannelGroupObserver(&observing(name), notifyCurrent);
}

void World::timeslots(unsigned mask)
{
    String message(text("left over"));
    const XCode rc = group().setTimeslots(message, mask);
    note(rc, message);
}

std::string World::references() const
{
    std::string all = "repository " + std::to_string(repository_->references()) + ", group " +
                      std::to_string(group_.get()->references());
    for (auto const& at : drivers_)
        all += ", " + at.first + " " + std::to_string(at.second.get()->references());
    for (auto const& at : listeners_)
        all += ", " + at.first + " " + std::to_string(at.second->delegate.get()->references());
    return all + "\n";
}

std::string World::look(bool statistics)
{
    InfoContainer all;
    const unsigned everything = 20;
    repository_->getInfo(all, everything, 0, everything, 0, String::EMPTY());
    InfoContainer shown;
    bool counting = false;
    for (InfoContainer::Row const& row : all.rows()) {
        counting = row.key == "Notification Statistics" || (counting && row.depth >= 4);
        if (row.key != "Observer" && (statistics || !counting))
            shown.add(row.depth, row.detail, row.key, row.value);
    }
    std::string in;
    for (auto const& at : drivers_)
        if (at.second.get()->getDriverRepository() != nullptr)
            in += " " + at.first;
    return ::textOf(shown) + references() + "know the repository:" + in + "\ntimeslots " +
           std::to_string(group_.get()->getTimeslots()) + "\n";
}

std::string World::probe()
{
    reactions_.clear();
    refusals_.clear();
    const std::size_t from = heard_.size();
    plan("probe", 15, Terms().snapshot());
    planObserver("p", 15, false, true);
    listen("probe");
    add("z");
    for (auto const& at : drivers_) {
        set(at.first.c_str(), "probed", "1");
        set(at.first.c_str(), "probed", "");
    }
    remove("z");
    unlisten("probe");
    observe("p");
    timeslots(group().getTimeslots() ^ 0xff0000u);
    timeslots(group().getTimeslots() ^ 0xff0000u);
    unobserve("p", true);
    std::string all;
    for (std::size_t i = from; i < heard_.size(); ++i)
        if (heard_[i].isOurs())
            all += heard_[i].what + "\n";
    return all;
}

std::string World::heard() const
{
    std::string all;
    for (Heard const& at : heard_)
        if (at.isOurs())
            all += at.what + (at.failed ? " failed\n" : "\n");
    return all;
}

void World::forget()
{
    heard_.clear();
    failures_.clear();
}

/// What was heard, where a coming whose going was told already while it was being told counts as
/// accepted: what its listener answers then answers nothing any more.
std::vector<World::Heard> World::settled() const
{
    std::vector<Heard> all = heard_;
    for (Heard const& going : all) {
        std::string coming = going.what;
        const std::size_t sign = coming.find('-');
        if (sign == std::string::npos)
            continue;
        coming[sign] = '+';
        for (int at = going.inside; at != -1; at = all[static_cast<std::size_t>(at)].inside)
            if (all[static_cast<std::size_t>(at)].what == coming)
                all[static_cast<std::size_t>(at)].failed = false;
    }
    return all;
}

std::string World::liesTold() const
{
    Judge judge;
    for (Heard const& at : settled()) {
        if (listeners_.count(at.what.substr(0, at.what.find_first_of("+-"))) != 0)
            judge.hear(at.what, at.failed);
        for (auto const& plan : plans_)
            if (!at.isOurs() && mayMissGoings && !plan.second.terms.attributes().isEmpty())
                judge.doubt(plan.first);
    }
    return judge.verdict();
}

std::string World::end()
{
    ended_ = true;
    reactions_.clear();
    refusals_.clear();
    for (auto const& at : listeners_)
        unlisten(at.first.c_str());
    for (auto const& at : drivers_)
        remove(at.first.c_str());
    remove("B");
    const bool notifyCurrent = false;
    for (auto const& at : observers_)
        for (int registration = 0; registration < 3; ++registration) // more than any test makes
            unobserve(at.first.c_str(), notifyCurrent);
    std::string expected = "repository 1, group 1";
    for (auto const& at : drivers_)
        expected += ", " + at.first + " 1";
    for (auto const& at : listeners_)
        expected += ", " + at.first + " 1";
    std::string faults = liesTold();
    if (references() != expected + "\n")
        faults += "left: " + references();
    return faults;
}
