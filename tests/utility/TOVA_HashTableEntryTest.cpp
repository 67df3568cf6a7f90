#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <utility/TOVA_HashTable.h>

namespace
{

/// Looks at its table while it is destroyed.
struct Leaver
{
    using Table = TOVA_StringHashTable<Leaver>;

    Table* table = nullptr;
    std::string* story = nullptr;
    String key;

    Leaver(Table& of, std::string& into, String const& under) : table(&of), story(&into), key(under)
    {}
    Leaver(Leaver&& other) noexcept
        : table(std::exchange(other.table, nullptr)), story(other.story), key(other.key)
    {}
    Leaver& operator=(Leaver&& other) noexcept
    {
        std::swap(table, other.table);
        return *this;
    }
    ~Leaver()
    {
        if (table == nullptr)
            return;
        unsigned left = 0;
        for (Table::Iterator at = table->begin(); at != table->end(); ++at)
            ++left;
        *story += key.cString();
        *story += " " + std::to_string(table->count()) + "/" + std::to_string(left) +
                  (table->find(key) == table->end() ? ";" : " still there;");
    }
};

TEST(TOVA_HashTableEntry, IsUnlinkedBeforeItIsDestroyed)
{
    std::string story;
    Leaver::Table table;
    for (char const* key : {"a", "b", "c", "d"})
        table.put(key, Leaver(table, story, key));
    EXPECT_EQ("", story);
    table.remove("b");
    EXPECT_EQ("b 3/3;", story);
    table.clear();
    EXPECT_EQ("b 3/3;a 2/2;c 1/1;d 0/0;", story);
}

TEST(TOVA_HashTableEntry, IsUnlinkedFromItsBucketAsWell)
{
    std::string story;
    Leaver::Table table;
    for (unsigned i = 0; i < 40; ++i) {
        const String key = String().format("%u", i);
        table.put(key, Leaver(table, story, key));
    }
    table.remove("17");
    table.remove("0");
    EXPECT_EQ("17 39/39;0 38/38;", story);
    table.clear();
    EXPECT_EQ(std::string::npos, story.find("still there"));
    EXPECT_EQ("39 0/0;", story.substr(story.rfind(' ') - 2));
}

// The links of the list of all, those of the bucket, the key, the value.
TEST(TOVA_HashTableEntry, HasItsFieldsInOrder)
{
    using Table = TOVA_StringHashTable<String>;
    Table table;
    for (unsigned i = 0; i < 9; ++i)
        table.put(String().format("%u", i), "value");
    Table::Entry const& first = *table.begin();
    Table::Entry const& second = *++table.begin();
    void const* links[4] = {};
    std::memcpy(links, static_cast<void const*>(&first), sizeof links);
    EXPECT_EQ(static_cast<void const*>(&second), links[1]);
    std::memcpy(links, static_cast<void const*>(&second), sizeof links);
    EXPECT_EQ(static_cast<void const*>(&first), links[0]);
    char const* const start = reinterpret_cast<char const*>(&first);
    EXPECT_EQ(start + sizeof links, reinterpret_cast<char const*>(&first.key));
    EXPECT_EQ(start + sizeof links + sizeof(String), reinterpret_cast<char const*>(&first.value));
}

TEST(TOVA_HashTableEntry, MayHaveItsMemoryFromOutside)
{
    using Table = TOVA_StringHashTable<String>;
    struct alignas(void*) Room
    {
        char bytes[Table::ENTRY_SIZE];
    };
    std::vector<Room> rooms(40);
    const String value("value");
    Table table;
    table.put("before", value);
    for (unsigned i = 0; i < rooms.size(); ++i) {
        const Table::Iterator at = table.add(String().format("%u", i), value, &rooms[i]);
        EXPECT_EQ(static_cast<void*>(&rooms[i]), static_cast<void*>(&*at));
        EXPECT_EQ(0u, at->mark);
    }
    EXPECT_EQ(41u, table.count());
    EXPECT_EQ(static_cast<void*>(&rooms[39]), static_cast<void*>(&*--table.end()));
    EXPECT_EQ(static_cast<void*>(&rooms[17]), static_cast<void*>(&*table.find("17")));
    EXPECT_EQ(42, value.buffer()->references());
    for (unsigned i = 0; i < rooms.size(); ++i)
        table.extract(table.find(String().format("%u", i)));
    EXPECT_EQ(table.end(), table.find("17"));
    EXPECT_EQ(2, value.buffer()->references());
    EXPECT_EQ(1u, table.count()); // the table frees that one itself
}

TEST(TOVA_HashTableEntry, HasAMarkForTheOwner)
{
    TOVA_StringHashTable<String> table;
    for (unsigned i = 0; i < 100; ++i) {
        const auto at = table.put(String().format("%u", i), "value");
        EXPECT_EQ(0u, at->mark);
        at->mark = i;
    }
    table.put("7", "other");
    for (unsigned i = 0; i < 100; ++i)
        EXPECT_EQ(i, table.find(String().format("%u", i))->mark);
}

} // namespace
