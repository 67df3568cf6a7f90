#include "ShellFixture.h"

#include <cstdio>
#include <fstream>
#include <unistd.h>

namespace
{
/// A shell with a folder of its own, in which "lines.conf" can be written.
class LoadCommand : public ShellFixture
{
protected:
    LoadCommand()
    {
        char name[] = "/tmp/drvsh-load-XXXXXX";
        folder_ = mkdtemp(name);
        conf_ = folder_ + "/lines.conf";
    }
    ~LoadCommand() override
    {
        std::remove((folder_ + "/a.drv").c_str());
        std::remove(conf_.c_str());
        rmdir(folder_.c_str());
    }
    void write(std::string const& text) { std::ofstream(conf_) << text; }
    std::string load() { return run("load " + conf_); }

    std::string folder_;
    std::string conf_;
};

TEST_F(LoadCommand, RegistersSpansGroupsAndPorts)
{
    write("span=1,1,0,ccs,hdb3,crc4\nbchan=1-15,17-31\ndchan=16\n"
          "span=2,0,0,esf,b8zs,yellow\nfxoks=32-33\nbchan=34-54\ndchan=55\n"
          "span=5,2,0,ccs,ami\nbchan=56,57\nhardhdlc=58\n"
          "fxsks=60,59\nspan=6,0,0,cas,hdb3\n");
    EXPECT_EQ("", load());
    EXPECT_TRUE(good_) << err_.str();
    EXPECT_EQ("", err_.str());
    EXPECT_EQ("e1t1 1             DID_E1T1\n"
              "e1t1 1/B-CHANNELS  DID_ChannelGroup\n"
              "e1t1 1/D-CHANNEL   DID_ChannelGroup\n"
              "e1t1 2             DID_E1T1\n"
              "e1t1 2/B-CHANNELS  DID_ChannelGroup\n"
              "e1t1 2/D-CHANNEL   DID_ChannelGroup\n"
              "bri 5              DID_BRI\n"
              "bri 5/B-CHANNELS   DID_ChannelGroup\n"
              "bri 5/D-CHANNEL    DID_ChannelGroup\n"
              "e1t1 6             DID_E1T1\n"
              "fxs 32             DID_FXS\n"
              "fxs 33             DID_FXS\n"
              "fxo 60             DID_FXO\n"
              "fxo 59             DID_FXO\n",
              run("drivers"));
    EXPECT_EQ("framing=ccs\ncoding=hdb3\ncrc4=yes\ntiming=1\nfirst-channel=1\n",
              run("attachments 'e1t1 1'"));
    EXPECT_EQ("framing=esf\ncoding=b8zs\ntiming=0\nfirst-channel=32\n",
              run("attachments 'e1t1 2'"));
    EXPECT_EQ("framing=cas\ncoding=hdb3\ntiming=0\nfirst-channel=61\n",
              run("attachments 'e1t1 6'"));
    EXPECT_EQ("", run("attachments 'fxs 32'"));
    EXPECT_EQ("timeslots  1-15;17-31\nmask       0xFFFEFFFE\n",
              run("group show 'e1t1 1/B-CHANNELS'"));
    EXPECT_EQ("timeslots  16\nmask       0x00010000\n", run("group show 'e1t1 1/D-CHANNEL'"));
    EXPECT_EQ("timeslots  3-23\nmask       0x00FFFFF8\n", run("group show 'e1t1 2/B-CHANNELS'"));
    EXPECT_EQ("timeslots  1-2\nmask       0x00000006\n", run("group show 'bri 5/B-CHANNELS'"));
    EXPECT_EQ("timeslots  3\nmask       0x00000008\n", run("group show 'bri 5/D-CHANNEL'"));
}

TEST_F(LoadCommand, ListenersHearOfIt)
{
    write("span=1,1,0,ccs,ami\nbchan=1,2\nhardhdlc=3\nfxoks=4\n");
    EXPECT_EQ("> load " + conf_ +
                  "\n"
                  "  all: bri 1: added\n"
                  "  all: bri 1: set framing=ccs\n"
                  "  all: bri 1: set coding=ami\n"
                  "  all: bri 1: set timing=1\n"
                  "  all: bri 1: set first-channel=1\n"
                  "  all: bri 1/B-CHANNELS: added\n"
                  "  all: bri 1/D-CHANNEL: added\n"
                  "  all: fxs 4: added\n",
              run("listen all\nload " + conf_));
}

TEST_F(LoadCommand, ABadFileRegistersNothing)
{
    write("span=1,1,0,ccs,hdb3\nspan=3,0,0.ccs,ami\nbchan=1\nbchan=x\n");
    load();
    EXPECT_FALSE(good_);
    EXPECT_EQ("t:1: load: " + conf_ +
                  ":2: span: line build-out '0.ccs' is no number from 0 to 7\n"
                  "t:1: load: " +
                  conf_ + ":4: bchan: 'x' is no channel or range of channels from 1 to 65535\n",
              err_.str());
    EXPECT_EQ("", run("drivers"));
}

TEST_F(LoadCommand, OfManyErrorsTheFirstAreEnough)
{
    std::string text;
    for (int i = 0; i < 23; ++i)
        text += "span=\n";
    write(text);
    load();
    EXPECT_FALSE(good_);
    EXPECT_NE(std::string::npos, err_.str().find(conf_ + ":20: span"));
    EXPECT_EQ(std::string::npos, err_.str().find(conf_ + ":21: span"));
    std::string const last = "t:1: load: " + conf_ + ": and 3 more\n";
    ASSERT_GT(err_.str().size(), last.size());
    EXPECT_EQ(last, err_.str().substr(err_.str().size() - last.size()));
}

TEST_F(LoadCommand, WarnsAndGoesOn)
{
    write("fxoks=1\nwhat=1\n");
    EXPECT_EQ("", load());
    EXPECT_TRUE(good_);
    EXPECT_EQ(conf_ + ":2: warning: unknown keyword 'what' is passed over\n", err_.str());
    EXPECT_EQ("fxs 1\n", run("find"));
}

TEST_F(LoadCommand, ARefusalEndsItWithThePlace)
{
    write("fxoks=1-2\n\nfxsks=3\n");
    EXPECT_EQ("> load " + conf_ + "\n  guard: fxs 1: added\n  guard: fxs 2: refused (\"full\")\n",
              run("listen guard --veto --refuse 'added fxs 2' --say full\nload " + conf_));
    EXPECT_EQ("t:2: load: " + conf_ + ":1: full\n", err_.str());
    // What was registered before stays.
    EXPECT_EQ("fxs 1\n", run("find"));
    EXPECT_EQ("t:1: load: " + conf_ + ":1: Driver already exists (CDriverRepo): fxs 1\n",
              failing("load " + conf_));
}

TEST_F(LoadCommand, SaysThatAFileCannotBeRead)
{
    EXPECT_EQ("t:1: load: " + conf_ + ": No such file or directory\n", failing("load " + conf_));
    EXPECT_EQ("t:1: load: /tmp: Is a directory\n", failing("load /tmp"));
    EXPECT_EQ("t:1: load: FILE is required\n", failing("load"));
}

TEST_F(LoadCommand, FindsFilesBesideTheScript)
{
    write("fxoks=7\n");
    std::ofstream(folder_ + "/a.drv") << "load lines.conf\n";
    Script script = Script::file(folder_ + "/a.drv");
    EXPECT_TRUE(shell_.run(script, false)) << err_.str();
    EXPECT_EQ("fxs 7\n", run("find"));
    // A script that is no file starts from the working directory.
    EXPECT_EQ("t:1: load: lines.conf: No such file or directory\n", failing("load lines.conf"));
}
} // namespace
