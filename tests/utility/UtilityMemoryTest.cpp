#include <functional>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include <utility/InfoContainer.h>
#include <utility/StringTokenizer.h>
#include <utility/TOVA_HashTable.h>
#include <utility/TOVA_List.h>
#include <utility/TOVA_UUID.h>
#include <utility/TOVA_Vector.h>
#include <utility/TYMarshaller.h>
#include <utility/XCode.h>

#include <support/Allocations.h>

namespace
{

/// How often `work` asks for memory.
std::uint64_t requestsOf(std::function<void()> const& work)
{
    const std::uint64_t before = allocations::count();
    work();
    return allocations::count() - before;
}

/// Runs `work` with every one of its requests failing once. Each time it has to throw, leave what
/// `look` sees as it was, and keep no memory; `expected` requests there have to be.
void failEach(unsigned expected, std::function<void()> const& work,
              std::function<std::string()> const& look)
{
    const std::string before = look();
    for (unsigned request = 0; request < expected; ++request) {
        SCOPED_TRACE(request);
        const std::int64_t living = allocations::living();
        bool threw = false;
        {
            const allocations::Failing failing(request);
            try {
                work();
            } catch (std::bad_alloc const&) {
                threw = true;
            }
            EXPECT_TRUE(failing.happened());
        }
        EXPECT_TRUE(threw);
        EXPECT_EQ(living, allocations::living());
        EXPECT_EQ(before, look());
    }
    EXPECT_EQ(expected, requestsOf(work));
}

std::string textOf(String const& string)
{
    return std::string(string.cString(), static_cast<std::size_t>(string.length()));
}

TEST(Memory, EmptyObjectsAskForNone)
{
    EXPECT_EQ(0u, requestsOf([] {
                  const String string;
                  const String empty("");
                  const XCode code(-1);
                  const TOVA_UUID id;
                  const TOVA_Vector<String> vector(8);
                  const TOVA_List<String> list;
                  const TOVA_StringHashTable<String> table;
                  const TYMarshaller marshaller;
                  const InfoContainer info;
                  const TOVA_Vector<String> vectorCopy(vector);
                  const TOVA_List<String> listCopy(list);
                  const TOVA_StringHashTable<String> tableCopy(table);
              }));
}

TEST(Memory, SharingAsksForNone)
{
    const String string("shared by many");
    const TOVA_UUID id = TOVA_UUID::create(1, 2, 3, 4, "counted");
    TYMarshaller marshaller;
    for (std::uint32_t i = 0; i < 20; ++i)
        marshaller.copyOnWrite().addTail(&i, sizeof i);
    EXPECT_EQ(0u, requestsOf([&] {
                  const String copy(string);
                  String other;
                  other = copy;
                  const String taken(std::move(other));
                  other = taken;
                  const TOVA_UUID sameId(id);
                  const TYMarshaller same(marshaller);
                  EXPECT_TRUE(copy.startsWith(other) && copy.indexOf(other) == 0);
              }));
}

TEST(Memory, AStringIsOneBlock)
{
    String string;
    EXPECT_EQ(1u, requestsOf([&] { string = "abc"; }));
    EXPECT_EQ(1u, requestsOf([&] { string.concat("d"); }) - 1); // the argument is one, too
    EXPECT_EQ(1u, requestsOf([&] { string.internalConcat("e", 1); }));
    EXPECT_EQ(1u, requestsOf([&] { string.concatf("%d", 7); }));
    EXPECT_EQ(0u, requestsOf([&] { string.concat(String()); }));
    EXPECT_EQ(0u, requestsOf([&] { string.format("%s", ""); }));
}

TEST(Memory, ThreeWordsFitIntoAMarshaller)
{
    TYMarshaller marshaller;
    const std::uint32_t word = 7;
    EXPECT_EQ(0u, requestsOf([&] {
                  for (int i = 0; i < 3; ++i)
                      marshaller.copyOnWrite().addTail(&word, sizeof word);
                  const TYMarshaller copy(marshaller);
                  EXPECT_EQ(7u, copy.word(2));
              }));
    EXPECT_EQ(1u, requestsOf([&] { marshaller.copyOnWrite().addTail(&word, sizeof word); }));
}

TEST(Memory, ASmallTableHasNoBucketArray)
{
    const String key("key");
    TOVA_StringHashTable<unsigned> table;
    const String keys[] = {"a", "b", "c", "d", "e", "f", "g", "h", "i"};
    EXPECT_EQ(8u, requestsOf([&] {
                  for (unsigned i = 0; i < 8; ++i)
                      table.put(keys[i], i);
              }));
    EXPECT_EQ(2u, requestsOf([&] { table.put(keys[8], 8); })); // the entry, and the buckets
    EXPECT_EQ(0u, requestsOf([&] {
                  table.put(keys[0], 7);
                  EXPECT_TRUE(table.find(key) == table.end());
                  EXPECT_TRUE(table.remove(keys[3]));
              }));
}

TEST(Memory, OutOfMemoryIsToldWithoutMemory)
{
    String message("before");
    const allocations::Failing failing(0);
    const XCode code = XCode::OUT_OF_MEMORY(message);
    EXPECT_EQ(-1, code.code());
    EXPECT_STREQ("Out of memory", message.cString());
    EXPECT_FALSE(failing.happened());
}

TEST(WithoutMemory, StringsStay)
{
    String string("abc");
    const auto look = [&] { return textOf(string); };
    failEach(
        1, [&] { String("new").isEmpty(); }, look);
    failEach(
        1, [&] { String("new", 1, 1).isEmpty(); }, look);
    failEach(
        1, [&] { string.internalConcat("d", 1); }, [&] { return look().substr(0, 3); });
    string = "abc";
    failEach(
        1, [&] { String(string).concatf("%d", 1); }, look);
    failEach(
        1, [&] { String(string).format("%d", 1); }, look);
    const std::string wide(1000, 'x');
    failEach(
        1, [&] { String(string).concatf("%s", wide.c_str()); }, look);
    const allocations::Failing failing(0);
    EXPECT_THROW(string = "other", std::bad_alloc);
    EXPECT_THROW(string.concat(string), std::bad_alloc);
    EXPECT_THROW(string.concatf("%s", wide.c_str()), std::bad_alloc);
    EXPECT_THROW(string.format("%d", 1), std::bad_alloc);
    EXPECT_STREQ("abc", string.cString());
    EXPECT_EQ(1, string.buffer()->references());
}

TEST(WithoutMemory, TokenizersStay)
{
    StringTokenizer tokens("a/b", "/");
    String token("before");
    {
        const allocations::Failing failing(0);
        EXPECT_THROW(tokens.nextToken(token), std::bad_alloc);
    }
    EXPECT_STREQ("before", token.cString());
    EXPECT_TRUE(tokens.nextToken(token));
    EXPECT_STREQ("a", token.cString());
}

TEST(WithoutMemory, CodesStay)
{
    const String message("reason");
    XCode code(1, message);
    const XCode other(2, message);
    const auto look = [&] {
        return std::to_string(code.code()) + "/" + std::to_string(message.buffer()->references());
    };
    failEach(
        1, [&] { XCode(3, message).code(); }, look);
    failEach(
        1, [&] { XCode(code).code(); }, look);
    const allocations::Failing failing(0);
    EXPECT_THROW(code = other, std::bad_alloc);
    EXPECT_EQ("1/3", look());
}

TEST(WithoutMemory, IdentifiersAreNotMade)
{
    failEach(
        1, [] { TOVA_UUID::create(1, 2, 3, 4, "counted"); }, [] { return std::string(); });
}

TEST(WithoutMemory, VectorsStay)
{
    TOVA_Vector<String> vector(2);
    vector.append("a");
    vector.append("b");
    const String more("c");
    const auto look = [&] {
        std::string story = std::to_string(vector.capacity()) + ":";
        for (String const& element : vector)
            story += element.cString();
        return story;
    };
    ASSERT_EQ("2:ab", look());
    failEach(
        1, [&] { TOVA_Vector<String>(vector).count(); }, look);
    const allocations::Failing failing(0);
    EXPECT_THROW(vector.append(more), std::bad_alloc);
    EXPECT_THROW(vector[2], std::bad_alloc);
    EXPECT_THROW(vector.enlarge(5), std::bad_alloc);
    EXPECT_EQ("2:ab", look());
    EXPECT_EQ(1, more.buffer()->references());
}

TEST(WithoutMemory, ListsStay)
{
    const String text("a");
    TOVA_List<String> list;
    list.append(text);
    list.append(text);
    const auto look = [&] {
        return std::to_string(list.count()) + "/" + std::to_string(text.buffer()->references());
    };
    failEach(
        2, [&] { TOVA_List<String>(list).isEmpty(); }, look);
    const allocations::Failing failing(0);
    EXPECT_THROW(list.append(text), std::bad_alloc);
    EXPECT_THROW(list.insert(list.begin(), text), std::bad_alloc);
    EXPECT_EQ("2/3", look());
}

/// A table of eight or 32 entries: the next one needs buckets.
class TablesWithoutMemory : public testing::TestWithParam<unsigned>
{};

INSTANTIATE_TEST_SUITE_P(WithoutMemory, TablesWithoutMemory, testing::Values(0u, 8u, 32u, 64u));

TEST_P(TablesWithoutMemory, Stay)
{
    TOVA_StringHashTable<String> table;
    for (unsigned i = 0; i < GetParam(); ++i)
        table.put(String().format("%u", i), "value");
    const String key("new");
    const auto look = [&] {
        std::string story = std::to_string(table.bucketCount()) + ":";
        for (TOVA_StringHashTable<String>::Entry const& entry : table)
            story += std::string(entry.key.cString()) + "=" + entry.value.cString() + ";";
        return story + (table.find(key) == table.end() ? "" : " new") +
               std::to_string(key.buffer()->references());
    };
    const std::string before = look();
    const unsigned requests = GetParam() == 0 ? 1 : 2; // the entry, the buckets
    for (unsigned request = 0; request < requests; ++request) {
        SCOPED_TRACE(request);
        const std::int64_t living = allocations::living();
        {
            const allocations::Failing failing(request);
            EXPECT_THROW(table.put(key, key), std::bad_alloc);
        }
        EXPECT_EQ(living, allocations::living());
        EXPECT_EQ(before, look());
    }
    table.put(key, key);
    EXPECT_EQ(GetParam() + 1, table.count());
}

TEST(Memory, AClearedTableKeepsNone)
{
    TOVA_StringHashTable<unsigned> table;
    const std::int64_t living = allocations::living();
    for (unsigned i = 0; i < 9; ++i) // with buckets, therefore
        table.put(String().format("%u", i), i);
    EXPECT_LT(living, allocations::living());
    table.clear();
    EXPECT_EQ(living, allocations::living());
}

TEST(WithoutMemory, MarshallersStay)
{
    TYMarshaller marshaller;
    for (std::uint32_t i = 0; i < 20; ++i)
        marshaller.copyOnWrite().addTail(&i, sizeof i);
    TYMarshaller sharer(marshaller);
    TYMarshaller brief;
    const std::uint32_t words[4] = {1, 2, 3, 4};
    brief.copyOnWrite().addTail(words, 12);
    const allocations::Failing failing(0);
    EXPECT_THROW(sharer.copyOnWrite(), std::bad_alloc);
    EXPECT_THROW(brief.copyOnWrite().addTail(words, 4), std::bad_alloc);
    EXPECT_EQ(80u, sharer.buffer().size());
    EXPECT_EQ(marshaller.buffer().data(), sharer.buffer().data());
    EXPECT_EQ(12u, brief.buffer().size());
    EXPECT_EQ(3u, brief.word(2));
}

TEST(WithoutMemory, RowsStay)
{
    InfoContainer info;
    const String text("key");
    info.add(0, 0, text, text);
    const allocations::Failing failing(0);
    EXPECT_THROW(info.add(1, 1, text, text), std::bad_alloc);
    EXPECT_EQ(1u, info.rows().size());
    EXPECT_EQ(3, text.buffer()->references());
}

} // namespace
