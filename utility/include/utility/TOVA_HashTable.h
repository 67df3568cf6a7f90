#ifndef UTILITY_TOVA_HASHTABLE_H
#define UTILITY_TOVA_HASHTABLE_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <utility>

#include <utility/String.h>

/// A hash table that iterates in the order of first insertion.
///
/// Order       a new entry comes last; a new value for an existing key keeps the entry's place.
/// Ownership   entries with their keys and values are owned; what a pointer value points to isn't.
/// Cost        look-up, insertion and removal take constant time. Up to eight entries no bucket
///             array exists: the list of all entries is walked. Then 32 buckets are made, and
///             twice as many whenever there are more entries than buckets.
/// Reentrancy  an entry is unlinked before it is destroyed. Iterators stay valid until their own
///             entry is removed.
/// Aliasing    keys and values handed in may live inside the table.
/// Failure     std::bad_alloc, the table unchanged.
/// Locking     none.
/// H yields a 32-bit hash of a key, 0 for the empty one; C tells whether two keys are equal.
template <class K, class V, class H, class C> class TOVA_HashTable
{
    struct AllLink
    {
        AllLink* prev;
        AllLink* next;
    };
    struct ChainLink
    {
        ChainLink* prev;
        ChainLink* next;
    };

public:
    /// One entry of the table.
    class Entry : private AllLink, private ChainLink
    {
    public:
        K const key; ///< set once and for all
        V value;     ///< may be changed at any time

    private:
        friend class TOVA_HashTable;
        Entry(K const& k, V&& v, std::uint32_t h)
            : AllLink{this, this}, ChainLink{this, this}, key(k), value(std::move(v)), hash(h)
        {}
        std::uint32_t const hash;

    public:
        /// A word for the table's owner, 0 at first; the table never looks at it.
        std::uint32_t mark = 0;
    };

    /// A place in the table, for reading.
    class ConstIterator
    {
    public:
        /// @{
        /// As algorithms want them.
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = Entry;
        using difference_type = std::ptrdiff_t;
        using pointer = Entry const*;
        using reference = Entry const&;
        /// @}

        /// Stands nowhere; may be assigned and compared only.
        ConstIterator() : at_(nullptr) {}

        /// @{
        /// The entry at this place.
        Entry const& operator*() const { return static_cast<Entry&>(*at_); }
        Entry const* operator->() const { return &static_cast<Entry&>(*at_); }
        /// @}
        /// @{
        /// One entry on or back. Behind the last is the end, and behind that the first again.
        ConstIterator& operator++()
        {
            at_ = at_->next;
            return *this;
        }
        ConstIterator& operator--()
        {
            at_ = at_->prev;
            return *this;
        }
        /// @}
        /// @{
        /// Whether both stand at the same place.
        bool operator==(ConstIterator const& other) const { return at_ == other.at_; }
        bool operator!=(ConstIterator const& other) const { return at_ != other.at_; }
        /// @}

    protected:
        friend class TOVA_HashTable;
        /// For the table: stands there.
        explicit ConstIterator(AllLink const* at) : at_(const_cast<AllLink*>(at)) {}

        AllLink* at_; ///< where it stands
    };

    /// A place in the table, for changing what stands there.
    class Iterator : public ConstIterator
    {
    public:
        /// @{
        /// As algorithms want them.
        using pointer = Entry*;
        using reference = Entry&;
        /// @}

        /// Stands nowhere; may be assigned and compared only.
        Iterator() = default;

        /// @{
        /// The entry at this place.
        Entry& operator*() const { return static_cast<Entry&>(*this->at_); }
        Entry* operator->() const { return &static_cast<Entry&>(*this->at_); }
        /// @}
        /// @{
        /// One entry on or back.
        Iterator& operator++()
        {
            ConstIterator::operator++();
            return *this;
        }
        Iterator& operator--()
        {
            ConstIterator::operator--();
            return *this;
        }
        /// @}

    private:
        friend class TOVA_HashTable;
        explicit Iterator(AllLink* at) : ConstIterator(at) {}
    };

    /// Empty.
    TOVA_HashTable() : count_(0), bucketCount_(0), all_{&all_, &all_} {}
    /// @{
    /// Copies the entries, or takes them over.
    TOVA_HashTable(TOVA_HashTable const& other) : TOVA_HashTable()
    {
        for (Entry const& entry : other)
            put(entry.key, entry.value);
    }
    TOVA_HashTable(TOVA_HashTable&& other) noexcept : TOVA_HashTable() { swap(other); }
    /// @}
    ~TOVA_HashTable() { clear(); }

    /// Replaces all entries.
    TOVA_HashTable& operator=(TOVA_HashTable other) noexcept
    {
        swap(other);
        return *this;
    }

    /// Exchanges the entries of both.
    void swap(TOVA_HashTable& other) noexcept
    {
        std::swap(count_, other.count_);
        std::swap(bucketCount_, other.bucketCount_);
        std::swap(all_, other.all_);
        std::swap(buckets_, other.buckets_);
        closeRing();
        other.closeRing();
    }

    /// @{
    /// From the first entry to behind the last.
    Iterator begin() { return Iterator(all_.next); }
    Iterator end() { return Iterator(&all_); }
    ConstIterator begin() const { return ConstIterator(all_.next); }
    ConstIterator end() const { return ConstIterator(&all_); }
    /// @}

    /// Number of entries.
    std::uint32_t count() const { return count_; }
    /// Whether there is no entry.
    bool isEmpty() const { return count_ == 0; }
    /// Number of buckets on the heap; 0 while the table is small.
    std::uint32_t bucketCount() const { return bucketCount_; }

    /// @{
    /// The entry with this key, `end()` when there is none.
    Iterator find(K const& key) { return Iterator(search(key)); }
    ConstIterator find(K const& key) const { return ConstIterator(search(key)); }
    /// @}

    /// Sets the value of a key, a new entry at the end if there is none, and returns its place.
    Iterator put(K const& key, V value)
    {
        const std::uint32_t hash = H()(key);
        AllLink* const found = search(key, hash);
        if (found == &all_)
            return Iterator(append(key, std::move(value), hash));
        static_cast<Entry&>(*found).value = std::move(value);
        return Iterator(found);
    }

    /// Adds an entry for a key that has none, in memory of the caller's, `ENTRY_SIZE` bytes aligned
    /// for a pointer. Take it out with `extract` again, before the table is destroyed.
    Iterator add(K const& key, V value, void* room)
    {
        const std::uint32_t hash = H()(key);
        makeBuckets();
        return Iterator(link(new (room) Entry(key, std::move(value), hash)));
    }
    /// What an entry takes, in bytes.
    static constexpr std::size_t ENTRY_SIZE = sizeof(Entry);
    /// Destroys the entry at `place`, which isn't the end, and leaves its memory to the caller.
    void extract(ConstIterator place)
    {
        Entry* const entry = &static_cast<Entry&>(*place.at_);
        unlink(entry);
        entry->~Entry();
    }

    /// Removes the entry with this key; returns whether there was one.
    bool remove(K const& key)
    {
        const Iterator place = find(key);
        if (place == end())
            return false;
        remove(place);
        return true;
    }
    /// Removes the entry at `place` and returns the place behind it; the end stays.
    Iterator remove(ConstIterator place)
    {
        if (place == end())
            return end();
        Entry* const entry = &static_cast<Entry&>(*place.at_);
        AllLink* const next = place.at_->next;
        unlink(entry);
        delete entry;
        return Iterator(next);
    }
    /// Removes all entries, the first one first, and frees the buckets.
    void clear()
    {
        while (count_ != 0)
            remove(begin());
        buckets_.reset();
        bucketCount_ = 0;
    }

private:
    static constexpr std::uint32_t SMALL = 8;
    static constexpr std::uint32_t FIRST_BUCKETS = 32;

    /// The first buckets are the plain remainder. That degenerates for more buckets with hashes
    /// that mix as little as the one of strings, so a grown table takes the top bits of a product.
    static std::uint32_t bucketOf(std::uint32_t hash, std::uint32_t buckets)
    {
        if (buckets == FIRST_BUCKETS)
            return hash % FIRST_BUCKETS;
        return static_cast<std::uint32_t>((std::uint64_t(hash * 0x9E3779B1u) * buckets) >> 32);
    }

    AllLink* search(K const& key) const { return search(key, bucketCount_ != 0 ? H()(key) : 0); }
    AllLink* search(K const& key, std::uint32_t hash) const
    {
        AllLink* const none = const_cast<AllLink*>(&all_);
        if (bucketCount_ == 0) {
            for (AllLink* at = all_.next; at != none; at = at->next)
                if (C()(static_cast<Entry&>(*at).key, key))
                    return at;
            return none;
        }
        ChainLink* const head = &buckets_[bucketOf(hash, bucketCount_)];
        for (ChainLink* at = head->next; at != head; at = at->next) {
            Entry& entry = static_cast<Entry&>(*at);
            if (entry.hash == hash && C()(entry.key, key))
                return &entry;
        }
        return none;
    }

    AllLink* append(K const& key, V&& value, std::uint32_t hash)
    {
        std::unique_ptr<Entry> made(new Entry(key, std::move(value), hash));
        makeBuckets();
        return link(made.release());
    }

    AllLink* link(Entry* entry)
    {
        AllLink* const all = entry;
        all->next = &all_;
        all->prev = all_.prev;
        all->prev->next = all;
        all_.prev = all;
        ++count_;
        if (bucketCount_ != 0)
            chain(entry);
        return all;
    }

    /// For one entry more; nothing fails after it.
    void makeBuckets()
    {
        if (count_ >= SMALL && count_ >= bucketCount_)
            grow(bucketCount_ == 0 ? FIRST_BUCKETS : 2 * bucketCount_);
    }

    void grow(std::uint32_t buckets)
    {
        std::unique_ptr<ChainLink[]> grown(new ChainLink[buckets]);
        for (std::uint32_t i = 0; i < buckets; ++i)
            grown[i].prev = grown[i].next = &grown[i];
        buckets_ = std::move(grown);
        bucketCount_ = buckets;
        for (AllLink* at = all_.next; at != &all_; at = at->next)
            chain(&static_cast<Entry&>(*at));
    }

    void chain(Entry* entry)
    {
        ChainLink* const head = &buckets_[bucketOf(entry->hash, bucketCount_)];
        ChainLink* const link = entry;
        link->next = head;
        link->prev = head->prev;
        link->prev->next = link;
        head->prev = link;
    }

    void unlink(Entry* entry)
    {
        AllLink* const all = entry;
        all->prev->next = all->next;
        all->next->prev = all->prev;
        if (bucketCount_ != 0) {
            ChainLink* const link = entry;
            link->prev->next = link->next;
            link->next->prev = link->prev;
        }
        --count_;
    }

    void closeRing()
    {
        if (count_ == 0) {
            all_.prev = all_.next = &all_;
            return;
        }
        all_.prev->next = &all_;
        all_.next->prev = &all_;
    }

    std::uint32_t count_;
    std::uint32_t bucketCount_;
    AllLink all_;
    std::unique_ptr<ChainLink[]> buckets_;
};

/// The hash that every text knows of itself.
struct StringHash
{
    /// See String::hash.
    std::uint32_t operator()(String const& text) const { return text.hash(); }
};

/// Equal when both share a buffer, or have the same length and bytes.
struct StringCompare
{
    /// Whether both are the same text.
    bool operator()(String const& a, String const& b) const { return a.equals(b); }
};

template <class V>
using TOVA_StringHashTable = TOVA_HashTable<String, V, StringHash, StringCompare>;

#endif
