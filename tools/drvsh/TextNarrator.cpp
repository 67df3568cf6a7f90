#include "TextNarrator.h"

#include "Json.h"

namespace
{
char const PLAIN[] = "";
char const BOLD[] = "\033[1m";
char const RED[] = "\033[31m";
char const YELLOW[] = "\033[33m";
char const FAINT[] = "\033[2m";
char const END[] = "\033[0m";

std::string coloured(bool wanted, char const* colour, std::string const& text)
{
    return wanted && *colour != '\0' ? colour + text + END : text;
}
} // namespace

void TextNarrator::useColours(bool out, bool err)
{
    coloursOut_ = out;
    coloursErr_ = err;
}

void TextNarrator::left(Hearer const& hearer)
{
    auto const width = widths_.find(hearer.name.size());
    if (width != widths_.end())
        widths_.erase(width);
}

void TextNarrator::command(std::string const& text)
{
    command_ = showCommands_ != Commands::None ? "> " + text : "";
    if (showCommands_ == Commands::All)
        showCommand();
}

void TextNarrator::said(std::string const& text)
{
    out_ << text << '\n';
}

void TextNarrator::result(Result const& result)
{
    if (result.asJson)
        out_ << jsonText(result.value, 2) << '\n';
    else
        out_ << result.text;
}

void TextNarrator::told(Notice const& notice)
{
    std::size_t const width = widths_.empty() ? 0 : *widths_.rbegin();
    std::size_t const own = notice.hearer.size();
    std::string const blanks(width > own ? width - own : 0, ' ');
    indented(notice.refusal ? RED : PLAIN, notice.hearer + ": " + blanks + noticeText(notice));
}

void TextNarrator::logged(int level, std::string const& text)
{
    bool const isError = level <= 3;
    indented(isError ? RED : FAINT, "[" + std::to_string(level) + "] " + text);
}

void TextNarrator::failed(std::string const& text)
{
    indented(RED, "failed: " + text);
}

void TextNarrator::complained(Complaint const& complaint)
{
    std::string text = complaint.place;
    if (!text.empty())
        text += ": ";
    if (complaint.isWarning)
        text += "warning: ";
    else if (complaint.place.empty())
        text += "error: ";
    // Everything written before stands before it.
    out_.flush();
    err_ << coloured(coloursErr_, complaint.isWarning ? YELLOW : RED, text + complaint.text)
         << '\n';
    err_.flush();
}

void TextNarrator::indented(char const* colour, std::string const& text)
{
    showCommand();
    out_ << "  " << coloured(coloursOut_, colour, text) << '\n';
}

void TextNarrator::showCommand()
{
    if (command_.empty())
        return;
    out_ << coloured(coloursOut_, BOLD, command_) << '\n';
    command_.clear();
}
