#ifndef DRVREPO_IKERNELDRIVERREPOSITORY_H
#define DRVREPO_IKERNELDRIVERREPOSITORY_H

#include <utility/IUnknown.h>

#include <drvrepo/Export.h>

/// The driver repository on the kernel's side. It lives elsewhere; here are its identifier and the
/// names of its methods.
class DRVREPO_EXPORT IKernelDriverRepository : public IUnknown
{
public:
    /// The identifier of IKernelDriverRepository.
    static TOVA_UUID const& IID();

    /// Method identifiers, for tracing and marshalling.
    class DRVREPO_EXPORT MID
    {
    public:
        /// The name of method `id` (read as signed 32 bits), null when there is none.
        static char const* NAME(long const& id);
    };
};

#endif
