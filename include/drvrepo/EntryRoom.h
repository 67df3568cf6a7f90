#ifndef DRVREPO_ENTRYROOM_H
#define DRVREPO_ENTRYROOM_H

#include <cstddef>
#include <cstdint>
#include <new>

#include <drvrepo/CDriverRepository.h>

/// Room for entries of drivers' lists of listeners in one block of memory that somebody else owns,
/// taken and given back entry by entry. Whoever comes later, a driver or a listener, brings room
/// for all whom it meets; so a meeting asks for no memory of its own.
///
/// Locking     none.
class CDriverRepository::EntryRoom
{
public:
    /// Of one entry, in bytes.
    static constexpr std::size_t ENTRY_SIZE = TOVA_List<ListenerWrapper>::NODE_SIZE;
    /// No block has room for more entries.
    static constexpr std::uint32_t MOST = 0xfffe;

    /// None.
    EntryRoom() = default;
    /// For `size` entries, at most MOST.
    explicit EntryRoom(std::uint32_t size) : size_(static_cast<std::uint16_t>(size)) {}

    /// A place for an entry in the block that begins at `begin`; null when it is full.
    void* take(void* begin)
    {
        if (used_ != size_)
            return at(begin, used_++);
        if (freed_ == NONE)
            return nullptr;
        void* const place = at(begin, freed_);
        freed_ = *static_cast<std::uint16_t*>(place);
        --freedCount_;
        return place;
    }
    /// Gives a place back.
    void giveBack(void* begin, void* place)
    {
        const std::ptrdiff_t offset = static_cast<char*>(place) - static_cast<char*>(begin);
        new (place) std::uint16_t(freed_);
        freed_ = static_cast<std::uint16_t>(static_cast<std::size_t>(offset) / ENTRY_SIZE);
        ++freedCount_;
    }
    /// How many entries have their place here.
    std::uint32_t inUse() const { return static_cast<std::uint32_t>(used_ - freedCount_); }
    /// Whether there is no place left.
    bool isFull() const { return inUse() == size_; }

private:
    static constexpr std::uint16_t NONE = 0xffff;

    static void* at(void* begin, std::uint16_t index)
    {
        return static_cast<char*>(begin) + index * ENTRY_SIZE;
    }

    std::uint16_t size_ = 0;
    std::uint16_t used_ = 0;       // the first so many have been used
    std::uint16_t freedCount_ = 0; // so many of these are free again
    std::uint16_t freed_ = NONE;   // the latest of them; each begins with the index of the next
};

#endif
