#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include <utility/TYPtr.h>

#include <support/CountedObject.h>
#include <support/RecordingLock.h>

namespace
{

/// The two pointers have the same ownership; these tests run for both.
template <class Pointer> class CountedPointer : public testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(0, CountedObject::living()); }
};

using Pointers = testing::Types<TYPtr<CountedObject>, TYPPtr<CountedObject>>;
TYPED_TEST_SUITE(CountedPointer, Pointers, );

TYPED_TEST(CountedPointer, DefaultIsNull)
{
    const TypeParam pointer;
    EXPECT_EQ(nullptr, pointer.get());
    EXPECT_FALSE(pointer);
    const LockRecord record = pointer.getLock();
    EXPECT_EQ(nullptr, record.object);
    EXPECT_EQ(nullptr, record.lock);
    EXPECT_FALSE(record.held);
}

TYPED_TEST(CountedPointer, AdoptsARawPointer)
{
    CountedObject* const object = new CountedObject;
    const TypeParam pointer(object);
    EXPECT_EQ(1, object->references());
    EXPECT_EQ(object, pointer.get());
    EXPECT_EQ(object, &*pointer);
    EXPECT_TRUE(pointer);
}

TYPED_TEST(CountedPointer, SharesWithAFurtherReference)
{
    CountedObject* const object = new CountedObject;
    {
        const TypeParam pointer(TypeParam::share(object));
        EXPECT_EQ(2, object->references());
    }
    EXPECT_EQ(1, object->references());
    EXPECT_FALSE(TypeParam::share(nullptr));
    object->release();
}

TYPED_TEST(CountedPointer, CopiesTakeAReferenceMovesDoNot)
{
    CountedObject* const object = new CountedObject;
    TypeParam first(object);
    {
        TypeParam second(first);
        EXPECT_EQ(2, object->references());
        const TypeParam third(std::move(second));
        EXPECT_EQ(2, object->references());
        EXPECT_EQ(object, third.get());
        EXPECT_EQ(nullptr, second.get()); // NOLINT(bugprone-use-after-move)
    }
    EXPECT_EQ(1, object->references());
    const TypeParam none;
    const TypeParam copyOfNone(none);
    EXPECT_FALSE(copyOfNone);
}

TYPED_TEST(CountedPointer, AssigningReleasesTheOld)
{
    CountedObject* const object = new CountedObject;
    TypeParam first(object);
    TypeParam second(new CountedObject);
    EXPECT_EQ(2, CountedObject::living());
    second = first;
    EXPECT_EQ(1, CountedObject::living());
    EXPECT_EQ(2, object->references());
    TypeParam third(new CountedObject);
    third = std::move(second);
    EXPECT_EQ(1, CountedObject::living());
    EXPECT_EQ(2, object->references());
    third = TypeParam();
    EXPECT_EQ(1, object->references());
}

TYPED_TEST(CountedPointer, AssigningItselfChangesNothing)
{
    CountedObject* const object = new CountedObject;
    TypeParam pointer(object);
    TypeParam& same = pointer;
    pointer = same;
    EXPECT_EQ(1, object->references());
    EXPECT_EQ(object, pointer.get());
    pointer = std::move(same);
    EXPECT_EQ(1, object->references());
    EXPECT_EQ(object, pointer.get());
}

TYPED_TEST(CountedPointer, ResetReleasesAndAdopts)
{
    CountedObject* const object = new CountedObject;
    TypeParam pointer(new CountedObject);
    pointer.reset(object);
    EXPECT_EQ(1, CountedObject::living());
    EXPECT_EQ(1, object->references());
    EXPECT_EQ(object, pointer.get());
    object->addRef(); // the pointer adopts this one and gives its own back
    pointer.reset(object);
    EXPECT_EQ(1, object->references());
    pointer.reset();
    EXPECT_EQ(nullptr, pointer.get());
    EXPECT_EQ(0, CountedObject::living());
}

TYPED_TEST(CountedPointer, DetachHandsTheReferenceOut)
{
    TypeParam pointer(new CountedObject);
    CountedObject* const object = pointer.detach();
    EXPECT_FALSE(pointer);
    EXPECT_EQ(1, object->references());
    object->release();
}

TYPED_TEST(CountedPointer, ComparesWithARawPointer)
{
    CountedObject* const object = new CountedObject;
    CountedObject const* const constant = object;
    const TypeParam pointer(object);
    EXPECT_TRUE(static_cast<TYPtr<CountedObject> const&>(pointer) == constant);
    EXPECT_FALSE(static_cast<TYPtr<CountedObject> const&>(pointer) != constant);
    CountedObject const* const none = nullptr;
    EXPECT_TRUE(static_cast<TYPtr<CountedObject> const&>(pointer) != none);
}

/// An object that writes down whether the pointer that held it is empty when it goes.
class Leaving : public CountedObject
{
public:
    ~Leaving() override
    {
        if (holder != nullptr)
            *seen = holder->get();
    }

    TYPtr<CountedObject>* holder = nullptr;
    CountedObject** seen = nullptr;
};

TEST(TYPtrReentrancy, AReplacedObjectSeesThePointerReplaced)
{
    CountedObject* seen = nullptr;
    Leaving* const object = new Leaving;
    TYPtr<CountedObject> pointer(object);
    object->holder = &pointer;
    object->seen = &seen;
    CountedObject* const next = new CountedObject;
    pointer.reset(next);
    EXPECT_EQ(next, seen);

    Leaving* const other = new Leaving;
    pointer.reset(other);
    other->holder = &pointer;
    other->seen = &seen;
    seen = other;
    pointer = TYPtr<CountedObject>();
    EXPECT_EQ(nullptr, seen);
}

/// An object of whose calls the lock's story tells.
class Worker : public CountedObject
{
public:
    explicit Worker(RecordingLock& lock) : CountedObject(&lock), lock_(lock) {}

    int work()
    {
        lock_.note(lock_.held() != 0 ? "locked work;" : "work;");
        return 7;
    }
    void fail()
    {
        lock_.note("fail;");
        throw std::runtime_error("from inside");
    }

private:
    RecordingLock& lock_;
};

TEST(LockedAccess, OfTYPtrIsUnlocked)
{
    RecordingLock lock;
    TYPtr<Worker> pointer(new Worker(lock));
    TYPtr<Worker> const& constant = pointer;
    EXPECT_EQ(7, pointer->work());
    EXPECT_EQ(7, constant->work());
    EXPECT_EQ("work;work;", lock.story());
    for (LockRecord const& record : {pointer.getLock(), constant.getLock()}) {
        EXPECT_EQ(pointer.get(), record.object);
        EXPECT_EQ(nullptr, record.lock);
        EXPECT_FALSE(record.held);
    }
}

TEST(LockedAccess, OfTYPPtrHoldsTheObjectsLock)
{
    RecordingLock lock;
    TYPPtr<Worker> pointer(new Worker(lock));
    TYPPtr<Worker> const& constant = pointer;
    EXPECT_EQ(7, pointer->work());
    EXPECT_EQ("lock;locked work;unlock;", lock.story());
    constant->work();
    EXPECT_EQ("lock;locked work;unlock;lock;locked work;unlock;", lock.story());
    for (LockRecord const& record : {pointer.getLock(), constant.getLock()}) {
        EXPECT_EQ(pointer.get(), record.object);
        EXPECT_EQ(&lock, record.lock);
        EXPECT_FALSE(record.held);
    }
}

TEST(LockedAccess, OfTYPPtrEndsWithAnException)
{
    RecordingLock lock;
    const TYPPtr<Worker> pointer(new Worker(lock));
    EXPECT_THROW(pointer->fail(), std::runtime_error);
    EXPECT_EQ("lock;fail;unlock;", lock.story());
}

TEST(LockedAccess, OnlyTheArrowLocks)
{
    RecordingLock lock;
    const TYPPtr<Worker> pointer(new Worker(lock));
    (*pointer).work();
    pointer.get()->work();
    EXPECT_EQ("work;work;", lock.story());
}

TEST(LockedAccess, LastsForTheFullExpression)
{
    RecordingLock lock;
    const TYPPtr<Worker> pointer(new Worker(lock));
    EXPECT_EQ(14, pointer->work() + pointer->work());
    EXPECT_EQ(0, lock.held());
    EXPECT_EQ("lock;locked work;lock;locked work;unlock;unlock;", lock.story());
}

TEST(LockedAccess, OfAnObjectWithoutALock)
{
    const TYPPtr<CountedObject> pointer(new CountedObject);
    EXPECT_EQ(1, pointer->references());
    EXPECT_EQ(nullptr, pointer.getLock().lock);
}

TEST(LockedAccess, IsVirtual)
{
    RecordingLock lock;
    const TYPPtr<Worker> pointer(new Worker(lock));
    TYPtr<Worker> const& base = pointer;
    base->work();
    EXPECT_EQ("lock;locked work;unlock;", lock.story());
}

} // namespace
