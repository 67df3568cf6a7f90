#include <gtest/gtest.h>

#include <drvrepo/IDriver.h>

namespace
{

using Port = IDriver::Port;

TEST(PortTypes, NamesAreTheConstants)
{
    EXPECT_STREQ("e1t1", Port::E1T1);
    EXPECT_STREQ("bri", Port::BRI);
    EXPECT_STREQ("fxs", Port::FXS);
    EXPECT_STREQ("fxo", Port::FXO);
    // These very pointers.
    EXPECT_EQ(Port::E1T1, Port::NAME(static_cast<Port::Type>(1)));
    EXPECT_EQ(Port::BRI, Port::NAME(static_cast<Port::Type>(2)));
    EXPECT_EQ(Port::FXS, Port::NAME(static_cast<Port::Type>(3)));
    EXPECT_EQ(Port::FXO, Port::NAME(static_cast<Port::Type>(4)));
}

TEST(PortTypes, OtherNumbersHaveNoName)
{
    EXPECT_STREQ("(unknown)", Port::NAME(static_cast<Port::Type>(0)));
    for (unsigned type : {5u, 6u, 255u, 256u + 1u, 0x80000001u, 4294967295u}) {
        SCOPED_TRACE(type);
        EXPECT_STREQ("(invalid)", Port::NAME(static_cast<Port::Type>(type)));
    }
}

TEST(PortTypes, TextsAreComparedExactly)
{
    struct Case
    {
        String text;
        unsigned type;
    };
    const Case CASES[] = {
        {"e1t1", 1},
        {"bri", 2},
        {"fxs", 3},
        {"fxo", 4},
        // Near misses.
        {"E1T1", 0},
        {"Bri", 0},
        {"FXS", 0},
        {"e1t", 0},
        {"e1t11", 0},
        {"e1t1 ", 0},
        {" e1t1", 0},
        {"e1t1 0", 0},
        {"e1t1/a", 0},
        {"fx", 0},
        {"fxso", 0},
        {"fxa", 0},
        {"", 0},
        {"(unknown)", 0},
        {"(invalid)", 0},
        {"0", 0},
        {"3", 0},
        {String("fxs\0", 0, 4), 0},
        {String("fxs\0x", 0, 5), 0},
    };
    for (Case const& c : CASES) {
        SCOPED_TRACE(c.text.cString());
        EXPECT_EQ(c.type, static_cast<unsigned>(Port::TYPE(c.text)));
    }
}

TEST(PortTypes, NamesLeadBackToTheirTypes)
{
    EXPECT_EQ(4u, sizeof(Port::Type));
    for (unsigned type = 0; type < 5; ++type)
        EXPECT_EQ(type,
                  static_cast<unsigned>(Port::TYPE(Port::NAME(static_cast<Port::Type>(type)))));
}

} // namespace
