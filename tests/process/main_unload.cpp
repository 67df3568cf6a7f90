#include <cstdio>
#include <cstdlib>
#include <string>

#include <dlfcn.h>
#include <malloc.h>

// unload PLUGIN LIBDRVREPO LIBUTILITY [ROUNDS]: loads the plugin, lets it work, and unloads it,
// 1000 times. Each time all three are gone from the process. Prints the rounds, and the bytes of
// the heap in use that the later half of them added; ends with 1 when something stays.

namespace
{

bool isLoaded(char const* library)
{
    void* const handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
    if (handle == nullptr)
        return false;
    dlclose(handle);
    return true;
}

/// Loads the plugin, lets it work, and unloads it. Returns what is wrong, or the empty text.
std::string useOnce(char** libraries)
{
    void* const plugin = dlopen(libraries[0], RTLD_NOW | RTLD_LOCAL);
    if (plugin == nullptr)
        return dlerror();
    const auto work = reinterpret_cast<int (*)()>(dlsym(plugin, "work"));
    if (work == nullptr)
        return dlerror();
    const int heard = work();
    if (heard != 6)
        return "the plugin heard " + std::to_string(heard) + " calls";
    for (int i = 0; i < 3; ++i)
        if (!isLoaded(libraries[i]))
            return std::string(libraries[i]) + " isn't loaded under that name";
    dlclose(plugin);
    for (int i = 0; i < 3; ++i)
        if (isLoaded(libraries[i]))
            return std::string(libraries[i]) + " stays loaded";
    return std::string();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 4)
        return 2;
    const int rounds = argc > 4 ? std::atoi(argv[4]) : 1000;
    std::size_t atHalf = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::string fault = useOnce(argv + 1);
        if (!fault.empty()) {
            std::printf("round %d: %s\n", round, fault.c_str());
            return 1;
        }
        if (round == rounds / 2)
            atHalf = mallinfo2().uordblks;
    }
    const long grown = static_cast<long>(mallinfo2().uordblks - atHalf);
    std::printf("%d rounds, %ld bytes more\n", rounds, grown);
    return grown == 0 ? 0 : 1;
}
