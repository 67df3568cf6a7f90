#include <drvrepo/ScopedListener.h>

#include <support/RepositoryFixture.h>

namespace
{

class ObserverFunctionsTest : public RepositoryFixture
{
protected:
    using EvDriver = IDriverRepository::EvDriver;
    using EvAttachment = IDriverRepository::EvAttachment;

    ScopedListener listenWith(ObserverFunctions& functions)
    {
        ScopedListener scope;
        IDriverRepositoryObserver& observer = functions;
        EXPECT_EQ(0,
                  scope.start(error_, repository(), "f", ListenerTerms().veto(), observer).code());
        return scope;
    }
    void say(char const* what, EvDriver const& event, std::string const& more = "")
    {
        log_.add("f", what + std::string(" ") + event.driver->getDriverName().cString() + more);
    }
    static std::string pairOf(EvAttachment const& event)
    {
        return std::string(" ") + event.key.cString() + "=" + event.value.cString();
    }
};

TEST_F(ObserverFunctionsTest, EachHearsItsOwnEvent)
{
    ObserverFunctions functions;
    functions.added([this](EvDriver const& event) { say("added", event); })
        .removed([this](EvDriver const& event) { say("removed", event); })
        .set([this](EvAttachment const& event) { say("set", event, pairOf(event)); })
        .cleared([this](EvAttachment const& event) { say("cleared", event, pairOf(event)); });
    const ScopedListener scope = listenWith(functions);
    add("fxs 1");
    attach("fxs 1", "k", "1");
    attach("fxs 1", "k", "");
    remove("fxs 1");
    EXPECT_EQ("f: added fxs 1\nf: set fxs 1 k=1\nf: cleared fxs 1 k=1\nf: removed fxs 1\n",
              heard());
}

TEST_F(ObserverFunctionsTest, AnswersMayRefuse)
{
    ObserverFunctions functions;
    functions
        .added([](String& error, EvDriver const& event) {
            if (event.driver->getDriverName() == "fxs 1")
                return XCode();
            error = "one is enough";
            return XCode(-3);
        })
        .set([](String& error, EvAttachment const& event) {
            error = event.key;
            return event.value == "1" ? 0 : -4; // a code will do
        });
    const ScopedListener scope = listenWith(functions);
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ(-3, add("fxs 2").code());
    EXPECT_EQ("one is enough", error());
    EXPECT_EQ(0, attach("fxs 1", "k", "1").code());
    EXPECT_EQ(-4, attach("fxs 1", "l", "2").code());
    EXPECT_EQ("l", error());
}

TEST_F(ObserverFunctionsTest, WithoutFunctionsItAccepts)
{
    ObserverFunctions functions;
    const ScopedListener scope = listenWith(functions);
    EXPECT_EQ(0, add("fxs 1").code());
    EXPECT_EQ(0, attach("fxs 1", "k", "1").code());
    EXPECT_EQ(0, attach("fxs 1", "k", "").code());
    remove("fxs 1");
    EXPECT_EQ("", drivers());
}

TEST_F(ObserverFunctionsTest, FunctionsMayKeepAState)
{
    ObserverFunctions functions;
    int told = 0;
    functions.added([&told, count = 0](EvDriver const&) mutable { told = ++count; });
    const ScopedListener scope = listenWith(functions);
    add("fxs 1");
    add("fxs 2");
    EXPECT_EQ(2, told);
}

} // namespace
