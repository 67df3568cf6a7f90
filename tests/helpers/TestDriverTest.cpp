#include <gtest/gtest.h>

#include <utility/TYPtr.h>

#include <drvrepo/testkit/TestDriver.h>

#include <support/CountedObject.h>

namespace
{

TOVA_UUID const& alarm()
{
    static const TOVA_UUID id = TOVA_UUID::create(5, 6, 7, 8, "alarm");
    return id;
}

TEST(TestDriverTest, OffersInterfacesOfChoice)
{
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    void* out = &out;
    EXPECT_EQ(-1, (*driver).queryInterface(alarm(), &out).code());
    EXPECT_EQ(nullptr, out);
    (*driver).offer(alarm());
    EXPECT_EQ(0, (*driver).queryInterface(alarm(), nullptr).code());
    EXPECT_EQ(1, (*driver).references());
    EXPECT_EQ(0, (*driver).queryInterface(alarm(), &out).code());
    EXPECT_EQ(static_cast<IUnknown*>(driver.get()), out);
    EXPECT_EQ(2, (*driver).references());
    (*driver).release();
    (*driver).withdraw(alarm());
    EXPECT_EQ(-1, (*driver).queryInterface(alarm(), nullptr).code());
    EXPECT_EQ(0, (*driver).queryInterface(IDriver::IID(), nullptr).code());
    EXPECT_EQ(5u, (*driver).calls().queryInterface);
}

TEST(TestDriverTest, OffersAnotherObject)
{
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    CountedObject face;
    (*driver).offer(alarm());
    (*driver).offer(alarm(), &face);
    EXPECT_EQ(0, (*driver).queryInterface(alarm(), nullptr).code());
    EXPECT_EQ(1, face.references());
    void* out = nullptr;
    EXPECT_EQ(0, (*driver).queryInterface(alarm(), &out).code());
    EXPECT_EQ(static_cast<IUnknown*>(&face), out);
    EXPECT_EQ(2, face.references());
    EXPECT_EQ(1, (*driver).references());
}

} // namespace
