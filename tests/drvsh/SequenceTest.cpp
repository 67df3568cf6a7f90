#include "ShellFixture.h"

#include <drvsh/SequencePicture.h>
#include <drvsh/Svg.h>

#include <gmock/gmock.h>

#include <regex>

namespace
{
using testing::ElementsAre;

/// A shell whose transcript is also kept as a sequence.
class SequenceTest : public ShellFixture
{
protected:
    SequenceTest() { shell_.output().add(sequence_); }

    /// The steps in words: caption, command, notices ("<" before those that take back), failure.
    std::string steps()
    {
        std::string text;
        for (SequenceStep const& step : sequence_.steps()) {
            if (!step.caption.empty())
                text += "# " + step.caption + "\n";
            text += step.command + "\n";
            std::vector<bool> const back = rollback(step.notices);
            for (std::size_t i = 0; i < step.notices.size(); ++i)
                text += (back[i] ? " <" : "  ") + step.notices[i].hearer + ": " +
                        noticeText(step.notices[i]) + "\n";
            if (step.failure)
                text += "  ! " + *step.failure + "\n";
        }
        return text;
    }

    /// One text of the picture, where it stands, and how it is drawn.
    struct Label
    {
        std::string style;
        double x;
        double y;
        std::string anchor;
        std::string text;
        double left() const
        {
            return x - textWidth(text) * (anchor == "end" ? 1 : anchor == "middle" ? 0.5 : 0);
        }
        double right() const { return left() + textWidth(text); }
    };
    std::vector<Label> labels()
    {
        std::string const svg = sequencePicture(sequence_);
        std::regex const pattern("<text class=\"([a-z]+)\" x=\"([-0-9.]+)\" y=\"([-0-9.]+)\" "
                                 "text-anchor=\"([a-z]+)\">([^<]*)</text>");
        std::vector<Label> found;
        for (std::sregex_iterator at(svg.begin(), svg.end(), pattern), end; at != end; ++at)
            found.push_back(
                {(*at)[1], std::stod((*at)[2]), std::stod((*at)[3]), (*at)[4], (*at)[5]});
        return found;
    }
    std::vector<std::string> textsOf(std::string const& style)
    {
        std::vector<std::string> texts;
        for (Label const& label : labels())
            if (label.style == style)
                texts.push_back(label.text);
        return texts;
    }

    Sequence sequence_;
};

TEST_F(SequenceTest, KeepsWhatCausedSomethingOrFailed)
{
    run("listen desk\nlisten guard --priority 9 --veto --refuse added --say 'no room'\n"
        "driver remove x\nfails driver add 'fxs 1'\ngroup add\n");
    EXPECT_EQ("fails driver add 'fxs 1'\n"
              "  desk: fxs 1: added\n"
              "  guard: fxs 1: refused (\"no room\")\n"
              " <desk: fxs 1: removed\n"
              "  ! driver add: no room\n"
              "group add\n"
              "  ! group add: GROUP is required\n",
              steps());
}

TEST_F(SequenceTest, KeepsEveryCommandWhereAskedTo)
{
    sequence_.showCommands(true);
    run("listen desk\necho what comes\ndriver add a\nget a k");
    EXPECT_EQ("listen desk\n# what comes\ndriver add a\n  desk: a: added\nget a k\n", steps());
}

TEST_F(SequenceTest, CaptionsStandAboveTheStepThatFollows)
{
    run("echo lost\necho\necho first\necho line\nlisten desk\ndriver add a\n"
        "echo of the list\ndrivers\ndriver add b");
    EXPECT_EQ("# first line\ndriver add a\n  desk: a: added\ndriver add b\n  desk: b: added\n",
              steps());
}

TEST_F(SequenceTest, ALineThatCannotBeReadIsItsOwnStep)
{
    keepGoing_ = true;
    run("listen desk\ndriver add a\necho 'a");
    EXPECT_EQ("driver add a\n  desk: a: added\necho 'a\n  ! a quote ' is not closed\n", steps());
}

TEST_F(SequenceTest, TakesBackOnlyTheValueThatTheStepBrought)
{
    run("listen l --priority 1\nlisten v --priority 2 --veto --refuse 'set k=2'\n"
        "driver add a\nattach a k 1");
    run("fails attach a k 2");
    EXPECT_EQ("fails attach a k 2\n"
              "  v: a: cleared k=1\n"
              "  l: a: cleared k=1\n"
              "  l: a: set k=2\n"
              "  v: a: refused k=2 (\"refused\")\n"
              " <l: a: cleared k=2\n"
              "  ! attach: refused\n",
              steps().substr(steps().find("fails attach")));
}

TEST_F(SequenceTest, TakesBackOnlyTheTimeslotsThatTheStepBrought)
{
    run("group add g 0-3\ngroup observe g o\n"
        "group observe g w --priority 1 --veto --refuse 'added 5'\nfails group set g 4-6");
    EXPECT_EQ("fails group set g 4-6\n"
              "  o: g: added 4-6 (0-3 -> 0-6)\n"
              "  w: g: refused 4-6 (\"refused\")\n"
              " <o: g: removed 4-6 (0-6 -> 0-3)\n"
              "  w: g: removed 0-3 (0-3 -> none)\n"
              "  o: g: removed 0-3 (0-3 -> none)\n"
              "  ! group set: refused\n",
              steps());
}

TEST_F(SequenceTest, ARefusalThatDoesNotCountTakesNothingBack)
{
    run("listen l --refuse 'added x'\nlisten m --priority 1\ndriver add x\ndriver remove x");
    EXPECT_EQ("driver add x\n"
              "  l: x: refused (\"refused\"), without right of veto\n"
              "  m: x: added\n"
              "driver remove x\n"
              "  m: x: removed\n"
              "  l: x: removed\n",
              steps());
}

Notice noticeOf(Notice::What what, char const* hearer, bool refused = false, bool counts = true)
{
    Notice notice;
    notice.what = what;
    notice.hearer = hearer;
    notice.subject = "x";
    if (refused)
        notice.refusal = Refusal{"no", counts};
    return notice;
}

TEST(Rollback, BeginsWithARefusalThatCounts)
{
    using What = Notice::What;
    Notice const added = noticeOf(What::Added, "a");
    Notice const removed = noticeOf(What::Removed, "a");
    Notice const refused = noticeOf(What::Added, "b", true);
    using Marks = std::vector<bool>;
    EXPECT_EQ((Marks{false, false, true}), rollback({added, refused, removed}));
    EXPECT_EQ((Marks{false, false, false}),
              rollback({added, noticeOf(What::Added, "b", true, false), removed}));
    // What went before it, and who refused, take nothing back.
    EXPECT_EQ((Marks{false, false}), rollback({added, removed}));
    EXPECT_EQ((Marks{false, false, false}), rollback({added, removed, refused}));
    EXPECT_EQ((Marks{false, false}), rollback({refused, noticeOf(What::Removed, "b")}));
    EXPECT_EQ((Marks{false, false}), rollback({refused, removed}));
}

TEST_F(SequenceTest, PictureShowsWhoToldWhomFromTopToBottom)
{
    run("listen guard --priority 9 --veto --refuse added --say 'no room'\nlisten desk\n"
        "listen idle --prefix nothing\necho 'Nobody <comes> in.'\nfails driver add 'fxs 1'");
    std::vector<std::string> shown;
    for (Label const& label : labels())
        shown.push_back(label.style + ": " + label.text);
    EXPECT_THAT(shown, ElementsAre("bandname: rollback", "name: drvsh", "name: registry",
                                   "name: desk", "detail: priority 0", "name: guard",
                                   "detail: priority 9, veto", "caption: Nobody &lt;comes&gt; in.",
                                   "command: driver add 'fxs 1'", "news: fxs 1: added",
                                   "news: fxs 1: added", "bad: refused (&quot;no room&quot;)",
                                   "back: fxs 1: removed", "bad: failed: no room"));
}

TEST_F(SequenceTest, ListenersStandInTheOrderInWhichTheyAreTold)
{
    run("listen c --priority 5\nlisten b --priority 5\nlisten d --priority 6\nlisten a\n"
        "driver add x\nunlisten a\nlisten a --priority 7\ndriver add y");
    EXPECT_THAT(textsOf("name"), ElementsAre("drvsh", "registry", "b", "c", "d", "a"));
}

TEST_F(SequenceTest, GroupsStandBehindWithTheirObservers)
{
    run("group add g 1-3\ngroup observe g calls --current\n");
    EXPECT_THAT(textsOf("name"), ElementsAre("drvsh", "g", "calls"));
    EXPECT_THAT(textsOf("news"), ElementsAre("added 1-3 (none -&gt; 1-3)"));
    run("listen calls");
    EXPECT_THAT(textsOf("name"), ElementsAre("drvsh", "registry", "calls", "g", "calls"));
}

TEST_F(SequenceTest, LongTextsAreCutAndCommandsWrapped)
{
    run("listen " + std::string(200, 'l') + "\ndriver add " + std::string(200, 'd') +
        " --did DID_FXS\n");
    EXPECT_THAT(textsOf("name"),
                ElementsAre("drvsh", "registry", std::string(27, 'l') + "\xe2\x80\xa6"));
    EXPECT_THAT(textsOf("news"), ElementsAre(std::string(59, 'd') + "\xe2\x80\xa6"));
    EXPECT_THAT(textsOf("command"),
                ElementsAre("driver add", std::string(59, 'd') + "\xe2\x80\xa6", "--did DID_FXS"));
}

TEST_F(SequenceTest, NoTextReachesOverAnotherOrTheEdge)
{
    run("listen a\nlisten b --priority 1 --veto --refuse 'added z' --say 'a reason that is "
        "longer than all the others are'\nlisten c --priority 2\ndriver add x\n"
        "driver add 'a driver with a name that needs room'\nfails driver add z\n"
        "attach x key 'a value of some length'\ngroup add g\ngroup observe g o --veto --refuse "
        "'added 31' --say no\ngroup set g 1-3;5-7;9-11\nfails group set g 1-3;5-7;9-11;31\n");
    std::string const svg = sequencePicture(sequence_);
    double const width = std::stod(svg.substr(svg.find("width=\"") + 7));
    std::vector<Label> const all = labels();
    ASSERT_LT(20u, all.size());
    for (Label const& one : all) {
        EXPECT_LE(0, one.left()) << one.text;
        EXPECT_GE(width, one.right()) << one.text;
        for (Label const& other : all) {
            if (&one == &other || one.anchor == "middle" || other.anchor == "middle" ||
                std::abs(one.y - other.y) >= Svg::FONT_SIZE)
                continue;
            EXPECT_TRUE(one.right() <= other.left() || other.right() <= one.left())
                << one.text << " | " << other.text;
        }
    }
}

TEST_F(SequenceTest, TheSameScriptYieldsTheSameBytes)
{
    std::string const script = "listen a\nlisten b --veto --refuse 'added y'\ndriver add x\n"
                               "fails driver add y\ngroup add g\ngroup observe g o\n"
                               "group set g 1-5\n";
    run(script);
    std::string const first = sequencePicture(sequence_);
    TextNarrator text(out_, err_);
    Sequence again;
    Shell other(text);
    other.output().add(again);
    Script commands = Script::text("t", script);
    other.run(commands, false);
    EXPECT_EQ(first, sequencePicture(again));
}

TEST_F(SequenceTest, NothingThatHappenedIsAPictureToo)
{
    EXPECT_THAT(textsOf("name"), ElementsAre("drvsh"));
}

struct TextCase
{
    char const* text;
    char const* xml;
};

TEST(SvgText, HoldsOnlyWhatXmlAllows)
{
    TextCase const cases[] = {
        {"plain", "plain"},
        {"<a href=\"x\">&amp;", "&lt;a href=&quot;x&quot;&gt;&amp;amp;"},
        {"gr\xc3\xbc\xc3\x9f", "gr\xc3\xbc\xc3\x9f"},
        {"\xf0\x9f\x93\x9e", "\xf0\x9f\x93\x9e"},
        // No UTF-8, byte by byte.
        {"a\xff"
         "b",
         "a\xef\xbf\xbd"
         "b"},
        {"\xc3", "\xef\xbf\xbd"},
        {"\xc0\x80", "\xef\xbf\xbd\xef\xbf\xbd"},
        {"\xe0\x80\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},
        {"\xed\xa0\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},
        {"\xf4\x90\x80\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},
        // UTF-8, but nothing that XML may hold.
        {"a\tb\x1b\x7f", "a\xef\xbf\xbd"
                         "b\xef\xbf\xbd\xef\xbf\xbd"},
        {"\xef\xbf\xbe\xef\xbf\xbf", "\xef\xbf\xbd\xef\xbf\xbd"},
    };
    for (TextCase const& c : cases)
        EXPECT_EQ(c.xml, xmlText(c.text));
    EXPECT_EQ("a\xef\xbf\xbd", xmlText(std::string("a\0", 2)));
}

TEST(SvgText, IsShortenedByCharacters)
{
    EXPECT_EQ("", shortened("", 3));
    EXPECT_EQ("abc", shortened("abc", 3));
    EXPECT_EQ("ab\xe2\x80\xa6", shortened("abcd", 3));
    EXPECT_EQ("\xc3\xbc\xc3\xbc\xc3\xbc", shortened("\xc3\xbc\xc3\xbc\xc3\xbc", 3));
    EXPECT_EQ(2 * textWidth("a"), textWidth("\xc3\xbc\xc3\xbc"));
}
} // namespace
