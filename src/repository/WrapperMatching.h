#ifndef REPOSITORY_WRAPPERMATCHING_H
#define REPOSITORY_WRAPPERMATCHING_H

#include <drvrepo/DriverWrapper.h>

// Whether a listener's or a query's criteria select the driver: four predicates, asked in the
// order type, interface, name, attachments. Every walk asks them of everybody it visits.

inline bool CDriverRepository::DriverWrapper::isOfType(TOVA_UUID const& did) const
{
    return (driver_.get() != nullptr ? driver_.get()->getDID() : TOVA_UUID::INVALID()) == did;
}

inline bool CDriverRepository::DriverWrapper::hasDID(Listener const& l) const
{
    return !l.wantsType() || isOfType(l.did());
}

inline bool CDriverRepository::DriverWrapper::offers(Listener const& l) const
{
    return !l.wantsInterface() || (driver_.get() != nullptr &&
                                   driver_.get()->queryInterface(l.iid(), nullptr).code() == 0);
}

inline bool CDriverRepository::DriverWrapper::isNamed(String const& prefix) const
{
    return (driver_.get() != nullptr ? driver_.get()->getDriverName() : String::EMPTY())
        .startsWith(prefix);
}

inline bool CDriverRepository::DriverWrapper::carries(Attributes const& wanted,
                                                      Override const* first,
                                                      Override const* second) const
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

inline bool CDriverRepository::DriverWrapper::selects(Listener const& l) const
{
    return hasDID(l) && offers(l) && isNamed(l.prefix()) &&
           (!l.wantsAttributes() || carries(l.attributes()));
}

#endif
