#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <utility/TYMarshaller.h>

#include <support/TwoThreads.h>

namespace
{

void add(TYMarshaller& marshaller, std::uint32_t word)
{
    marshaller.copyOnWrite().addTail(&word, sizeof word);
}

std::vector<std::uint32_t> wordsOf(TYMarshaller const& marshaller)
{
    std::vector<std::uint32_t> words(marshaller.buffer().size() / sizeof(std::uint32_t));
    if (!words.empty())
        std::memcpy(words.data(), marshaller.buffer().data(), words.size() * sizeof words[0]);
    return words;
}

std::vector<std::uint32_t> numbersTo(std::uint32_t count)
{
    std::vector<std::uint32_t> numbers;
    for (std::uint32_t i = 0; i < count; ++i)
        numbers.push_back(i);
    return numbers;
}

TYMarshaller marshallerOf(std::uint32_t count)
{
    TYMarshaller marshaller;
    for (std::uint32_t i = 0; i < count; ++i)
        add(marshaller, i);
    return marshaller;
}

TEST(TYMarshaller, StartsEmpty)
{
    const TYMarshaller marshaller;
    EXPECT_EQ(0u, marshaller.buffer().size());
    EXPECT_EQ(0u, marshaller.word(0));
    char byte = 'x';
    EXPECT_FALSE(marshaller.buffer().read(0, &byte, 1));
    EXPECT_TRUE(marshaller.buffer().read(0, &byte, 0));
    EXPECT_EQ('x', byte);
}

/// Up to three words stand in the object, more on the heap: the same holds for both.
class AnyLength : public testing::TestWithParam<std::uint32_t>
{};

INSTANTIATE_TEST_SUITE_P(TYMarshaller, AnyLength,
                         testing::Values(1u, 2u, 3u, 4u, 5u, 7u, 8u, 500u));

TEST_P(AnyLength, KeepsTheOrderOfAppending)
{
    const TYMarshaller marshaller = marshallerOf(GetParam());
    EXPECT_EQ(4 * GetParam(), marshaller.buffer().size());
    EXPECT_EQ(numbersTo(GetParam()), wordsOf(marshaller));
    for (std::uint32_t i = 0; i < GetParam(); ++i)
        EXPECT_EQ(i, marshaller.word(i));
    EXPECT_EQ(0u, marshaller.word(GetParam()));
    for (std::uint32_t i = 0; i < GetParam(); ++i)
        EXPECT_EQ(0u, marshaller.word(0x40000000 + i)); // four times that begins anew
    EXPECT_EQ(0u, marshaller.word(4294967295u));
}

TEST_P(AnyLength, CopiesReadTheSame)
{
    const TYMarshaller marshaller = marshallerOf(GetParam());
    const TYMarshaller copy(marshaller);
    TYMarshaller assigned;
    assigned = copy;
    EXPECT_EQ(numbersTo(GetParam()), wordsOf(copy));
    EXPECT_EQ(numbersTo(GetParam()), wordsOf(assigned));
}

TEST_P(AnyLength, AChangeOfOneLeavesTheOthers)
{
    TYMarshaller first = marshallerOf(GetParam());
    TYMarshaller second(first);
    const TYMarshaller third(second);
    add(second, 77);
    add(first, 88);
    add(first, 99);
    EXPECT_EQ(numbersTo(GetParam()), wordsOf(third));
    EXPECT_EQ(77u, second.word(GetParam()));
    EXPECT_EQ(GetParam() + 1, wordsOf(second).size());
    EXPECT_EQ(88u, first.word(GetParam()));
    EXPECT_EQ(99u, first.word(GetParam() + 1));
    EXPECT_EQ(GetParam() + 2, wordsOf(first).size());
}

TEST_P(AnyLength, TakesItsOwnBytes)
{
    TYMarshaller marshaller = marshallerOf(GetParam());
    TYMarshaller::Buffer& buffer = marshaller.copyOnWrite();
    buffer.addTail(buffer.data(), buffer.size());
    std::vector<std::uint32_t> twice = numbersTo(GetParam());
    for (std::uint32_t i = 0; i < GetParam(); ++i)
        twice.push_back(i);
    EXPECT_EQ(twice, wordsOf(marshaller));
}

TEST_P(AnyLength, AssigningItselfChangesNothing)
{
    TYMarshaller marshaller = marshallerOf(GetParam());
    TYMarshaller const& same = marshaller;
    marshaller = same;
    EXPECT_EQ(numbersTo(GetParam()), wordsOf(marshaller));
    add(marshaller, GetParam());
    EXPECT_EQ(numbersTo(GetParam() + 1), wordsOf(marshaller));
}

TEST_P(AnyLength, ReadsParts)
{
    const TYMarshaller marshaller = marshallerOf(GetParam());
    const unsigned size = marshaller.buffer().size();
    std::uint32_t word = 5;
    EXPECT_TRUE(marshaller.buffer().read(size - 4, &word, 4));
    EXPECT_EQ(GetParam() - 1, word);
    // Not one byte beyond the end, wherever the sum leads.
    EXPECT_FALSE(marshaller.buffer().read(size - 3, &word, 4));
    EXPECT_FALSE(marshaller.buffer().read(size, &word, 1));
    EXPECT_FALSE(marshaller.buffer().read(size + 1, &word, 0));
    EXPECT_FALSE(marshaller.buffer().read(4294967295u, &word, 4));
    EXPECT_FALSE(marshaller.buffer().read(1, &word, 4294967295u));
    EXPECT_EQ(GetParam() - 1, word);
    EXPECT_TRUE(marshaller.buffer().read(size, &word, 0));
    EXPECT_TRUE(marshaller.buffer().read(size, nullptr, 0));
}

TEST(TYMarshaller, CopiesShareALongBufferUntilAChange)
{
    TYMarshaller first = marshallerOf(20);
    TYMarshaller second(first);
    void const* const shared = first.buffer().data();
    EXPECT_EQ(shared, second.buffer().data());
    EXPECT_NE(shared, second.copyOnWrite().data());
    EXPECT_EQ(shared, first.buffer().data());
    EXPECT_EQ(shared, first.copyOnWrite().data()); // it is alone now
    EXPECT_EQ(numbersTo(20), wordsOf(second));
}

TEST(TYMarshaller, AppendsBytes)
{
    TYMarshaller marshaller;
    marshaller.copyOnWrite().addTail("abc", 3);
    marshaller.copyOnWrite().addTail("defghijklmnop", 13);
    marshaller.copyOnWrite().addTail("lost", 0);
    marshaller.copyOnWrite().addTail(nullptr, 9);
    marshaller.copyOnWrite().addTail(nullptr, 0);
    EXPECT_EQ(16u, marshaller.buffer().size());
    EXPECT_EQ(0, std::memcmp("abcdefghijklmnop", marshaller.buffer().data(), 16));
}

TEST(TYMarshaller, GrowsByteForByte)
{
    TYMarshaller marshaller;
    std::string expected;
    for (unsigned i = 0; i < 200; ++i) {
        const char byte = static_cast<char>('a' + i % 26);
        marshaller.copyOnWrite().addTail(&byte, 1);
        expected += byte;
        ASSERT_EQ(expected, std::string(static_cast<char const*>(marshaller.buffer().data()),
                                        marshaller.buffer().size()));
    }
}

TEST(TYMarshaller, WordsNeedFourBytes)
{
    TYMarshaller marshaller;
    add(marshaller, 0x01020304);
    marshaller.copyOnWrite().addTail("\xff\xff\xff", 3);
    EXPECT_EQ(0x01020304u, marshaller.word(0));
    EXPECT_EQ(0u, marshaller.word(1));
}

TEST(TYMarshaller, SharesAcrossThreads)
{
    const TYMarshaller shared = marshallerOf(20);
    onTwoThreads([&shared](int) {
        for (int i = 0; i < 50000; ++i) {
            TYMarshaller copy(shared);
            if (i % 16 == 0)
                add(copy, 20);
        }
    });
    EXPECT_EQ(numbersTo(20), wordsOf(shared));
}

} // namespace
