#ifndef BENCH_UNTILREFUSED_H
#define BENCH_UNTILREFUSED_H

namespace peers
{

/// Calls the slots of a signal in turn, and stops at the first that refuses.
struct UntilRefused
{
    using result_type = bool;

    template <class Iterator> bool operator()(Iterator at, Iterator end) const
    {
        for (; at != end; ++at)
            if (!*at)
                return false;
        return true;
    }
};

} // namespace peers

#endif
