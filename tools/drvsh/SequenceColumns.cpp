#include "SequenceColumns.h"

#include "Svg.h"

#include <algorithm>
#include <set>

namespace
{
constexpr double HEAD_PADDING = 24; // beside the name in a head
constexpr double HEAD_GAP = 20;     // between two heads
constexpr double LABEL_ROOM = 30;   // beside a label: the arrow's point and the columns' own width
constexpr double CLEAR_WIDTH = 190; // up to which a label crosses no other column
constexpr std::size_t MOST_NAME = 28;
constexpr std::size_t MOST_LABEL = 60;
constexpr std::size_t MOST_LINE = 38;

double headWidth(SequenceColumns::Column const& column)
{
    return std::max(textWidth(column.name), textWidth(column.detail)) + HEAD_PADDING;
}

template <class Visit> void eachNotice(Sequence const& sequence, Visit visit)
{
    for (SequenceStep const& step : sequence.steps())
        for (Notice const& notice : step.notices)
            visit(notice);
}

std::string groupOf(Notice const& notice)
{
    return notice.ofGroup ? notice.subject : "";
}

/// The command without what only says that it is expected to fail.
std::string withoutFails(std::string const& command)
{
    std::string const word = "fails";
    if (command.compare(0, word.size(), word) != 0)
        return command;
    std::size_t const next = command.find_first_not_of(" \t", word.size());
    return next == word.size() || next == std::string::npos ? command : command.substr(next);
}

/// Why, without the name of the command where that is written right above.
std::string reason(std::string const& failure, std::string const& command)
{
    std::size_t const colon = failure.find(": ");
    bool const isName =
        colon != std::string::npos && command.compare(0, colon, failure, 0, colon) == 0;
    return isName ? failure.substr(colon + 2) : failure;
}
} // namespace

std::vector<std::string> wrapped(std::string const& text, std::size_t most)
{
    std::vector<std::string> lines;
    std::string rest = text;
    while (rest.size() > most) {
        std::size_t cut = rest.rfind(' ', most);
        if (cut == std::string::npos || cut == 0)
            cut = rest.find(' ', most);
        if (cut == std::string::npos)
            break;
        lines.push_back(rest.substr(0, cut));
        rest.erase(0, cut + 1);
    }
    lines.push_back(rest);
    return lines;
}

std::vector<std::string> commandLines(SequenceStep const& step)
{
    std::vector<std::string> lines = wrapped(withoutFails(step.command), MOST_LINE);
    for (std::string& line : lines)
        line = shortened(line, MOST_LABEL);
    return lines;
}

std::vector<std::string> failureLines(SequenceStep const& step)
{
    if (!step.failure)
        return {};
    std::string const why = reason(*step.failure, withoutFails(step.command));
    std::vector<std::string> lines = wrapped("failed: " + why, MOST_LINE);
    for (std::string& line : lines)
        line = shortened(line, MOST_LABEL);
    return lines;
}

std::string newsLabel(Notice const& notice)
{
    std::string const news = newsText(notice);
    return shortened(notice.ofGroup ? news : notice.subject + ": " + news, MOST_LABEL);
}

std::string refusalLabel(Refusal const& refusal)
{
    return shortened("refused " + refusalText(refusal), MOST_LABEL);
}

SequenceColumns::SequenceColumns(Sequence const& sequence)
{
    columns_.push_back({"drvsh", "", "shell"});
    keys_.emplace_back("", "");
    addListeners(sequence);
    addGroups(sequence);
    place(sequence);
}

void SequenceColumns::addListeners(Sequence const& sequence)
{
    bool wanted = false;
    for (SequenceStep const& step : sequence.steps())
        wanted = wanted || step.notices.empty() || !step.notices.front().ofGroup;
    if (!wanted)
        return;
    columns_.push_back({"registry", "", "teller"});
    keys_.emplace_back("", "");
    addHearers(sequence, "");
}

void SequenceColumns::addGroups(Sequence const& sequence)
{
    std::vector<std::string> groups;
    eachNotice(sequence, [&](Notice const& notice) {
        if (notice.ofGroup &&
            std::find(groups.begin(), groups.end(), notice.subject) == groups.end())
            groups.push_back(notice.subject);
    });
    for (std::string const& group : groups) {
        columns_.push_back({shortened(group, MOST_NAME), "channel group", "teller"});
        keys_.emplace_back(group, "");
        addHearers(sequence, group);
    }
}

void SequenceColumns::addHearers(Sequence const& sequence, std::string const& group)
{
    std::set<std::string> told;
    eachNotice(sequence, [&](Notice const& notice) {
        if (groupOf(notice) == group)
            told.insert(notice.hearer);
    });
    std::vector<Hearer> heard;
    for (Hearer const& hearer : sequence.hearers()) {
        if (hearer.group != group || told.count(hearer.name) == 0)
            continue;
        // Who comes again under the same name stands where he came last.
        heard.erase(std::remove_if(heard.begin(), heard.end(),
                                   [&](Hearer const& other) { return other.name == hearer.name; }),
                    heard.end());
        // Lower priorities are told first; among equals the newest.
        heard.insert(
            std::find_if(heard.begin(), heard.end(),
                         [&](Hearer const& other) { return other.priority >= hearer.priority; }),
            hearer);
    }
    for (Hearer const& hearer : heard) {
        std::string const detail =
            "priority " + std::to_string(hearer.priority) + (hearer.veto ? ", veto" : "");
        columns_.push_back({shortened(hearer.name, MOST_NAME), detail, "hearer"});
        keys_.emplace_back(group, hearer.name);
    }
}

void SequenceColumns::place(Sequence const& sequence)
{
    distances_.resize(columns_.size());
    for (SequenceStep const& step : sequence.steps()) {
        std::vector<std::string> lines = commandLines(step);
        for (std::string const& line : failureLines(step))
            lines.push_back(line);
        std::size_t const first = 1; // a command reaches at least so far
        for (std::string const& line : lines)
            keepApart(0, first, textWidth(line));
        for (Notice const& notice : step.notices) {
            std::size_t const hearer = indexOf(groupOf(notice), notice.hearer);
            double width = textWidth(newsLabel(notice));
            if (notice.refusal)
                width = std::max(width, textWidth(refusalLabel(*notice.refusal)));
            keepApart(indexOf(groupOf(notice), ""), hearer, width);
            keepApart(hearer - 1, hearer, std::min(width, CLEAR_WIDTH));
        }
    }
    columns_.front().x = headWidth(columns_.front()) / 2 + HEAD_GAP;
    for (std::size_t i = 1; i < columns_.size(); ++i) {
        columns_[i].x = columns_[i - 1].x + HEAD_GAP +
                        (headWidth(columns_[i - 1]) + headWidth(columns_[i])) / 2;
        for (auto const& distance : distances_[i])
            columns_[i].x = std::max(columns_[i].x, columns_[distance.first].x + distance.second);
    }
}

void SequenceColumns::keepApart(std::size_t left, std::size_t right, double distance)
{
    if (right < columns_.size())
        distances_[right].emplace_back(left, distance + LABEL_ROOM);
}

std::size_t SequenceColumns::indexOf(std::string const& group, std::string const& name) const
{
    for (std::size_t i = 1; i < keys_.size(); ++i)
        if (keys_[i].first == group && keys_[i].second == name)
            return i;
    return columns_.size() - 1;
}

SequenceColumns::Column const& SequenceColumns::target(SequenceStep const& step) const
{
    return columns_[indexOf(step.notices.empty() ? "" : groupOf(step.notices.front()), "")];
}

SequenceColumns::Column const& SequenceColumns::teller(Notice const& notice) const
{
    return columns_[indexOf(groupOf(notice), "")];
}

SequenceColumns::Column const& SequenceColumns::hearer(Notice const& notice) const
{
    return columns_[indexOf(groupOf(notice), notice.hearer)];
}

double SequenceColumns::width() const
{
    return columns_.back().x + headWidth(columns_.back()) / 2 + HEAD_GAP;
}
