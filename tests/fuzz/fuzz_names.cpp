#include <vector>

#include <drvrepo/IDriver.h>
#include <utility/Numbers.h>
#include <utility/TOVA_Vector.h>

#include "Fuzz.h"

// Driver names: split, built and rebuilt, against the same with standard strings.

namespace
{

using Components = TOVA_Vector<String>;

std::vector<std::string> cut(std::string const& text, char delimiter)
{
    std::vector<std::string> tokens;
    std::string token;
    for (char c : text + delimiter) {
        if (c != delimiter)
            token += c;
        else if (!token.empty()) {
            tokens.push_back(token);
            token.clear();
        }
    }
    return tokens;
}

/// The number at the start of a text, all ones without one or when it is too large.
unsigned numberOf(std::string const& text)
{
    unsigned long long value = 0;
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9') {
        value = value * 10 + static_cast<unsigned>(text[digits++] - '0');
        if (value > ABSENT_NUMBER)
            return ABSENT_NUMBER;
    }
    return digits == 0 ? ABSENT_NUMBER : static_cast<unsigned>(value);
}

/// A name taken apart.
struct Parts
{
    explicit Parts(std::string const& name) : further(cut(name, '/')), count(further.size())
    {
        if (further.empty())
            return;
        const std::vector<std::string> head = cut(further[0], ' ');
        further.erase(further.begin());
        type = head.empty() ? "" : head[0];
        for (std::size_t i = 1; i < head.size() && i < 4; ++i)
            numbers[i - 1] = numberOf(head[i]);
    }
    std::string build(std::string const& ofType) const
    {
        std::string name = ofType;
        for (unsigned number : numbers) {
            if (number == ABSENT_NUMBER)
                break;
            name += " " + std::to_string(number);
        }
        for (std::string const& component : further)
            name += "/" + component;
        return name;
    }

    std::string type;
    unsigned numbers[3] = {ABSENT_NUMBER, ABSENT_NUMBER, ABSENT_NUMBER};
    std::vector<std::string> further;
    std::size_t count;
};

void checkSplit(std::string const& name)
{
    const Parts parts(name);
    const String text = toString(name);
    String type("left over");
    unsigned numbers[3] = {1, 2, 3};
    Components further(3);
    further.append("left over");
    const unsigned count =
        IDriver::SPLIT_DRIVER_NAME(text, type, numbers[0], numbers[1], numbers[2], further);
    require(count == parts.count, "number of components");
    require(toStd(type) == parts.type, "type word");
    require(further.count() == parts.further.size(), "number of further components");
    for (std::uint32_t i = 0; i < further.count(); ++i)
        require(toStd(further[i]) == parts.further[i], "a component");
    for (int i = 0; i < 3; ++i)
        require(numbers[i] == parts.numbers[i], "a number");

    String built;
    IDriver::BUILD_DRIVER_NAME(built, type, numbers[0], numbers[1], numbers[2], further);
    require(toStd(built) == parts.build(parts.type), "built name");
    require(built == String(built.cString(), 0, built.length()), "equality");
}

/// Results may be the same objects as arguments.
void checkAliases(std::string const& name, std::string const& type)
{
    const Parts parts(name);
    String text = toString(name);
    IDriver::REBUILD_DRIVER_NAME(text, text, toString(type));
    require(toStd(text) == parts.build(type), "rebuilt name");

    String first = toString(name);
    String third;
    const unsigned count =
        IDriver::SPLIT_DRIVER_NAME(first, &first, nullptr, &third, nullptr, nullptr);
    const std::vector<std::string> components = cut(name, '/');
    require(count == components.size(), "count");
    require(toStd(first) == (components.empty() ? "" : components[0]), "first component");
    require(toStd(third) == (components.size() < 3 ? "" : components[2]), "third component");

    String word = toString(name);
    IDriver::BUILD_DRIVER_NAME(word, word, word, word, String::EMPTY(), word);
    std::string joined;
    for (int i = 0; i < 4 && !name.empty(); ++i)
        joined += (i == 0 ? "" : "/") + name;
    require(toStd(word) == joined, "joined name");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    const std::string type = input.text(8);
    const std::string name = input.rest();
    checkSplit(name);
    checkAliases(name, type);
    return 0;
}
