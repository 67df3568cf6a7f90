#include "Command.h"

#include "Nearest.h"

#include <algorithm>

CommandEntries const& allCommands()
{
    static CommandEntries const all = [] {
        CommandEntries entries;
        addLoadCommand(entries);
        addDriverCommands(entries);
        addFindCommand(entries);
        addListenCommands(entries);
        addAttachmentCommands(entries);
        addGroupCommands(entries);
        addExplainCommands(entries);
        addInfoCommand(entries);
        addNameCommands(entries);
        addGeneralCommands(entries);
        return entries;
    }();
    return all;
}

namespace
{
CommandEntry const* entryNamed(std::string const& name)
{
    for (CommandEntry const& entry : allCommands())
        if (entry.name == name)
            return &entry;
    return nullptr;
}

[[noreturn]] void refuse(std::vector<std::string> const& words)
{
    std::vector<std::string> names;
    std::string seconds;
    for (CommandEntry const& entry : allCommands()) {
        names.push_back(entry.name);
        if (entry.name.compare(0, words[0].size() + 1, words[0] + " ") == 0)
            seconds += (seconds.empty() ? "" : ", ") + entry.name.substr(words[0].size() + 1);
    }
    std::string const both = words.size() > 1 ? words[0] + " " + words[1] : words[0];
    if (!seconds.empty() && words.size() == 1)
        throw CommandError(words[0] + ": one of these is missing behind it: " + seconds);
    // The second word of a misspelt command may be its argument.
    std::string hint = didYouMean(both, names);
    if (hint.empty() && seconds.empty())
        hint = didYouMean(words[0], names);
    throw CommandError("unknown command '" + (seconds.empty() ? words[0] : both) + "'" + hint);
}
} // namespace

CommandEntry const& findCommand(std::vector<std::string> const& words, std::size_t& used)
{
    used = 2;
    if (words.size() > 1)
        if (CommandEntry const* const entry = entryNamed(words[0] + " " + words[1]))
            return *entry;
    used = 1;
    if (CommandEntry const* const entry = entryNamed(words[0]))
        return *entry;
    refuse(words);
}
