#ifndef PLATFORM_INFOCONTAINER_H
#define PLATFORM_INFOCONTAINER_H

#include <utility/String.h>

class InfoContainer
{
public:
    void add(unsigned, unsigned, String const&, String const&);
};

#endif
