#include <drvrepo/Explain.h>
#include <drvrepo/ListenerTerms.h>

#include <support/RepositoryFixture.h>

namespace
{

using ListenerTermsTest = RepositoryFixture;

TEST_F(ListenerTermsTest, AtFirstEveryDriverWithoutRights)
{
    const ListenerTerms terms;
    EXPECT_EQ(TOVA_UUID::INVALID(), terms.did());
    EXPECT_EQ(TOVA_UUID::INVALID(), terms.iid());
    EXPECT_EQ("", terms.prefix());
    EXPECT_TRUE(terms.attributes().isEmpty());
    EXPECT_EQ(0u, terms.priority());
    EXPECT_FALSE(terms.hasRightOfVeto());
    EXPECT_FALSE(terms.wantsSnapshot());
}

TEST_F(ListenerTermsTest, EachTermReachesTheRegistration)
{
    add("fxs 1");
    const ListenerTerms terms = ListenerTerms()
                                    .did(IDriver::DID_UNKNOWN())
                                    .iid(IDriver::IID())
                                    .prefix("fxs")
                                    .attribute("room", "1")
                                    .attribute("floor", "2")
                                    .attribute("room", "12")
                                    .priority(7)
                                    .veto()
                                    .snapshot();
    EXPECT_EQ(0, terms.listen(error_, repository(), "a", &observer("a")).code());
    Explanation as;
    ASSERT_EQ(0, explain(error_, repository(), "fxs 1", "a", as).code());
    ASSERT_EQ(5u, as.criteria.count());
    auto criterion = as.criteria.begin();
    EXPECT_EQ(IDriver::DID_UNKNOWN(), criterion->wantedId);
    EXPECT_EQ(IDriver::IID(), (++criterion)->wantedId);
    EXPECT_EQ("fxs", (++criterion)->wanted);
    EXPECT_EQ("room", (++criterion)->key);
    EXPECT_EQ("12", criterion->wanted) << "the later one counts, in the place of the first";
    EXPECT_EQ("2", (++criterion)->wanted);
    EXPECT_EQ(7u, as.priority);
    EXPECT_TRUE(as.rightOfVeto);
    EXPECT_TRUE(as.wantsSnapshot);
}

TEST_F(ListenerTermsTest, RightsCanBeTakenBack)
{
    const ListenerTerms terms = ListenerTerms().veto().snapshot().veto(false).snapshot(false);
    EXPECT_FALSE(terms.hasRightOfVeto());
    EXPECT_FALSE(terms.wantsSnapshot());
}

TEST_F(ListenerTermsTest, FailsAsTheRegistrationDoes)
{
    listen("a", 1);
    EXPECT_EQ(-1, ListenerTerms().listen(error_, repository(), "a", &observer("b")).code());
    EXPECT_EQ("Driver repository observer 'a' already exists", error());
}

TEST_F(ListenerTermsTest, ADelegateWillDo)
{
    const TYPtr<TestDelegate> delegate(new TestDelegate(&observer("a")));
    EXPECT_EQ(0, ListenerTerms().listen(error_, repository(), "a", delegate.get()).code());
    EXPECT_EQ(2, delegate.get()->references());
    add("fxs 1");
    EXPECT_EQ("a: added fxs 1\n", heard());
    unlisten("a");
    EXPECT_EQ(1, delegate.get()->references());
}

} // namespace
