#include "Json.h"
#include "Shell.h"
#include "ShellGroup.h"
#include "Text.h"

#include <drvrepo/FindDrivers.h>

#include <cstdio>

namespace
{
unsigned timeslotArgument(std::string const& text)
{
    String error;
    unsigned timeslots = 0;
    check(IChannelGroup::TIMESLOTS_TEXT_TO_UINT(error, toString(text), timeslots), error);
    return timeslots;
}

/// The group of that name, held by `driver`. Throws CommandError if there is none.
ShellGroup& groupNamed(Shell& shell, std::string const& name, TYPPtr<IDriver>& driver)
{
    driver = shell.driver(name);
    ShellGroup* const group = shellGroup(*driver);
    if (group == nullptr)
        throw CommandError("Driver '" + name + "' is no channel group");
    return *group;
}

class GroupAdd : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("GROUP", group_, "The group's name");
        arguments.optional("TIMESLOTS", timeslots_, "The timeslots that it begins with (none)");
    }
    void run(Shell& shell) override
    {
        unsigned const timeslots = timeslotArgument(timeslots_.value_or(""));
        ShellGroup* const group = new ShellGroup(toString(group_));
        TYPtr<IDriver> const driver(group);
        String error;
        check(group->setTimeslots(error, timeslots), error);
        shell.addDriver(driver);
    }

private:
    std::string group_;
    std::optional<std::string> timeslots_;
};

class GroupSet : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("GROUP", group_, "The group's name");
        arguments.required("TIMESLOTS", timeslots_,
                           "All timeslots that it shall have; '' for none");
    }
    void run(Shell& shell) override
    {
        unsigned const timeslots = timeslotArgument(timeslots_);
        TYPPtr<IDriver> driver;
        ShellGroup& group = groupNamed(shell, group_, driver);
        LockScope const held(group.getLock());
        String error;
        check(group.setTimeslots(error, timeslots), error);
    }

private:
    std::string group_;
    std::string timeslots_;
};

std::string maskText(unsigned timeslots)
{
    char mask[16];
    std::snprintf(mask, sizeof mask, "0x%08X", timeslots);
    return mask;
}

Json groupJson(ShellGroup const& group)
{
    return {{"name", toStd(group.getDriverName())},
            {"timeslots", timeslotText(group.getTimeslots())},
            {"mask", group.getTimeslots()},
            {"observers", group.observers()}};
}

class GroupShow : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("GROUP", group_, "The group's name");
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void run(Shell& shell) override
    {
        TYPPtr<IDriver> driver;
        ShellGroup const& group = groupNamed(shell, group_, driver);
        Rows rows = {{"timeslots", orNone(timeslotText(group.getTimeslots()))},
                     {"mask", maskText(group.getTimeslots())}};
        for (std::string const& name : group.observers())
            rows.emplace_back("observer", name);
        shell.output().result(tableText(rows), groupJson(group), json_);
    }

private:
    std::string group_;
    bool json_ = false;
};

class Groups : public Command
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
        for (TYPPtr<IDriver> const& driver : findDrivers(*shell.repository()))
            if (ShellGroup const* const group = shellGroup(*driver)) {
                rows.emplace_back(toStd(group->getDriverName()),
                                  orNone(timeslotText(group->getTimeslots())));
                value.push_back(groupJson(*group));
            }
        shell.output().result(tableText(rows), value, json_);
    }

private:
    bool json_ = false;
};

class GroupObserve : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("GROUP", group_, "The group's name");
        arguments.required("NAME", wish_.name, "The observer's name");
        arguments.number("--priority", wish_.priority, "Lower is told first (0)");
        arguments.flag("--veto", wish_.veto, "With the right of veto: it is asked, not told");
        arguments.flag("--current", wish_.current, "Hear at once of the timeslots that are there");
        arguments.repeated("--refuse", "RULE", rules_,
                           "With --veto, what to refuse: 'added TIMESLOTS' (any of them) or 'Nth'");
        arguments.option("--say", "TEXT", say_, "The reason that it gives (refused)");
    }
    void run(Shell& shell) override
    {
        wish_.refusals = refusalArguments(rules_, say_);
        for (std::string const& rule : rules_)
            if (rule.compare(0, 6, "added ") == 0)
                timeslotArgument(rule.substr(6));
            else if (rule.compare(0, 3, "set") == 0)
                throw CommandError("'" + rule + "' is nothing that a channel group asks");
        TYPPtr<IDriver> driver;
        ShellGroup& group = groupNamed(shell, group_, driver);
        LockScope const held(group.getLock());
        String error;
        check(group.observe(shell.output(), error, wish_), error);
    }

private:
    std::string group_;
    ShellGroup::Wish wish_;
    std::vector<std::string> rules_;
    std::optional<std::string> say_;
};

class GroupUnobserve : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("GROUP", group_, "The group's name");
        arguments.required("OBSERVER", name_, "The observer's name");
        arguments.flag("--current", current_, "Hear that the timeslots are gone");
    }
    void run(Shell& shell) override
    {
        TYPPtr<IDriver> driver;
        ShellGroup& group = groupNamed(shell, group_, driver);
        LockScope const held(group.getLock());
        if (!group.unobserve(name_, current_))
            shell.output().remark("there is no observer '" + name_ + "'");
    }

private:
    std::string group_;
    std::string name_;
    bool current_ = false;
};
} // namespace

void addGroupCommands(CommandEntries& entries)
{
    entries.push_back(
        commandEntry<Groups>("groups", "Print all channel groups and their timeslots", "groups"));
    entries.push_back(commandEntry<GroupAdd>("group add", "Add a channel group",
                                             "group add 'e1t1 1/B-CHANNELS' 1-15;17-31"));
    entries.push_back(commandEntry<GroupSet>("group set", "Change the timeslots of a channel group",
                                             "group set g 1-7"));
    entries.push_back(
        commandEntry<GroupShow>("group show", "Print what a channel group has", "group show g"));
    entries.push_back(commandEntry<GroupObserve>(
        "group observe", "Register an observer, which shows what it hears, and may refuse",
        "group observe g ports --veto --refuse 'added 16' --say 'it signals'"));
    entries.push_back(commandEntry<GroupUnobserve>(
        "group unobserve", "Remove an observer of a channel group", "group unobserve g calls"));
}
