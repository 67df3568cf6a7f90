#include <drvsh/Files.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

char const CTRL_C[] = "\x03";
char const CTRL_D[] = "\x04";
char const CTRL_P[] = "\x10"; // the line before
char const TAB[] = "\t";
char const ENTER[] = "\r";

/// drvsh on a terminal: what is typed goes in, what the terminal gets is kept.
class Terminal
{
public:
    /// `variables` are "NAME=VALUE"; nothing else of the environment is there.
    Terminal(std::vector<std::string> const& arguments, std::vector<std::string> const& variables)
    {
        winsize size = {};
        size.ws_row = 24;
        size.ws_col = 200;
        child_ = ::forkpty(&terminal_, nullptr, nullptr, &size);
        if (child_ == 0)
            start(arguments, variables);
    }
    Terminal(Terminal const&) = delete;
    Terminal& operator=(Terminal const&) = delete;
    ~Terminal()
    {
        if (child_ > 0) {
            ::kill(child_, SIGKILL);
            ::waitpid(child_, nullptr, 0);
        }
        ::close(terminal_);
    }

    void type(std::string const& keys)
    {
        ASSERT_EQ(static_cast<ssize_t>(keys.size()), ::write(terminal_, keys.data(), keys.size()));
    }
    /// Waits until the terminal has got `text`, behind what was waited for before. Returns what
    /// came before it.
    std::string until(std::string const& text)
    {
        std::size_t at;
        while ((at = got_.find(text, seen_)) == std::string::npos)
            if (!more()) {
                ADD_FAILURE() << "no '" << text << "' in: " << got_.substr(seen_);
                return "";
            }
        std::string const before = got_.substr(seen_, at - seen_);
        seen_ = at + text.size();
        return before;
    }
    /// Waits for the program's end. Returns its exit status, -1 if it was killed.
    int end()
    {
        while (more()) {
        }
        int status = 0;
        ::waitpid(child_, &status, 0);
        child_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /// Everything that the terminal got.
    std::string const& all() const { return got_; }

private:
    [[noreturn]] static void start(std::vector<std::string> const& arguments,
                                   std::vector<std::string> const& variables)
    {
        std::vector<char*> words = {const_cast<char*>(DRVSH_PROGRAM)};
        for (std::string const& argument : arguments)
            words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        std::vector<char*> environment;
        for (std::string const& variable : variables)
            environment.push_back(const_cast<char*>(variable.c_str()));
        environment.push_back(nullptr);
        ::execve(DRVSH_PROGRAM, words.data(), environment.data());
        ::_exit(127);
    }
    /// Takes what comes next. Returns false at the end, which comes by force when nothing has come
    /// for very long.
    bool more()
    {
        pollfd waiting = {terminal_, POLLIN, 0};
        int const patience = 20000;
        if (::poll(&waiting, 1, patience) <= 0) {
            ::kill(child_, SIGKILL);
            return false;
        }
        char buffer[4096];
        ssize_t const count = ::read(terminal_, buffer, sizeof buffer);
        if (count <= 0)
            return false;
        got_.append(buffer, static_cast<std::size_t>(count));
        return true;
    }

    pid_t child_ = -1;
    int terminal_ = -1;
    std::string got_;
    std::size_t seen_ = 0;
};

class TerminalTest : public testing::Test
{
protected:
    TerminalTest()
    {
        char name[] = "/tmp/drvsh-terminal-XXXXXX";
        folder_ = ::mkdtemp(name);
        variables_ = {"XDG_STATE_HOME=" + folder_ + "/state", "TERM=xterm", "NO_COLOR=1"};
    }
    ~TerminalTest() override { fs::remove_all(folder_); }

    std::string history()
    {
        std::string text;
        readFile(folder_ + "/state/drvsh/history", text);
        return text;
    }

    std::string folder_;
    std::vector<std::string> variables_;
};

char const PROMPT[] = "drvsh> ";

#ifdef DRVSH_EDIT
TEST_F(TerminalTest, EndToEnd)
{
    {
        Terminal terminal({}, variables_);
        terminal.until("'help' lists the commands, Tab completes, Ctrl-D leaves.");
        terminal.until(PROMPT);
        terminal.type(std::string("driver add 'fxs 1'") + ENTER);
        terminal.until(PROMPT);
        terminal.type(std::string("attach 'fxs 1' room 'twelve 12'") + ENTER);
        terminal.until(PROMPT);

        // A quoted name, completed from its first letters, and a key.
        terminal.type(std::string("get fx") + TAB);
        terminal.until("'fxs 1' ");
        terminal.type(std::string("ro") + TAB + ENTER);
        terminal.until("twelve 12\r\n");
        terminal.until(PROMPT);

        // The line before comes back.
        terminal.type(std::string("echo once") + ENTER);
        terminal.until("\r\nonce\r\n");
        terminal.until(PROMPT);
        terminal.type(std::string(CTRL_P) + ENTER);
        terminal.until("\r\nonce\r\n");
        terminal.until(PROMPT);

        // Ctrl-C gives up the line; nothing of it is run.
        terminal.type("echo ne");
        terminal.until("echo ne");
        terminal.type(std::string("ver") + CTRL_C);
        terminal.until("^C");
        terminal.until(PROMPT);
        terminal.type(std::string("echo on") + ENTER);
        EXPECT_EQ(std::string::npos, terminal.until("\r\non\r\n").find("\r\nnever"));
        terminal.until(PROMPT);

        // On an empty line it does nothing.
        terminal.type(CTRL_C);
        terminal.until("^C");
        terminal.until(PROMPT);

        // A mistake ends nothing.
        terminal.type(std::string("ehco") + ENTER);
        terminal.until("error: unknown command 'ehco', did you mean 'echo'?\r\n");
        terminal.until(PROMPT);
        terminal.type(CTRL_D);
        EXPECT_EQ(0, terminal.end());
        EXPECT_EQ(std::string::npos, terminal.all().find("\033[31m"));
    }
    EXPECT_EQ("driver add 'fxs 1'\nattach 'fxs 1' room 'twelve 12'\nget 'fxs 1' room \necho once\n"
              "echo on\nehco\n",
              history());
    struct stat status = {};
    ASSERT_EQ(0, ::stat((folder_ + "/state/drvsh").c_str(), &status));
    EXPECT_EQ(0700u, status.st_mode & 07777u);

    // Another session goes on with that history.
    Terminal again({}, variables_);
    again.until(PROMPT);
    again.type(std::string(CTRL_P) + CTRL_P + ENTER);
    again.until("\r\non\r\n");
    again.until(PROMPT);
    again.type(std::string("exit") + ENTER);
    EXPECT_EQ(0, again.end());
}

TEST_F(TerminalTest, TabShowsWhatCanFollow)
{
    Terminal terminal({}, variables_);
    terminal.until(PROMPT);
    terminal.type(std::string("driver ") + TAB);
    terminal.until("add     remove  show\r\n");
    terminal.until("drvsh> driver ");
    terminal.type(std::string("a") + TAB + "x" + ENTER);
    terminal.until(PROMPT);
    terminal.type(std::string("drivers") + ENTER);
    terminal.until("x  DID_UNKNOWN\r\n");
    terminal.until(PROMPT);
    terminal.type(CTRL_D);
    EXPECT_EQ(0, terminal.end());
}
#endif

TEST_F(TerminalTest, ColoursWhereTheyAreWanted)
{
    variables_.pop_back();
    Terminal terminal({}, variables_);
    terminal.until(PROMPT);
    terminal.type(std::string("listen l --veto --refuse added") + ENTER);
    terminal.until(PROMPT);
    terminal.type(std::string("driver add x") + ENTER);
    terminal.until("  \033[31ml: x: refused (\"refused\")\033[0m\r\n"
                   "\033[31merror: driver add: refused\033[0m\r\n");
    terminal.until(PROMPT);
    terminal.type(CTRL_D);
    EXPECT_EQ(0, terminal.end());
}

TEST_F(TerminalTest, ScriptsHaveColoursOnATerminalToo)
{
    variables_.pop_back();
    Terminal script({"-c", "listen l", "-c", "driver add x", "-c", "nonsense"}, variables_);
    EXPECT_EQ(1, script.end());
    EXPECT_EQ("\033[1m> driver add x\033[0m\r\n  l: x: added\r\n"
              "\033[31m-c:3: unknown command 'nonsense'\033[0m\r\n",
              script.all());
    variables_.push_back("NO_COLOR=1");
    Terminal plain({"-c", "nonsense"}, variables_);
    EXPECT_EQ(1, plain.end());
    EXPECT_EQ("-c:1: unknown command 'nonsense'\r\n", plain.all());
}

TEST_F(TerminalTest, GoesOnBehindAScript)
{
    Terminal terminal({"-i", "-c", "driver add x"}, variables_);
    terminal.until(PROMPT);
    terminal.type(std::string("drivers") + ENTER);
    terminal.until("x  DID_UNKNOWN\r\n");
    terminal.until(PROMPT);
    terminal.type(CTRL_D);
    EXPECT_EQ(0, terminal.end());
}

// A terminal that can do nothing but show lines, as without the library that edits them.
TEST_F(TerminalTest, WithoutEditing)
{
    variables_[1] = "TERM=dumb";
    Terminal terminal({}, variables_);
    terminal.until("'help' lists the commands, Ctrl-D leaves.\r\n");
    terminal.until(PROMPT);
    terminal.type("echo one\n");
    terminal.until("\r\none\r\n");
    terminal.until(PROMPT);
    terminal.type("echo never");
    terminal.until("echo never");
    terminal.type(CTRL_C);
    terminal.until(PROMPT);
    terminal.type("echo on\n");
    EXPECT_EQ(std::string::npos, terminal.until("\r\non\r\n").find("\r\nnever"));
    terminal.until(PROMPT);
    terminal.type(CTRL_D);
    EXPECT_EQ(0, terminal.end());
    EXPECT_EQ("echo one\necho on\n", history());
}

TEST_F(TerminalTest, WithoutAPlaceForItsHistory)
{
    ASSERT_EQ("", writeFile(folder_ + "/state", "a file\n"));
    Terminal terminal({}, variables_);
    terminal.until(PROMPT);
    terminal.type(std::string("echo one") + ENTER);
    terminal.until(folder_ + "/state/drvsh/history: warning: the history is not kept: "
                             "Not a directory\r\none\r\n");
    terminal.until(PROMPT);
    terminal.type(std::string("echo two") + ENTER);
    EXPECT_EQ(std::string::npos, terminal.until("\r\ntwo\r\n").find("warning"));
    terminal.until(PROMPT);
    terminal.type(CTRL_D);
    EXPECT_EQ(0, terminal.end());
}
} // namespace
