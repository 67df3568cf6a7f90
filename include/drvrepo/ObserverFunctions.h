#ifndef DRVREPO_OBSERVERFUNCTIONS_H
#define DRVREPO_OBSERVERFUNCTIONS_H

#include <functional>
#include <type_traits>
#include <utility>

#include <drvrepo/IDriverRepositoryObserver.h>

/// An observer made of functions, such as lambdas; what has none is accepted in silence. A
/// function is called with the event in its own type. One for what can be refused may also take
/// the place of the reason first and answer with a code:
///
///     ObserverFunctions()
///         .added([](String& error, IDriverRepository::EvDriver const& event) { ... return -1; })
///         .removed([](IDriverRepository::EvDriver const& event) { ... })
///
/// Reentrancy   a function must not be replaced from inside its own call.
class ObserverFunctions : public IDriverRepositoryObserver
{
public:
    /// @{
    /// What observers of a repository are handed.
    using Event = ObserverEvent<IDriverRepository>;
    using EvDriver = IDriverRepository::EvDriver;
    using EvAttachment = IDriverRepository::EvAttachment;
    /// @}

    /// Called when a driver comes.
    template <class F> ObserverFunctions& added(F function)
    {
        added_ = answering<EvDriver>(std::move(function));
        return *this;
    }
    /// Called when a driver goes.
    ObserverFunctions& removed(std::function<void(EvDriver const&)> function)
    {
        removed_ = std::move(function);
        return *this;
    }
    /// Called when an attachment has a new value.
    template <class F> ObserverFunctions& set(F function)
    {
        set_ = answering<EvAttachment>(std::move(function));
        return *this;
    }
    /// Called when an attachment has lost its value.
    ObserverFunctions& cleared(std::function<void(EvAttachment const&)> function)
    {
        cleared_ = std::move(function);
        return *this;
    }

    XCode onDriverAdded(String& error, Event& event) override
    {
        return added_ ? added_(error, static_cast<EvDriver const&>(event)) : XCode();
    }
    void onDriverRemoved(Event& event) override
    {
        if (removed_)
            removed_(static_cast<EvDriver const&>(event));
    }
    XCode onDriverAttachmentSet(String& error, Event& event) override
    {
        return set_ ? set_(error, static_cast<EvAttachment const&>(event)) : XCode();
    }
    void onDriverAttachmentCleared(Event& event) override
    {
        if (cleared_)
            cleared_(static_cast<EvAttachment const&>(event));
    }

private:
    template <class E> using Answer = std::function<XCode(String&, E const&)>;

    template <class E, class F> static Answer<E> answering(F function)
    {
        if constexpr (std::is_invocable_v<F&, String&, E const&>)
            return function;
        else
            return [function = std::move(function)](String&, E const& event) mutable {
                function(event);
                return XCode();
            };
    }

    Answer<EvDriver> added_;
    std::function<void(EvDriver const&)> removed_;
    Answer<EvAttachment> set_;
    std::function<void(EvAttachment const&)> cleared_;
};

#endif
