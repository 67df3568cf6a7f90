#include "Difference.h"

#include <algorithm>
#include <cstdint>

namespace
{
constexpr std::size_t CONTEXT = 3; // lines shown around a change
constexpr std::size_t MOST_CELLS =
    4000000; // compared line by line; more are shown as all different

struct Change
{
    char sign;
    std::string const* line;
};

/// The length of the longest common list of lines, for each pair of rests.
class Common
{
public:
    Common(std::vector<std::string> const& a, std::vector<std::string> const& b)
        : width_(b.size() + 1), lengths_((a.size() + 1) * width_)
    {
        for (std::size_t i = a.size(); i-- > 0;)
            for (std::size_t j = b.size(); j-- > 0;)
                lengths_[i * width_ + j] =
                    a[i] == b[j] ? of(i + 1, j + 1) + 1 : std::max(of(i + 1, j), of(i, j + 1));
    }
    std::uint32_t of(std::size_t i, std::size_t j) const { return lengths_[i * width_ + j]; }

private:
    std::size_t width_;
    std::vector<std::uint32_t> lengths_;
};

std::vector<Change> changes(std::vector<std::string> const& a, std::vector<std::string> const& b)
{
    std::vector<Change> result;
    std::size_t i = 0;
    std::size_t j = 0;
    if ((a.size() + 1) * (b.size() + 1) <= MOST_CELLS) {
        Common const common(a, b);
        while (i < a.size() && j < b.size()) {
            if (a[i] == b[j]) {
                result.push_back({' ', &a[i]});
                ++i;
                ++j;
            } else if (common.of(i + 1, j) >= common.of(i, j + 1)) {
                result.push_back({'-', &a[i++]});
            } else {
                result.push_back({'+', &b[j++]});
            }
        }
    }
    for (; i < a.size(); ++i)
        result.push_back({'-', &a[i]});
    for (; j < b.size(); ++j)
        result.push_back({'+', &b[j]});
    return result;
}

bool isNearChange(std::vector<Change> const& all, std::size_t at)
{
    std::size_t const first = at > CONTEXT ? at - CONTEXT : 0;
    std::size_t const end = std::min(all.size(), at + CONTEXT + 1);
    return std::any_of(all.begin() + static_cast<long>(first), all.begin() + static_cast<long>(end),
                       [](Change const& change) { return change.sign != ' '; });
}
} // namespace

std::string difference(std::vector<std::string> const& expected,
                       std::vector<std::string> const& came)
{
    std::vector<Change> const all = changes(expected, came);
    std::string text;
    bool leftOut = false;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!isNearChange(all, i)) {
            text += leftOut ? "" : "  ...\n";
            leftOut = true;
            continue;
        }
        leftOut = false;
        text += std::string("  ") + all[i].sign + " " + *all[i].line + "\n";
    }
    return text;
}
