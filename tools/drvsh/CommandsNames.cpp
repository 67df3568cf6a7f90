#include "ChannelList.h"
#include "Json.h"
#include "Shell.h"
#include "Text.h"

#include <drvrepo/IChannelGroup.h>
#include <drvrepo/IDriver.h>

#include <cstdio>

namespace
{
constexpr unsigned ABSENT = 4294967295u;

class NameBuild : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("TYPE", type_, "The type word");
        arguments.rest("PARTS", parts_, 0,
                       "Up to three numbers ('-' for an absent one), then '/' and the components");
    }
    void run(Shell& shell) override
    {
        unsigned numbers[3] = {ABSENT, ABSENT, ABSENT};
        std::size_t at = 0;
        for (; at < parts_.size() && parts_[at] != "/"; ++at) {
            if (at == std::size(numbers))
                throw CommandError("'" + parts_[at] + "' is one number too many");
            if (parts_[at] != "-" && !readNumber(parts_[at], ABSENT - 1, numbers[at]))
                throw CommandError("'" + parts_[at] + "' is no number from 0 to 4294967294");
        }
        TOVA_Vector<String> further;
        for (++at; at < parts_.size(); ++at)
            further.append(toString(parts_[at]));
        String name;
        IDriver::BUILD_DRIVER_NAME(name, toString(type_), numbers[0], numbers[1], numbers[2],
                                   further);
        shell.output().line(toStd(name));
    }

private:
    std::string type_;
    std::vector<std::string> parts_;
};

class NameSplit : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("NAME", name_, "A driver name");
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void run(Shell& shell) override
    {
        String type;
        unsigned numbers[3] = {};
        TOVA_Vector<String> further;
        unsigned const count = IDriver::SPLIT_DRIVER_NAME(toString(name_), type, numbers[0],
                                                          numbers[1], numbers[2], further);
        Rows rows = {{"type", toStd(type)}};
        Json value = {
            {"type", toStd(type)}, {"numbers", Json::array()}, {"further", Json::array()}};
        for (std::size_t i = 0; i < std::size(numbers); ++i) {
            bool const absent = numbers[i] == ABSENT;
            rows.emplace_back("number " + std::to_string(i + 1),
                              absent ? "absent" : std::to_string(numbers[i]));
            value["numbers"].push_back(absent ? Json() : Json(numbers[i]));
        }
        for (unsigned i = 0; i < further.count(); ++i) {
            rows.emplace_back("further " + std::to_string(i + 1), toStd(further[i]));
            value["further"].push_back(toStd(further[i]));
        }
        rows.emplace_back("components", std::to_string(count));
        value["components"] = count;
        shell.output().result(tableText(rows), value, json_);
    }

private:
    std::string name_;
    bool json_ = false;
};

class NameRebuild : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("NAME", name_, "A driver name");
        arguments.required("TYPE", type_, "The type word that it shall have");
    }
    void run(Shell& shell) override
    {
        String name;
        shell.output().line(
            toStd(IDriver::REBUILD_DRIVER_NAME(name, toString(name_), toString(type_))));
    }

private:
    std::string name_;
    std::string type_;
};

class PortType : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("TYPE", type_, "A type word, or the number of a port type (0 to 7)");
    }
    void run(Shell& shell) override
    {
        if (type_.empty() || type_.find_first_not_of("0123456789") != std::string::npos) {
            shell.output().line(std::to_string(IDriver::Port::TYPE(toString(type_))));
            return;
        }
        unsigned number = 0;
        unsigned const most = 7; // what the enumeration has room for
        if (!readNumber(type_, most, number))
            throw CommandError("'" + type_ + "' is no number from 0 to " + std::to_string(most));
        shell.output().line(IDriver::Port::NAME(static_cast<IDriver::Port::Type>(number)));
    }

private:
    std::string type_;
};

class Timeslots : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("TIMESLOTS", text_, "As a text (1-15;17-31) or as a mask (0xFFFEFFFE)");
    }
    void run(Shell& shell) override
    {
        String text;
        unsigned mask = 0;
        if (text_.compare(0, 2, "0x") == 0) {
            if (!readMask(mask))
                throw CommandError("'" + text_ + "' is no mask from 0x0 to 0xFFFFFFFF");
            IChannelGroup::TIMESLOTS_UINT_TO_TEXT(mask, text);
            shell.output().line(toStd(text));
            return;
        }
        check(IChannelGroup::TIMESLOTS_TEXT_TO_UINT(text, toString(text_), mask), text);
        char printed[16];
        std::snprintf(printed, sizeof printed, "0x%08X", mask);
        shell.output().line(printed);
    }

private:
    bool readMask(unsigned& mask) const
    {
        std::string const digits = text_.substr(2);
        if (digits.empty() || digits.size() > 8 ||
            digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
            return false;
        mask = static_cast<unsigned>(std::stoul(digits, nullptr, 16));
        return true;
    }

    std::string text_;
};
} // namespace

void addNameCommands(CommandEntries& entries)
{
    entries.push_back(commandEntry<NameBuild>("name build", "Build a driver name from its parts",
                                              "name build e1t1 0 3 / D-CHANNEL"));
    entries.push_back(commandEntry<NameSplit>("name split", "Take a driver name apart",
                                              "name split 'e1t1 0 3/D-CHANNEL'"));
    entries.push_back(commandEntry<NameRebuild>("name rebuild",
                                                "Give a driver name another type word",
                                                "name rebuild 'e1t1 1/D-CHANNEL' bri"));
    entries.push_back(commandEntry<PortType>(
        "port", "Turn a type word into its port type, or a port type back", "port fxs"));
    entries.push_back(commandEntry<Timeslots>(
        "timeslots", "Turn a text of timeslots into a mask, or back", "timeslots 1-15;17-31"));
}
