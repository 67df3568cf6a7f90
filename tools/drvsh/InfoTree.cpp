#include "InfoTree.h"

#include "Json.h"
#include "Shell.h"
#include "Text.h"
#include "Words.h"

#include <utility/InfoContainer.h>

#include <algorithm>

namespace
{
/// Moves the rows from `at` on that are at `depth` or deeper into a list of nodes.
std::vector<InfoNode> nodesOf(std::vector<InfoContainer::Row> const& rows, std::size_t& at,
                              unsigned depth, Output const& output)
{
    std::vector<InfoNode> nodes;
    while (at < rows.size() && rows[at].depth >= depth) {
        InfoContainer::Row const& row = rows[at++];
        InfoNode node{row.detail, toStd(row.key), toStd(row.value), {}};
        if (row.key == "Observer")
            node.value = output.named(node.value);
        node.rows = nodesOf(rows, at, row.depth + 1, output);
        nodes.push_back(std::move(node));
    }
    return nodes;
}

/// A row in brackets says what its key is; a name with a value is a setting.
bool standsBehindKey(InfoNode const& node)
{
    return node.value.front() == '(';
}

/// A value whose blanks at an end would not be seen stands in quotes.
std::string visible(std::string const& value)
{
    return value.front() == ' ' || value.back() == ' ' ? quoted(value) : value;
}

void addLines(std::vector<InfoNode> const& nodes, std::size_t indentation, std::string& text)
{
    std::size_t width = 0;
    for (InfoNode const& node : nodes)
        if (!node.value.empty() && !standsBehindKey(node))
            width = std::max(width, node.key.size());
    for (InfoNode const& node : nodes) {
        std::string line = std::string(indentation, ' ') + node.key;
        if (!node.value.empty() && standsBehindKey(node))
            line += " " + node.value;
        else if (!node.value.empty())
            line += std::string(width + 2 - node.key.size(), ' ') + visible(node.value);
        text += line + "\n";
        addLines(node.rows, indentation + 2, text);
    }
}
} // namespace

std::vector<InfoNode> infoTree(Shell& shell, InfoLimits const& limits)
{
    InfoContainer info;
    shell.repository()->getInfo(info, limits.depth, 0, limits.detail, 0, String::EMPTY());
    std::size_t at = 0;
    return nodesOf(info.rows(), at, 0, shell.output());
}

Json infoJson(std::vector<InfoNode> const& nodes)
{
    Json array = Json::array();
    for (InfoNode const& node : nodes) {
        Json object = {{"key", node.key}, {"value", node.value}, {"detail", node.detail}};
        if (!node.rows.empty())
            object["rows"] = infoJson(node.rows);
        array.push_back(std::move(object));
    }
    return array;
}

std::string indentedText(std::vector<InfoNode> const& nodes)
{
    std::string text;
    addLines(nodes, 0, text);
    return text;
}

std::vector<std::pair<std::string, std::string>> attachmentsOf(Shell& shell,
                                                               std::string const& driver)
{
    std::vector<std::pair<std::string, std::string>> attachments;
    // The repository's rows: a heading, "Drivers", the drivers; a driver's attachments come first.
    std::vector<InfoNode> const tree = infoTree(shell, {4, 1});
    for (InfoNode const& node : tree.at(0).rows.at(0).rows)
        if (node.key == driver && !node.rows.empty() && node.rows[0].key == "Attachments")
            for (InfoNode const& row : node.rows[0].rows)
                attachments.emplace_back(row.key, row.value);
    return attachments;
}
