#include <memory>
#include <typeinfo>

#include <support/RecordFixture.h>

namespace
{

using EvDriver = IDriverRepository::EvDriver;
using EvAttachment = IDriverRepository::EvAttachment;
using Event = ObserverEvent<IDriverRepository>;

/// Looks at the events and the references while it is being told.
class Witness : public IDriverRepositoryObserver
{
public:
    XCode onDriverAdded(String&, Event& event) override
    {
        look("added", event);
        return XCode();
    }
    void onDriverRemoved(Event& event) override { look("removed", event); }
    XCode onDriverAttachmentSet(String&, Event& event) override
    {
        look("set", event);
        lookAtAttachment(event);
        return XCode();
    }
    void onDriverAttachmentCleared(Event& event) override
    {
        look("cleared", event);
        lookAtAttachment(event);
    }

    std::string seen;
    TestRepository* repository = nullptr;
    TestDriver* driver = nullptr;
    std::unique_ptr<Event> kept;

private:
    void look(char const* what, Event& event)
    {
        auto& change = static_cast<EvDriver&>(event);
        EXPECT_EQ(repository, event.source.get());
        EXPECT_EQ(driver, change.driver.get());
        EXPECT_EQ(0u, event.data.buffer().size()) << "values travel in named fields";
        seen += std::string(what) + " " + std::to_string(repository->references()) + "/" +
                std::to_string(driver->references());
        kept.reset(event.clone());
        Event const& clone = *kept;
        EXPECT_TRUE(typeid(clone) == typeid(event));
        seen += " " + std::to_string(repository->references()) + "/" +
                std::to_string(driver->references()) + "\n";
    }
    void lookAtAttachment(Event& event)
    {
        auto const& change = static_cast<EvAttachment&>(event);
        EXPECT_EQ("slot", change.key);
        EXPECT_EQ("1", change.value);
    }
};

TEST(DriverEvents, HoldAReferenceOnRepositoryAndDriverForTheCall)
{
    TYEventLoop loop;
    const TYPtr<TestRepository> repository(new TestRepository(loop));
    const TYPtr<TestDriver> driver(new TestDriver("fxs 1"));
    Witness witness;
    witness.repository = repository.get();
    witness.driver = driver.get();
    const TYPtr<TestDelegate> delegate(new TestDelegate(&witness));
    {
        CDriverRepository::DriverWrapper record(repository.get(), driver.get());
        CDriverRepository::Listener l("a", TOVA_UUID::INVALID(), TOVA_UUID::INVALID(), "", {}, 1,
                                      true, true, delegate.get());
        String error;
        record.notifyOnDriverAdded(error, &l);
        EXPECT_EQ("added 2/3 3/4\n", std::exchange(witness.seen, ""));
        EXPECT_EQ(2, repository.get()->references()) << "the kept clone's";
        EXPECT_EQ(3, driver.get()->references());
        witness.kept.reset();
        record.notifyOnDriverAttachmentSet(error, &l, "slot", "1");
        EXPECT_EQ("set 2/3 3/4\n", std::exchange(witness.seen, ""));
        witness.kept.reset();
        record.notifyOnDriverAttachmentCleared(&l, "slot", "1");
        EXPECT_EQ("cleared 2/3 3/4\n", std::exchange(witness.seen, ""));
        witness.kept.reset();
        record.notifyOnDriverRemoved(&l);
        EXPECT_EQ("removed 2/3 3/4\n", std::exchange(witness.seen, ""));
        EXPECT_EQ(2, delegate.get()->references());
    }
    // A clone outlives the call, the record and the listener.
    EXPECT_EQ(2, driver.get()->references());
    EXPECT_EQ("fxs 1", static_cast<EvDriver&>(*witness.kept).driver.get()->getDriverName());
    witness.kept.reset();
    EXPECT_EQ(1, driver.get()->references());
    EXPECT_EQ(1, repository.get()->references());
    EXPECT_EQ(1, delegate.get()->references());
}

class DriverEvent : public ::testing::Test
{
protected:
    DriverEvent() : repository_(new TestRepository(loop_)), driver_(new TestDriver("fxs 1")) {}
    ~DriverEvent() override { EXPECT_EQ("1/1", references()); }

    std::string references() const
    {
        return std::to_string(repository_.get()->references()) + "/" +
               std::to_string(driver_.get()->references());
    }

    TYEventLoop loop_;
    TYPtr<TestRepository> repository_;
    TYPtr<TestDriver> driver_;
};

TEST_F(DriverEvent, CloneIsAnEventOfItsOwn)
{
    auto event = std::make_unique<EvDriver>(repository_.get(), driver_.get());
    EXPECT_EQ("2/2", references());
    const std::uint32_t word = 7;
    event->data.copyOnWrite().addTail(&word, sizeof word);
    const std::unique_ptr<EvDriver> clone(event->clone());
    EXPECT_EQ("3/3", references());
    event.reset();
    EXPECT_EQ("2/2", references());
    EXPECT_EQ(repository_.get(), clone->source.get());
    EXPECT_EQ(driver_.get(), clone->driver.get());
    EXPECT_EQ(7u, clone->data.word(0));
}

TEST_F(DriverEvent, AttachmentCloneCopiesEveryField)
{
    auto event = std::make_unique<EvAttachment>(repository_.get(), driver_.get(), "slot", "1");
    EXPECT_EQ("2/2", references());
    Event const& base = *event;
    const std::unique_ptr<Event> clone(base.clone());
    EXPECT_EQ("3/3", references());
    event->key = "changed";
    event.reset();
    Event const& cloned = *clone;
    ASSERT_TRUE(typeid(cloned) == typeid(EvAttachment));
    auto const* const copy = static_cast<EvAttachment const*>(clone.get());
    EXPECT_EQ(repository_.get(), copy->source.get());
    EXPECT_EQ(driver_.get(), copy->driver.get());
    EXPECT_EQ("slot", copy->key);
    EXPECT_EQ("1", copy->value);
}

TEST_F(DriverEvent, MayBeWithoutRepositoryAndDriver)
{
    const EvAttachment event(nullptr, nullptr, "k", "v");
    const std::unique_ptr<EvAttachment> clone(event.clone());
    EXPECT_FALSE(clone->source);
    EXPECT_FALSE(clone->driver);
    EXPECT_EQ("v", clone->value);
}

} // namespace
