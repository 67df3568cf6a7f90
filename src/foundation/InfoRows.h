#ifndef FOUNDATION_INFOROWS_H
#define FOUNDATION_INFOROWS_H

#include <utility/InfoContainer.h>

/// Adds the rows of one object: each at a place below the object's top row, and only within the
/// limits of depth and detail that the caller of `getInfo` set.
class InfoRows
{
public:
    InfoRows(InfoContainer& info, unsigned maxDepth, unsigned depth, unsigned maxDetail,
             unsigned detail)
        : info_(info), maxDepth_(maxDepth), depth_(depth), maxDetail_(maxDetail), detail_(detail)
    {}

    /// Whether a row `below` levels under the top row, of a level `finer` than it, is wanted.
    bool wants(unsigned below, unsigned finer) const
    {
        return maxDepth_ >= depth_ && maxDepth_ - depth_ >= below && maxDetail_ >= detail_ &&
               maxDetail_ - detail_ >= finer;
    }

    void add(unsigned below, unsigned finer, String const& key, String const& value) const
    {
        if (wants(below, finer))
            info_.add(depth_ + below, detail_ + finer, key, value);
    }

    void addNumber(unsigned below, unsigned finer, char const* key, unsigned number) const
    {
        if (wants(below, finer))
            add(below, finer, key, String().format("%lu", static_cast<unsigned long>(number)));
    }

    /// Lets an object further down describe itself, within the same limits.
    template <class Object>
    void describe(Object const& object, unsigned below, unsigned finer) const
    {
        if (wants(below, finer))
            object.getInfo(info_, maxDepth_, depth_ + below, maxDetail_, detail_ + finer,
                           String::EMPTY());
    }

private:
    InfoContainer& info_;
    unsigned maxDepth_;
    unsigned depth_;
    unsigned maxDetail_;
    unsigned detail_;
};

/// Counts how deep descriptions nest, so that one that describes itself again comes to an end.
class NestingScope
{
public:
    explicit NestingScope(int& depth) : depth_(depth) { ++depth_; }
    NestingScope(NestingScope const&) = delete;
    NestingScope& operator=(NestingScope const&) = delete;
    ~NestingScope() { --depth_; }

    bool isNested() const { return depth_ > 1; }

private:
    int& depth_;
};

#endif
