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
    /// Whether it asks for a type of driver, for an interface, for attachments.
    bool wantsType() const { return (wants_ & TYPE) != 0; }
    bool wantsInterface() const { return (wants_ & INTERFACE) != 0; }
    bool wantsAttributes() const { return (wants_ & ATTRIBUTES) != 0; }
    /// @}

private:
    friend class CDriverRepository;

    /// What criteria ask for, as bits.
    enum Wants : std::uint8_t { TYPE = 1, INTERFACE = 2, ATTRIBUTES = 4 };

    static std::uint8_t wantsOf(TOVA_UUID const& classId, TOVA_UUID const& interfaceId,
                                Attributes const& attributes);
    bool makeRoom(std::uint32_t entries);

    /// A listener in one block with the room for its place in the repository's list before it;
    /// `destroy` frees both. The arguments are the constructor's. Failure: std::bad_alloc.
    template <class... Arguments> static Listener* create(Arguments const&... arguments)
    {
        std::unique_ptr<char[]> block(new char[PLACE_SIZE + sizeof(Listener)]);
        auto* const listener = new (block.get() + PLACE_SIZE) Listener(arguments...);
        static_cast<void>(block.release());
        return listener;
    }
    void destroy()
    {
        const std::unique_ptr<char[]> block(static_cast<char*>(placeInList()));
        this->~Listener();
    }
    void* placeInList() { return reinterpret_cast<char*>(this) - PLACE_SIZE; }
    static constexpr std::size_t PLACE_SIZE =
        (TOVA_List<ListenerWrapper>::NODE_SIZE + alignof(Stamp) - 1) & ~(alignof(Stamp) - 1);

    // The places of these are binary contract, but for the two that stand in a gap.
    String name_;
    TOVA_UUID classId_;
    TOVA_UUID interfaceId_;
    String pattern_;
    Attributes attributes_;
    std::uint32_t priority_ = 0;
    bool rightOfVeto_ = false;
    bool snapshotFlag_ = false;
    bool gone_ = false;
    std::uint8_t wants_ = 0;
    TYPtr<Delegate> delegate_;
    std::uint32_t counts_[4] = {};

    Stamp stamp_ = 0; // 0 without a registration, which a copy is
    Listener* nextGrave_ = nullptr;
    EntryRoom room_;
    std::unique_ptr<char[]> block_; // the room's
};

#endif
