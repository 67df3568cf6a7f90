#ifndef TESTS_FAILURE_HEAP_H
#define TESTS_FAILURE_HEAP_H

#include <cstdint>
#include <cstdio>

// What the program asks of operator new on this thread, its libraries included, and how a test
// refuses it.
namespace heap
{

/// Requests of this thread, those of an `Exempt` scope left out.
std::uint64_t count();

/// Blocks not given back yet, those of all threads.
std::int64_t living();

/// Whether only one request fails, or all behind it as well.
enum class Mode { ONCE, FROM_THERE };

/// Lets request number `n` (from 0) of this thread fail, while it lives.
class Failing
{
public:
    Failing(std::uint64_t n, Mode mode);
    Failing(Failing const&) = delete;
    Failing& operator=(Failing const&) = delete;
    ~Failing();

    /// Whether a request failed.
    bool happened() const;
};

/// What a test does for itself in the middle of the library's work: neither counted nor refused.
class Exempt
{
public:
    Exempt();
    Exempt(Exempt const&) = delete;
    Exempt& operator=(Exempt const&) = delete;
    ~Exempt();
};

/// Writes the places where a request failed, "FILE OFFSET" a line in hexadecimal: the shared
/// library or program, and the return address in it.
void writePlaces(std::FILE* file);

} // namespace heap

#endif
