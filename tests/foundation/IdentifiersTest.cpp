#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <drvrepo/IChannelGroup.h>
#include <drvrepo/IDriver.h>
#include <drvrepo/IDriverRepository.h>
#include <drvrepo/IKernelDriverRepository.h>
#include <drvrepo/Identifiers.h>

#include <support/TwoThreads.h>

namespace
{

struct Case
{
    TOVA_UUID const& (*identifier)();
    char const* name;
    std::uint32_t words[4];
    char const* text;
};

const Case CASES[] = {
    {&CID_Driver,
     "CID_Driver",
     {0x447902fa, 0x4001aa37, 0xe344eabe, 0x8ccc6b2a},
     "447902fa-4001-aa37-e344-eabe8ccc6b2a"},
    {&CID_DriverRepository,
     "CID_DriverRepository",
     {0x78a1b6fd, 0x46983a10, 0xdfa141a3, 0xbcfa6a66},
     "78a1b6fd-4698-3a10-dfa1-41a3bcfa6a66"},
    {&CID_DriverRepositoryObserverAddLocal,
     "CID_DriverRepositoryObserverAddLocal",
     {0x364dd1a5, 0x45e9b019, 0xbfe967ad, 0x6abaaf3d},
     "364dd1a5-45e9-b019-bfe9-67ad6abaaf3d"},
    {&CID_ChannelGroup,
     "CID_ChannelGroup",
     {0x8a6ef79a, 0x4347f5a7, 0xe49bc8a5, 0x2ef8e416},
     "8a6ef79a-4347-f5a7-e49b-c8a52ef8e416"},
    {&IChannelGroup::IID,
     "IChannelGroup",
     {0x283124a1, 0x45d783ee, 0xe988c485, 0xccfc8b79},
     "283124a1-45d7-83ee-e988-c485ccfc8b79"},
    {&DID_ChannelGroup,
     "DID_ChannelGroup",
     {0x21b20c67, 0x4e511d60, 0x8fc1e895, 0xec347e06},
     "21b20c67-4e51-1d60-8fc1-e895ec347e06"},
    {&IDriver::IID,
     "IDriver",
     {0xc4967433, 0x4594ef38, 0x50bd39af, 0x936b69c1},
     "c4967433-4594-ef38-50bd-39af936b69c1"},
    {&IDriver::CID_PROXY,
     "CDriverProxy",
     {0xcc1edb52, 0x4f1769e7, 0x8878c28f, 0x85e02c26},
     "cc1edb52-4f17-69e7-8878-c28f85e02c26"},
    {&IDriver::CID_STUB,
     "CDriverStub",
     {0x62d224a8, 0x42beb0ea, 0xa1ad4282, 0x4342fd08},
     "62d224a8-42be-b0ea-a1ad-42824342fd08"},
    {&IDriver::DID_UNKNOWN,
     "DID_UNKNOWN",
     {0x14bbd19f, 0x4ac56360, 0x5b5f1ca5, 0x18e3b90f},
     "14bbd19f-4ac5-6360-5b5f-1ca518e3b90f"},
    {&IDriverRepository::IID,
     "IDriverRepository",
     {0x0e2c76d6, 0x4feef5a5, 0xcf198c83, 0x8dbd5505},
     "0e2c76d6-4fee-f5a5-cf19-8c838dbd5505"},
    {&IKernelDriverRepository::IID,
     "IKernelDriverRepository",
     {0x5dd8bd9c, 0x4ba39d90, 0x133a8faa, 0xbd810146},
     "5dd8bd9c-4ba3-9d90-133a-8faabd810146"},
};

std::string textOf(std::uint32_t const (&w)[4])
{
    char text[40];
    std::snprintf(text, sizeof text, "%08x-%04x-%04x-%04x-%04x%08x", w[0], w[1] >> 16,
                  w[1] & 0xffff, w[2] >> 16, w[2] & 0xffff, w[3]);
    return text;
}

TEST(Identifiers, HaveTheirNamesAndWords)
{
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        TOVA_UUID_Data const& data = c.identifier().data();
        EXPECT_STREQ(c.name, data.name);
        for (unsigned i = 0; i < 4; ++i)
            EXPECT_EQ(c.words[i], data.words[i]);
        EXPECT_EQ(c.text, textOf(data.words));
    }
}

TEST(Identifiers, AreSixteenLittleEndianBytes)
{
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        unsigned char bytes[16];
        for (unsigned i = 0; i < 16; ++i)
            bytes[i] = static_cast<unsigned char>(c.words[i / 4] >> (8 * (i % 4)));
        EXPECT_EQ(0, std::memcmp(bytes, &c.identifier().data(), sizeof bytes));
    }
}

TEST(Identifiers, AreTheSameObjectAtEveryCall)
{
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        TOVA_UUID const* const here = &c.identifier();
        EXPECT_EQ(here, &c.identifier());
        TOVA_UUID const* there = nullptr;
        std::thread([&] { there = &c.identifier(); }).join();
        EXPECT_EQ(here, there);
    }
}

TEST(Identifiers, AreNeverCounted)
{
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        TOVA_UUID_Data const& data = c.identifier().data();
        EXPECT_EQ(-1, data.references);
        {
            const TOVA_UUID first(c.identifier());
            TOVA_UUID second(first);
            second = c.identifier();
            EXPECT_EQ(&data, &second.data());
            EXPECT_EQ(-1, data.references);
        }
        EXPECT_EQ(-1, data.references);
        EXPECT_STREQ(c.name, data.name);
    }
}

TEST(Identifiers, DifferFromOneAnother)
{
    for (Case const& a : CASES) {
        for (Case const& b : CASES) {
            SCOPED_TRACE(testing::Message() << a.name << " / " << b.name);
            EXPECT_EQ(&a == &b, a.identifier() == b.identifier());
            EXPECT_EQ(&a == &b, &a.identifier().data() == &b.identifier().data());
        }
        EXPECT_FALSE(a.identifier() == TOVA_UUID::INVALID());
        EXPECT_FALSE(a.identifier() == IID_Unknown());
    }
}

TEST(Identifiers, EqualOthersWithTheirBytes)
{
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.name);
        const TOVA_UUID twin =
            TOVA_UUID::create(c.words[0], c.words[1], c.words[2], c.words[3], "twin");
        EXPECT_TRUE(twin == c.identifier());
        EXPECT_TRUE(c.identifier() == twin);
    }
}

// Two threads that both make the first call of a function get one object.
TEST(Identifiers, MayBeAskedForOnSeveralThreads)
{
    TOVA_UUID const* found[2][std::size(CASES)] = {};
    onTwoThreads([&found](int number) {
        for (std::size_t i = 0; i < std::size(CASES); ++i) {
            const TOVA_UUID copy(CASES[i].identifier());
            found[number][i] = &CASES[i].identifier();
        }
    });
    for (std::size_t i = 0; i < std::size(CASES); ++i)
        EXPECT_EQ(found[0][i], found[1][i]);
    for (Case const& c : CASES)
        EXPECT_EQ(-1, c.identifier().data().references);
}

} // namespace
