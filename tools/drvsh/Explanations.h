#ifndef DRVSH_EXPLANATIONS_H
#define DRVSH_EXPLANATIONS_H

#include "Json.h"
#include "Output.h"

#include <drvrepo/Explain.h>

#include <string>

// What the library explains, in words and in JSON.

/// Whether the listener is told about the driver and, if not, why.
std::string verdictText(Explanation const& explanation);
/// What a change would do; ends in a colon when there is something to hear.
std::string verdictText(WhatIf const& whatIf);
/// "not told: WHY" or "told".
std::string shortText(Explanation const& explanation);
/// What the listener would hear, one after the other: "added, set room=12".
std::string noticesText(WhatIf const& whatIf);

/// The criteria with what they meet, the entry and the rights.
Rows explanationRows(Explanation const& explanation);

Json explanationJson(Explanation const& explanation);
/// The same, with the outcome and what would be told.
Json explanationJson(WhatIf const& whatIf);

#endif
