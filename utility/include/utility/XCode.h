#ifndef UTILITY_XCODE_H
#define UTILITY_XCODE_H

#include <cstdint>

#include <utility/Export.h>
#include <utility/String.h>

/// The result of an operation that can fail: code 0 is success, anything else a failure.
///
/// One word of pointer width. Odd: the code stands in the word, shifted left by one. Even and not
/// null: the word points to an owned record of code and message, which copies deeply. Null, what
/// remains after a move, reads as code 0.
class UTILITY_EXPORT XCode
{
public:
    /// Success.
    XCode() noexcept : word_(inlineWord(0)) {}
    /// A code without a message; allocates only where the code does not fit into the word
    /// (outside -2^30 .. 2^30-1 on 32-bit machines).
    XCode(std::int32_t code) : word_(fitsInline(code) ? inlineWord(code) : record(code, String()))
    {}
    /// A code with a message; always allocates.
    XCode(std::int32_t code, String const& message) : word_(record(code, message)) {}
    /// @{
    /// The same code and message; a record is copied, or taken over.
    XCode(XCode const& other)
        : word_(other.isRecord() ? record(other.code(), other.message()) : other.word_)
    {}
    XCode(XCode&& other) noexcept : word_(other.word_) { other.word_ = 0; }
    /// @}
    ~XCode()
    {
        if (isRecord())
            drop();
    }

    /// Replaces code and message.
    XCode& operator=(XCode other) noexcept
    {
        const std::uintptr_t taken = other.word_;
        other.word_ = word_;
        word_ = taken;
        return *this;
    }

    /// Code -1, with "Out of memory" in `message`: a static text, so that saying so cannot fail.
    static XCode OUT_OF_MEMORY(String& message);

    /// 0 for success.
    std::int32_t code() const
    {
        if (word_ == inlineWord(0)) // most are, and callers ask for no more
            return 0;
        if ((word_ & 1u) != 0)
            return static_cast<std::int32_t>(static_cast<std::intptr_t>(word_) >> 1);
        return word_ != 0 ? recordCode() : 0;
    }
    /// The message given at construction; empty when there was none.
    String const& message() const;

private:
    struct Record
    {
        std::int32_t code;
        String message;
    };

    static bool fitsInline(std::int32_t code)
    {
        return static_cast<std::int32_t>(static_cast<std::intptr_t>(inlineWord(code)) >> 1) == code;
    }
    static std::uintptr_t inlineWord(std::int32_t code)
    {
        return (static_cast<std::uintptr_t>(static_cast<std::intptr_t>(code)) << 1) | 1u;
    }
    static std::uintptr_t record(std::int32_t code, String const& message);
    bool isRecord() const { return (word_ & 1u) == 0 && word_ != 0; }
    std::int32_t recordCode() const;
    void drop();

    std::uintptr_t word_;
};

#endif
