#include "ShellFixture.h"

#include <drvsh/Json.h>
#include <drvsh/JsonNarrator.h>

namespace
{
/// A shell with some of everything.
class JsonListing : public ShellFixture
{
protected:
    JsonListing()
    {
        run("driver add 'fxs 1' --did DID_FXS --iface IInfo\nattach 'fxs 1' room 12\n"
            "attach 'fxs 1' floor 3\ndetach 'fxs 1' floor\ngroup add g 1-3\n"
            "group observe g calls\nlisten desk --prefix fxs --attr room=1 --priority 2 --veto\n"
            "listen all --did DID_FXS --iface IInfo --snapshot");
        EXPECT_EQ("", err_.str());
    }
};

struct Listing
{
    char const* command;
    char const* json;
};

TEST_F(JsonListing, HoldsWhatTheTextSays)
{
    Listing const cases[] = {
        {"drivers --json", R"([{"name": "fxs 1", "type": "DID_FXS"},
                               {"name": "g", "type": "DID_ChannelGroup"}])"},
        {"find --prefix fx --json", R"([{"name": "fxs 1", "type": "DID_FXS"}])"},
        {"find --iface IChannelGroup --json", R"([{"name": "g", "type": "DID_ChannelGroup"}])"},
        {"find --prefix x --json", "[]"},
        {"attachments 'fxs 1' --json", R"({"room": "12", "floor": ""})"},
        {"attachments g --json", "{}"},
        {"driver show 'fxs 1' --json",
         R"({"name": "fxs 1", "type": "DID_FXS", "uuid": "13d9a86c-4be2-0f75-a674-81ce5f92d03b",
             "references": 2, "interfaces": ["IInfo"], "attachments": {"room": "12", "floor": ""}})"},
        {"driver show g --json",
         R"({"name": "g", "type": "DID_ChannelGroup",
             "uuid": "21b20c67-4e51-1d60-8fc1-e895ec347e06", "references": 2, "timeslots": "1-3",
             "attachments": {}})"},
        {"groups --json",
         R"([{"name": "g", "timeslots": "1-3", "mask": 14, "observers": ["calls"]}])"},
        {"group show g --json",
         R"({"name": "g", "timeslots": "1-3", "mask": 14, "observers": ["calls"]})"},
        {"listeners --json",
         R"([{"name": "all", "priority": 0, "veto": false, "snapshot": true, "did": "DID_FXS",
              "iface": "IInfo", "prefix": "", "attributes": {}},
             {"name": "desk", "priority": 2, "veto": true, "snapshot": false, "did": null,
              "iface": null, "prefix": "fxs", "attributes": {"room": "1"}}])"},
        {"name split 'e1t1 0 3/a' --json",
         R"({"type": "e1t1", "numbers": [0, 3, null], "further": ["a"], "components": 2})"},
        {"info --json --depth 0", R"([{"key": "Driver Repository", "value": "", "detail": 0}])"},
        {"help driver --json",
         R"([{"command": "driver add", "summary": "Add a driver"},
             {"command": "driver remove", "summary": "Remove a driver"},
             {"command": "driver show", "summary": "Print what a driver is and has"}])"},
    };
    for (Listing const& c : cases)
        EXPECT_EQ(Json::parse(c.json), Json::parse(run(c.command))) << c.command;
}

TEST_F(JsonListing, IsThereForEveryCommandThatLists)
{
    char const* const all[] = {
        "drivers", "driver show 'fxs 1'", "find", "listeners",   "attachments 'fxs 1'",
        "groups",  "group show g",        "info", "name split a"};
    for (std::string const command : all) {
        EXPECT_TRUE(Json::accept(run(command + " --json"))) << command;
        EXPECT_TRUE(good_) << err_.str();
    }
}

TEST_F(JsonListing, ReplacesWhatIsNoText)
{
    quietly("driver add '\xff'\nattach '\xff' '\x80' '\xc3'");
    EXPECT_EQ(Json::parse(R"({"\ufffd": "\ufffd"})"),
              Json::parse(run("attachments '\xff' --json")));
}

/// A shell that tells all by JSON.
class JsonTranscript : public testing::Test
{
protected:
    /// The events of these commands, one a line.
    std::string run(std::string const& commands)
    {
        out_.str("");
        Script script = Script::text("t", commands);
        shell_.run(script, true);
        std::istringstream lines(out_.str());
        std::string line;
        while (std::getline(lines, line))
            EXPECT_TRUE(Json::parse(line).is_object()) << line;
        return out_.str();
    }

    std::ostringstream out_;
    std::ostringstream err_;
    JsonNarrator json_{out_, err_};
    Shell shell_{json_};
};

TEST_F(JsonTranscript, IsAnObjectALine)
{
    run("listen desk\nlisten guard --priority 1 --veto --refuse 'added b' --say 'no \"b\"'");
    EXPECT_EQ(R"({"event":"command","text":"driver add a"}
{"event":"added","listener":"desk","driver":"a"}
{"event":"added","listener":"guard","driver":"a"}
{"event":"command","text":"attach a room 12"}
{"event":"set","listener":"desk","driver":"a","key":"room","value":"12"}
{"event":"set","listener":"guard","driver":"a","key":"room","value":"12"}
{"event":"command","text":"fails driver add b"}
{"event":"added","listener":"desk","driver":"b"}
{"event":"refused","what":"added","listener":"guard","driver":"b","reason":"no \"b\"","counts":true}
{"event":"removed","listener":"desk","driver":"b"}
{"event":"failed","text":"driver add: no \"b\""}
{"event":"command","text":"detach a room"}
{"event":"cleared","listener":"guard","driver":"a","key":"room","value":"12"}
{"event":"cleared","listener":"desk","driver":"a","key":"room","value":"12"}
)",
              run("driver add a\nattach a room 12\nfails driver add b\ndetach a room"));
    EXPECT_EQ("", err_.str());
}

TEST_F(JsonTranscript, OfAChannelGroup)
{
    run("group add g 0-3\ngroup observe g calls --veto --refuse 'added 9'\n");
    EXPECT_EQ(R"({"event":"command","text":"group set g 3-4"}
{"event":"added","observer":"calls","group":"g","timeslots":"4","before":"0-3","after":"0-4"}
{"event":"removed","observer":"calls","group":"g","timeslots":"0-2","before":"0-4","after":"3-4"}
{"event":"command","text":"fails group set g 3-4;9"}
)"
              R"({"event":"refused","what":"added","observer":"calls","group":"g","timeslots":"9",)"
              R"("before":"3-4","after":"3-4;9","reason":"refused","counts":true}
{"event":"failed","text":"group set: refused"}
)",
              run("group set g 3-4\nfails group set g 3-4;9"));
}

TEST_F(JsonTranscript, SaysWhichRefusalsCount)
{
    run("driver add a\nlisten guard --refuse 'set room'");
    EXPECT_EQ(R"({"event":"command","text":"attach a room 12"}
)"
              R"({"event":"refused","what":"set","listener":"guard","driver":"a","key":"room",)"
              R"("value":"12","reason":"refused","counts":false}
)",
              run("attach a room 12"));
}

TEST_F(JsonTranscript, HoldsResultsRemarksAndTexts)
{
    EXPECT_EQ(R"({"event":"command","text":"drivers"}
{"event":"result","value":[]}
{"event":"command","text":"port fxs"}
{"event":"result","value":"3"}
{"event":"command","text":"driver remove x"}
{"event":"remark","text":"there is no driver 'x'"}
{"event":"command","text":"echo 'a  b'"}
{"event":"text","text":"a  b"}
)",
              run("drivers\nport fxs\ndriver remove x\necho 'a  b'"));
}

TEST_F(JsonTranscript, HoldsErrorsWarningsAndTheLog)
{
    shell_.showLog(0);
    EXPECT_EQ(R"({"event":"command","text":"driver add a"}
{"event":"log","level":7,"text":"DrvRepo: Add driver 'a'"}
{"event":"command","text":"driver add"}
{"event":"error","place":"t:2","text":"driver add: NAME is required"}
{"event":"command","text":"echo 'a"}
{"event":"error","place":"t:3","text":"a quote ' is not closed"}
)",
              run("driver add a\ndriver add\necho 'a"));
    EXPECT_EQ("t:2: driver add: NAME is required\nt:3: a quote ' is not closed\n", err_.str());
}

TEST_F(JsonTranscript, ReplacesWhatIsNoText)
{
    run("listen '\xff'");
    EXPECT_EQ("{\"event\":\"command\",\"text\":\"driver add '\xef\xbf\xbd'\"}\n"
              "{\"event\":\"added\",\"listener\":\"\xef\xbf\xbd\",\"driver\":\"\xef\xbf\xbd\"}\n",
              run("driver add '\xc3'"));
}
} // namespace
