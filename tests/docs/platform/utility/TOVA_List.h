#ifndef PLATFORM_TOVA_LIST_H
#define PLATFORM_TOVA_LIST_H

#include <cstddef>
#include <cstdint>
#include <iterator>

template <class T> class TOVA_List
{
public:
    class ConstIterator
    {
    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = T const*;
        using reference = T const&;

        T const& operator*() const;
        T const* operator->() const;
        ConstIterator& operator++();
        ConstIterator& operator--();
        bool operator==(ConstIterator const&) const;
        bool operator!=(ConstIterator const&) const;
    };
    class Iterator : public ConstIterator
    {
    public:
        using pointer = T*;
        using reference = T&;

        T& operator*() const;
        T* operator->() const;
        Iterator& operator++();
        Iterator& operator--();
    };

    TOVA_List();
    TOVA_List(TOVA_List const&);
    TOVA_List(TOVA_List&&) noexcept;
    ~TOVA_List();
    TOVA_List& operator=(TOVA_List) noexcept;
    Iterator begin();
    Iterator end();
    ConstIterator begin() const;
    ConstIterator end() const;
    std::uint32_t count() const;
    Iterator append(T);
    Iterator insert(ConstIterator, T);
    Iterator insert(ConstIterator, T, void*);
    static constexpr std::size_t NODE_SIZE = 4 * sizeof(void*);
    Iterator remove(ConstIterator);
    void* extract(ConstIterator);
    void abandon();
    Iterator takeFirst(TOVA_List&);
    void clear();
    void swap(TOVA_List&) noexcept;
};

#endif
