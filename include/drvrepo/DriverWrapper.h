#ifndef DRVREPO_DRIVERWRAPPER_H
#define DRVREPO_DRIVERWRAPPER_H

#include <drvrepo/CDriverRepository.h>
#include <drvrepo/EntryRoom.h>
#include <drvrepo/Listener.h>

class InfoContainer;

/// The record of one driver: the driver, its attachments, and the listeners that met it.
///
/// Order       listeners stand by ascending priority, among equals the newest first. Comings and
///             new values are told front to back, goings and clears back to front. Attachments
///             stand in the order in which their keys were first set.
/// Ownership   holds a reference on the driver; neither the repository nor listeners are owned. A
///             listener must outlive the record, or leave through the repository, which
///             takes its entries out first.
/// Reentrancy  every walk keeps its state in a frame that the record knows, so that a call from
///             inside sees how far it is: whoever is just joining, leaving, or not yet told of a
///             change.
/// Locking     none.
class DRVREPO_EXPORT CDriverRepository::DriverWrapper
{
public:
    /// No repository, no driver.
    DriverWrapper();
    /// Takes a reference on `driver`; both may be null.
    DriverWrapper(IDriverRepository* repository, IDriver* driver);
    DriverWrapper(DriverWrapper const&) = delete;
    DriverWrapper& operator=(DriverWrapper const&) = delete;
    ~DriverWrapper();

    /// The driver, without a reference for the caller.
    IDriver* getDriver() const { return driver_.get(); }
    /// @{
    /// What the driver itself says.
    String const& getDriverName() const;
    TOVA_UUID const& getDID() const;
    /// @}

    /// Whether the listener's criteria select the driver now.
    bool talksTo(Listener const* l) const;
    /// Whether they would if attachment `key` had `value`; an attachment can't change which
    /// interfaces a driver offers, so these are not asked for.
    bool talksTo(Listener const* l, String const& key, String const& value) const;

    /// Records a listener once more; `active` counts for a new entry only. Returns how often it
    /// is recorded now. Failure: std::bad_alloc.
    int addListenerOnce(Listener* l, bool active);
    /// Returns how often the listener is recorded now, -1 when it has no entry.
    int removeListenerOnce(Listener const* l);
    /// How often the listener is recorded; 0 when it has no entry.
    int getListenerCount(Listener const* l);
    /// Whether the listener is told about this driver.
    bool isActive(Listener const* l) const;

    /// Offers the driver to a listener: records it and, if the criteria hold, tells it of the
    /// driver and its attachments. A refusal is returned with the listener's text in `error`, and
    /// undone; success empties `error`.
    XCode addListener(String& error, Listener* l);
    /// Withdraws the driver from a listener, which is told if it was active.
    void removeListener(Listener* l);

    /// Tells the listener the driver's attachments, first to last.
    XCode snapshotInitial(String& error, Listener* l);
    /// Tells the listener that the attachments go, last to first, as if `key` still had `value`.
    void snapshotFinal(Listener* l, String const& key, String const& value);

    /// @{
    /// Tells one listener one thing: logs it, counts it and calls the delegate. A refusal is
    /// returned only if the listener has the right of veto; nothing is undone. A listener without
    /// a delegate is passed over.
    XCode notifyOnDriverAdded(String& error, Listener* l);
    void notifyOnDriverRemoved(Listener* l);
    XCode notifyOnDriverAttachmentSet(String& error, Listener* l, String const& key,
                                      String const& value);
    void notifyOnDriverAttachmentCleared(Listener* l, String const& key, String const& value);
    /// @}

    /// The value of an attachment, empty when there is none; good until that is changed.
    String const& getAttachment(String const& key) const;
    /// All attachments, the cleared ones with an empty value.
    Attributes const& getAttachments() const { return attachments_; }
    /// Changes an attachment: tells that the old value is gone, then the new one, which can be
    /// refused; the key is left cleared then. Success empties `error`.
    XCode setAttachment(String& error, String const& key, String const& value);

    /// Adds rows for the driver, its attachments, what it says of itself (if it offers IInfo) and
    /// its active listeners. The arguments are those of IInfo::getInfo.
    InfoContainer& getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                           unsigned int maxDetail, unsigned int detail, String const& prefix) const;

private:
    friend class CDriverRepository;

    /// A record in one block with the room for its entry in the repository's table before it and
    /// that for so many entries of its own behind it; null without memory. `destroy` frees all.
    static DriverWrapper* create(IDriverRepository* repository, IDriver* driver,
                                 std::uint32_t entries);
    void destroy();
    void* placeInTable() { return reinterpret_cast<char*>(this) - Drivers::ENTRY_SIZE; }

    using Entries = TOVA_List<ListenerWrapper>;
    using Entry = Entries::Iterator;
    using Attachment = Attributes::Iterator;

    enum GoingKind : unsigned int;
    struct Voice;
    template <class Event> class Loan;
    struct DriverAdded;
    struct DriverRemoved;
    struct AttachmentSet;
    struct AttachmentCleared;
    struct Joining;
    struct Leaving;
    class Walk;
    class Clearing;
    class Setting;
    class Change;

    // Matching.
    struct Override
    {
        String const& key;
        String const& value;
    };
    bool selects(Listener const& l) const;
    bool isOfType(TOVA_UUID const& did) const;
    bool hasDID(Listener const& l) const;
    bool offers(Listener const& l) const;
    bool isNamed(String const& prefix) const;
    bool carries(Attributes const& wanted, Override const* first = nullptr,
                 Override const* second = nullptr) const;

    // Entries.
    Entry find(Listener const* l);
    Entries::ConstIterator find(Listener const* l) const;
    Entry findNear(Entry hint, Listener const* l);
    Entry findAround(Entry hint, Listener const* l);
    static bool isAhead(Entry at, std::uint32_t priority);
    Entry placeNear(Entry hint, std::uint32_t priority);
    Entry placeAround(Entry hint, std::uint32_t priority);
    Entry link(Entry place, Listener* l, bool active);
    void* roomApart();
    void unlink(Entry entry);
    void activate(Entry entry);
    void deactivate(Entry entry);
    void withdraw(Entry entry);
    void forgetGone();
    bool isBefore(Entry entry, Entry stop);

    // Meeting and leaving a listener.
    XCode meet(String& error, Listener* l, bool mayKnow, Entry& hint, Voice& voice);
    XCode join(String& error, Entry entry, Voice& voice);
    XCode welcome(String& error, Joining& joining, GoingKind refused);
    void takeBack(Joining const& joining, GoingKind refused);
    XCode tellAttachments(String& error, Joining& joining);
    XCode tellAttachment(String& error, Joining& joining);
    void tellBack(Joining const& joining, GoingKind refused);
    void part(Entry entry, Voice& voice);
    void dismiss(Entry entry, Override const* before, Voice& voice);
    void farewell(Entry entry, Joining const* joining, Override const* before, Voice& voice);
    bool finishLeaving(Entry entry);
    Leaving* leavingOwing(Entry entry, String const& key);
    void tellGoing(Leaving& leaving);
    void tellRest(Leaving& leaving);
    void tellAttachmentGone(Leaving& leaving);
    String const& goingValue(Leaving const& leaving, Attachment at) const;
    bool isToldGone(Leaving const& leaving, Attachment at, String const& value) const;
    Joining* joiningOf(Entry entry) const;
    bool hasReached(Joining const* joining, Attachment at) const;
    void endSnapshotLevel()
    {
        if (lateValues_)
            settleValues();
        --snapshotLevel_;
        lateValues_ = lateValues_ && snapshotLevel_ != 0;
    }
    void settleValues();

    // Telling a listener.
    template <class News, class Occasion>
    XCode ask(String& error, Listener* l, News const& news, Occasion& occasion);
    template <class News, class Occasion>
    void tell(Listener* l, News const& news, Occasion& occasion);
    void logRefusal(Listener const& l, String const& error) const;

    // Changing attachments.
    void store(String const& key, String const& value);
    void markLate(Attachment at);
    Walk* walkOf(String const& key) const;
    void rematch();
    void rematch(Entry entry);

    // The places of these four are binary contract.
    IDriverRepository* repository_;
    TYPtr<IDriver> driver_;
    Attributes attachments_;
    Entries listeners_;

    // The repository's bookkeeping, close to what walks over all drivers look at.
    DriverWrapper* newer_ = nullptr;
    Stamp stamp_ = 0;
    bool gone_ = false;

    bool lateEntries_ = false;        // an entry came while an attachment walk was under way
    bool lateValues_ = false;         // a value was set while a snapshot was under way
    bool entriesApart_ : 1;           // an entry has memory of its own
    bool hadMatch_ : 1;               // an offer or a new value has begun one
    std::uint16_t walkLevel_ = 0;     // attachment walks under way
    std::uint16_t snapshotLevel_ = 0; // snapshots under way

    EntryRoom room_; // behind the record

    // The frames of what is under way, the latest first.
    Joining* joinings_ = nullptr;
    Leaving* leavings_ = nullptr;
    Walk* walks_ = nullptr;
    Change* changes_ = nullptr;

    DriverWrapper* older_ = nullptr;
};

#endif
