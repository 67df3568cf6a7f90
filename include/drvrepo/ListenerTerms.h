#ifndef DRVREPO_LISTENERTERMS_H
#define DRVREPO_LISTENERTERMS_H

#include <cstdint>

#include <drvrepo/IDriverRepository.h>

/// What a listener, or a query, wants: criteria, and for a listener priority and rights. At first
/// every driver, priority 0, no right of veto, no snapshots. Written as
///
///     ListenerTerms().prefix("e1t1").attribute("clock", "master").priority(5).veto()
class ListenerTerms
{
public:
    /// Keys, and what their values begin with.
    using Attributes = IDriverRepository::Attributes;

    /// Only drivers of that type; INVALID: any.
    ListenerTerms& did(TOVA_UUID const& did) { return did_ = did, *this; }
    /// Only drivers that offer that interface; INVALID: any.
    ListenerTerms& iid(TOVA_UUID const& iid) { return iid_ = iid, *this; }
    /// Only drivers whose name begins so.
    ListenerTerms& prefix(String const& prefix) { return prefix_ = prefix, *this; }
    /// Only drivers whose attachment `key` begins so; one of several of these. Failure:
    /// std::bad_alloc.
    ListenerTerms& attribute(String const& key, String const& value)
    {
        attributes_.put(key, value);
        return *this;
    }
    /// Lower values are told first.
    ListenerTerms& priority(std::uint32_t priority) { return priority_ = priority, *this; }
    /// Refusals count.
    ListenerTerms& veto(bool veto = true) { return veto_ = veto, *this; }
    /// A driver's attachments are told when it comes and goes.
    ListenerTerms& snapshot(bool snapshot = true) { return snapshot_ = snapshot, *this; }

    /// @{
    /// What was set.
    TOVA_UUID const& did() const { return did_; }
    TOVA_UUID const& iid() const { return iid_; }
    String const& prefix() const { return prefix_; }
    Attributes const& attributes() const { return attributes_; }
    std::uint32_t priority() const { return priority_; }
    bool hasRightOfVeto() const { return veto_; }
    bool wantsSnapshot() const { return snapshot_; }
    /// @}

    /// Registers an observer, or a delegate, under these terms; see
    /// IDriverRepository::addDriverRepositoryObserver. The caller holds the repository's lock.
    template <class Observer>
    XCode listen(String& error, IDriverRepository& repository, String const& name,
                 Observer* observer) const
    {
        return repository.addDriverRepositoryObserver(error, name, did_, iid_, prefix_, attributes_,
                                                      priority_, veto_, snapshot_, observer);
    }

private:
    TOVA_UUID did_;
    TOVA_UUID iid_;
    String prefix_;
    Attributes attributes_;
    std::uint32_t priority_ = 0;
    bool veto_ = false;
    bool snapshot_ = false;
};

#endif
