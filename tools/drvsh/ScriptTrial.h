#ifndef DRVSH_SCRIPTTRIAL_H
#define DRVSH_SCRIPTTRIAL_H

#include <ostream>
#include <string>
#include <vector>

/// Runs each script in a shell of its own, in the script's own folder, and compares what is told
/// with what the script expects. A command that fails doesn't end the script; its complaint is part
/// of the transcript, "error: ...". Prints each difference and in the end a summary. Returns
/// whether all came as expected.
bool testScripts(std::vector<std::string> const& files, std::ostream& out);

/// Runs them in the same way, and writes what they tell into the scripts as what they expect.
/// Prints the names of those that have changed. Returns false if one can't be read or written.
bool rewriteScripts(std::vector<std::string> const& files, std::ostream& out);

#endif
