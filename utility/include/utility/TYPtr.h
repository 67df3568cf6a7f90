#ifndef UTILITY_TYPTR_H
#define UTILITY_TYPTR_H

#include <utility>

#include <utility/IUnknown.h>

/// Holds the lock that a record names for the length of one full expression: what `->` of a
/// counted pointer returns.
template <class T> class LockedAccess
{
public:
    /// Takes the lock that `record` names.
    LockedAccess(T* object, LockRecord const& record) : object_(object), scope_(record) {}
    /// The object.
    T* operator->() const { return object_; }

private:
    T* object_;
    LockScope scope_;
};

/// A counted pointer: holds exactly one reference, or null.
///
/// Ownership   taking a raw pointer adopts the reference that the caller holds; `share` takes a
///             further one. Copies share, moves hand over, destruction gives back.
/// Reentrancy  a replaced object is released last, when the pointer already holds the new one.
/// Locking     `->` takes the lock that `getLock` names, which is none here.
/// The virtual operations are binary contract: destructor, getLock() const, getLock().
template <class T> class TYPtr
{
public:
    /// Null.
    TYPtr() noexcept : object_(nullptr) {}
    /// Takes over the caller's reference on `adopted`.
    explicit TYPtr(T* adopted) noexcept : object_(adopted) {}
    /// Takes a reference of its own.
    TYPtr(TYPtr const& other) : object_(other.object_) { addRef(); }
    /// Takes over the reference of `other`.
    TYPtr(TYPtr&& other) noexcept : object_(other.detach()) {}
    virtual ~TYPtr() { reset(); }

    /// A pointer that takes a further reference on `object`.
    static TYPtr share(T* object)
    {
        if (object != nullptr)
            object->addRef();
        return TYPtr(object);
    }

    /// Takes a reference of its own; that held before is given back last.
    TYPtr& operator=(TYPtr const& other)
    {
        TYPtr copy(other);
        std::swap(object_, copy.object_);
        return *this;
    }
    /// Takes over the reference of `other`; that held before is given back last.
    TYPtr& operator=(TYPtr&& other)
    {
        TYPtr taken(std::move(other));
        std::swap(object_, taken.object_);
        return *this;
    }

    /// Gives back the reference held and takes over the caller's reference on `adopted`.
    void reset(T* adopted = nullptr)
    {
        T* const old = object_;
        object_ = adopted;
        if (old != nullptr)
            old->release();
    }
    /// Hands the reference to the caller; the pointer becomes null.
    T* detach() noexcept { return std::exchange(object_, nullptr); }

    /// The object, without a reference for the caller and without any lock.
    T* get() const noexcept { return object_; }
    /// The same, which must not be null.
    T& operator*() const noexcept { return *object_; }
    /// Whether there is an object.
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /// Access under the lock that `getLock` names, held until the end of the full expression.
    /// The pointer must not be null.
    LockedAccess<T> operator->() const
    {
        if (object_ == nullptr)
            __builtin_unreachable(); // or every use looks like a null dereference to compilers
        return LockedAccess<T>(object_, getLock());
    }

    /// What `->` holds: no lock.
    virtual LockRecord getLock() const { return {object_, nullptr, false}; }
    /// The same.
    virtual LockRecord getLock() { return {object_, nullptr, false}; }

private:
    void addRef() const
    {
        if (object_ != nullptr)
            object_->addRef();
    }

    T* object_;
};

/// A counted pointer whose `->` holds the lock of the object itself, for that call.
template <class T> class TYPPtr : public TYPtr<T>
{
public:
    /// Null.
    TYPPtr() noexcept = default;
    /// Takes over the caller's reference on `adopted`.
    explicit TYPPtr(T* adopted) noexcept : TYPtr<T>(adopted) {}
    TYPPtr(TYPPtr const&) = default;            ///< as for TYPtr
    TYPPtr(TYPPtr&&) noexcept = default;        ///< as for TYPtr
    TYPPtr& operator=(TYPPtr const&) = default; ///< as for TYPtr
    TYPPtr& operator=(TYPPtr&&) = default;      ///< as for TYPtr

    /// A pointer that takes a further reference on `object`.
    static TYPPtr share(T* object)
    {
        if (object != nullptr)
            object->addRef();
        return TYPPtr(object);
    }

    /// What `->` holds: the lock that the object's own `getLock` returns.
    LockRecord getLock() const override { return record(); }
    /// The same.
    LockRecord getLock() override { return record(); }

private:
    LockRecord record() const
    {
        T* const object = this->get();
        return {object, object != nullptr ? object->getLock() : nullptr, false};
    }
};

template <class T> bool operator==(TYPtr<T> const& a, T const* b)
{
    return a.get() == b;
}
template <class T> bool operator!=(TYPtr<T> const& a, T const* b)
{
    return a.get() != b;
}

#endif
