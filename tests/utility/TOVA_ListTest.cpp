#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <utility/String.h>
#include <utility/TOVA_List.h>
#include <utility/TYPtr.h>

#include <support/CountedObject.h>

namespace
{

using Strings = TOVA_List<String>;

/// The elements forward, and once more backward.
std::string storyOf(Strings const& list)
{
    std::string story;
    for (String const& element : list)
        story += element.cString();
    story += "|";
    for (Strings::ConstIterator at = list.end(); at != list.begin();)
        story += (--at)->cString();
    return story;
}

Strings listOf(char const* letters)
{
    Strings list;
    for (; *letters != '\0'; ++letters)
        list.append(String(letters, 0, 1));
    return list;
}

static_assert(std::is_base_of<Strings::ConstIterator, Strings::Iterator>::value,
              "a place to change is a place to look at");

TEST(TOVA_List, StartsEmpty)
{
    Strings list;
    EXPECT_EQ(0u, list.count());
    EXPECT_TRUE(list.isEmpty());
    EXPECT_TRUE(list.begin() == list.end());
    EXPECT_EQ("|", storyOf(list));
}

TEST(TOVA_List, KeepsTheOrderOfAppending)
{
    Strings list;
    const Strings::Iterator first = list.append("a");
    EXPECT_STREQ("a", first->cString());
    list.append("b");
    const Strings::Iterator third = list.append("c");
    EXPECT_STREQ("c", (*third).cString());
    EXPECT_EQ(3u, list.count());
    EXPECT_FALSE(list.isEmpty());
    EXPECT_EQ("abc|cba", storyOf(list));
    EXPECT_TRUE(first == list.begin());
}

TEST(TOVA_List, IsCircular)
{
    Strings list = listOf("abc");
    Strings::Iterator at = list.end();
    EXPECT_STREQ("a", (++at)->cString());
    EXPECT_TRUE(--at == list.end());
    EXPECT_STREQ("c", (--at)->cString());
    EXPECT_TRUE(++at == list.end());
}

TEST(TOVA_List, InsertsBeforeAPlace)
{
    Strings list = listOf("ad");
    Strings::Iterator d = list.begin();
    ++d;
    const Strings::Iterator b = list.insert(d, "b");
    EXPECT_STREQ("b", b->cString());
    list.insert(d, "c");
    list.insert(list.begin(), "0");
    list.insert(list.end(), "e");
    EXPECT_EQ("0abcde|edcba0", storyOf(list));
    EXPECT_EQ(6u, list.count());
}

TEST(TOVA_List, RemovesAPlaceAndAnswersTheNext)
{
    Strings list = listOf("abcd");
    Strings::Iterator at = list.begin();
    at = list.remove(at);
    EXPECT_STREQ("b", at->cString());
    ++at;
    at = list.remove(at);
    EXPECT_STREQ("d", at->cString());
    at = list.remove(at);
    EXPECT_TRUE(at == list.end());
    EXPECT_EQ("b|b", storyOf(list));
    EXPECT_EQ(1u, list.count());
    at = list.remove(list.begin());
    EXPECT_TRUE(at == list.end());
    EXPECT_EQ("|", storyOf(list));
    EXPECT_TRUE(list.isEmpty());
}

TEST(TOVA_List, RemovingTheEndDoesNothing)
{
    Strings list = listOf("ab");
    EXPECT_TRUE(list.remove(list.end()) == list.end());
    EXPECT_EQ(2u, list.count());
    EXPECT_EQ("ab|ba", storyOf(list));
    Strings empty;
    EXPECT_TRUE(empty.remove(empty.begin()) == empty.end());
}

TEST(TOVA_List, OtherPlacesOutliveARemoval)
{
    Strings list = listOf("abc");
    const Strings::Iterator a = list.begin();
    Strings::Iterator b = a;
    ++b;
    Strings::Iterator c = b;
    ++c;
    list.remove(b);
    EXPECT_STREQ("a", a->cString());
    EXPECT_STREQ("c", c->cString());
    Strings::Iterator next = a;
    EXPECT_TRUE(++next == c);
}

TEST(TOVA_List, ElementsCanBeChangedInPlace)
{
    Strings list = listOf("ab");
    for (String& element : list)
        element.concat("!");
    EXPECT_EQ("a!b!|b!a!", storyOf(list));
}

TEST(TOVA_List, TakesItsOwnElements)
{
    Strings list = listOf("ab");
    list.append(*list.begin());
    list.insert(list.begin(), *--list.end());
    EXPECT_EQ("aaba|abaa", storyOf(list));
    Strings::ConstIterator first = list.begin();
    EXPECT_EQ(3, first->buffer()->references()); // the three of them share one text
}

TEST(TOVA_List, OwnsElementsByValue)
{
    const String text("element");
    {
        Strings list;
        list.append(text);
        EXPECT_EQ(2, text.buffer()->references());
        list.append(text);
        EXPECT_EQ(3, text.buffer()->references());
        list.remove(list.begin());
        EXPECT_EQ(2, text.buffer()->references());
        list.append(text);
        list.clear();
        EXPECT_EQ(1, text.buffer()->references());
        EXPECT_EQ("|", storyOf(list));
        list.append(text);
        EXPECT_EQ(1u, list.count());
    }
    EXPECT_EQ(1, text.buffer()->references());
}

TEST(TOVA_List, HoldsOneReferencePerElement)
{
    CountedObject* const object = new CountedObject;
    {
        TOVA_List<TYPPtr<IUnknown>> list;
        list.append(TYPPtr<IUnknown>::share(object));
        list.append(TYPPtr<IUnknown>::share(object));
        EXPECT_EQ(3, object->references());
        const TOVA_List<TYPPtr<IUnknown>> copy(list);
        EXPECT_EQ(5, object->references());
    }
    EXPECT_EQ(1, object->references());
    object->release();
    EXPECT_EQ(0, CountedObject::living());
}

TEST(TOVA_List, CopiesAndMoves)
{
    Strings list = listOf("abc");
    Strings copy(list);
    copy.begin()->concat("!");
    EXPECT_EQ("abc|cba", storyOf(list));
    EXPECT_EQ("a!bc|cba!", storyOf(copy));
    EXPECT_EQ(3u, copy.count());

    const Strings moved(std::move(copy));
    EXPECT_EQ("a!bc|cba!", storyOf(moved));
    EXPECT_EQ("|", storyOf(copy)); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(0u, copy.count());

    copy = list;
    EXPECT_EQ("abc|cba", storyOf(copy));
    list.clear();
    EXPECT_EQ("abc|cba", storyOf(copy));
}

TEST(TOVA_List, AssigningItselfChangesNothing)
{
    Strings list = listOf("abc");
    Strings& same = list;
    list = same;
    EXPECT_EQ("abc|cba", storyOf(list));
    EXPECT_EQ(3u, list.count());
    list = std::move(same);
    EXPECT_EQ("abc|cba", storyOf(list));
    EXPECT_EQ(3u, list.count());
}

TEST(TOVA_List, Swaps)
{
    Strings list = listOf("abc");
    Strings other;
    list.swap(other);
    EXPECT_EQ("|", storyOf(list));
    EXPECT_EQ("abc|cba", storyOf(other));
    list.append("x");
    list.swap(other);
    EXPECT_EQ("abc|cba", storyOf(list));
    EXPECT_EQ("x|x", storyOf(other));
    list.swap(list);
    EXPECT_EQ("abc|cba", storyOf(list));
    list.append("d");
    EXPECT_EQ("abcd|dcba", storyOf(list));
}

/// When it goes, tells its number and how many elements its list has left.
struct Leaver
{
    TOVA_List<Leaver>* list = nullptr;
    std::string* story = nullptr;
    int number = 0;

    Leaver() = default;
    Leaver(TOVA_List<Leaver>& of, std::string& into, int as) : list(&of), story(&into), number(as)
    {}
    Leaver(Leaver&& other) noexcept
        : list(std::exchange(other.list, nullptr)), story(other.story), number(other.number)
    {}
    ~Leaver()
    {
        if (list == nullptr)
            return;
        unsigned left = 0;
        for (TOVA_List<Leaver>::Iterator at = list->begin(); at != list->end(); ++at)
            ++left;
        *story += std::to_string(number) + ": " + std::to_string(list->count()) + "/" +
                  std::to_string(left) + "; ";
    }
};

TEST(TOVA_List, AnElementIsUnlinkedBeforeItIsDestroyed)
{
    std::string story;
    {
        TOVA_List<Leaver> list;
        for (int i = 0; i < 4; ++i)
            list.append(Leaver(list, story, i));
        list.remove(list.begin());
        EXPECT_EQ("0: 3/3; ", story);
    }
    EXPECT_EQ("0: 3/3; 1: 2/2; 2: 1/1; 3: 0/0; ", story);
}

TEST(TOVA_List, ANodeMayHaveItsMemoryFromOutside)
{
    struct alignas(void*) Room
    {
        char bytes[Strings::NODE_SIZE];
    };
    Room rooms[2];
    const String text("b");
    Strings list = listOf("ac");
    const Strings::Iterator b = list.insert(--list.end(), text, &rooms[0]);
    const Strings::Iterator d = list.insert(list.end(), "d", &rooms[1]);
    EXPECT_EQ("abcd|dcba", storyOf(list));
    EXPECT_EQ(2, text.buffer()->references());
    EXPECT_EQ(static_cast<void*>(&rooms[0]), list.extract(b));
    EXPECT_EQ(static_cast<void*>(&rooms[1]), list.extract(d));
    EXPECT_EQ(1, text.buffer()->references());
    EXPECT_EQ("ac|ca", storyOf(list));
    EXPECT_EQ(2u, list.count());
}

TEST(TOVA_List, ForgetsWhatOwnsNothing)
{
    struct alignas(void*) Room
    {
        char bytes[TOVA_List<int>::NODE_SIZE];
    };
    Room rooms[2];
    TOVA_List<int> list;
    for (Room& room : rooms)
        list.insert(list.end(), 1, &room);
    list.abandon();
    EXPECT_EQ(0u, list.count());
    EXPECT_EQ(list.end(), list.begin());
    list.append(2);
    EXPECT_EQ(2, *list.begin());
}

TEST(TOVA_List, TakesANodeOver)
{
    Strings from = listOf("ab");
    Strings to = listOf("x");
    void const* const node = &*from.begin();
    const Strings::Iterator taken = to.takeFirst(from);
    EXPECT_EQ(node, &*taken);
    EXPECT_EQ("xa|ax", storyOf(to));
    EXPECT_EQ("b|b", storyOf(from));
    EXPECT_EQ(2u, to.count());
    EXPECT_EQ(1u, from.count());
}

// Who looks around a place needs no word for the end.
TEST(TOVA_List, TheEndHasAnElementToo)
{
    TOVA_List<int> list;
    list.append(7);
    EXPECT_EQ(0, *++list.begin());
    EXPECT_EQ(0, *--list.begin());
}

// The object itself is the sentinel: the link to the last node, the link to the first.
TEST(TOVA_List, BeginsWithItsLinks)
{
    struct Links
    {
        void const* last;
        void const* first;
    };
    Strings list;
    Links links{};
    std::memcpy(&links, static_cast<void const*>(&list), sizeof links);
    EXPECT_EQ(static_cast<void const*>(&list), links.last);
    EXPECT_EQ(static_cast<void const*>(&list), links.first);
    list.append("a");
    list.append("b");
    std::memcpy(&links, static_cast<void const*>(&list), sizeof links);
    // A node holds its two links, then the element.
    EXPECT_EQ(static_cast<char const*>(links.first) + sizeof links,
              reinterpret_cast<char const*>(&*list.begin()));
    EXPECT_EQ(static_cast<char const*>(links.last) + sizeof links,
              reinterpret_cast<char const*>(&*--list.end()));
}

} // namespace
