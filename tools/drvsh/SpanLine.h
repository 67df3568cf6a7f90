#ifndef DRVSH_SPANLINE_H
#define DRVSH_SPANLINE_H

#include "LineConfig.h"

/// Reads what follows "span=": number, timing, line build-out, framing, coding and the options
/// "crc4" and "yellow". Fills all of `span` but its place (first channel, line). Returns the reason
/// why it can't be read, or the empty text.
std::string readSpan(std::string const& text, LineSpan& span);

/// Whether the span is a T1, where a channel bank can have analogue ports.
bool isT1(LineSpan const& span);
/// Whether the span is an E1, the only kind with a CRC4 check.
bool isE1(LineSpan const& span);

#endif
