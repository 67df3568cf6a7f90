#ifndef UTILITY_TOVA_LIST_H
#define UTILITY_TOVA_LIST_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <new>
#include <utility>

/// A circular doubly linked list whose own object is the sentinel.
///
/// Order       iteration runs from the first node to the last; `append` adds at the end.
/// Ownership   nodes and the elements in them are owned.
/// Reentrancy  a node is unlinked before its element is destroyed, so that a destructor may use
///             the list. Iterators stay valid until their own node is removed.
/// Failure     std::bad_alloc, the list unchanged.
/// Locking     none.
template <class T> class TOVA_List
{
    struct Node
    {
        Node() : prev(this), next(this), element() {}
        explicit Node(T&& value) : prev(nullptr), next(nullptr), element(std::move(value)) {}

        Node* prev;
        Node* next;
        T element;
    };

public:
    /// A place in the list, for reading.
    class ConstIterator
    {
    public:
        /// @{
        /// As algorithms want them.
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = T const*;
        using reference = T const&;
        /// @}

        /// Stands nowhere; may be assigned and compared only.
        ConstIterator() : node_(nullptr) {}

        /// @{
        /// The element at this place.
        T const& operator*() const { return node_->element; }
        T const* operator->() const { return &node_->element; }
        /// @}
        /// @{
        /// One element on or back. Behind the last is the end, and behind that the first again.
        ConstIterator& operator++()
        {
            node_ = node_->next;
            return *this;
        }
        ConstIterator& operator--()
        {
            node_ = node_->prev;
            return *this;
        }
        /// @}
        /// @{
        /// Whether both stand at the same place.
        bool operator==(ConstIterator const& other) const { return node_ == other.node_; }
        bool operator!=(ConstIterator const& other) const { return node_ != other.node_; }
        /// @}

    protected:
        friend class TOVA_List;
        /// For the list: stands there.
        explicit ConstIterator(Node const* node) : node_(const_cast<Node*>(node)) {}

        Node* node_; ///< where it stands
    };

    /// A place in the list, for changing what stands there.
    class Iterator : public ConstIterator
    {
    public:
        /// @{
        /// As algorithms want them.
        using pointer = T*;
        using reference = T&;
        /// @}

        /// Stands nowhere; may be assigned and compared only.
        Iterator() = default;

        /// @{
        /// The element at this place.
        T& operator*() const { return this->node_->element; }
        T* operator->() const { return &this->node_->element; }
        /// @}
        /// @{
        /// One element on or back.
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
        friend class TOVA_List;
        explicit Iterator(Node* node) : ConstIterator(node) {}
    };

    /// Empty.
    TOVA_List() : count_(0) {}
    /// @{
    /// Copies the elements, or takes them over.
    TOVA_List(TOVA_List const& other) : TOVA_List()
    {
        for (T const& element : other)
            append(element);
    }
    TOVA_List(TOVA_List&& other) noexcept : TOVA_List() { swap(other); }
    /// @}
    ~TOVA_List() { clear(); }

    /// Replaces all elements.
    TOVA_List& operator=(TOVA_List other) noexcept
    {
        swap(other);
        return *this;
    }

    /// Exchanges the elements of both.
    void swap(TOVA_List& other) noexcept
    {
        std::swap(sentinel_.prev, other.sentinel_.prev);
        std::swap(sentinel_.next, other.sentinel_.next);
        std::swap(count_, other.count_);
        closeRing();
        other.closeRing();
    }

    /// @{
    /// From the first element to behind the last.
    Iterator begin() { return Iterator(sentinel_.next); }
    Iterator end() { return Iterator(&sentinel_); }
    ConstIterator begin() const { return ConstIterator(sentinel_.next); }
    ConstIterator end() const { return ConstIterator(&sentinel_); }
    /// @}

    /// Number of elements.
    std::uint32_t count() const { return count_; }
    /// Whether there is no element.
    bool isEmpty() const { return count_ == 0; }

    /// Adds an element at the end and returns its place.
    Iterator append(T element) { return insert(end(), std::move(element)); }
    /// Adds an element before `place` and returns the place of the new one.
    Iterator insert(ConstIterator place, T element)
    {
        return link(new Node(std::move(element)), place);
    }
    /// The same in memory of the caller's, `NODE_SIZE` bytes aligned for a pointer. Take the
    /// element out with `extract` again, or all with `abandon`.
    Iterator insert(ConstIterator place, T element, void* room)
    {
        return link(new (room) Node(std::move(element)), place);
    }
    /// What a node takes, in bytes.
    static constexpr std::size_t NODE_SIZE = sizeof(Node);
    /// Destroys the element at `place`, which isn't the end, and returns the memory of its node,
    /// now the caller's.
    void* extract(ConstIterator place)
    {
        Node* const node = place.node_;
        unlink(node);
        node->~Node();
        return node;
    }
    /// Moves the first node of `other`, which has one, to the end, and returns its place.
    Iterator takeFirst(TOVA_List& other)
    {
        Node* const node = other.sentinel_.next;
        other.unlink(node);
        return link(node, end());
    }
    /// Forgets all elements without destroying them: for such as own nothing, in memory of the
    /// caller's.
    void abandon()
    {
        count_ = 0;
        closeRing();
    }
    /// Removes the element at `place` and returns the place behind it; the end stays.
    Iterator remove(ConstIterator place)
    {
        Node* const node = place.node_;
        if (node == &sentinel_)
            return end();
        const Iterator next(node->next);
        unlink(node);
        delete node;
        return next;
    }
    /// Removes all elements, the first one first.
    void clear()
    {
        while (count_ != 0)
            remove(begin());
    }

private:
    Iterator link(Node* node, ConstIterator place)
    {
        node->next = place.node_;
        node->prev = node->next->prev;
        node->prev->next = node;
        node->next->prev = node;
        ++count_;
        return Iterator(node);
    }
    void unlink(Node* node)
    {
        node->prev->next = node->next;
        node->next->prev = node->prev;
        --count_;
    }

    void closeRing()
    {
        if (count_ == 0) {
            sentinel_.prev = sentinel_.next = &sentinel_;
            return;
        }
        sentinel_.prev->next = &sentinel_;
        sentinel_.next->prev = &sentinel_;
    }

    Node sentinel_; // its element stays as it was made
    std::uint32_t count_;
};

#endif
