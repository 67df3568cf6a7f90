#ifndef SUPPORT_SCRIPTLEAKS_H
#define SUPPORT_SCRIPTLEAKS_H

#if defined(__SANITIZE_ADDRESS__)
#define SUPPORT_LEAKS_WATCHED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SUPPORT_LEAKS_WATCHED
#endif
#endif
#ifdef SUPPORT_LEAKS_WATCHED
#include <sanitizer/lsan_interface.h>
#endif

/// While it lives, what is allocated may stay for good: a repository that ends leaves what is still
/// registered untouched.
class LeaksWanted
{
public:
    explicit LeaksWanted(bool wanted = true) : wanted_(wanted)
    {
#ifdef SUPPORT_LEAKS_WATCHED
        if (wanted_)
            __lsan_disable();
#endif
    }
    LeaksWanted(LeaksWanted const&) = delete;
    LeaksWanted& operator=(LeaksWanted const&) = delete;
    ~LeaksWanted()
    {
#ifdef SUPPORT_LEAKS_WATCHED
        if (wanted_)
            __lsan_enable();
#endif
    }

private:
    [[maybe_unused]] bool wanted_;
};

#endif
