#ifndef TESTS_MODEL_PROGRAM_H
#define TESTS_MODEL_PROGRAM_H

#include "Policy.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

/// One call that a program makes, with everything it needs. Objects are named by slot; a step
/// that finds its slot empty does nothing, so any sub-sequence of a program is a program.
struct Step
{
    enum class Kind {
        MAKE_DRIVER,    ///< slot, name, id (type), bits (interfaces), more (hollow), number (rows)
        MAKE_GROUP,     ///< slot, name
        DROP_DRIVER,    ///< slot: gives the program's reference back
        HOLD_DRIVER,    ///< slot: takes one more reference
        UNHOLD_DRIVER,  ///< slot: gives one such back
        SET_INTERFACES, ///< slot, bits
        ADD_DRIVER,     ///< slot (-1: null), text
        REMOVE_POINTER, ///< slot (-1: null)
        REMOVE_NAME,    ///< name
        GET_DRIVER,     ///< name, flag (null out-pointer)
        MAKE_DELEGATE,  ///< slot, other (observer, -1: null)
        DROP_DELEGATE,  ///< slot
        STOP_DELEGATE,  ///< slot
        /// name, id, iid, value (prefix), attributes, number (priority), veto, snapshot; bits says
        /// which form, other is the observer and slot the delegate (-1: null)
        REGISTER,
        UNREGISTER,      ///< name
        FOLLOW,          ///< slot (observer), policy
        DROP_KEPT,       ///< slot (observer)
        SET_ATTACHMENT,  ///< name, key, value, text
        SET_BY_POINTER,  ///< slot (-1: null), key, value, text
        GET_ATTACHMENT,  ///< name, key
        GET_BY_POINTER,  ///< slot (-1: null), key
        GET_INTERFACE,   ///< name, iid, flag (null out-pointer)
        GET_DRIVERS,     ///< id, name (prefix), attributes, flag (with the table)
        GET_INTERFACES,  ///< the same and iid
        GET_INFO,        ///< limits, name (prefix), flag (through the diagnostic interface)
        MONITOR,         ///< flag (present), number (threshold)
        GROUP_ADD,       ///< slot, other (observer, -1: null), number, veto, flag, text
        GROUP_REMOVE,    ///< slot, other (observer, -1: null), flag
        GROUP_SET,       ///< slot, number (mask), text
        GROUP_INFO,      ///< slot, limits, name (prefix)
        GROUP_FOLLOW,    ///< slot (observer), policy
        GROUP_DROP_KEPT, ///< slot (observer)
        GROUP_REACT,     ///< slot (observer), number (at which of its next calls), nested, flag
        TIMESLOTS,       ///< value (text in), number (mask out before), text
        RECORD_MAKE,     ///< slot (driver, -1: none): a record used by itself, in place of the last
        RECORD_LISTENER, ///< other (which), and the fields of REGISTER
        RECORD_CALL,     ///< number (which operation), other (listener, -1: null), key, value, flag
        END,
    };

    /// Which argument is the very object that also serves as `error` or as the result.
    enum class Alias {
        NONE,
        NAME,
        KEY,
        VALUE,
        OWN_NAME, ///< the name is passed by reference to the driver's own
    };

    Kind kind = Kind::END;
    int slot = 0;
    int other = 0;
    int id = 0;
    int iid = 0;
    std::string name;
    std::string key;
    std::string value;
    std::string text; ///< what `error` holds before the call
    std::vector<std::pair<std::string, std::string>> attributes;
    std::uint32_t number = 0;
    std::uint32_t bits = 0;
    std::uint32_t more = 0;
    std::array<std::uint32_t, 4> limits = {{0, 0, 0, 0}};
    bool veto = false;
    bool snapshot = false;
    bool flag = false;
    Alias alias = Alias::NONE;
    Policy policy;
    std::vector<Step> nested; ///< what the observer does in that call; `flag`: then it refuses
};

/// The operations of a record used by itself, for RECORD_CALL.
enum class RecordCall : std::uint32_t {
    ADD,
    REMOVE,
    ADD_ONCE,
    REMOVE_ONCE,
    COUNT,
    IS_ACTIVE,
    TALKS_TO,
    TALKS_TO_WITH,
    SNAPSHOT_INITIAL,
    SNAPSHOT_FINAL,
    NOTIFY_ADDED,
    NOTIFY_REMOVED,
    NOTIFY_SET,
    NOTIFY_CLEARED,
    SET_ATTACHMENT,
    GET_ATTACHMENT,
    INFO,
    END,
};

using Program = std::vector<Step>;

/// One line that tells a step in full.
std::string toText(Step const& step);

/// How many objects of a kind a program knows.
constexpr int DRIVER_SLOTS = 7;
constexpr int DELEGATE_SLOTS = 3;
constexpr int OBSERVERS = 6;
constexpr int GROUP_OBSERVERS = 4;
constexpr int RECORD_LISTENERS = 4;

/// The identifiers that programs use, by index.
enum IdIndex {
    ID_INVALID,
    ID_ZERO, ///< four zero words under another name
    ID_UNKNOWN,
    ID_DRIVER,
    ID_INFO,
    ID_CHANNEL_GROUP,
    ID_DID_CHANNEL_GROUP,
    ID_A,
    ID_A_TWIN, ///< the words of ID_A under another name
    ID_B,
    ID_C,
    ID_COUNT,
};

struct IdWords
{
    std::array<std::uint32_t, 4> words;
    char const* name;
};

/// Words and name of the identifiers that belong to no class: ID_ZERO, ID_A and what follows it.
IdWords const& ownId(int index);

/// The interfaces that the bits of MAKE_DRIVER and SET_INTERFACES stand for, lowest bit first.
constexpr std::array<int, 4> INTERFACE_BITS = {{ID_A, ID_B, ID_C, ID_INFO}};

#endif
