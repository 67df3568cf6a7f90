#ifndef DRVSH_TEXTNARRATOR_H
#define DRVSH_TEXTNARRATOR_H

#include "Narrator.h"

#include <ostream>
#include <set>
#include <string>

/// Tells by text: results and the transcript of what is heard on one stream, errors and warnings on
/// the other.
///
/// The transcript stands indented under the command that caused it:
///
///     > attach "e1t1 1" clock master
///       watcher: e1t1 1: set clock=master
///
/// So that results can be read by other programs, a command is shown only when something is to
/// stand under it, unless told otherwise.
class TextNarrator : public Narrator
{
public:
    /// The streams must outlive it; both may be the same.
    TextNarrator(std::ostream& out, std::ostream& err) : out_(out), err_(err) {}

    /// Which commands are shown: those with something to stand under them, every one, or none, for
    /// they stand on the screen already.
    enum class Commands { Causing, All, None };
    void showCommands(Commands which) { showCommands_ = which; }
    /// On which of the streams, that is terminals, colours help the eye.
    void useColours(bool out, bool err);

    bool good() const override { return out_.good(); }
    void came(Hearer const& hearer) override { widths_.insert(hearer.name.size()); }
    void left(Hearer const& hearer) override;
    void command(std::string const& text) override;
    void said(std::string const& text) override;
    void remarked(std::string const& text) override { said(text); }
    void result(Result const& result) override;
    void told(Notice const& notice) override;
    void logged(int level, std::string const& text) override;
    void failed(std::string const& text) override;
    void complained(Complaint const& complaint) override;

private:
    void indented(char const* colour, std::string const& text);
    void showCommand();

    std::ostream& out_;
    std::ostream& err_;
    bool coloursOut_ = false;
    bool coloursErr_ = false;
    std::string command_; // not yet shown
    Commands showCommands_ = Commands::Causing;
    std::multiset<std::size_t> widths_; // of the names of those who may be told something
};

#endif
