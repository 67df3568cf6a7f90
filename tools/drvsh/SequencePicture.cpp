#include "SequencePicture.h"

#include "SequenceColumns.h"
#include "Svg.h"

#include <algorithm>

namespace
{
using Column = SequenceColumns::Column;

constexpr double TOP = 20; // above the heads
constexpr double HEAD_HEIGHT = 42;
constexpr double LINE_HEIGHT = 17;  // of a text
constexpr double ROW = 28;          // an arrow with its label
constexpr double STEP_GAP = 18;     // between two commands
constexpr double BAR = 4;           // half the width of the bar of one who is at work
constexpr double TALL = 900;        // from where on the heads stand below as well
constexpr double LEAST_WIDTH = 420; // room for captions

char const STYLE[] =
    R"(text{font:13px "DejaVu Sans Mono",Menlo,Consolas,"Liberation Mono",monospace;fill:#1f2733;)"
    R"(stroke:#fff;stroke-width:5px;stroke-linejoin:round;paint-order:stroke;white-space:pre}
.paper{fill:#fff}
.band{fill:#fff3dc}
.life{stroke:#b9c2ce;stroke-dasharray:2 4}
.shell,.teller,.hearer{stroke:#8593a5;fill:#f1f4f8}
.teller{fill:#dfe9f7;stroke:#5c7fae}
text.name{font-weight:bold;stroke:none}
text.detail{font-size:11px;fill:#5d6b7d;stroke:none}
text.caption{font-family:"DejaVu Sans",Verdana,"Helvetica Neue",sans-serif}
text.command{font-weight:bold}
text.bad{fill:#c02626}
text.back{fill:#9a5b00;stroke:#fff3dc}
text.bandname{fill:#9a5b00;font-size:11px;stroke:none}
line.command,line.news{stroke:#3b4a5e;stroke-width:1.4}
path.command,path.news{fill:#3b4a5e}
line.done{stroke:#9aa6b5;stroke-dasharray:5 4}
path.done{fill:#9aa6b5}
line.bad{stroke:#d03030;stroke-width:1.6;stroke-dasharray:6 3}
path.bad{fill:#d03030}
line.back{stroke:#c77d0a;stroke-width:1.6}
path.back{fill:#c77d0a}
.active{fill:#fff;stroke:#8593a5}
.refuser{fill:#fbdcdc;stroke:#d03030}
@media (prefers-color-scheme:dark){
text{fill:#dfe6ee;stroke:#161b22}
.paper{fill:#161b22}
.band{fill:#33291a}
.life{stroke:#465264}
.shell,.hearer{fill:#222a35;stroke:#66758a}
.teller{fill:#1f3350;stroke:#6f97cc}
text.detail{fill:#9aa8ba}
text.bad{fill:#ff7b72}
text.back,text.bandname{fill:#f0b050}
text.back{stroke:#33291a}
line.command,line.news{stroke:#b8c4d3}
path.command,path.news{fill:#b8c4d3}
line.done{stroke:#6a778a}
path.done{fill:#6a778a}
line.bad{stroke:#ff6b62}
path.bad{fill:#ff6b62}
line.back{stroke:#e09a2c}
path.back{fill:#e09a2c}
.active{fill:#161b22;stroke:#7a899d}
.refuser{fill:#4a1f1f;stroke:#ff6b62}
}
)";

/// Draws the rows from top to bottom; what lies under them, whose height only they decide, last.
class Picture
{
public:
    explicit Picture(Sequence const& sequence) : columns_(sequence)
    {
        width_ = std::max(columns_.width(), LEAST_WIDTH);
        for (SequenceStep const& step : sequence.steps())
            draw(step);
    }

    std::string text() const;

private:
    void draw(SequenceStep const& step);
    void draw(Notice const& notice, bool isRollback);
    void drawCaption(std::string const& caption);
    void drawAnswer(SequenceStep const& step, Column const& target);
    void arrow(char const* style, double from, double to, double y);
    /// Lines of text that stand above `y`, behind `x`.
    void lines(char const* style, double x, double y, std::vector<std::string> const& texts);
    void drawHead(Svg& picture, Column const& column, double y) const;

    struct Band
    {
        double x, top, bottom;
    };

    SequenceColumns columns_;
    double width_ = 0;
    double y_ = TOP + HEAD_HEIGHT + STEP_GAP;
    Svg bars_; // under the arrows
    Svg rows_;
    std::vector<Band> bands_; // behind what is rolled back
};

void Picture::draw(SequenceStep const& step)
{
    drawCaption(step.caption);
    Column const& target = columns_.target(step);
    std::vector<std::string> const command = commandLines(step);
    y_ += static_cast<double>(command.size()) * LINE_HEIGHT + 6;
    double const begin = y_;
    lines("command", columns_.shell().x + 12, y_ - 7, command);
    arrow("command", columns_.shell().x, target.x - BAR, y_);
    std::vector<bool> const back = rollback(step.notices);
    for (std::size_t i = 0; i < step.notices.size(); ++i)
        draw(step.notices[i], back[i]);
    drawAnswer(step, target);
    bars_.rectangle("active", target.x - BAR, begin - 3, 2 * BAR, y_ - begin + 6, 2);
    y_ += STEP_GAP;
}

void Picture::drawCaption(std::string const& caption)
{
    if (caption.empty())
        return;
    auto const room = static_cast<std::size_t>((width_ - 40) / Svg::CHARACTER);
    for (std::string const& line : wrapped(caption, room)) {
        y_ += LINE_HEIGHT;
        rows_.text("caption", 20, y_, "start", line);
    }
    y_ += 8;
}

void Picture::draw(Notice const& notice, bool isRollback)
{
    Column const& teller = columns_.teller(notice);
    Column const& hearer = columns_.hearer(notice);
    char const* const style = isRollback ? "back" : "news";
    double const top = y_;
    y_ += ROW;
    rows_.text(style, hearer.x - BAR - 14, y_ - 6, "end", newsLabel(notice));
    arrow(style, teller.x + BAR, hearer.x - BAR, y_);
    if (notice.refusal) {
        bars_.rectangle("refuser", hearer.x - BAR, y_ - 5, 2 * BAR, ROW + 10, 2);
        y_ += ROW;
        rows_.text("bad", hearer.x - BAR - 14, y_ - 6, "end", refusalLabel(*notice.refusal));
        arrow("bad", hearer.x - BAR, teller.x + BAR, y_);
    } else {
        bars_.rectangle("active", hearer.x - BAR, y_ - 5, 2 * BAR, 10, 2);
    }
    if (!isRollback)
        return;
    bool const goesOn = !bands_.empty() && bands_.back().bottom == top + 8;
    if (goesOn)
        bands_.back().bottom = y_ + 8;
    else
        bands_.push_back({teller.x, top + 8, y_ + 8});
}

void Picture::drawAnswer(SequenceStep const& step, Column const& target)
{
    std::vector<std::string> const why = failureLines(step);
    if (why.empty()) {
        y_ += 20;
        arrow("done", target.x - BAR, columns_.shell().x, y_);
        return;
    }
    y_ += static_cast<double>(why.size()) * LINE_HEIGHT + 11;
    lines("bad", columns_.shell().x + 12, y_ - 6, why);
    arrow("bad", target.x - BAR, columns_.shell().x, y_);
}

void Picture::arrow(char const* style, double from, double to, double y)
{
    rows_.line(style, from, y, to + (to > from ? -6 : 6), y);
    rows_.arrowHead(style, to, y, to > from);
}

void Picture::lines(char const* style, double x, double y, std::vector<std::string> const& texts)
{
    double at = y - LINE_HEIGHT * static_cast<double>(texts.size() - 1);
    for (std::string const& text : texts) {
        rows_.text(style, x, at, "start", text);
        at += LINE_HEIGHT;
    }
}

void Picture::drawHead(Svg& picture, Column const& column, double y) const
{
    double const width = std::max(textWidth(column.name), textWidth(column.detail)) + 20;
    picture.rectangle(column.style, column.x - width / 2, y, width, HEAD_HEIGHT, 5);
    bool const alone = column.detail.empty();
    picture.text("name", column.x, y + (alone ? 26 : 18), "middle", column.name);
    if (!alone)
        picture.text("detail", column.x, y + 34, "middle", column.detail);
}

std::string Picture::text() const
{
    bool const isTall = y_ > TALL;
    double const height = y_ + (isTall ? HEAD_HEIGHT + TOP : 10);
    double const end = isTall ? y_ : height - 10;
    Svg picture;
    picture.rectangle("paper", 0, 0, width_, height, 8);
    for (Band const& band : bands_) {
        picture.rectangle("band", band.x - 70, band.top, width_ - band.x + 60,
                          band.bottom - band.top, 4);
        picture.text("bandname", band.x - 64, band.top + 15, "start", "rollback");
    }
    for (Column const& column : columns_.all()) {
        picture.line("life", column.x, TOP + HEAD_HEIGHT, column.x, end);
        drawHead(picture, column, TOP);
        if (isTall)
            drawHead(picture, column, end);
    }
    picture.add(bars_);
    picture.add(rows_);
    return picture.finish(width_, height, STYLE, "Who told whom, from top to bottom");
}
} // namespace

std::string sequencePicture(Sequence const& sequence)
{
    return Picture(sequence).text();
}
