#include <support/RepositoryFixture.h>

namespace
{

// One interface of one driver by its name.
class DriverInterface : public RepositoryFixture
{
protected:
    /// The code of asking for an interface; what was given is kept in `face_`.
    int ask(char const* name, TOVA_UUID const& iid)
    {
        face_ = this; // anything but null
        return repository().getDriverInterface(name, iid, &face_).code();
    }

    void* face_ = nullptr;
};

TEST_F(DriverInterface, IsGivenWithAReference)
{
    add("fxs 1");
    add("fxs 2");
    lines();
    EXPECT_EQ(0, ask("fxs 1", IDriver::IID()));
    EXPECT_EQ(static_cast<IDriver*>(&driver("fxs 1")), face_);
    EXPECT_EQ(3, driver("fxs 1").references());
    EXPECT_EQ(2, driver("fxs 2").references());
    static_cast<IDriver*>(face_)->release();
    EXPECT_EQ("", lines());
}

TEST_F(DriverInterface, OfAnUnknownNameFailsAsGetDriverDoes)
{
    add("fxs 1");
    lines();
    EXPECT_EQ(-1, ask("fxs 2", IDriver::IID()));
    EXPECT_EQ(nullptr, face_);
    EXPECT_EQ(2, driver("fxs 1").references());
    EXPECT_EQ(1, repository().references());
    EXPECT_EQ("", lines());
}

/// Answers as it is told to.
class Answering : public TestDriver
{
public:
    using TestDriver::TestDriver;
    XCode queryInterface(TOVA_UUID const&, void** out) override
    {
        if (out != nullptr)
            *out = nullptr;
        return XCode(code, "not here");
    }
    std::int32_t code = 0;
};

TEST_F(DriverInterface, FailsAsTheDriverDoes)
{
    const TYPtr<Answering> answering(new Answering("fxs 1"));
    answering.get()->code = 77;
    repository().addDriver(error_, answering.get());
    face_ = this;
    const XCode rc = repository().getDriverInterface("fxs 1", IDriver::IID(), &face_);
    EXPECT_EQ(77, rc.code());
    EXPECT_EQ("not here", rc.message());
    EXPECT_EQ(nullptr, face_);
    EXPECT_EQ(2, answering.get()->references());
    repository().removeDriver(answering.get());
}

TEST_F(DriverInterface, SuccessThatGivesNothingIsNone)
{
    const TYPtr<Answering> answering(new Answering("fxs 1"));
    repository().addDriver(error_, answering.get());
    EXPECT_NE(0, ask("fxs 1", IDriver::IID()));
    EXPECT_EQ(nullptr, face_);
    TOVA_List<TYPPtr<IUnknown>> faces;
    EXPECT_TRUE(repository()
                    .getDriverInterfaces(TOVA_UUID::INVALID(), "", IDriver::IID(), faces)
                    .isEmpty());
    EXPECT_EQ(2, answering.get()->references());
    repository().removeDriver(answering.get());
}

TEST_F(DriverInterface, ThatTheDriverLacksFails)
{
    add("fxs 1");
    EXPECT_EQ(-1, ask("fxs 1", IInfo::IID()));
    EXPECT_EQ(nullptr, face_);
    EXPECT_EQ(2, driver("fxs 1").references());
    EXPECT_EQ(1, repository().references());
}

TEST_F(DriverInterface, MayBeAskedForTheCodeAlone)
{
    add("fxs 1");
    EXPECT_EQ(0, repository().getDriverInterface("fxs 1", IDriver::IID(), nullptr).code());
    EXPECT_EQ(-1, repository().getDriverInterface("fxs 1", IInfo::IID(), nullptr).code());
    EXPECT_EQ(-1, repository().getDriverInterface("fxs 2", IDriver::IID(), nullptr).code());
    EXPECT_EQ(2, driver("fxs 1").references());
}

/// Finds its drivers its own way.
class Overriding : public TestRepository
{
public:
    using TestRepository::TestRepository;
    XCode getDriver(String const& name, IDriver** driver) override
    {
        calls += std::string("getDriver ") + name.cString();
        if (name == "nowhere")
            return XCode(55, "looked everywhere");
        return TestRepository::getDriver("fxs 1", driver);
    }
    std::string calls;
};

TEST(DriverInterfaceByName, GoesThroughTheRepositorysOwnGetDriver)
{
    TYEventLoop loop;
    const TYPtr<Overriding> repository(new Overriding(loop));
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    String error;
    repository.get()->addDriver(error, driver.get());
    void* face = nullptr;
    EXPECT_EQ(0, repository.get()->getDriverInterface("alias", IDriver::IID(), &face).code());
    EXPECT_EQ("getDriver alias", repository.get()->calls);
    EXPECT_EQ(3, driver.get()->references());
    static_cast<IDriver*>(face)->release();
    const XCode rc = repository.get()->getDriverInterface("nowhere", IDriver::IID(), &face);
    EXPECT_EQ(55, rc.code());
    EXPECT_EQ("looked everywhere", rc.message());
    EXPECT_EQ(2, driver.get()->references());
    repository.get()->removeDriver(driver.get());
}

TEST(DriverInterfaceByName, MayReplaceTheLastOwnerOfItsArguments)
{
    // The caller's own place for the interface is all that is written.
    TYEventLoop loop;
    const TYPtr<TestRepository> repository(new TestRepository(loop));
    auto* const last = new TestDriver("fxs 1");
    String error;
    repository.get()->addDriver(error, last);
    last->release();
    void* face = last;
    EXPECT_EQ(
        0,
        repository.get()->getDriverInterface(last->getDriverName(), IDriver::IID(), &face).code());
    EXPECT_EQ(static_cast<IDriver*>(last), face);
    static_cast<IDriver*>(face)->release();
    repository.get()->removeDriver(last);
}

} // namespace
