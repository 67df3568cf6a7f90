#ifndef DRVSH_COMPLETION_H
#define DRVSH_COMPLETION_H

#include <string>
#include <vector>

class Shell;

/// What the word that is being typed may become.
struct Completion
{
    struct Candidate
    {
        std::string text;    ///< The whole word, as it is meant.
        bool isWhole = true; ///< Whether another word can follow; else more of this one does.
        bool operator<(Candidate const& other) const { return text < other.text; }
        bool operator==(Candidate const& other) const { return text == other.text; }
    };

    std::size_t start = 0;             ///< Where in the line the word begins.
    std::string typed;                 ///< What is there of it, as it is meant.
    std::vector<Candidate> candidates; ///< By the alphabet.
};

/// Completes the last word of a line that ends at the cursor: a command, an option, or a value by
/// the name that its argument has in the help: DRIVER, LISTENER, GROUP, OBSERVER, KEY, KEY=VALUE,
/// UUID|NAME, PREFIX, RULE, FILE.
Completion complete(Shell& shell, std::string const& line);

/// What to put in the word's place: the only candidate, in quotes if it needs them, and the blank
/// behind it; or what all candidates have in common, with a quote that is left open if it needs
/// one; or nothing (the empty text) if that is no more than what is typed.
std::string insertion(Completion const& completion);

#endif
