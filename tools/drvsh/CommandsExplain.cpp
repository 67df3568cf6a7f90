#include "Explanations.h"
#include "Shell.h"
#include "Text.h"

namespace
{
/// What `--if` says.
struct Supposed
{
    /// From "KEY=VALUE". Throws CommandError.
    explicit Supposed(std::string const& text)
    {
        IDriverRepository::Attributes const table = attributeArguments({text});
        key = table.begin()->key;
        value = table.begin()->value;
    }
    String key;
    String value;
};

WhatIf whatIfOf(Shell const& shell, String const& driver, String const& listener,
                Supposed const& supposed)
{
    WhatIf whatIf;
    String error;
    check(
        explain(error, *shell.repository(), driver, listener, supposed.key, supposed.value, whatIf),
        error);
    return whatIf;
}

class Explain : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("DRIVER", driver_, "The driver's name");
        arguments.required("LISTENER", listener_, "The listener's name");
        arguments.option("--if", "KEY=VALUE", if_, "What if an attachment were set so");
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void run(Shell& shell) override
    {
        String const driver = toString(driver_);
        String const listener = toString(listener_);
        if (if_) {
            WhatIf const whatIf = whatIfOf(shell, driver, listener, Supposed(*if_));
            std::string text = verdictText(whatIf) + "\n";
            if (!whatIf.told.isEmpty())
                text += "  " + noticesText(whatIf) + "\n";
            shell.output().result(text + tableText(explanationRows(whatIf)),
                                  explanationJson(whatIf), json_);
            return;
        }
        Explanation explanation;
        String error;
        check(explain(error, *shell.repository(), driver, listener, explanation), error);
        shell.output().result(verdictText(explanation) + "\n" +
                                  tableText(explanationRows(explanation)),
                              explanationJson(explanation), json_);
    }

private:
    std::string driver_;
    std::string listener_;
    std::optional<std::string> if_;
    bool json_ = false;
};

/// Lists one driver's listeners or one listener's drivers: those told, or all of them.
class Meetings : public Command
{
protected:
    void declareOptions(Arguments& arguments)
    {
        arguments.flag("--all", all_, "Also those not told, and why");
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void add(String const& name, Explanation const& explanation)
    {
        if (!all_ && explanation.state != Explanation::ACTIVE)
            return;
        rows_.emplace_back(toStd(name), all_ ? shortText(explanation) : "");
        value_.push_back(explanationJson(explanation));
    }
    void add(String const& name, WhatIf const& whatIf)
    {
        if (!all_ && whatIf.told.isEmpty())
            return;
        rows_.emplace_back(toStd(name), whatIf.told.isEmpty() ? "nothing" : noticesText(whatIf));
        value_.push_back(explanationJson(whatIf));
    }
    void show(Shell& shell) { shell.output().result(tableText(rows_), value_, json_); }

private:
    Rows rows_;
    Json value_ = Json::array();
    bool all_ = false;
    bool json_ = false;
};

class Who : public Meetings
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("DRIVER", driver_, "The driver's name");
        arguments.option("--if", "KEY=VALUE", if_,
                         "Who would hear what if an attachment were set so");
        declareOptions(arguments);
    }
    void run(Shell& shell) override
    {
        TOVA_List<Explanation> found;
        String error;
        check(explainDriver(error, *shell.repository(), toString(driver_), found), error);
        for (Explanation const& at : found)
            if (if_)
                add(at.listener, whatIfOf(shell, at.driver, at.listener, Supposed(*if_)));
            else
                add(at.listener, at);
        show(shell);
    }

private:
    std::string driver_;
    std::optional<std::string> if_;
};

class Whom : public Meetings
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("LISTENER", listener_, "The listener's name");
        declareOptions(arguments);
    }
    void run(Shell& shell) override
    {
        TOVA_List<Explanation> found;
        String error;
        check(explainListener(error, *shell.repository(), toString(listener_), found), error);
        for (Explanation const& at : found)
            add(at.driver, at);
        show(shell);
    }

private:
    std::string listener_;
};
} // namespace

void addExplainCommands(CommandEntries& entries)
{
    entries.push_back(commandEntry<Explain>("explain",
                                            "Say why a listener is, or is not, told about a driver",
                                            "explain 'fxs 1' desk --if room=13"));
    entries.push_back(commandEntry<Who>("who", "Print the listeners that are told about a driver",
                                        "who 'fxs 1' --all"));
    entries.push_back(
        commandEntry<Whom>("whom", "Print the drivers that a listener is told about", "whom desk"));
}
