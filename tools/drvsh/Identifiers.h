#ifndef DRVSH_IDENTIFIERS_H
#define DRVSH_IDENTIFIERS_H

#include <utility/TOVA_UUID.h>

#include <string>
#include <vector>

// The driver types of the ports that the shell makes from a line configuration.

TOVA_UUID const& DID_E1T1();
TOVA_UUID const& DID_BRI();
TOVA_UUID const& DID_FXS();
TOVA_UUID const& DID_FXO();

/// The driver type for a type word ("e1t1", "bri", "fxs", "fxo"), else unknown.
TOVA_UUID const& driverType(std::string const& word);

/// The identifier that a text means: the name of one that the shell knows, or 32 hexadecimal
/// digits as 447902fa-4001-aa37-e344-eabe8ccc6b2a, which then also is its name unless the shell
/// knows a better one. Returns false if the text is neither.
bool readIdentifier(std::string const& text, TOVA_UUID& identifier);

/// The names that `readIdentifier` knows.
std::vector<std::string> identifierNames();

/// An identifier as 32 hexadecimal digits in lower case, in groups of 8, 4, 4, 4 and 12.
std::string uuidText(TOVA_UUID const& identifier);

#endif
