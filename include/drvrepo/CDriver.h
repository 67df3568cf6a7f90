#ifndef DRVREPO_CDRIVER_H
#define DRVREPO_CDRIVER_H

#include <utility/RefCount.h>
#include <utility/TYEventLoop.h>

#include <drvrepo/IDriver.h>

/// The ready-made driver to derive from: keeps type, name and repository, and borrows lock and
/// event loop from the repository that holds it.
///
/// Ownership   starts with one reference, its creator's; deletes itself with the last one. The
///             repository is not counted.
/// Locking     the count is a plain integer: references are taken and given back on one thread or
///             under the repository's lock.
class DRVREPO_EXPORT CDriver : public IDriver
{
public:
    /// Of type `did`, under the name `name`, in no repository.
    CDriver(TOVA_UUID const& did, String const& name);
    ~CDriver() override;

    /// Answers IUnknown and IDriver. A driver with more interfaces overrides it and falls back.
    XCode queryInterface(TOVA_UUID const& iid, void** out) override;
    void addRef() override;
    void release() override;
    /// The lock of the repository that holds the driver; null when none does.
    Lock* getLock() override;
    TOVA_UUID const& getDID() const override;
    String const& getDriverName() const override;
    IDriverRepository* getDriverRepository() override;
    void setDriverRepository(IDriverRepository* repository) override;

    /// The loop of the repository that holds the driver, else the process-wide one.
    TYEventLoop& eventLoop() const;

private:
    PlainRefCount refs_;
    TOVA_UUID did_;
    String name_;
    IDriverRepository* repository_;
};

#endif
