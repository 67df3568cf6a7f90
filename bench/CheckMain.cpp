#include <cstdio>

#include "Cases.h"

// bench_check: every case of the library and of d1 once, small. Fails if a listener was not told
// exactly as often as it should have been.
int main()
{
    Cases cases;
    addLibrary(cases);
    addD1(cases);
    int status = 0;
    for (Case const& c : cases)
        for (unsigned l : {0u, 1u, 5u}) {
            const unsigned operations = 7;
            const std::unique_ptr<Work> work = c.make(128, l);
            work->run(operations);
            if (work->isRight())
                continue;
            std::printf("%s of %s with %u listeners: told wrongly\n", c.work.c_str(),
                        c.system.c_str(), l);
            status = 1;
        }
    return status;
}
