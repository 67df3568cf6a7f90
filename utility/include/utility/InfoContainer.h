#ifndef UTILITY_INFOCONTAINER_H
#define UTILITY_INFOCONTAINER_H

#include <vector>

#include <utility/Export.h>
#include <utility/String.h>

/// Diagnostic rows in the order in which they were added. What is wanted is decided by who adds.
class UTILITY_EXPORT InfoContainer
{
public:
    /// One row.
    struct Row
    {
        unsigned depth;  ///< nesting, 0 for a top heading
        unsigned detail; ///< the higher, the more detailed
        String key;      ///< what the row is about
        String value;    ///< empty for headings
    };

    /// Adds one row. Failure: std::bad_alloc, the rows unchanged.
    void add(unsigned depth, unsigned detail, String const& key, String const& value);

    /// All rows, good until the next is added.
    std::vector<Row> const& rows() const { return rows_; }

private:
    std::vector<Row> rows_;
};

#endif
