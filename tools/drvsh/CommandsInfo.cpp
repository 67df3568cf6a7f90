#include "InfoTree.h"
#include "Shell.h"

namespace
{
class Info : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.number("--depth", limits_.depth, "How deep rows may be nested (all)");
        arguments.number("--detail", limits_.detail,
                         "Up to which level of detail, 3 shows statistics (all)");
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void run(Shell& shell) override
    {
        std::vector<InfoNode> const tree = infoTree(shell, limits_);
        if (json_) {
            shell.output().line(jsonText(tree));
            return;
        }
        for (std::string const& line : indentedLines(tree))
            shell.output().line(line);
    }

private:
    InfoLimits limits_;
    bool json_ = false;
};
} // namespace

void addInfoCommand(CommandEntries& entries)
{
    entries.push_back(commandEntry<Info>("info", "Print the repository's diagnostics"));
}
