#ifndef DRVSH_DIFFERENCE_H
#define DRVSH_DIFFERENCE_H

#include <string>
#include <vector>

/// How two lists of lines differ, as few changes as can be: "  " before a line of both, "- " before
/// one that was only expected, "+ " before one that only came; each line indented by two blanks.
/// Far from any change, lines of both are left out, and "..." says so.
std::string difference(std::vector<std::string> const& expected,
                       std::vector<std::string> const& came);

#endif
