#ifndef DRVSH_OUTPUT_H
#define DRVSH_OUTPUT_H

#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// What the shell says, and the only place that writes it: results and the transcript of what
/// listeners hear on one stream, errors and warnings on the other.
///
/// The transcript stands indented under the command that caused it:
///
///     > attach "e1t1 1" clock master
///       watcher: e1t1 1: set clock=master
///
/// So that results can be read by other programs, a command is shown only when something is to
/// stand under it, unless every command is to be shown.
class Output
{
public:
    Output(std::ostream& out, std::ostream& err) : out_(out), err_(err) {}

    /// Whether every command is shown, also those with nothing to stand under them.
    void showCommands(bool all) { showCommands_ = all; }
    /// From here on everything is caused by the command of that text.
    void beginCommand(std::string const& text);

    /// A line of a command's result.
    void line(std::string const& text);
    /// Names and values, the values in one column. Without a value the name stands alone.
    void table(std::vector<std::pair<std::string, std::string>> const& rows);
    /// What the one called `name` was told, or answered.
    void heard(std::string const& name, std::string const& text);
    /// A line of the log.
    void logged(int level, std::string const& text);
    /// How a command ended, where that is part of the transcript.
    void outcome(std::string const& text);

    /// An error or a warning. Everything written before stands before it.
    void complain(std::string const& text);
    /// Whether everything could be written so far.
    bool good() const { return out_.good(); }

    /// Makes room for the name of an observer in the column of those who hear something, until it
    /// is removed. `observer` is the address that the library shows for it.
    void addName(std::string const& name, void const* observer);
    void removeName(std::string const& name, void const* observer);
    /// `text` with the names of observers in place of their addresses, which differ from run to
    /// run and say nothing.
    std::string named(std::string const& text) const;

private:
    void indented(std::string const& text);

    std::ostream& out_;
    std::ostream& err_;
    std::string command_; // not yet shown
    bool showCommands_ = false;
    std::multiset<std::size_t> widths_;
    std::map<std::string, std::string> names_; // of observers, by address
};

#endif
