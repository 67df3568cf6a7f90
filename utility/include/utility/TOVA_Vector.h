#ifndef UTILITY_TOVA_VECTOR_H
#define UTILITY_TOVA_VECTOR_H

#include <cstdint>
#include <memory>
#include <new>
#include <utility>

/// An array that grows by steps; reading or writing past its end extends it.
///
/// Ownership   the elements are owned, in one block of `capacity` default-made elements; those at
///             and past the count are empty.
/// Aliasing    an element of the vector may be appended to it.
/// Failure     std::bad_alloc, the vector unchanged.
/// Locking     none.
template <class T> class TOVA_Vector
{
public:
    /// Grows in multiples of `step` elements; a step of 0 counts as 1.
    explicit TOVA_Vector(std::uint32_t step = 8) : step_(step) {}
    /// @{
    /// Copies the elements in use, or takes all over; the step goes with them.
    TOVA_Vector(TOVA_Vector const& other) : step_(other.step_)
    {
        if (other.count_ == 0)
            return;
        replace(copyOf(other, other.capacity_), other.capacity_);
        count_ = other.count_;
    }
    TOVA_Vector(TOVA_Vector&& other) noexcept : step_(other.step_) { swap(other); }
    /// @}
    ~TOVA_Vector() { delete[] elements_; }

    /// Replaces elements and step.
    TOVA_Vector& operator=(TOVA_Vector other) noexcept
    {
        swap(other);
        return *this;
    }

    /// Exchanges elements and step of both.
    void swap(TOVA_Vector& other) noexcept
    {
        std::swap(elements_, other.elements_);
        std::swap(count_, other.count_);
        std::swap(capacity_, other.capacity_);
        std::swap(step_, other.step_);
    }

    /// Number of elements in use.
    std::uint32_t count() const { return count_; }
    /// Number of elements that there is room for.
    std::uint32_t capacity() const { return capacity_; }

    /// Adds an element behind the last.
    void append(T element)
    {
        if (count_ == capacity_)
            enlarge(count_ + 1);
        elements_[count_] = std::move(element);
        ++count_;
    }

    /// The element at `index`; a vector that ends before it is first extended by empty elements.
    /// Index 4294967295 has no count behind it and answers a spare element, emptied at each use.
    T& operator[](std::uint32_t index)
    {
        if (index == UINT32_MAX)
            return discarded();
        if (index >= capacity_)
            enlarge(index + 1);
        if (index >= count_)
            count_ = index + 1;
        return elements_[index];
    }
    /// The element at `index`, an empty one past the end.
    T const& operator[](std::uint32_t index) const
    {
        return index < count_ ? elements_[index] : discarded();
    }

    /// Drops and empties the elements from `count` on; the capacity is kept. A count not below
    /// the present one changes nothing.
    void truncate(std::uint32_t count)
    {
        while (count_ > count) {
            --count_;
            elements_[count_] = T();
        }
    }

    /// Sets the capacity to the smallest multiple of the step above `n` (but never below the
    /// elements in use), keeps these, and returns true.
    bool enlarge(std::uint32_t n)
    {
        const std::uint32_t step = step_ != 0 ? step_ : 1;
        const std::uint64_t wanted = std::uint64_t(step) * (std::uint64_t(n) / step + 1);
        if (wanted > UINT32_MAX)
            throw std::bad_alloc();
        if (wanted < count_)
            return true;
        replace(copyOf(*this, static_cast<std::uint32_t>(wanted)),
                static_cast<std::uint32_t>(wanted));
        return true;
    }

    /// @{
    /// From the first element to behind the last in use.
    T* begin() { return elements_; }
    T* end() { return elements_ + count_; }
    T const* begin() const { return elements_; }
    T const* end() const { return elements_ + count_; }
    /// @}

private:
    T& discarded() const
    {
        spare_ = T();
        return spare_;
    }

    static T* copyOf(TOVA_Vector const& from, std::uint32_t capacity)
    {
        std::unique_ptr<T[]> copy(new T[capacity]);
        for (std::uint32_t i = 0; i < from.count_; ++i)
            copy[i] = from.elements_[i];
        return copy.release();
    }

    void replace(T* elements, std::uint32_t capacity)
    {
        delete[] std::exchange(elements_, elements);
        capacity_ = capacity;
    }

    T* elements_ = nullptr;
    std::uint32_t count_ = 0;
    std::uint32_t capacity_ = 0;
    std::uint32_t step_;
    mutable T spare_ = T(); // answers an index that has no place
};

#endif
