#include "Shell.h"

#include "Json.h"
#include "Text.h"
#include "Words.h"

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
        arguments.option("--prefix", "PREFIX", prefix_, "Only drivers whose name begins so");
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
        arguments.required("LISTENER", name_, "The listener's name");
    }
    void run(Shell& shell) override
    {
        if (!shell.unlisten(name_))
            shell.output().remark("there is no listener '" + name_ + "'");
    }

private:
    std::string name_;
};

class Listeners : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void run(Shell& shell) override
    {
        Rows rows;
        Json value = Json::array();
        for (ListenerWish const* wish : shell.listeners()) {
            rows.emplace_back(wish->name, text(*wish));
            value.push_back(json(*wish));
        }
        shell.output().result(tableText(rows), value, json_);
    }

private:
    static std::string text(ListenerWish const& wish)
    {
        std::string text = "priority " + std::to_string(wish.priority);
        text += wish.veto ? ", veto" : "";
        text += wish.snapshot ? ", snapshot" : "";
        if (!(wish.did == TOVA_UUID::INVALID()))
            text += std::string(", type ") + wish.did.name();
        if (!(wish.iid == TOVA_UUID::INVALID()))
            text += std::string(", interface ") + wish.iid.name();
        if (!wish.prefix.empty())
            text += ", prefix " + quoted(wish.prefix);
        for (auto const& attribute : wish.attributes)
            text += ", " + quoted(toStd(attribute.key) + "=" + toStd(attribute.value));
        return text;
    }
    static Json json(ListenerWish const& wish)
    {
        auto const nameOrNull = [](TOVA_UUID const& identifier) {
            return identifier == TOVA_UUID::INVALID() ? Json() : Json(identifier.name());
        };
        Json value = {{"name", wish.name},           {"priority", wish.priority},
                      {"veto", wish.veto},           {"snapshot", wish.snapshot},
                      {"did", nameOrNull(wish.did)}, {"iface", nameOrNull(wish.iid)},
                      {"prefix", wish.prefix},       {"attributes", Json::object()}};
        for (auto const& attribute : wish.attributes)
            value["attributes"][toStd(attribute.key)] = toStd(attribute.value);
        return value;
    }

    bool json_ = false;
};
} // namespace

void addListenCommands(CommandEntries& entries)
{
    entries.push_back(commandEntry<Listen>(
        "listen", "Register a listener, which shows what it hears, and may refuse",
        "listen guard --priority 9 --veto --refuse 'added fxs 99' --say 'no such port'"));
    entries.push_back(commandEntry<Listeners>(
        "listeners", "Print all listeners and their criteria, in the order in which they are told",
        "listeners"));
    entries.push_back(commandEntry<Unlisten>("unlisten", "Remove a listener", "unlisten desk"));
}
