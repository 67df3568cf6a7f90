#include <utility/IInfo.h>

#include <drvrepo/DriverWrapper.h>

#include "foundation/InfoRows.h"
#include "foundation/Interfaces.h"

using Record = CDriverRepository::DriverWrapper;

namespace
{

int s_depth = 0; // calls of DriverWrapper::getInfo under way in the process

} // namespace

InfoContainer& Record::getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                               unsigned int maxDetail, unsigned int detail,
                               String const& prefix) const
{
    const NestingScope nesting(s_depth);
    const InfoRows rows(info, maxDepth, depth, maxDetail, detail);
    const bool nested = nesting.isNested();
    const String name(getDriverName());
    rows.add(0, 0, String(prefix).concat(name), String().format("(%s)", getDID().name()));
    if (!attachments_.isEmpty())
        rows.add(1, 1, "Attachments", "");
    for (auto const& attachment : attachments_)
        rows.add(2, 1, attachment.key, attachment.value);
    if (driver_.get() != nullptr) {
        const TYPtr<IInfo> described = interfaceOf<IInfo>(*driver_.get(), IInfo::IID());
        if (described && !nested)
            rows.describe(*described.get(), 1, 1);
    }
    const char* heading = "Active Listeners";
    for (ListenerWrapper const& entry : listeners_) {
        if (!entry.isValid() || !entry.isActive())
            continue;
        if (heading != nullptr)
            rows.add(1, 3, heading, "");
        heading = nullptr;
        rows.add(2, 3, entry->name(), "");
    }
    return info;
}
