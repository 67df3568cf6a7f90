#include <utility/IInfo.h>
#include <utility/IUnknown.h>

namespace
{

TOVA_UUID_Data s_unknown = {{0x00000000, 0x00000000, 0x000000c0, 0x46000000}, -1, "IUnknown"};
TOVA_UUID_Data s_info = {{0x6f666e49, 0x4d3a9c51, 0x8e27b1f4, 0x92d06c3e}, -1, "IInfo"};

} // namespace

Lock::~Lock() = default;

Lock* IUnknown::getLock()
{
    return nullptr;
}

IUnknown::~IUnknown() = default;

TOVA_UUID const& IID_Unknown()
{
    static const TOVA_UUID id(&s_unknown);
    return id;
}

TOVA_UUID const& IInfo::IID()
{
    static const TOVA_UUID id(&s_info);
    return id;
}
