#include <support/RepositoryFixture.h>

namespace
{

// The repository's four entry points: finding the driver, texts, log lines, arguments.
class Attachments : public RepositoryFixture
{
protected:
    /// The driver's attachments in the table's order, "key=value " each.
    std::string table(std::string const& name)
    {
        InfoContainer info;
        repository().getInfo(info, 4, 0, 1, 0, "");
        std::string all;
        bool among = false;
        for (InfoContainer::Row const& row : info.rows()) {
            if (row.depth == 2)
                among = row.key == name.c_str();
            if (among && row.depth == 4)
                all += std::string(row.key.cString()) + "=" + row.value.cString() + " ";
        }
        return all;
    }
};

TEST_F(Attachments, SetOneIsRead)
{
    add("fxs 1");
    add("fxs 2");
    forget();
    error_ = "left over";
    EXPECT_EQ(0, attach("fxs 1", "slot", "3").code());
    EXPECT_EQ("", error());
    EXPECT_EQ("3", attachment("fxs 1", "slot"));
    EXPECT_EQ("", attachment("fxs 2", "slot"));
    EXPECT_EQ("<7> DrvRepo: Set driver 'fxs 1' attachment slot=3\n", lines());
}

TEST_F(Attachments, UnknownOnesReadAsEmpty)
{
    add("fxs 1");
    attach("fxs 1", "slot", "3");
    EXPECT_EQ("", attachment("fxs 1", "Slot"));
    EXPECT_EQ("", attachment("fxs 1", ""));
    EXPECT_EQ("", attachment("fxs", "slot"));
    EXPECT_EQ("", attachment("", ""));
    String value("left over");
    repository().getDriverAttachment(static_cast<IDriver*>(nullptr), "slot", value);
    EXPECT_EQ("", value);
    value = "left over";
    repository().getDriverAttachment(&driver("fxs 2"), "slot", value);
    EXPECT_EQ("", value);
}

TEST_F(Attachments, ReadIntoTheArgumentThatIsReturned)
{
    add("fxs 1");
    attach("fxs 1", "slot", "3");
    String value;
    EXPECT_EQ(&value, &repository().getDriverAttachment(String("fxs 1"), "slot", value));
    EXPECT_EQ("3", value);
    EXPECT_EQ(&value, &repository().getDriverAttachment(String("none"), "slot", value));
}

TEST_F(Attachments, ByDriver)
{
    add("fxs 1");
    forget();
    EXPECT_EQ(0, repository().setDriverAttachment(error_, &driver("fxs 1"), "slot", "3").code());
    EXPECT_EQ("<7> DrvRepo: Set driver 'fxs 1' attachment slot=3\n", lines());
    String value;
    repository().getDriverAttachment(&driver("fxs 1"), "slot", value);
    EXPECT_EQ("3", value);
    EXPECT_EQ(2, driver("fxs 1").references());
    EXPECT_EQ("", lines()) << "reading is silent";
}

// As everywhere, it is the name that counts.
TEST_F(Attachments, ByAnotherDriverOfThatName)
{
    add("fxs 1");
    const TYPtr<TestDriver> other(new TestDriver("fxs 1"));
    EXPECT_EQ(0, repository().setDriverAttachment(error_, other.get(), "slot", "3").code());
    EXPECT_EQ("3", attachment("fxs 1", "slot"));
}

TEST_F(Attachments, OfNoDriverIsRefusedSilently)
{
    IDriver* const none = nullptr;
    EXPECT_EQ(-1, repository().setDriverAttachment(error_, none, "slot", "3").code());
    EXPECT_EQ("No driver specified", error());
    EXPECT_EQ("", lines());
}

TEST_F(Attachments, OfAnUnknownDriverFailsWithALine)
{
    add("fxs 1");
    forget();
    EXPECT_EQ(-1, attach("fxs 2", "slot", "3").code());
    EXPECT_EQ("Driver 'fxs 2' does not exist", error());
    EXPECT_EQ("<3> DrvRepo: SETTING DRIVER 'fxs 2' ATTACHMENT slot=3 FAILED: "
              "Driver 'fxs 2' does not exist\n",
              lines());
    EXPECT_EQ(-1, repository().setDriverAttachment(error_, &driver("fxs 3"), "a", "").code());
    EXPECT_EQ("Driver 'fxs 3' does not exist", error());
    EXPECT_EQ("<3> DrvRepo: SETTING DRIVER 'fxs 3' ATTACHMENT a= FAILED: "
              "Driver 'fxs 3' does not exist\n",
              lines());
}

TEST_F(Attachments, RefusalIsLoggedTwice)
{
    add("fxs 1");
    observer("a").refuse("set", "no such slot", 12);
    listen("a", 1, Terms().veto());
    forget();
    EXPECT_EQ(12, attach("fxs 1", "slot", "3").code());
    EXPECT_EQ("no such slot", error());
    EXPECT_EQ("<7> DrvRepo: Set driver 'fxs 1' attachment slot=3\n"
              "<7> DrvRepo:   fxs 1: Notify listener 'a': onDriverAttachmentSet(slot=3)\n"
              "<3> DrvRepo:   fxs 1: NOTIFY LISTENER 'a' FAILED: no such slot\n"
              "<3> DrvRepo: SETTING DRIVER 'fxs 1' ATTACHMENT slot=3 FAILED: no such slot\n",
              lines());
}

TEST_F(Attachments, SameValueAgainIsOnlyALine)
{
    add("fxs 1");
    attach("fxs 1", "slot", "3");
    listen("a", 1, Terms().veto());
    observer("a").refuse("set", "no");
    forget();
    error_ = "left over";
    EXPECT_EQ(0, attach("fxs 1", "slot", "3").code());
    EXPECT_EQ("", error());
    EXPECT_EQ("", heard());
    EXPECT_EQ("<7> DrvRepo: Set driver 'fxs 1' attachment slot=3\n", lines());
}

TEST_F(Attachments, ClearingAnAbsentKeyMakesNoEntry)
{
    add("fxs 1");
    listen("a", 1);
    forget();
    error_ = "left over";
    EXPECT_EQ(0, attach("fxs 1", "slot", "").code());
    EXPECT_EQ("", error());
    EXPECT_EQ("", heard());
    EXPECT_EQ("<7> DrvRepo: Set driver 'fxs 1' attachment slot=\n", lines());
    EXPECT_EQ("", table("fxs 1"));
}

TEST_F(Attachments, KeysKeepThePlaceOfTheirFirstSetting)
{
    add("fxs 1");
    attach("fxs 1", "z", "1");
    attach("fxs 1", "a", "2");
    attach("fxs 1", "z", "3");
    EXPECT_EQ("z=3 a=2 ", table("fxs 1"));
    attach("fxs 1", "z", "");
    EXPECT_EQ("z= a=2 ", table("fxs 1")) << "a cleared one stays";
    attach("fxs 1", "m", "4");
    attach("fxs 1", "z", "5");
    EXPECT_EQ("z=5 a=2 m=4 ", table("fxs 1"));
}

TEST_F(Attachments, ManyKeysKeepTheirOrderAndValues)
{
    add("fxs 1");
    std::string expected;
    for (int i = 99; i >= 0; --i) {
        const std::string key = std::to_string(i);
        attach("fxs 1", key.c_str(), ("v" + key).c_str());
        expected += key + "=v" + key + " ";
    }
    EXPECT_EQ(expected, table("fxs 1"));
    EXPECT_EQ("v42", attachment("fxs 1", "42"));
}

TEST_F(Attachments, ErrorMayBeTheNameTheKeyOrTheValue)
{
    add("fxs 1");
    listen("a", 1, Terms().veto());
    observer("a").remark("set", "fine");
    heard();
    String text("fxs 1");
    EXPECT_EQ(0, repository().setDriverAttachment(text, text, text, text).code());
    EXPECT_EQ("", text);
    EXPECT_EQ("a: set fxs 1 fxs 1=fxs 1\n", heard());
    EXPECT_EQ("fxs 1", attachment("fxs 1", "fxs 1"));
    lines();
    text = "slot";
    observer("a").accept();
    observer("a").refuse("set", "no");
    EXPECT_EQ(-1, repository().setDriverAttachment(text, String("fxs 1"), text, text).code());
    EXPECT_EQ("no", text);
    EXPECT_NE(std::string::npos, lines().find("<3> DrvRepo: SETTING DRIVER 'fxs 1' ATTACHMENT "
                                              "slot=slot FAILED: no\n"));
    text = "none";
    EXPECT_EQ(-1, repository().setDriverAttachment(text, text, text, text).code());
    EXPECT_EQ("Driver 'none' does not exist", text);
    EXPECT_EQ("<3> DrvRepo: SETTING DRIVER 'none' ATTACHMENT none=none FAILED: "
              "Driver 'none' does not exist\n",
              lines());
    text = "k";
    EXPECT_EQ(-1, repository().setDriverAttachment(text, &driver("fxs 1"), text, text).code());
    EXPECT_EQ("no", text);
    EXPECT_EQ("", attachment("fxs 1", "k"));
}

TEST_F(Attachments, ReadValueMayBeTheNameOrTheKey)
{
    add("fxs 1");
    attach("fxs 1", "slot", "3");
    attach("fxs 1", "fxs 1", "4");
    String text("slot");
    EXPECT_EQ("3", repository().getDriverAttachment(String("fxs 1"), text, text));
    text = "fxs 1";
    EXPECT_EQ("4", repository().getDriverAttachment(text, text, text));
    text = "slot";
    repository().getDriverAttachment(&driver("fxs 1"), text, text);
    EXPECT_EQ("3", text);
    text = "slot";
    repository().getDriverAttachment(static_cast<IDriver*>(nullptr), text, text);
    EXPECT_EQ("", text);
    EXPECT_EQ("3", attachment("fxs 1", "slot")) << "the stored value is its own";
}

/// Writes down which of the entry points are called.
class Overriding : public TestRepository
{
public:
    using TestRepository::TestRepository;

    void getDriverAttachment(IDriver* driver, String const& key, String& value) const override
    {
        calls += "get ";
        TestRepository::getDriverAttachment(driver, key, value);
    }
    String& getDriverAttachment(String const& name, String const& key, String& value) const override
    {
        calls += std::string("get by name '") + name.cString() + "' ";
        return TestRepository::getDriverAttachment(name, key, value);
    }
    XCode setDriverAttachment(String& error, IDriver* driver, String const& key,
                              String const& value) override
    {
        calls += "set ";
        return TestRepository::setDriverAttachment(error, driver, key, value);
    }
    XCode setDriverAttachment(String& error, String const& name, String const& key,
                              String const& value) override
    {
        calls += std::string("set by name '") + name.cString() + "' ";
        return TestRepository::setDriverAttachment(error, name, key, value);
    }

    mutable std::string calls;
};

TEST(AttachmentsByDriver, GoThroughTheRepositorysOwnOperations)
{
    TYEventLoop loop;
    const TYPtr<Overriding> repository(new Overriding(loop));
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    String text;
    repository.get()->addDriver(text, driver.get());
    repository.get()->setDriverAttachment(text, driver.get(), "slot", "3");
    repository.get()->getDriverAttachment(driver.get(), "slot", text);
    EXPECT_EQ("set set by name 'fxs 1' get get by name 'fxs 1' ",
              std::exchange(repository.get()->calls, ""));
    EXPECT_EQ("3", text);
    IDriver* const none = nullptr;
    repository.get()->setDriverAttachment(text, none, "slot", "3");
    repository.get()->getDriverAttachment(none, "slot", text);
    EXPECT_EQ("set get ", repository.get()->calls);
    repository.get()->removeDriver(driver.get());
}

} // namespace
