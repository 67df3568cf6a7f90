#include <functional>

#include <drvrepo/CChannelGroup.h>

#include <support/InfoText.h>
#include <support/RecordFixture.h>

namespace
{

const unsigned ALL = 4294967295u;

// The rows of one driver's record, and what the driver itself adds.
class DriverInfo : public RecordFixture
{
protected:
    std::string rows(unsigned maxDepth, unsigned depth, unsigned maxDetail, unsigned detail,
                     char const* prefix = "")
    {
        InfoContainer info;
        EXPECT_EQ(&info, &record().getInfo(info, maxDepth, depth, maxDetail, detail, prefix));
        return textOf(info);
    }
};

TEST_F(DriverInfo, OfABareDriver)
{
    EXPECT_EQ("0/0 e1t1 1 = (span)\n", rows(ALL, 0, ALL, 0));
    EXPECT_EQ("4/2 the e1t1 1 = (span)\n", rows(ALL, 4, ALL, 2, "the "));
    EXPECT_EQ(2, driver().references());
}

TEST_F(DriverInfo, OfAnEmptyRecord)
{
    const Record none;
    InfoContainer info;
    none.getInfo(info, ALL, 0, ALL, 0, "");
    EXPECT_EQ("0/0  = (INVALID)\n", textOf(info));
}

TEST_F(DriverInfo, AttachmentsInTheOrderOfFirstSetting)
{
    attach("z", "1");
    attach("a", "2");
    attach("z", "");
    attach("z", "3");
    attach("a", "");
    EXPECT_EQ("0/0 e1t1 1 = (span)\n1/1 Attachments\n2/1 z = 3\n2/1 a\n", rows(ALL, 0, ALL, 0));
}

TEST_F(DriverInfo, OnlyClearedAttachmentsAreAttachmentsToo)
{
    attach("z", "1");
    attach("z", "");
    EXPECT_EQ("0/0 e1t1 1 = (span)\n1/1 Attachments\n2/1 z\n", rows(ALL, 0, ALL, 0));
}

TEST_F(DriverInfo, ActiveListenersOnly)
{
    meet("active", 3);
    Listener* const gone = meet("gone", 2);
    meet("other", 1, Terms().prefix("fxs"));
    record().removeListener(gone);
    EXPECT_EQ("0/0 e1t1 1 = (span)\n1/3 Active Listeners\n2/3 active\n", rows(ALL, 0, ALL, 0));
    meet("first", 1);
    EXPECT_EQ("0/0 e1t1 1 = (span)\n1/3 Active Listeners\n2/3 first\n2/3 active\n",
              rows(ALL, 0, ALL, 0));
}

TEST_F(DriverInfo, WithoutActiveOnesThereIsNoHeading)
{
    meet("other", 1, Terms().prefix("fxs"));
    Listener* const gone = meet("gone", 2);
    record().removeListener(gone);
    EXPECT_EQ("0/0 e1t1 1 = (span)\n", rows(ALL, 0, ALL, 0));
}

TEST_F(DriverInfo, LimitsOfDepthAndDetail)
{
    attach("k", "v");
    meet("a", 1);
    EXPECT_EQ("", rows(1, 2, ALL, 0));
    EXPECT_EQ("", rows(ALL, 2, 0, 1));
    EXPECT_EQ("2/1 e1t1 1 = (span)\n", rows(2, 2, ALL, 1));
    EXPECT_EQ("2/1 e1t1 1 = (span)\n3/2 Attachments\n3/4 Active Listeners\n", rows(3, 2, ALL, 1));
    const std::string all = "2/1 e1t1 1 = (span)\n3/2 Attachments\n4/2 k = v\n"
                            "3/4 Active Listeners\n4/4 a\n";
    EXPECT_EQ(all, rows(4, 2, ALL, 1));
    EXPECT_EQ("2/1 e1t1 1 = (span)\n", rows(ALL, 2, 1, 1));
    EXPECT_EQ("2/1 e1t1 1 = (span)\n3/2 Attachments\n4/2 k = v\n", rows(ALL, 2, 2, 1));
    EXPECT_EQ("2/1 e1t1 1 = (span)\n3/2 Attachments\n4/2 k = v\n", rows(ALL, 2, 3, 1));
    EXPECT_EQ(all, rows(ALL, 2, 4, 1));
    EXPECT_EQ("4294967295/0 e1t1 1 = (span)\n", rows(ALL, ALL, ALL, 0));
}

/// A driver that describes itself as `describe` says.
class Describing : public TestDriver, public IInfo
{
public:
    explicit Describing(char const* name) : TestDriver(name) {}

    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        if (iid != IInfo::IID())
            return TestDriver::queryInterface(iid, out);
        ++asked;
        if (out != nullptr) {
            addRef();
            *out = static_cast<IInfo*>(this);
        }
        return XCode();
    }
    void addRef() override { TestDriver::addRef(); }
    void release() override { TestDriver::release(); }
    Lock* getLock() override { return TestDriver::getLock(); }
    InfoContainer& getInfo(InfoContainer& info, unsigned maxDepth, unsigned depth,
                           unsigned maxDetail, unsigned detail, String const& prefix) const override
    {
        EXPECT_EQ("", prefix);
        info.add(depth, detail, String().format("limits %u %u", maxDepth, maxDetail),
                 getDriverName());
        if (describe)
            describe(info, depth, detail);
        return info;
    }

    std::function<void(InfoContainer&, unsigned depth, unsigned detail)> describe;
    mutable unsigned asked = 0;
};

TEST_F(DriverInfo, DriverWithInfoDescribesItself)
{
    const TYPtr<Describing> own(new Describing("fxs 1"));
    Record other(&repository(), own.get());
    other.setAttachment(error_, "k", "v");
    other.addListener(error_, make("a", 1));
    InfoContainer info;
    other.getInfo(info, 9, 2, 8, 3, "the ");
    EXPECT_EQ("2/3 the fxs 1 = (DID_UNKNOWN)\n3/4 Attachments\n4/4 k = v\n"
              "3/4 limits 9 8 = fxs 1\n3/6 Active Listeners\n4/6 a\n",
              textOf(info));
    EXPECT_EQ(1u, own.get()->asked);
    EXPECT_EQ(2, own.get()->references()) << "the interface is given back";
}

TEST_F(DriverInfo, DriversOwnRowsHaveLimitsToo)
{
    const TYPtr<Describing> own(new Describing("fxs 1"));
    const Record other(&repository(), own.get());
    struct
    {
        unsigned maxDepth, maxDetail;
        char const* rows;
    } const cases[] = {
        {3, 4, "2/3 fxs 1 = (DID_UNKNOWN)\n3/4 limits 3 4 = fxs 1\n"},
        {2, 4, "2/3 fxs 1 = (DID_UNKNOWN)\n"},
        {3, 3, "2/3 fxs 1 = (DID_UNKNOWN)\n"},
        {1, 9, ""},
    };
    for (auto const& c : cases) {
        InfoContainer info;
        other.getInfo(info, c.maxDepth, 2, c.maxDetail, 3, "");
        EXPECT_EQ(c.rows, textOf(info));
        EXPECT_EQ(2, own.get()->references());
    }
}

TEST_F(DriverInfo, ChannelGroupShowsItsTimeslots)
{
    const TYPtr<CChannelGroup> group(new CChannelGroup("e1t1 1/B-CHANNELS"));
    group.get()->setTimeslots(error_, 0xFFFEFFFE);
    const Record other(&repository(), group.get());
    InfoContainer info;
    other.getInfo(info, ALL, 0, ALL, 0, "");
    EXPECT_EQ("0/0 e1t1 1/B-CHANNELS = (DID_ChannelGroup)\n1/1 Configuration\n"
              "2/2 Timeslot(s) = 1-15;17-31\n",
              textOf(info));
}

TEST_F(DriverInfo, RecordInsideARecordAddsNoRowsOfItsDriver)
{
    const TYPtr<Describing> outer(new Describing("outer"));
    const TYPtr<Describing> inner(new Describing("inner"));
    const Record outerRecord(&repository(), outer.get());
    Record innerRecord(&repository(), inner.get());
    innerRecord.setAttachment(error_, "k", "v");
    innerRecord.addListener(error_, make("a", 1));
    outer.get()->describe = [&](InfoContainer& info, unsigned depth, unsigned detail) {
        innerRecord.getInfo(info, ALL, depth + 1, ALL, detail, "in: ");
    };
    for (int round = 0; round < 2; ++round) {
        InfoContainer info;
        outerRecord.getInfo(info, ALL, 0, ALL, 0, "");
        EXPECT_EQ("0/0 outer = (DID_UNKNOWN)\n1/1 limits 4294967295 4294967295 = outer\n"
                  "2/1 in: inner = (DID_UNKNOWN)\n3/2 Attachments\n4/2 k = v\n"
                  "3/4 Active Listeners\n4/4 a\n",
                  textOf(info));
    }
    InfoContainer info;
    innerRecord.getInfo(info, ALL, 0, 1, 0, "");
    EXPECT_EQ("0/0 inner = (DID_UNKNOWN)\n1/1 Attachments\n2/1 k = v\n"
              "1/1 limits 4294967295 1 = inner\n",
              textOf(info))
        << "by itself it is not nested any more";
    EXPECT_EQ(2, inner.get()->references());
    EXPECT_EQ(2, outer.get()->references());
}

class NestedInfo : public RepositoryFixture
{
protected:
    NestedInfo() : own_(new Describing("fxs 1"))
    {
        repository().addDriver(error_, own_.get());
        listen("a", 1);
        forget();
    }
    ~NestedInfo() override { repository().removeDriver(own_.get()); }

    std::string rows()
    {
        InfoContainer info;
        repository().getInfo(info, ALL, 0, 0, 0, "");
        return textOf(info);
    }
    std::string allRows()
    {
        InfoContainer info;
        repository().getInfo(info, 3, 0, 1, 0, "");
        return textOf(info);
    }

    TYPtr<Describing> own_;
};

TEST_F(NestedInfo, DriverThatDescribesTheRepositoryEnds)
{
    own_.get()->describe = [&](InfoContainer& info, unsigned depth, unsigned) {
        repository().getInfo(info, depth + 3, depth + 1, 0, 0, "again ");
    };
    for (int round = 0; round < 2; ++round)
        EXPECT_EQ("0/0 Driver Repository\n1/0 Drivers\n2/0 fxs 1 = (DID_UNKNOWN)\n"
                  "3/1 limits 3 1 = fxs 1\n"
                  "4/0 again Driver Repository\n5/0 Drivers\n5/0 Listeners\n6/0 a\n"
                  "1/0 Listeners\n2/0 a\n3/1 DID = INVALID\n3/1 Priority = 1\n",
                  allRows());
    EXPECT_EQ(2, own_.get()->references());
}

// The guard is one for the process, not one for each repository.
TEST_F(NestedInfo, AnotherRepositoryInsideListsNoDriversEither)
{
    const TYPtr<TestRepository> other(new TestRepository(loop_));
    other.get()->addDriver(error_, &driver("bri 1"));
    own_.get()->describe = [&](InfoContainer& info, unsigned depth, unsigned) {
        other.get()->getInfo(info, ALL, depth + 1, 0, 0, "other ");
    };
    EXPECT_EQ("0/0 Driver Repository\n1/0 Drivers\n2/0 fxs 1 = (DID_UNKNOWN)\n"
              "3/1 limits 3 1 = fxs 1\n"
              "4/0 other Driver Repository\n5/0 Drivers\n5/0 Listeners\n"
              "1/0 Listeners\n2/0 a\n3/1 DID = INVALID\n3/1 Priority = 1\n",
              allRows());
    InfoContainer info;
    other.get()->getInfo(info, ALL, 0, 0, 0, "");
    EXPECT_EQ("0/0 Driver Repository\n1/0 Drivers\n2/0 bri 1 = (DID_UNKNOWN)\n1/0 Listeners\n",
              textOf(info));
    other.get()->removeDriver(&driver("bri 1"));
}

TEST_F(NestedInfo, RepositoryInsideARecordListsItsDriversButNotTheirRows)
{
    const TYPtr<Describing> outer(new Describing("outer"));
    const CDriverRepository::DriverWrapper record(&repository(), outer.get());
    outer.get()->describe = [&](InfoContainer& info, unsigned depth, unsigned) {
        repository().getInfo(info, ALL, depth + 1, 1, 0, "");
    };
    InfoContainer info;
    record.getInfo(info, ALL, 0, 1, 0, "");
    EXPECT_EQ("0/0 outer = (DID_UNKNOWN)\n1/1 limits 4294967295 1 = outer\n"
              "2/0 Driver Repository\n3/0 Drivers\n4/0 fxs 1 = (DID_UNKNOWN)\n3/0 Listeners\n"
              "4/0 a\n5/1 DID = INVALID\n5/1 Priority = 1\n",
              textOf(info));
    EXPECT_EQ(1u + 1u, own_.get()->asked + outer.get()->asked);
    EXPECT_EQ(2, own_.get()->references());
}

TEST_F(NestedInfo, GuardsFallWhenADescriptionThrows)
{
    own_.get()->describe = [&](InfoContainer&, unsigned, unsigned) { throw 1; };
    EXPECT_THROW(allRows(), int);
    own_.get()->describe = nullptr;
    EXPECT_EQ("0/0 Driver Repository\n1/0 Drivers\n2/0 fxs 1 = (DID_UNKNOWN)\n1/0 Listeners\n"
              "2/0 a\n",
              rows());
    EXPECT_NE(std::string::npos, allRows().find("3/1 limits 3 1 = fxs 1\n"));
    EXPECT_EQ(2, own_.get()->references());
    EXPECT_EQ(1, repository().references());
}

} // namespace
