#ifndef PLATFORM_IUNKNOWN_H
#define PLATFORM_IUNKNOWN_H

#include <utility/Export.h>
#include <utility/Lock.h>
#include <utility/TOVA_UUID.h>
#include <utility/XCode.h>

class IUnknown
{
public:
    virtual XCode queryInterface(TOVA_UUID const&, void**) = 0;
    virtual void addRef() = 0;
    virtual void release() = 0;
    virtual Lock* getLock();
    virtual ~IUnknown();
};

TOVA_UUID const& IID_Unknown();

#endif
