#include <stdexcept>

#include <gtest/gtest.h>

#include <support/RecordingLock.h>

namespace
{

TEST(LockScope, HoldsFromConstructionToDestruction)
{
    RecordingLock lock;
    {
        const LockScope scope(&lock);
        EXPECT_EQ(1, lock.held());
        lock.note("work;");
    }
    EXPECT_EQ("lock;work;unlock;", lock.story());
}

TEST(LockScope, GivesBackWhenAnExceptionPasses)
{
    RecordingLock lock;
    EXPECT_THROW(
        {
            const LockScope scope(&lock);
            throw std::runtime_error("from inside");
        },
        std::runtime_error);
    EXPECT_EQ("lock;unlock;", lock.story());
}

TEST(LockScope, IgnoresTheCodeOfTheLock)
{
    RecordingLock lock(-5);
    {
        const LockScope scope(&lock);
        lock.note("work;");
    }
    EXPECT_EQ("lock;work;unlock;", lock.story());
}

TEST(LockScope, TakesWhatARecordNames)
{
    const int object = 0;
    RecordingLock lock;
    {
        const LockScope scope(LockRecord{&object, &lock, false});
        EXPECT_EQ(1, lock.held());
    }
    EXPECT_EQ("lock;unlock;", lock.story());
}

TEST(LockScope, LeavesTheLockOfNoObjectAndOneThatIsHeld)
{
    const int object = 0;
    RecordingLock lock;
    {
        const LockScope nobody(LockRecord{nullptr, &lock, false});
        const LockScope held(LockRecord{&object, &lock, true});
    }
    EXPECT_EQ("", lock.story());
}

} // namespace
