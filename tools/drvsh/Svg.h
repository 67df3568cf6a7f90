#ifndef DRVSH_SVG_H
#define DRVSH_SVG_H

#include <string>

/// A picture in the making. Measures are pixels. What things look like is said by class names that
/// the style sheet given to `finish` knows.
class Svg
{
public:
    /// Width of a character; the style sheet must choose a typeface of one width and this size.
    static constexpr int FONT_SIZE = 13;
    static constexpr double CHARACTER = 0.605 * FONT_SIZE;

    void rectangle(char const* style, double x, double y, double width, double height,
                   double round);
    void line(char const* style, double x1, double y1, double x2, double y2);
    /// The point of an arrow at (x, y) that comes from the left, or else from the right.
    void arrowHead(char const* style, double x, double y, bool fromLeft);
    /// A text at its base line; `anchor` is "start", "middle" or "end".
    void text(char const* style, double x, double y, char const* anchor, std::string const& text);

    /// Puts what `other` shows on top.
    void add(Svg const& other) { body_ += other.body_; }

    /// The complete picture; `title` is what it shows, for those who can't see it.
    std::string finish(double width, double height, std::string const& styleSheet,
                       std::string const& title) const;

private:
    std::string body_;
};

/// How wide a text is in such a picture.
double textWidth(std::string const& text);

/// A text as XML holds it: markup escaped, bytes that are no UTF-8 and control characters replaced.
std::string xmlText(std::string const& text);

/// At most `most` characters of a text, the last one "…" if there were more.
std::string shortened(std::string const& text, std::size_t most);

#endif
