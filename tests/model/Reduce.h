#ifndef TESTS_MODEL_REDUCE_H
#define TESTS_MODEL_REDUCE_H

#include <algorithm>
#include <cstddef>
#include <vector>

/// The list without the elements that are not needed for `fails` to stay true of it.
template <class T, class Fails> std::vector<T> reduceList(std::vector<T> list, Fails const& fails)
{
    for (std::size_t chunk = std::max<std::size_t>(1, list.size() / 2); chunk > 0;) {
        bool removed = false;
        for (std::size_t at = 0; at < list.size();) {
            const std::size_t end = std::min(list.size(), at + chunk);
            std::vector<T> without(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(at));
            without.insert(without.end(), list.begin() + static_cast<std::ptrdiff_t>(end),
                           list.end());
            if (fails(without)) {
                list = without;
                removed = true;
            } else {
                at += chunk;
            }
        }
        if (!removed)
            chunk /= 2;
    }
    return list;
}

#endif
