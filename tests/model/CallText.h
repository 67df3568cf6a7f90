#ifndef TESTS_MODEL_CALL_TEXT_H
#define TESTS_MODEL_CALL_TEXT_H

#include "Trace.h"

/// How a call of an observer reads in a trace; both sides of a comparison write it so.
namespace call_text
{
/// "o1.onDriverAdded D2" and, for the refusable ones, what `error` held when it was called.
std::string added(std::string const& observer, std::string const& driver, std::string const& error);
std::string removed(std::string const& observer, std::string const& driver);
std::string set(std::string const& observer, std::string const& driver, std::string const& key,
                std::string const& value, std::string const& error);
std::string cleared(std::string const& observer, std::string const& driver, std::string const& key,
                    std::string const& value);

/// The answer, if it is worth a line: a refusal, or a text written.
void answer(Trace& trace, std::int32_t code, std::string const& before, std::string const& after);

/// A call about timeslots: "p1.onTimeslotsAdded G1 00000000->0000000f: 0000000f".
std::string timeslots(std::string const& observer, std::string const& method,
                      std::string const& group, std::uint32_t before, std::uint32_t after,
                      std::uint32_t changed);

/// What a look into the repository shows about the driver of an event: whether its name is
/// known, the attachment asked for, and whether the driver names a repository.
std::string seen(bool registered, std::string const& attachment, bool holdsRepository);

/// A result and its text.
std::string result(std::string const& operation, std::int32_t code, std::string const& error);
} // namespace call_text

#endif
