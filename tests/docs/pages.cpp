// Runs the program of one page, named by the only argument.

#include "pages.h"

#include <cstdio>
#include <cstring>

namespace pages
{

namespace
{

Page const* g_first = nullptr;

} // namespace

Page::Page(char const* theName, int (*theRun)()) : name(theName), run(theRun), next(g_first)
{
    g_first = this;
}

void begin(int line)
{
    std::printf("\036%d\n", line);
}

} // namespace pages

int main(int argc, char** argv)
{
    for (pages::Page const* page = pages::g_first; argc == 2 && page != nullptr; page = page->next)
        if (std::strcmp(page->name, argv[1]) == 0)
            return page->run();
    std::fputs("usage: docs_pages PAGE\n", stderr);
    return 2;
}
