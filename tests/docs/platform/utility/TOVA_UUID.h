#ifndef PLATFORM_TOVA_UUID_H
#define PLATFORM_TOVA_UUID_H

#include <cstdint>

struct TOVA_UUID_Data
{
    std::uint32_t words[4];
    std::int32_t references;
    char const* name;
};

class TOVA_UUID
{
public:
    TOVA_UUID();
    explicit TOVA_UUID(TOVA_UUID_Data*);
    TOVA_UUID(TOVA_UUID const&);
    TOVA_UUID& operator=(TOVA_UUID const&);
    ~TOVA_UUID();
    static TOVA_UUID const& INVALID();
    char const* name() const;
    bool isValid() const;
    bool operator==(TOVA_UUID const&) const;
    bool operator!=(TOVA_UUID const&) const;
};

#endif
