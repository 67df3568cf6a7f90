#ifndef DRVSH_SHELLLISTENER_H
#define DRVSH_SHELLLISTENER_H

#include "Refusals.h"

#include <drvrepo/IDriverRepositoryObserver.h>

class Output;

/// A listener of the shell: writes what it hears into the transcript, and refuses what it is told
/// to refuse.
///
/// Ownership   the shell's; it must be removed from the repository before it is destroyed.
class ShellListener : public IDriverRepositoryObserver
{
public:
    /// `veto` is whether it is registered with the right of veto, so that its refusals count.
    ShellListener(Output& output, std::string const& name, Refusals const& refusals, bool veto);
    ShellListener(ShellListener const&) = delete;
    ShellListener& operator=(ShellListener const&) = delete;
    ~ShellListener() override;

    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) override;
    void onDriverRemoved(ObserverEvent<IDriverRepository>& event) override;
    XCode onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event) override;
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) override;

private:
    XCode refuse(String& error, std::string const& what);

    Output& output_;
    std::string name_;
    Refusals refusals_;
    bool veto_;
};

/// How the transcript shows the reason of a refusal: '("REASON")', and that it doesn't count where
/// the refuser has no right of veto.
std::string refusalText(std::string const& reason, bool veto);

#endif
