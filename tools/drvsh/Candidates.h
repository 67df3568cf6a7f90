#ifndef DRVSH_CANDIDATES_H
#define DRVSH_CANDIDATES_H

#include "Completion.h"

/// Collects what a word may become: of all that is offered, what begins as it is typed.
class Candidates
{
public:
    explicit Candidates(std::string typed) : typed_(std::move(typed)) {}

    void add(std::string const& text, bool isWhole = true);
    /// Offers all values that the help calls `kind`, each behind `option` ("--name=", or nothing).
    /// `given` are the arguments that stand before; `typed` is what there is of the value.
    void addKind(Shell& shell, std::string const& kind, std::vector<std::string> const& given,
                 std::string const& option, std::string const& typed);

    bool isEmpty() const { return found_.empty(); }
    std::vector<Completion::Candidate> sorted() const;

private:
    std::string typed_;
    std::vector<Completion::Candidate> found_;
};

#endif
