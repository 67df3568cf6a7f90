// Uses the utility layer alone: texts and a table.

#include <cstdio>

#include <utility/String.h>
#include <utility/StringTokenizer.h>
#include <utility/TOVA_HashTable.h>

int main()
{
    TOVA_StringHashTable<String> places;
    places.put("fxs", "first floor");
    places.put("bri", "cellar");

    StringTokenizer words("bri, fxs, e1t1", ", ");
    String word;
    while (words.nextToken(word)) {
        auto const place = places.find(word);
        std::printf("%s: %s\n", word.cString(),
                    place == places.end() ? "nowhere" : place->value.cString());
    }
    return 0;
}
