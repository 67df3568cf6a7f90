#ifndef DRVREPO_IDRIVERREPOSITORY_H
#define DRVREPO_IDRIVERREPOSITORY_H

#include <utility/IUnknown.h>
#include <utility/String.h>
#include <utility/TOVA_HashTable.h>
#include <utility/TOVA_List.h>
#include <utility/TYEventLoop.h>
#include <utility/TYPtr.h>

#include <drvrepo/IDriver.h>
#include <drvrepo/ObserverEvent.h>

class IDriverRepositoryObserver;
template <class T> class ObserverDelegate;

/// The registry of a process's drivers.
///
/// Order       listeners hear of a coming or a new value in ascending priority, among equals the
///             newest registration first; of a going, a clear or a roll-back the other way round.
/// Results     code 0, -1 for the repository's own failures, or a refusing observer's code. The
///             leading `error` takes the reason of a failure and is emptied by success.
/// Ownership   drivers and delegates are counted; observers are not.
/// Reentrancy  observers, drivers and the monitor may call any operation from inside a call.
/// Locking     none is taken; users from several threads hold `getLock()`, most simply by calling
///             through the `->` of a TYPPtr.
/// Failure     operations that return XCode answer -1 and "Out of memory". What an observer or a
///             driver throws is passed on, a coming rolled back and a going completed.
/// The order of the virtual operations is binary contract.
class DRVREPO_EXPORT IDriverRepository : public IUnknown
{
public:
    /// What the observer framework tells.
    using Observer = IDriverRepositoryObserver;
    /// Attachments by key; as a criterion, beginnings of their values.
    using Attributes = TOVA_StringHashTable<String>;
    class EvDriver;
    class EvAttachment;

    /// The identifier of IDriverRepository.
    static TOVA_UUID const& IID();

    /// Registers a listener and offers it every driver that is there, the oldest first.
    /// `name` identifies the registration. The criteria: `classId` and `interfaceId` (INVALID:
    /// any), the beginning of the driver's name, and, where given, beginnings of attachment
    /// values. Lower `priority` values are told first. `rightOfVeto`: refusals count.
    /// `snapshot`: the listener is told a driver's attachments when it joins and leaves.
    /// Fails when the name is taken or the listener refuses a driver; nothing of it remains then.
    virtual XCode
    addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& classId,
                                TOVA_UUID const& interfaceId, String const& driverNamePattern,
                                unsigned int priority, bool rightOfVeto, bool snapshot,
                                IDriverRepositoryObserver* observer) = 0;
    /// The same with a delegate, on which the listener takes a reference of its own.
    virtual XCode
    addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& classId,
                                TOVA_UUID const& interfaceId, String const& driverNamePattern,
                                unsigned int priority, bool rightOfVeto, bool snapshot,
                                ObserverDelegate<IDriverRepository>* delegate) = 0;
    /// The same for drivers whose attachments begin with the values of `attributes`, of which a
    /// copy is kept; an empty value sets no condition.
    virtual XCode addDriverRepositoryObserver(
        String& error, String const& name, TOVA_UUID const& classId, TOVA_UUID const& interfaceId,
        String const& driverNamePattern, Attributes const& attributes, unsigned int priority,
        bool rightOfVeto, bool snapshot, IDriverRepositoryObserver* observer) = 0;
    /// The same with attributes and a delegate.
    virtual XCode addDriverRepositoryObserver(
        String& error, String const& name, TOVA_UUID const& classId, TOVA_UUID const& interfaceId,
        String const& driverNamePattern, Attributes const& attributes, unsigned int priority,
        bool rightOfVeto, bool snapshot, ObserverDelegate<IDriverRepository>* delegate) = 0;
    /// Removes a listener, which first hears of the going of every driver it had, the newest
    /// driver first. An unknown name does nothing.
    virtual void removeDriverRepositoryObserver(String const& name) = 0;

    /// The driver of that name in `*driver`, with a reference for the caller; -1 and null when
    /// there is none. `driver` may be null.
    virtual XCode getDriver(String const& name, IDriver** driver) = 0;
    /// An interface of the driver of that name in `*object`, with a reference for the caller.
    /// Fails as `getDriver` or the driver's `queryInterface` do.
    virtual XCode getDriverInterface(String const& name, TOVA_UUID const& iid, void** object) = 0;

    /// @{
    /// Empties the list, fills it with the drivers that are selected, and returns it. Selected is
    /// by driver type (INVALID: any), by the beginning of the name, and by beginnings of attachment
    /// values (an empty one sets no condition). They stand in the order in which they were added,
    /// each element with a reference.
    virtual TOVA_List<TYPPtr<IDriver>>& getDrivers(TOVA_UUID const& did, String const& pattern,
                                                   TOVA_List<TYPPtr<IDriver>>& drivers) = 0;
    virtual TOVA_List<TYPPtr<IDriver>>& getDrivers(TOVA_UUID const& did, String const& pattern,
                                                   Attributes const& attributes,
                                                   TOVA_List<TYPPtr<IDriver>>& drivers) = 0;
    /// @}
    /// @{
    /// The same with the interface `iid` of every selected driver that has it.
    virtual TOVA_List<TYPPtr<IUnknown>>&
    getDriverInterfaces(TOVA_UUID const& did, String const& pattern, TOVA_UUID const& iid,
                        TOVA_List<TYPPtr<IUnknown>>& interfaces) = 0;
    virtual TOVA_List<TYPPtr<IUnknown>>&
    getDriverInterfaces(TOVA_UUID const& did, String const& pattern, Attributes const& attributes,
                        TOVA_UUID const& iid, TOVA_List<TYPPtr<IUnknown>>& interfaces) = 0;
    /// @}

    /// Takes a driver in under the name that it reports, and offers it to the listeners. Fails
    /// when the driver is null, the name is taken or a listener refuses; all is as before then.
    virtual XCode addDriver(String& error, IDriver* driver) = 0;
    /// Removes the driver registered under the name that `driver` reports, whichever object that
    /// is, and tells `driver` that it is in no repository. Null or an unknown name do nothing.
    virtual void removeDriver(IDriver* driver) = 0;
    /// Removes the driver of that name. An unknown name does nothing.
    virtual void removeDriver(String const& name) = 0;

    /// An attachment's value in `value`; empty when driver or key are unknown.
    virtual void getDriverAttachment(IDriver* driver, String const& key, String& value) const = 0;
    /// The same; returns `value`.
    virtual String& getDriverAttachment(String const& driverName, String const& key,
                                        String& value) const = 0;
    /// Sets an attachment, the empty value clears it, and tells the listeners: first that the old
    /// value is gone, then the new one. After a refusal the key is left cleared.
    virtual XCode setDriverAttachment(String& error, IDriver* driver, String const& key,
                                      String const& value) = 0;
    /// The same by the driver's name; -1 when there is no such driver.
    virtual XCode setDriverAttachment(String& error, String const& driverName, String const& key,
                                      String const& value) = 0;

    /// The event loop that the repository is bound to.
    virtual TYEventLoop& eventLoop() = 0;
};

/// A driver has come or gone. Holds a reference on the driver.
class DRVREPO_EXPORT IDriverRepository::EvDriver : public ObserverEvent<IDriverRepository>
{
public:
    /// Takes references on both, which may be null.
    EvDriver(IDriverRepository* repository, IDriver* driver);
    /// @{
    /// Copies take references of their own.
    EvDriver(EvDriver const&) = default;
    EvDriver& operator=(EvDriver const&) = default;
    /// @}
    ~EvDriver() override;
    EvDriver* clone() const override;

    TYPtr<IDriver> driver; ///< the one concerned
};

/// An attachment has a new value (`value` is that) or lost one (`value` is what went away).
class DRVREPO_EXPORT IDriverRepository::EvAttachment : public IDriverRepository::EvDriver
{
public:
    /// Takes references on repository and driver, which may be null.
    EvAttachment(IDriverRepository* repository, IDriver* driver, String const& key,
                 String const& value);
    /// @{
    /// Copies take references of their own.
    EvAttachment(EvAttachment const&) = default;
    EvAttachment& operator=(EvAttachment const&) = default;
    /// @}
    ~EvAttachment() override;
    EvAttachment* clone() const override;

    String key;   ///< of the attachment
    String value; ///< that came or went
};

#endif
