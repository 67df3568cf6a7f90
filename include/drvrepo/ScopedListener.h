#ifndef DRVREPO_SCOPEDLISTENER_H
#define DRVREPO_SCOPEDLISTENER_H

#include <memory>
#include <new>
#include <utility>

#include <drvrepo/ListenerTerms.h>
#include <drvrepo/ObserverDelegate.h>
#include <drvrepo/ObserverFunctions.h>

/// A registration that ends with its scope: first notifications stop, then the listener is removed
/// by its name. So the observer is never called when the scope has ended, and hears no farewells
/// from it.
///
/// Ownership   holds a reference on the repository, whose event loop must live longer. An observer
///             given by reference must live until the end of the scope; one given for good lives
///             as long as anybody may call it.
/// Reentrancy  may be stopped, moved and destroyed from inside any call, its own observer's too.
/// Locking     takes the repository's lock for each operation.
/// Failure     what the monitor throws while a scope ends ends the program.
/// The name belongs to the scope: nobody else should remove it and give it to another listener.
class ScopedListener
{
public:
    /// @{
    /// Short for what a repository calls.
    using Observer = IDriverRepositoryObserver;
    using Delegate = ObserverDelegate<IDriverRepository>;
    /// @}

    /// Listens to nothing.
    ScopedListener() = default;
    /// Takes over what the other has.
    ScopedListener(ScopedListener&&) noexcept = default;
    /// Ends what it has, and takes over.
    ScopedListener& operator=(ScopedListener&& other) noexcept
    {
        ScopedListener taken(std::move(other));
        std::swap(registration_, taken.registration_);
        return *this;
    }
    ~ScopedListener() { stop(); }

    /// Ends what it has, and registers an observer; see IDriverRepository. After a failure it
    /// listens to nothing.
    XCode start(String& error, IDriverRepository& repository, String const& name,
                ListenerTerms const& terms, Observer& observer)
    {
        return startWith(error, repository, name, terms, [&] { return new Delegate(&observer); });
    }
    /// The same with an observer that is given for good.
    XCode start(String& error, IDriverRepository& repository, String const& name,
                ListenerTerms const& terms, std::unique_ptr<Observer> observer)
    {
        return startWith(error, repository, name, terms,
                         [&] { return new OwningDelegate(std::move(observer)); });
    }
    /// The same with functions; it keeps a copy of its own.
    XCode start(String& error, IDriverRepository& repository, String const& name,
                ListenerTerms const& terms, ObserverFunctions functions)
    {
        return startWith(error, repository, name, terms, [&] {
            return new OwningDelegate(std::make_unique<ObserverFunctions>(std::move(functions)));
        });
    }

    /// Stops notifications and removes the listener.
    void stop()
    {
        if (const Owner ended = std::exchange(registration_, nullptr))
            ended->end(SILENTLY);
    }
    /// Removes the listener, which first hears of the going of every driver.
    void leave()
    {
        if (const Owner ended = std::exchange(registration_, nullptr))
            ended->end(WITH_FAREWELLS);
    }

    /// Whether it has a registration that it did not end.
    bool isListening() const { return registration_ != nullptr && registration_->repository; }

private:
    enum Ending { SILENTLY, WITH_FAREWELLS };

    /// Keeps the observer as long as somebody may call it.
    class OwningDelegate final : public Delegate
    {
    public:
        explicit OwningDelegate(std::unique_ptr<Observer> observer)
            : Delegate(observer.get()), observer_(std::move(observer))
        {}

    private:
        const std::unique_ptr<Observer> observer_;
    };

    /// Shared with an operation under way, so that the scope may end inside it.
    struct Registration
    {
        void end(Ending ending)
        {
            if (!repository)
                return;
            const LockScope held(repository.get()->getLock());
            if (ending == SILENTLY)
                delegate.get()->stopNotifications();
            repository.get()->removeDriverRepositoryObserver(name);
            delegate.get()->stopNotifications();
        }
        /// The repository does not know the listener any more.
        void fail()
        {
            delegate.reset();
            repository.reset();
        }

        TYPtr<IDriverRepository> repository;
        TYPtr<Delegate> delegate;
        String name;
    };
    using Owner = std::shared_ptr<Registration>;

    template <class MakeDelegate>
    XCode startWith(String& error, IDriverRepository& repository, String const& name,
                    ListenerTerms const& terms, MakeDelegate makeDelegate)
    {
        stop();
        Owner made;
        try {
            made = std::make_shared<Registration>();
            made->delegate.reset(makeDelegate());
        } catch (std::bad_alloc const&) {
            return XCode::OUT_OF_MEMORY(error);
        }
        made->repository = TYPtr<IDriverRepository>::share(&repository);
        made->name = name;
        registration_ = made;
        const LockScope held(repository.getLock());
        try {
            XCode rc = terms.listen(error, repository, made->name, made->delegate.get());
            if (rc.code() != 0)
                made->fail();
            return rc;
        } catch (...) {
            made->fail();
            throw;
        }
    }

    Owner registration_;
};

#endif
