#include <utility>

#include "Fuzz.h"

// Strings against standard strings: any operation, with arguments that are the string itself or lie
// in its text, and NULs inside.

namespace
{

constexpr unsigned COUNT = 4;
constexpr std::size_t LONG = 4096; // longer ones are emptied now and then

/// The text of a C string that begins at a position.
std::string fromC(std::string const& text, std::size_t position)
{
    return text.c_str() + position;
}

class Bench
{
public:
    explicit Bench(Input input) : input_(input) {}

    void run()
    {
        while (!input_.isEmpty()) {
            step();
            for (unsigned i = 0; i < COUNT; ++i)
                require(toStd(strings_[i]) == models_[i], "content");
        }
        for (unsigned i = 0; i < COUNT; ++i)
            compare(i, (i + 1) % COUNT);
    }

private:
    void step()
    {
        const unsigned to = input_.below(COUNT);
        const unsigned from = input_.below(COUNT);
        String& s = strings_[to];
        std::string& m = models_[to];
        String const& other = strings_[from];
        std::string const otherModel = models_[from];
        const std::size_t start = otherModel.empty() ? 0 : input_.byte() % otherModel.size();
        const long length = static_cast<long>(input_.byte() % (otherModel.size() - start + 1));
        switch (m.size() + otherModel.size() > LONG ? 0 : input_.below(12)) {
        case 0:
            s = "";
            m.clear();
            break;
        case 1:
            s = other;
            m = otherModel;
            break;
        case 2:
            s.concat(other);
            m += otherModel;
            break;
        case 3:
            s.internalConcat(other.cString() + start, length);
            m += otherModel.substr(start, static_cast<std::size_t>(length));
            break;
        case 4:
            s = String(other.cString(), static_cast<long>(start), length);
            m = otherModel.substr(start, static_cast<std::size_t>(length));
            break;
        case 5:
            s = other.cString() + start;
            m = fromC(otherModel, start);
            break;
        case 6:
            s.format("<%s|%d>", other.cString() + start, static_cast<int>(length));
            m = "<" + fromC(otherModel, start) + "|" + std::to_string(length) + ">";
            break;
        case 7:
            s.concatf("%s%lu", other.cString(), static_cast<unsigned long>(start));
            m += fromC(otherModel, 0) + std::to_string(start);
            break;
        case 8:
            m = input_.text(20);
            s = toString(m);
            break;
        case 9: {
            String moved(std::move(strings_[from]));
            s = std::move(moved);
            if (to != from)
                models_[from] = toStd(strings_[from]); // unspecified, but a string
            m = otherModel;
            break;
        }
        case 10:
            std::swap(strings_[to], strings_[from]);
            std::swap(models_[to], models_[from]);
            break;
        default:
            compare(to, from);
        }
    }

    void compare(unsigned a, unsigned b) const
    {
        String const& s = strings_[a];
        String const& t = strings_[b];
        require((s == t) == (models_[a] == models_[b]), "equality");
        require(s.startsWith(t) == (models_[a].compare(0, models_[b].size(), models_[b]) == 0),
                "beginning");
        const std::size_t found = models_[a].find(models_[b]);
        require(s.indexOf(t) == (found == std::string::npos ? -1 : static_cast<long>(found)),
                "position");
        require((s == t.cString()) == (models_[a] == fromC(models_[b], 0)), "equality with C text");
        require(s.isEmpty() == models_[a].empty(), "emptiness");
        require(s.cString()[s.length()] == '\0', "closing NUL");
    }

    Input input_;
    String strings_[COUNT];
    std::string models_[COUNT];
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Bench(Input(data, size)).run();
    return 0;
}
