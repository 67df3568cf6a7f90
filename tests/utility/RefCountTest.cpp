#include <gtest/gtest.h>

#include <utility/RefCount.h>

#include <support/TwoThreads.h>

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
    onTwoThreads([&count](int) {
        for (int i = 0; i < 500000; ++i) {
            count.increment();
            count.increment();
            count.decrement();
        }
    });
    EXPECT_EQ(1000001, count.value());
}

} // namespace
