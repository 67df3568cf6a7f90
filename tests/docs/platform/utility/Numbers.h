#ifndef PLATFORM_NUMBERS_H
#define PLATFORM_NUMBERS_H

#include <cstdint>

constexpr std::uint32_t ABSENT_NUMBER = 4294967295u;
std::uint32_t u_valueOf32(char const*);

#endif
