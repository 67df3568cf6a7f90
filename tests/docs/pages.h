#ifndef DOCS_PAGES_H
#define DOCS_PAGES_H

namespace pages
{

/// The program that a page's C++ blocks make together. One object each, before main begins.
class Page
{
public:
    /// `name` is that of the page; `run` ends with 0 if all went well. Both are kept.
    Page(char const* name, int (*run)());

    char const* const name;
    int (*const run)();
    Page const* const next;
};

/// Says that what follows is printed by the block in that line of the page.
void begin(int line);

} // namespace pages

#endif
