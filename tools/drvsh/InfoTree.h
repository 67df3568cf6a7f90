#ifndef DRVSH_INFOTREE_H
#define DRVSH_INFOTREE_H

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <utility>
#include <vector>

class Output;
class Shell;

/// A row of diagnostics with the rows beneath it.
struct InfoNode
{
    unsigned detail = 0;
    std::string key;
    std::string value;
    std::vector<InfoNode> rows;
};

/// How much of the diagnostics is wanted.
struct InfoLimits
{
    unsigned depth = 4294967295u;  ///< How deep rows may be nested, 0 for headings only.
    unsigned detail = 4294967295u; ///< Up to which level of detail.
};

/// The repository's diagnostics as a tree, with the names of observers for their addresses.
std::vector<InfoNode> infoTree(Shell& shell, InfoLimits const& limits);

/// The tree as lines of text: rows indented by two blanks a level, the values of neighbours in one
/// column.
std::string indentedText(std::vector<InfoNode> const& nodes);

/// The tree as JSON: an array of objects with "key", "value", "detail" and, where there are rows
/// beneath, "rows", an array of the same kind.
nlohmann::ordered_json infoJson(std::vector<InfoNode> const& nodes);

/// Keys and values of a driver's attachments as the repository keeps them: in the order in which
/// keys were first set, cleared ones with an empty value.
std::vector<std::pair<std::string, std::string>> attachmentsOf(Shell& shell,
                                                               std::string const& driver);

#endif
