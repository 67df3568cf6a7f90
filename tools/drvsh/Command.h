#ifndef DRVSH_COMMAND_H
#define DRVSH_COMMAND_H

#include "Arguments.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

class Shell;

/// Why a command failed: one reason a line.
class CommandError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// One run of a command. Its fields take the arguments.
class Command
{
public:
    Command() = default;
    Command(Command const&) = delete;
    Command& operator=(Command const&) = delete;
    virtual ~Command() = default;

    /// Declares what the command takes; the fields given must be the command's own.
    virtual void declare(Arguments& arguments) = 0;
    /// Does it. Throws CommandError.
    virtual void run(Shell& shell) = 0;
};

/// A command as the shell knows it.
struct CommandEntry
{
    std::string name;    ///< One word or two: "echo", "driver add".
    std::string summary; ///< What it does, for the list of commands and its own help.
    std::string example; ///< A line that shows how to use it.
    std::unique_ptr<Command> (*make)();
};

template <class C>
CommandEntry commandEntry(std::string const& name, std::string const& summary,
                          std::string const& example = "")
{
    return {name, summary, example, [] { return std::unique_ptr<Command>(new C); }};
}

using CommandEntries = std::vector<CommandEntry>;

/// All commands, in the order in which `help` shows them.
CommandEntries const& allCommands();

/// The command that the first words name; `used` becomes how many words its name has. Throws
/// CommandError, with the nearest name, if there is none.
CommandEntry const& findCommand(std::vector<std::string> const& words, std::size_t& used);

// The groups of commands, each in a file of its own.
void addGeneralCommands(CommandEntries& entries);
void addDriverCommands(CommandEntries& entries);
void addNameCommands(CommandEntries& entries);
void addLoadCommand(CommandEntries& entries);
void addListenCommands(CommandEntries& entries);
void addAttachmentCommands(CommandEntries& entries);
void addFindCommand(CommandEntries& entries);
void addGroupCommands(CommandEntries& entries);
void addExplainCommands(CommandEntries& entries);
void addInfoCommand(CommandEntries& entries);

#endif
