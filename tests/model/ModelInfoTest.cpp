#include "ModelFixture.h"

namespace
{
using model::Driver;
using model::Identifier;
using model::Listener;
using model::Table;

const Identifier E1 = {{{1, 2, 3, 4}}, "DID_E1"};
const Identifier DIAL = {{{9, 9, 9, 9}}, "IDial"};

class ModelInfo : public ModelFixture
{
protected:
    void furnish()
    {
        Listener l = wants("l", 7);
        l.classId = E1;
        l.prefix = "e";
        l.attributes.put("k", "v");
        listen(l);
        add(make("e1", E1));
        attach("e1", "k", "v1");
        attach("e1", "gone", "x");
        attach("e1", "gone", "");
    }
};

TEST_F(ModelInfo, EverythingInOrder)
{
    furnish();
    EXPECT_EQ("3.5 >Driver Repository=\n"
              "4.5 Drivers=\n"
              "5.5 e1=(DID_E1)\n6.6 Attachments=\n7.6 k=v1\n7.6 gone=\n"
              "6.8 Active Listeners=\n7.8 l=\n"
              "4.5 Listeners=\n"
              "5.5 l=\n6.6 DID=DID_E1\n6.6 Driver Name=e\n6.6 Attachments=\n7.6 k=v\n"
              "6.6 Priority=7\n6.7 Observer=<pointer>\n6.8 Notification Statistics=\n"
              "7.8 onDriverAdded=1\n7.8 onDriverRemoved=0\n7.8 onAttachmentSet=1\n"
              "7.8 onAttachmentCleared=1\n",
              rows({99, 3, 99, 5}, ">"));
}

TEST_F(ModelInfo, DepthCutsTheTree)
{
    furnish();
    EXPECT_EQ("1.0 Driver Repository=\n", rows({1, 1, 9, 0}));
    EXPECT_EQ("1.0 Driver Repository=\n2.0 Drivers=\n2.0 Listeners=\n", rows({2, 1, 9, 0}));
    EXPECT_EQ("", rows({0, 1, 9, 0}));
    EXPECT_EQ("", rows({9, 1, 0, 1}));
    EXPECT_EQ("4294967295.0 Driver Repository=\n", rows({0xffffffff, 0xffffffff, 9, 0}));
}

TEST_F(ModelInfo, DetailHidesRows)
{
    furnish();
    EXPECT_EQ("0.4 Driver Repository=\n1.4 Drivers=\n2.4 e1=(DID_E1)\n1.4 Listeners=\n2.4 l=\n",
              rows({9, 0, 4, 4}));
    const std::string two = rows({9, 0, 6, 4});
    EXPECT_NE(std::string::npos, two.find("Observer"));
    EXPECT_EQ(std::string::npos, two.find("Statistics"));
    EXPECT_EQ(std::string::npos, two.find("Active Listeners"));
}

TEST_F(ModelInfo, RowsLeftOutOfAListener)
{
    Listener l = wants("l");
    l.classId = model::wellKnown().unknown;
    repository_.addObserver(error_, l);
    EXPECT_EQ("0.0 Driver Repository=\n1.0 Drivers=\n1.0 Listeners=\n2.0 l=\n3.1 Priority=0\n",
              rows({9, 0, 2, 0}));
}

TEST_F(ModelInfo, ListenerWithoutClassShowsTheInvalidName)
{
    repository_.addObserver(error_, wants("l"), nullptr);
    EXPECT_EQ("0.0 Driver Repository=\n1.0 Drivers=\n1.0 Listeners=\n2.0 l=\n3.1 DID=INVALID\n"
              "3.1 Priority=0\n3.2 Observer=(nil)\n",
              rows({9, 0, 2, 0}));
}

TEST_F(ModelInfo, DriverThatDescribesTheRepositoryEnds)
{
    Driver& driver = make("d");
    driver.interfaces.push_back(model::wellKnown().info);
    driver.describe = [this](std::vector<model::InfoRow>& list, model::InfoLimits const& limits) {
        repository_.getInfo(list, limits, "inner ");
    };
    add(driver);
    EXPECT_EQ("0.0 Driver Repository=\n1.0 Drivers=\n2.0 d=(INVALID)\n"
              "3.1 inner Driver Repository=\n4.1 Drivers=\n4.1 Listeners=\n"
              "1.0 Listeners=\n",
              rows({9, 0, 9, 0}));
    EXPECT_EQ(2, driver.refs());
}

class ModelQueries : public ModelFixture
{
protected:
    std::string found(Identifier const& did, std::string const& pattern, Table const* attributes)
    {
        std::vector<Driver*> list;
        repository_.getDrivers(did, pattern, attributes, list);
        std::string names;
        for (Driver* driver : list) {
            names += driver->name() + ",";
            driver->release();
        }
        return names;
    }
};

TEST_F(ModelQueries, FilterByTypeNameAndAttachments)
{
    add(make("e1t1 0/a", E1));
    add("e1t1 01");
    add("bri 0");
    attach("e1t1 0/a", "slot", "1");
    attach("e1t1 01", "slot", "12");
    attach("bri 0", "slot", "21");
    EXPECT_EQ("e1t1 0/a,e1t1 01,bri 0,", found({}, "", nullptr));
    EXPECT_EQ("e1t1 0/a,e1t1 01,", found({}, "e1t1 0", nullptr));
    EXPECT_EQ("e1t1 0/a,", found(E1, "", nullptr));
    Table attributes;
    attributes.put("other", "");
    attributes.put("slot", "1");
    EXPECT_EQ("e1t1 0/a,e1t1 01,", found({}, "", &attributes));
    attributes.put("more", "x");
    EXPECT_EQ("", found({}, "", &attributes));
}

TEST_F(ModelQueries, OldElementsAreReleased)
{
    Driver& driver = make("d");
    add(driver);
    std::vector<Driver*> list;
    repository_.getDrivers({}, "", nullptr, list);
    EXPECT_EQ(3, driver.refs());
    repository_.getDrivers({}, "x", nullptr, list);
    EXPECT_EQ(2, driver.refs());
    EXPECT_TRUE(list.empty());
}

TEST_F(ModelQueries, InterfacesOfThoseThatHaveThem)
{
    Driver& has = make("has");
    Driver& hollow = make("hollow");
    Driver& lacks = make("lacks");
    has.interfaces.push_back(DIAL);
    hollow.hollow.push_back(DIAL);
    for (Driver* driver : {&lacks, &hollow, &has})
        add(*driver);
    std::vector<Driver*> list;
    repository_.getDriverInterfaces({}, "", nullptr, DIAL, list);
    EXPECT_EQ(std::vector<Driver*>{&has}, list);
    EXPECT_EQ(3, has.refs());
    EXPECT_EQ(2, hollow.refs());
    Driver* object = nullptr;
    EXPECT_EQ(-1, repository_.getDriverInterface("unknown", DIAL, &object));
    EXPECT_EQ(-1, repository_.getDriverInterface("lacks", DIAL, &object));
    EXPECT_EQ(-1, repository_.getDriverInterface("hollow", DIAL, &object));
    EXPECT_EQ(0, repository_.getDriverInterface("has", DIAL, nullptr));
    EXPECT_EQ(0, repository_.getDriverInterface("has", DIAL, &object));
    EXPECT_EQ(&has, object);
    EXPECT_EQ(4, has.refs());
    EXPECT_EQ(2, lacks.refs());
}
} // namespace
