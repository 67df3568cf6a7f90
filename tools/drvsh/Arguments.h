#ifndef DRVSH_ARGUMENTS_H
#define DRVSH_ARGUMENTS_H

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

// Its header takes seconds to compile; nobody but Arguments needs it.
namespace CLI
{
class App;
class Option;
} // namespace CLI

/// Arguments that a command does not understand.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The arguments and options of a command (or of the program), as CLI11 parses them, but exact:
/// every value arrives as it was written. CLI11 by itself takes "[a,b]" apart, and takes an empty
/// value for none; so it gets to see stand-ins for all words that are not options.
///
/// Options may stand anywhere before "--"; behind it everything is an argument, "-x" as well. "-"
/// and "-5" always are. A value that begins with "-" is written "--option=-x".
///
/// The variables given to the declaring operations must live until `parse` is done. They keep what
/// they have if the argument is left out.
class Arguments
{
public:
    /// `example`: a line that shows how to use it, for the help.
    Arguments(std::string const& name, std::string const& summary, std::string const& example = "");
    Arguments(Arguments const&) = delete;
    Arguments& operator=(Arguments const&) = delete;
    ~Arguments();

    /// An argument that must be given.
    void required(std::string const& name, std::string& value, std::string const& help);
    /// An argument that may be left out, behind those that must be given.
    void optional(std::string const& name, std::optional<std::string>& value,
                  std::string const& help);
    /// All further arguments, at least `least` of them.
    void rest(std::string const& name, std::vector<std::string>& values, std::size_t least,
              std::string const& help);
    /// An option with a value; `type` is the value's name in the help.
    void option(std::string const& name, std::string const& type, std::optional<std::string>& value,
                std::string const& help);
    /// An option with a number from 0 to 4294967295.
    void number(std::string const& name, unsigned& value, std::string const& help);
    /// An option with a number that may be left out: "--name" stands for "--name=0".
    void numberOrNone(std::string const& name, std::optional<unsigned>& value,
                      std::string const& help);
    /// An option with one value or several behind it, that may also be repeated.
    void list(std::string const& name, std::string const& type, std::vector<std::string>& values,
              std::string const& help);
    /// An option with exactly one value, that may be repeated.
    void repeated(std::string const& name, std::string const& type,
                  std::vector<std::string>& values, std::string const& help);
    /// An option without a value.
    void flag(std::string const& name, bool& value, std::string const& help);
    /// Takes all words as they are, options as well; nothing else may be declared beside it.
    void raw(std::string const& name, std::vector<std::string>& words, std::string const& help);

    /// Parses words, the command's own name not among them. Throws UsageError. Returns false if
    /// they ask for help instead, which is then in `help`.
    bool parse(std::vector<std::string> const& words);

    /// How to use it: usage, arguments and options with their help. Without a line end.
    std::string help() const;
    /// The names of all options, "--help" among them.
    std::vector<std::string> options() const;

    /// What the help calls an argument, and whether it may be given several times.
    struct Positional
    {
        std::string name;
        bool isMany;
    };
    /// The arguments, in their order.
    std::vector<Positional> const& positionals() const { return positionals_; }
    /// What the help calls the value of an option, and whether several may follow it.
    struct OptionValue
    {
        std::string name;
        bool isMany;
    };
    /// Of the option "--name"; null if there is none, or if it takes no value.
    OptionValue const* valueOf(std::string const& option) const;
    /// Text that stands under the help.
    void footer(std::string const& text);

private:
    using Values = std::vector<std::string>;
    CLI::Option* add(std::string const& name, std::string const& type, std::string const& help,
                     std::function<void(Values const&)> const& store);
    void addNumber(std::string const& name, std::string const& type, std::string const& help,
                   std::function<void(unsigned)> const& store);
    std::string encode(std::string const& word, bool onlyArguments);
    std::string standIn(std::string const& value);
    std::string decoded(std::string const& word) const;
    std::string withoutStandIns(std::string text) const;
    void refuseExtras() const;

    std::unique_ptr<CLI::App> app_;
    std::map<std::string, std::string> originals_; // what CLI11 sees to what was written
    std::set<std::string> withDefault_;            // options whose number may be left out
    std::set<std::string> withValue_;              // letters of options that take a value
    std::vector<Positional> positionals_;
    std::map<std::string, OptionValue> values_; // by option
    std::vector<std::string>* raw_ = nullptr;
};

#endif
