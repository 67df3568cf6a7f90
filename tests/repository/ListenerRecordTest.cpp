#include <drvrepo/Listener.h>

#include <support/RepositoryFixture.h>

namespace
{

using Listener = CDriverRepository::Listener;
using Wrapper = CDriverRepository::ListenerWrapper;

TEST(ListenerWrapper, StartsWithNobodyRecordedOnce)
{
    const Wrapper none;
    EXPECT_EQ(nullptr, none.listener());
    EXPECT_FALSE(none.isActive());
    EXPECT_EQ(1, none.getRefCount());
    EXPECT_TRUE(none.isValid());
}

TEST(ListenerWrapper, RefersToAListener)
{
    Listener listener("a", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "", {}, 7, false, false,
                      nullptr);
    Wrapper active(&listener, true);
    EXPECT_EQ(&listener, active.listener());
    EXPECT_EQ("a", active->name());
    EXPECT_TRUE(active.isActive());
    EXPECT_EQ(1, active.getRefCount());
    EXPECT_FALSE(Wrapper(&listener, false).isActive());
    active.deactivate();
    EXPECT_FALSE(active.isActive());
    active.activate();
    EXPECT_TRUE(active.isActive());
}

TEST(ListenerWrapper, CountsUpAndDown)
{
    Wrapper wrapper(nullptr, true);
    EXPECT_EQ(2, wrapper.incRef());
    EXPECT_EQ(5, wrapper.incRef(3));
    EXPECT_EQ(4, wrapper.decRef());
    EXPECT_EQ(1, wrapper.decRef(3));
    EXPECT_EQ(1, wrapper.getRefCount());
    EXPECT_TRUE(wrapper.isActive());
}

TEST(ListenerWrapper, LastDecRefDeactivates)
{
    Wrapper wrapper(nullptr, true);
    EXPECT_EQ(0, wrapper.decRef());
    EXPECT_FALSE(wrapper.isActive());
    EXPECT_FALSE(wrapper.isValid());
    EXPECT_EQ(1, wrapper.incRef());
    EXPECT_TRUE(wrapper.isValid());
    EXPECT_FALSE(wrapper.isActive()) << "only activate() makes it active again";
}

TEST(ListenerWrapper, DecRefToExactlyZeroInOneStepDeactivates)
{
    Wrapper wrapper(nullptr, true);
    wrapper.incRef(2);
    EXPECT_EQ(0, wrapper.decRef(3));
    EXPECT_FALSE(wrapper.isActive());
}

// Only a count of exactly 0 deactivates: one that falls past it leaves the flag alone, on purpose.
TEST(ListenerWrapper, DecRefOfTwoOnOneGoesBelowZeroAndStaysActive)
{
    Wrapper active(nullptr, true);
    EXPECT_EQ(-1, active.decRef(2));
    EXPECT_TRUE(active.isActive());
    EXPECT_FALSE(active.isValid());
    EXPECT_EQ(0, active.incRef());
    EXPECT_TRUE(active.isActive()) << "counting up never deactivates";
    Wrapper inactive(nullptr, false);
    EXPECT_EQ(-1, inactive.decRef(2));
    EXPECT_FALSE(inactive.isActive());
    EXPECT_EQ(-2, inactive.decRef());
}

TEST(ListenerWrapper, CopiesAllThree)
{
    Listener listener;
    Wrapper original(&listener, true);
    original.incRef(4);
    const Wrapper copy(original);
    EXPECT_EQ(&listener, copy.listener());
    EXPECT_TRUE(copy.isActive());
    EXPECT_EQ(5, copy.getRefCount());
    Wrapper assigned;
    assigned = original;
    EXPECT_EQ(&listener, assigned.listener());
    EXPECT_TRUE(assigned.isActive());
    EXPECT_EQ(5, assigned.getRefCount());
    original.decRef(5);
    EXPECT_EQ(5, copy.getRefCount()) << "a copy is its own entry";
}

TEST(Listener, StartsEmpty)
{
    const Listener none;
    EXPECT_EQ("", none.name());
    EXPECT_EQ(TOVA_UUID::INVALID(), none.did());
    EXPECT_EQ(TOVA_UUID::INVALID(), none.iid());
    EXPECT_EQ("", none.prefix());
    EXPECT_TRUE(none.attributes().isEmpty());
    EXPECT_EQ(0u, none.priority());
    EXPECT_FALSE(none.hasRightOfVeto());
    EXPECT_FALSE(none.wantsSnapshot());
    EXPECT_EQ(nullptr, none.delegate());
}

class ListenerRecord : public ::testing::Test
{
protected:
    ListenerRecord() : delegate_(new TestDelegate(nullptr))
    {
        attributes_.put("slot", "1");
        attributes_.put("frame", "");
    }

    Listener make() const
    {
        return Listener("a", did_, IDriver::IID(), "e1", attributes_, 4294967295u, true, false,
                        delegate_.get());
    }
    int references() const { return delegate_.get()->references(); }

    static void expectCopy(Listener const& copy)
    {
        EXPECT_EQ("a", copy.name());
        EXPECT_EQ(7u, copy.did().data().words[0]);
        EXPECT_EQ(IDriver::IID(), copy.iid());
        EXPECT_EQ("e1", copy.prefix());
        EXPECT_EQ(4294967295u, copy.priority());
        EXPECT_TRUE(copy.hasRightOfVeto());
        EXPECT_FALSE(copy.wantsSnapshot());
        EXPECT_TRUE(copy.wantsType());
        EXPECT_TRUE(copy.wantsInterface());
        std::string attributes;
        for (auto const& attribute : copy.attributes())
            attributes +=
                std::string(attribute.key.cString()) + "=" + attribute.value.cString() + " ";
        EXPECT_EQ("slot=1 frame= ", attributes);
        for (unsigned int kind = 0; kind < 4; ++kind)
            EXPECT_EQ(kind + 1, copy.count(static_cast<Listener::Notification>(kind)));
    }
    /// A listener that was told once of a driver's coming, twice of a going, and so on.
    Listener makeCounted() const
    {
        Listener listener = make();
        for (unsigned int kind = 0; kind < 4; ++kind)
            for (unsigned int times = 0; times <= kind; ++times)
                listener.addCount(static_cast<Listener::Notification>(kind));
        return listener;
    }

    const TOVA_UUID did_ = TOVA_UUID::create(7, 0, 0, 0, "seven");
    TYPtr<TestDelegate> delegate_;
    CDriverRepository::Attributes attributes_;
};

TEST_F(ListenerRecord, TakesItsOwnReferencesAndAnOwnTable)
{
    const std::int32_t before = did_.data().references;
    {
        const Listener listener = make();
        EXPECT_EQ(2, references());
        EXPECT_EQ(before + 1, did_.data().references);
        attributes_.put("later", "x");
        EXPECT_EQ(2u, listener.attributes().count());
        EXPECT_EQ(delegate_.get(), listener.delegate());
    }
    EXPECT_EQ(1, references());
    EXPECT_EQ(before, did_.data().references);
}

TEST_F(ListenerRecord, CountersStartAtZero)
{
    Listener listener = make();
    for (auto kind : {Listener::DRIVER_ADDED, Listener::DRIVER_REMOVED, Listener::ATTACHMENT_SET,
                      Listener::ATTACHMENT_CLEARED})
        EXPECT_EQ(0u, listener.count(kind));
    listener.addCount(Listener::ATTACHMENT_SET);
    EXPECT_EQ(0u, listener.count(Listener::DRIVER_ADDED));
    EXPECT_EQ(0u, listener.count(Listener::DRIVER_REMOVED));
    EXPECT_EQ(1u, listener.count(Listener::ATTACHMENT_SET));
    EXPECT_EQ(0u, listener.count(Listener::ATTACHMENT_CLEARED));
}

TEST_F(ListenerRecord, CopyHoldsItsOwnReference)
{
    const Listener listener = makeCounted();
    {
        const Listener copy(listener);
        expectCopy(copy);
        EXPECT_EQ(3, references());
    }
    EXPECT_EQ(2, references());
    EXPECT_EQ(delegate_.get(), listener.delegate());
}

TEST_F(ListenerRecord, CopyOutlivesTheOriginal)
{
    auto original = std::make_unique<Listener>(makeCounted());
    const Listener copy(*original);
    original.reset();
    expectCopy(copy);
    EXPECT_EQ(2, references());
}

TEST_F(ListenerRecord, AssignmentReplacesEverything)
{
    const TYPtr<TestDelegate> other(new TestDelegate(nullptr));
    CDriverRepository::Attributes attributes;
    attributes.put("slot", "2");
    attributes.put("port", "3");
    Listener assigned("b", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "fxs", attributes, 0, false,
                      true, other.get());
    assigned.addCount(Listener::DRIVER_ADDED);
    assigned = makeCounted();
    expectCopy(assigned);
    EXPECT_EQ(1, other.get()->references());
    EXPECT_EQ(2, references());
    assigned = Listener();
    EXPECT_EQ(1, references());
    EXPECT_EQ(nullptr, assigned.delegate());
    EXPECT_EQ("", assigned.name());
    EXPECT_FALSE(assigned.wantsType());
    EXPECT_FALSE(assigned.wantsInterface());
}

TEST_F(ListenerRecord, AssignmentToItselfKeepsEverything)
{
    Listener listener = makeCounted();
    Listener const& same = listener;
    listener = same;
    expectCopy(listener);
    EXPECT_EQ(2, references());
}

} // namespace
