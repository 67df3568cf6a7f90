#include "RandomProgram.h"

namespace
{
using Kind = Step::Kind;

std::string withZero(char const* head, char const* tail)
{
    return std::string(head) + '\0' + tail;
}

const std::string DRIVER_NAMES[] = {
    "e1t1 0", "e1t1 0",   "e1t1 0",   "e1t1 0", "e1t1 01", "e1t1 01", "e1t1 01",
    "fxs 1",  "e1t1 0/a", "e1t1 0/a", "e1t1",   "",        "e%s",     withZero("e1", "1"),
};
const std::string PREFIXES[] = {
    "", "", "", "", "", "", "e", "e", "e1t1", "e1t1 0", "fxs 1", "x", withZero("e1", ""),
};
const std::string LISTENER_NAMES[] = {"a", "b", "ab", "c", "d", "e", "", "l%d", withZero("a", "b")};
const std::string KEYS[] = {"k", "k", "m", "m", "", "kk", withZero("k", "k")};
const std::string VALUES[] = {"", "", "a", "a", "ab", "abc", "b", "1", "%s"};
const std::string CRITERIA[] = {"", "a", "a", "ab", "b"};
const std::string ERRORS[] = {"", "", "", "junk"};
const std::string WORDS[] = {"line busy", "no", "", "100%s"};
const std::uint32_t PRIORITIES[] = {0, 1, 1, 1, 2, 2, 5, 0xffffffff};
const std::int32_t CODES[] = {-1, -1, 1, 7, -7, 0x7fffffff, -0x7fffffff - 1, 0x40000000};
const std::uint32_t MASKS[] = {
    0, 0, 1, 3, 0x0f, 0xf0, 0xff, 0xfffefffe, 0x80000000, 0xffffffff, 0x10000, 0x55555555,
};
const std::string TIMESLOT_TEXTS[] = {
    "",      "1-15;17-31", "0",     "1,2",        "3,5 7",
    "0-31",  "31-1",       "4-4",   "32",         "1-32",
    "40-2",  "2-",         "-7",    "1;2;40",     "1-2-3",
    " ;, 1", "x",          "5,5,6", "4294967297", "18446744073709551617",
    "1\t2",
};
const int IDS[] = {ID_INVALID,          ID_A, ID_A, ID_A, ID_A_TWIN, ID_B, ID_UNKNOWN, ID_ZERO,
                   ID_DID_CHANNEL_GROUP};
const int IIDS[] = {ID_INVALID,       ID_A,    ID_A_TWIN,  ID_B,     ID_C, ID_INFO, ID_INFO,
                    ID_CHANNEL_GROUP, ID_ZERO, ID_UNKNOWN, ID_DRIVER};

/// How often each kind is drawn.
struct Weight
{
    Kind kind;
    std::uint32_t weight;
};

const Weight WEIGHTS[] = {
    {Kind::MAKE_DRIVER, 55},    {Kind::MAKE_GROUP, 10},     {Kind::DROP_DRIVER, 8},
    {Kind::HOLD_DRIVER, 5},     {Kind::UNHOLD_DRIVER, 6},   {Kind::SET_INTERFACES, 5},
    {Kind::ADD_DRIVER, 120},    {Kind::REMOVE_POINTER, 18}, {Kind::REMOVE_NAME, 30},
    {Kind::GET_DRIVER, 12},     {Kind::MAKE_DELEGATE, 8},   {Kind::DROP_DELEGATE, 2},
    {Kind::STOP_DELEGATE, 2},   {Kind::REGISTER, 120},      {Kind::UNREGISTER, 35},
    {Kind::FOLLOW, 60},         {Kind::DROP_KEPT, 10},      {Kind::SET_ATTACHMENT, 200},
    {Kind::SET_BY_POINTER, 60}, {Kind::GET_ATTACHMENT, 12}, {Kind::GET_BY_POINTER, 8},
    {Kind::GET_INTERFACE, 15},  {Kind::GET_DRIVERS, 15},    {Kind::GET_INTERFACES, 15},
    {Kind::GET_INFO, 25},       {Kind::MONITOR, 4},         {Kind::GROUP_ADD, 30},
    {Kind::GROUP_REMOVE, 12},   {Kind::GROUP_SET, 45},      {Kind::GROUP_INFO, 5},
    {Kind::GROUP_FOLLOW, 12},   {Kind::GROUP_DROP_KEPT, 3}, {Kind::GROUP_REACT, 25},
    {Kind::TIMESLOTS, 6},       {Kind::RECORD_MAKE, 3},     {Kind::RECORD_LISTENER, 15},
    {Kind::RECORD_CALL, 80},
};

/// What a program begins with, so that its calls find something to work on.
const Kind FURNITURE[] = {
    Kind::MAKE_DELEGATE,   Kind::MAKE_DELEGATE,   Kind::MAKE_DELEGATE,   Kind::MAKE_DRIVER,
    Kind::MAKE_DRIVER,     Kind::MAKE_DRIVER,     Kind::MAKE_DRIVER,     Kind::MAKE_DRIVER,
    Kind::MAKE_GROUP,      Kind::MAKE_GROUP,      Kind::FOLLOW,          Kind::FOLLOW,
    Kind::FOLLOW,          Kind::FOLLOW,          Kind::REGISTER,        Kind::REGISTER,
    Kind::REGISTER,        Kind::ADD_DRIVER,      Kind::ADD_DRIVER,      Kind::ADD_DRIVER,
    Kind::GROUP_ADD,       Kind::GROUP_ADD,       Kind::GROUP_FOLLOW,    Kind::RECORD_MAKE,
    Kind::RECORD_LISTENER, Kind::RECORD_LISTENER, Kind::RECORD_LISTENER,
};

class Generator
{
public:
    explicit Generator(std::uint64_t seed) : random_(seed)
    {
        // Every other program is about one theme.
        const Kind themes[] = {Kind::RECORD_CALL, Kind::GROUP_SET, Kind::SET_ATTACHMENT};
        const Kind theme = random_.chance(50) ? random_.pick(themes) : Kind::END;
        for (Weight weight : WEIGHTS) {
            if (weight.kind == theme)
                weight.weight *= 20;
            weights_.push_back(weight);
            total_ += weight.weight;
        }
    }

    Step step() { return step(kind()); }

    Step step(Kind kind)
    {
        Step step;
        step.kind = kind;
        // Every field is drawn for every kind; each kind reads those it knows.
        step.slot = slot(step.kind);
        step.other = random_.chance(4) ? -1 : static_cast<int>(random_.below(OBSERVERS));
        step.id = random_.pick(IDS);
        step.iid = random_.pick(IIDS);
        step.text = random_.pick(ERRORS);
        step.key = random_.pick(KEYS);
        step.value = random_.pick(VALUES);
        step.name = name(step.kind);
        step.veto = random_.chance(60);
        step.snapshot = random_.chance(70);
        step.flag = random_.chance(50);
        details(step);
        return step;
    }

private:
    Kind kind()
    {
        std::uint32_t at = random_.below(total_);
        for (Weight const& weight : weights_) {
            if (at < weight.weight)
                return weight.kind;
            at -= weight.weight;
        }
        return Kind::ADD_DRIVER;
    }

    int slot(Kind kind)
    {
        switch (kind) {
        case Kind::MAKE_DELEGATE:
        case Kind::DROP_DELEGATE:
        case Kind::STOP_DELEGATE:
            return static_cast<int>(random_.below(DELEGATE_SLOTS));
        case Kind::FOLLOW:
        case Kind::DROP_KEPT:
            return static_cast<int>(random_.below(OBSERVERS));
        case Kind::GROUP_FOLLOW:
        case Kind::GROUP_DROP_KEPT:
        case Kind::GROUP_REACT:
            return static_cast<int>(random_.below(GROUP_OBSERVERS));
        // Groups live in the last two slots.
        case Kind::MAKE_GROUP:
        case Kind::GROUP_ADD:
        case Kind::GROUP_REMOVE:
        case Kind::GROUP_SET:
        case Kind::GROUP_INFO:
            return DRIVER_SLOTS - 1 - static_cast<int>(random_.below(2));
        case Kind::MAKE_DRIVER:
            return static_cast<int>(random_.below(DRIVER_SLOTS - 2));
        case Kind::ADD_DRIVER:
        case Kind::REMOVE_POINTER:
        case Kind::SET_BY_POINTER:
        case Kind::GET_BY_POINTER:
            if (random_.chance(3))
                return -1;
            break;
        default:
            break;
        }
        return static_cast<int>(random_.below(DRIVER_SLOTS));
    }

    std::string name(Kind kind)
    {
        switch (kind) {
        case Kind::REGISTER:
        case Kind::UNREGISTER:
        case Kind::RECORD_LISTENER:
            return random_.pick(LISTENER_NAMES);
        case Kind::GET_DRIVERS:
        case Kind::GET_INTERFACES:
        case Kind::GET_INFO:
        case Kind::GROUP_INFO:
            return random_.pick(PREFIXES);
        default:
            return random_.pick(DRIVER_NAMES);
        }
    }

    void attributes(Step& step)
    {
        // Braces draw from left to right; arguments in parentheses would be drawn in any order.
        for (std::uint32_t n = random_.chance(60) ? 0 : 1 + random_.below(2); n > 0; --n)
            step.attributes.push_back({random_.pick(KEYS), random_.pick(CRITERIA)});
    }

    void limits(Step& step)
    {
        const std::uint32_t depth = random_.chance(5) ? 0xfffffffc : random_.below(3);
        const std::uint32_t detail = random_.chance(5) ? 0xfffffffc : random_.below(3);
        const bool all = random_.chance(50);
        step.limits = {{all ? 0xffffffff : depth + random_.below(6) - 1, depth,
                        all ? 0xffffffff : detail + random_.below(6) - 1, detail}};
    }

    void policy(Policy& policy)
    {
        using Refuses = Policy::Refuses;
        const Refuses kinds[] = {Refuses::NEVER,    Refuses::NEVER,     Refuses::NEVER,
                                 Refuses::ADDED,    Refuses::SET,       Refuses::SET,
                                 Refuses::NTH_CALL, Refuses::TIMESLOTS, Refuses::ALWAYS};
        policy.refuses = random_.pick(kinds);
        policy.name = policy.refuses == Refuses::SET ? random_.pick(KEYS) : random_.pick(PREFIXES);
        policy.value = random_.pick(VALUES);
        policy.words = random_.pick(WORDS);
        policy.nth = 1 + random_.below(5);
        policy.mask = random_.pick(MASKS);
        policy.code = random_.pick(CODES);
        policy.silent = random_.chance(15);
        policy.chatters = random_.chance(15);
        policy.peeks = random_.chance(25);
        policy.keeps = random_.chance(10);
        policy.scribbles = random_.chance(25);
    }

    void alias(Step& step)
    {
        const Step::Alias aliases[] = {Step::Alias::NAME, Step::Alias::KEY, Step::Alias::VALUE,
                                       Step::Alias::OWN_NAME};
        if (random_.chance(20))
            step.alias = random_.pick(aliases);
    }

    void details(Step& step)
    {
        switch (step.kind) {
        case Kind::MAKE_DRIVER:
            step.bits = random_.below(16);
            step.more = random_.chance(20) ? random_.below(16) : 0;
            step.number = random_.below(2);
            break;
        case Kind::SET_INTERFACES:
            step.bits = random_.below(16);
            break;
        case Kind::REGISTER:
        case Kind::RECORD_LISTENER:
            step.slot = random_.chance(8) ? -1 : static_cast<int>(random_.below(DELEGATE_SLOTS));
            step.value = random_.chance(60) ? "" : random_.pick(PREFIXES);
            step.number = random_.pick(PRIORITIES);
            step.bits = random_.below(4);
            // Most listeners ask neither for a type nor for an interface.
            step.id = random_.chance(80) ? ID_INVALID : step.id;
            step.iid = random_.chance(80) ? ID_INVALID : step.iid;
            // A listener of a record without a delegate would hear nothing.
            if (step.kind == Kind::RECORD_LISTENER)
                step.bits |= 2;
            attributes(step);
            alias(step);
            break;
        case Kind::GET_DRIVERS:
        case Kind::GET_INTERFACES:
            step.id = random_.chance(60) ? ID_INVALID : step.id;
            attributes(step);
            alias(step);
            break;
        case Kind::REMOVE_NAME:
        case Kind::SET_ATTACHMENT:
        case Kind::SET_BY_POINTER:
        case Kind::GET_ATTACHMENT:
        case Kind::GET_BY_POINTER:
            alias(step);
            break;
        case Kind::FOLLOW:
        case Kind::GROUP_FOLLOW:
            policy(step.policy);
            break;
        case Kind::GET_INFO:
        case Kind::GROUP_INFO:
            limits(step);
            break;
        case Kind::MONITOR:
            step.flag = random_.chance(80);
            step.number = random_.chance(20) ? 0xffffffff : random_.below(2);
            break;
        case Kind::GROUP_ADD:
        case Kind::GROUP_REMOVE:
            step.other = static_cast<int>(random_.below(GROUP_OBSERVERS + 1)) - 1;
            step.number = random_.pick(PRIORITIES);
            break;
        case Kind::GROUP_REACT:
            reaction(step);
            break;
        case Kind::GROUP_SET:
            step.number = random_.pick(MASKS);
            break;
        case Kind::TIMESLOTS:
            step.value = random_.pick(TIMESLOT_TEXTS);
            step.number = random_.pick(MASKS);
            break;
        case Kind::RECORD_CALL:
            recordCall(step);
            break;
        default:
            break;
        }
        if (step.kind == Kind::RECORD_LISTENER)
            step.other = static_cast<int>(random_.below(RECORD_LISTENERS));
    }

    /// What an observer of a group does from inside a call.
    void reaction(Step& step)
    {
        const Kind kinds[] = {Kind::GROUP_ADD,    Kind::GROUP_ADD,    Kind::GROUP_ADD,
                              Kind::GROUP_REMOVE, Kind::GROUP_REMOVE, Kind::GROUP_REMOVE,
                              Kind::GROUP_INFO,   Kind::DROP_DRIVER,  Kind::GROUP_SET,
                              Kind::GROUP_SET};
        step.number = random_.below(4);
        step.flag = random_.chance(40);
        for (std::uint32_t n = 1 + random_.below(3); n > 0; --n) {
            Step nested = this->step(random_.pick(kinds));
            nested.slot = DRIVER_SLOTS - 1 - static_cast<int>(random_.below(2));
            step.nested.push_back(nested);
        }
    }

    void recordCall(Step& step)
    {
        step.number = random_.below(static_cast<std::uint32_t>(RecordCall::END));
        // Half of the calls are the ones that change most.
        if (random_.chance(50))
            step.number = static_cast<std::uint32_t>(random_.chance(50) ? RecordCall::SET_ATTACHMENT
                                                     : random_.chance(60) ? RecordCall::ADD
                                                                          : RecordCall::REMOVE);
        step.other = static_cast<int>(random_.below(RECORD_LISTENERS));
        step.name = random_.pick(KEYS);
        // A change under way has a value to lose; without one, no change is described.
        if (step.number == static_cast<std::uint32_t>(RecordCall::SNAPSHOT_FINAL) &&
            step.value.empty())
            step.key.clear();
        limits(step);
        if (random_.chance(10))
            step.alias = Step::Alias::VALUE;
    }

    Random random_;
    std::vector<Weight> weights_;
    std::uint32_t total_ = 0;
};

Step make(Kind kind, int slot, std::string const& name = "")
{
    Step step;
    step.kind = kind;
    step.slot = slot;
    step.name = name;
    return step;
}
} // namespace

Program randomProgram(std::uint64_t seed, std::size_t length)
{
    Generator generator(seed);
    Program program;
    program.reserve(length);
    for (Kind kind : FURNITURE)
        program.push_back(generator.step(kind));
    while (program.size() < length)
        program.push_back(generator.step());
    return program;
}

Program farewell()
{
    Program program;
    for (std::string const& name : LISTENER_NAMES)
        program.push_back(make(Kind::UNREGISTER, 0, name));
    for (std::string const& name : DRIVER_NAMES)
        program.push_back(make(Kind::REMOVE_NAME, 0, name));
    for (int slot = 0; slot < OBSERVERS; ++slot)
        program.push_back(make(Kind::DROP_KEPT, slot));
    for (int slot = 0; slot < GROUP_OBSERVERS; ++slot)
        program.push_back(make(Kind::GROUP_DROP_KEPT, slot));
    for (int slot = 0; slot < DELEGATE_SLOTS; ++slot)
        program.push_back(make(Kind::DROP_DELEGATE, slot));
    // The lists of the last queries are emptied by queries that find nothing any more.
    program.push_back(make(Kind::GET_DRIVERS, 0));
    program.push_back(make(Kind::GET_INTERFACES, 0));
    program.push_back(make(Kind::RECORD_MAKE, -1));
    for (int slot = 0; slot < DRIVER_SLOTS; ++slot)
        program.push_back(make(Kind::DROP_DRIVER, slot));
    return program;
}
