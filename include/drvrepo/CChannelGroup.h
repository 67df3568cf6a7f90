#ifndef DRVREPO_CCHANNELGROUP_H
#define DRVREPO_CCHANNELGROUP_H

#include <utility/IInfo.h>
#include <utility/RefCount.h>

#include <drvrepo/IChannelGroup.h>
#include <drvrepo/IChannelGroupObserver.h>
#include <drvrepo/IDriver.h>
#include <drvrepo/ObserverContainer.h>

/// The channel group: a driver that holds timeslots.
///
/// Ownership   starts with one reference, its creator's; deletes itself with the last one, telling
///             nobody.
/// Failure     what an observer throws is passed on, an addition withdrawn and a removal completed.
///             Withdrawals and removals that don't nest ask for no memory.
/// Locking     the count is atomic; for the rest the caller holds `getLock()`, the lock of the
///             process-wide event loop.
/// The order of the virtual operations is binary contract.
class DRVREPO_EXPORT CChannelGroup : public IDriver, public IChannelGroup, public IInfo
{
public:
    /// `name` is the driver name, and the first field of every log line.
    explicit CChannelGroup(String const& name);
    ~CChannelGroup() override;

    /// Answers IUnknown and IDriver with the first base, IChannelGroup and IInfo with theirs.
    XCode queryInterface(TOVA_UUID const& iid, void** out) override;
    void addRef() override;
    void release() override;
    Lock* getLock() override;
    TOVA_UUID const& getDID() const override;
    String const& getDriverName() const override;

    XCode addChannelGroupObserver(String& message, IChannelGroupObserver* observer,
                                  unsigned int priority, bool veto, bool notifyCurrent) override;
    void removeChannelGroupObserver(IChannelGroupObserver* observer, bool notifyCurrent) override;
    unsigned int getTimeslots() const override;
    XCode setTimeslots(String& message, unsigned int requested) override;

    InfoContainer& getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                           unsigned int maxDetail, unsigned int detail,
                           String const& prefix) const override;

private:
    using Observers = ObserverContainer<IChannelGroup>;

    XCode addTimeslots(String& message, std::uint32_t added);
    void withdraw(std::uint32_t added, Observers::Stop const& stop);
    void removeTimeslots(std::uint32_t removed);
    XCode tellCurrent(String& message, IChannelGroupObserver* observer, bool veto);

    AtomicRefCount refs_;
    String name_;
    std::uint32_t timeslots_;
    Observers observers_;
};

#endif
