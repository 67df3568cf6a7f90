#include <drvsh/Files.h>
#include <drvsh/Script.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <unistd.h>

namespace
{
/// A folder of this test's own, gone afterwards.
class ScriptFile : public testing::Test
{
protected:
    ScriptFile()
    {
        char name[] = "/tmp/drvsh-script-XXXXXX";
        folder_ = mkdtemp(name);
        path_ = folder_ + "/a.drv";
    }
    ~ScriptFile() override
    {
        unlink(path_.c_str());
        rmdir(folder_.c_str());
    }
    void write(std::string const& text) { std::ofstream(path_, std::ios::binary) << text; }

    static std::string linesOf(Script& script)
    {
        std::string lines;
        std::string line;
        while (script.next(line))
            lines += script.place() + "<" + line + ">";
        return lines;
    }

    std::string folder_;
    std::string path_;
};

TEST_F(ScriptFile, HandsOutItsLinesWithTheirPlaces)
{
    write("a\n\nb c\r\nlast");
    Script script = Script::file(path_);
    EXPECT_EQ(path_ + ":1<a>" + path_ + ":2<>" + path_ + ":3<b c>" + path_ + ":4<last>",
              linesOf(script));
    EXPECT_EQ("", script.problem());
    EXPECT_EQ(folder_ + "/", script.folder());
}

TEST_F(ScriptFile, MayBeEmpty)
{
    write("");
    Script script = Script::file(path_);
    EXPECT_EQ("", linesOf(script));
    EXPECT_EQ("", script.problem());
}

TEST_F(ScriptFile, SaysWhyItCannotBeRead)
{
    Script missing = Script::file(path_);
    EXPECT_EQ("No such file or directory", missing.problem());
    EXPECT_EQ("", linesOf(missing));
    Script folder = Script::file(folder_);
    EXPECT_EQ("", linesOf(folder));
    EXPECT_EQ("Is a directory", folder.problem());
    std::string text = "as before";
    EXPECT_EQ("Is a directory", readFile(folder_, text));
    EXPECT_EQ("as before", text);
}

TEST_F(ScriptFile, IsReadWhole)
{
    write(std::string("a\0b\nc", 5));
    std::string text;
    EXPECT_EQ("", readFile(path_, text));
    EXPECT_EQ(std::string("a\0b\nc", 5), text);
}

TEST(Script, OfATextHasNoFolder)
{
    Script script = Script::text("-c", "a\nb\n");
    std::string line;
    ASSERT_TRUE(script.next(line));
    EXPECT_EQ("a", line);
    ASSERT_TRUE(script.next(line));
    EXPECT_EQ("b", line);
    EXPECT_EQ("-c:2", script.place());
    EXPECT_FALSE(script.next(line));
    EXPECT_EQ("", script.folder());
    EXPECT_EQ("", Script::file("nothing.drv").folder());
    EXPECT_EQ("/", Script::file("/nothing.drv").folder());
}

TEST(Script, OfAStreamReadsItLineByLine)
{
    std::istringstream stream("a\nb\n");
    Script script = Script::stream("<stdin>", stream);
    std::string line;
    ASSERT_TRUE(script.next(line));
    EXPECT_EQ("<stdin>:1", script.place());
    EXPECT_EQ('b', stream.peek());
}
} // namespace
