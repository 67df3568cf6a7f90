#ifndef REPOSITORY_EXPLAINER_H
#define REPOSITORY_EXPLAINER_H

#include <drvrepo/DriverWrapper.h>
#include <drvrepo/Explain.h>

/// Looks at one driver and one listener without touching them. The driver is asked once for what
/// the criteria need; an attachment can't change these answers.
///
/// Life   within an operation of the repository, which keeps record and listener.
class CDriverRepository::Explainer
{
public:
    Explainer(DriverWrapper const& record, Listener const& listener);

    /// As they stand.
    void explain(Explanation& explanation) const;
    /// As they would stand if attachment `key` had `value`, and what would be told.
    void explain(WhatIf& whatIf, String const& key, String const& value) const;

    // For the functions of drvrepo/Explain.h: find by name, look, and answer what is still so.

    template <class Look>
    static XCode lookAtPair(String& error, CDriverRepository const& repository,
                            String const& driver, String const& listener, Look look);
    static XCode lookAtDriver(String& error, CDriverRepository const& repository,
                              String const& driver, TOVA_List<Explanation>& explanations);
    static XCode lookAtListener(String& error, CDriverRepository const& repository,
                                String const& listener, TOVA_List<Explanation>& explanations);

private:
    using Override = DriverWrapper::Override;
    using Notification = Listener::Notification;

    static Listener const* listenerNamed(CDriverRepository const& repository, String const& name);
    static void append(TOVA_List<Explanation>& explanations, DriverWrapper const& record,
                       Listener const& listener);

    void describe(Explanation& explanation, Override const* changed) const;
    void addCriteria(Explanation& explanation, Override const* changed) const;
    /// The criteria, the interface excepted, with up to two attachments at other values.
    bool suits(Override const* first, Override const* second = nullptr) const;

    // The change of an attachment, told to a listener: as the walks of AttachmentWalks do.
    void clear(WhatIf& whatIf, Override const& old) const;
    void set(WhatIf& whatIf, Override const& changed) const;
    void tellLeaving(WhatIf& whatIf, Override const& old) const;
    void tellJoining(WhatIf& whatIf, Override const& changed) const;
    void tell(WhatIf& whatIf, Notification kind, String const& key, String const& value) const;

    DriverWrapper const& record_;
    Listener const& listener_;
    const bool hasType_;
    const bool offers_;
    const bool isNamed_;
};

#endif
