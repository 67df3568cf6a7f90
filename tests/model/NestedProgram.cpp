#include "NestedProgram.h"

#include "Trace.h"

const std::vector<std::string> NESTED_DRIVER_NAMES = {"e1t1 0", "e1t1 0", "e1t1 01", "fxs 1", ""};
const std::vector<std::string> NESTED_LISTENER_NAMES = {"a", "b", "c", "d", "e"};

namespace
{
using Kind = Action::Kind;

const std::string KEYS[] = {"k", "k", "m", "n", ""};
const std::string VALUES[] = {"", "a", "a", "ab", "b"};
const std::string CRITERIA[] = {"", "a", "a", "ab", "b"};
const std::string PREFIXES[] = {"", "", "", "e", "e1t1 0"};
const std::uint32_t PRIORITIES[] = {0, 1, 1, 2};

char const* const KINDS[] = {
    "makeDriver", "dropDriver", "addDriver", "removeDriver*", "removeDriver",
    "register",   "unregister", "stop",      "setAttachment", "setAttachment*",
    "get",        "find",       "info",      "leave",
};
static_assert(sizeof KINDS / sizeof KINDS[0] == static_cast<std::size_t>(Kind::END), "one a kind");

char const* const CALL_OUTS[] = {
    "onDriverAdded",         "onDriverRemoved",
    "onDriverAttachmentSet", "onDriverAttachmentCleared",
    "setDriverRepository",   "log",
    "getDriverName",         "getDID",
    "queryInterface",        "~Driver",
};
static_assert(sizeof CALL_OUTS / sizeof CALL_OUTS[0] == static_cast<std::size_t>(CallOut::END),
              "one a kind");

struct Weight
{
    Kind kind;
    std::uint32_t weight;
};

const Weight WEIGHTS[] = {
    {Kind::MAKE_DRIVER, 6},    {Kind::DROP_DRIVER, 3}, {Kind::ADD_DRIVER, 18},
    {Kind::REMOVE_POINTER, 7}, {Kind::REMOVE_NAME, 7}, {Kind::REGISTER, 16},
    {Kind::UNREGISTER, 12},    {Kind::STOP, 1},        {Kind::SET, 28},
    {Kind::SET_BY_POINTER, 8}, {Kind::GET, 1},         {Kind::FIND, 2},
    {Kind::INFO, 1},
};

/// How often a kind of call is answered with a reaction, and up to which ordinal.
struct Place
{
    CallOut callOut;
    std::uint32_t weight;
    std::uint32_t ordinals;
};

const Place PLACES[] = {
    {CallOut::ADDED, 30, 40},
    {CallOut::REMOVED, 25, 30},
    {CallOut::SET, 30, 40},
    {CallOut::CLEARED, 25, 30},
    {CallOut::SET_REPOSITORY, 6, 20},
    {CallOut::LOG, 6, 150},
    {CallOut::GET_NAME, 5, 300},
    {CallOut::GET_TYPE, 2, 60},
    {CallOut::QUERY_INTERFACE, 2, 30},
    {CallOut::DESTRUCTOR, 2, 5},
};

class Generator
{
public:
    explicit Generator(std::uint64_t seed) : random_(seed) {}

    NestedProgram program()
    {
        NestedProgram program;
        for (int slot = 0; slot < NESTED_SLOTS; ++slot) {
            Action make = action(Kind::MAKE_DRIVER);
            make.slot = slot;
            program.actions.push_back(make);
        }
        for (std::uint32_t n = 2 + random_.below(3); n > 0; --n)
            program.actions.push_back(action(Kind::REGISTER));
        for (std::uint32_t n = random_.below(3); n > 0; --n)
            program.actions.push_back(action(Kind::ADD_DRIVER));
        for (std::uint32_t n = 5 + random_.below(30); n > 0; --n)
            program.actions.push_back(action());
        throws_ = random_.chance(40);
        leaves_ = random_.chance(3);
        for (std::uint32_t n = random_.below(25); n > 0; --n)
            program.reactions.push_back(reaction());
        return program;
    }

private:
    Action action()
    {
        std::uint32_t total = 0;
        for (Weight const& weight : WEIGHTS)
            total += weight.weight;
        std::uint32_t at = random_.below(total);
        for (Weight const& weight : WEIGHTS) {
            if (at < weight.weight)
                return action(weight.kind);
            at -= weight.weight;
        }
        return action(Kind::INFO);
    }

    std::string pick(std::vector<std::string> const& pool)
    {
        return pool[random_.below(static_cast<std::uint32_t>(pool.size()))];
    }

    Action action(Kind kind)
    {
        Action action;
        action.kind = kind;
        action.slot = static_cast<int>(random_.below(NESTED_SLOTS));
        action.key = random_.pick(KEYS);
        action.value = random_.pick(VALUES);
        action.prefix = random_.pick(PREFIXES);
        action.priority = random_.pick(PRIORITIES);
        action.veto = random_.chance(70);
        action.snapshot = random_.chance(70);
        action.byDelegate = random_.chance(40);
        const bool ofListener = kind == Kind::REGISTER || kind == Kind::UNREGISTER;
        action.name = pick(ofListener ? NESTED_LISTENER_NAMES : NESTED_DRIVER_NAMES);
        if (kind == Kind::REGISTER) {
            action.number = random_.chance(85) ? 0 : 1 + random_.below(NESTED_TYPES);
            action.bits = random_.chance(85) ? 0 : 1 + random_.below(NESTED_INTERFACES);
            if (random_.chance(45))
                action.attributes.push_back({random_.pick(KEYS), random_.pick(CRITERIA)});
            if (random_.chance(10))
                action.attributes.push_back({random_.pick(KEYS), random_.pick(CRITERIA)});
        } else {
            action.number = 1 + random_.below(NESTED_TYPES);
            action.bits = random_.below(1u << NESTED_INTERFACES);
        }
        return action;
    }

    Reaction reaction()
    {
        std::uint32_t total = 0;
        for (Place const& place : PLACES)
            total += place.weight;
        std::uint32_t at = random_.below(total);
        Place const* place = PLACES;
        for (; at >= place->weight; ++place)
            at -= place->weight;
        Reaction reaction;
        reaction.callOut = place->callOut;
        reaction.ordinal = random_.below(place->ordinals);
        for (std::uint32_t n = random_.below(4); n > 0; --n)
            reaction.actions.push_back(action());
        if (leaves_ && place->callOut < CallOut::SET_REPOSITORY && random_.chance(20))
            reaction.actions.push_back(action(Kind::LEAVE));
        const std::uint32_t dice = random_.below(100);
        const bool observer = place->callOut <= CallOut::CLEARED;
        if (observer && dice < 30)
            reaction.answer = Reaction::Answer::REFUSE;
        else if (throws_ && dice < 50 && place->callOut != CallOut::DESTRUCTOR)
            reaction.answer = Reaction::Answer::THROW;
        reaction.code = random_.chance(70) ? -1 : 5;
        reaction.catches = !observer || random_.chance(50);
        return reaction;
    }

    Random random_;
    bool throws_ = false;
    bool leaves_ = false;
};

void addText(std::string& text, char const* name, std::string const& value)
{
    text += std::string(" ") + name + "=" + quoted(value);
}
} // namespace

NestedProgram nestedProgram(std::uint64_t seed, std::uint64_t index)
{
    return Generator(Random::derive(seed, index)).program();
}

char const* nameOf(CallOut callOut)
{
    return CALL_OUTS[static_cast<int>(callOut)];
}

std::string toText(Action const& action)
{
    std::string text = KINDS[static_cast<int>(action.kind)];
    switch (action.kind) {
    case Kind::MAKE_DRIVER:
        text += " " + std::to_string(action.slot);
        addText(text, "name", action.name);
        return text + " type=" + std::to_string(action.number) +
               " interfaces=" + std::to_string(action.bits);
    case Kind::REMOVE_NAME:
    case Kind::UNREGISTER:
        return text + " " + quoted(action.name);
    case Kind::REGISTER:
        addText(text, "name", action.name);
        addText(text, "prefix", action.prefix);
        for (auto const& attribute : action.attributes)
            text += " @" + quoted(attribute.first) + "=" + quoted(attribute.second);
        return text + " type=" + std::to_string(action.number) +
               " interface=" + std::to_string(action.bits) +
               " priority=" + std::to_string(action.priority) + (action.veto ? " veto" : "") +
               (action.snapshot ? " snapshot" : "") + (action.byDelegate ? " delegate" : "");
    case Kind::SET:
    case Kind::GET:
        addText(text, "name", action.name);
        text += " " + quoted(action.key);
        return action.kind == Kind::GET ? text : text + "=" + quoted(action.value);
    case Kind::SET_BY_POINTER:
        return text + " " + std::to_string(action.slot) + " " + quoted(action.key) + "=" +
               quoted(action.value);
    case Kind::FIND:
    case Kind::INFO:
    case Kind::LEAVE:
        return text;
    default:
        return text + " " + std::to_string(action.slot);
    }
}

std::string toText(NestedProgram const& program)
{
    std::string text;
    for (Action const& action : program.actions)
        text += "  " + toText(action) + "\n";
    for (Reaction const& reaction : program.reactions) {
        text += "  at " + std::string(nameOf(reaction.callOut)) + " #" +
                std::to_string(reaction.ordinal) + ":";
        for (Action const& action : reaction.actions)
            text += " " + toText(action) + ";";
        if (reaction.answer == Reaction::Answer::REFUSE)
            text += " refuse " + std::to_string(reaction.code);
        if (reaction.answer == Reaction::Answer::THROW)
            text += " throw";
        text += reaction.catches ? " (catches)\n" : "\n";
    }
    return text;
}
