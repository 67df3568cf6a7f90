#ifndef PLATFORM_TOVA_HASHTABLE_H
#define PLATFORM_TOVA_HASHTABLE_H

#include <cstddef>
#include <cstdint>
#include <iterator>

#include <utility/String.h>

template <class V> class TOVA_StringHashTable
{
public:
    struct Entry
    {
        String const key;
        V value;
        std::uint32_t mark;
    };
    class ConstIterator
    {
    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = Entry;
        using difference_type = std::ptrdiff_t;
        using pointer = Entry const*;
        using reference = Entry const&;

        Entry const& operator*() const;
        Entry const* operator->() const;
        ConstIterator& operator++();
        ConstIterator& operator--();
        bool operator==(ConstIterator const&) const;
        bool operator!=(ConstIterator const&) const;
    };
    class Iterator : public ConstIterator
    {
    public:
        using pointer = Entry*;
        using reference = Entry&;

        Entry& operator*() const;
        Entry* operator->() const;
        Iterator& operator++();
        Iterator& operator--();
    };

    TOVA_StringHashTable();
    TOVA_StringHashTable(TOVA_StringHashTable const&);
    ~TOVA_StringHashTable();
    TOVA_StringHashTable& operator=(TOVA_StringHashTable) noexcept;
    Iterator begin();
    Iterator end();
    ConstIterator begin() const;
    ConstIterator end() const;
    bool isEmpty() const;
    std::uint32_t count() const;
    Iterator find(String const&);
    ConstIterator find(String const&) const;
    Iterator put(String const&, V);
    bool remove(String const&);
    Iterator remove(ConstIterator);
    static constexpr std::size_t ENTRY_SIZE = 7 * sizeof(void*);
    Iterator add(String const&, V, void* room);
    void extract(ConstIterator);
    void swap(TOVA_StringHashTable&) noexcept;
};

#endif
