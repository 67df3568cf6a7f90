#include <utility/TYMarshaller.h>

#include <cstring>
#include <new>
#include <utility>

#include <utility/RefCount.h>

namespace
{

// Twice that and the head of a block still fit into 32 bits.
constexpr unsigned MAX_SIZE = UINT32_MAX / 2 - 64;

} // namespace

struct TYMarshaller::Buffer::Block
{
    AtomicRefCount refs;
    unsigned capacity;

    unsigned char* bytes() { return reinterpret_cast<unsigned char*>(this + 1); }
};

void const* TYMarshaller::Buffer::data() const
{
    return const_cast<Buffer*>(this)->bytes();
}

unsigned char* TYMarshaller::Buffer::bytes()
{
    return block_ != nullptr ? block_->bytes() : inline_;
}

bool TYMarshaller::Buffer::read(unsigned offset, void* into, unsigned size) const
{
    if (offset > size_ || size > size_ - offset)
        return false;
    if (size != 0) // nothing may be read into null
        std::memcpy(into, static_cast<unsigned char const*>(data()) + offset, size);
    return true;
}

void TYMarshaller::Buffer::addTail(void const* data, unsigned size)
{
    if (data == nullptr || size == 0)
        return;
    if (size > MAX_SIZE - size_)
        throw std::bad_alloc();
    const unsigned capacity = block_ != nullptr ? block_->capacity : INLINE_SIZE;
    if (size_ + size <= capacity) {
        std::memmove(bytes() + size_, data, size);
        size_ += size;
        return;
    }
    // The bytes may lie in this very buffer: the old one stays until they are copied.
    Buffer grown;
    grown.reserve(2 * (size_ + size));
    std::memcpy(grown.bytes(), bytes(), size_);
    std::memcpy(grown.bytes() + size_, data, size);
    grown.size_ = size_ + size;
    swap(grown);
}

TYMarshaller::Buffer::Buffer(Buffer const& other) : block_(other.block_), size_(other.size_)
{
    if (block_ != nullptr)
        block_->refs.increment();
    std::memcpy(inline_, other.inline_, sizeof inline_);
}

void TYMarshaller::Buffer::swap(Buffer& other) noexcept
{
    std::swap(block_, other.block_);
    std::swap(size_, other.size_);
    std::swap(inline_, other.inline_);
}

void TYMarshaller::Buffer::reserve(unsigned capacity)
{
    void* const place = ::operator new(sizeof(Block) + capacity);
    block_ = new (place) Block;
    block_->capacity = capacity;
}

void TYMarshaller::Buffer::drop()
{
    if (block_ != nullptr && block_->refs.decrement()) {
        block_->~Block();
        ::operator delete(block_);
    }
}

TYMarshaller& TYMarshaller::operator=(TYMarshaller const& other)
{
    Buffer copy(other.buffer_);
    buffer_.swap(copy);
    return *this;
}

TYMarshaller::Buffer& TYMarshaller::copyOnWrite()
{
    if (buffer_.block_ != nullptr && buffer_.block_->refs.value() > 1) {
        Buffer own;
        own.reserve(buffer_.block_->capacity);
        std::memcpy(own.bytes(), buffer_.bytes(), buffer_.size_);
        own.size_ = buffer_.size_;
        buffer_.swap(own);
    }
    return buffer_;
}

std::uint32_t TYMarshaller::word(unsigned index) const
{
    std::uint32_t value = 0;
    if (index <= UINT32_MAX / sizeof value)
        buffer_.read(index * static_cast<unsigned>(sizeof value), &value, sizeof value);
    return value;
}
