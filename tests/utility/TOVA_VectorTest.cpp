#include <cstring>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include <utility/String.h>
#include <utility/TOVA_Vector.h>

namespace
{

using Strings = TOVA_Vector<String>;

std::string storyOf(Strings const& vector)
{
    std::string story;
    for (String const& element : vector)
        story += std::string(element.cString()) + ";";
    return story;
}

Strings vectorOf(unsigned count)
{
    Strings vector(8);
    for (unsigned i = 0; i < count; ++i)
        vector.append(String().format("%u", i));
    return vector;
}

TEST(TOVA_Vector, StartsWithoutRoom)
{
    const Strings vector(8);
    EXPECT_EQ(0u, vector.count());
    EXPECT_EQ(0u, vector.capacity());
    EXPECT_TRUE(vector.begin() == vector.end());
}

TEST(TOVA_Vector, AppendingGrowsByTheStep)
{
    Strings vector(8);
    for (unsigned i = 0; i < 40; ++i) {
        vector.append(String().format("%u", i));
        EXPECT_EQ(i + 1, vector.count());
        EXPECT_EQ(i / 8 * 8 + 8, vector.capacity());
    }
    for (unsigned i = 0; i < 40; ++i)
        EXPECT_EQ(String().format("%u", i), vector[i]);
}

TEST(TOVA_Vector, AppendingAsksForOneMoreThanThereAre)
{
    Strings vector(1);
    for (std::uint32_t capacity : {2u, 2u, 4u, 4u, 6u, 6u}) {
        vector.append("x");
        EXPECT_EQ(capacity, vector.capacity());
    }
}

TEST(TOVA_Vector, EnlargesToTheNextMultipleAbove)
{
    struct Case
    {
        std::uint32_t step;
        std::uint32_t n;
        std::uint32_t capacity;
    };
    const Case CASES[] = {
        {8, 0, 8},     {8, 1, 8}, {8, 7, 8}, {8, 8, 16}, {8, 9, 16}, {8, 15, 16}, {8, 16, 24},
        {1, 0, 1},     {1, 1, 2}, {1, 5, 6}, {3, 2, 3},  {3, 3, 6},  {3, 7, 9},   {100, 99, 100},
        {100, 0, 100}, {0, 0, 1}, {0, 1, 2}, {0, 5, 6}, // a step of 0 counts as 1
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(testing::Message() << "step " << c.step << ", " << c.n);
        Strings vector(c.step);
        EXPECT_TRUE(vector.enlarge(c.n));
        EXPECT_EQ(c.capacity, vector.capacity());
        EXPECT_EQ(0u, vector.count());
    }
}

TEST(TOVA_Vector, EnlargingKeepsTheElementsInUse)
{
    Strings vector = vectorOf(9);
    EXPECT_TRUE(vector.enlarge(30));
    EXPECT_EQ(32u, vector.capacity());
    EXPECT_EQ(9u, vector.count());
    EXPECT_EQ("0;1;2;3;4;5;6;7;8;", storyOf(vector));
    EXPECT_TRUE(vector.enlarge(10)); // takes room back
    EXPECT_EQ(16u, vector.capacity());
    EXPECT_EQ("0;1;2;3;4;5;6;7;8;", storyOf(vector));
    EXPECT_TRUE(vector.enlarge(1)); // but never below what is in use
    EXPECT_EQ(16u, vector.capacity());
    EXPECT_EQ("0;1;2;3;4;5;6;7;8;", storyOf(vector));
    vector.truncate(8);
    EXPECT_TRUE(vector.enlarge(7)); // down to exactly that
    EXPECT_EQ(8u, vector.capacity());
    EXPECT_EQ("0;1;2;3;4;5;6;7;", storyOf(vector));
}

TEST(TOVA_Vector, EnlargingBeyondAllMemoryFails)
{
    Strings vector = vectorOf(2);
    EXPECT_THROW(vector.enlarge(4294967295u), std::bad_alloc);
    EXPECT_THROW(vector[4294967294u], std::bad_alloc);
    EXPECT_EQ("0;1;", storyOf(vector));
    EXPECT_EQ(8u, vector.capacity());
}

TEST(TOVA_Vector, AccessPastTheEndExtends)
{
    Strings vector(8);
    EXPECT_TRUE(vector[4].isEmpty());
    EXPECT_EQ(5u, vector.count());
    EXPECT_EQ(8u, vector.capacity());
    EXPECT_EQ(";;;;;", storyOf(vector));
    vector[7] = "last";
    EXPECT_EQ(8u, vector.count());
    EXPECT_EQ(8u, vector.capacity());
    EXPECT_TRUE(vector[8].isEmpty());
    EXPECT_EQ(9u, vector.count());
    EXPECT_EQ(16u, vector.capacity());
    EXPECT_STREQ("last", vector[7].cString());
    vector[20] = "far";
    EXPECT_EQ(21u, vector.count());
    EXPECT_EQ(24u, vector.capacity());
    EXPECT_STREQ("far", vector[20].cString());
}

// Room is made for the index and one more; so an index just before a step takes two.
TEST(TOVA_Vector, AccessAtTheEdgeOfAStep)
{
    struct Case
    {
        std::uint32_t index;
        std::uint32_t capacity;
    };
    for (Case const& c : {Case{0, 8}, Case{6, 8}, Case{7, 16}, Case{8, 16}, Case{14, 16},
                          Case{15, 24}, Case{16, 24}}) {
        SCOPED_TRACE(c.index);
        Strings vector(8);
        EXPECT_TRUE(vector[c.index].isEmpty());
        EXPECT_EQ(c.index + 1, vector.count());
        EXPECT_EQ(c.capacity, vector.capacity());
    }
}

TEST(TOVA_Vector, AccessWithinChangesNothing)
{
    Strings vector = vectorOf(3);
    EXPECT_STREQ("2", vector[2].cString());
    EXPECT_STREQ("0", vector[0].cString());
    EXPECT_EQ(3u, vector.count());
    vector[1] = "one";
    EXPECT_EQ("0;one;2;", storyOf(vector));
}

TEST(TOVA_Vector, AConstantOneAnswersEmptyPastTheEnd)
{
    const Strings vector = vectorOf(2);
    EXPECT_STREQ("1", vector[1].cString());
    for (std::uint32_t index : {2u, 7u, 8u, 1000000u, 4294967295u})
        EXPECT_TRUE(vector[index].isEmpty());
    EXPECT_EQ(2u, vector.count());
    EXPECT_EQ(8u, vector.capacity());
}

TEST(TOVA_Vector, TheLastIndexAnswersASpareElement)
{
    Strings vector = vectorOf(2);
    EXPECT_TRUE(vector[4294967295u].isEmpty());
    vector[4294967295u] = "discarded";
    EXPECT_TRUE(vector[4294967295u].isEmpty());
    EXPECT_EQ("0;1;", storyOf(vector));
    EXPECT_EQ(8u, vector.capacity());
}

TEST(TOVA_Vector, TruncatesAndEmptiesWhatItDrops)
{
    Strings vector = vectorOf(9);
    const String dropped(vector[8]);
    EXPECT_EQ(2, dropped.buffer()->references());
    vector.truncate(3);
    EXPECT_EQ(1, dropped.buffer()->references());
    EXPECT_EQ(3u, vector.count());
    EXPECT_EQ(16u, vector.capacity());
    EXPECT_TRUE(vector[5].isEmpty()); // comes back empty
    EXPECT_EQ("0;1;2;;;;", storyOf(vector));
    vector.truncate(6);
    vector.truncate(7);
    vector.truncate(4294967295u);
    EXPECT_EQ(6u, vector.count());
    vector.truncate(0);
    EXPECT_EQ(0u, vector.count());
    EXPECT_EQ(16u, vector.capacity());
}

// At every count, so also where the append has to make room.
TEST(TOVA_Vector, TakesItsOwnElements)
{
    Strings vector(2);
    vector.append("x");
    for (unsigned i = 0; i < 20; ++i) {
        vector.append(vector[0]);
        vector.append(vector[vector.count() - 1]);
    }
    EXPECT_EQ(41u, vector.count());
    for (String const& element : vector)
        EXPECT_STREQ("x", element.cString());
    EXPECT_EQ(41, vector[0].buffer()->references());
}

TEST(TOVA_Vector, OwnsItsElements)
{
    const String text("element");
    {
        Strings vector(8);
        for (unsigned i = 0; i < 9; ++i)
            vector.append(text);
        EXPECT_EQ(10, text.buffer()->references()); // none is left in the array that was too small
        const Strings copy(vector);
        EXPECT_EQ(19, text.buffer()->references());
    }
    EXPECT_EQ(1, text.buffer()->references());
}

TEST(TOVA_Vector, CopiesAndMoves)
{
    Strings vector = vectorOf(3);
    Strings copy(vector);
    copy[0] = "other";
    copy.append("more");
    EXPECT_EQ("0;1;2;", storyOf(vector));
    EXPECT_EQ("other;1;2;more;", storyOf(copy));
    EXPECT_EQ(8u, copy.capacity());

    Strings moved(std::move(copy));
    EXPECT_EQ("other;1;2;more;", storyOf(moved));
    EXPECT_EQ(0u, copy.count()); // NOLINT(bugprone-use-after-move)
    copy.append("again");
    EXPECT_EQ("again;", storyOf(copy));

    moved = vector;
    EXPECT_EQ("0;1;2;", storyOf(moved));
    const Strings none(8);
    const Strings copyOfNone(none);
    EXPECT_EQ(0u, copyOfNone.count());
    EXPECT_EQ(0u, copyOfNone.capacity());
}

TEST(TOVA_Vector, CopiesKeepTheStep)
{
    const Strings source(3);
    Strings copy(source);
    copy.append("a");
    EXPECT_EQ(3u, copy.capacity());
    Strings assigned(8);
    assigned = source;
    assigned.append("a");
    EXPECT_EQ(3u, assigned.capacity());
}

TEST(TOVA_Vector, AssigningItselfChangesNothing)
{
    Strings vector = vectorOf(9);
    Strings& same = vector;
    vector = same;
    EXPECT_EQ("0;1;2;3;4;5;6;7;8;", storyOf(vector));
    vector = std::move(same);
    EXPECT_EQ("0;1;2;3;4;5;6;7;8;", storyOf(vector));
    vector.swap(vector);
    EXPECT_EQ("0;1;2;3;4;5;6;7;8;", storyOf(vector));
}

// Elements, count, capacity, step.
TEST(TOVA_Vector, BeginsWithItsFourFields)
{
    struct Fields
    {
        String const* elements;
        std::uint32_t count;
        std::uint32_t capacity;
        std::uint32_t step;
    };
    const Strings vector = vectorOf(9);
    Fields fields{};
    std::memcpy(&fields, static_cast<void const*>(&vector), sizeof fields);
    EXPECT_EQ(&vector[0], fields.elements);
    EXPECT_EQ(9u, fields.count);
    EXPECT_EQ(16u, fields.capacity);
    EXPECT_EQ(8u, fields.step);
}

} // namespace
