#ifndef PLATFORM_XCODE_H
#define PLATFORM_XCODE_H

#include <cstdint>

#include <utility/String.h>

class XCode
{
public:
    XCode() noexcept;
    XCode(std::int32_t);
    XCode(XCode const&);
    XCode(XCode&&) noexcept;
    ~XCode();
    XCode& operator=(XCode) noexcept;
    static XCode OUT_OF_MEMORY(String&);
    std::int32_t code() const;
};

#endif
