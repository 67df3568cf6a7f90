#include <cstddef>
#include <cstdint>

#include <drvrepo/IDriver.h>
#include <drvrepo/IKernelDriverRepository.h>

namespace
{

template <std::size_t COUNT> char const* nameOf(char const* const (&names)[COUNT], long id)
{
    const std::int32_t index = static_cast<std::int32_t>(id);
    return index >= 0 && static_cast<std::size_t>(index) < COUNT ? names[index] : nullptr;
}

} // namespace

char const* IDriver::MID::NAME(long const& id)
{
    static constexpr char const* NAMES[] = {"getDID", "getDriverName"};
    return nameOf(NAMES, id);
}

char const* IKernelDriverRepository::MID::NAME(long const& id)
{
    static constexpr char const* NAMES[] = {"openConnectionToKernel", "closeConnectionToKernel",
                                            "addFactory", "removeFactory"};
    return nameOf(NAMES, id);
}
