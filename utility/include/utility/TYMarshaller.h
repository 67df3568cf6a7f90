#ifndef UTILITY_TYMARSHALLER_H
#define UTILITY_TYMARSHALLER_H

#include <cstdint>
#include <cstring>

#include <utility/Export.h>

/// A buffer of bytes in the order in which they were appended.
///
/// Ownership   up to three words stand in the object itself; more go to a block on the heap,
///             which copies share until one of them calls `copyOnWrite`.
/// Failure     std::bad_alloc, the content unchanged. Copying never fails.
/// Locking     none; the count of a shared block is atomic.
class UTILITY_EXPORT TYMarshaller
{
public:
    /// The bytes themselves. Change them only through what `copyOnWrite` returned.
    class UTILITY_EXPORT Buffer
    {
    public:
        /// Appends `size` bytes from `data`, which may lie in this buffer; nothing when null.
        void addTail(void const* data, unsigned size);

        /// Number of bytes.
        unsigned size() const { return size_; }
        /// The bytes, valid until the next change.
        void const* data() const;
        /// Whether both hold the same bytes.
        bool operator==(Buffer const& other) const
        {
            return size_ == other.size_ &&
                   (block_ == nullptr && other.block_ == nullptr
                        ? std::memcmp(inline_, other.inline_, INLINE_SIZE) == 0
                        : std::memcmp(data(), other.data(), size_) == 0);
        }
        /// Copies `size` bytes from position `offset` to `into`; false, nothing copied, when the
        /// buffer holds fewer.
        bool read(unsigned offset, void* into, unsigned size) const;

    private:
        friend class TYMarshaller;
        struct Block;

        Buffer() = default;
        Buffer(Buffer const& other);
        ~Buffer() { drop(); }
        void swap(Buffer& other) noexcept;
        void reserve(unsigned capacity);
        void drop();
        unsigned char* bytes();

        static constexpr unsigned INLINE_SIZE = 3 * sizeof(std::uint32_t);

        Block* block_ = nullptr;
        unsigned size_ = 0;
        alignas(std::uint32_t) unsigned char inline_[INLINE_SIZE] = {};
    };

    /// Empty.
    TYMarshaller() = default;
    /// @{
    /// The same bytes; a block on the heap is shared.
    TYMarshaller(TYMarshaller const& other) = default;
    TYMarshaller& operator=(TYMarshaller const& other);
    /// @}

    /// Makes the bytes private to this marshaller and returns them for a change.
    Buffer& copyOnWrite();
    /// The bytes for reading.
    Buffer const& buffer() const { return buffer_; }
    /// The 32-bit item number `index`, counted in words from 0; 0 when there is none.
    std::uint32_t word(unsigned index) const;

private:
    Buffer buffer_;
};

#endif
