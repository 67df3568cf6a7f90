#ifndef DRVSH_NOTICE_H
#define DRVSH_NOTICE_H

#include <optional>
#include <string>

/// One of those who are told something: a listener of the repository, or an observer of a group.
struct Hearer
{
    std::string name;
    std::string group; ///< The channel group that it observes; empty: it listens to the repository.
    unsigned priority = 0;
    bool veto = false;
};

/// How a notice was refused.
struct Refusal
{
    std::string reason;
    bool counts = true; ///< Whether the refuser has the right of veto.
};

/// What one of them was told, and whether it refused.
struct Notice
{
    enum class What { Added, Removed, Set, Cleared };

    What what = What::Added;
    std::string hearer;  ///< Its name.
    std::string subject; ///< The driver or the channel group that it was told about.

    // What an attachment is called and has (Set, Cleared).
    std::string key;
    std::string value;

    // A channel group's news of its timeslots (Added, Removed); each may be the empty text.
    bool ofGroup = false;
    std::string timeslots; ///< Those that come or go.
    std::string before;    ///< Those that the group had.
    std::string after;     ///< Those that it has then.

    std::optional<Refusal> refusal;
};

/// Timeslots as people read them: "none" if there are none.
std::string orNone(std::string const& timeslots);

/// "added", "removed", "set" or "cleared".
std::string word(Notice::What what);

/// What the notice says, without hearer, subject and refusal: "added", "set room=12",
/// "added 4-7 (0-3 -> 0-7)".
std::string newsText(Notice const& notice);

/// What was heard or answered, as the transcript shows it behind the hearer's name:
/// "fxs 1: added", 'fxs 1: refused room=12 ("why")'.
std::string noticeText(Notice const& notice);

/// The reason of a refusal as the transcript shows it, and that it doesn't count where it doesn't.
std::string refusalText(Refusal const& refusal);

#endif
