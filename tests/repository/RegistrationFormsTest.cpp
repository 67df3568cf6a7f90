#include <support/RepositoryFixture.h>

namespace
{

using Attributes = IDriverRepository::Attributes;
using Delegate = ObserverDelegate<IDriverRepository>;

/// Writes down which of the four forms is called with what.
class Forms : public TestRepository
{
public:
    using TestRepository::TestRepository;

    XCode addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& did,
                                      TOVA_UUID const& iid, String const& pattern,
                                      unsigned priority, bool veto, bool snapshot,
                                      IDriverRepositoryObserver* observer) override
    {
        note("observer", nullptr, priority, veto, snapshot);
        return TestRepository::addDriverRepositoryObserver(error, name, did, iid, pattern, priority,
                                                           veto, snapshot, observer);
    }
    XCode addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& did,
                                      TOVA_UUID const& iid, String const& pattern,
                                      unsigned priority, bool veto, bool snapshot,
                                      Delegate* delegate) override
    {
        note("delegate", nullptr, priority, veto, snapshot);
        return TestRepository::addDriverRepositoryObserver(error, name, did, iid, pattern, priority,
                                                           veto, snapshot, delegate);
    }
    XCode addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& did,
                                      TOVA_UUID const& iid, String const& pattern,
                                      Attributes const& attributes, unsigned priority, bool veto,
                                      bool snapshot, IDriverRepositoryObserver* observer) override
    {
        note("observer", &attributes, priority, veto, snapshot);
        return TestRepository::addDriverRepositoryObserver(
            error, name, did, iid, pattern, attributes, priority, veto, snapshot, observer);
    }
    XCode addDriverRepositoryObserver(String& error, String const& name, TOVA_UUID const& did,
                                      TOVA_UUID const& iid, String const& pattern,
                                      Attributes const& attributes, unsigned priority, bool veto,
                                      bool snapshot, Delegate* delegate) override
    {
        note("delegate", &attributes, priority, veto, snapshot);
        last = delegate;
        return TestRepository::addDriverRepositoryObserver(
            error, name, did, iid, pattern, attributes, priority, veto, snapshot, delegate);
    }

    std::string calls;
    Delegate* last = nullptr;

private:
    void note(char const* what, Attributes const* attributes, unsigned priority, bool veto,
              bool snapshot)
    {
        calls += what;
        if (attributes != nullptr)
            calls += "+" + std::to_string(attributes->count());
        calls += " " + std::to_string(priority) + (veto ? " veto" : "") +
                 (snapshot ? " snapshot" : "") + "\n";
    }
};

class RegistrationForms : public ::testing::Test
{
protected:
    RegistrationForms()
        : repository_(new Forms(loop_)), observer_(log_, "a"),
          delegate_(new TestDelegate(&observer_)), driver_(new TestDriver("fxs 1"))
    {
        attributes_.put("slot", "1");
        repository().addDriver(error_, driver_.get());
        repository().setDriverAttachment(error_, driver_.get(), "slot", "12");
        repository().setDriverAttachment(error_, driver_.get(), "port", "3");
    }
    ~RegistrationForms() override
    {
        repository().removeDriver(driver_.get());
        EXPECT_EQ(1, delegate_.get()->references());
    }

    Forms& repository() const { return *repository_.get(); }
    /// What the observer hears of the listener's coming and going.
    std::string story()
    {
        repository().removeDriverRepositoryObserver("a");
        return log_.take();
    }

    TYEventLoop loop_;
    TYPtr<Forms> repository_;
    EventLog log_;
    RecordingObserver observer_;
    TYPtr<TestDelegate> delegate_;
    TYPtr<TestDriver> driver_;
    Attributes attributes_;
    String error_;
    const TOVA_UUID any_;
};

TEST_F(RegistrationForms, ObserverWithoutAttributes)
{
    EXPECT_EQ(0, repository()
                     .addDriverRepositoryObserver(error_, "a", any_, any_, "fxs", 7, true, false,
                                                  &observer_)
                     .code());
    EXPECT_EQ("observer 7 veto\nobserver+0 7 veto\ndelegate+0 7 veto\n", repository().calls);
    EXPECT_EQ(&observer_, repository().last->observer());
    EXPECT_EQ("a: added fxs 1\na: removed fxs 1\n", story());
}

TEST_F(RegistrationForms, DelegateWithoutAttributes)
{
    EXPECT_EQ(0, repository()
                     .addDriverRepositoryObserver(error_, "a", any_, any_, "fxs", 7, false, true,
                                                  delegate_.get())
                     .code());
    EXPECT_EQ("delegate 7 snapshot\ndelegate+0 7 snapshot\n", repository().calls);
    EXPECT_EQ(delegate_.get(), repository().last);
    EXPECT_EQ("a: added fxs 1\na: set fxs 1 slot=12\na: set fxs 1 port=3\n"
              "a: cleared fxs 1 port=3\na: cleared fxs 1 slot=12\na: removed fxs 1\n",
              story());
}

TEST_F(RegistrationForms, ObserverWithAttributes)
{
    EXPECT_EQ(0, repository()
                     .addDriverRepositoryObserver(error_, "a", any_, any_, "fxs", attributes_, 7,
                                                  true, true, &observer_)
                     .code());
    EXPECT_EQ("observer+1 7 veto snapshot\ndelegate+1 7 veto snapshot\n", repository().calls);
    EXPECT_EQ(&observer_, repository().last->observer());
    EXPECT_EQ("a: added fxs 1\na: set fxs 1 port=3\na: cleared fxs 1 port=3\na: removed fxs 1\n",
              story());
}

TEST_F(RegistrationForms, DelegateWithAttributes)
{
    attributes_.put("slot", "2");
    EXPECT_EQ(0, repository()
                     .addDriverRepositoryObserver(error_, "a", any_, any_, "fxs", attributes_, 7,
                                                  true, true, delegate_.get())
                     .code());
    EXPECT_EQ("delegate+1 7 veto snapshot\n", repository().calls);
    EXPECT_EQ(2, delegate_.get()->references());
    EXPECT_EQ("", story());
}

TEST_F(RegistrationForms, TableIsCopied)
{
    repository().addDriverRepositoryObserver(error_, "a", any_, any_, "", attributes_, 1, false,
                                             false, &observer_);
    attributes_.put("slot", "no longer");
    attributes_.put("more", "x");
    log_.take();
    repository().setDriverAttachment(error_, driver_.get(), "port", "4");
    EXPECT_EQ("a: cleared fxs 1 port=3\na: set fxs 1 port=4\n", log_.take());
    EXPECT_EQ("a: removed fxs 1\n", story());
}

TEST_F(RegistrationForms, ErrorMayBeTheNameThatIsTaken)
{
    String name("a");
    EXPECT_EQ(
        0, repository()
               .addDriverRepositoryObserver(name, name, any_, any_, "", 1, true, false, &observer_)
               .code());
    EXPECT_EQ("", name);
    name = "a";
    EXPECT_EQ(
        -1, repository()
                .addDriverRepositoryObserver(name, name, any_, any_, "", 1, true, false, &observer_)
                .code());
    EXPECT_EQ("Driver repository observer 'a' already exists", name);
    EXPECT_EQ("a: added fxs 1\na: removed fxs 1\n", story());
}

TEST_F(RegistrationForms, ErrorMayBeTheNameOrThePatternOfWhoRefuses)
{
    RecordingMonitor monitor;
    observer_.refuse("added", "busy");
    String text("a");
    EXPECT_EQ(
        -1, repository()
                .addDriverRepositoryObserver(text, text, any_, any_, "", 1, true, false, &observer_)
                .code());
    EXPECT_EQ("busy", text);
    EXPECT_NE(std::string::npos, monitor.take().find("<3> DrvRepo: ADDING LISTENER 'a' FAILED: "
                                                     "busy\n"));
    text = "fxs";
    observer_.accept();
    observer_.remark("added", "bri");
    EXPECT_EQ(
        0, repository()
               .addDriverRepositoryObserver(text, "a", any_, any_, text, 1, true, false, &observer_)
               .code());
    EXPECT_EQ("", text);
    log_.take();
    repository().setDriverAttachment(error_, driver_.get(), "port", "");
    EXPECT_EQ("a: cleared fxs 1 port=3\n", log_.take());
    EXPECT_EQ("a: removed fxs 1\n", story());
}

TEST_F(RegistrationForms, ErrorMayStandInTheTableOfAttributes)
{
    // The table's own value takes the refusal's text: the listener's copy has the old one.
    String& value = attributes_.find("slot")->value;
    observer_.remark("added", "not a slot");
    EXPECT_EQ(0, repository()
                     .addDriverRepositoryObserver(value, "a", any_, any_, "", attributes_, 1, true,
                                                  true, &observer_)
                     .code());
    EXPECT_EQ("", attributes_.find("slot")->value);
    EXPECT_EQ("a: added fxs 1\na: set fxs 1 port=3\na: cleared fxs 1 port=3\na: removed fxs 1\n",
              story());
}

} // namespace
