#include "ChannelList.h"
#include "Json.h"
#include "Shell.h"

#include "Words.h"

namespace
{
class Echo : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.rest("TEXT", words_, 0, "What to print, words joined by one blank");
    }
    void run(Shell& shell) override
    {
        std::string text;
        for (std::string const& word : words_)
            text += (&word == &words_.front() ? "" : " ") + word;
        shell.output().say(text);
    }

private:
    std::vector<std::string> words_;
};

class Fails : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.raw("COMMAND", words_, "The command that must fail, with its arguments");
    }
    void run(Shell& shell) override
    {
        if (words_.front() == "fails")
            throw CommandError("it can't stand behind itself");
        try {
            shell.execute(words_);
        } catch (CommandError const& error) {
            shell.output().failed(error.what());
            return;
        }
        throw CommandError("'" + words_.front() + "' was to fail, but did not");
    }

private:
    std::vector<std::string> words_;
};

class Log : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.optional("VERBOSITY", verbosity_,
                           "Show debug lines up to this verbosity (0), or 'off'");
    }
    void run(Shell& shell) override
    {
        unsigned verbosity = 0;
        if (verbosity_ == "off")
            shell.hideLog();
        else if (!verbosity_ || readNumber(*verbosity_, UINT32_MAX, verbosity))
            shell.showLog(verbosity);
        else
            throw CommandError("'" + *verbosity_ +
                               "' is neither a number from 0 to 4294967295 nor 'off'");
    }

private:
    std::optional<std::string> verbosity_;
};

class Exit : public Command
{
public:
    void declare(Arguments&) override {}
    void run(Shell& shell) override { shell.end(); }
};

class Help : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.rest("COMMAND", words_, 0, "A command, or the first word of several");
        arguments.flag("--json", json_, "The list as JSON, for programs");
    }
    void run(Shell& shell) override
    {
        Rows shown;
        Json value = Json::array();
        for (CommandEntry const& entry : allCommands())
            if (words_.empty() ||
                (words_.size() == 1 &&
                 entry.name.compare(0, words_[0].size() + 1, words_[0] + " ") == 0)) {
                shown.emplace_back(entry.name, entry.summary);
                value.push_back({{"command", entry.name}, {"summary", entry.summary}});
            }
        if (!shown.empty()) {
            shell.output().result(tableText(shown), value, json_);
            return;
        }
        std::size_t used = 0;
        CommandEntry const& entry = findCommand(words_, used);
        Arguments arguments(entry.name, entry.summary, entry.example);
        std::unique_ptr<Command> const command = entry.make();
        command->declare(arguments);
        shell.output().line(arguments.help());
    }

private:
    std::vector<std::string> words_;
    bool json_ = false;
};
} // namespace

void addGeneralCommands(CommandEntries& entries)
{
    entries.push_back(
        commandEntry<Echo>("echo", "Print a text", "echo 'The guard refuses a port.'"));
    entries.push_back(commandEntry<Fails>("fails", "Succeed, and say why, if a command fails",
                                          "fails driver add 'fxs 1'"));
    entries.push_back(
        commandEntry<Log>("log", "Show the library's log lines from here on", "log 7"));
    entries.push_back(commandEntry<Exit>("exit", "Run no further command", "exit"));
    entries.push_back(commandEntry<Exit>("quit", "Run no further command", "quit"));
    entries.push_back(
        commandEntry<Help>("help", "Show the commands, or how to use one", "help driver add"));
}
