#ifndef DRVREPO_TESTKIT_TESTDRIVER_H
#define DRVREPO_TESTKIT_TESTDRIVER_H

#include <algorithm>
#include <vector>

#include <drvrepo/CDriver.h>

/// A driver that answers interfaces of choice, and counts what is asked of it and who holds it.
class TestDriver : public CDriver
{
public:
    /// How often each operation was called.
    struct Calls
    {
        /// @{
        /// Named like the operation.
        unsigned queryInterface = 0;
        unsigned addRef = 0;
        unsigned release = 0;
        unsigned getLock = 0;
        unsigned setDriverRepository = 0;
        mutable unsigned getDID = 0;
        mutable unsigned getDriverName = 0;
        /// @}
    };

    /// In no repository, offering nothing but what every driver offers.
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
    /// How often it was called.
    Calls const& calls() const { return calls_; }
    /// What `setDriverRepository` was told, in order.
    std::vector<IDriverRepository*> const& repositories() const { return repositories_; }

    /// Answers `iid` as well: with `face`, which must live longer, or else with itself as IUnknown.
    void offer(TOVA_UUID const& iid, IUnknown* face = nullptr)
    {
        withdraw(iid);
        offered_.push_back(Face{iid, face});
    }
    /// Answers `iid` no more.
    void withdraw(TOVA_UUID const& iid)
    {
        const auto isIt = [&](Face const& at) { return at.iid == iid; };
        offered_.erase(std::remove_if(offered_.begin(), offered_.end(), isIt), offered_.end());
    }

    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        ++calls_.queryInterface;
        for (Face const& offered : offered_)
            if (offered.iid == iid)
                return give(offered, out);
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
    struct Face
    {
        TOVA_UUID iid;
        IUnknown* object;
    };

    XCode give(Face const& offered, void** out)
    {
        if (offered.object == nullptr)
            return CDriver::queryInterface(IID_Unknown(), out);
        if (out != nullptr) {
            offered.object->addRef();
            *out = offered.object;
        }
        return XCode();
    }

    inline static int living_ = 0;

    int references_ = 1;
    Calls calls_;
    std::vector<IDriverRepository*> repositories_;
    std::vector<Face> offered_;
};

#endif
