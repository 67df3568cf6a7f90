#include <string>

#include <gtest/gtest.h>

#include <utility/TOVA_HashTable.h>

namespace
{

/// Compares as the string tables do, and counts how often.
struct CountingCompare
{
    inline static unsigned long calls = 0;

    bool operator()(String const& a, String const& b) const
    {
        ++calls;
        return StringCompare()(a, b);
    }
};

using Counted = TOVA_HashTable<String, unsigned, StringHash, CountingCompare>;

String keyOf(unsigned number)
{
    return String().format("e1t1 %u %u/b", number % 32, number / 32);
}

TEST(StringHash, MixesEveryByte)
{
    struct Case
    {
        String text;
        std::uint32_t hash;
    };
    const Case CASES[] = {
        {"", 0},
        {"a", 0x61},
        {"ab", 0x61u ^ 0x62u ^ (0x61u << 5)},
        {"ba", 0x62u ^ 0x61u ^ (0x62u << 5)},
        {String("\0", 0, 1), 0},
        {String("a\0", 0, 2), 0x61u ^ (0x61u << 5)},
        // Bytes are unsigned.
        {"\xFF", 0xff},
        {"\xFF\x80", 0xffu ^ 0x80u ^ (0xffu << 5)},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.text.cString());
        EXPECT_EQ(c.hash, StringHash()(c.text));
    }
    // Bits shifted out are lost: 32 bits.
    std::uint32_t expected = 0;
    for (char letter : std::string("e1t1 0 3/a/b"))
        expected = expected ^ static_cast<unsigned char>(letter) ^ (expected << 5);
    EXPECT_EQ(expected, StringHash()("e1t1 0 3/a/b"));
}

TEST(StringCompare, LooksAtTheBufferThenAtLengthAndBytes)
{
    const String text("key");
    EXPECT_TRUE(StringCompare()(text, text));
    EXPECT_TRUE(StringCompare()(text, "key"));
    EXPECT_FALSE(StringCompare()(text, "keys"));
    EXPECT_FALSE(StringCompare()(text, "kez"));
    EXPECT_FALSE(StringCompare()(String("a\0b", 0, 3), String("a\0c", 0, 3)));
}

TEST(TOVA_HashTableCost, SmallTablesHaveNoBuckets)
{
    Counted table;
    EXPECT_EQ(0u, table.bucketCount());
    for (unsigned i = 0; i < 8; ++i) {
        table.put(keyOf(i), i);
        EXPECT_EQ(0u, table.bucketCount());
    }
    table.put(keyOf(8), 8);
    EXPECT_EQ(32u, table.bucketCount());
    const Counted copy(table);
    EXPECT_EQ(32u, copy.bucketCount());
    table.clear();
    EXPECT_EQ(0u, table.bucketCount());
}

TEST(TOVA_HashTableCost, BucketsGrowWithTheEntries)
{
    Counted table;
    for (unsigned i = 0; i < 5000; ++i) {
        table.put(keyOf(i), i);
        if (i >= 8) {
            EXPECT_GE(table.bucketCount(), table.count());
        }
        EXPECT_LE(table.bucketCount(), table.count() <= 32 ? 32 : 2 * table.count());
    }
}

/// The average number of keys that one use of a table of `count` entries compares.
struct Comparisons
{
    double putting;
    double finding;
    double missing;
    double removing;
};

double sinceLast(unsigned uses)
{
    const double each = static_cast<double>(CountingCompare::calls) / uses;
    CountingCompare::calls = 0;
    return each;
}

Comparisons comparisonsOf(unsigned count)
{
    Comparisons each{};
    Counted table;
    CountingCompare::calls = 0;
    for (unsigned i = 0; i < count; ++i)
        table.put(keyOf(i), i);
    each.putting = sinceLast(count);
    unsigned right = 0;
    for (unsigned i = 0; i < count; ++i)
        right += table.find(keyOf(i))->value == i ? 1 : 0;
    each.finding = sinceLast(count);
    EXPECT_EQ(count, right);
    for (unsigned i = 0; i < count; ++i)
        right -= table.find(keyOf(count + i)) == table.end() ? 1 : 0;
    each.missing = sinceLast(count);
    EXPECT_EQ(0u, right);
    for (unsigned i = 0; i < count; ++i)
        table.remove(keyOf(i));
    each.removing = sinceLast(count);
    EXPECT_TRUE(table.isEmpty());
    return each;
}

// Only keys with the same hash are ever compared: one for a hit, none for a miss, however many
// there are. Putting compares while the table is small and has no buckets.
TEST(TOVA_HashTableCost, ComparisonsDontGrowWithTheEntries)
{
    for (unsigned count : {100u, 1000u, 10000u, 100000u}) {
        SCOPED_TRACE(count);
        const Comparisons each = comparisonsOf(count);
        EXPECT_LE(each.putting, 8.0 * 9.0 / 2.0 / count);
        EXPECT_GE(each.finding, 1.0);
        EXPECT_LT(each.finding, 1.01);
        EXPECT_LT(each.missing, 0.01);
        EXPECT_GE(each.removing, 1.0);
        EXPECT_LT(each.removing, 1.01);
    }
}

TEST(TOVA_HashTableCost, OneBufferIsFoundWithoutLookingAtBytes)
{
    Counted table;
    const String key("e1t1 0");
    table.put(key, 1);
    EXPECT_EQ(key.buffer(), table.begin()->key.buffer());
    EXPECT_EQ(2, key.buffer()->references());
    table.put(String("e1t1 0"), 2); // the key of the first insertion stays
    EXPECT_EQ(key.buffer(), table.begin()->key.buffer());
    table.remove(key);
    EXPECT_EQ(1, key.buffer()->references());
}

/// Puts a second hash under the first's: all keys meet in one bucket.
struct SameHash
{
    std::uint32_t operator()(String const&) const { return 7; }
};

TEST(TOVA_HashTable, WorksWhenAllHashesAreTheSame)
{
    TOVA_HashTable<String, unsigned, SameHash, StringCompare> table;
    for (unsigned i = 0; i < 100; ++i)
        table.put(keyOf(i), i);
    for (unsigned i = 0; i < 100; i += 3)
        EXPECT_TRUE(table.remove(keyOf(i)));
    for (unsigned i = 0; i < 100; ++i)
        EXPECT_EQ(i % 3 != 0, table.find(keyOf(i)) != table.end());
}

} // namespace
