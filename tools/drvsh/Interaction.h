#ifndef DRVSH_INTERACTION_H
#define DRVSH_INTERACTION_H

#include <ostream>

class Shell;

/// Lets somebody at a terminal give commands, until he leaves. A command that fails is complained
/// of, and that is all.
void interact(Shell& shell, std::ostream& out, bool colours);

#endif
