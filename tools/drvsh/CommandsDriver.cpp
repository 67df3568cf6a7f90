#include "Identifiers.h"
#include "InfoTree.h"
#include "Json.h"
#include "Shell.h"
#include "ShellDriver.h"
#include "ShellGroup.h"
#include "Text.h"

#include <drvrepo/FindDrivers.h>

namespace
{
class DriverAdd : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("NAME", name_, "The driver's name");
        arguments.option("--did", "UUID|NAME", did_, "Its type (DID_UNKNOWN)");
        arguments.list("--iface", "UUID|NAME", interfaces_, "Interfaces that it offers");
        arguments.flag("--again", again_, "Add the very driver that is registered once more");
    }
    void run(Shell& shell) override
    {
        if (again_) {
            shell.addDriver(shell.driver(name_));
            return;
        }
        TOVA_UUID const did = did_ ? identifierArgument(*did_) : IDriver::DID_UNKNOWN();
        std::vector<TOVA_UUID> interfaces;
        for (std::string const& argument : interfaces_) {
            interfaces.push_back(identifierArgument(argument));
            if (!ShellDriver::canAnswer(interfaces.back()))
                throw CommandError("a driver of the shell can't be an " + argument);
        }
        shell.addDriver(TYPtr<IDriver>(new ShellDriver(did, toString(name_), interfaces)));
    }

private:
    std::string name_;
    std::optional<std::string> did_;
    std::vector<std::string> interfaces_;
    bool again_ = false;
};

class DriverRemove : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("DRIVER", name_, "The driver's name");
        arguments.flag("--other", other_, "Remove it by another driver that has the same name");
    }
    void run(Shell& shell) override
    {
        String const name = toString(name_);
        bool const known = shell.repository()->getDriver(name, nullptr).code() == 0;
        if (other_)
            shell.repository()->removeDriver(
                TYPtr<IDriver>(new ShellDriver(IDriver::DID_UNKNOWN(), name, {})).get());
        else
            shell.repository()->removeDriver(name);
        if (!known)
            shell.output().remark("there is no driver '" + name_ + "'");
    }

private:
    std::string name_;
    bool other_ = false;
};

class DriverShow : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("DRIVER", name_, "The driver's name");
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void run(Shell& shell) override
    {
        TYPPtr<IDriver> const driver = shell.driver(name_);
        Rows rows;
        Json value;
        auto const add = [&](char const* key, std::string const& text) {
            rows.emplace_back(key, text);
            value[key] = text;
        };
        add("name", name_);
        add("type", driver->getDID().name());
        add("uuid", uuidText(driver->getDID()));
        ShellGroup const* const group = shellGroup(*driver);
        // Whatever is no group has been made by "driver add" or "load".
        ShellDriver const* const own =
            group == nullptr ? static_cast<ShellDriver const*>(driver.get()) : nullptr;
        int const references = group != nullptr ? group->references() : own->references();
        rows.emplace_back("references",
                          std::to_string(references) + ", one of them this command's own");
        value["references"] = references;
        if (group != nullptr) {
            std::string const timeslots = timeslotText(group->getTimeslots());
            rows.emplace_back("timeslots", orNone(timeslots));
            value["timeslots"] = timeslots;
        } else {
            value["interfaces"] = Json::array();
            for (TOVA_UUID const& iid : own->interfaces()) {
                rows.emplace_back("interface", iid.name());
                value["interfaces"].push_back(iid.name());
            }
        }
        value["attachments"] = Json::object();
        for (auto const& attachment : attachmentsOf(shell, name_)) {
            rows.emplace_back("attachment", attachment.first + "=" + attachment.second);
            value["attachments"][attachment.first] = attachment.second;
        }
        shell.output().result(tableText(rows), value, json_);
    }

private:
    std::string name_;
    bool json_ = false;
};

class Drivers : public Command
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
        for (TYPPtr<IDriver> const& driver : findDrivers(*shell.repository())) {
            rows.emplace_back(toStd(driver->getDriverName()), driver->getDID().name());
            value.push_back(driverJson(*driver));
        }
        shell.output().result(tableText(rows), value, json_);
    }

private:
    bool json_ = false;
};
} // namespace

void addDriverCommands(CommandEntries& entries)
{
    entries.push_back(commandEntry<DriverAdd>("driver add", "Add a driver",
                                              "driver add 'fxs 2' --did DID_FXS --iface IInfo"));
    entries.push_back(
        commandEntry<DriverRemove>("driver remove", "Remove a driver", "driver remove 'fxs 1'"));
    entries.push_back(commandEntry<DriverShow>("driver show", "Print what a driver is and has",
                                               "driver show 'fxs 1'"));
    entries.push_back(commandEntry<Drivers>(
        "drivers", "Print all drivers and their types, the oldest first", "drivers --json"));
}
