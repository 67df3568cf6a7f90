#ifndef DRVSH_REFUSALS_H
#define DRVSH_REFUSALS_H

#include <functional>
#include <string>
#include <vector>

/// What an observer of the shell refuses, and the reason that it gives.
///
/// Rules are texts. "added TEXT": what is added and meets the text, "added" alone: whatever is
/// added. "set KEY": any value of an attachment; "set KEY=VALUE": that value. "3rd" (or "3"): the
/// third question, whatever it is about.
class Refusals
{
public:
    /// Adds a rule. Returns false if the text is none.
    bool add(std::string const& rule);
    /// Gives the reason.
    void say(std::string const& text) { text_ = text; }
    std::string const& text() const { return text_; }

    // Each question counts; the answer is whether to refuse.

    /// `meets` tells whether what is added meets the text of a rule, which is not empty.
    bool refusesAdded(std::function<bool(std::string const&)> const& meets);
    bool refusesSet(std::string const& key, std::string const& value);

private:
    enum class Kind { Added, Set, SetTo, Nth };
    struct Rule
    {
        Kind kind;
        std::string text; // behind "added", or the key
        std::string value;
        unsigned number;
    };
    bool refuses(std::function<bool(Rule const&)> const& meets);

    std::vector<Rule> rules_;
    std::string text_ = "refused";
    unsigned asked_ = 0;
};

#endif
