#include <thread>

#include <gtest/gtest.h>

#include <utility/TYEventLoop.h>

#include <support/TwoThreads.h>

namespace
{

TEST(TYEventLoop, HasOneLockOfItsOwn)
{
    TYEventLoop loop;
    TYEventLoop other;
    TYEventLoop const& constant = loop;
    EXPECT_NE(nullptr, loop.lock());
    EXPECT_EQ(loop.lock(), constant.lock());
    EXPECT_NE(loop.lock(), other.lock());
}

TEST(TYEventLoop, LocksRecursivelyAndCannotFail)
{
    TYEventLoop loop;
    EXPECT_EQ(0, loop.lock()->lock().code());
    EXPECT_EQ(0, loop.lock()->lock().code());
    EXPECT_EQ(0, loop.lock()->lock().code());
    loop.lock()->unlock();
    loop.lock()->unlock();
    loop.lock()->unlock();
    // Another thread gets it once all three were given back.
    std::thread([&loop] { const LockScope held(loop.lock()); }).join();
}

TEST(TYEventLoop, KeepsOtherThreadsOut)
{
    TYEventLoop loop;
    int shared = 0; // a data race, and a lost update, without the lock
    onTwoThreads([&](int) {
        for (int i = 0; i < 100000; ++i) {
            const LockScope outer(loop.lock());
            const LockScope inner(loop.lock());
            ++shared;
        }
    });
    EXPECT_EQ(200000, shared);
}

TEST(CRIT, IsOneLoopForTheProcess)
{
    TYEventLoop* const here = &CRIT::INSTANCE();
    EXPECT_EQ(here, &CRIT::INSTANCE());
    TYEventLoop* there = nullptr;
    std::thread([&there] { there = &CRIT::INSTANCE(); }).join();
    EXPECT_EQ(here, there);
    EXPECT_NE(nullptr, here->lock());
    const LockScope held(here->lock());
    const LockScope again(here->lock());
}

} // namespace
