// random_commands SEED LINES: prints lines for drvsh, to be piped into it.
#include "RandomCommands.h"

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "random_commands SEED LINES\n";
        return 2;
    }
    RandomCommands commands(static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)));
    for (unsigned long lines = std::strtoul(argv[2], nullptr, 10); lines > 0; --lines)
        std::cout << commands.line() << '\n';
    return std::cout.flush() ? 0 : 1;
}
