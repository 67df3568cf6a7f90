#include <gtest/gtest.h>

#include <utility/IInfo.h>
#include <utility/InfoContainer.h>

#include <support/CountedObject.h>

namespace
{

TEST(IUnknown, HasNoLockOfItsOwn)
{
    class Plain : public CountedObject
    {
        Lock* getLock() override { return IUnknown::getLock(); }
    };
    IUnknown* const object = new Plain;
    EXPECT_EQ(nullptr, object->getLock());
    object->release();
    EXPECT_EQ(0, CountedObject::living());
}

struct IdentifierCase
{
    TOVA_UUID const& (*identifier)();
    char const* name;
};

TEST(IUnknown, IdentifiersAreStaticAndNamed)
{
    for (IdentifierCase const& c :
         {IdentifierCase{&IID_Unknown, "IUnknown"}, IdentifierCase{&IInfo::IID, "IInfo"}}) {
        SCOPED_TRACE(c.name);
        TOVA_UUID const& id = c.identifier();
        EXPECT_EQ(&id, &c.identifier());
        EXPECT_STREQ(c.name, id.name());
        EXPECT_EQ(-1, id.data().references);
        {
            const TOVA_UUID copy(id);
            EXPECT_EQ(&id.data(), &copy.data());
            EXPECT_EQ(-1, id.data().references);
        }
        EXPECT_TRUE(id != TOVA_UUID::INVALID());
    }
    EXPECT_TRUE(IID_Unknown() != IInfo::IID());
}

/// The smallest object that describes itself.
class Described : public IInfo
{
public:
    XCode queryInterface(TOVA_UUID const&, void**) override { return XCode(-1); }
    void addRef() override {}
    void release() override {}
    InfoContainer& getInfo(InfoContainer& info, unsigned int, unsigned int depth, unsigned int,
                           unsigned int detail, String const& prefix) const override
    {
        info.add(depth, detail, prefix, "described");
        return info;
    }
};

TEST(IInfo, IsAnIUnknownThatDescribesItself)
{
    Described object;
    IInfo& info = object;
    IUnknown& unknown = info;
    EXPECT_EQ(nullptr, unknown.getLock());
    InfoContainer rows;
    EXPECT_EQ(&rows, &info.getInfo(rows, 9, 2, 9, 3, "prefix"));
    ASSERT_EQ(1u, rows.rows().size());
    EXPECT_STREQ("prefix", rows.rows()[0].key.cString());
}

} // namespace
