#ifdef DRVSH_EDIT

#include "LineReader.h"

#include <histedit.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace
{
/// How many characters the library counts in a text.
int characters(std::string const& text)
{
    std::size_t const count = std::mbstowcs(nullptr, text.c_str(), 0);
    return static_cast<int>(count != static_cast<std::size_t>(-1) ? count : text.size());
}

std::size_t terminalWidth()
{
    winsize size = {};
    bool const isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return isKnown ? size.ws_col : 80;
}

/// Words in columns, as many a line as fit.
void printColumns(std::vector<std::string> const& words)
{
    std::size_t width = 0;
    for (std::string const& word : words)
        width = std::max(width, word.size() + 2);
    std::size_t const perLine = std::max<std::size_t>(1, terminalWidth() / width);
    for (std::size_t i = 0; i < words.size(); ++i) {
        bool const isLast = i + 1 == words.size() || (i + 1) % perLine == 0;
        std::string const blanks(isLast ? 0 : width - words[i].size(), ' ');
        std::printf("%s%s%s", words[i].c_str(), blanks.c_str(), isLast ? "\n" : "");
    }
    std::fflush(stdout);
}

/// While it lives, Ctrl-C is a key like any other.
class PlainCtrlC
{
public:
    PlainCtrlC()
    {
        isTerminal_ = ::tcgetattr(STDIN_FILENO, &before_) == 0;
        termios changed = before_;
        changed.c_cc[VINTR] = _POSIX_VDISABLE;
        if (isTerminal_)
            ::tcsetattr(STDIN_FILENO, TCSADRAIN, &changed);
    }
    PlainCtrlC(PlainCtrlC const&) = delete;
    PlainCtrlC& operator=(PlainCtrlC const&) = delete;
    ~PlainCtrlC()
    {
        if (isTerminal_)
            ::tcsetattr(STDIN_FILENO, TCSADRAIN, &before_);
    }

private:
    termios before_ = {};
    bool isTerminal_;
};

/// Lines edited by libedit.
class EditReader : public LineReader
{
public:
    /// `edit` becomes the reader's.
    EditReader(Setup const& setup, EditLine* edit);
    ~EditReader() override;

    Got read(std::string& line) override;
    bool completes() const override { return true; }
    void remember(std::string const& line) override;

private:
    static EditReader& self(EditLine* edit);
    static char* prompt(EditLine* edit);
    static unsigned char completeWord(EditLine* edit, int);
    static unsigned char cancelLine(EditLine* edit, int);
    unsigned char completeWord();

    Setup setup_;
    EditLine* edit_;
    ::History* history_;
    bool cancelled_ = false;
};

// Frames what the prompt holds for the terminal alone.
char const ESCAPE = '\1';

EditReader::EditReader(Setup const& setup, EditLine* edit)
    : setup_(setup), edit_(edit), history_(::history_init())
{
    if (setup_.colours)
        setup_.prompt = "\1\033[1m\1" + setup_.prompt + "\1\033[0m\1";
    HistEvent event;
    int const most = 1000;
    ::history(history_, &event, H_SETSIZE, most);
    ::history(history_, &event, H_SETUNIQUE, 1);
    for (std::string const& line : setup_.history)
        remember(line);
    ::el_set(edit_, EL_CLIENTDATA, this);
    ::el_set(edit_, EL_PROMPT_ESC, &EditReader::prompt, ESCAPE);
    ::el_set(edit_, EL_EDITOR, "emacs");
    ::el_set(edit_, EL_SIGNAL, 1);
    ::el_set(edit_, EL_HIST, ::history, history_);
    using Function = unsigned char (*)(EditLine*, int);
    Function const complete = &EditReader::completeWord;
    Function const cancel = &EditReader::cancelLine;
    // Of narrow texts the library keeps copies that it never frees.
    ::el_wset(edit_, EL_ADDFN, L"drvsh-complete", L"Complete a word", complete);
    ::el_wset(edit_, EL_ADDFN, L"drvsh-cancel", L"Give up the line", cancel);
    ::el_set(edit_, EL_BIND, "^I", "drvsh-complete", nullptr);
    ::el_set(edit_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    ::el_set(edit_, EL_BIND, "^C", "drvsh-cancel", nullptr);
}

EditReader::~EditReader()
{
    ::el_end(edit_);
    ::history_end(history_);
}

LineReader::Got EditReader::read(std::string& line)
{
    PlainCtrlC const guard;
    // Before the prompt is shown, so that no key is lost that is typed as soon as it is.
    ::el_set(edit_, EL_PREP_TERM, 1);
    cancelled_ = false;
    int count = 0;
    errno = 0;
    char const* const read = ::el_gets(edit_, &count);
    if (cancelled_ || (read == nullptr && count < 0 && errno == EINTR))
        return Got::Cancelled;
    if (read == nullptr || count <= 0)
        return Got::End;
    line.assign(read, static_cast<std::size_t>(count));
    if (line.back() == '\n')
        line.pop_back();
    return Got::Line;
}

void EditReader::remember(std::string const& line)
{
    HistEvent event;
    if (!line.empty())
        ::history(history_, &event, H_ENTER, line.c_str());
}

EditReader& EditReader::self(EditLine* edit)
{
    void* data = nullptr;
    ::el_get(edit, EL_CLIENTDATA, &data);
    return *static_cast<EditReader*>(data);
}

char* EditReader::prompt(EditLine* edit)
{
    return &self(edit).setup_.prompt[0];
}

unsigned char EditReader::completeWord(EditLine* edit, int)
{
    return self(edit).completeWord();
}

unsigned char EditReader::completeWord()
{
    LineInfo const* const info = ::el_line(edit_);
    std::string const line(info->buffer, info->cursor);
    Completion const completion = setup_.complete(line);
    std::string const text = insertion(completion);
    if (!text.empty()) {
        std::string const typed = line.substr(completion.start);
        if (!typed.empty())
            ::el_deletestr(edit_, characters(typed));
        ::el_insertstr(edit_, text.c_str());
        return CC_REFRESH;
    }
    if (completion.candidates.empty())
        return CC_REFRESH_BEEP;
    std::vector<std::string> words;
    for (Completion::Candidate const& candidate : completion.candidates)
        words.push_back(candidate.text);
    std::printf("\n");
    printColumns(words);
    return CC_REDISPLAY;
}

unsigned char EditReader::cancelLine(EditLine* edit, int)
{
    self(edit).cancelled_ = true;
    // Writing what is behind the cursor once more leads to the line's end.
    LineInfo const* const info = ::el_line(edit);
    std::printf("%s^C\n", std::string(info->cursor, info->lastchar).c_str());
    std::fflush(stdout);
    return CC_NEWLINE;
}
} // namespace

std::unique_ptr<LineReader> makeLineReader(LineReader::Setup const& setup)
{
    char const* const terminal = std::getenv("TERM");
    bool const canEdit =
        terminal != nullptr && *terminal != '\0' && std::strcmp(terminal, "dumb") != 0;
    // What is typed is text in the user's encoding; drvsh prints nothing that depends on it.
    std::setlocale(LC_CTYPE, "");
    EditLine* const edit = canEdit ? ::el_init("drvsh", stdin, stdout, stderr) : nullptr;
    if (edit == nullptr)
        return makePlainReader(setup);
    return std::make_unique<EditReader>(setup, edit);
}

#endif
