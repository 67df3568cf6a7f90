#ifndef DRVSH_TEXT_H
#define DRVSH_TEXT_H

#include <utility/String.h>

#include <string>

/// The same characters, NULs included, as the library's text.
inline String toString(std::string const& text)
{
    return String(text.data(), 0, static_cast<long>(text.size()));
}

/// The same characters, NULs included, as the standard library's text.
inline std::string toStd(String const& text)
{
    return std::string(text.cString(), static_cast<std::size_t>(text.length()));
}

#endif
