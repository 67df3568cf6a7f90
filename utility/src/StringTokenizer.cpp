#include <utility/StringTokenizer.h>

#include <cstring>

StringTokenizer::StringTokenizer(String const& text, String const& delimiters)
    : text_(text), delimiters_(delimiters), position_(0)
{
    skipDelimiters();
}

bool StringTokenizer::nextToken(String& token)
{
    if (!hasMoreTokens())
        return false;
    long end = position_;
    while (end < text_.length() && !isDelimiter(end))
        ++end;
    token = String(text_.cString(), position_, end - position_);
    position_ = end;
    skipDelimiters();
    return true;
}

bool StringTokenizer::isDelimiter(long position) const
{
    return std::memchr(delimiters_.cString(), text_.cString()[position],
                       static_cast<std::size_t>(delimiters_.length())) != nullptr;
}

void StringTokenizer::skipDelimiters()
{
    while (position_ < text_.length() && isDelimiter(position_))
        ++position_;
}
