#ifndef UTILITY_IUNKNOWN_H
#define UTILITY_IUNKNOWN_H

#include <utility/Export.h>
#include <utility/Lock.h>
#include <utility/TOVA_UUID.h>
#include <utility/XCode.h>

/// The root of every interface: asked for further interfaces, counted, destroyed by the `release`
/// that gives back the last reference. The order of the virtual operations is binary contract.
class UTILITY_EXPORT IUnknown
{
public:
    IUnknown() = default;
    IUnknown(IUnknown const&) = delete;
    IUnknown& operator=(IUnknown const&) = delete;

    /// Asks for the interface `iid`. On success stores it in `*out` with one reference for the
    /// caller and returns code 0; otherwise stores null and returns -1. `out` may be null: then
    /// nothing is stored and no reference added.
    virtual XCode queryInterface(TOVA_UUID const& iid, void** out) = 0;
    /// Takes a further reference.
    virtual void addRef() = 0;
    /// Gives a reference back; the last one destroys the object.
    virtual void release() = 0;
    /// The lock that guards this object, not owned by the caller; null when there is none.
    virtual Lock* getLock();
    virtual ~IUnknown();
};

/// The identifier of IUnknown.
UTILITY_EXPORT TOVA_UUID const& IID_Unknown();

#endif
