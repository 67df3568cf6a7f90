#ifndef DRVSH_WORDS_H
#define DRVSH_WORDS_H

#include <stdexcept>
#include <string>
#include <vector>

/// A command line, cut into words.
struct CommandLine
{
    std::vector<std::string> words;
    std::string text; ///< The line as it was written, without blanks around it and the comment.
};

/// A line whose quotes are not closed, or that ends in a backslash.
class QuotingError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Cuts a line into words as a POSIX shell does: words are separated by blanks and tabs; '...'
/// keeps everything; "..." keeps all but a backslash before one of " \ $ `; a backslash elsewhere
/// keeps the next character; '#' at the beginning of a word starts a comment. Nothing else means
/// anything: ';', '*', '$' are text. Throws QuotingError.
CommandLine splitWords(std::string const& line);

/// A line that is still being typed, up to the cursor.
struct PartialLine
{
    std::vector<std::string> words; ///< Those that are complete.
    std::string last;               ///< What there is of the next one; quotes need not be closed.
    std::size_t start = 0;          ///< Where it begins in the line.
    bool isComment = false;         ///< Whether it lies in a comment.
};

/// Cuts a line that is being typed into words, as `splitWords` will when it is complete.
PartialLine splitPartial(std::string const& line);

/// `word` so that `splitWords` gives it back: as it stands if that does, else in quotes.
std::string quoted(std::string const& word);

/// The beginning of a word so that it can be typed on: as it stands, or behind a quote that is left
/// open, or with backslashes.
std::string openQuoted(std::string const& beginning);

#endif
