#include "ShellFixture.h"

namespace
{
class AttachmentCommands : public ShellFixture
{};

TEST_F(AttachmentCommands, SetGetAndClear)
{
    quietly("driver add p\nattach p b 1\nattach p a 'x y'\nattach p b 2");
    EXPECT_EQ("2\n", run("get p b"));
    EXPECT_EQ("x y\n", run("get p a"));
    EXPECT_EQ("\n", run("get p nothing"));
    // In the order in which the keys were first set.
    EXPECT_EQ("b=2\na=x y\n", run("attachments p"));
    quietly("detach p b\nattach p a ''\ndetach p nothing");
    EXPECT_EQ("b=\na=\n", run("attachments p"));
    EXPECT_EQ("name        p\n"
              "type        DID_UNKNOWN\n"
              "uuid        14bbd19f-4ac5-6360-5b5f-1ca518e3b90f\n"
              "references  2, one of them this command's own\n"
              "attachment  b=\n"
              "attachment  a=\n",
              run("driver show p"));
}

TEST_F(AttachmentCommands, TextsArriveUnchanged)
{
    quietly("driver add p\nattach p [k] [a,b]\nattach p '' empty\nattach p -- -k -v\n"
            "attach p k=v a=b\nattach p {} %%");
    EXPECT_EQ("[k]=[a,b]\n=empty\n-k=-v\nk=v=a=b\n{}=%%\n", run("attachments p"));
    EXPECT_EQ("[a,b]\n", run("get p [k]"));
    EXPECT_EQ("empty\n", run("get p ''"));
    EXPECT_EQ("-v\n", run("get p -- -k"));
}

TEST_F(AttachmentCommands, OfOneDriverOnly)
{
    quietly("driver add p\ndriver add 'p 2'\ngroup add g 1\ndriver add i --iface IInfo\n"
            "attach p k 1\nattach g k 2\nattach i k 3");
    EXPECT_EQ("k=1\n", run("attachments p"));
    EXPECT_EQ("", run("attachments 'p 2'"));
    EXPECT_EQ("k=2\n", run("attachments g"));
    EXPECT_EQ("k=3\n", run("attachments i"));
}

TEST_F(AttachmentCommands, NeedADriver)
{
    struct
    {
        char const* command;
        char const* complaint;
    } const cases[] = {
        {"attach p k v", "t:1: attach: Driver 'p' does not exist\n"},
        {"detach p k", "t:1: detach: Driver 'p' does not exist\n"},
        {"get p k", "t:1: get: Driver 'p' does not exist\n"},
        {"attachments p", "t:1: attachments: Driver 'p' does not exist\n"},
        {"attach p k", "t:1: attach: VALUE is required\n"},
        {"get", "t:1: get: DRIVER is required\n"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.complaint, failing(c.command)) << c.command;
}
} // namespace
