#include <support/RepositoryFixture.h>

namespace
{

using Attributes = IDriverRepository::Attributes;

class Queries : public RepositoryFixture
{
protected:
    using Drivers = TOVA_List<TYPPtr<IDriver>>;
    using Faces = TOVA_List<TYPPtr<IUnknown>>;

    Queries()
    {
        driver("e1t1 0", span()).offer(extra());
        driver("e1t1 01", span());
        driver("fxs 1").offer(extra());
        driver("e1t1 0/a");
        for (char const* name : {"e1t1 0", "e1t1 01", "fxs 1", "e1t1 0/a"})
            add(name);
        attach("e1t1 0", "slot", "1");
        attach("e1t1 01", "slot", "12");
        attach("fxs 1", "slot", "21");
        attach("fxs 1", "port", "3");
        attach("e1t1 01", "port", "3");
        forget();
    }
    ~Queries() override { EXPECT_EQ("", lines()) << "queries are silent"; }

    static TOVA_UUID const& span()
    {
        static const TOVA_UUID did = TOVA_UUID::create(1, 2, 3, 4, "span");
        return did;
    }
    /// An interface that only some offer.
    static TOVA_UUID const& extra()
    {
        static const TOVA_UUID iid = TOVA_UUID::create(5, 6, 7, 8, "extra");
        return iid;
    }
    static std::string names(Drivers const& drivers)
    {
        std::string all;
        for (TYPPtr<IDriver> const& at : drivers)
            all += (all.empty() ? "" : ", ") + std::string(at.get()->getDriverName().cString());
        return all;
    }
    static std::string names(Faces const& faces)
    {
        std::string all;
        for (TYPPtr<IUnknown> const& at : faces)
            all += (all.empty() ? "" : ", ") +
                   std::string(static_cast<IDriver*>(at.get())->getDriverName().cString());
        return all;
    }
    /// The drivers' names and, in brackets, which of them offer the extra interface; both forms
    /// without a table must agree with those with an empty one.
    std::string find(TOVA_UUID const& did, char const* pattern)
    {
        const std::string found = find(did, pattern, Attributes());
        Drivers drivers;
        EXPECT_EQ(&drivers, &repository().getDrivers(did, pattern, drivers));
        Faces faces;
        EXPECT_EQ(&faces, &repository().getDriverInterfaces(did, pattern, extra(), faces));
        EXPECT_EQ(found, names(drivers) + " (" + names(faces) + ")");
        return found;
    }
    std::string find(TOVA_UUID const& did, char const* pattern, Attributes const& attributes)
    {
        Drivers drivers;
        EXPECT_EQ(&drivers, &repository().getDrivers(did, pattern, attributes, drivers));
        Faces faces;
        EXPECT_EQ(&faces,
                  &repository().getDriverInterfaces(did, pattern, attributes, extra(), faces));
        return names(drivers) + " (" + names(faces) + ")";
    }
    std::string references()
    {
        std::string all;
        for (char const* name : {"e1t1 0", "e1t1 01", "fxs 1", "e1t1 0/a"})
            all += std::to_string(driver(name).references());
        return all + "/" + std::to_string(repository().references());
    }

    const TOVA_UUID any_;
};

TEST_F(Queries, WithoutConditionsGiveAllInTheOrderOfAdding)
{
    EXPECT_EQ("e1t1 0, e1t1 01, fxs 1, e1t1 0/a (e1t1 0, fxs 1)", find(any_, ""));
    remove("e1t1 0");
    add("e1t1 0");
    EXPECT_EQ("e1t1 01, fxs 1, e1t1 0/a, e1t1 0 (fxs 1, e1t1 0)", find(any_, ""));
    lines();
}

TEST_F(Queries, ByType)
{
    TOVA_UUID_Data const& data = span().data();
    const TOVA_UUID alike =
        TOVA_UUID::create(data.words[0], data.words[1], data.words[2], data.words[3], "alike");
    EXPECT_EQ("e1t1 0, e1t1 01 (e1t1 0)", find(span(), ""));
    EXPECT_EQ("e1t1 0, e1t1 01 (e1t1 0)", find(alike, ""));
    EXPECT_EQ("fxs 1, e1t1 0/a (fxs 1)", find(IDriver::DID_UNKNOWN(), ""));
    EXPECT_EQ(" ()", find(IDriver::IID(), ""));
}

TEST_F(Queries, ByTheBeginningOfTheName)
{
    EXPECT_EQ("e1t1 0, e1t1 01, e1t1 0/a (e1t1 0)", find(any_, "e1t1 0"));
    EXPECT_EQ("e1t1 0/a ()", find(any_, "e1t1 0/"));
    EXPECT_EQ("fxs 1 (fxs 1)", find(any_, "fxs 1"));
    EXPECT_EQ("e1t1 01 ()", find(span(), "e1t1 01"));
    for (char const* miss : {"E1T1", "1t1", "fxs 11", "e1t1 0*", "*", " "})
        EXPECT_EQ(" ()", find(any_, miss)) << miss;
}

struct AttributeCase
{
    char const* key1;
    char const* value1;
    char const* key2;
    char const* value2;
    char const* found;
};

TEST_F(Queries, ByTheBeginningsOfAttachments)
{
    const AttributeCase cases[] = {
        {"slot", "1", "slot", "1", "e1t1 0, e1t1 01 (e1t1 0)"}, // 1 and 12, not 21 nor none
        {"slot", "", "slot", "", "e1t1 0, e1t1 01, fxs 1, e1t1 0/a (e1t1 0, fxs 1)"},
        {"slot", "21", "port", "", "fxs 1 (fxs 1)"},
        {"none", "", "port", "3", "e1t1 01, fxs 1 (fxs 1)"},
        // Both must hold, in whatever order.
        {"slot", "1", "port", "3", "e1t1 01 ()"},
        {"port", "3", "slot", "1", "e1t1 01 ()"},
        {"slot", "2", "port", "4", " ()"},
        {"none", "x", "slot", "1", " ()"},
        {"Slot", "1", "port", "", " ()"},
        {"slot", "123", "port", "", " ()"},
    };
    for (AttributeCase const& c : cases) {
        SCOPED_TRACE(std::string(c.key1) + "=" + c.value1 + " " + c.key2 + "=" + c.value2);
        Attributes attributes;
        attributes.put(c.key1, c.value1);
        attributes.put(c.key2, c.value2);
        EXPECT_EQ(c.found, find(any_, "", attributes));
    }
}

TEST_F(Queries, AllThreeConditionsTogether)
{
    Attributes attributes;
    attributes.put("slot", "1");
    EXPECT_EQ("e1t1 01 ()", find(span(), "e1t1 01", attributes));
    EXPECT_EQ(" ()", find(span(), "fxs", attributes));
    EXPECT_EQ(" ()", find(IDriver::DID_UNKNOWN(), "e1t1", attributes));
}

TEST_F(Queries, ClearedAttachmentIsAbsent)
{
    attach("e1t1 0", "slot", "");
    lines();
    Attributes attributes;
    attributes.put("slot", "1");
    EXPECT_EQ("e1t1 01 ()", find(any_, "", attributes));
}

TEST_F(Queries, HoldAReferenceAnElement)
{
    Drivers drivers;
    repository().getDrivers(any_, "e1", drivers);
    EXPECT_EQ("3323/1", references());
    Faces faces;
    repository().getDriverInterfaces(any_, "", extra(), faces);
    EXPECT_EQ("4333/1", references());
    drivers.clear();
    EXPECT_EQ("3232/1", references());
    faces.clear();
    EXPECT_EQ("2222/1", references());
}

TEST_F(Queries, EmptyTheListFirst)
{
    Drivers drivers;
    const TYPtr<TestDriver> old(new TestDriver("old"));
    drivers.append(TYPPtr<IDriver>::share(old.get()));
    drivers.append(TYPPtr<IDriver>::share(&driver("fxs 1")));
    EXPECT_TRUE(repository().getDrivers(any_, "none", drivers).isEmpty());
    EXPECT_EQ(1, old.get()->references());
    EXPECT_EQ("2222/1", references());
    Faces faces;
    faces.append(TYPPtr<IUnknown>::share(old.get()));
    EXPECT_TRUE(repository().getDriverInterfaces(any_, "", IInfo::IID(), faces).isEmpty());
    EXPECT_EQ(1, old.get()->references());
    drivers.append(TYPPtr<IDriver>::share(old.get()));
    EXPECT_EQ("fxs 1", names(repository().getDrivers(any_, "fxs", drivers)));
}

TEST_F(Queries, ConditionsMayBelongToWhatTheListLetsGo)
{
    // Type and pattern live in a driver of which the list holds the last reference.
    Drivers drivers;
    auto* const last = new TestDriver("e1t1 01", span());
    drivers.append(TYPPtr<IDriver>(last));
    EXPECT_EQ("e1t1 01",
              names(repository().getDrivers(last->getDID(), last->getDriverName(), drivers)));
    Faces faces;
    auto* const other = new TestDriver("e1t1 0", span());
    faces.append(TYPPtr<IUnknown>(other));
    EXPECT_EQ("e1t1 0", names(repository().getDriverInterfaces(
                            other->getDID(), other->getDriverName(), extra(), faces)));
}

/// A driver that owns a table of attributes and an identifier.
class Owner : public TestDriver
{
public:
    using TestDriver::TestDriver;
    Attributes attributes;
    const TOVA_UUID iid = TOVA_UUID::create(5, 6, 7, 8, "extra");
};

TEST_F(Queries, TableAndInterfaceMayBelongToWhatTheListLetsGo)
{
    auto* const last = new Owner("owner");
    last->attributes.put("port", "3");
    Drivers drivers;
    drivers.append(TYPPtr<IDriver>(last));
    EXPECT_EQ("e1t1 01, fxs 1",
              names(repository().getDrivers(any_, "", last->attributes, drivers)));
    auto* const other = new Owner("owner");
    other->attributes.put("port", "3");
    Faces faces;
    faces.append(TYPPtr<IUnknown>(other));
    EXPECT_EQ("fxs 1", names(repository().getDriverInterfaces(any_, "", other->attributes,
                                                              other->iid, faces)));
}

TEST_F(Queries, InterfacesOfThoseThatHaveThem)
{
    Faces faces;
    repository().getDriverInterfaces(any_, "e1", extra(), faces);
    ASSERT_EQ(1u, faces.count());
    EXPECT_EQ(static_cast<IUnknown*>(&driver("e1t1 0")), faces.begin()->get());
    repository().getDriverInterfaces(any_, "", IDriver::IID(), faces);
    EXPECT_EQ("e1t1 0, e1t1 01, fxs 1, e1t1 0/a", names(faces));
    repository().getDriverInterfaces(any_, "", TOVA_UUID::INVALID(), faces);
    EXPECT_EQ("", names(faces));
    EXPECT_EQ("2222/1", references());
}

TEST_F(Queries, CheapTestsComeFirst)
{
    Drivers drivers;
    const unsigned before = driver("fxs 1").calls().getDriverName;
    repository().getDrivers(span(), "e1", drivers);
    EXPECT_EQ(before, driver("fxs 1").calls().getDriverName) << "its type rules it out already";
    Faces faces;
    const unsigned asked = driver("fxs 1").calls().queryInterface;
    repository().getDriverInterfaces(any_, "e1", extra(), faces);
    EXPECT_EQ(asked, driver("fxs 1").calls().queryInterface);
}

TEST_F(Queries, EmptyRepositoryHasNothing)
{
    const TYPtr<TestRepository> empty(new TestRepository(loop_));
    Drivers drivers;
    drivers.append(TYPPtr<IDriver>::share(&driver("fxs 1")));
    EXPECT_TRUE(empty.get()->getDrivers(any_, "", drivers).isEmpty());
    Faces faces;
    EXPECT_TRUE(empty.get()->getDriverInterfaces(any_, "", IDriver::IID(), faces).isEmpty());
}

} // namespace
