#ifndef PLATFORM_IINFO_H
#define PLATFORM_IINFO_H

#include <utility/IUnknown.h>

class InfoContainer;

class IInfo : public IUnknown
{
public:
    static TOVA_UUID const& IID();
    virtual InfoContainer& getInfo(InfoContainer&, unsigned int, unsigned int, unsigned int,
                                   unsigned int, String const&) const = 0;
};

#endif
