#ifndef PLATFORM_STRINGTOKENIZER_H
#define PLATFORM_STRINGTOKENIZER_H

#include <utility/String.h>

class StringTokenizer
{
public:
    StringTokenizer(String const&, String const&);
    bool nextToken(String&);
};

#endif
