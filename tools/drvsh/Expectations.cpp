#include "Expectations.h"

#include <algorithm>

namespace
{
constexpr std::size_t SHORTEST_FENCE = 4;

bool holds(std::vector<std::string> const& lines, std::string const& line)
{
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

/// The fence, made longer until no line of the transcript looks like it.
std::string fenceFor(std::vector<std::string> const& transcript, std::string fence)
{
    if (fence.empty())
        fence.assign(SHORTEST_FENCE, '-');
    while (holds(transcript, fence))
        fence += '-';
    return fence;
}

void append(std::string& text, std::vector<std::string> const& lines)
{
    for (std::string const& line : lines)
        text += line + "\n";
}
} // namespace

bool isFence(std::string const& line)
{
    return line.size() >= SHORTEST_FENCE && line.find_first_not_of('-') == std::string::npos;
}

std::vector<std::string> linesOf(std::string const& text)
{
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        std::size_t const end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        if (!lines.back().empty() && lines.back().back() == '\r')
            lines.back().pop_back();
        start = end + 1;
    }
    return lines;
}

std::string readExpectations(std::string const& text, std::vector<Expectation>& expectations)
{
    std::vector<std::string> const lines = linesOf(text);
    Expectation current;
    current.line = 1;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!isFence(lines[i])) {
            current.commands.push_back(lines[i]);
            continue;
        }
        std::size_t const begin = i;
        current.fence = lines[i];
        for (++i; i < lines.size() && lines[i] != current.fence; ++i)
            current.expected.push_back(lines[i]);
        if (i == lines.size())
            return std::to_string(begin + 1) + ": what is expected has no end, " + current.fence;
        expectations.push_back(std::move(current));
        current = Expectation();
        current.line = static_cast<unsigned>(i) + 2;
    }
    if (!current.commands.empty())
        expectations.push_back(std::move(current));
    return "";
}

std::string withTranscripts(std::vector<Expectation> const& expectations,
                            std::vector<std::vector<std::string>> const& transcripts)
{
    std::string text;
    for (std::size_t i = 0; i < expectations.size(); ++i) {
        append(text, expectations[i].commands);
        if (expectations[i].fence.empty() && transcripts[i].empty() && expectations.size() > 1)
            continue;
        std::string const fence = fenceFor(transcripts[i], expectations[i].fence);
        text += fence + "\n";
        append(text, transcripts[i]);
        text += fence + "\n";
    }
    return text;
}
