#ifndef TESTS_DRVSH_SHELLFIXTURE_H
#define TESTS_DRVSH_SHELLFIXTURE_H

#include <drvsh/Script.h>
#include <drvsh/Shell.h>
#include <drvsh/TextNarrator.h>

#include <gtest/gtest.h>

#include <sstream>

/// A shell whose output is kept, to be compared as a whole.
class ShellFixture : public testing::Test
{
protected:
    /// Runs commands; their place is "t". Returns what they wrote to standard output.
    std::string run(std::string const& commands)
    {
        out_.str("");
        err_.str("");
        Script script = Script::text("t", commands);
        good_ = shell_.run(script, keepGoing_);
        return out_.str();
    }
    /// Runs commands of which one fails. Returns what was written to standard error.
    std::string failing(std::string const& commands)
    {
        run(commands);
        EXPECT_FALSE(good_) << commands;
        return err_.str();
    }
    /// Runs commands that go well without a word.
    void quietly(std::string const& commands)
    {
        EXPECT_EQ("", run(commands)) << commands;
        EXPECT_EQ("", err_.str()) << commands;
        EXPECT_TRUE(good_) << commands;
    }

    std::ostringstream out_;
    std::ostringstream err_;
    bool good_ = true;
    bool keepGoing_ = false;
    TextNarrator text_{out_, err_};
    Shell shell_{text_};
};

#endif
