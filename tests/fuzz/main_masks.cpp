#include <cinttypes>

#include <drvrepo/IChannelGroup.h>

#include "Fuzz.h"

// masks [FIRST LAST]: prints and reads again each mask from FIRST to LAST (all 2^32), in
// hexadecimal.

int main(int argc, char** argv)
{
    const std::uint64_t first = argc > 2 ? std::strtoull(argv[1], nullptr, 16) : 0;
    const std::uint64_t last = argc > 2 ? std::strtoull(argv[2], nullptr, 16) : UINT32_MAX;
    String text;
    String message;
    for (std::uint64_t mask = first; mask <= last; ++mask) {
        IChannelGroup::TIMESLOTS_UINT_TO_TEXT(static_cast<unsigned>(mask), text);
        unsigned again = ~static_cast<unsigned>(mask);
        const XCode rc = IChannelGroup::TIMESLOTS_TEXT_TO_UINT(message, text, again);
        if (rc.code() != 0 || again != mask) {
            std::printf("%" PRIx64 " prints as '%s', which reads as %x\n", mask, text.cString(),
                        again);
            return 1;
        }
    }
    std::printf("%" PRIu64 " masks print and read as themselves\n", last - first + 1);
    return 0;
}
