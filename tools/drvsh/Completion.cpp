#include "Completion.h"

#include "Candidates.h"
#include "Shell.h"
#include "Words.h"

#include <algorithm>

namespace
{
using Words = std::vector<std::string>;

bool beginsWith(std::string const& text, std::string const& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

/// The words that can follow the first words of a command; none if these are a whole command.
Words nextOfCommand(Words const& words)
{
    std::string name;
    for (std::string const& word : words)
        name += word + " ";
    Words next;
    for (CommandEntry const& entry : allCommands())
        if (beginsWith(entry.name, name)) {
            std::string const rest = entry.name.substr(name.size());
            next.push_back(rest.substr(0, rest.find(' ')));
        }
    return next;
}

/// The command that the first words name, and how many words that takes; null if there is none.
CommandEntry const* commandOf(Words const& words, std::size_t& used)
{
    for (used = std::min<std::size_t>(2, words.size()); used > 0; --used) {
        std::string const name = used == 2 ? words[0] + " " + words[1] : words[0];
        for (CommandEntry const& entry : allCommands())
            if (entry.name == name)
                return &entry;
    }
    return nullptr;
}

/// Where in a command's arguments the next word stands.
class Position
{
public:
    Position(Arguments const& arguments, Words const& words) : arguments_(arguments)
    {
        for (std::string const& word : words)
            pass(word);
    }

    /// The names that the value there can have in the help; none if there can be no value.
    Words kinds() const
    {
        Words kinds;
        if (!option_.empty())
            kinds.push_back(option_);
        std::vector<Arguments::Positional> const& all = arguments_.positionals();
        if ((option_.empty() || mayGoOn_) && !all.empty()) {
            Arguments::Positional const& next = all[std::min(given_.size(), all.size() - 1)];
            if (given_.size() < all.size() || next.isMany)
                kinds.push_back(next.name);
        }
        return kinds;
    }
    bool takesOptions() const { return !onlyArguments_ && (option_.empty() || mayGoOn_); }
    /// The arguments that stand before.
    Words const& given() const { return given_; }

private:
    void pass(std::string const& word)
    {
        bool const isOption = !onlyArguments_ && beginsWith(word, "--");
        if (!option_.empty() && !(isOption && mayGoOn_)) {
            Arguments::OptionValue const* const value = arguments_.valueOf(name_);
            mayGoOn_ = value != nullptr && value->isMany;
            if (!mayGoOn_)
                option_.clear();
        } else if (word == "--" && isOption) {
            onlyArguments_ = true;
            option_.clear();
        } else if (isOption) {
            name_ = word;
            Arguments::OptionValue const* const value = arguments_.valueOf(word);
            option_ = value != nullptr ? value->name : "";
            mayGoOn_ = false;
        } else {
            given_.push_back(word);
        }
    }

    Arguments const& arguments_;
    Words given_;
    std::string name_;     // of the last option
    std::string option_;   // what its value is called, while one can follow
    bool mayGoOn_ = false; // whether it has one already
    bool onlyArguments_ = false;
};

void addOptions(Arguments const& arguments, Candidates& candidates)
{
    for (std::string const& option : arguments.options())
        candidates.add(option);
}

/// Candidates for a word of a command's arguments.
void addArguments(Shell& shell, CommandEntry const& entry, Words const& words,
                  std::string const& typed, Candidates& candidates)
{
    Arguments arguments(entry.name, entry.summary);
    std::unique_ptr<Command> const command = entry.make();
    command->declare(arguments);
    Position const position(arguments, words);
    std::size_t const equals = typed.find('=');
    if (position.takesOptions() && beginsWith(typed, "-")) {
        std::string const option = typed.substr(0, equals);
        if (equals == std::string::npos)
            addOptions(arguments, candidates);
        else if (Arguments::OptionValue const* const value = arguments.valueOf(option))
            candidates.addKind(shell, value->name, position.given(), option + "=",
                               typed.substr(equals + 1));
        return;
    }
    for (std::string const& kind : position.kinds())
        candidates.addKind(shell, kind, position.given(), "", typed);
    if (candidates.isEmpty() && typed.empty() && position.takesOptions())
        addOptions(arguments, candidates);
}

void addCandidates(Shell& shell, Words words, std::string const& typed, Candidates& candidates)
{
    bool const isHelp = !words.empty() && words[0] == "help";
    while (!words.empty() && (words[0] == "fails" || words[0] == "help"))
        words.erase(words.begin());
    std::size_t used = 0;
    CommandEntry const* const entry = commandOf(words, used);
    if (entry != nullptr && !isHelp) {
        words.erase(words.begin(), words.begin() + static_cast<long>(used));
        addArguments(shell, *entry, words, typed, candidates);
    } else if (words.size() < 2) {
        for (std::string const& word : nextOfCommand(words))
            candidates.add(word);
    }
}

std::string inCommon(std::vector<Completion::Candidate> const& candidates)
{
    std::string common = candidates.front().text;
    for (Completion::Candidate const& candidate : candidates) {
        std::size_t length = 0;
        while (length < common.size() && length < candidate.text.size() &&
               common[length] == candidate.text[length])
            ++length;
        common.resize(length);
    }
    // Not within a character of several bytes.
    while (!common.empty() && candidates.front().text.size() > common.size() &&
           (static_cast<unsigned char>(candidates.front().text[common.size()]) & 0xc0) == 0x80)
        common.pop_back();
    return common;
}
} // namespace

Completion complete(Shell& shell, std::string const& line)
{
    PartialLine const partial = splitPartial(line);
    Completion completion;
    completion.start = partial.start;
    completion.typed = partial.last;
    if (partial.isComment)
        return completion;
    Candidates candidates(partial.last);
    addCandidates(shell, partial.words, partial.last, candidates);
    completion.candidates = candidates.sorted();
    return completion;
}

std::string insertion(Completion const& completion)
{
    if (completion.candidates.empty())
        return "";
    if (completion.candidates.size() == 1) {
        Completion::Candidate const& only = completion.candidates.front();
        return only.isWhole ? quoted(only.text) + " " : openQuoted(only.text);
    }
    std::string const common = inCommon(completion.candidates);
    return common.size() > completion.typed.size() ? openQuoted(common) : "";
}
