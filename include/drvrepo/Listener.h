#ifndef DRVREPO_LISTENER_H
#define DRVREPO_LISTENER_H

#include <memory>

#include <drvrepo/CDriverRepository.h>
#include <drvrepo/EntryRoom.h>
#include <drvrepo/ObserverDelegate.h>

/// One registration of an observer: its criteria, rights, delegate and statistics.
///
/// Ownership   holds a reference on its delegate, which may be null; a copy holds its own.
/// Locking     none; counters and identifiers are plain.
class DRVREPO_EXPORT CDriverRepository::Listener
{
public:
    /// What stands between the listener and its observer.
    using Delegate = ObserverDelegate<IDriverRepository>;

    /// The notifications that are counted, in the order of the counters.
    enum Notification : unsigned int {
        DRIVER_ADDED,      ///< onDriverAdded
        DRIVER_REMOVED,    ///< onDriverRemoved
        ATTACHMENT_SET,    ///< onDriverAttachmentSet
        ATTACHMENT_CLEARED ///< onDriverAttachmentCleared
    };

    /// Empty criteria, no delegate.
    Listener();
    /// Copies the criteria and takes a reference on `delegate`; see
    /// IDriverRepository::addDriverRepositoryObserver for their meaning.
    Listener(String const& name, TOVA_UUID const& classId, TOVA_UUID const& interfaceId,
             String const& driverNamePattern, Attributes const& attributes, unsigned int priority,
             bool rightOfVeto, bool snapshotFlag, Delegate* delegate);
    /// @{
    /// Copies criteria, rights and counters, and takes a reference on the delegate; the copy is
    /// not registered.
    Listener(Listener const& other);
    Listener& operator=(Listener const& other);
    /// @}
    ~Listener();

    /// @{
    /// As given to the constructor.
    String const& name() const { return name_; }
    TOVA_UUID const& did() const { return classId_; }
    TOVA_UUID const& iid() const { return interfaceId_; }
    String const& prefix() const { return pattern_; }
    Attributes const& attributes() const { return attributes_; }
    std::uint32_t priority() const { return priority_; }
    bool hasRightOfVeto() const { return rightOfVeto_; }
    bool wantsSnapshot() const { return snapshotFlag_; }
    /// @}
    /// Not counted for the caller; null when the listener has none.
    Delegate* delegate() const { return delegate_.get(); }

    /// How many notifications of a kind were attempted.
    std::uint32_t count(Notification kind) const { return counts_[kind]; }
    /// Counts one more.
    void addCount(Notification kind) { ++counts_[kind]; }

    /// When the repository took the listener in; 0 for one that it doesn't know.
    Stamp stamp() const { return stamp_; }
    /// Whether the repository has removed the listener and only waits to free it.
    bool isGone() const { return gone_; }

    /// @{
    /// Whether it asks for a type of driver, for an interface.
    bool wantsType() const { return hasType_; }
    bool wantsInterface() const { return hasInterface_; }
    /// @}

private:
    friend class CDriverRepository;

    bool makeRoom(std::uint32_t entries);

    String name_;
    TOVA_UUID classId_;
    TOVA_UUID interfaceId_;
    String pattern_;
    Attributes attributes_;
    std::uint32_t priority_ = 0;
    bool rightOfVeto_ = false;
    bool snapshotFlag_ = false;
    TYPtr<Delegate> delegate_;
    std::uint32_t counts_[4] = {};

    // What the criteria ask for at all.
    bool hasType_ = false;
    bool hasInterface_ = false;

    // The registration; a copy is none.
    Stamp stamp_ = 0;
    bool gone_ = false;
    Listener* nextGrave_ = nullptr;
    EntryRoom room_;
    std::unique_ptr<char[]> block_; // the room's
};

#endif
