#include <drvsh/Files.h>
#include <drvsh/LineHistory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// Sets a variable of the environment while it lives, or takes it away.
class Variable
{
public:
    Variable(char const* name, char const* value) : name_(name)
    {
        if (char const* const old = std::getenv(name))
            old_ = old;
        set(value);
    }
    Variable(Variable const&) = delete;
    Variable& operator=(Variable const&) = delete;
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(char const* value)
    {
        if (value != nullptr)
            ::setenv(name_, value, 1);
        else
            ::unsetenv(name_);
    }

    char const* name_;
    std::optional<std::string> old_;
};

class LineHistoryTest : public testing::Test
{
protected:
    LineHistoryTest()
    {
        char name[] = "/tmp/drvsh-history-XXXXXX";
        folder_ = ::mkdtemp(name);
        file_ = folder_ + "/state/drvsh/history";
    }
    ~LineHistoryTest() override { fs::remove_all(folder_); }

    static unsigned modeOf(std::string const& path)
    {
        struct stat status = {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777u : 0;
    }
    std::string text()
    {
        std::string text;
        readFile(file_, text);
        return text;
    }

    std::string folder_;
    std::string file_;
};

struct Place
{
    char const* state;
    char const* home;
    char const* file;
};

TEST_F(LineHistoryTest, LiesInTheUsersFolderForStates)
{
    Place const cases[] = {
        {"/s", "/h", "/s/drvsh/history"},
        {"/s", nullptr, "/s/drvsh/history"},
        {nullptr, "/h", "/h/.local/state/drvsh/history"},
        {"", "/h", "/h/.local/state/drvsh/history"},
        {"relative", "/h", "/h/.local/state/drvsh/history"},
        {nullptr, nullptr, ""},
    };
    for (Place const& c : cases) {
        Variable const state("XDG_STATE_HOME", c.state);
        Variable const home("HOME", c.home);
        EXPECT_EQ(c.file, LineHistory::ofUser().file());
    }
}

TEST_F(LineHistoryTest, IsKeptForTheUserAlone)
{
    LineHistory history(file_);
    history.add("driver add 'fxs 1'");
    history.add("drivers");
    EXPECT_EQ("driver add 'fxs 1'\ndrivers\n", text());
    EXPECT_EQ(0700u, modeOf(folder_ + "/state"));
    EXPECT_EQ(0700u, modeOf(folder_ + "/state/drvsh"));
    EXPECT_EQ(0600u, modeOf(file_));
    EXPECT_THAT(LineHistory(file_).load(), ElementsAre("driver add 'fxs 1'", "drivers"));
}

TEST_F(LineHistoryTest, LeavesAFolderThatIsThereAsItIs)
{
    ASSERT_EQ(0, ::mkdir((folder_ + "/state").c_str(), 0755));
    LineHistory(file_).add("a");
    EXPECT_EQ(0755u, modeOf(folder_ + "/state"));
    EXPECT_EQ(0700u, modeOf(folder_ + "/state/drvsh"));
}

TEST_F(LineHistoryTest, KeepsNoEmptyNorRepeatedLine)
{
    LineHistory history(file_);
    for (std::string const& line : {std::string("a"), std::string("a"), std::string(),
                                    std::string("b"), std::string("a"), std::string("x\0y", 3)})
        history.add(line);
    EXPECT_EQ("a\nb\na\n", text());
}

TEST_F(LineHistoryTest, OfTwoSessionsGoesIntoOneFile)
{
    LineHistory one(file_);
    LineHistory other(file_);
    one.add("a");
    other.add("b");
    one.add("c");
    EXPECT_EQ("a\nb\nc\n", text());
}

TEST_F(LineHistoryTest, HandsOutTheLastThousandAndDropsTheRestInTime)
{
    LineHistory history(file_);
    for (int i = 1; i <= 2000; ++i)
        history.add("line " + std::to_string(i));
    std::vector<std::string> lines = history.load();
    ASSERT_EQ(1000u, lines.size());
    EXPECT_EQ("line 1001", lines.front());
    EXPECT_EQ("line 2000", lines.back());
    EXPECT_EQ(0u, text().find("line 1\n"));
    history.add("line 2001");
    lines = history.load();
    ASSERT_EQ(1000u, lines.size());
    EXPECT_EQ("line 1002", lines.front());
    EXPECT_EQ(0u, text().find("line 1002\n"));
    EXPECT_EQ(0600u, modeOf(file_));
}

TEST_F(LineHistoryTest, ThatCannotBeKeptSaysWhy)
{
    ASSERT_EQ("", writeFile(folder_ + "/state", "a file\n"));
    LineHistory history(file_);
    history.add("a");
    EXPECT_EQ("Not a directory", history.problem());
    EXPECT_THAT(history.load(), IsEmpty());
    LineHistory nowhere("");
    nowhere.add("a");
    EXPECT_EQ("", nowhere.problem());
    EXPECT_THAT(nowhere.load(), IsEmpty());
}
} // namespace
