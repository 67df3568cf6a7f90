#ifndef DRVSH_SHELLLISTENER_H
#define DRVSH_SHELLLISTENER_H

#include "Notice.h"
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
    /// `self` says how it is registered.
    ShellListener(Output& output, Hearer const& self, Refusals const& refusals);
    ShellListener(ShellListener const&) = delete;
    ShellListener& operator=(ShellListener const&) = delete;
    ~ShellListener() override;

    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) override;
    void onDriverRemoved(ObserverEvent<IDriverRepository>& event) override;
    XCode onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event) override;
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) override;

private:
    XCode tell(Notice notice, bool refused, String& error);

    Output& output_;
    Hearer self_;
    Refusals refusals_;
};

#endif
