#ifndef TESTS_MODEL_NESTED_PROGRAM_H
#define TESTS_MODEL_NESTED_PROGRAM_H

#include "Random.h"

#include <string>
#include <utility>
#include <vector>

/// One thing that a program, or a callback of it, does with the registry.
struct Action
{
    enum class Kind {
        MAKE_DRIVER,    ///< slot, name, number (type), bits (interfaces)
        DROP_DRIVER,    ///< slot
        ADD_DRIVER,     ///< slot
        REMOVE_POINTER, ///< slot
        REMOVE_NAME,    ///< name
        REGISTER,       ///< name and criteria
        UNREGISTER,     ///< name
        STOP,           ///< slot: the delegate of the registration so many back
        SET,            ///< name, key, value
        SET_BY_POINTER, ///< slot, key, value
        GET,            ///< name, key
        FIND,           ///< name (prefix), number (type), bits (interface)
        INFO,
        LEAVE, ///< takes everything out and gives the repository back
        END,
    };

    Kind kind = Kind::END;
    int slot = 0;
    std::string name;
    std::string key;
    std::string value;
    std::string prefix;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::uint32_t number = 0;
    std::uint32_t bits = 0;
    std::uint32_t priority = 0;
    bool veto = false;
    bool snapshot = false;
    bool byDelegate = false;
};

/// The calls that come out of the registry.
enum class CallOut {
    ADDED,
    REMOVED,
    SET,
    CLEARED,
    SET_REPOSITORY,
    LOG,
    GET_NAME,
    GET_TYPE,
    QUERY_INTERFACE,
    DESTRUCTOR,
    END,
};

/// What is done at the `ordinal`-th call of a kind.
struct Reaction
{
    enum class Answer {
        ACCEPT,
        REFUSE,
        THROW,
    };

    CallOut callOut = CallOut::ADDED;
    std::uint32_t ordinal = 0;
    std::vector<Action> actions;
    Answer answer = Answer::ACCEPT;
    std::int32_t code = -1;
    bool catches = false; ///< what an action of its own throws stays here
};

/// A program whose callbacks call back. Taking actions or reactions away leaves a program.
struct NestedProgram
{
    std::vector<Action> actions;
    std::vector<Reaction> reactions;
};

/// The `index`-th program of a seed; the same anywhere.
NestedProgram nestedProgram(std::uint64_t seed, std::uint64_t index);

std::string toText(Action const& action);
std::string toText(NestedProgram const& program);
char const* nameOf(CallOut callOut);

constexpr int NESTED_SLOTS = 5;
constexpr int NESTED_TYPES = 2;
constexpr int NESTED_INTERFACES = 2;

extern const std::vector<std::string> NESTED_DRIVER_NAMES;
extern const std::vector<std::string> NESTED_LISTENER_NAMES;

#endif
