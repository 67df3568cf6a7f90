#ifndef DRVSH_SEQUENCECOLUMNS_H
#define DRVSH_SEQUENCECOLUMNS_H

#include "Sequence.h"

/// Who takes part in a sequence, side by side, and where on the picture.
class SequenceColumns
{
public:
    struct Column
    {
        std::string name;
        std::string detail; ///< What else its head says.
        char const* style;  ///< Of its head.
        double x = 0;       ///< Of its middle.
    };

    explicit SequenceColumns(Sequence const& sequence);

    std::vector<Column> const& all() const { return columns_; }
    /// The one who gives the commands stands first.
    Column const& shell() const { return columns_.front(); }
    /// Who tells what a step tells first: the registry or a channel group.
    Column const& target(SequenceStep const& step) const;
    Column const& teller(Notice const& notice) const;
    Column const& hearer(Notice const& notice) const;
    /// Where the last one ends.
    double width() const;

private:
    void addListeners(Sequence const& sequence);
    void addGroups(Sequence const& sequence);
    void addHearers(Sequence const& sequence, std::string const& group);
    void place(Sequence const& sequence);
    std::size_t indexOf(std::string const& group, std::string const& name) const;
    void keepApart(std::size_t left, std::size_t right, double distance);

    std::vector<Column> columns_;
    // Of each column: the group that it is or observes, and the observer or listener; the registry
    // has neither.
    std::vector<std::pair<std::string, std::string>> keys_;
    std::vector<std::vector<std::pair<std::size_t, double>>> distances_; // from columns to the left
};

// The texts of the picture, which decide how far the columns stand apart.

/// What the arrow of a command says, line by line.
std::vector<std::string> commandLines(SequenceStep const& step);
/// What the arrow back says if the command failed; else nothing.
std::vector<std::string> failureLines(SequenceStep const& step);
/// What the arrow to the hearer says.
std::string newsLabel(Notice const& notice);
/// What the arrow back from a refuser says.
std::string refusalLabel(Refusal const& refusal);
/// A text cut into lines of at most `most` characters, at blanks where there are some.
std::vector<std::string> wrapped(std::string const& text, std::size_t most);

#endif
