#ifndef TESTS_FUZZ_FUZZ_H
#define TESTS_FUZZ_FUZZ_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <utility/String.h>

/// Input of a fuzzer, taken apart from the front. Behind the end everything is zero and empty.
class Input
{
public:
    Input(std::uint8_t const* data, std::size_t size) : data_(data), size_(size) {}

    bool isEmpty() const { return size_ == 0; }
    std::uint8_t byte()
    {
        if (isEmpty())
            return 0;
        --size_;
        return *data_++;
    }
    /// A number below `limit`.
    unsigned below(unsigned limit) { return byte() % limit; }
    /// A text with its length in front, at most `limit` characters, NULs included.
    std::string text(unsigned limit)
    {
        std::string taken;
        for (unsigned left = below(limit + 1); left > 0 && !isEmpty(); --left)
            taken += static_cast<char>(byte());
        return taken;
    }
    /// All that is left.
    std::string rest()
    {
        std::string taken(reinterpret_cast<char const*>(data_), size_);
        size_ = 0;
        return taken;
    }

private:
    std::uint8_t const* data_;
    std::size_t size_;
};

/// Ends the program, so that the fuzzer keeps the input, unless the condition holds.
inline void require(bool holds, char const* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "wrong: %s\n", what);
    std::abort();
}

inline std::string toStd(String const& text)
{
    return std::string(text.cString(), static_cast<std::size_t>(text.length()));
}

inline String toString(std::string const& text)
{
    return String(text.data(), 0, static_cast<long>(text.size()));
}

/// What the bytes of one input are put to.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

#endif
