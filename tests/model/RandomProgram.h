#ifndef TESTS_MODEL_RANDOM_PROGRAM_H
#define TESTS_MODEL_RANDOM_PROGRAM_H

#include "Program.h"
#include "Random.h"

/// A random program of `length` steps over small pools: many names are beginnings of others, many
/// priorities are equal, many changes are refused. The same seed makes the same program anywhere.
Program randomProgram(std::uint64_t seed, std::size_t length);

/// The steps that empty the registry and give everything back, whatever a program left.
Program farewell();

#endif
