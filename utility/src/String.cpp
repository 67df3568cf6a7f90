#include <utility/String.h>

#include <algorithm>
#include <cstdio>
#include <new>

String::StaticText<1> String::s_emptyText("");

namespace
{

constexpr std::size_t MAX_LENGTH = INT32_MAX - 64;

std::size_t lengthOf(char const* text)
{
    return text != nullptr ? std::strlen(text) : 0;
}

} // namespace

String::StringBuffer* String::StringBuffer::create(std::size_t length)
{
    if (length > MAX_LENGTH)
        throw std::bad_alloc();
    void* const block = ::operator new(sizeof(StringBuffer) + length + 1);
    StringBuffer* const buffer = new (block) StringBuffer(static_cast<std::uint32_t>(length));
    buffer->text()[length] = '\0';
    return buffer;
}

void String::StringBuffer::destroy()
{
    this->~StringBuffer();
    ::operator delete(this);
}

std::uint32_t String::StringBuffer::makeHash() const
{
    std::uint32_t h = 0;
    for (char const* at = text(); at != text() + length_; ++at)
        h = h ^ static_cast<unsigned char>(*at) ^ (h << 5);
    hash_.store(h, std::memory_order_relaxed);
    return h;
}

String::String(char const* text) : String(joined(text, lengthOf(text), nullptr, 0)) {}

String::String(char const* text, long start, long count)
    : String(text == nullptr || start < 0 || count < 0
                 ? String()
                 : joined(text + start, static_cast<std::size_t>(count), nullptr, 0))
{}

String const& String::EMPTY()
{
    // Never destroyed: exit handlers may still ask for it.
    alignas(String) static unsigned char place[sizeof(String)];
    static String* const empty = new (place) String();
    return *empty;
}

String& String::concat(String const& other)
{
    return internalConcat(other.cString(), other.length());
}

String& String::concatf(char const* fmt, ...)
{
    std::va_list arguments;
    va_start(arguments, fmt);
    try {
        *this = formatted(cString(), buffer_->length(), fmt, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
    return *this;
}

String& String::format(char const* fmt, ...)
{
    std::va_list arguments;
    va_start(arguments, fmt);
    try {
        *this = formatted(nullptr, 0, fmt, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
    return *this;
}

String& String::internalConcat(char const* text, long length)
{
    if (text == nullptr || length <= 0)
        return *this;
    return *this = joined(cString(), buffer_->length(), text, static_cast<std::size_t>(length));
}

long String::indexOf(String const& other) const
{
    char const* const end = cString() + length();
    char const* const found =
        std::search(cString(), end, other.cString(), other.cString() + other.length());
    if (found == end && !other.isEmpty())
        return -1;
    return static_cast<long>(found - cString());
}

bool String::equals(char const* text) const
{
    const std::size_t length = lengthOf(text);
    return length == buffer_->length() &&
           (length == 0 || std::memcmp(cString(), text, length) == 0);
}

String String::joined(char const* head, std::size_t headLength, char const* tail,
                      std::size_t tailLength)
{
    if (headLength > MAX_LENGTH || tailLength > MAX_LENGTH)
        throw std::bad_alloc();
    if (headLength + tailLength == 0)
        return String();
    StringBuffer* const buffer = StringBuffer::create(headLength + tailLength);
    std::copy_n(head, headLength, buffer->text());
    std::copy_n(tail, tailLength, buffer->text() + headLength);
    return String(buffer);
}

String String::formatted(char const* head, std::size_t headLength, char const* fmt,
                         std::va_list arguments)
{
    std::va_list again;
    va_copy(again, arguments);
    char brief[256];
    const int length = std::vsnprintf(brief, sizeof brief, fmt, arguments);
    const std::size_t tailLength = length > 0 ? static_cast<std::size_t>(length) : 0;
    if (tailLength < sizeof brief) {
        va_end(again);
        return joined(head, headLength, brief, tailLength);
    }
    StringBuffer* buffer = nullptr;
    try {
        buffer = StringBuffer::create(headLength + tailLength);
    } catch (...) {
        va_end(again);
        throw;
    }
    std::copy_n(head, headLength, buffer->text());
    std::vsnprintf(buffer->text() + headLength, tailLength + 1, fmt, again);
    va_end(again);
    return String(buffer);
}
