#include "Heap.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include <dlfcn.h>

namespace
{

constexpr std::uint64_t NEVER = UINT64_MAX;

std::atomic<std::int64_t> s_living{0};
thread_local std::uint64_t t_count = 0;
thread_local std::uint64_t t_refused = NEVER; // the count of the request that fails
thread_local heap::Mode t_mode = heap::Mode::ONCE;
thread_local bool t_failed = false;
thread_local int t_exempt = 0;

// Where requests failed: few places, so an open table of their addresses does.
constexpr std::size_t PLACES = 1024;
std::atomic<void*> s_places[PLACES];

void note(void* place)
{
    for (std::atomic<void*>& at : s_places) {
        void* none = nullptr;
        if (at.compare_exchange_strong(none, place) || none == place)
            return;
    }
    std::abort(); // more places than the table holds
}

bool isRefused(void* place)
{
    if (t_exempt != 0)
        return false;
    const std::uint64_t number = t_count++;
    if (number < t_refused || (number > t_refused && t_mode == heap::Mode::ONCE))
        return false;
    t_failed = true;
    note(place);
    return true;
}

void* allocate(std::size_t size, void* place) noexcept
{
    if (isRefused(place))
        return nullptr;
    void* const block = std::malloc(size != 0 ? size : 1);
    if (block != nullptr)
        ++s_living;
    return block;
}

void* allocateOrThrow(std::size_t size, void* place)
{
    void* const block = allocate(size, place);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void giveBack(void* block) noexcept
{
    if (block == nullptr)
        return;
    --s_living;
    std::free(block);
}

} // namespace

std::uint64_t heap::count()
{
    return t_count;
}

std::int64_t heap::living()
{
    return s_living;
}

heap::Failing::Failing(std::uint64_t n, Mode mode)
{
    t_failed = false;
    t_mode = mode;
    t_refused = t_count + n;
}

heap::Failing::~Failing()
{
    t_refused = NEVER;
}

bool heap::Failing::happened() const
{
    return t_failed;
}

heap::Exempt::Exempt()
{
    ++t_exempt;
}

heap::Exempt::~Exempt()
{
    --t_exempt;
}

void heap::writePlaces(std::FILE* file)
{
    for (std::atomic<void*> const& at : s_places) {
        Dl_info info;
        if (at != nullptr && dladdr(at, &info) != 0)
            std::fprintf(file, "%s %llx\n", info.dli_fname,
                         static_cast<unsigned long long>(static_cast<char*>(at.load()) -
                                                         static_cast<char*>(info.dli_fbase)));
    }
}

#define PLACE __builtin_return_address(0)
// clang-format off
void* operator new(std::size_t size) { return allocateOrThrow(size, PLACE); }
void* operator new[](std::size_t size) { return allocateOrThrow(size, PLACE); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return allocate(size, PLACE); }
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return allocate(size, PLACE); }
void operator delete(void* block) noexcept { giveBack(block); }
void operator delete[](void* block) noexcept { giveBack(block); }
void operator delete(void* block, std::size_t) noexcept { giveBack(block); }
void operator delete[](void* block, std::size_t) noexcept { giveBack(block); }
void operator delete(void* block, std::nothrow_t const&) noexcept { giveBack(block); }
void operator delete[](void* block, std::nothrow_t const&) noexcept { giveBack(block); }
// clang-format on
