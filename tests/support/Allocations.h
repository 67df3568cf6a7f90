#ifndef SUPPORT_ALLOCATIONS_H
#define SUPPORT_ALLOCATIONS_H

#include <cstdint>

// What a program asks of operator new, its libraries included. Only programs that link
// `test_allocations` count: the sanitizer sees less of those.

namespace allocations
{

/// How often memory was asked for since the start.
std::uint64_t count();

/// Blocks not given back yet.
std::int64_t living();

/// Bytes in them, as many as were asked for.
std::int64_t bytes();

/// Lets the request number `n` (from 0) of this thread and all behind it fail, while it lives.
class Failing
{
public:
    explicit Failing(std::uint64_t n);
    Failing(Failing const&) = delete;
    Failing& operator=(Failing const&) = delete;
    ~Failing();

    /// Whether a request failed.
    bool happened() const;
};

} // namespace allocations

#endif
