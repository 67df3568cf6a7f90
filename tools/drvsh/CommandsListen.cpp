#include "Shell.h"

#include "Text.h"

namespace
{
class Listen : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("NAME", wish_.name, "The listener's name");
        arguments.option("--did", "UUID|NAME", did_, "Only drivers of this type");
        arguments.option("--iface", "UUID|NAME", iface_, "Only drivers with this interface");
        arguments.option("--prefix", "TEXT", prefix_, "Only drivers whose name begins so");
        arguments.list("--attr", "KEY=VALUE", attributes_,
                       "Only drivers with attachments that begin so");
        arguments.number("--priority", wish_.priority, "Lower is told first (0)");
        arguments.flag("--veto", wish_.veto, "With the right of veto: refusals count");
        arguments.flag("--snapshot", wish_.snapshot,
                       "Hear of a driver's attachments when it comes and goes");
        arguments.repeated("--refuse", "RULE", rules_,
                           "What to refuse: 'added PREFIX', 'set KEY=VALUE' or 'Nth'");
        arguments.option("--say", "TEXT", say_, "The reason that it gives (refused)");
    }
    void run(Shell& shell) override
    {
        if (did_)
            wish_.did = identifierArgument(*did_);
        if (iface_)
            wish_.iid = identifierArgument(*iface_);
        wish_.prefix = prefix_.value_or("");
        wish_.attributes = attributeArguments(attributes_);
        wish_.refusals = refusalArguments(rules_, say_);
        shell.listen(wish_);
    }

private:
    ListenerWish wish_;
    std::optional<std::string> did_;
    std::optional<std::string> iface_;
    std::optional<std::string> prefix_;
    std::optional<std::string> say_;
    std::vector<std::string> attributes_;
    std::vector<std::string> rules_;
};

class Unlisten : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("NAME", name_, "The listener's name");
    }
    void run(Shell& shell) override
    {
        if (!shell.unlisten(name_))
            shell.output().line("there is no listener '" + name_ + "'");
    }

private:
    std::string name_;
};
} // namespace

void addListenCommands(CommandEntries& entries)
{
    entries.push_back(commandEntry<Listen>(
        "listen", "Register a listener, which shows what it hears, and may refuse"));
    entries.push_back(commandEntry<Unlisten>("unlisten", "Remove a listener"));
}
