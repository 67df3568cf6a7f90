#ifndef UTILITY_NUMBERS_H
#define UTILITY_NUMBERS_H

#include <cstdint>

#include <utility/Export.h>

/// The number that stands for "no number".
constexpr std::uint32_t ABSENT_NUMBER = 4294967295u;

/// The decimal number at the start of a C text. A text that does not begin with a digit (null,
/// empty, a blank or a sign first) and a number above 32 bits give ABSENT_NUMBER.
UTILITY_EXPORT std::uint32_t u_valueOf32(char const* text);

#endif
