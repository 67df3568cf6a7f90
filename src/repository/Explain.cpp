#include <new>

#include "foundation/Texts.h"
#include "repository/Explainer.h"
#include "repository/Operation.h"

// What drvrepo/Explain.h offers: finds driver and listener, and lets the Explainer look at them.

namespace
{

using Explainer = CDriverRepository::Explainer;

XCode failListener(String& error, String const& name)
{
    return failWith(error, [&] {
        error.format("Driver repository observer '%s' does not exist", name.cString());
    });
}

/// Runs `look`, which returns a result that may be a failure; success empties `error`.
template <class Look> XCode answer(String& error, Look look)
{
    XCode rc;
    try {
        rc = look();
    } catch (std::bad_alloc const&) {
        return XCode::OUT_OF_MEMORY(error);
    }
    if (rc.code() == 0)
        error = String::EMPTY();
    return rc;
}

} // namespace

template <class Look>
XCode Explainer::lookAtPair(String& error, CDriverRepository const& repository,
                            String const& driver, String const& listener, Look look)
{
    const Operation operation(repository);
    const String driverName(driver);
    const String listenerName(listener);
    return answer(error, [&] {
        DriverWrapper const* const record = repository.recordOf(driverName);
        if (record == nullptr)
            return failUnknown(error, driverName);
        Listener const* const l = listenerNamed(repository, listenerName);
        if (l == nullptr)
            return failListener(error, listenerName);
        look(Explainer(*record, *l));
        if (record->gone_) // the driver may have called in
            return failUnknown(error, driverName);
        return l->gone_ ? failListener(error, listenerName) : XCode();
    });
}

XCode Explainer::lookAtDriver(String& error, CDriverRepository const& repository,
                              String const& driver, TOVA_List<Explanation>& explanations)
{
    const Operation operation(repository);
    const String name(driver);
    return answer(error, [&] {
        DriverWrapper const* const record = repository.recordOf(name);
        if (record == nullptr)
            return failUnknown(error, name);
        const Stamp began = repository.clock_;
        TOVA_List<Explanation> found;
        for (ListenerWrapper const& entry : record->listeners_)
            if (entry->stamp_ <= began)
                append(found, *record, *entry.listener());
        for (ListenerWrapper const& entry : repository.listeners_)
            if (entry->stamp_ <= began &&
                record->find(entry.listener()) == record->listeners_.end())
                append(found, *record, *entry.listener());
        if (record->gone_)
            return failUnknown(error, name);
        explanations.swap(found);
        return XCode();
    });
}

XCode Explainer::lookAtListener(String& error, CDriverRepository const& repository,
                                String const& listener, TOVA_List<Explanation>& explanations)
{
    const Operation operation(repository);
    const String name(listener);
    return answer(error, [&] {
        Listener const* const l = listenerNamed(repository, name);
        if (l == nullptr)
            return failListener(error, name);
        const Stamp began = repository.clock_;
        TOVA_List<Explanation> found;
        for (DriverWrapper const* at = repository.oldest_; at != nullptr; at = at->newer_)
            if (at->stamp_ <= began)
                append(found, *at, *l);
        if (l->gone_)
            return failListener(error, name);
        explanations.swap(found);
        return XCode();
    });
}

CDriverRepository::Listener const* Explainer::listenerNamed(CDriverRepository const& repository,
                                                            String const& name)
{
    for (ListenerWrapper const& at : repository.listeners_)
        if (!at->gone_ && at->name_ == name)
            return at.listener();
    return nullptr;
}

/// Adds what is there and still is after the look.
void Explainer::append(TOVA_List<Explanation>& explanations, DriverWrapper const& record,
                       Listener const& listener)
{
    if (record.gone_ || listener.gone_)
        return;
    Explanation explanation;
    Explainer(record, listener).explain(explanation);
    if (!record.gone_ && !listener.gone_)
        explanations.append(std::move(explanation));
}

XCode explain(String& error, CDriverRepository const& repository, String const& driver,
              String const& listener, Explanation& explanation)
{
    return Explainer::lookAtPair(error, repository, driver, listener, [&](Explainer const& pair) {
        Explanation found;
        pair.explain(found);
        explanation = std::move(found);
    });
}

XCode explain(String& error, CDriverRepository const& repository, String const& driver,
              String const& listener, String const& key, String const& value, WhatIf& whatIf)
{
    const String ownKey(key);
    const String ownValue(value);
    return Explainer::lookAtPair(error, repository, driver, listener, [&](Explainer const& pair) {
        WhatIf found;
        pair.explain(found, ownKey, ownValue);
        whatIf = std::move(found);
    });
}

XCode explainDriver(String& error, CDriverRepository const& repository, String const& driver,
                    TOVA_List<Explanation>& explanations)
{
    return Explainer::lookAtDriver(error, repository, driver, explanations);
}

XCode explainListener(String& error, CDriverRepository const& repository, String const& listener,
                      TOVA_List<Explanation>& explanations)
{
    return Explainer::lookAtListener(error, repository, listener, explanations);
}
