#include "Allocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

// Not atomic: nobody allocates while a second thread runs. A block carries its size in front, since
// not every delete is told it.

namespace
{

std::uint64_t s_count = 0;
std::int64_t s_bytes = 0;

constexpr std::size_t HEADER = alignof(std::max_align_t);

void* allocate(std::size_t size)
{
    void* const block = std::malloc(HEADER + size);
    if (block == nullptr)
        throw std::bad_alloc();
    *static_cast<std::size_t*>(block) = size;
    ++s_count;
    s_bytes += static_cast<std::int64_t>(size);
    return static_cast<char*>(block) + HEADER;
}

void giveBack(void* memory) noexcept
{
    if (memory == nullptr)
        return;
    void* const block = static_cast<char*>(memory) - HEADER;
    s_bytes -= static_cast<std::int64_t>(*static_cast<std::size_t*>(block));
    std::free(block);
}

} // namespace

std::uint64_t allocations::count()
{
    return s_count;
}

std::int64_t allocations::bytes()
{
    return s_bytes;
}

// clang-format off
void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { giveBack(block); }
void operator delete[](void* block) noexcept { giveBack(block); }
void operator delete(void* block, std::size_t) noexcept { giveBack(block); }
void operator delete[](void* block, std::size_t) noexcept { giveBack(block); }
// clang-format on

// The nothrow forms of the standard library call these.
