#include <unordered_map>

#include <unistd.h>

#include "FunctionList.h"
#include "PeerRegistry.h"

// Starts, takes one driver in, and ends at once.
int main()
{
    using D1 = peers::Registry<std::unordered_map<std::string, peers::Record>, peers::FunctionList>;
    static D1 registry;
    _exit(registry.add(D1::make("e1t1 3 17/B-CHANNELS", load::E1T1)) ? 0 : 1);
}
