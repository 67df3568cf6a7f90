#include "Trace.h"

namespace
{
const char HEX_DIGITS[] = "0123456789abcdef";
}

std::string Trace::text() const
{
    std::string all;
    for (std::string const& line : lines_)
        all += line + "\n";
    return all;
}

std::string quoted(std::string const& text)
{
    std::string out = "\"";
    for (char c : text) {
        const unsigned byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            out += std::string("\\") + c;
        else if (byte >= 0x20 && byte < 0x7f)
            out += c;
        else
            out += std::string("\\x") + HEX_DIGITS[byte >> 4] + HEX_DIGITS[byte & 15];
    }
    return out + "\"";
}

std::string shown(std::string const& text)
{
    return text.substr(0, text.find('\0'));
}

std::string hex8(std::uint32_t mask)
{
    std::string out;
    for (int shift = 28; shift >= 0; shift -= 4)
        out += HEX_DIGITS[(mask >> shift) & 15];
    return out;
}
