#include <support/RecordFixture.h>

namespace
{

using RecordNesting = RecordFixture;

TEST_F(RecordNesting, ListenerTakenOutOnceFromInsideItsSnapshotHearsNoMoreOfIt)
{
    attach("m", "1");
    attach("n", "2");
    Listener* const l = make("a", 1, Terms().snapshot());
    observer("a").then = [&](std::string const& what) {
        if (what == "set e1t1 1 m=1") {
            EXPECT_EQ(0, record().removeListenerOnce(l));
        }
    };
    EXPECT_EQ(0, record().addListener(error_, l).code());
    EXPECT_EQ("a: added e1t1 1\na: set e1t1 1 m=1\n", heard());
    EXPECT_EQ("", active());
}

} // namespace
