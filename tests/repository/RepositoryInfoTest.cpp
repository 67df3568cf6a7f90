#include <cstdio>

#include <support/InfoText.h>
#include <support/RepositoryFixture.h>

namespace
{

const unsigned ALL = 4294967295u;

// The rows of a repository: first what they are, then where the limits cut.
class RepositoryInfo : public RepositoryFixture
{
protected:
    std::string rows(unsigned maxDepth, unsigned depth, unsigned maxDetail, unsigned detail,
                     char const* prefix = "")
    {
        InfoContainer info;
        EXPECT_EQ(&info, &repository().getInfo(info, maxDepth, depth, maxDetail, detail, prefix));
        EXPECT_EQ("", lines());
        return textOf(info);
    }
    std::string addressOf(std::string const& name)
    {
        char text[40];
        std::snprintf(
            text, sizeof text, "%p",
            static_cast<void const*>(static_cast<IDriverRepositoryObserver*>(&observer(name))));
        return text;
    }
    static TOVA_UUID const& span()
    {
        static const TOVA_UUID did = TOVA_UUID::create(1, 2, 3, 4, "Span");
        return did;
    }
    /// Two drivers, one with attachments; two listeners, one with all criteria, that hears of
    /// nothing, and one for everything.
    void furnish()
    {
        driver("e1t1 1", span());
        add("e1t1 1");
        add("fxs 1");
        attach("e1t1 1", "slot", "1");
        attach("e1t1 1", "port", "2");
        attach("e1t1 1", "slot", "");
        listen("some", 5,
               Terms().did(span()).prefix("e1").attribute("z", "9").attribute("a", "").veto());
        listen("all", 4294967295u);
        attach("fxs 1", "port", "3");
        attach("fxs 1", "port", "4");
        remove("fxs 1");
        forget();
    }
};

TEST_F(RepositoryInfo, OfAnEmptyRepository)
{
    EXPECT_EQ("0/0 Driver Repository\n1/0 Drivers\n1/0 Listeners\n", rows(ALL, 0, ALL, 0));
}

TEST_F(RepositoryInfo, TellsEverything)
{
    furnish();
    EXPECT_EQ("0/0 Driver Repository\n"
              "1/0 Drivers\n"
              "2/0 e1t1 1 = (Span)\n"
              "3/1 Attachments\n"
              "4/1 slot\n"
              "4/1 port = 2\n"
              "3/3 Active Listeners\n"
              "4/3 all\n"
              "1/0 Listeners\n"
              "2/0 some\n"
              "3/1 DID = Span\n"
              "3/1 Driver Name = e1\n"
              "3/1 Attachments\n"
              "4/1 z = 9\n"
              "4/1 a\n"
              "3/1 Priority = 5\n"
              "3/2 Observer = " +
                  addressOf("some") +
                  "\n"
                  "3/3 Notification Statistics\n"
                  "4/3 onDriverAdded = 0\n"
                  "4/3 onDriverRemoved = 0\n"
                  "4/3 onAttachmentSet = 0\n"
                  "4/3 onAttachmentCleared = 0\n"
                  "2/0 all\n"
                  "3/1 DID = INVALID\n"
                  "3/1 Priority = 4294967295\n"
                  "3/2 Observer = " +
                  addressOf("all") +
                  "\n"
                  "3/3 Notification Statistics\n"
                  "4/3 onDriverAdded = 2\n"
                  "4/3 onDriverRemoved = 1\n"
                  "4/3 onAttachmentSet = 2\n"
                  "4/3 onAttachmentCleared = 1\n",
              rows(ALL, 0, ALL, 0));
}

TEST_F(RepositoryInfo, ShiftsAllRowsAndPrefixesTheFirst)
{
    add("fxs 1");
    attach("fxs 1", "slot", "1");
    EXPECT_EQ("7/3 the Driver Repository\n8/3 Drivers\n9/3 fxs 1 = (DID_UNKNOWN)\n"
              "10/4 Attachments\n11/4 slot = 1\n8/3 Listeners\n",
              (lines(), rows(ALL, 7, ALL, 3, "the ")));
}

TEST_F(RepositoryInfo, DepthLimits)
{
    furnish();
    EXPECT_EQ("", rows(2, 3, ALL, 0, "the "));
    EXPECT_EQ("3/0 the Driver Repository\n", rows(3, 3, ALL, 0, "the "));
    EXPECT_EQ("3/0 Driver Repository\n4/0 Drivers\n4/0 Listeners\n", rows(4, 3, ALL, 0));
    EXPECT_EQ("3/0 Driver Repository\n4/0 Drivers\n5/0 e1t1 1 = (Span)\n4/0 Listeners\n5/0 some\n"
              "5/0 all\n",
              rows(5, 3, ALL, 0));
    EXPECT_EQ("3/0 Driver Repository\n4/0 Drivers\n5/0 e1t1 1 = (Span)\n6/1 Attachments\n"
              "6/3 Active Listeners\n4/0 Listeners\n5/0 some\n6/1 DID = Span\n"
              "6/1 Driver Name = e1\n6/1 Attachments\n6/1 Priority = 5\n6/2 Observer = " +
                  addressOf("some") +
                  "\n6/3 Notification Statistics\n5/0 all\n6/1 DID = INVALID\n"
                  "6/1 Priority = 4294967295\n6/2 Observer = " +
                  addressOf("all") + "\n6/3 Notification Statistics\n",
              rows(6, 3, ALL, 0));
    EXPECT_EQ(rows(ALL, 3, ALL, 0), rows(7, 3, ALL, 0));
}

TEST_F(RepositoryInfo, DetailLimits)
{
    furnish();
    EXPECT_EQ("", rows(ALL, 0, 4, 5));
    const std::string top = "0/5 Driver Repository\n1/5 Drivers\n2/5 e1t1 1 = (Span)\n";
    EXPECT_EQ(top + "1/5 Listeners\n2/5 some\n2/5 all\n", rows(ALL, 0, 5, 5));
    const std::string attachments = "3/6 Attachments\n4/6 slot\n4/6 port = 2\n";
    EXPECT_EQ(top + attachments +
                  "1/5 Listeners\n2/5 some\n3/6 DID = Span\n3/6 Driver Name = e1\n"
                  "3/6 Attachments\n4/6 z = 9\n4/6 a\n3/6 Priority = 5\n2/5 all\n"
                  "3/6 DID = INVALID\n3/6 Priority = 4294967295\n",
              rows(ALL, 0, 6, 5));
    EXPECT_EQ(top + attachments +
                  "1/5 Listeners\n2/5 some\n3/6 DID = Span\n3/6 Driver Name = e1\n"
                  "3/6 Attachments\n4/6 z = 9\n4/6 a\n3/6 Priority = 5\n3/7 Observer = " +
                  addressOf("some") +
                  "\n2/5 all\n3/6 DID = INVALID\n3/6 Priority = 4294967295\n3/7 Observer = " +
                  addressOf("all") + "\n",
              rows(ALL, 0, 7, 5));
    EXPECT_EQ(rows(ALL, 0, ALL, 5), rows(ALL, 0, 8, 5));
    EXPECT_NE(rows(ALL, 0, 7, 5), rows(ALL, 0, 8, 5));
}

TEST_F(RepositoryInfo, LimitsDoNotWrapAround)
{
    furnish();
    EXPECT_EQ("4294967295/0 Driver Repository\n", rows(ALL, ALL, ALL, 0));
    EXPECT_EQ("4294967294/0 Driver Repository\n4294967295/0 Drivers\n4294967295/0 Listeners\n",
              rows(ALL, ALL - 1, ALL, 0));
    EXPECT_EQ("0/4294967295 Driver Repository\n1/4294967295 Drivers\n"
              "2/4294967295 e1t1 1 = (Span)\n1/4294967295 Listeners\n2/4294967295 some\n"
              "2/4294967295 all\n",
              rows(ALL, 0, ALL, ALL));
}

TEST_F(RepositoryInfo, FollowsTheOrderOfAddingAndOfTheListeners)
{
    for (char const* name : {"fxs 2", "bri 1", "fxs 1"})
        add(name);
    remove("fxs 2");
    add("fxs 2");
    listen("first 5", 5);
    listen("1", 1);
    listen("second 5", 5);
    lines();
    EXPECT_EQ("0/0 Driver Repository\n1/0 Drivers\n2/0 bri 1 = (DID_UNKNOWN)\n"
              "2/0 fxs 1 = (DID_UNKNOWN)\n2/0 fxs 2 = (DID_UNKNOWN)\n1/0 Listeners\n2/0 1\n"
              "2/0 second 5\n2/0 first 5\n",
              rows(2, 0, ALL, 0));
}

// The row is left out for IUnknown and not for the invalid identifier, though that is the one that
// stands for any class.
TEST_F(RepositoryInfo, DidRowIsLeftOutForIUnknownOnly)
{
    TOVA_UUID_Data const& data = IID_Unknown().data();
    const TOVA_UUID alike = TOVA_UUID::create(data.words[0], data.words[1], data.words[2],
                                              data.words[3], "not shown either");
    listen("any", 1);
    listen("unknown", 2, Terms().did(IID_Unknown()));
    listen("alike", 3, Terms().did(alike));
    listen("span", 4, Terms().did(span()));
    lines();
    EXPECT_EQ("0/0 Driver Repository\n1/0 Drivers\n1/0 Listeners\n"
              "2/0 any\n3/1 DID = INVALID\n3/1 Priority = 1\n"
              "2/0 unknown\n3/1 Priority = 2\n"
              "2/0 alike\n3/1 Priority = 3\n"
              "2/0 span\n3/1 DID = Span\n3/1 Priority = 4\n",
              rows(ALL, 0, 1, 0));
}

TEST_F(RepositoryInfo, ObserverIsNullOnceStoppedAndAbsentWithoutADelegate)
{
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("stopped")));
    ObserverDelegate<IDriverRepository>* const none = nullptr;
    const TOVA_UUID any;
    repository().addDriverRepositoryObserver(error_, "stopped", any, any, "", 1, false, false,
                                             delegate.get());
    repository().addDriverRepositoryObserver(error_, "none", any, any, "", 2, false, false, none);
    delegate.get()->stopNotifications();
    lines();
    char null[40];
    std::snprintf(null, sizeof null, "%p", static_cast<void const*>(nullptr));
    EXPECT_EQ("0/0 Driver Repository\n1/0 Drivers\n1/0 Listeners\n2/0 stopped\n"
              "3/1 DID = INVALID\n3/1 Priority = 1\n3/2 Observer = " +
                  std::string(null) +
                  "\n2/0 none\n3/1 DID = INVALID\n"
                  "3/1 Priority = 2\n",
              rows(ALL, 0, 2, 0));
    EXPECT_EQ(2, delegate.get()->references());
    unlisten("stopped");
    unlisten("none");
}

TEST_F(RepositoryInfo, TextsAreShownAsTheyAre)
{
    driver("100%s", TOVA_UUID::create(8, 8, 8, 8, "%d"));
    add("100%s");
    attach("100%s", "%n", "%p");
    listen("%x", 1, Terms().prefix("%u"));
    lines();
    EXPECT_EQ("0/0 %c Driver Repository\n1/0 Drivers\n2/0 100%s = (%d)\n3/1 Attachments\n"
              "4/1 %n = %p\n1/0 Listeners\n2/0 %x\n3/1 DID = INVALID\n3/1 Driver Name = %u\n"
              "3/1 Priority = 1\n",
              rows(ALL, 0, 1, 0, "%c "));
}

} // namespace
