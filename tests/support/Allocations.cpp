#include <support/Allocations.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace
{

constexpr std::uint64_t NEVER = UINT64_MAX;

std::atomic<std::uint64_t> s_count{0};
std::atomic<std::int64_t> s_living{0};
std::atomic<std::int64_t> s_bytes{0};
thread_local std::uint64_t t_allowed = NEVER;
thread_local bool t_failed = false;

/// Stands before each block.
struct alignas(std::max_align_t) Head
{
    std::size_t size;
};

void* allocate(std::size_t size) noexcept
{
    if (t_allowed == 0) {
        t_failed = true;
        return nullptr;
    }
    if (t_allowed != NEVER)
        --t_allowed;
    void* const block = std::malloc(sizeof(Head) + size);
    if (block == nullptr)
        return nullptr;
    ++s_count;
    ++s_living;
    s_bytes += static_cast<std::int64_t>(size);
    return new (block) Head{size} + 1;
}

void* allocateOrThrow(std::size_t size)
{
    void* const block = allocate(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void giveBack(void* block) noexcept
{
    if (block == nullptr)
        return;
    Head* const head = static_cast<Head*>(block) - 1;
    --s_living;
    s_bytes -= static_cast<std::int64_t>(head->size);
    std::free(head);
}

} // namespace

std::uint64_t allocations::count()
{
    return s_count;
}

std::int64_t allocations::living()
{
    return s_living;
}

std::int64_t allocations::bytes()
{
    return s_bytes;
}

allocations::Failing::Failing(std::uint64_t n)
{
    t_failed = false;
    t_allowed = n;
}

allocations::Failing::~Failing()
{
    t_allowed = NEVER;
}

bool allocations::Failing::happened() const
{
    return t_failed;
}

// clang-format off
void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { giveBack(block); }
void operator delete[](void* block) noexcept { giveBack(block); }
void operator delete(void* block, std::size_t) noexcept { giveBack(block); }
void operator delete[](void* block, std::size_t) noexcept { giveBack(block); }
void operator delete(void* block, std::nothrow_t const&) noexcept { giveBack(block); }
void operator delete[](void* block, std::nothrow_t const&) noexcept { giveBack(block); }
// clang-format on
