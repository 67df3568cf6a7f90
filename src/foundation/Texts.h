#ifndef FOUNDATION_TEXTS_H
#define FOUNDATION_TEXTS_H

#include <new>

#include <utility/String.h>
#include <utility/XCode.h>

// Fixed failure texts stand in static storage: telling them cannot fail.
extern String::StaticText<20> TEXT_NO_DRIVER;
extern String::StaticText<22> TEXT_NO_LISTENER;
extern String::StaticText<36> TEXT_NO_GROUP_OBSERVER;

/// Leaves no text of a failure behind.
inline void succeed(String& error)
{
    if (!error.isEmpty())
        error = String();
}

/// Fails with code -1 and a fixed text in `error`.
template <std::size_t SIZE> XCode fail(String& error, String::StaticText<SIZE>& text)
{
    error = text;
    return XCode(-1);
}

/// Fails with code -1 and the text that `write` puts into `error`, "Out of memory" when there is no
/// room for that.
template <class Write> XCode failWith(String& error, Write write)
{
    try {
        write();
    } catch (std::bad_alloc const&) {
        return XCode::OUT_OF_MEMORY(error);
    }
    return XCode(-1);
}

#endif
