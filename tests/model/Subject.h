#ifndef TESTS_MODEL_SUBJECT_H
#define TESTS_MODEL_SUBJECT_H

#include "Program.h"
#include "Trace.h"

/// Something that runs programs step by step and tells in a trace what happens: the model, or the
/// library. Two subjects that behave alike write the same lines.
class Subject
{
public:
    virtual ~Subject() = default;

    /// Runs one step; the lines of the trace are those of this step. The last one tells the
    /// reference counts of everything that lives.
    virtual std::vector<std::string> const& run(Step const& step) = 0;
};

/// The forms of registration that the bits of REGISTER stand for.
namespace registration
{
constexpr bool hasAttributes(std::uint32_t bits)
{
    return (bits & 1u) != 0;
}
constexpr bool byDelegate(std::uint32_t bits)
{
    return (bits & 2u) != 0;
}
} // namespace registration

#endif
