#ifndef PLATFORM_TYPTR_H
#define PLATFORM_TYPTR_H

#include <utility/IUnknown.h>

template <class T> class LockedAccess
{
public:
    T* operator->() const;
    ~LockedAccess();
};

template <class T> class TYPtr
{
public:
    TYPtr() noexcept;
    explicit TYPtr(T*) noexcept;
    TYPtr(TYPtr const&);
    TYPtr(TYPtr&&) noexcept;
    virtual ~TYPtr();
    static TYPtr share(T*);
    TYPtr& operator=(TYPtr const&);
    TYPtr& operator=(TYPtr&&);
    void reset(T* = nullptr);
    T* detach() noexcept;
    T* get() const noexcept;
    T& operator*() const noexcept;
    explicit operator bool() const noexcept;
    LockedAccess<T> operator->() const;
    virtual LockRecord getLock() const;
    virtual LockRecord getLock();

private:
    T* object_;
};

template <class T> class TYPPtr : public TYPtr<T>
{
public:
    TYPPtr() noexcept;
    explicit TYPPtr(T*) noexcept;
    TYPPtr(TYPPtr const&);
    TYPPtr(TYPPtr&&) noexcept;
    static TYPPtr share(T*);
    TYPPtr& operator=(TYPPtr const&);
    TYPPtr& operator=(TYPPtr&&);
    LockRecord getLock() const override;
    LockRecord getLock() override;
};

#endif
