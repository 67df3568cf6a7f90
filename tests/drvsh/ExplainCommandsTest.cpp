#include "ShellFixture.h"

#include <drvsh/Explanations.h>

namespace
{
class ExplainCommands : public ShellFixture
{
protected:
    ExplainCommands()
    {
        quietly("driver add 'fxs 1' --did DID_FXS --iface IInfo\n"
                "driver add 'fxs 2' --did DID_FXS\n"
                "attach 'fxs 1' room 12\nattach 'fxs 1' floor 3\n"
                "listen desk --attr room=4 --snapshot --priority 1\n"
                "listen wall --did DID_E1T1 --priority 2 --veto\n");
        run("listen log --priority 3");
    }
};

TEST_F(ExplainCommands, SaysWhyAListenerIsNotTold)
{
    EXPECT_EQ("desk is not told about fxs 1: attachment room is '12', and should begin with '4'\n"
              "type             any, is DID_FXS\n"
              "interface        any\n"
              "name             any, is 'fxs 1'\n"
              "attachment room  must begin with '4', is '12': fails\n"
              "entry            inactive\n"
              "priority         1\n"
              "right of veto    no\n"
              "snapshot         yes\n",
              run("explain 'fxs 1' desk"));
    EXPECT_EQ("wall is not told about fxs 2: its type is DID_FXS, not DID_E1T1\n"
              "type           DID_E1T1, is DID_FXS: fails\n"
              "interface      any\n"
              "name           any, is 'fxs 2'\n"
              "entry          inactive\n"
              "priority       2\n"
              "right of veto  yes\n"
              "snapshot       no\n",
              run("explain 'fxs 2' wall"));
}

TEST_F(ExplainCommands, FirstCriterionThatFailsIsTheReason)
{
    struct
    {
        char const* terms;
        char const* verdict;
    } const cases[] = {
        {"", "x is told about fxs 1\n"},
        {"--iface IInfo --prefix fxs --attr room=1 none=", "x is told about fxs 1\n"},
        {"--iface IChannelGroup --prefix e1t1",
         "x is not told about fxs 1: it does not offer IChannelGroup\n"},
        {"--iface IInfo --prefix e1t1 --attr room=2",
         "x is not told about fxs 1: its name does not begin with 'e1t1'\n"},
        {"--attr room=1 zone=a",
         "x is not told about fxs 1: attachment zone is not set, and should begin with 'a'\n"},
    };
    for (auto const& c : cases) {
        run(std::string("listen x ") + c.terms);
        std::string const text = run("explain 'fxs 1' x");
        EXPECT_EQ(c.verdict, text.substr(0, text.find('\n') + 1)) << c.terms;
        run("unlisten x");
    }
}

TEST_F(ExplainCommands, EachCriterionShowsWhatItMeets)
{
    run("listen x --did DID_FXS --iface IInfo --prefix 'fxs ' --attr floor= none=1");
    std::string const text = run("explain 'fxs 1' x");
    std::size_t const start = text.find('\n') + 1;
    EXPECT_EQ("type              DID_FXS, is DID_FXS\n"
              "interface         IInfo, is offered\n"
              "name              must begin with 'fxs ', is 'fxs 1'\n"
              "attachment floor  any, is '3'\n"
              "attachment none   must begin with '1', is not set: fails\n",
              text.substr(start, text.find("entry") - start));
}

TEST_F(ExplainCommands, WhatIf)
{
    auto const told = [this](std::string const& command) {
        std::string const text = run(command);
        return text.substr(0, text.find("type "));
    };
    EXPECT_EQ("desk would join fxs 1 and hear:\n  added, set floor=3\n",
              told("explain 'fxs 1' desk --if room=41"));
    EXPECT_EQ("desk would not be told about fxs 1: "
              "attachment room is '5', and should begin with '4'\n",
              told("explain 'fxs 1' desk --if room=5"));
    EXPECT_EQ("log would hear:\n  cleared room=12, set room=5\n",
              told("explain 'fxs 1' log --if room=5"));
    EXPECT_EQ("log would hear nothing\n", told("explain 'fxs 1' log --if room=12"));
    EXPECT_EQ("log would hear:\n  cleared room=12\n", told("explain 'fxs 1' log --if room="));
    EXPECT_EQ("12\n", run("get 'fxs 1' room")) << "nothing was done";
    run("attach 'fxs 1' room 4");
    EXPECT_EQ("desk would leave fxs 1 and hear:\n  cleared floor=3, removed\n",
              told("explain 'fxs 1' desk --if room=5"));
    EXPECT_EQ("desk would leave fxs 1, join it again and hear:\n"
              "  cleared floor=3, removed, added, set floor=3\n",
              told("explain 'fxs 1' desk --if room=44"));
}

TEST_F(ExplainCommands, WhatIfIsWhatHappens)
{
    EXPECT_EQ("desk  added, set floor=3\nlog   cleared room=12, set room=41\n",
              run("who 'fxs 1' --if room=41"));
    EXPECT_EQ("> attach 'fxs 1' room 41\n"
              "  log:  fxs 1: cleared room=12\n"
              "  desk: fxs 1: added\n"
              "  desk: fxs 1: set floor=3\n"
              "  log:  fxs 1: set room=41\n",
              run("attach 'fxs 1' room 41"));
}

TEST_F(ExplainCommands, WhoIsToldAboutADriver)
{
    EXPECT_EQ("log\n", run("who 'fxs 1'"));
    EXPECT_EQ("desk  not told: attachment room is '12', and should begin with '4'\n"
              "wall  not told: its type is DID_FXS, not DID_E1T1\n"
              "log   told\n",
              run("who 'fxs 1' --all"));
    EXPECT_EQ("desk  nothing\nwall  nothing\nlog   set zone=1\n",
              run("who 'fxs 2' --all --if zone=1"));
}

TEST_F(ExplainCommands, WhomAListenerIsToldAbout)
{
    EXPECT_EQ("fxs 1\nfxs 2\n", run("whom log"));
    EXPECT_EQ("", run("whom desk"));
    EXPECT_EQ("fxs 1  not told: its type is DID_FXS, not DID_E1T1\n"
              "fxs 2  not told: its type is DID_FXS, not DID_E1T1\n",
              run("whom wall --all"));
}

TEST_F(ExplainCommands, Json)
{
    Json const one = Json::parse(run("explain 'fxs 1' desk --if room=41 --json"));
    EXPECT_EQ(Json::parse(R"({
        "driver": "fxs 1", "listener": "desk", "told": false, "selected": true,
        "criteria": [
            {"criterion": "type", "wanted": null, "met": "DID_FXS", "holds": true},
            {"criterion": "interface", "wanted": null, "met": null, "holds": true},
            {"criterion": "name", "wanted": "", "met": "fxs 1", "holds": true},
            {"criterion": "attachment", "key": "room", "wanted": "4", "met": "41", "holds": true}],
        "entry": "inactive", "count": 1, "delegate": "hearing", "priority": 1, "veto": false,
        "snapshot": true, "outcome": "joins",
        "hears": [{"what": "added"}, {"what": "set", "key": "floor", "value": "3"}]})"),
              one);
    EXPECT_EQ("driver", one.begin().key()) << "in the order of the document";
    Json const plain = Json::parse(run("explain 'fxs 1' wall --json"));
    EXPECT_EQ("DID_E1T1", plain["criteria"][0]["wanted"]);
    EXPECT_FALSE(plain["criteria"][0]["holds"]);
    EXPECT_EQ(0u, plain.count("outcome"));
    Json const who = Json::parse(run("who 'fxs 1' --json"));
    ASSERT_EQ(1u, who.size());
    EXPECT_EQ("log", who[0]["listener"]);
    EXPECT_EQ("active", who[0]["entry"]);
    EXPECT_EQ(3u, Json::parse(run("who 'fxs 1' --json --all")).size());
    EXPECT_EQ("[]\n", run("whom desk --json"));
    EXPECT_EQ("leaves", [this] {
        run("attach 'fxs 1' room 4");
        return Json::parse(run("who 'fxs 1' --if room= --json"))[0]["outcome"];
    }());
}

TEST_F(ExplainCommands, WhatIsUnknownOrNotUnderstood)
{
    EXPECT_EQ("t:1: explain: Driver 'fxs 9' does not exist\n", failing("explain 'fxs 9' desk"));
    EXPECT_EQ("t:1: explain: Driver repository observer 'nix' does not exist\n",
              failing("explain 'fxs 1' nix"));
    EXPECT_EQ("t:1: explain: 'room' is not KEY=VALUE\n", failing("explain 'fxs 1' desk --if room"));
    EXPECT_EQ("t:1: explain: Driver 'x' does not exist\n", failing("explain x desk --if k=v"));
    EXPECT_EQ("t:1: who: Driver 'fxs' does not exist\n", failing("who fxs"));
    EXPECT_EQ("t:1: whom: Driver repository observer 'fxs 1' does not exist\n",
              failing("whom 'fxs 1'"));
    EXPECT_EQ("t:1: who: 'k' is not KEY=VALUE\n", failing("who 'fxs 1' --if k"));
}

// What the shell itself never makes.
TEST(ExplanationTexts, OtherStates)
{
    Explanation explanation;
    explanation.driver = "d";
    explanation.listener = "l";
    EXPECT_EQ("l is not told about d: they have not met yet", verdictText(explanation));
    explanation.state = Explanation::INACTIVE;
    EXPECT_EQ("l is not told about d, although its criteria hold now", verdictText(explanation));
    Explanation::Criterion face;
    face.kind = Explanation::Criterion::INTERFACE;
    face.wantedId = TOVA_UUID::create(1, 2, 3, 4, "IAlarm");
    explanation.criteria.append(face);
    explanation.state = Explanation::ACTIVE;
    explanation.count = 2;
    explanation.delegate = Explanation::STOPPED;
    EXPECT_EQ("l is told about d, although it does not offer IAlarm", verdictText(explanation));
    EXPECT_EQ("interface      IAlarm, is not offered: fails\n"
              "entry          active, recorded 2 times\n"
              "delegate       stopped\n"
              "priority       0\n"
              "right of veto  no\n"
              "snapshot       no\n",
              tableText(explanationRows(explanation)));
    EXPECT_EQ("stopped", explanationJson(explanation)["delegate"]);
}
} // namespace
