#ifndef DRVSH_SHELL_H
#define DRVSH_SHELL_H

#include "Command.h"
#include "Output.h"
#include "Refusals.h"

#include <drvrepo/CDriverRepository.h>
#include <drvrepo/ScopedListener.h>

#include <memory>
#include <optional>
#include <string>

class Script;
class ShellListener;
class ShellMonitor;

/// Who shall listen to what.
struct ListenerWish
{
    std::string name;
    ListenerTerms terms;
    Refusals refusals;
};

/// The state of the shell: a repository of its own, the listeners made by commands, and where
/// results go. Commands work on it.
///
/// Ownership   drivers belong to the repository alone; the shell keeps no reference on them.
/// Life        when the shell goes, it takes out listeners and drivers without a word.
class Shell
{
public:
    /// `narrator`, which must outlive the shell, tells what happens in it.
    explicit Shell(Narrator& narrator);
    Shell(Shell const&) = delete;
    Shell& operator=(Shell const&) = delete;
    ~Shell();

    Output& output() { return output_; }
    /// The repository; `->` holds its lock.
    TYPPtr<CDriverRepository> const& repository() const { return repository_; }

    /// Shows the library's log lines, debug lines up to a verbosity.
    void showLog(unsigned verbosity);
    void hideLog();

    /// Runs a script. A command that fails is complained of with its place, and ends the script
    /// unless `keepGoing`. Returns whether all went well.
    bool run(Script& script, bool keepGoing);
    /// Runs a line that stands at `place`. Returns whether it went well; if not, that has been
    /// complained of.
    bool runLine(std::string const& line, std::string const& place);
    /// Runs one command. Throws CommandError, which names the command.
    void execute(std::vector<std::string> const& words);

    /// No further command is run.
    void end() { ended_ = true; }
    bool hasEnded() const { return ended_; }

    /// A path as the script that is running means it.
    std::string path(std::string const& path) const;

    /// Adds a driver. Throws CommandError with the library's reason.
    void addDriver(TYPtr<IDriver> const& driver);
    /// The driver of that name. Throws CommandError if there is none.
    TYPPtr<IDriver> driver(std::string const& name) const;
    /// Sets an attachment. Throws CommandError with the library's reason.
    void attach(std::string const& driver, std::string const& key, std::string const& value);

    /// Registers a listener. Throws CommandError with the library's reason.
    void listen(ListenerWish const& wish);
    /// Removes a listener. Returns false if there is none of that name.
    bool unlisten(std::string const& name);
    /// The listeners, in the order in which they are told.
    std::vector<ListenerWish const*> listeners() const;

private:
    struct Listening
    {
        ListenerWish wish;
        std::unique_ptr<ShellListener> listener;
        ScopedListener scope;
    };

    void complain(std::string const& place, std::string const& reasons);

    Output output_;
    std::unique_ptr<ShellMonitor> monitor_;
    TYEventLoop loop_;
    TYPPtr<CDriverRepository> repository_;
    std::vector<Listening> listeners_; // in the order in which they are told
    std::string folder_;               // of the script that is running
    bool ended_ = false;
};

/// Throws CommandError with the library's reason if `result` is a failure.
void check(XCode const& result, String const& reason);

/// What a list of drivers says of one in JSON: its name and its type.
nlohmann::ordered_json driverJson(IDriver const& driver);

/// The identifier that an argument means. Throws CommandError, with the nearest name.
TOVA_UUID identifierArgument(std::string const& text);

/// Attributes from arguments "KEY=VALUE"; a later one for the same key counts. Throws CommandError.
IDriverRepository::Attributes attributeArguments(std::vector<std::string> const& arguments);

/// Refusals from the arguments of --refuse and --say. Throws CommandError.
Refusals refusalArguments(std::vector<std::string> const& rules,
                          std::optional<std::string> const& text);

#endif
