#include <cstdio>
#include <iostream>

#include "Allocations.h"
#include "Cases.h"

// bench_heap: reads cases and prints each with what an operation asks of operator new: how often,
// and how many bytes of it stay.
int main()
{
    Cases cases;
    for (auto const add : {addLibrary, addD1, addD2, addC1, addE2, addE3})
        add(cases);
    int status = 0;
    Order order;
    while (read(std::cin, order)) {
        const std::unique_ptr<Work> work = order.make(cases);
        if (order.work != FILL && order.work != FILL_NEW)
            work->run(order.operations);
        const std::uint64_t count = allocations::count();
        const std::int64_t bytes = allocations::bytes();
        work->run(order.operations);
        const double asked = static_cast<double>(allocations::count() - count);
        const double kept = static_cast<double>(allocations::bytes() - bytes);
        std::printf("%s %.2f %.1f\n", order.text().c_str(), asked / order.operations,
                    kept / order.operations);
        if (!work->isRight()) {
            std::fprintf(stderr, "%s: told wrongly\n", order.text().c_str());
            status = 1;
        }
    }
    return status;
}
