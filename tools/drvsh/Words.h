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

/// `word` so that `splitWords` gives it back: as it stands if that does, else in quotes.
std::string quoted(std::string const& word);

#endif
