#include "CallOuts.h"

#include <pthread.h>

#include "Heap.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CALLOUTS_WATCHED
#include <sanitizer/asan_interface.h>
#endif
#endif

namespace
{

/// Cancels the calling thread. AddressSanitizer learns of exceptions and of pthread_exit, but not
/// of this way to unwind, and would take the marks that ended frames leave on the stack for those
/// of the frames that do the work left.
void cancel()
{
    pthread_cancel(pthread_self());
#ifdef CALLOUTS_WATCHED
    __asan_handle_no_return();
#endif
    pthread_testcancel();
}

} // namespace

void CallOuts::arm(int n, Manner manner)
{
    labels_.clear();
    armed_ = true;
    failing_ = static_cast<std::size_t>(n);
    manner_ = manner;
}

bool CallOuts::pass(std::string const& label, String* error)
{
    if (!armed_)
        return false;
    {
        const heap::Exempt exempt;
        labels_.push_back(label);
    }
    if (labels_.size() != failing_ || manner_ == Manner::NONE)
        return false;
    if (error != nullptr)
        *error = reason_;
    if (manner_ == Manner::REFUSE)
        return error != nullptr;
    fail(label);
    return false;
}

void CallOuts::fail(std::string const& label) const
{
    if (onFailure)
        onFailure();
    if (manner_ == Manner::THROW)
        throw Thrown(label);
    if (manner_ == Manner::EXIT)
        pthread_exit(nullptr);
    cancel();
}
