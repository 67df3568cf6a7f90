#include <support/GroupFixture.h>

namespace
{

using InformedObserver = GroupFixture;

// It comes behind the one that registers it, where the broadcast has yet to pass.
TEST_F(InformedObserver, IsNotToldAgainByTheAdditionInWhichItCame)
{
    observe("a", 1);
    observer("a").then = [&](std::string const&) {
        observer("a").then = nullptr;
        const bool notifyCurrent = true;
        observe("z", 9, notifyCurrent);
    };
    EXPECT_EQ("a: added 00000000->0000000f: 0000000f\nz: added 00000000->0000000f: 0000000f\n",
              set(0xf));
    EXPECT_EQ("a: added 0000000f->000000ff: 000000f0\nz: added 0000000f->000000ff: 000000f0\n",
              set(0xff));
}

} // namespace
