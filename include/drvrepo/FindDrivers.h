#ifndef DRVREPO_FINDDRIVERS_H
#define DRVREPO_FINDDRIVERS_H

#include <drvrepo/ListenerTerms.h>

// Queries whose results a range-for walks:
//
//     for (TYPPtr<IDriver> const& port : findDrivers(repository, ListenerTerms().prefix("fxs")))
//         use(*port);
//
// Each takes the repository's lock for itself; hold it over the loop as well where other threads
// use the drivers. Failure: std::bad_alloc.

/// The drivers that meet all criteria, in the order of adding. Each holds a reference.
inline TOVA_List<TYPPtr<IDriver>> findDrivers(IDriverRepository& repository,
                                              ListenerTerms const& terms = ListenerTerms())
{
    const LockScope held(repository.getLock());
    TOVA_List<TYPPtr<IDriver>> found;
    repository.getDrivers(terms.did(), terms.prefix(), terms.attributes(), found);
    if (terms.iid() == TOVA_UUID::INVALID())
        return found;
    for (auto at = found.begin(); at != found.end();)
        if ((**at).queryInterface(terms.iid(), nullptr).code() != 0)
            at = found.remove(at);
        else
            ++at;
    return found;
}

/// The interface `T` of every driver that meets the criteria and has it; the criteria's own
/// interface is not asked for. Each holds a reference.
template <class T>
TOVA_List<TYPPtr<T>> findInterfaces(IDriverRepository& repository,
                                    ListenerTerms const& terms = ListenerTerms())
{
    const LockScope held(repository.getLock());
    TOVA_List<TYPPtr<IUnknown>> found;
    repository.getDriverInterfaces(terms.did(), terms.prefix(), terms.attributes(), T::IID(),
                                   found);
    TOVA_List<TYPPtr<T>> typed;
    for (TYPPtr<IUnknown>& at : found)
        typed.append(TYPPtr<T>(static_cast<T*>(at.detach())));
    return typed;
}

#endif
