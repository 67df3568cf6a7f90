#ifndef TESTS_DRVSH_RANDOMCOMMANDS_H
#define TESTS_DRVSH_RANDOMCOMMANDS_H

#include <random>
#include <string>

/// Makes lines for the shell: commands with arguments from a few names, so that they often meet,
/// and in between nonsense of all kinds. The same seed makes the same lines.
class RandomCommands
{
public:
    explicit RandomCommands(unsigned seed) : random_(seed) {}

    /// The next line, without its end.
    std::string line();

private:
    unsigned below(unsigned count) { return static_cast<unsigned>(random_() % count); }
    bool oneIn(unsigned count) { return below(count) == 0; }
    template <std::size_t N> std::string oneOf(char const* const (&texts)[N])
    {
        return texts[below(N)];
    }
    std::string command();
    std::string argument(char kind);
    std::string criteria();
    std::string refusals();
    std::string nonsense();
    void spoil(std::string& line);

    std::mt19937 random_;
};

#endif
