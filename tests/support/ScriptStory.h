#ifndef SUPPORT_SCRIPTSTORY_H
#define SUPPORT_SCRIPTSTORY_H

#include <exception>
#include <functional>
#include <list>
#include <string>
#include <utility>

/// What happened, told in words on one line. What a word's owner did when it was said stands in
/// brackets right behind the word, with the result at the end:
///
///     [add d: A+d B+d[unlisten B: B-d] C+d ok]
///
/// A cue lets something happen when a word is said; that is how observers, drivers and the monitor
/// of a test get their parts.
class Story
{
public:
    using Reaction = std::function<void()>;

    /// Lets `reaction` run the next time that `word` is said; several wait for one time each.
    void on(std::string const& word, Reaction reaction)
    {
        cues_.push_back(Cue{word, std::move(reaction)});
    }
    bool expects(std::string const& word) const
    {
        for (Cue const& cue : cues_)
            if (cue.word == word)
                return true;
        return false;
    }
    /// The words that somebody still waits for.
    std::string waiting() const
    {
        std::string words;
        for (Cue const& cue : cues_)
            words += cue.word + ";";
        return words;
    }

    /// Adds a word and lets happen what waits for it, which may throw.
    void say(std::string const& word)
    {
        if (!text_.empty() && text_.back() != '[')
            text_ += ' ';
        text_ += word;
        for (auto at = cues_.begin(); at != cues_.end(); ++at) {
            if (at->word != word)
                continue;
            const Reaction reaction = std::move(at->reaction);
            cues_.erase(at);
            reaction();
            return;
        }
    }
    /// Adds a word only if somebody waits for it.
    void hint(std::string const& word)
    {
        if (expects(word))
            say(word);
    }

    /// A call, for the length of a scope.
    class Call
    {
    public:
        Call(Story& story, std::string const& what) : story_(story), thrown_(uncaught())
        {
            story_.text_ += "[" + what;
        }
        Call(Call const&) = delete;
        Call& operator=(Call const&) = delete;
        ~Call() { story_.text_ += uncaught() > thrown_ ? " thrown]" : "]"; }

    private:
        static int uncaught() { return std::uncaught_exceptions(); }

        Story& story_;
        int thrown_;
    };

    /// What was told since the last call.
    std::string take()
    {
        std::string taken;
        taken.swap(text_);
        return taken;
    }

    /// A story with a line for each word, calls indented: for a reader who looks for a difference.
    static std::string tree(std::string const& story)
    {
        std::string lines;
        std::string indent;
        bool inHead = false; // between a bracket and the colon of its call
        bool inText = false;
        for (char c : story) {
            inText = c == '<' || (inText && c != '>');
            if (c == '[' && !inText) {
                inHead = true;
                lines += "\n  " + indent;
                indent += "    ";
            } else if (c == ']' && !inText) {
                indent.resize(indent.size() - 4);
            } else if (c == ' ' && !inHead && !inText) {
                lines += "\n" + indent;
            } else {
                lines += c;
            }
            inHead = inHead && c != ':' && c != ']';
        }
        return lines;
    }

private:
    struct Cue
    {
        std::string word;
        Reaction reaction;
    };

    std::string text_;
    std::list<Cue> cues_;
};

#endif
