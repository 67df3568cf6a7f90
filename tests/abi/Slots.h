#ifndef ABI_SLOTS_H
#define ABI_SLOTS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

/// Reads from member pointers and objects where virtual operations stand in their table.
namespace slots
{
const unsigned int NOT_VIRTUAL = ~0u;

/// The slot of a virtual operation, counted from 0.
template <class Class, class Function> unsigned int slotOf(Function Class::*operation)
{
    struct
    {
        std::uintptr_t pointer;
        std::intptr_t adjustment;
    } words;
    static_assert(sizeof words == sizeof operation, "a member pointer is two words");
    std::memcpy(&words, &operation, sizeof words);
#ifdef __arm__
    // Functions may begin at odd addresses (Thumb), so the mark of a virtual one is elsewhere.
    const bool isVirtual = (words.adjustment & 1) != 0;
    const std::uintptr_t offset = words.pointer;
#else
    const bool isVirtual = (words.pointer & 1) != 0;
    const std::uintptr_t offset = words.pointer - 1;
#endif
    return isVirtual ? static_cast<unsigned int>(offset / sizeof(void*)) : NOT_VIRTUAL;
}

/// Entry `slot` of the object's first table.
inline std::uintptr_t entry(void const* object, unsigned int slot)
{
    std::uintptr_t const* table = nullptr;
    std::memcpy(&table, object, sizeof table);
    return table[slot];
}

/// The slots, of `count`, in which two objects' tables differ: "4 5". When one object's class
/// derives from the other's and overrides its destructor alone, these are the destructor's.
inline std::string differences(void const* a, void const* b, unsigned int count)
{
    std::string slots;
    for (unsigned int slot = 0; slot < count; ++slot)
        if (entry(a, slot) != entry(b, slot))
            slots += (slots.empty() ? "" : " ") + std::to_string(slot);
    return slots;
}
} // namespace slots

#endif
