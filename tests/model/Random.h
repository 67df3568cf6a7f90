#ifndef TESTS_MODEL_RANDOM_H
#define TESTS_MODEL_RANDOM_H

#include <cstddef>
#include <cstdint>

/// A generator with the same stream on every machine (splitmix64).
class Random
{
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next()
    {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }

    /// Evenly from 0 to `limit` - 1; `limit` is above 0.
    std::uint32_t below(std::uint32_t limit)
    {
        return static_cast<std::uint32_t>((next() >> 32) * limit >> 32);
    }

    bool chance(std::uint32_t percent) { return below(100) < percent; }

    template <class T, std::size_t N> T const& pick(T const (&pool)[N])
    {
        return pool[below(static_cast<std::uint32_t>(N))];
    }

    /// The seed of the `index`-th of many independent streams.
    static std::uint64_t derive(std::uint64_t seed, std::uint64_t index)
    {
        Random mix(seed ^ (index * 0xD1B54A32D192ED03u));
        return mix.next();
    }

private:
    std::uint64_t state_;
};

#endif
