#include "repository/Explainer.h"
#include "repository/WrapperMatching.h"

using Explainer = CDriverRepository::Explainer;

// One driver and one listener: the criteria, the entry, and what a change of an attachment would
// tell. AttachmentWalks, WrapperJoining and WrapperLeaving do what is foretold here.

Explainer::Explainer(DriverWrapper const& record, Listener const& listener)
    : record_(record), listener_(listener), hasType_(record.hasDID(listener)),
      offers_(record.offers(listener)), isNamed_(record.isNamed(listener.prefix()))
{}

void Explainer::explain(Explanation& explanation) const
{
    describe(explanation, nullptr);
}

void Explainer::explain(WhatIf& whatIf, String const& key, String const& value) const
{
    const Override changed = {key, value};
    describe(whatIf, &changed);
    const bool wasActive = whatIf.state == Explanation::ACTIVE;
    whatIf.outcome = wasActive ? WhatIf::STAYS_IN : WhatIf::STAYS_OUT;
    const String current(record_.getAttachment(key));
    if (whatIf.count <= 0 || value == current)
        return;
    if (!current.isEmpty() && wasActive)
        clear(whatIf, {key, current});
    if (!value.isEmpty())
        set(whatIf, changed);
}

void Explainer::describe(Explanation& explanation, Override const* changed) const
{
    explanation.driver = record_.getDriverName();
    explanation.listener = listener_.name();
    addCriteria(explanation, changed);
    explanation.selected = offers_ && suits(changed);
    const DriverWrapper::Entries::ConstIterator entry = record_.find(&listener_);
    if (entry != record_.listeners_.end()) {
        explanation.state = entry->isActive() ? Explanation::ACTIVE : Explanation::INACTIVE;
        explanation.count = entry->getRefCount();
    }
    if (listener_.delegate() != nullptr)
        explanation.delegate = listener_.delegate()->observer() != nullptr ? Explanation::HEARING
                                                                           : Explanation::STOPPED;
    explanation.priority = listener_.priority();
    explanation.rightOfVeto = listener_.hasRightOfVeto();
    explanation.wantsSnapshot = listener_.wantsSnapshot();
}

void Explainer::addCriteria(Explanation& explanation, Override const* changed) const
{
    using Criterion = Explanation::Criterion;
    Criterion type;
    type.kind = Criterion::DRIVER_TYPE;
    type.holds = hasType_;
    type.wantedId = listener_.did();
    type.metId = record_.getDID();
    explanation.criteria.append(std::move(type));

    Criterion face;
    face.kind = Criterion::INTERFACE;
    face.holds = offers_;
    face.wantedId = listener_.iid();
    if (offers_)
        face.metId = listener_.iid();
    explanation.criteria.append(std::move(face));

    Criterion name;
    name.kind = Criterion::NAME;
    name.holds = isNamed_;
    name.wanted = listener_.prefix();
    name.met = explanation.driver;
    explanation.criteria.append(std::move(name));

    for (auto const& wanted : listener_.attributes()) {
        Criterion attachment;
        attachment.kind = Criterion::ATTACHMENT;
        attachment.key = wanted.key;
        attachment.wanted = wanted.value;
        attachment.met = changed != nullptr && wanted.key == changed->key
                             ? changed->value
                             : record_.getAttachment(wanted.key);
        attachment.holds = attachment.met.startsWith(wanted.value);
        explanation.criteria.append(std::move(attachment));
    }
}

bool Explainer::suits(Override const* first, Override const* second) const
{
    return hasType_ && isNamed_ && record_.carries(listener_.attributes(), first, second);
}

/// The old value goes: the listener leaves if it was selected through it.
void Explainer::clear(WhatIf& whatIf, Override const& old) const
{
    const Override none = {old.key, String::EMPTY()};
    if (suits(&old) && !(offers_ && suits(&none))) {
        tellLeaving(whatIf, old);
        whatIf.outcome = WhatIf::LEAVES;
    } else {
        tell(whatIf, Listener::ATTACHMENT_CLEARED, old.key, old.value);
    }
}

/// The new value comes: a listener joins if it is selected through it.
void Explainer::set(WhatIf& whatIf, Override const& changed) const
{
    const Override none = {changed.key, String::EMPTY()};
    if (whatIf.outcome == WhatIf::STAYS_IN) {
        tell(whatIf, Listener::ATTACHMENT_SET, changed.key, changed.value);
    } else if (!suits(&none) && offers_ && suits(&changed)) {
        tellJoining(whatIf, changed);
        whatIf.outcome = whatIf.outcome == WhatIf::LEAVES ? WhatIf::REJOINS : WhatIf::JOINS;
    }
}

/// The final snapshot sees the changed attachment at its old value.
void Explainer::tellLeaving(WhatIf& whatIf, Override const& old) const
{
    IDriverRepository::Attributes const& attachments = record_.getAttachments();
    for (auto at = attachments.end(); listener_.wantsSnapshot() && at != attachments.begin();) {
        --at;
        const Override without = {at->key, String::EMPTY()};
        if (!at->value.isEmpty() && suits(&without, &old))
            tell(whatIf, Listener::ATTACHMENT_CLEARED, at->key, at->value);
    }
    tell(whatIf, Listener::DRIVER_REMOVED, String::EMPTY(), String::EMPTY());
}

/// The initial snapshot sees the new value, and passes it over: nobody joins through an attachment
/// without which it would be selected.
void Explainer::tellJoining(WhatIf& whatIf, Override const& changed) const
{
    tell(whatIf, Listener::DRIVER_ADDED, String::EMPTY(), String::EMPTY());
    for (auto const& attachment : record_.getAttachments()) {
        const Override without = {attachment.key, String::EMPTY()};
        if (listener_.wantsSnapshot() && !attachment.value.isEmpty() && suits(&without, &changed))
            tell(whatIf, Listener::ATTACHMENT_SET, attachment.key, attachment.value);
    }
}

void Explainer::tell(WhatIf& whatIf, Notification kind, String const& key,
                     String const& value) const
{
    if (whatIf.delegate == Explanation::NO_DELEGATE)
        return;
    WhatIf::Notification notification;
    notification.kind = kind;
    notification.key = key;
    notification.value = value;
    whatIf.told.append(std::move(notification));
}
