#ifndef FOUNDATION_INTERFACES_H
#define FOUNDATION_INTERFACES_H

#include <initializer_list>

#include <utility/TYPtr.h>

/// An interface that a class answers, and the base of the object that implements it.
struct Face
{
    TOVA_UUID const& iid;
    IUnknown* object;
};

/// The whole of a `queryInterface`: the first face asked for goes into `*out` with one reference
/// and code 0; without one `*out` becomes null and the code is -1. Nothing is stored and no
/// reference taken when `out` is null. Each face's first base is IUnknown, so that the pointer
/// stored is the face's own.
XCode answerInterface(std::initializer_list<Face> faces, TOVA_UUID const& iid, void** out);

/// A counted pointer to the interface `T` of `object`; null when the object lacks it, also when it
/// claims success and leaves null.
template <class T> TYPtr<T> interfaceOf(IUnknown& object, TOVA_UUID const& iid)
{
    void* answer = nullptr;
    const XCode rc = object.queryInterface(iid, &answer);
    return TYPtr<T>(rc.code() == 0 ? static_cast<T*>(answer) : nullptr);
}

#endif
