#include <thread>

#include <gtest/gtest.h>

#include <utility/RefCount.h>

namespace
{

template <class Count> class RefCount : public testing::Test
{};

using Counts = testing::Types<AtomicRefCount, PlainRefCount>;
TYPED_TEST_SUITE(RefCount, Counts, );

TYPED_TEST(RefCount, StartsAtOneAndSaysWhoWasTheLast)
{
    TypeParam count;
    EXPECT_EQ(1, count.value());
    count.increment();
    EXPECT_EQ(2, count.value());
    EXPECT_FALSE(count.decrement());
    EXPECT_EQ(1, count.value());
    EXPECT_TRUE(count.decrement());
    EXPECT_EQ(0, count.value());
    EXPECT_FALSE(count.decrement()); // below zero nobody was the last
}

static_assert(sizeof(AtomicRefCount) == 4 && sizeof(PlainRefCount) == 4, "32 bits each");

TEST(AtomicRefCount, CountsOnTwoThreads)
{
    AtomicRefCount count;
    const auto work = [&count] {
        for (int i = 0; i < 50000; ++i) {
            count.increment();
            count.increment();
            count.decrement();
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(100001, count.value());
}

} // namespace
