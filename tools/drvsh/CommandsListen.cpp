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
        arguments.number("--priority", priority_, "Lower is told first (0)");
        arguments.flag("--veto", veto_, "With the right of veto: refusals count");
        arguments.flag("--snapshot", snapshot_,
                       "Hear of a driver's attachments when it comes and goes");
        arguments.repeated("--refuse", "RULE", rules_,
                           "What to refuse: 'added PREFIX', 'set KEY=VALUE' or 'Nth'");
        arguments.option("--say", "TEXT", say_, "The reason that it gives (refused)");
    }
    void run(Shell& shell) override
    {
        if (did_)
            wish_.terms.did(identifierArgument(*did_));
        if (iface_)
            wish_.terms.iid(identifierArgument(*iface_));
        for (auto const& attribute : attributeArguments(attributes_))
            wish_.terms.attribute(attribute.key, attribute.value);
        wish_.terms.prefix(toString(prefix_.value_or("")));
        wish_.terms.priority(priority_).veto(veto_).snapshot(snapshot_);
        wish_.refusals = refusalArguments(rules_, say_);
        shell.listen(wish_);
    }

private:
    ListenerWish wish_;
    unsigned priority_ = 0;
    bool veto_ = false;
    bool snapshot_ = false;
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
            rows.emplace_back(wish->name, text(wish->terms));
            value.push_back(json(wish->name, wish->terms));
        }
        shell.output().result(tableText(rows), value, json_);
    }

private:
    static std::string text(ListenerTerms const& terms)
    {
        std::string text = "priority " + std::to_string(terms.priority());
        text += terms.hasRightOfVeto() ? ", veto" : "";
        text += terms.wantsSnapshot() ? ", snapshot" : "";
        if (terms.did().isValid())
            text += std::string(", type ") + terms.did().name();
        if (terms.iid().isValid())
            text += std::string(", interface ") + terms.iid().name();
        if (!terms.prefix().isEmpty())
            text += ", prefix " + quoted(toStd(terms.prefix()));
        for (auto const& attribute : terms.attributes())
            text += ", " + quoted(toStd(attribute.key) + "=" + toStd(attribute.value));
        return text;
    }
    static Json json(std::string const& name, ListenerTerms const& terms)
    {
        auto const nameOrNull = [](TOVA_UUID const& identifier) {
            return identifier.isValid() ? Json(identifier.name()) : Json();
        };
        Json value = {{"name", name},
                      {"priority", terms.priority()},
                      {"veto", terms.hasRightOfVeto()},
                      {"snapshot", terms.wantsSnapshot()},
                      {"did", nameOrNull(terms.did())},
                      {"iface", nameOrNull(terms.iid())},
                      {"prefix", toStd(terms.prefix())},
                      {"attributes", Json::object()}};
        for (auto const& attribute : terms.attributes())
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
