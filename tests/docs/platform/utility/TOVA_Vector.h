#ifndef PLATFORM_TOVA_VECTOR_H
#define PLATFORM_TOVA_VECTOR_H

#include <cstdint>

template <class T> class TOVA_Vector
{
public:
    explicit TOVA_Vector(std::uint32_t = 8);
    ~TOVA_Vector();
    std::uint32_t count() const;
    std::uint32_t capacity() const;
    void append(T);
    T& operator[](std::uint32_t);
    T const& operator[](std::uint32_t) const;
    void truncate(std::uint32_t);
    bool enlarge(std::uint32_t);
    T* begin();
    T* end();
    T const* begin() const;
    T const* end() const;
};

#endif
