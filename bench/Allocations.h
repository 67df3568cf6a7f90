#ifndef BENCH_ALLOCATIONS_H
#define BENCH_ALLOCATIONS_H

#include <cstdint>

// What the program and its libraries ask of operator new.

namespace allocations
{

/// How often memory was asked for since the start.
std::uint64_t count();

/// Bytes asked for and not given back, as requested: without what the allocator adds.
std::int64_t bytes();

} // namespace allocations

#endif
