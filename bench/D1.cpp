#include <unordered_map>

#include "Cases.h"
#include "FunctionList.h"
#include "PeerRegistry.h"

namespace
{

// d1: the standard library alone.
class D1
    : public peers::Registry<std::unordered_map<std::string, peers::Record>, peers::FunctionList>
{
public:
    using Group = peers::FunctionGroup;
    static char const* name() { return "d1"; }
};

} // namespace

void addD1(Cases& cases)
{
    addSystem<D1>(cases);
}
