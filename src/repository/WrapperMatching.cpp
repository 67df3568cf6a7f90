#include "repository/WrapperMatching.h"

using Record = CDriverRepository::DriverWrapper;

bool Record::talksTo(Listener const* l) const
{
    return selects(*l);
}

bool Record::talksTo(Listener const* l, String const& key, String const& value) const
{
    const Override changed = {key, value};
    return hasDID(*l) && isNamed(l->prefix()) && carries(l->attributes(), &changed);
}
