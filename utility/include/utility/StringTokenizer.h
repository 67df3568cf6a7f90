#ifndef UTILITY_STRINGTOKENIZER_H
#define UTILITY_STRINGTOKENIZER_H

#include <utility/Export.h>
#include <utility/String.h>

/// Cuts a text into the tokens between delimiters, from front to back. Runs of delimiters count
/// as one, so that no token is empty. Keeps its own reference on both texts.
class UTILITY_EXPORT StringTokenizer
{
public:
    /// Any character of `delimiters` separates tokens.
    StringTokenizer(String const& text, String const& delimiters);

    /// Stores the next token; returns false, `token` unchanged, when none is left.
    bool nextToken(String& token);
    /// True while a token is left.
    bool hasMoreTokens() const { return position_ < text_.length(); }

private:
    bool isDelimiter(long position) const;
    void skipDelimiters();

    String text_;
    String delimiters_;
    long position_;
};

#endif
