#ifndef DRVREPO_EXPLAIN_H
#define DRVREPO_EXPLAIN_H

#include <drvrepo/Listener.h>

// Why a listener is, or is not, told about a driver. The answers come from the very predicates that
// decide it.
//
// Asking changes nothing: no list, no count, no counter, no log line. The driver is asked for its
// type, its name and, if the listener wants one, for the interface, as when it is matched.
// May be asked from inside any call-out; the answer is how the registry stands at that moment. The
// caller holds the repository's lock. Names are exact; an unknown one fails with -1 and the reason
// in `error`. Success empties `error`. A failure leaves the answer as it was.
//
// The process's own repository is a CDriverRepository, so that a program that never puts another
// one in its place asks for it with
//
//     auto& repository = static_cast<CDriverRepository&>(*DRIVER::INSTANCE());

/// How one driver stands with one listener.
struct Explanation
{
    /// One criterion: what the listener wants and what the driver meets it with.
    struct Criterion
    {
        /// What is wanted.
        enum Kind : unsigned int {
            DRIVER_TYPE, ///< the driver's type is `wantedId`; INVALID: any
            INTERFACE,   ///< the driver offers `wantedId`; INVALID: any
            NAME,        ///< the driver's name begins with `wanted`
            ATTACHMENT   ///< the value of attachment `key` begins with `wanted`
        };

        Kind kind = DRIVER_TYPE; ///< tells which of the fields below count
        bool holds = false;      ///< whether the driver meets it
        TOVA_UUID wantedId;      ///< of a type or an interface
        TOVA_UUID metId; ///< the driver's type; the interface if it was asked for and is offered
        String key;      ///< of an attachment
        String wanted;   ///< the beginning of the name or of the value
        String met;      ///< the driver's name; the attachment's value, empty without one
    };

    /// The listener's entry in the driver's list.
    enum State : unsigned int {
        NEVER_OFFERED, ///< it has none: neither has been offered to the other yet
        INACTIVE,      ///< recorded, but not told about the driver
        ACTIVE         ///< told about the driver
    };

    /// Whom the listener's notifications reach.
    enum Delegate : unsigned int {
        NO_DELEGATE, ///< nobody: none are sent
        STOPPED,     ///< nobody: they are sent, counted and swallowed
        HEARING      ///< an observer
    };

    String driver;   ///< its name
    String listener; ///< its name
    /// In the order in which they are tested. All are listed, also those behind the first that
    /// fails, where matching stops.
    TOVA_List<Criterion> criteria;
    bool selected = false;           ///< all criteria hold
    State state = NEVER_OFFERED;     ///< of the entry
    int count = 0;                   ///< how often the listener is recorded
    Delegate delegate = NO_DELEGATE; ///< who hears what is sent
    std::uint32_t priority = 0;      ///< the lower, the earlier it is told
    bool rightOfVeto = false;        ///< whether its refusals count
    bool wantsSnapshot = false;      ///< whether it hears attachments on joining and leaving
};

/// The same if an attachment had another value: `criteria` and `selected` are as they would be
/// then, the rest is as it is now.
struct WhatIf : Explanation
{
    /// What the change does to the entry.
    enum Outcome : unsigned int {
        STAYS_OUT, ///< is not told about the driver, before and after
        STAYS_IN,  ///< is told about it, before and after
        JOINS,     ///< is told from then on
        LEAVES,    ///< is told no more
        REJOINS    ///< leaves with the old value and joins again with the new one
    };

    /// One thing that the listener would be told.
    struct Notification
    {
        /// Which of the four.
        CDriverRepository::Listener::Notification kind = CDriverRepository::Listener::DRIVER_ADDED;
        String key;   ///< of attachments only
        String value; ///< of attachments only
    };

    Outcome outcome = STAYS_OUT; ///< of the change
    /// What the listener would be sent, in order, if nobody refuses; nothing without a delegate.
    TOVA_List<Notification> told;
};

/// Driver and listener as they are. Failure: see above, or "Out of memory".
DRVREPO_EXPORT XCode explain(String& error, CDriverRepository const& repository,
                             String const& driver, String const& listener,
                             Explanation& explanation);
/// What `setDriverAttachment(error, driver, key, value)`, called now and not from inside another
/// change, would do for this listener.
DRVREPO_EXPORT XCode explain(String& error, CDriverRepository const& repository,
                             String const& driver, String const& listener, String const& key,
                             String const& value, WhatIf& whatIf);
/// The driver with every listener, in the order in which they are told a new attachment value;
/// behind these the ones that have not met it yet.
DRVREPO_EXPORT XCode explainDriver(String& error, CDriverRepository const& repository,
                                   String const& driver, TOVA_List<Explanation>& explanations);
/// The listener with every driver, in the order in which these were added.
DRVREPO_EXPORT XCode explainListener(String& error, CDriverRepository const& repository,
                                     String const& listener, TOVA_List<Explanation>& explanations);

#endif
