#ifndef DRVREPO_OBSERVEREVENT_H
#define DRVREPO_OBSERVEREVENT_H

#include <atomic>
#include <cstddef>
#include <new>

#include <utility/RefCount.h>
#include <utility/TYMarshaller.h>
#include <utility/TYPtr.h>

/// One block of memory kept for the next that needs one of its size. Taken and given back by an
/// atomic exchange, on any thread.
template <std::size_t SIZE> class SpareBlock
{
public:
    /// Of the block, in bytes.
    static constexpr std::size_t size() { return SIZE; }

    SpareBlock() = default;
    SpareBlock(SpareBlock const&) = delete;
    SpareBlock& operator=(SpareBlock const&) = delete;
    ~SpareBlock() { ::operator delete(block_.exchange(nullptr)); }

    /// A block, new when none is kept. Failure: std::bad_alloc.
    void* take()
    {
        void* const kept = replace(nullptr);
        return kept != nullptr ? kept : ::operator new(SIZE);
    }
    /// Keeps the block; frees one that was kept already.
    void giveBack(void* block) noexcept
    {
        void* const kept = replace(block);
        if (kept != nullptr)
            ::operator delete(kept);
    }

private:
    /// Without a locked instruction while there is one thread, as AtomicRefCount does.
    void* replace(void* block) noexcept
    {
        if (!UTILITY_SINGLE_THREADED)
            return block_.exchange(block);
        void* const kept = block_.load(std::memory_order_relaxed);
        block_.store(block, std::memory_order_relaxed);
        return kept;
    }

    std::atomic<void*> block_{nullptr};
};

/// What an observer of a `T` is handed: the subject that sends, and values in the order in which
/// the subject appended them. Subclasses give the values names.
///
/// Ownership   holds one reference on the subject. A clone belongs to whoever asked for it, and
///             may be deleted on any thread.
/// The virtual operations are binary contract: destructor, clone.
template <class T> class ObserverEvent
{
public:
    /// From nobody, without values.
    ObserverEvent() = default;
    /// Takes a reference on `subject`, which may be null.
    explicit ObserverEvent(T* subject) : source(TYPtr<T>::share(subject)) {}
    /// Takes a reference of its own on the subject.
    ObserverEvent(ObserverEvent const&) = default;
    /// The same; the reference held before is given back.
    ObserverEvent& operator=(ObserverEvent const&) = default;
    virtual ~ObserverEvent() = default;

    /// A new event of the same dynamic type with the same content. Null: none can be made, and
    /// whoever wanted it for an observer passes that observer over.
    virtual ObserverEvent* clone() const { return new ObserverEvent(*this); }

    /// Whether both come from the same subject with the same values.
    bool hasContentOf(ObserverEvent const& other) const
    {
        return source.get() == other.source.get() && data.buffer() == other.data.buffer();
    }

    /// Sees to it that one event can be cloned without asking for memory. Failure: std::bad_alloc.
    static void reserve() { spare().giveBack(spare().take()); }

    /// A broadcast needs one clone at a time, so one block serves them all.
    static void* operator new(std::size_t size)
    {
        return size == sizeof(ObserverEvent) ? spare().take() : ::operator new(size);
    }
    /// Keeps the block for the next.
    static void operator delete(void* block, std::size_t size) noexcept
    {
        if (size == sizeof(ObserverEvent))
            spare().giveBack(block);
        else
            ::operator delete(block);
    }

    TYPtr<T> source;   ///< the subject that sends
    TYMarshaller data; ///< the values, in the subject's order

private:
    // The size of the event: its virtual table, the subject, the data.
    using Spare = SpareBlock<sizeof(void*) + sizeof(TYPtr<T>) + sizeof(TYMarshaller)>;

    static Spare& spare()
    {
        static_assert(sizeof(ObserverEvent) == Spare::size(), "a spare block fits an event");
        static Spare block;
        return block;
    }
};

#endif
