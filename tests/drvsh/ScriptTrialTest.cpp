#include <drvsh/Files.h>
#include <drvsh/ScriptTrial.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;

/// Scripts in a folder of their own, which is the working folder.
class ScriptTrial : public testing::Test
{
protected:
    ScriptTrial()
    {
        char name[] = "/tmp/drvsh-trial-XXXXXX";
        folder_ = ::mkdtemp(name);
        before_ = fs::current_path();
        fs::current_path(folder_);
    }
    ~ScriptTrial() override
    {
        fs::current_path(before_);
        fs::remove_all(folder_);
    }

    void write(std::string const& file, std::string const& text)
    {
        ASSERT_EQ("", writeFile(file, text));
    }
    std::string text(std::string const& file)
    {
        std::string text;
        EXPECT_EQ("", readFile(file, text));
        return text;
    }
    /// What testing the files prints, and whether it went well.
    std::string test(std::vector<std::string> const& files, bool wanted)
    {
        std::ostringstream out;
        EXPECT_EQ(wanted, testScripts(files, out)) << out.str();
        return out.str();
    }
    std::string rewrite(std::vector<std::string> const& files, bool wanted)
    {
        std::ostringstream out;
        EXPECT_EQ(wanted, rewriteScripts(files, out)) << out.str();
        return out.str();
    }

    fs::path folder_;
    fs::path before_;
};

TEST_F(ScriptTrial, AllAsExpected)
{
    write("a.drv", "echo a\n----\na\n----\nlisten l\ndriver add x\n----\n"
                   "> driver add x\n  l: x: added\n----\n");
    write("b.drv", "drivers\n----\n----\n"); // a shell of its own: x is not there
    EXPECT_EQ("2 scripts, 3 transcripts as expected\n", test({"a.drv", "b.drv"}, true));
    EXPECT_EQ("1 script, 1 transcript as expected\n", test({"b.drv"}, true));
}

TEST_F(ScriptTrial, ShowsEveryDifference)
{
    write("a.drv", "echo a\n----\nb\n----\n\n# again\necho c\n----\nc\n----\necho d\n");
    write("b.drv", "echo a\n----\na\n----\n");
    EXPECT_EQ("a.drv:1: not as expected\n  - b\n  + a\n"
              "a.drv:11: not as expected\n  + d\n"
              "1 of 2 scripts failed\n",
              test({"a.drv", "b.drv"}, false));
}

TEST_F(ScriptTrial, AFailureIsPartOfTheTranscript)
{
    write("a.drv", "nonsense\necho 'open\ndriver add a\ndriver add a\n----\n"
                   "error: unknown command 'nonsense'\nerror: a quote ' is not closed\n"
                   "error: driver add: Driver already exists (CDriverRepo): a\n----\n");
    EXPECT_EQ("1 script, 1 transcript as expected\n", test({"a.drv"}, true));
}

TEST_F(ScriptTrial, RunsInTheFolderOfTheScript)
{
    fs::create_directory("sub");
    write("sub/lines.conf", "span=1,0,0,ccs,hdb3\nbchan=1-3\nnonsense=1\n");
    write("sub/a.drv", "load lines.conf\n----\n----\n");
    rewrite({"sub/a.drv"}, true);
    EXPECT_EQ("load lines.conf\n----\n"
              "lines.conf:3: warning: unknown keyword 'nonsense' is passed over\n----\n",
              text("sub/a.drv"));
    EXPECT_EQ(fs::canonical(folder_), fs::current_path());
}

TEST_F(ScriptTrial, AScriptThatExpectsNothingFails)
{
    write("a.drv", "listen a\n");
    EXPECT_EQ("a.drv: expects nothing; --rewrite adds what it tells\n1 of 1 script failed\n",
              test({"a.drv"}, false));
    write("a.drv", "");
    EXPECT_EQ("a.drv: expects nothing; --rewrite adds what it tells\n1 of 1 script failed\n",
              test({"a.drv"}, false));
}

TEST_F(ScriptTrial, WhatCannotBeReadFails)
{
    write("a.drv", "echo\n----\n");
    EXPECT_EQ("b.drv: can't be read: No such file or directory\n"
              ".: can't be read: Is a directory\n"
              "a.drv:2: what is expected has no end, ----\n"
              "3 of 3 scripts failed\n",
              test({"b.drv", ".", "a.drv"}, false));
    EXPECT_EQ("b.drv: can't be read: No such file or directory\n"
              "a.drv:2: what is expected has no end, ----\n",
              rewrite({"b.drv", "a.drv"}, false));
    EXPECT_EQ("echo\n----\n", text("a.drv"));
}

TEST_F(ScriptTrial, RewritingRenewsWhatDiffersAlone)
{
    write("a.drv", "# say\necho a\n----\nb\n----\n");
    write("b.drv", "echo b\n----\nb\n----\n");
    ASSERT_EQ(0, ::chmod("a.drv", 0640));
    EXPECT_EQ("a.drv: rewritten\n", rewrite({"a.drv", "b.drv"}, true));
    EXPECT_EQ("# say\necho a\n----\na\n----\n", text("a.drv"));
    struct stat status = {};
    ASSERT_EQ(0, ::stat("a.drv", &status));
    EXPECT_EQ(0640u, status.st_mode & 07777u);
    EXPECT_FALSE(fs::exists("a.drv.new"));
    EXPECT_EQ("", rewrite({"a.drv", "b.drv"}, true));
    EXPECT_EQ("2 scripts, 2 transcripts as expected\n", test({"a.drv", "b.drv"}, true));
}

TEST_F(ScriptTrial, RewritingFollowsALink)
{
    write("a.drv", "echo a\n");
    fs::create_symlink("a.drv", "link.drv");
    EXPECT_EQ("link.drv: rewritten\n", rewrite({"link.drv"}, true));
    EXPECT_TRUE(fs::is_symlink("link.drv"));
    EXPECT_EQ("echo a\n----\na\n----\n", text("a.drv"));
}

TEST_F(ScriptTrial, NothingRunsBehindExit)
{
    write("a.drv", "exit\necho a\n----\n----\necho b\n");
    EXPECT_EQ("1 script, 1 transcript as expected\n", test({"a.drv"}, true));
}
} // namespace
