#ifndef DRVSH_SEQUENCEPICTURE_H
#define DRVSH_SEQUENCEPICTURE_H

#include "Sequence.h"

/// The sequence as an SVG picture: those who take part side by side, what they are told from top to
/// bottom. The same sequence yields the same bytes.
///
/// Listeners stand in the order in which they are told, so that news runs to the right and a
/// rollback runs back; behind them the channel groups, each with its observers. Those who were told
/// nothing are left out.
std::string sequencePicture(Sequence const& sequence);

#endif
