#ifndef PLATFORM_STRING_H
#define PLATFORM_STRING_H

#include <cstdarg>
#include <cstddef>

#include <utility/Export.h>

class String
{
public:
    template <std::size_t SIZE> class StaticText
    {
    public:
        explicit StaticText(char const (&text)[SIZE]);
    };

    String() noexcept;
    String(String const&) noexcept;
    String(String&&) noexcept;
    String(char const*);
    String(char const*, long, long);
    ~String();
    String& operator=(String const&) noexcept;
    String& operator=(String&&) noexcept;
    String& operator=(char const*);
    template <std::size_t SIZE> String& operator=(StaticText<SIZE>&) noexcept;

    class StringBuffer;

    static String const& EMPTY();
    StringBuffer const* buffer() const;
    char const* cString() const;
    long length() const;
    bool isEmpty() const;

    String& concat(String const&);
    String& concatf(char const*, ...) UTILITY_PRINTF(2, 3);
    String& format(char const*, ...) UTILITY_PRINTF(2, 3);
    String& internalConcat(char const*, long);
    long indexOf(String const&) const;
    bool startsWith(String const&) const;
    bool equals(String const&) const;
    bool equals(char const*) const;
};

bool operator==(String const&, String const&);
bool operator!=(String const&, String const&);
bool operator==(String const&, char const*);

#endif
