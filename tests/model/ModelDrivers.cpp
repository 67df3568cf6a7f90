#include "ModelDrivers.h"

#include <algorithm>

namespace model
{
namespace
{
bool contains(std::vector<Identifier> const& list, Identifier const& wanted)
{
    return std::find(list.begin(), list.end(), wanted) != list.end();
}
} // namespace

Driver::Driver(Process& process, std::string label, Identifier did, std::string name)
    : interfaces({wellKnown().unknown, wellKnown().driver}), process_(process),
      label_(std::move(label)), did_(std::move(did)), name_(std::move(name))
{}

void Driver::release()
{
    --refs_;
    if (refs_ == 0)
        process_.trace.add(label_ + " destroyed");
}

Code Driver::queryInterface(Identifier const& iid, bool* object)
{
    const bool offered = contains(interfaces, iid);
    if (object != nullptr) {
        *object = offered;
        if (offered)
            addRef();
    }
    return offered || contains(hollow, iid) ? 0 : -1;
}

void Driver::setDriverRepository(Repository* repository)
{
    repository_ = repository;
    process_.trace.add(label_ + ".setDriverRepository(" + (repository == nullptr ? "null" : "R") +
                       ")");
}

bool hasInterface(Driver& driver, Identifier const& iid)
{
    bool object = false;
    const Code code = driver.queryInterface(iid, &object);
    if (object)
        driver.release();
    return code == 0 && object;
}

} // namespace model
