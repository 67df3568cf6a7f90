#include "Svg.h"

#include <cstdio>

namespace
{
char const REPLACEMENT[] = "\xef\xbf\xbd";
char const ELLIPSIS[] = "\xe2\x80\xa6";

/// How many bytes the UTF-8 character at `at` has; 0 if there is none.
std::size_t characterLength(std::string const& text, std::size_t at)
{
    unsigned char const first = static_cast<unsigned char>(text[at]);
    std::size_t const length = first < 0x80                    ? 1
                               : first >= 0xc2 && first < 0xe0 ? 2
                               : first >= 0xe0 && first < 0xf0 ? 3
                               : first >= 0xf0 && first < 0xf5 ? 4
                                                               : 0;
    if (length == 0 || at + length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[at + i]) & 0xc0) != 0x80)
            return 0;
    // Forms that are longer than they need be, halves of pairs, and what lies behind the last one.
    unsigned char const second = length > 1 ? static_cast<unsigned char>(text[at + 1]) : 0;
    bool const wrong = (first == 0xe0 && second < 0xa0) || (first == 0xed && second > 0x9f) ||
                       (first == 0xf0 && second < 0x90) || (first == 0xf4 && second > 0x8f);
    return wrong ? 0 : length;
}

/// Whether XML allows the character at all.
bool isAllowed(std::string const& character)
{
    bool const isControl = character.size() == 1 && static_cast<unsigned char>(character[0]) < 0x20;
    return !isControl && character != "\x7f" && character != "\xef\xbf\xbe" &&
           character != "\xef\xbf\xbf";
}

template <class Visit> void eachCharacter(std::string const& text, Visit visit)
{
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const length = characterLength(text, at);
        std::string const character = length != 0 ? text.substr(at, length) : REPLACEMENT;
        visit(isAllowed(character) ? character : std::string(REPLACEMENT));
        at += length != 0 ? length : 1;
    }
}

std::size_t countOfCharacters(std::string const& text)
{
    std::size_t count = 0;
    eachCharacter(text, [&](std::string const&) { ++count; });
    return count;
}

/// A measure with at most one digit behind the point.
std::string measure(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    std::string result = text;
    if (result.size() > 2 && result.compare(result.size() - 2, 2, ".0") == 0)
        result.resize(result.size() - 2);
    return result;
}

std::string attribute(char const* name, std::string const& value)
{
    return std::string(" ") + name + "=\"" + value + "\"";
}

std::string attribute(char const* name, double value)
{
    return attribute(name, measure(value));
}
} // namespace

double textWidth(std::string const& text)
{
    return static_cast<double>(countOfCharacters(text)) * Svg::CHARACTER;
}

std::string xmlText(std::string const& text)
{
    std::string result;
    eachCharacter(text, [&](std::string const& character) {
        if (character == "&")
            result += "&amp;";
        else if (character == "<")
            result += "&lt;";
        else if (character == ">")
            result += "&gt;";
        else if (character == "\"")
            result += "&quot;";
        else
            result += character;
    });
    return result;
}

std::string shortened(std::string const& text, std::size_t most)
{
    if (countOfCharacters(text) <= most)
        return text;
    std::string result;
    std::size_t count = 0;
    eachCharacter(text, [&](std::string const& character) {
        if (++count < most)
            result += character;
    });
    return result + ELLIPSIS;
}

void Svg::rectangle(char const* style, double x, double y, double width, double height,
                    double round)
{
    body_ += "<rect" + attribute("class", style) + attribute("x", x) + attribute("y", y) +
             attribute("width", width) + attribute("height", height) + attribute("rx", round) +
             "/>\n";
}

void Svg::line(char const* style, double x1, double y1, double x2, double y2)
{
    body_ += "<line" + attribute("class", style) + attribute("x1", x1) + attribute("y1", y1) +
             attribute("x2", x2) + attribute("y2", y2) + "/>\n";
}

void Svg::arrowHead(char const* style, double x, double y, bool fromLeft)
{
    double const back = fromLeft ? x - 9 : x + 9;
    body_ += "<path" + attribute("class", style) +
             attribute("d", "M" + measure(x) + " " + measure(y) + "L" + measure(back) + " " +
                                measure(y - 4) + "V" + measure(y + 4) + "Z") +
             "/>\n";
}

void Svg::text(char const* style, double x, double y, char const* anchor, std::string const& text)
{
    body_ += "<text" + attribute("class", style) + attribute("x", x) + attribute("y", y) +
             attribute("text-anchor", anchor) + ">" + xmlText(text) + "</text>\n";
}

std::string Svg::finish(double width, double height, std::string const& styleSheet,
                        std::string const& title) const
{
    std::string const w = measure(width);
    std::string const h = measure(height);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + w + "\" height=\"" + h +
           "\" viewBox=\"0 0 " + w + " " + h + "\" role=\"img\">\n<title>" + xmlText(title) +
           "</title>\n<style>\n" + styleSheet + "</style>\n" + body_ + "</svg>\n";
}
