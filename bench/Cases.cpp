#include "Cases.h"

#include <cstdio>
#include <cstdlib>
#include <istream>

std::string Order::text() const
{
    return work + ' ' + system + ' ' + std::to_string(n) + ' ' + std::to_string(l) + ' ' +
           std::to_string(operations);
}

std::unique_ptr<Work> Order::make(Cases const& cases) const
{
    for (Case const& c : cases)
        if (c.work == work && c.system == system)
            return c.make(n, l);
    std::fprintf(stderr, "there is no case %s of %s\n", work.c_str(), system.c_str());
    std::exit(2);
}

bool read(std::istream& in, Order& order)
{
    return static_cast<bool>(in >> order.work >> order.system >> order.n >> order.l >>
                             order.operations);
}
