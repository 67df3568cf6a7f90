#include <drvsh/ShellDriver.h>

#include <drvrepo/IChannelGroup.h>
#include <drvrepo/IDriverRepository.h>
#include <drvrepo/IKernelDriverRepository.h>
#include <utility/InfoContainer.h>
#include <utility/TYPtr.h>

#include <gtest/gtest.h>

#include <string>

namespace
{
class AShellDriver : public testing::Test
{
protected:
    std::string rows(unsigned maxDepth, unsigned maxDetail)
    {
        InfoContainer info;
        driver_->getInfo(info, maxDepth, 4, maxDetail, 2, "my ");
        std::string text;
        for (InfoContainer::Row const& row : info.rows())
            text += std::to_string(row.depth) + "/" + std::to_string(row.detail) + " " +
                    row.key.cString() + "=" + row.value.cString() + "\n";
        return text;
    }

    ShellDriver* const driver_ = new ShellDriver(
        IDriver::DID_UNKNOWN(), "a",
        {IKernelDriverRepository::IID(), IInfo::IID(), IDriver::IID(), IID_Unknown()});
    TYPtr<IDriver> const held_{driver_};
};

TEST_F(AShellDriver, AnswersWhatItWasGiven)
{
    for (TOVA_UUID const& iid :
         {IID_Unknown(), IDriver::IID(), IKernelDriverRepository::IID(), IInfo::IID()}) {
        void* face = nullptr;
        EXPECT_EQ(0, driver_->queryInterface(iid, &face).code()) << iid.name();
        EXPECT_EQ(2, driver_->references());
        void* const own = iid == IInfo::IID() ? static_cast<void*>(static_cast<IInfo*>(driver_))
                                              : static_cast<void*>(static_cast<IDriver*>(driver_));
        EXPECT_EQ(own, face) << iid.name();
        static_cast<IUnknown*>(face)->release();
        EXPECT_EQ(1, driver_->references());
        EXPECT_EQ(0, driver_->queryInterface(iid, nullptr).code());
        EXPECT_EQ(1, driver_->references());
    }
}

TEST_F(AShellDriver, AnswersNothingElse)
{
    void* face = this;
    EXPECT_EQ(-1, driver_->queryInterface(IDriverRepository::IID(), &face).code());
    EXPECT_EQ(nullptr, face);
    EXPECT_EQ(1, driver_->references());
    ShellDriver* const plain = new ShellDriver(IDriver::DID_UNKNOWN(), "b", {});
    TYPtr<IDriver> const held(plain);
    EXPECT_EQ(-1, plain->queryInterface(IInfo::IID(), nullptr).code());
    EXPECT_FALSE(ShellDriver::canAnswer(IChannelGroup::IID()));
    EXPECT_FALSE(ShellDriver::canAnswer(IDriverRepository::IID()));
    EXPECT_TRUE(ShellDriver::canAnswer(IInfo::IID()));
}

TEST_F(AShellDriver, ListsItsInterfacesWithinTheLimits)
{
    EXPECT_EQ("", rows(3, 9));
    EXPECT_EQ("", rows(9, 1));
    EXPECT_EQ("4/2 my Interfaces=\n", rows(4, 2));
    std::string const all = rows(5, 2);
    EXPECT_EQ(0u, all.find("4/2 my Interfaces=\n"
                           "5/2 IKernelDriverRepository=5dd8bd9c-4ba3-9d90-133a-8faabd810146\n"
                           "5/2 IInfo="))
        << all;
}
} // namespace
