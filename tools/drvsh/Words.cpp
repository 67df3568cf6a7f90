#include "Words.h"

namespace
{
char const BLANKS[] = " \t";

class Splitter
{
public:
    explicit Splitter(std::string const& line) : line_(line) {}
    CommandLine split();

private:
    std::string word();
    void singleQuotes(std::string& word);
    void doubleQuotes(std::string& word);
    bool atBlank() const { return at_ < line_.size() && (line_[at_] == ' ' || line_[at_] == '\t'); }

    std::string const& line_;
    std::size_t at_ = 0;
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
            if (at_ >= line_.size())
                throw QuotingError("there is nothing behind the backslash");
            word += line_[at_++];
        } else {
            word += c;
        }
    }
    return word;
}

void Splitter::singleQuotes(std::string& word)
{
    std::size_t const end = line_.find('\'', at_);
    if (end == std::string::npos)
        throw QuotingError("a quote ' is not closed");
    word.append(line_, at_, end - at_);
    at_ = end + 1;
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
    throw QuotingError("a quote \" is not closed");
}
} // namespace

CommandLine splitWords(std::string const& line)
{
    return Splitter(line).split();
}

std::string quoted(std::string const& word)
{
    bool const plain =
        !word.empty() && word.front() != '#' && word.find_first_of(" \t\"'\\") == std::string::npos;
    if (plain)
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
