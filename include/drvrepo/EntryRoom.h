#ifndef DRVREPO_ENTRYROOM_H
#define DRVREPO_ENTRYROOM_H

#include <cstdint>

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
    static constexpr std::uint32_t MOST = 0xffff;

    /// None.
    EntryRoom() = default;
    /// For `size` entries, at most MOST.
    explicit EntryRoom(std::uint32_t size) : size_(static_cast<std::uint16_t>(size)) {}

    /// A place for an entry in the block that begins at `begin`; null when it is full.
    void* take(void* begin)
    {
        if (used_ != size_)
            return static_cast<char*>(begin) + used_++ * ENTRY_SIZE;
        void* const place = freed_;
        if (place != nullptr) {
            freed_ = *static_cast<void**>(place);
            --freedCount_;
        }
        return place;
    }
    /// Gives a place in the block back.
    void giveBack(void* place)
    {
        *static_cast<void**>(place) = freed_;
        freed_ = place;
        ++freedCount_;
    }
    /// How many entries have their place here.
    std::uint32_t inUse() const { return static_cast<std::uint32_t>(used_ - freedCount_); }
    /// Whether there is no place left.
    bool isFull() const { return inUse() == size_; }

private:
    std::uint16_t size_ = 0;
    std::uint16_t used_ = 0;       // the first so many have been used
    std::uint16_t freedCount_ = 0; // so many of these are free again
    void* freed_ = nullptr;        // the latest of them; each begins with a pointer to the next
};

#endif
