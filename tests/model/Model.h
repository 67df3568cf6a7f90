#ifndef TESTS_MODEL_MODEL_H
#define TESTS_MODEL_MODEL_H

#include "ModelDriverRecord.h"

namespace model
{
/// The registry: drivers by name in the order of adding, listeners in the order of telling.
class Repository
{
public:
    explicit Repository(Process& process) : process_(process) {}

    std::int32_t refs() const { return refs_; }
    void addRef() { ++refs_; }
    void release() { --refs_; }

    // Drivers.
    Code addDriver(std::string& error, Driver* driver);
    void removeDriver(Driver* driver);
    void removeDriver(std::string name);
    /// The driver found holds one more reference. `driver` may be null.
    Code getDriver(std::string const& name, Driver** driver);

    // Listeners. `wanted` carries the fields; its delegate may be null.
    Code addObserver(std::string& error, Listener wanted);
    /// The form that makes a delegate of its own for a plain observer, null included.
    Code addObserver(std::string& error, Listener wanted, Observer* observer);
    void removeObserver(std::string name);

    // Attachments.
    std::string getDriverAttachment(std::string const& name, std::string const& key) const;
    std::string getDriverAttachment(Driver const* driver, std::string const& key) const;
    Code setDriverAttachment(std::string& error, std::string name, std::string key,
                             std::string value);
    Code setDriverAttachment(std::string& error, Driver const* driver, std::string key,
                             std::string value);

    // Queries. Each driver or interface that comes back holds one more reference.
    Code getDriverInterface(std::string const& name, Identifier const& iid, Driver** object);
    /// `attributes` may be null: the forms without a table.
    void getDrivers(Identifier const& did, std::string const& pattern, Table const* attributes,
                    std::vector<Driver*>& drivers);
    void getDriverInterfaces(Identifier const& did, std::string const& pattern,
                             Table const* attributes, Identifier const& iid,
                             std::vector<Driver*>& interfaces);

    void getInfo(std::vector<InfoRow>& rows, InfoLimits const& limits, std::string const& prefix);

private:
    using Named = std::pair<std::string, std::shared_ptr<DriverRecord>>;
    using DriverTable = std::list<Named>;

    DriverTable::iterator find(std::string const& name);
    Code failListener(std::string const& error, Listener& listener, Code rc);
    void forgetListener(std::shared_ptr<Listener> const& listener);
    Code offerToListeners(std::string& error, DriverRecord& record, EntryList::iterator& stop);
    Code offerDrivers(std::string& error, std::shared_ptr<Listener> const& listener,
                      DriverTable::iterator& stop);
    static bool meets(DriverRecord const& record, Identifier const& did, std::string const& pattern,
                      Table const* attributes);
    void listenerInfo(std::vector<InfoRow>& rows, InfoLimits const& limits,
                      Listener const& l) const;

    Process& process_;
    std::int32_t refs_ = 1;
    EntryList listeners_;
    DriverTable drivers_;
};

} // namespace model

#endif
