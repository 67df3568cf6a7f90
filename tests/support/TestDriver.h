#ifndef SUPPORT_TESTDRIVER_H
#define SUPPORT_TESTDRIVER_H

#include <vector>

#include <drvrepo/CDriver.h>

/// A driver that answers further interfaces of choice, and counts what is asked of it.
class TestDriver : public CDriver
{
public:
    struct Calls
    {
        unsigned queryInterface = 0;
        unsigned addRef = 0;
        unsigned release = 0;
        unsigned getLock = 0;
        unsigned setDriverRepository = 0;
        mutable unsigned getDID = 0;
        mutable unsigned getDriverName = 0;
    };

    explicit TestDriver(String const& name, TOVA_UUID const& did = IDriver::DID_UNKNOWN())
        : CDriver(did, name)
    {
        ++living_;
    }
    ~TestDriver() override { --living_; }

    /// Test drivers that exist.
    static int living() { return living_; }
    /// References on this one, the creator's included.
    int references() const { return references_; }
    Calls const& calls() const { return calls_; }
    /// What `setDriverRepository` was told, in order.
    std::vector<IDriverRepository*> const& repositories() const { return repositories_; }

    /// Answers `iid` as well, with itself as IUnknown.
    void offer(TOVA_UUID const& iid) { offered_.push_back(iid); }

    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        ++calls_.queryInterface;
        for (TOVA_UUID const& offered : offered_)
            if (offered == iid)
                return CDriver::queryInterface(IID_Unknown(), out);
        return CDriver::queryInterface(iid, out);
    }
    void addRef() override
    {
        ++calls_.addRef;
        ++references_;
        CDriver::addRef();
    }
    void release() override
    {
        ++calls_.release;
        --references_;
        CDriver::release();
    }
    Lock* getLock() override
    {
        ++calls_.getLock;
        return CDriver::getLock();
    }
    TOVA_UUID const& getDID() const override
    {
        ++calls_.getDID;
        return CDriver::getDID();
    }
    String const& getDriverName() const override
    {
        ++calls_.getDriverName;
        return CDriver::getDriverName();
    }
    void setDriverRepository(IDriverRepository* repository) override
    {
        ++calls_.setDriverRepository;
        repositories_.push_back(repository);
        CDriver::setDriverRepository(repository);
    }

private:
    inline static int living_ = 0;

    int references_ = 1;
    Calls calls_;
    std::vector<IDriverRepository*> repositories_;
    std::vector<TOVA_UUID> offered_;
};

#endif
