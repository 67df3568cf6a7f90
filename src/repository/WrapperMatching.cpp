#include <drvrepo/DriverWrapper.h>

using Record = CDriverRepository::DriverWrapper;

// Whether a listener's or a query's criteria select the driver: four predicates, asked in the
// order type, interface, name, attachments.

bool Record::talksTo(Listener const* l) const
{
    return hasDID(l->did()) && offers(l->iid()) && isNamed(l->prefix()) && carries(l->attributes());
}

bool Record::talksTo(Listener const* l, String const& key, String const& value) const
{
    const Override changed = {key, value};
    return hasDID(l->did()) && isNamed(l->prefix()) && carries(l->attributes(), &changed);
}

bool Record::meets(TOVA_UUID const& did, String const& prefix, Attributes const& attributes) const
{
    return hasDID(did) && isNamed(prefix) && carries(attributes);
}

bool Record::hasDID(TOVA_UUID const& did) const
{
    return !did.isValid() || getDID() == did;
}

bool Record::offers(TOVA_UUID const& iid) const
{
    return !iid.isValid() ||
           (driver_.get() != nullptr && driver_->queryInterface(iid, nullptr).code() == 0);
}

bool Record::isNamed(String const& prefix) const
{
    return getDriverName().startsWith(prefix);
}

bool Record::carries(Attributes const& wanted, Override const* first, Override const* second) const
{
    for (auto const& criterion : wanted) {
        String const* value = nullptr;
        if (first != nullptr && criterion.key == first->key)
            value = &first->value;
        else if (second != nullptr && criterion.key == second->key)
            value = &second->value;
        else
            value = &getAttachment(criterion.key);
        if (!value->startsWith(criterion.value))
            return false;
    }
    return true;
}
