#ifndef DRVSH_NEAREST_H
#define DRVSH_NEAREST_H

#include <string>
#include <vector>

/// The candidate that a mistyped `word` most likely means: the one that takes the fewest changes
/// (a character more, less, other, or two neighbours swapped), the first among equals. The empty
/// text if every candidate is further away than a third of the word.
std::string nearest(std::string const& word, std::vector<std::string> const& candidates);

/// ", did you mean 'CANDIDATE'?" with that candidate, or the empty text.
std::string didYouMean(std::string const& word, std::vector<std::string> const& candidates);

#endif
