#ifndef DRVREPO_ENTRYROOM_H
#define DRVREPO_ENTRYROOM_H

#include <cstddef>
#include <cstdint>

#include <drvrepo/CDriverRepository.h>

/// Room for entries of drivers' lists of listeners in one block of memory that somebody else owns.
/// Whoever comes later, a driver or a listener, brings room for all whom it meets; so a meeting
/// asks for no memory of its own. A place serves one entry and is not used again: it goes with its
/// block, so that nobody counts who has room left.
///
/// Locking     none.
class CDriverRepository::EntryRoom
{
public:
    /// Of one entry, in bytes.
    static constexpr std::size_t ENTRY_SIZE = TOVA_List<ListenerWrapper>::NODE_SIZE;

    /// None.
    EntryRoom() = default;
    /// For `size` entries.
    explicit EntryRoom(std::uint32_t size) : size_(size) {}

    /// A place for an entry in the block that begins at `begin`; null when all are taken.
    void* take(void* begin)
    {
        return taken_ != size_ ? static_cast<char*>(begin) + ENTRY_SIZE * taken_++ : nullptr;
    }

private:
    std::uint32_t size_ = 0;
    std::uint32_t taken_ = 0;
};

#endif
