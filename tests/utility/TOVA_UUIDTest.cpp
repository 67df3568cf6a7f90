#include <cstddef>

#include <gtest/gtest.h>

#include <utility/TOVA_UUID.h>

namespace
{

TOVA_UUID_Data s_record = {{1, 2, 3, 4}, -1, "static"};
TOVA_UUID_Data s_twin = {{1, 2, 3, 4}, -1, "another name"};

static_assert(offsetof(TOVA_UUID_Data, words) == 0 && offsetof(TOVA_UUID_Data, references) == 16,
              "four words, then the count");
static_assert(offsetof(TOVA_UUID_Data, name) == (sizeof(void*) == 8 ? 24 : 20), "then the name");
static_assert(sizeof(TOVA_UUID) == sizeof(TOVA_UUID_Data*), "one pointer");

TEST(TOVA_UUID, DefaultIsInvalid)
{
    const TOVA_UUID none;
    EXPECT_EQ(&TOVA_UUID::s_uuidDataInvalid, &none.data());
    EXPECT_TRUE(none == TOVA_UUID::INVALID());
    EXPECT_EQ(&TOVA_UUID::INVALID(), &TOVA_UUID::INVALID());
    EXPECT_EQ(&TOVA_UUID::s_uuidDataInvalid, &TOVA_UUID::INVALID().data());
    EXPECT_STREQ("INVALID", none.name());
    for (std::uint32_t word : none.data().words)
        EXPECT_EQ(0u, word);
    EXPECT_EQ(-1, none.data().references);
}

TEST(TOVA_UUID, ANullRecordIsTheInvalidOne)
{
    const TOVA_UUID none(nullptr);
    EXPECT_EQ(&TOVA_UUID::s_uuidDataInvalid, &none.data());
}

TEST(TOVA_UUID, StaticRecordsAreNeverCounted)
{
    {
        const TOVA_UUID first(&s_record);
        EXPECT_EQ(-1, s_record.references);
        TOVA_UUID second(first);
        EXPECT_EQ(-1, s_record.references);
        second = TOVA_UUID();
        EXPECT_EQ(-1, s_record.references);
        EXPECT_EQ(-1, TOVA_UUID::s_uuidDataInvalid.references);
    }
    for (int i = 0; i < 5; ++i)
        s_record.release();
    EXPECT_EQ(-1, s_record.references);
    EXPECT_STREQ("static", s_record.name);
    EXPECT_EQ(1u, s_record.words[0]);
    EXPECT_EQ(4u, s_record.words[3]);
}

TEST(TOVA_UUID, CountsRecordsThatAreNotStatic)
{
    const TOVA_UUID first = TOVA_UUID::create(0xa, 0xb, 0xc, 0xd, "counted");
    EXPECT_EQ(1, first.data().references);
    {
        const TOVA_UUID second(first);
        EXPECT_EQ(&first.data(), &second.data());
        EXPECT_EQ(2, first.data().references);
        TOVA_UUID third;
        third = second;
        EXPECT_EQ(3, first.data().references);
        third = TOVA_UUID();
        EXPECT_EQ(2, first.data().references);
    }
    EXPECT_EQ(1, first.data().references);
    EXPECT_STREQ("counted", first.name());
    EXPECT_EQ(0xau, first.data().words[0]);
    EXPECT_EQ(0xbu, first.data().words[1]);
    EXPECT_EQ(0xcu, first.data().words[2]);
    EXPECT_EQ(0xdu, first.data().words[3]);
}

// The leak check of the sanitizer sees the record that isn't freed.
TEST(TOVA_UUID, TakesRecordsOfOthers)
{
    TOVA_UUID_Data* const record = new TOVA_UUID_Data{{5, 6, 7, 8}, 1, "heap"};
    {
        const TOVA_UUID id(record);
        EXPECT_EQ(2, record->references);
    }
    EXPECT_EQ(1, record->references);
    record->addRef();
    EXPECT_EQ(2, record->references);
    record->release();
    record->release();
}

TEST(TOVA_UUID, CopiesTheNameGiven)
{
    char name[] = "mine";
    const TOVA_UUID id = TOVA_UUID::create(1, 1, 1, 1, name);
    name[0] = 'x';
    EXPECT_STREQ("mine", id.name());
    EXPECT_STREQ("", TOVA_UUID::create(1, 1, 1, 1, nullptr).name());
}

TEST(TOVA_UUID, AssigningItselfKeepsTheCount)
{
    TOVA_UUID id = TOVA_UUID::create(1, 2, 3, 4, "self");
    TOVA_UUID const& same = id;
    id = same;
    EXPECT_EQ(1, id.data().references);
    EXPECT_STREQ("self", id.name());
    const TOVA_UUID copy(id);
    id = copy;
    EXPECT_EQ(2, id.data().references);
}

TEST(TOVA_UUID, EqualsBySixteenBytes)
{
    const TOVA_UUID id(&s_record);
    EXPECT_TRUE(id == TOVA_UUID(&s_twin));                       // names don't matter
    EXPECT_TRUE(id == TOVA_UUID::create(1, 2, 3, 4, "counted")); // nor counts
    EXPECT_FALSE(id != TOVA_UUID(&s_twin));
    EXPECT_TRUE(TOVA_UUID::create(0, 0, 0, 0, "zero") == TOVA_UUID::INVALID());
    // Near misses, a word each, and the first and last byte.
    const std::uint32_t OTHERS[][4] = {{0, 2, 3, 4},          {1, 0, 3, 4}, {1, 2, 0, 4},
                                       {1, 2, 3, 0},          {4, 3, 2, 1}, {0x01000000, 2, 3, 4},
                                       {1, 2, 3, 0x01000004}, {0, 0, 0, 0}};
    for (std::uint32_t const(&words)[4] : OTHERS) {
        const TOVA_UUID other = TOVA_UUID::create(words[0], words[1], words[2], words[3], "static");
        EXPECT_FALSE(id == other);
        EXPECT_FALSE(other == id);
        EXPECT_TRUE(id != other);
    }
}

TEST(TOVA_UUID, ADestroyedIdentifierLeavesItsStaticRecordReadable)
{
    alignas(TOVA_UUID) unsigned char place[sizeof(TOVA_UUID)];
    TOVA_UUID* const id = new (place) TOVA_UUID(&s_record);
    const TOVA_UUID copy(*id);
    id->~TOVA_UUID();
    EXPECT_STREQ("static", copy.name());
    EXPECT_TRUE(copy == TOVA_UUID(&s_twin));
}

} // namespace
