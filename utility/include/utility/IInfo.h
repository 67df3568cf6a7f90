#ifndef UTILITY_IINFO_H
#define UTILITY_IINFO_H

#include <utility/IUnknown.h>
#include <utility/String.h>

class InfoContainer;

/// An object that describes itself as diagnostic rows.
class UTILITY_EXPORT IInfo : public IUnknown
{
public:
    /// The identifier of IInfo.
    static TOVA_UUID const& IID();

    /// Adds the object's rows to `info` and returns it. `depth` and `detail` are the nesting depth
    /// and the detail level of the object's top row; rows deeper than `maxDepth` or of a higher
    /// level than `maxDetail` are left out. `prefix` stands in front of the top row's key.
    virtual InfoContainer& getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                                   unsigned int maxDetail, unsigned int detail,
                                   String const& prefix) const = 0;
};

#endif
