#include "InfoTree.h"
#include "Json.h"
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
        shell.output().result(indentedText(tree), infoJson(tree), json_);
    }

private:
    InfoLimits limits_;
    bool json_ = false;
};
} // namespace

void addInfoCommand(CommandEntries& entries)
{
    entries.push_back(
        commandEntry<Info>("info", "Print the repository's diagnostics", "info --detail 2"));
}
