#include <drvsh/LineConfig.h>

#include <gtest/gtest.h>

namespace
{
std::string useText(LineSpan const& span)
{
    // One letter a timeslot: B bearer, D data, N network, X cross, u unused, p port, - none.
    char const letters[] = "-BDNXup";
    std::string text;
    for (ChannelUse use : span.use)
        text += letters[static_cast<int>(use)];
    return text;
}

std::string remarks(char const* what, std::vector<LineRemark> const& list)
{
    std::string text;
    for (LineRemark const& remark : list)
        text += what + std::to_string(remark.line) + ": " + remark.text + "\n";
    return text;
}

/// All that was read, a line for each thing.
std::string shown(LineConfig const& config)
{
    std::string text;
    for (LineSpan const& span : config.spans)
        text += std::to_string(span.line) + ": " + span.type + " " + std::to_string(span.number) +
                " timing " + std::to_string(span.timing) + " lbo " + std::to_string(span.lbo) +
                " " + span.framing + " " + span.coding + (span.crc4 ? " crc4" : "") +
                (span.yellow ? " yellow" : "") + " from " + std::to_string(span.firstChannel) +
                " " + useText(span) + "\n";
    for (AnaloguePort const& port : config.ports)
        text += std::to_string(port.line) + ": " + port.type + " " + std::to_string(port.channel) +
                " " + port.signalling + "\n";
    return text + remarks("warning ", config.warnings) + remarks("error ", config.errors);
}

std::string const NO_24(24, '-');
std::string const NO_31(31, '-');

struct Case
{
    char const* text;
    std::string expected;
};

void check(std::vector<Case> const& cases)
{
    for (Case const& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.expected, shown(readLineConfig(c.text)));
    }
}

TEST(LineConfig, ReadsOneSpan)
{
    check({
        {"span=1,0,0,esf,b8zs", "1: e1t1 1 timing 0 lbo 0 esf b8zs from 1 " + NO_24 + "\n"},
        {"span=2,1,7,sf,ami", "1: e1t1 2 timing 1 lbo 7 sf ami from 1 " + NO_24 + "\n"},
        {"span=1,0,0,d4,ami,yellow",
         "1: e1t1 1 timing 0 lbo 0 d4 ami yellow from 1 " + NO_24 + "\n"},
        {"span=1,1,0,ccs,hdb3", "1: e1t1 1 timing 1 lbo 0 ccs hdb3 from 1 " + NO_31 + "\n"},
        {"span=1,1,0,cas,hdb3", "1: e1t1 1 timing 1 lbo 0 cas hdb3 from 1 " + NO_31 + "\n"},
        {"span=1,1,0,cas,ami", "1: e1t1 1 timing 1 lbo 0 cas ami from 1 " + NO_31 + "\n"},
        {"span=9,1,0,ccs,ami", "1: bri 9 timing 1 lbo 0 ccs ami from 1 ---\n"},
        {"span=3,0,0,ccs,hdb3,crc4",
         "1: e1t1 3 timing 0 lbo 0 ccs hdb3 crc4 from 1 " + NO_31 + "\n"},
        {"span=3,0,0,ccs,hdb3,crc4,yellow",
         "1: e1t1 3 timing 0 lbo 0 ccs hdb3 crc4 yellow from 1 " + NO_31 + "\n"},
        {"span=3,0,0,ccs,hdb3,yellow,crc4",
         "1: e1t1 3 timing 0 lbo 0 ccs hdb3 crc4 yellow from 1 " + NO_31 + "\n"},
        // Blanks, tabs, comments, capitals, line ends of another system.
        {"  span = 3 , 0,\t0, ccs ,hdb3 # the trunk",
         "1: e1t1 3 timing 0 lbo 0 ccs hdb3 from 1 " + NO_31 + "\n"},
        {"SPAN=3,0,0,CCS,Ami\r\n", "1: bri 3 timing 0 lbo 0 ccs ami from 1 ---\n"},
        {"span=65535,65535,0,ccs,ami", "1: bri 65535 timing 65535 lbo 0 ccs ami from 1 ---\n"},
    });
}

TEST(LineConfig, RefusesASpanThatCannotBeRead)
{
    check({
        {"span=", "error 1: span: span number '' is no number from 1 to 65535\n"},
        {"span=0,0,0,ccs,ami", "error 1: span: span number '0' is no number from 1 to 65535\n"},
        {"span=65536,0,0,ccs,ami",
         "error 1: span: span number '65536' is no number from 1 to 65535\n"},
        {"span=-1,0,0,ccs,ami", "error 1: span: span number '-1' is no number from 1 to 65535\n"},
        {"span=4294967297,0,0,ccs,ami",
         "error 1: span: span number '4294967297' is no number from 1 to 65535\n"},
        {"span=1", "error 1: span: timing is missing\n"},
        {"span=1,x,0,ccs,ami", "error 1: span: timing 'x' is no number from 0 to 65535\n"},
        {"span=1,0", "error 1: span: line build-out is missing\n"},
        {"span=1,0,8,ccs,ami", "error 1: span: line build-out '8' is no number from 0 to 7\n"},
        {"span=3,0,0.ccs,ami", "error 1: span: line build-out '0.ccs' is no number from 0 to 7\n"},
        {"span=1,0,0", "error 1: span: framing is missing\n"},
        {"span=1,0,0,ccs", "error 1: span: coding is missing\n"},
        {"span=1,0,0,css,ami", "error 1: span: framing 'css' is none of d4, sf, esf, cas, ccs\n"},
        {"span=1,0,0,,ami", "error 1: span: framing '' is none of d4, sf, esf, cas, ccs\n"},
        {"span=1,0,0,ccs,hdb2", "error 1: span: coding 'hdb2' is none of ami, b8zs, hdb3\n"},
        {"span=1,0,0,ccs,b8zs", "error 1: span: coding 'b8zs' does not go with framing 'ccs'\n"},
        {"span=1,0,0,esf,hdb3", "error 1: span: coding 'hdb3' does not go with framing 'esf'\n"},
        {"span=1,0,0,ccs,hdb3,crc", "error 1: span: option 'crc' is neither crc4 nor yellow\n"},
        {"span=1,0,0,ccs,hdb3,", "error 1: span: option '' is neither crc4 nor yellow\n"},
        {"span=1,0,0,ccs,hdb3,crc4,crc4", "error 1: span: option 'crc4' stands twice\n"},
        {"span 1,0,0,ccs,ami", "error 1: span: '=' is missing\n"},
        {"span:1,0,0,ccs,ami", "error 1: span: '=' is missing\n"},
        {"span", "error 1: span: '=' is missing\n"},
    });
    EXPECT_TRUE(readLineConfig("span=1,0,0,ccs,b8zs").spans.empty());
}

TEST(LineConfig, RefusesASpanThatStandsTwice)
{
    LineConfig const config = readLineConfig("span=3,0,0,ccs,ami\n\nspan=3,0,0,esf,b8zs\n");
    EXPECT_EQ("error 3: span 3 stands twice, first in line 1\n", remarks("error ", config.errors));
}

TEST(LineConfig, PutsSpansOneAboveTheOther)
{
    check({
        // In the order of the file, not of the numbers.
        {"span=2,0,0,ccs,hdb3\nspan=1,0,0,ccs,ami\nspan=7,0,0,esf,ami\n",
         "1: e1t1 2 timing 0 lbo 0 ccs hdb3 from 1 " + NO_31 +
             "\n"
             "2: bri 1 timing 0 lbo 0 ccs ami from 32 ---\n"
             "3: e1t1 7 timing 0 lbo 0 esf ami from 35 " +
             NO_24 + "\n"},
        // Ports outside every span push up those spans that come after them.
        {"fxoks=1-4\nspan=1,0,0,ccs,ami\n",
         "2: bri 1 timing 0 lbo 0 ccs ami from 5 ---\n1: fxs 1 fxoks\n1: fxs 2 fxoks\n"
         "1: fxs 3 fxoks\n1: fxs 4 fxoks\n"},
        {"span=1,0,0,ccs,ami\nfxoks=10,8\nspan=2,0,0,ccs,ami\nfxsks=14\n",
         "1: bri 1 timing 0 lbo 0 ccs ami from 1 ---\n3: bri 2 timing 0 lbo 0 ccs ami from 11 ---\n"
         "2: fxs 10 fxoks\n2: fxs 8 fxoks\n4: fxo 14 fxsks\n"},
        // A number in the gap below lies above nothing.
        {"fxoks=9\nspan=1,0,0,ccs,ami\nfxoks=4\nspan=2,0,0,ccs,ami\n",
         "2: bri 1 timing 0 lbo 0 ccs ami from 10 ---\n"
         "4: bri 2 timing 0 lbo 0 ccs ami from 13 ---\n1: fxs 9 fxoks\n3: fxs 4 fxoks\n"},
        // Ports inside a T1, and idle or digital channels, push nothing.
        {"span=1,0,0,esf,b8zs\nfxoks=24\nunused=40\nspan=2,0,0,ccs,ami\nbchan=25\n",
         "1: e1t1 1 timing 0 lbo 0 esf b8zs from 1 -----------------------p\n"
         "4: bri 2 timing 0 lbo 0 ccs ami from 25 B--\n2: fxs 24 fxoks\n"},
        // Half inside, half outside.
        {"span=1,0,0,esf,b8zs\nfxsls=24-26\nspan=2,0,0,ccs,ami\n",
         "1: e1t1 1 timing 0 lbo 0 esf b8zs from 1 -----------------------p\n"
         "3: bri 2 timing 0 lbo 0 ccs ami from 27 ---\n"
         "2: fxo 24 fxsls\n2: fxo 25 fxsls\n2: fxo 26 fxsls\n"},
    });
}

TEST(LineConfig, ReadsWhatChannelsAreUsedFor)
{
    check({
        {"span=1,1,0,ccs,hdb3,crc4\nbchan=1-15,17-31\ndchan=16\n",
         "1: e1t1 1 timing 1 lbo 0 ccs hdb3 crc4 from 1 BBBBBBBBBBBBBBBDBBBBBBBBBBBBBBB\n"},
        // Several lists of one kind, blanks, the digital lines before their span.
        {"bchan = 1-2 , 4 - 5\nspan=1,0,0,esf,b8zs\nbchan=3\nfcshdlc= 24\n",
         "2: e1t1 1 timing 0 lbo 0 esf b8zs from 1 BBBBB------------------D\n"},
        {"span=1,1,0,cas,hdb3\ncas=1-15,17-31:1101\nunused=16\n",
         "1: e1t1 1 timing 1 lbo 0 cas hdb3 from 1 BBBBBBBBBBBBBBBuBBBBBBBBBBBBBBB\n"},
        {"span=1,1,0,ccs,ami\nbchan=1,2\nhardhdlc=3\n",
         "1: bri 1 timing 1 lbo 0 ccs ami from 1 BBD\n"},
        {"span=1,0,0,esf,b8zs\ninclear=1\nclear=2\nclear=3\ne&m=4\ne&me1=5\nrawhdlc=6\n"
         "nethdlc=7-8\nnethdlc=9:hdlc1\ndacs=10:48\ndacsrbs=11-12 : 50\ncas=13\n"
         "dchan=24\n",
         "1: e1t1 1 timing 0 lbo 0 esf b8zs from 1 BBBBBNNNNXXXB----------D\n"},
        // A channel bank behind a T1.
        {"span=1,0,0,esf,b8zs\nfxoks=1-2\nfxsgs=3\nfxogs=4\nfxsks=5\nfxols=6\nfxsls=7\n",
         "1: e1t1 1 timing 0 lbo 0 esf b8zs from 1 ppppppp-----------------\n"
         "2: fxs 1 fxoks\n2: fxs 2 fxoks\n3: fxo 3 fxsgs\n4: fxs 4 fxogs\n5: fxo 5 fxsks\n"
         "6: fxs 6 fxols\n7: fxo 7 fxsls\n"},
        {"fxoks=7-7\n", "1: fxs 7 fxoks\n"},
        {"fxoks=65535\n", "1: fxs 65535 fxoks\n"},
    });
}

TEST(LineConfig, RefusesAListThatCannotBeRead)
{
    check({
        {"bchan=", "error 1: bchan: the list of channels is empty\n"},
        {"bchan=# all", "error 1: bchan: the list of channels is empty\n"},
        {"bchan=:1101", "error 1: bchan: the list of channels is empty\n"},
        {"bchan", "error 1: bchan: '=' is missing\n"},
        {"bchan=1,,2", "error 1: bchan: a channel is missing between the commas\n"},
        {"bchan=1,", "error 1: bchan: a channel is missing between the commas\n"},
        {"bchan=1 2", "error 1: bchan: '1 2' is no channel or range of channels from 1 to 65535\n"},
        {"bchan=1;2", "error 1: bchan: '1;2' is no channel or range of channels from 1 to 65535\n"},
        {"bchan=1-", "error 1: bchan: '1-' is no channel or range of channels from 1 to 65535\n"},
        {"bchan=-3", "error 1: bchan: '-3' is no channel or range of channels from 1 to 65535\n"},
        {"bchan=1-2-3", "error 1: bchan: '1-2-3' is no channel or range\n"},
        {"bchan=1-65536",
         "error 1: bchan: '1-65536' is no channel or range of channels from 1 to 65535\n"},
        {"bchan=one", "error 1: bchan: 'one' is no channel or range of channels from 1 to 65535\n"},
        {"bchan=0x1", "error 1: bchan: '0x1' is no channel or range of channels from 1 to 65535\n"},
        {"bchan=0-3", "error 1: bchan: there is no channel 0, channels count from 1\n"},
        {"bchan=3-2", "error 1: bchan: range '3-2' runs backwards\n"},
        {"mulaw=x", "error 1: mulaw: 'x' is no channel or range of channels from 1 to 65535\n"},
        // What may stand behind a list.
        {"bchan=1:1101", "error 1: bchan: nothing may follow the channels, ':1101' does\n"},
        {"fxoks=1:", "error 1: fxoks: nothing may follow the channels, ':' does\n"},
        {"cas=1:110", "error 1: cas: idle bits '110' are not four of 0 and 1\n"},
        {"cas=1:11010", "error 1: cas: idle bits '11010' are not four of 0 and 1\n"},
        {"cas=1:1102", "error 1: cas: idle bits '1102' are not four of 0 and 1\n"},
        {"cas=1:", "error 1: cas: idle bits '' are not four of 0 and 1\n"},
        {"nethdlc=1:", "error 1: nethdlc: the name behind ':' is empty\n"},
        {"dacs=1", "error 1: dacs: ':CHANNEL' is missing, where the channels are connected to\n"},
        {"dacs=1:0", "error 1: dacs: '0' is no channel from 1 to 65535\n"},
        {"dacsrbs=1:x", "error 1: dacsrbs: 'x' is no channel from 1 to 65535\n"},
        {"loadzone=us\nspan=1,0,0,ccs,hdb3\n",
         "2: e1t1 1 timing 0 lbo 0 ccs hdb3 from 1 " + NO_31 + "\n"},
    });
}

struct Refused
{
    char const* text;
    char const* errors;
};

TEST(LineConfig, RefusesChannelsThatHaveNoPlace)
{
    Refused const cases[] = {
        {"bchan=1", "error 1: bchan: channel 1 lies outside every span\n"},
        {"span=1,0,0,ccs,ami\nbchan=1-4", "error 2: bchan: channel 4 lies outside every span\n"},
        {"fxoks=1\nspan=1,0,0,ccs,ami\ndchan=1",
         "error 3: dchan: channel 1 is used twice, first in line 1\n"},
        {"fxoks=1-2\nspan=1,0,0,ccs,ami\nbchan=6",
         "error 3: bchan: channel 6 lies outside every span\n"},
        {"fxoks=3\nspan=1,0,0,ccs,ami\nbchan=2",
         "error 3: bchan: channel 2 lies outside every span\n"},
        {"span=1,0,0,ccs,ami\nbchan=1,2,1",
         "error 2: bchan: channel 1 is used twice, first in line 2\n"},
        {"span=1,0,0,ccs,ami\nbchan=1,2\ndchan=2-3",
         "error 3: dchan: channel 2 is used twice, first in line 2\n"},
        {"fxoks=7\nfxsks=6-8", "error 2: fxsks: channel 7 is used twice, first in line 1\n"},
        {"unused=7\nfxsks=7", "error 2: fxsks: channel 7 is used twice, first in line 1\n"},
        {"span=1,0,0,ccs,hdb3\nfxoks=1",
         "error 2: fxoks: channel 1 lies in span 1, only a T1 can have analogue ports\n"},
        {"span=5,0,0,ccs,ami\nfxsks=3",
         "error 2: fxsks: channel 3 lies in span 5, only a T1 can have analogue ports\n"},
        // Every line that is wrong is told, each once.
        {"span=1,0,0,ccs,ami\nbchan=7-9\ndchan=3\ncas=3\n",
         "error 2: bchan: channel 7 lies outside every span\n"
         "error 4: cas: channel 3 is used twice, first in line 3\n"},
        // But where a line can't be read, the places of the others can't be told.
        {"bchan=1\nspan=1,0,0,ccs,amy\ndchan=0\n",
         "error 2: span: coding 'amy' is none of ami, b8zs, hdb3\n"
         "error 3: dchan: there is no channel 0, channels count from 1\n"},
    };
    for (Refused const& c : cases) {
        SCOPED_TRACE(c.text);
        LineConfig const config = readLineConfig(c.text);
        EXPECT_EQ(c.errors, remarks("error ", config.errors));
    }
}

TEST(LineConfig, ReadsOverWhatSaysNothingOfDrivers)
{
    EXPECT_EQ("", shown(readLineConfig("")));
    EXPECT_EQ("", shown(readLineConfig("# a comment\n\n   \t\r\n#span=1,0,0,ccs,ami\n"
                                       "loadzone = us\ndefaultzone=us\n"
                                       "echocanceller=mg2,1-8\n"
                                       "dynamic=eth,eth0/00:02:b3:35:43:9c,24,0\n"
                                       "mulaw=1-4\nalaw=5\ndeflaw=1\n"
                                       "tx=D371\ndcsrx=223\nctcss=1318,1,1318\ndebouncetime=123\n"
                                       "bursttime=234\ncorthresh=12500\ninvertcor=y\nexttone=y\n"
                                       "channels=1-4\n")));
}

TEST(LineConfig, WarnsOfWhatItDoesNotKnow)
{
    check({
        {"\nspam=1\n", "warning 2: unknown keyword 'spam' is passed over, did you mean 'span'?\n"},
        {"fxok=1", "warning 1: unknown keyword 'fxok' is passed over, did you mean 'fxoks'?\n"},
        {"mfcr2=1-15", "warning 1: unknown keyword 'mfcr2' is passed over\n"},
        {"=1", "warning 1: unknown keyword '' is passed over\n"},
        {"Gentlemen, the lines are down.",
         "warning 1: unknown keyword 'Gentlemen' is passed over\n"},
        {"a keyword longer than the forty characters = 1",
         "warning 1: unknown keyword 'a keyword longer than the forty characte...' is passed "
         "over\n"},
        {"span=1,1,0,ccs,ami\nspan=2,1,0,ccs,ami,crc4\n",
         "1: bri 1 timing 1 lbo 0 ccs ami from 1 ---\n"
         "2: bri 2 timing 1 lbo 0 ccs ami crc4 from 4 ---\n"
         "warning 2: span 2 has timing 1, which is span 1's\n"
         "warning 2: span 2 is no E1, crc4 means nothing to it\n"},
    });
}

TEST(LineConfig, RefusesWhatIsNoText)
{
    EXPECT_EQ("error 2: this is no text, it holds a zero byte\n",
              shown(readLineConfig(std::string("\nspan\0=1", 8))));
}

TEST(LineConfig, StopsAtTheFirstDoubleOfAListWithoutEnd)
{
    std::string text = "fxoks=1-65535";
    for (int i = 0; i < 20000; ++i)
        text += ",1-65535";
    LineConfig const config = readLineConfig(text);
    EXPECT_EQ("error 1: fxoks: channel 1 is used twice, first in line 1\n",
              remarks("error ", config.errors));
}

TEST(LineConfig, TellsTimeslotsAsAMask)
{
    LineConfig const config =
        readLineConfig("fxoks=1\nspan=1,1,0,ccs,hdb3\nbchan=2-16,18-32\ndchan=17\n");
    ASSERT_EQ("", remarks("error ", config.errors));
    ASSERT_EQ(1u, config.spans.size());
    LineSpan const& span = config.spans.front();
    EXPECT_EQ(0xFFFEFFFEu, span.timeslots(ChannelUse::Bearer));
    EXPECT_EQ(0x00010000u, span.timeslots(ChannelUse::Data));
    EXPECT_EQ(0u, span.timeslots(ChannelUse::Port));
    EXPECT_FALSE(span.holds(1));
    EXPECT_TRUE(span.holds(2));
    EXPECT_TRUE(span.holds(32));
    EXPECT_FALSE(span.holds(33));
}
} // namespace
