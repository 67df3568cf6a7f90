#ifndef SUPPORT_COUNTEDOBJECT_H
#define SUPPORT_COUNTEDOBJECT_H

#include <utility/IUnknown.h>

/// The smallest counted object: no interfaces, a lock of choice, and counts that can be read.
class CountedObject : public IUnknown
{
public:
    explicit CountedObject(Lock* lock = nullptr) : lock_(lock) { ++living_; }
    ~CountedObject() override { --living_; }

    /// Counted objects that exist.
    static int living() { return living_; }
    int references() const { return references_; }

    XCode queryInterface(TOVA_UUID const&, void** out) override
    {
        if (out != nullptr)
            *out = nullptr;
        return XCode(-1);
    }
    void addRef() override { ++references_; }
    void release() override
    {
        if (--references_ == 0)
            delete this;
    }
    Lock* getLock() override { return lock_; }

private:
    inline static int living_ = 0;

    int references_ = 1;
    Lock* lock_;
};

#endif
