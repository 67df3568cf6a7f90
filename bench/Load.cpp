#include "Load.h"

#include <numeric>
#include <utility>

std::vector<unsigned> load::shuffled(unsigned n)
{
    std::vector<unsigned> order(n);
    std::iota(order.begin(), order.end(), 0u);
    std::uint64_t state = 88172645463325252u;
    for (unsigned i = n; i > 1; --i) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        std::swap(order[i - 1], order[state % i]);
    }
    return order;
}
