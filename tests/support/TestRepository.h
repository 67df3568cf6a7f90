#ifndef SUPPORT_TESTREPOSITORY_H
#define SUPPORT_TESTREPOSITORY_H

#include <drvrepo/CDriverRepository.h>
#include <drvrepo/ObserverDelegate.h>

/// A repository that counts the references on it, on a loop of choice.
class TestRepository : public CDriverRepository
{
public:
    explicit TestRepository(TYEventLoop& loop) : CDriverRepository(loop) { ++living_; }
    ~TestRepository() override { --living_; }

    /// Test repositories that exist.
    static int living() { return living_; }
    /// References on this one, the creator's included.
    int references() const { return references_; }

    void addRef() override
    {
        ++references_;
        CDriverRepository::addRef();
    }
    void release() override
    {
        --references_;
        CDriverRepository::release();
    }

private:
    inline static int living_ = 0;

    int references_ = 1;
};

/// A delegate that counts the references on it.
class TestDelegate : public ObserverDelegate<IDriverRepository>
{
public:
    explicit TestDelegate(IDriverRepositoryObserver* observer)
        : ObserverDelegate<IDriverRepository>(observer)
    {
        ++living_;
    }
    ~TestDelegate() override { --living_; }

    /// Test delegates that exist.
    static int living() { return living_; }
    /// References on this one, the creator's included.
    int references() const { return references_; }

    void addRef() override
    {
        ++references_;
        ObserverDelegate<IDriverRepository>::addRef();
    }
    void release() override
    {
        --references_;
        ObserverDelegate<IDriverRepository>::release();
    }

private:
    inline static int living_ = 0;

    int references_ = 1;
};

#endif
