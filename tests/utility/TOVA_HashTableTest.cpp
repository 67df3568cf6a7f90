#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <utility/TOVA_HashTable.h>

namespace
{

using Table = TOVA_StringHashTable<String>;

/// The entries forward, and the keys once more backward.
std::string storyOf(Table const& table)
{
    std::string story;
    for (Table::Entry const& entry : table)
        story += std::string(entry.key.cString()) + "=" + entry.value.cString() + ";";
    story += "|";
    for (Table::ConstIterator at = table.end(); at != table.begin();)
        story += (--at)->key.cString();
    return story;
}

String keyOf(unsigned number)
{
    return String().format("e1t1 %u", number);
}

Table tableOf(unsigned count)
{
    Table table;
    for (unsigned i = 0; i < count; ++i)
        table.put(keyOf(i), String().format("%u", i));
    return table;
}

/// Small tables are walked, larger ones have buckets, still larger ones more: the same holds for
/// all sizes.
class AnySize : public testing::TestWithParam<unsigned>
{};

INSTANTIATE_TEST_SUITE_P(TOVA_HashTable, AnySize,
                         testing::Values(0u, 1u, 7u, 8u, 9u, 31u, 32u, 33u, 64u, 65u, 1000u));

TEST_P(AnySize, FindsWhatIsThereAndNothingElse)
{
    Table table = tableOf(GetParam());
    Table const& constant = table;
    EXPECT_EQ(GetParam(), table.count());
    EXPECT_EQ(GetParam() == 0, table.isEmpty());
    for (unsigned i = 0; i < GetParam(); ++i) {
        const Table::Iterator found = table.find(keyOf(i));
        ASSERT_TRUE(found != table.end());
        EXPECT_EQ(keyOf(i), found->key);
        EXPECT_EQ(String().format("%u", i), found->value);
        EXPECT_TRUE(constant.find(keyOf(i)) == found);
    }
    for (char const* unknown : {"", "e1t1", "e1t1 ", "E1T1 0", "e1t1 0 ", "e1t1 4294967295"})
        EXPECT_TRUE(table.find(unknown) == table.end()) << unknown;
}

TEST_P(AnySize, IteratesInTheOrderOfFirstInsertion)
{
    Table table = tableOf(GetParam());
    table.put("last", "x");
    for (unsigned i = 0; i < GetParam(); ++i)
        table.put(keyOf(i), "again"); // a new value keeps the place
    unsigned next = 0;
    for (Table::Entry const& entry : table) {
        EXPECT_EQ(next == GetParam() ? String("last") : keyOf(next), entry.key);
        ++next;
    }
    EXPECT_EQ(GetParam() + 1, next);
    EXPECT_EQ(GetParam() + 1, table.count());
}

TEST_P(AnySize, KeepsTheOrderWhenEntriesGo)
{
    Table table = tableOf(GetParam());
    for (unsigned i = 0; i < GetParam(); i += 2)
        EXPECT_TRUE(table.remove(keyOf(i)));
    for (unsigned i = 0; i < GetParam(); i += 4)
        table.put(keyOf(i), "back"); // one that comes back comes last
    EXPECT_EQ(GetParam() / 2 + (GetParam() + 3) / 4, table.count());
    Table::ConstIterator at = table.begin();
    for (unsigned i = 1; i < GetParam(); i += 2, ++at)
        EXPECT_EQ(keyOf(i), at->key);
    for (unsigned i = 0; i < GetParam(); i += 4, ++at)
        EXPECT_EQ(keyOf(i), at->key);
    EXPECT_TRUE(at == table.end());
}

TEST_P(AnySize, RemovesByKey)
{
    Table table = tableOf(GetParam());
    EXPECT_FALSE(table.remove("unknown"));
    for (unsigned i = GetParam(); i-- > 0;) {
        EXPECT_TRUE(table.remove(keyOf(i)));
        EXPECT_FALSE(table.remove(keyOf(i)));
        EXPECT_EQ(i, table.count());
        EXPECT_TRUE(table.find(keyOf(i)) == table.end());
    }
    EXPECT_EQ("|", storyOf(table));
    table.put("new", "1");
    EXPECT_EQ("new=1;|new", storyOf(table));
}

TEST_P(AnySize, RemovesWithTheEntrysOwnKey)
{
    Table table = tableOf(GetParam());
    while (!table.isEmpty())
        EXPECT_TRUE(table.remove(table.begin()->key));
    EXPECT_TRUE(table.begin() == table.end());
}

TEST_P(AnySize, RemovesByPlace)
{
    Table table = tableOf(GetParam());
    unsigned seen = 0;
    for (Table::Iterator at = table.begin(); at != table.end(); ++seen)
        if (seen % 3 == 0)
            at = table.remove(at);
        else
            ++at;
    EXPECT_EQ(GetParam(), seen);
    for (unsigned i = 0; i < GetParam(); ++i)
        EXPECT_EQ(i % 3 != 0, table.find(keyOf(i)) != table.end());
    EXPECT_TRUE(table.remove(table.end()) == table.end());
}

TEST_P(AnySize, TakesItsOwnKeysAndValuesAgain)
{
    Table table = tableOf(GetParam());
    for (unsigned i = 0; i < GetParam(); ++i) {
        const Table::Iterator at = table.find(keyOf(i));
        table.put(at->key, at->value);
        EXPECT_EQ(String().format("%u", i), at->value);
        table.put(at->key, at->key);
        EXPECT_EQ(keyOf(i), at->value);
        table.put(at->key, table.begin()->value);
        EXPECT_EQ(keyOf(0), at->value);
    }
    EXPECT_EQ(GetParam(), table.count());
}

TEST_P(AnySize, GrowsWhileItsOwnTextsAreAdded)
{
    Table table;
    table.put("0", "value");
    for (unsigned i = 0; i < GetParam(); ++i)
        table.put(String(table.begin()->key).concatf("/%u", i), table.begin()->value);
    EXPECT_EQ(GetParam() + 1, table.count());
    for (Table::Entry const& entry : table)
        EXPECT_STREQ("value", entry.value.cString());
}

TEST_P(AnySize, ClearsAndStartsAfresh)
{
    const String value("shared");
    Table table;
    for (unsigned i = 0; i < GetParam(); ++i)
        table.put(keyOf(i), value);
    EXPECT_EQ(1 + static_cast<int>(GetParam()), value.buffer()->references());
    table.clear();
    EXPECT_EQ(1, value.buffer()->references());
    EXPECT_EQ(0u, table.count());
    EXPECT_EQ(0u, table.bucketCount());
    EXPECT_TRUE(table.find(keyOf(0)) == table.end());
    table.put("a", "1");
    EXPECT_EQ("a=1;|a", storyOf(table));
}

TEST_P(AnySize, CopiesEntryByEntry)
{
    Table table = tableOf(GetParam());
    Table copy(table);
    EXPECT_EQ(storyOf(table), storyOf(copy));
    copy.put("more", "x");
    for (Table::Entry& entry : copy)
        entry.value = "changed";
    EXPECT_EQ(storyOf(tableOf(GetParam())), storyOf(table));
    EXPECT_EQ(GetParam(), table.count());
    Table& same = table;
    table = same;
    EXPECT_EQ(storyOf(tableOf(GetParam())), storyOf(table));
}

TEST_P(AnySize, MovesAndSwaps)
{
    const std::string story = storyOf(tableOf(GetParam()));
    Table table = tableOf(GetParam());
    Table moved(std::move(table));
    EXPECT_EQ(story, storyOf(moved));
    EXPECT_EQ("|", storyOf(table)); // NOLINT(bugprone-use-after-move)
    table.put("a", "1");
    table.swap(moved);
    EXPECT_EQ("a=1;|a", storyOf(moved));
    EXPECT_EQ(story, storyOf(table));
    for (unsigned i = 0; i < GetParam(); ++i)
        EXPECT_TRUE(table.find(keyOf(i)) != table.end());
    table.swap(table);
    Table& same = table;
    table = std::move(same);
    EXPECT_EQ(story, storyOf(table));
    table.put("b", "2");
    EXPECT_EQ(GetParam() + 1, table.count());
}

TEST(TOVA_HashTable, PutAnswersThePlace)
{
    Table table;
    Table::Iterator at = table.put("key", "1");
    EXPECT_STREQ("1", at->value.cString());
    EXPECT_TRUE(at == table.put("key", "2"));
    EXPECT_STREQ("2", at->value.cString());
    at->value = "3";
    EXPECT_EQ("key=3;|key", storyOf(table));
    EXPECT_EQ(0u, at->mark);
}

TEST(TOVA_HashTable, TheEmptyKeyIsAKey)
{
    Table table = tableOf(40);
    table.put("", "empty");
    EXPECT_STREQ("empty", table.find(String())->value.cString());
    EXPECT_TRUE(table.remove(""));
    EXPECT_TRUE(table.find("") == table.end());
}

TEST(TOVA_HashTable, KeysAreComparedWithEveryByte)
{
    Table table = tableOf(40);
    table.put(String("a\0b", 0, 3), "1");
    table.put(String("a\0c", 0, 3), "2");
    table.put("a", "3");
    EXPECT_EQ(43u, table.count());
    EXPECT_STREQ("1", table.find(String("a\0b", 0, 3))->value.cString());
    EXPECT_STREQ("2", table.find(String("a\0c", 0, 3))->value.cString());
    EXPECT_STREQ("3", table.find("a")->value.cString());
    EXPECT_TRUE(table.find(String("a\0", 0, 2)) == table.end());
}

TEST(TOVA_HashTable, LeavesWhatPointersPointTo)
{
    int value = 7;
    {
        TOVA_StringHashTable<int*> table;
        table.put("a", &value);
        EXPECT_EQ(&value, table.find("a")->value);
    }
    EXPECT_EQ(7, value);
}

} // namespace
