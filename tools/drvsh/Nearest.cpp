#include "Nearest.h"

#include <algorithm>

namespace
{
/// How many changes turn `a` into `b`.
std::size_t distance(std::string const& a, std::string const& b)
{
    std::vector<std::size_t> before;
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before = last;
        last = row;
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t const other = a[i - 1] == b[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + other});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
    }
    return row[b.size()];
}
} // namespace

std::string nearest(std::string const& word, std::vector<std::string> const& candidates)
{
    std::size_t const limit = std::max<std::size_t>(1, (word.size() + 2) / 3);
    std::string best;
    std::size_t least = limit + 1;
    for (std::string const& candidate : candidates) {
        // Lengths that differ by more need more changes; a word of a megabyte is never compared.
        if (word.size() > candidate.size() + limit || candidate.size() > word.size() + limit ||
            word.size() > 2 * candidate.size() + 2)
            continue;
        std::size_t const changes = distance(word, candidate);
        if (changes < least && changes < std::max<std::size_t>(candidate.size(), 2)) {
            least = changes;
            best = candidate;
        }
    }
    return best;
}

std::string didYouMean(std::string const& word, std::vector<std::string> const& candidates)
{
    std::string const best = nearest(word, candidates);
    return best.empty() ? "" : ", did you mean '" + best + "'?";
}
