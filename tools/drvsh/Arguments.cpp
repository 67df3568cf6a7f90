#include "Arguments.h"

#include "ChannelList.h"
#include "Nearest.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace
{
// Frames a stand-in; replaced by the original in everything that leaves this file.
char const OPEN = '\x01';
char const CLOSE = '\x02';

constexpr int MANY = CLI::detail::expected_max_vector_size;
} // namespace

Arguments::Arguments(std::string const& name, std::string const& summary,
                     std::string const& example)
    : app_(std::make_unique<CLI::App>(summary, name))
{
    if (!example.empty())
        app_->footer("Example:\n  " + example);
    app_->set_help_flag("--help", "Show this help");
    app_->allow_extras();
    app_->get_formatter()->column_width(26);
}

Arguments::~Arguments() = default;

void Arguments::footer(std::string const& text)
{
    app_->footer(text);
}

CLI::Option* Arguments::add(std::string const& name, std::string const& type,
                            std::string const& help,
                            std::function<void(Values const&)> const& store)
{
    auto const decodeAndStore = [this, store](CLI::results_t const& results) {
        Values values;
        for (std::string const& result : results)
            values.push_back(decoded(result));
        store(values);
        return true;
    };
    CLI::Option* const option = app_->add_option(name, decodeAndStore, help);
    option->type_name(type);
    option->type_size(1);
    for (std::string const& letter : option->get_snames())
        withValue_.insert(letter);
    for (std::string const& longName : option->get_lnames())
        values_["--" + longName] = {type, false};
    if (option->get_positional())
        positionals_.push_back({name, false});
    return option;
}

void Arguments::required(std::string const& name, std::string& value, std::string const& help)
{
    add(name, "", help, [&value](Values const& values) { value = values.front(); })->required();
}

void Arguments::optional(std::string const& name, std::optional<std::string>& value,
                         std::string const& help)
{
    add(name, "", help, [&value](Values const& values) { value = values.front(); });
}

void Arguments::rest(std::string const& name, std::vector<std::string>& values, std::size_t least,
                     std::string const& help)
{
    CLI::Option* const option =
        add(name, "", help, [&values](Values const& given) { values = given; });
    positionals_.back().isMany = true;
    option->required(least != 0)->expected(static_cast<int>(least), MANY)->allow_extra_args();
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void Arguments::option(std::string const& name, std::string const& type,
                       std::optional<std::string>& value, std::string const& help)
{
    add(name, type, help, [&value](Values const& values) { value = values.front(); });
}

void Arguments::addNumber(std::string const& name, std::string const& type, std::string const& help,
                          std::function<void(unsigned)> const& store)
{
    add(name, type, help, [name, store](Values const& values) {
        unsigned number = 0;
        if (!readNumber(values.front(), UINT32_MAX, number))
            throw UsageError(name + ": '" + values.front() + "' is no number from 0 to 4294967295");
        store(number);
    });
}

void Arguments::number(std::string const& name, unsigned& value, std::string const& help)
{
    addNumber(name, "N", help, [&value](unsigned number) { value = number; });
}

void Arguments::numberOrNone(std::string const& name, std::optional<unsigned>& value,
                             std::string const& help)
{
    withDefault_.insert(name);
    addNumber(name, "[=N]", help, [&value](unsigned number) { value = number; });
    values_.erase(name); // its value is no word of its own
}

void Arguments::list(std::string const& name, std::string const& type,
                     std::vector<std::string>& values, std::string const& help)
{
    CLI::Option* const option =
        add(name, type, help, [&values](Values const& given) { values = given; });
    values_[name].isMany = true;
    option->expected(1, MANY)->allow_extra_args();
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void Arguments::repeated(std::string const& name, std::string const& type,
                         std::vector<std::string>& values, std::string const& help)
{
    CLI::Option* const option =
        add(name, type, help, [&values](Values const& given) { values = given; });
    option->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void Arguments::flag(std::string const& name, bool& value, std::string const& help)
{
    app_->add_flag(name, value, help)->disable_flag_override();
}

void Arguments::raw(std::string const& name, std::vector<std::string>& words,
                    std::string const& help)
{
    rest(name, words, 1, help);
    raw_ = &words;
}

bool Arguments::parse(std::vector<std::string> const& words)
{
    if (raw_ != nullptr && !words.empty() && words.front() != "--help") {
        *raw_ = words;
        return true;
    }
    std::vector<std::string> encoded;
    bool onlyArguments = false;
    for (std::string const& word : words) {
        encoded.push_back(encode(word, onlyArguments));
        onlyArguments = onlyArguments || word == "--";
    }
    std::reverse(encoded.begin(), encoded.end());
    try {
        app_->parse(encoded);
    } catch (CLI::Success const&) {
        return false;
    } catch (CLI::ParseError const& error) {
        refuseExtras(); // more to the point than what is missing because of them
        throw UsageError(withoutStandIns(error.what()));
    }
    refuseExtras();
    return true;
}

std::string Arguments::encode(std::string const& word, bool onlyArguments)
{
    bool const isOption =
        word.size() > 1 && word.front() == '-' && (word[1] < '0' || word[1] > '9');
    if (onlyArguments || !isOption)
        return standIn(word);
    if (word == "--")
        return word;
    if (withDefault_.count(word) != 0)
        return word + "=" + standIn("0");
    std::size_t const equals = word.find('=');
    std::string encoded = word;
    if (word[1] != '-') {
        if (word.size() > 2 && withValue_.count(word.substr(1, 1)) != 0)
            encoded = word.substr(0, 2) + standIn(word.substr(2));
    } else if (equals != std::string::npos) {
        encoded = word.substr(0, equals + 1) + standIn(word.substr(equals + 1));
    }
    originals_[encoded] = word;
    return encoded;
}

std::string Arguments::standIn(std::string const& value)
{
    std::string const name = OPEN + std::to_string(originals_.size()) + CLOSE;
    originals_[name] = value;
    return name;
}

std::string Arguments::decoded(std::string const& word) const
{
    auto const original = originals_.find(word);
    return original != originals_.end() ? original->second : word;
}

std::string Arguments::withoutStandIns(std::string text) const
{
    std::size_t open = 0;
    while ((open = text.find(OPEN, open)) != std::string::npos) {
        std::size_t const close = text.find(CLOSE, open);
        if (close == std::string::npos)
            break;
        std::string const original = decoded(text.substr(open, close + 1 - open));
        text.replace(open, close + 1 - open, original);
        open += original.size();
    }
    return text;
}

void Arguments::refuseExtras() const
{
    for (std::string const& extra : app_->remaining()) {
        if (extra == "--")
            continue;
        std::string const word = decoded(extra);
        if (extra.front() == OPEN)
            throw UsageError("argument '" + word + "' is one too many");
        std::string const name = word.substr(0, word.find('='));
        throw UsageError("there is no option '" + name + "'" + didYouMean(name, options()));
    }
}

Arguments::OptionValue const* Arguments::valueOf(std::string const& option) const
{
    auto const found = values_.find(option);
    return found != values_.end() ? &found->second : nullptr;
}

std::string Arguments::help() const
{
    std::string text = app_->help();
    text.erase(text.find_last_not_of('\n') + 1);
    return text;
}

std::vector<std::string> Arguments::options() const
{
    std::vector<std::string> names;
    for (CLI::Option const* option : app_->get_options())
        for (std::string const& name : option->get_lnames())
            names.push_back("--" + name);
    return names;
}
