#include "Files.h"
#include "Identifiers.h"
#include "LineConfig.h"
#include "Shell.h"
#include "ShellDriver.h"
#include "ShellGroup.h"
#include "Text.h"

#include <drvrepo/IChannelGroup.h>

namespace
{
constexpr unsigned ABSENT = 4294967295u;

String driverName(std::string const& type, unsigned number, char const* component = "")
{
    String name;
    return IDriver::BUILD_DRIVER_NAME(name, type.c_str(), number, ABSENT, ABSENT, component, "", "",
                                      "");
}

/// Registers what a line configuration holds, in its order: each span, its attachments and its
/// channel groups, then the analogue ports.
class Registration
{
public:
    Registration(Shell& shell, std::string const& file) : shell_(shell), file_(file) {}

    void add(LineConfig const& config)
    {
        for (LineSpan const& span : config.spans)
            at(span.line, [&] { addSpan(span); });
        for (AnaloguePort const& port : config.ports)
            at(port.line, [&] { addDriver(port.type, driverName(port.type, port.channel)); });
    }

private:
    /// Puts file and line in front of a failure.
    template <class Action> void at(unsigned line, Action action)
    {
        try {
            action();
        } catch (CommandError const& error) {
            throw CommandError(file_ + ":" + std::to_string(line) + ": " + error.what());
        }
    }

    void addSpan(LineSpan const& span)
    {
        String const name = driverName(span.type, span.number);
        addDriver(span.type, name);
        attach(name, "framing", span.framing);
        attach(name, "coding", span.coding);
        if (span.crc4)
            attach(name, "crc4", "yes");
        attach(name, "timing", std::to_string(span.timing));
        attach(name, "first-channel", std::to_string(span.firstChannel));
        addGroup(span, IChannelGroup::B_CHANNELS_DEFAULT_NAME, ChannelUse::Bearer);
        addGroup(span, IChannelGroup::D_CHANNEL_DEFAULT_NAME, ChannelUse::Data);
    }

    void addDriver(std::string const& type, String const& name)
    {
        shell_.addDriver(TYPtr<IDriver>(new ShellDriver(driverType(type), name, {})));
    }

    void attach(String const& name, char const* key, std::string const& value)
    {
        shell_.attach(toStd(name), key, value);
    }

    void addGroup(LineSpan const& span, char const* component, ChannelUse use)
    {
        unsigned const timeslots = span.timeslots(use);
        if (timeslots == 0)
            return;
        ShellGroup* const group = new ShellGroup(driverName(span.type, span.number, component));
        TYPtr<IDriver> const driver(group);
        String error;
        check(group->setTimeslots(error, timeslots), error);
        shell_.addDriver(driver);
    }

    Shell& shell_;
    std::string file_;
};

class Load : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("FILE", file_,
                           "A line configuration (DAHDI's system.conf); relative to the script");
    }
    void run(Shell& shell) override
    {
        std::string const file = shell.path(file_);
        std::string text;
        std::string const problem = readFile(file, text);
        if (!problem.empty())
            throw CommandError(file + ": " + problem);
        LineConfig const config = readLineConfig(text);
        for (LineRemark const& warning : config.warnings)
            shell.output().complain(
                {file + ":" + std::to_string(warning.line), warning.text, true});
        if (!config.errors.empty())
            throw CommandError(reasons(file, config.errors));
        Registration(shell, file).add(config);
    }

private:
    static std::string reasons(std::string const& file, std::vector<LineRemark> const& errors)
    {
        std::size_t const most = 20; // of a file that is something else altogether
        std::string text;
        for (std::size_t i = 0; i < errors.size() && i < most; ++i)
            text += (i == 0 ? "" : "\n") + file + ":" + std::to_string(errors[i].line) + ": " +
                    errors[i].text;
        if (errors.size() > most)
            text += "\n" + file + ": and " + std::to_string(errors.size() - most) + " more";
        return text;
    }

    std::string file_;
};
} // namespace

void addLoadCommand(CommandEntries& entries)
{
    entries.push_back(
        commandEntry<Load>("load", "Register the spans and analogue ports of a line configuration",
                           "load examples/lines.conf"));
}
