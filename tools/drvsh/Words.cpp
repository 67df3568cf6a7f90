#include "Words.h"

#include <algorithm>

namespace
{
char const BLANKS[] = " \t";

bool isSpecial(char c)
{
    return std::string(" \t\"'\\").find(c) != std::string::npos;
}

/// Whether a word, or the beginning of one, means itself.
bool isPlain(std::string const& word)
{
    return word.compare(0, 1, "#") != 0 && std::none_of(word.begin(), word.end(), isSpecial);
}

class Splitter
{
public:
    explicit Splitter(std::string const& line) : line_(line) {}
    CommandLine split();
    PartialLine splitPartial();

private:
    std::string word();
    void singleQuotes(std::string& word);
    void doubleQuotes(std::string& word);
    bool atBlank() const { return at_ < line_.size() && (line_[at_] == ' ' || line_[at_] == '\t'); }

    std::string const& line_;
    std::size_t at_ = 0;
    bool isPartial_ = false; // then quotes need not be closed
};

CommandLine Splitter::split()
{
    CommandLine result;
    std::size_t end = 0;
    std::size_t const start = line_.find_first_not_of(BLANKS);
    for (;;) {
        while (atBlank())
            ++at_;
        if (at_ >= line_.size() || line_[at_] == '#')
            break;
        result.words.push_back(word());
        end = at_;
    }
    if (end != 0)
        result.text = line_.substr(start, end - start);
    return result;
}

PartialLine Splitter::splitPartial()
{
    isPartial_ = true;
    PartialLine result;
    for (;;) {
        while (atBlank())
            ++at_;
        result.start = at_;
        result.isComment = at_ < line_.size() && line_[at_] == '#';
        if (at_ >= line_.size() || result.isComment)
            return result;
        result.last = word();
        if (at_ >= line_.size())
            return result;
        result.words.push_back(std::move(result.last));
        result.last.clear();
    }
}

std::string Splitter::word()
{
    std::string word;
    while (at_ < line_.size() && !atBlank()) {
        char const c = line_[at_++];
        if (c == '\'') {
            singleQuotes(word);
        } else if (c == '"') {
            doubleQuotes(word);
        } else if (c == '\\') {
            if (at_ < line_.size())
                word += line_[at_++];
            else if (!isPartial_)
                throw QuotingError("there is nothing behind the backslash");
        } else {
            word += c;
        }
    }
    return word;
}

void Splitter::singleQuotes(std::string& word)
{
    std::size_t const end = line_.find('\'', at_);
    if (end == std::string::npos && !isPartial_)
        throw QuotingError("a quote ' is not closed");
    word.append(line_, at_, end - at_);
    at_ = end == std::string::npos ? line_.size() : end + 1;
}

void Splitter::doubleQuotes(std::string& word)
{
    std::string const escapable = "\"\\$`";
    while (at_ < line_.size()) {
        char const c = line_[at_++];
        if (c == '"')
            return;
        bool const escapes =
            c == '\\' && at_ < line_.size() && escapable.find(line_[at_]) != std::string::npos;
        word += escapes ? line_[at_++] : c;
    }
    if (!isPartial_)
        throw QuotingError("a quote \" is not closed");
}
} // namespace

CommandLine splitWords(std::string const& line)
{
    return Splitter(line).split();
}

PartialLine splitPartial(std::string const& line)
{
    return Splitter(line).splitPartial();
}

std::string openQuoted(std::string const& beginning)
{
    if (isPlain(beginning))
        return beginning;
    if (beginning.find('\'') == std::string::npos)
        return "'" + beginning;
    std::string text;
    for (char c : beginning) {
        if (isSpecial(c) || (text.empty() && c == '#'))
            text += '\\';
        text += c;
    }
    return text;
}

std::string quoted(std::string const& word)
{
    if (!word.empty() && isPlain(word))
        return word;
    if (word.find('\'') == std::string::npos)
        return "'" + word + "'";
    std::string text = "\"";
    for (char c : word) {
        if (c == '"' || c == '\\' || c == '$' || c == '`')
            text += '\\';
        text += c;
    }
    return text + "\"";
}
