#include "ShellFixture.h"

#include <nlohmann/json.hpp>

namespace
{
class InfoCommand : public ShellFixture
{
protected:
    InfoCommand()
    {
        run("driver add 'fxs 1' --did DID_FXS\nattach 'fxs 1' room 12\nattach 'fxs 1' note 'a b'\n"
            "detach 'fxs 1' note\ngroup add 'e1t1 1/B-CHANNELS' 1-15;17-31\n"
            "listen desk --prefix 'fxs ' --did DID_FXS --attr room=1 --priority 3\n");
    }
};

TEST_F(InfoCommand, PrintsATree)
{
    EXPECT_EQ("Driver Repository\n"
              "  Drivers\n"
              "    fxs 1 (DID_FXS)\n"
              "      Attachments\n"
              "        room  12\n"
              "        note\n"
              "      Active Listeners\n"
              "        desk\n"
              "    e1t1 1/B-CHANNELS (DID_ChannelGroup)\n"
              "      Configuration\n"
              "        Timeslot(s)  1-15;17-31\n"
              "  Listeners\n"
              "    desk\n"
              "      DID          DID_FXS\n"
              "      Driver Name  'fxs '\n"
              "      Attachments\n"
              "        room  1\n"
              "      Priority     3\n"
              "      Observer     desk\n"
              "      Notification Statistics\n"
              "        onDriverAdded        1\n"
              "        onDriverRemoved      0\n"
              "        onAttachmentSet      0\n"
              "        onAttachmentCleared  0\n",
              run("info"));
}

TEST_F(InfoCommand, CutsTheTree)
{
    EXPECT_EQ("Driver Repository\n", run("info --depth 0"));
    EXPECT_EQ("Driver Repository\n  Drivers\n  Listeners\n", run("info --depth 1"));
    EXPECT_EQ("Driver Repository\n"
              "  Drivers\n"
              "    fxs 1 (DID_FXS)\n"
              "    e1t1 1/B-CHANNELS (DID_ChannelGroup)\n"
              "  Listeners\n"
              "    desk\n",
              run("info --detail 0"));
    EXPECT_EQ("Driver Repository\n"
              "  Drivers\n"
              "    fxs 1 (DID_FXS)\n"
              "      Attachments\n"
              "    e1t1 1/B-CHANNELS (DID_ChannelGroup)\n"
              "      Configuration\n"
              "  Listeners\n"
              "    desk\n"
              "      DID          DID_FXS\n"
              "      Driver Name  'fxs '\n"
              "      Attachments\n"
              "      Priority     3\n",
              run("info --detail=1 --depth=3"));
    EXPECT_EQ("t:1: info: --depth: 'all' is no number from 0 to 4294967295\n",
              failing("info --depth all"));
}

TEST_F(InfoCommand, PrintsJson)
{
    using Json = nlohmann::ordered_json;
    EXPECT_EQ(R"([
  {
    "key": "Driver Repository",
    "value": "",
    "detail": 0
  }
]
)",
              run("info --json --depth 0"));
    Json const json = Json::parse(run("info --json"));
    Json const& drivers = json.at(0).at("rows").at(0);
    EXPECT_EQ("Drivers", drivers.at("key"));
    EXPECT_EQ("(DID_FXS)", drivers.at("rows").at(0).at("value"));
    Json const& attachments = drivers.at("rows").at(0).at("rows").at(0);
    EXPECT_EQ(R"({"key":"Attachments","value":"","detail":1,"rows":[)"
              R"({"key":"room","value":"12","detail":1},{"key":"note","value":"","detail":1}]})",
              attachments.dump());
    EXPECT_FALSE(attachments.at("rows").at(0).contains("rows"));
}

TEST_F(InfoCommand, PrintsJsonOfAnyName)
{
    quietly("driver add 'a\"\\b\tc'\ndriver add '\xff'\ndriver add '\xc3\xa4'");
    nlohmann::json const json = nlohmann::json::parse(run("info --json --depth 2"));
    nlohmann::json const& drivers = json.at(0).at("rows").at(0).at("rows");
    EXPECT_EQ("a\"\\b\tc", drivers.at(2).at("key"));
    EXPECT_EQ("\xef\xbf\xbd", drivers.at(3).at("key"));
    EXPECT_EQ("\xc3\xa4", drivers.at(4).at("key"));
}

TEST_F(InfoCommand, OfNothing)
{
    std::ostringstream out;
    TextNarrator text(out, out);
    Shell shell(text);
    Script script = Script::text("t", "info");
    EXPECT_TRUE(shell.run(script, false));
    EXPECT_EQ("Driver Repository\n  Drivers\n  Listeners\n", out.str());
}
} // namespace
