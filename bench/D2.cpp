#include <absl/container/flat_hash_map.h>

#include "Cases.h"
#include "FunctionList.h"
#include "PeerRegistry.h"

namespace
{

// d2: d1 on a flat map.
class D2
    : public peers::Registry<absl::flat_hash_map<std::string, peers::Record>, peers::FunctionList>
{
public:
    using Group = peers::FunctionGroup;
    static char const* name() { return "d2"; }
};

} // namespace

void addD2(Cases& cases)
{
    addSystem<D2>(cases);
}
