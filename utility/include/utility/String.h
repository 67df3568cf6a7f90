#ifndef UTILITY_STRING_H
#define UTILITY_STRING_H

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <utility/Export.h>
#include <utility/RefCount.h>

/// A handle to a shared, counted text.
///
/// Ownership   copies share one buffer; the last handle frees it. The shared empty buffer and
///             buffers of static texts are never freed.
/// Aliasing    every argument may be the string itself or point into its text.
/// Texts       have a length; a NUL may stand inside. A C text argument ends at its first NUL,
///             and a null pointer is the empty text.
/// Locking     none; the count is atomic, so that handles may be copied and dropped on several
///             threads. One handle belongs to one thread at a time.
/// Failure     std::bad_alloc, the string unchanged.
class UTILITY_EXPORT String
{
public:
    /// Count, length, hash and characters in one block. The characters end in a NUL that the
    /// length does not count.
    class UTILITY_EXPORT StringBuffer
    {
    public:
        /// The one buffer of all empty strings; never freed, its count never changed.
        static StringBuffer* EMPTY();

        /// A buffer with room for `length` characters and one reference, the text not yet set.
        static StringBuffer* create(std::size_t length);

        /// @{
        /// Counts references; the last one given back frees the buffer.
        void addRef();
        void release();
        std::int32_t references() const { return refs_.value(); }
        /// @}
        /// Number of characters, without the closing NUL.
        std::uint32_t length() const { return length_; }
        /// See String::hash.
        std::uint32_t hash() const
        {
            const std::uint32_t known = hash_.load(std::memory_order_relaxed);
            return known != 0 ? known : makeHash();
        }
        /// @{
        /// The characters.
        char* text() { return reinterpret_cast<char*>(this + 1); }
        char const* text() const { return reinterpret_cast<char const*>(this + 1); }
        /// @}

    private:
        friend class String;
        template <std::size_t SIZE> friend class StaticText;

        constexpr explicit StringBuffer(std::uint32_t length) : length_(length) {}
        void destroy();
        std::uint32_t makeHash() const;

        AtomicRefCount refs_;
        std::uint32_t length_;
        // 0 until somebody asks. Threads that share the text all store the same.
        mutable std::atomic<std::uint32_t> hash_{0};
    };

    /// A text in static storage that a String can refer to without allocating. Its own reference
    /// is never given back, so that the count never falls to 0. Give it static storage duration.
    template <std::size_t SIZE> class StaticText
    {
    public:
        /// Copies a literal, at compile time.
        constexpr explicit StaticText(char const (&text)[SIZE]) : buffer_(SIZE - 1), text_()
        {
            for (std::size_t i = 0; i < SIZE; ++i)
                text_[i] = text[i];
        }

    private:
        friend class String;

        StringBuffer buffer_;
        char text_[SIZE];
    };

    /// The empty text; allocates nothing.
    String() noexcept;
    /// @{
    /// Shares the text of `other`, or takes it over.
    String(String const& other) noexcept : buffer_(other.buffer_) { buffer_->addRef(); }
    String(String&& other) noexcept;
    /// @}
    /// A copy of a C text.
    String(char const* text);
    /// A copy of the `count` characters of `text` from position `start`, NULs included; the
    /// caller vouches that they exist. A null text, a negative start or count give the empty text.
    String(char const* text, long start, long count);
    ~String() { buffer_->release(); }

    /// @{
    /// Replaces the text: shares, takes over or copies.
    String& operator=(String const& other) noexcept
    {
        StringBuffer* const old = buffer_;
        buffer_ = other.buffer_;
        buffer_->addRef();
        old->release();
        return *this;
    }
    String& operator=(String&& other) noexcept
    {
        StringBuffer* const taken = other.buffer_;
        other.buffer_ = buffer_;
        buffer_ = taken;
        return *this;
    }
    String& operator=(char const* text) { return *this = String(text); }
    /// @}

    /// Refers to a static text; cannot fail.
    template <std::size_t SIZE> String& operator=(StaticText<SIZE>& text) noexcept
    {
        text.buffer_.addRef();
        return *this = String(&text.buffer_);
    }

    /// The shared empty string; never destroyed.
    static String const& EMPTY();

    /// The text with a closing NUL, good until the string changes.
    char const* cString() const { return buffer_->text(); }
    /// Number of characters, without the closing NUL.
    long length() const { return static_cast<long>(buffer_->length()); }
    /// Whether the length is 0.
    bool isEmpty() const { return buffer_->length() == 0; }
    /// h = h XOR c XOR (h << 5) over the bytes, from 0; so 0 for the empty text. Computed once for
    /// all that share the text.
    std::uint32_t hash() const { return buffer_->hash(); }

    /// Appends a string.
    String& concat(String const& other);
    /// Appends text formatted as by printf.
    String& concatf(char const* fmt, ...) UTILITY_PRINTF(2, 3);
    /// Replaces the content with text formatted as by printf.
    String& format(char const* fmt, ...) UTILITY_PRINTF(2, 3);
    /// Appends `length` characters of `text`, NULs included; nothing when the text is null or the
    /// length not above 0.
    String& internalConcat(char const* text, long length);

    /// Position of the first occurrence, -1 when there is none; an empty argument occurs at 0.
    long indexOf(String const& other) const;
    /// True when this string begins with `other`, byte for byte; every string begins with the
    /// empty one.
    bool startsWith(String const& other) const
    {
        return other.buffer_->length() <= buffer_->length() &&
               std::memcmp(cString(), other.cString(), other.buffer_->length()) == 0;
    }

    /// True for the same buffer, or for equal lengths and bytes.
    bool equals(String const& other) const
    {
        return buffer_ == other.buffer_ ||
               (buffer_->length() == other.buffer_->length() &&
                std::memcmp(cString(), other.cString(), buffer_->length()) == 0);
    }
    /// Exact comparison with a C text; a null text equals the empty string only.
    bool equals(char const* text) const;

    /// The buffer, for looks at sharing and counts; not counted for the caller.
    StringBuffer const* buffer() const { return buffer_; }

private:
    static StaticText<1> s_emptyText;

    explicit String(StringBuffer* adopted) noexcept : buffer_(adopted) {}
    static String joined(char const* head, std::size_t headLength, char const* tail,
                         std::size_t tailLength);
    static String formatted(char const* head, std::size_t headLength, char const* fmt,
                            std::va_list arguments) UTILITY_PRINTF(3, 0);

    StringBuffer* buffer_;
};

inline String::StringBuffer* String::StringBuffer::EMPTY()
{
    return &s_emptyText.buffer_;
}

inline void String::StringBuffer::addRef()
{
    if (this != EMPTY())
        refs_.increment();
}

inline void String::StringBuffer::release()
{
    if (this != EMPTY() && refs_.decrement())
        destroy();
}

inline String::String() noexcept : buffer_(StringBuffer::EMPTY()) {}

inline String::String(String&& other) noexcept : buffer_(other.buffer_)
{
    other.buffer_ = StringBuffer::EMPTY();
}

inline bool operator==(String const& a, String const& b)
{
    return a.equals(b);
}
inline bool operator!=(String const& a, String const& b)
{
    return !a.equals(b);
}
inline bool operator==(String const& a, char const* b)
{
    return a.equals(b);
}
inline bool operator!=(String const& a, char const* b)
{
    return !a.equals(b);
}
inline bool operator==(char const* a, String const& b)
{
    return b.equals(a);
}
inline bool operator!=(char const* a, String const& b)
{
    return !b.equals(a);
}

#endif
