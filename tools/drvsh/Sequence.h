#ifndef DRVSH_SEQUENCE_H
#define DRVSH_SEQUENCE_H

#include "Narrator.h"

#include <optional>
#include <string>
#include <vector>

/// A command and what it caused.
struct SequenceStep
{
    std::string caption; ///< What the script said before it.
    std::string command; ///< As it was written.
    std::vector<Notice> notices;
    std::optional<std::string> failure; ///< Why it failed.
};

/// Keeps what happens, to be drawn as a sequence diagram.
///
/// A command is kept if somebody was told something, or if it failed, or if all are wanted. What
/// the script says stands as a caption above the next command that is kept, unless an empty text
/// and another caption come between, or a result that it was about.
class Sequence : public Narrator
{
public:
    /// Whether every command is kept.
    void showCommands(bool all) { showCommands_ = all; }

    void came(Hearer const& hearer) override;
    void command(std::string const& text) override;
    void said(std::string const& text) override;
    void result(Result const& result) override;
    void told(Notice const& notice) override;
    void failed(std::string const& text) override;
    void complained(Complaint const& complaint) override;

    std::vector<SequenceStep> const& steps() const { return steps_; }
    /// All who could be told something, in the order in which they came.
    std::vector<Hearer> const& hearers() const { return hearers_; }

private:
    SequenceStep& step();

    std::vector<Hearer> hearers_;
    std::vector<SequenceStep> steps_;
    std::string caption_; // for the next step
    bool saying_ = false; // whether the caption goes on
    std::string command_; // the one that runs
    bool kept_ = false;   // whether it has a step
    bool showCommands_ = false;
};

/// Marks, for each of a step's notices, whether it takes back what the same one was told before in
/// this step: so it is after a refusal that counts.
std::vector<bool> rollback(std::vector<Notice> const& notices);

#endif
