#ifndef DRVREPO_ICHANNELGROUP_H
#define DRVREPO_ICHANNELGROUP_H

#include <utility/IUnknown.h>
#include <utility/String.h>

#include <drvrepo/Export.h>
#include <drvrepo/ObserverEvent.h>

class IChannelGroupObserver;

/// A set of timeslots of one line, as a mask: bit n stands for timeslot n, from 0 to 31. The order
/// of the virtual operations is binary contract.
///
/// Order       additions are told in ascending priority, among equals the newest registration
///             first; removals and withdrawals the other way round.
/// Ownership   observers are not owned and hold no reference on the group.
/// Reentrancy  observers may call any operation from inside a notification; a nested
///             `setTimeslots` works on the mask as it stands.
/// Locking     none is taken; callers hold `getLock()`.
class DRVREPO_EXPORT IChannelGroup : public IUnknown
{
public:
    /// What the observer framework tells.
    using Observer = IChannelGroupObserver;
    class EvTimeslot;

    /// The identifier of IChannelGroup.
    static TOVA_UUID const& IID();

    static const char D_CHANNEL_DEFAULT_NAME[];  ///< "D-CHANNEL"
    static const char B_CHANNELS_DEFAULT_NAME[]; ///< "B-CHANNELS"

    /// Registers an observer. Lower `priority` values are told first. `veto`: it may refuse
    /// additions. `notifyCurrent`: it is told at once that all present timeslots were added, and a
    /// refusal of these takes the registration back. `message` takes the reason of a failure.
    virtual XCode addChannelGroupObserver(String& message, IChannelGroupObserver* observer,
                                          unsigned int priority, bool veto, bool notifyCurrent) = 0;
    /// Takes the first registration of an observer back. `notifyCurrent`: the observer, registered
    /// or not, is told that all present timeslots were removed.
    virtual void removeChannelGroupObserver(IChannelGroupObserver* observer,
                                            bool notifyCurrent) = 0;
    /// The mask as it stands.
    virtual unsigned int getTimeslots() const = 0;
    /// Adds and then removes what `requested` differs by. A refused addition is withdrawn, its
    /// reason stands in `message`; removals are carried out all the same.
    virtual XCode setTimeslots(String& message, unsigned int requested) = 0;

    /// The mask of a text like "1-15;17-31": numbers and ranges from 0 to 31, separated by
    /// semicolons, commas or blanks. Fails with -1 and the reason in `message`, `timeslots`
    /// unchanged.
    static XCode TIMESLOTS_TEXT_TO_UINT(String& message, String const& text,
                                        unsigned int& timeslots);
    /// The text of a mask, in ascending order, runs of two and more as ranges.
    static void TIMESLOTS_UINT_TO_TEXT(unsigned int timeslots, String& text);
};

/// A change of timeslots with its values by name. The group itself sends plain events that carry
/// the same three as the words of `data`.
class DRVREPO_EXPORT IChannelGroup::EvTimeslot : public ObserverEvent<IChannelGroup>
{
public:
    /// No group, no timeslots.
    EvTimeslot();
    /// Takes a reference on `group`, which may be null.
    EvTimeslot(IChannelGroup* group, unsigned int oldTimeslots, unsigned int newTimeslots,
               unsigned int changedTimeslots);
    /// @{
    /// Copies share the group, each with a reference of its own.
    EvTimeslot(EvTimeslot const&) = default;
    EvTimeslot& operator=(EvTimeslot const&) = default;
    /// @}
    ~EvTimeslot() override;
    EvTimeslot* clone() const override;

    std::uint32_t oldTimeslots = 0;     ///< before the change
    std::uint32_t newTimeslots = 0;     ///< after it
    std::uint32_t changedTimeslots = 0; ///< the bits added or removed
};

#endif
