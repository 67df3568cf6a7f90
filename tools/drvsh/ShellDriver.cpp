#include "ShellDriver.h"

#include "Identifiers.h"

#include <drvrepo/IChannelGroup.h>
#include <drvrepo/IDriverRepository.h>
#include <utility/InfoContainer.h>

#include <algorithm>

ShellDriver::ShellDriver(TOVA_UUID const& did, String const& name,
                         std::vector<TOVA_UUID> interfaces)
    : CDriver(did, name), interfaces_(std::move(interfaces))
{}

bool ShellDriver::canAnswer(TOVA_UUID const& iid)
{
    return iid != IChannelGroup::IID() && iid != IDriverRepository::IID();
}

XCode ShellDriver::queryInterface(TOVA_UUID const& iid, void** out)
{
    if (std::find(interfaces_.begin(), interfaces_.end(), iid) == interfaces_.end())
        return CDriver::queryInterface(iid, out);
    if (out != nullptr) {
        addRef();
        *out = iid == IInfo::IID() ? static_cast<void*>(static_cast<IInfo*>(this))
                                   : static_cast<void*>(static_cast<IDriver*>(this));
    }
    return XCode();
}

void ShellDriver::addRef()
{
    ++references_;
    CDriver::addRef();
}

void ShellDriver::release()
{
    --references_;
    CDriver::release();
}

Lock* ShellDriver::getLock()
{
    return CDriver::getLock();
}

InfoContainer& ShellDriver::getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                                    unsigned int maxDetail, unsigned int detail,
                                    String const& prefix) const
{
    if (depth > maxDepth || detail > maxDetail)
        return info;
    String heading(prefix);
    info.add(depth, detail, heading.concat("Interfaces"), String::EMPTY());
    if (depth < maxDepth)
        for (TOVA_UUID const& iid : interfaces_)
            info.add(depth + 1, detail, iid.name(), uuidText(iid).c_str());
    return info;
}
