#ifndef DRVREPO_CDRIVERREPOSITORY_H
#define DRVREPO_CDRIVERREPOSITORY_H

#include <cstdint>

#include <utility/IInfo.h>
#include <utility/RefCount.h>

#include <drvrepo/IDriverRepository.h>

class InfoRows;

/// The registry of drivers and listeners.
///
/// Order       drivers are walked in the order of adding, listeners by ascending priority, among
///             equals the newest first. Farewells and roll-backs go the other way.
/// Ownership   starts with one reference, its creator's, and deletes itself with the last one.
///             Owns its records of drivers and listeners; each driver record holds a reference on
///             its driver, each listener one on its delegate. Destruction leaves what is still
///             registered untouched, with its references: it comes with the end of the process.
/// Reentrancy  any operation may be called from inside any call-out. A walk that brings news
///             visits what was there when it began and is still there: every listener and driver
///             carries the stamp of its coming. What is removed meanwhile is marked gone, stays
///             linked, and is freed when the outermost operation ends. An operation that names
///             what is just leaving first finishes its farewells.
/// Locking     none is taken but the count's, which is atomic.
class DRVREPO_EXPORT CDriverRepository : public IDriverRepository, public IInfo
{
public:
    /// When something came, counted by the repository; later is greater.
    using Stamp = std::uint64_t;

    class Listener;
    class DriverWrapper;
    class Explainer; // what drvrepo/Explain.h looks through
    class EntryRoom; // where entries of drivers' lists have their memory

    /// A place in a list of listeners: the repository's own, or a driver's.
    class DRVREPO_EXPORT ListenerWrapper
    {
    public:
        /// No listener, inactive, recorded once.
        ListenerWrapper() = default;
        /// Refers to a listener, which it does not own; recorded once.
        ListenerWrapper(Listener* listener, bool active) : listener_(listener), active_(active) {}
        /// @{
        /// Copies refer to the same listener.
        ListenerWrapper(ListenerWrapper const&) = default;
        ListenerWrapper& operator=(ListenerWrapper const&) = default;
        /// @}
        ~ListenerWrapper() { listener_ = nullptr; }

        /// @{
        /// The listener, not owned.
        Listener* listener() const { return listener_; }
        Listener* operator->() const { return listener_; }
        /// @}

        /// @{
        /// In a driver's list: whether the listener is told about the driver.
        bool isActive() const { return active_; }
        void activate() { active_ = true; }
        void deactivate() { active_ = false; }
        /// @}

        /// Whether the listener is recorded at least once.
        bool isValid() const { return refCount_ > 0; }
        /// How often the listener is recorded.
        std::int32_t getRefCount() const { return refCount_; }
        /// @{
        /// Records the listener once or `n` times more; returns the count.
        std::int32_t incRef() { return incRef(1); }
        std::int32_t incRef(int n) { return refCount_ += n; }
        /// @}
        /// @{
        /// Records it less often and returns the count. Deactivates when that becomes exactly 0;
        /// one that falls below leaves that alone.
        std::int32_t decRef() { return decRef(1); }
        std::int32_t decRef(int n)
        {
            refCount_ -= n;
            if (refCount_ == 0)
                active_ = false;
            return refCount_;
        }
        /// @}

    private:
        friend class DriverWrapper;

        Listener* listener_ = nullptr;
        bool active_ = false;
        bool isApart_ = false;       // a driver's entry has memory of its own
        std::uint16_t joinedIn_ = 0; // how many attachment walks were under way when it came
        std::int32_t refCount_ = 1;
    };

    /// Empty, bound to `loop`, whose lock it hands out; the loop must outlive it.
    explicit CDriverRepository(TYEventLoop& loop);
    ~CDriverRepository() override;

    /// Answers IUnknown and IDriverRepository with the repository, IInfo with its second base.
    XCode queryInterface(TOVA_UUID const& iid, void** out) override;
    void addRef() override;
    void release() override;
    /// The event loop's lock.
    Lock* getLock() override;

    XCode addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& classId,
                                      TOVA_UUID const& interfaceId, String const& driverNamePattern,
                                      unsigned int priority, bool rightOfVeto, bool snapshot,
                                      IDriverRepositoryObserver* observer) override;
    XCode addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& classId,
                                      TOVA_UUID const& interfaceId, String const& driverNamePattern,
                                      unsigned int priority, bool rightOfVeto, bool snapshot,
                                      ObserverDelegate<IDriverRepository>* delegate) override;
    XCode addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& classId,
                                      TOVA_UUID const& interfaceId, String const& driverNamePattern,
                                      Attributes const& attributes, unsigned int priority,
                                      bool rightOfVeto, bool snapshot,
                                      IDriverRepositoryObserver* observer) override;
    XCode addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& classId,
                                      TOVA_UUID const& interfaceId, String const& driverNamePattern,
                                      Attributes const& attributes, unsigned int priority,
                                      bool rightOfVeto, bool snapshot,
                                      ObserverDelegate<IDriverRepository>* delegate) override;
    void removeDriverRepositoryObserver(String const& name) override;

    XCode getDriver(String const& name, IDriver** driver) override;
    XCode getDriverInterface(String const& name, TOVA_UUID const& iid, void** object) override;
    TOVA_List<TYPPtr<IDriver>>& getDrivers(TOVA_UUID const& did, String const& pattern,
                                           TOVA_List<TYPPtr<IDriver>>& drivers) override;
    TOVA_List<TYPPtr<IDriver>>& getDrivers(TOVA_UUID const& did, String const& pattern,
                                           Attributes const& attributes,
                                           TOVA_List<TYPPtr<IDriver>>& drivers) override;
    TOVA_List<TYPPtr<IUnknown>>&
    getDriverInterfaces(TOVA_UUID const& did, String const& pattern, TOVA_UUID const& iid,
                        TOVA_List<TYPPtr<IUnknown>>& interfaces) override;
    TOVA_List<TYPPtr<IUnknown>>&
    getDriverInterfaces(TOVA_UUID const& did, String const& pattern, Attributes const& attributes,
                        TOVA_UUID const& iid, TOVA_List<TYPPtr<IUnknown>>& interfaces) override;

    XCode addDriver(String& error, IDriver* driver) override;
    void removeDriver(IDriver* driver) override;
    void removeDriver(String const& name) override;

    void getDriverAttachment(IDriver* driver, String const& key, String& value) const override;
    String& getDriverAttachment(String const& driverName, String const& key,
                                String& value) const override;
    XCode setDriverAttachment(String& error, IDriver* driver, String const& key,
                              String const& value) override;
    XCode setDriverAttachment(String& error, String const& driverName, String const& key,
                              String const& value) override;

    TYEventLoop& eventLoop() override;

    InfoContainer& getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                           unsigned int maxDetail, unsigned int detail,
                           String const& prefix) const override;

private:
    using Listeners = TOVA_List<ListenerWrapper>;
    using Drivers = TOVA_StringHashTable<DriverWrapper*>;

    class Operation;
    struct Departure;

    // Drivers.
    DriverWrapper* recordOf(String const& name) const;
    bool holds(String const& name, IDriver const* driver) const;
    static XCode failUnknown(String& error, String const& driverName);
    XCode enter(String& error, String const& name, IDriver* driver, Stamp looked,
                DriverWrapper*& record);
    XCode introduce(String& error, String const& name, DriverWrapper& record);
    XCode offer(String& error, DriverWrapper& record, Listeners::Iterator& stop);
    void retire(String const& name, Drivers::Iterator place, IDriver* told,
                Listeners::Iterator stop);
    void finish(Departure& departure);
    void sayFarewells(Departure& departure);
    void finishDepartures(String const& name, IDriver const* driver)
    {
        if (departures_ != nullptr)
            finishEach(name, driver);
    }
    void finishEach(String const& name, IDriver const* driver);
    void discard(DriverWrapper& record);
    void unlink(DriverWrapper& record);

    // Listeners.
    Listeners::Iterator listenerOf(String const& name);
    XCode enter(String& error, Listener* listener);
    XCode introduce(String& error, Listener& listener);
    XCode offer(String& error, Listener& listener);
    void takeOut(Listener& listener);
    void sayFarewells(Listener& listener);
    void finishDepartures(String const& listenerName);
    void discard(Listener& listener);

    // What is gone.
    void bury();
    static void free(DriverWrapper* records);
    static void free(Listener* listeners);

    // Attachments, queries, diagnostics.
    XCode change(String& error, String const& name, DriverWrapper& record, String const& key,
                 String const& value);
    struct Filter
    {
        const TOVA_UUID did;
        const String pattern;
        const Attributes attributes;
    };
    template <class Visit> void select(Filter const& filter, Visit visit) const;
    static void addRows(InfoRows const& rows, Listener const& listener);

    AtomicRefCount refs_;
    TYEventLoop& loop_;
    Lock* lock_;
    Listeners listeners_;
    Drivers drivers_;

    // Every record of a driver, the gone ones included until they are freed.
    DriverWrapper* oldest_ = nullptr;
    DriverWrapper* newest_ = nullptr;
    Stamp clock_ = 0;                 // of the latest coming
    std::uint32_t running_ = 0;       // operations under way
    bool graves_ = false;             // something gone is still linked
    Departure* departures_ = nullptr; // drivers just leaving, the latest first
};

#endif
