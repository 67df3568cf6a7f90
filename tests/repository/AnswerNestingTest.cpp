#include <functional>
#include <utility>

#include <support/ScriptScene.h>

namespace
{

// A refusal counts only while what it answers stands; and what an interrupted change still tells.

struct AnswerNesting : ::testing::Test, Scene
{
    AnswerNesting()
    {
        const Terms veto = Terms().veto();
        listen("A", 10, veto);
        listen("B", 20, veto);
        listen("C", 30, veto);
        told();
    }
    void present(char const* attachment = nullptr)
    {
        add("d");
        if (attachment != nullptr)
            attach(attachment);
        told();
    }
};

TEST_F(AnswerNesting, OfWhoRemovedItselfIsIgnored)
{
    observer("B").refuse("d", "no");
    story().on("B!d", [&] { unlisten("B"); });
    add("d");
    EXPECT_EQ("[add d: A+d B!d[unlisten B: B-d] C+d ok]", told());
    EXPECT_EQ("", monitor().takeFailures());
}

TEST_F(AnswerNesting, ToADriverThatLeftIsIgnored)
{
    observer("B").refuse("d", "no");
    story().on("B!d", [&] { remove("d"); });
    add("d");
    EXPECT_EQ("[add d: A+d B!d[remove d: B-d A-d] -1<Driver 'd' does not exist>]", told());
}

TEST_F(AnswerNesting, ToAComingThatWasWithdrawnIsIgnored)
{
    observer("B").refuse("d", "no");
    story().on("B!d", [&] {
        remove("d");
        add("d");
    });
    add("d");
    EXPECT_EQ("[add d: A+d B!d[remove d: B-d A-d][add d: A+d B+d C+d ok] ok]", told());
}

TEST_F(AnswerNesting, ToAValueThatWasReplacedIsIgnored)
{
    present();
    observer("B").refuse("k=1", "no");
    story().on("B!k=1", [&] { attach("k=2"); });
    attach("k=1");
    EXPECT_EQ("[k=1: A+k=1 B!k=1[k=2: B-k=1 A-k=1 A+k=2 B+k=2 C+k=2 ok] ok]", told());
    EXPECT_EQ("d k=2(A B C); A B C", left());
}

TEST_F(AnswerNesting, NewcomerBehindTheRefuserHearsTheGoingToo)
{
    observer("B").refuse("d", "no");
    story().on("A+d", [&] { listen("L", 99); });
    add("d");
    EXPECT_EQ("[add d: A+d[listen L: L+d ok] B!d L-d A-d 7<no>]", told());
}

TEST_F(AnswerNesting, RefusedDriverThatCameBackIsIn)
{
    observer("B").refuse("d", "no");
    story().on("A-d", [&] { add("d"); });
    add("d");
    EXPECT_EQ("[add d: A+d B!d A-d[add d: A+d B+d C+d ok] ok]", told());
}

TEST_F(AnswerNesting, RegistrationReplacedByAnotherOfThatNameFailed)
{
    present();
    story().on("L+d", [&] {
        unlisten("L");
        listen("L", 50);
    });
    listen("L", 50);
    EXPECT_EQ("[listen L: L+d[unlisten L: L-d][listen L: L+d ok] "
              "-1<Driver repository observer 'L' does not exist>]",
              told());
    EXPECT_EQ("d(A B C L); A B C L", left());
}

TEST_F(AnswerNesting, ChangeInsideAClearPhaseEndsTheChange)
{
    present("k=1");
    story().on("B-k=1", [&] { attach("k=3"); });
    attach("k=2");
    EXPECT_EQ("[k=2: C-k=1 B-k=1[k=3: A-k=1 A+k=3 B+k=3 C+k=3 ok] ok]", told());
    EXPECT_EQ("d k=3(A B C); A B C", left());
}

TEST_F(AnswerNesting, ClearInsideAClearPhaseEndsTheChange)
{
    present("k=1");
    story().on("B-k=1", [&] { attach("k="); });
    attach("k=2");
    EXPECT_EQ("[k=2: C-k=1 B-k=1[k=: A-k=1 ok] ok]", told());
    EXPECT_EQ("d k=(A B C); A B C", left());
}

TEST_F(AnswerNesting, ChangeInsideARollBackFinishesIt)
{
    present();
    observer("C").refuse("k=1", "no");
    story().on("B-k=1", [&] { attach("k=2"); });
    attach("k=1");
    EXPECT_EQ("[k=1: A+k=1 B+k=1 C!k=1 B-k=1[k=2: A-k=1 A+k=2 B+k=2 C+k=2 ok] 7<no>]", told());
}

TEST_F(AnswerNesting, ChangesOfOneKeyNestDeeply)
{
    present();
    story().on("A+k=1", [&] { attach("k=2"); });
    story().on("A+k=2", [&] { attach("k=3"); });
    attach("k=1");
    EXPECT_EQ("[k=1: A+k=1[k=2: A-k=1 A+k=2[k=3: A-k=2 A+k=3 B+k=3 C+k=3 ok] ok] ok]", told());
    EXPECT_EQ("d k=3(A B C); A B C", left());
}

// The one in the middle is replaced while it finishes what the outermost still owes.
TEST_F(AnswerNesting, ChangesOfOneKeyNestInsideOneClear)
{
    present("k=1");
    story().on("C-k=1", [&] { attach("k=2"); });
    story().on("B-k=1", [&] { attach("k=3"); });
    attach("k=9");
    EXPECT_EQ("[k=9: C-k=1[k=2: B-k=1[k=3: A-k=1 A+k=3 B+k=3 C+k=3 ok] ok] ok]", told());
    EXPECT_EQ("d k=3(A B C); A B C", left());
}

TEST_F(AnswerNesting, WhoEndsItsOwnMatchWhileItJoinsIsOut)
{
    present();
    listen("L", 50, Terms().attribute("k", "1"));
    told();
    story().on("L+d", [&] { attach("k="); });
    attach("k=1");
    EXPECT_EQ("[k=1: A+k=1 B+k=1 C+k=1 L+d[k=: L-d C-k=1 B-k=1 A-k=1 ok] ok]", told());
    EXPECT_EQ("d k=(A B C); A B C L", left());
}

TEST_F(AnswerNesting, ChangeOfAnotherKeyEndsWithALookAtTheMatches)
{
    present("k=1");
    attach("j=1");
    listen("L", 25, Terms().attribute("k", "1").attribute("j", "1"));
    told();
    story().on("C-k=1", [&] { attach("j="); });
    attach("k=");
    EXPECT_EQ("[k=: C-k=1[j=: C-j=1 L-j=1 B-j=1 A-j=1 ok] L-k=1 B-k=1 A-k=1 L-d ok]", told());
    EXPECT_EQ("d k= j=(A B C); A B L C", left());
}

/// Hears of drivers that offer IInfo, and does something from inside the first clear of "n".
class Replacer final : public RecordingObserver
{
public:
    using RecordingObserver::RecordingObserver;

    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) override
    {
        RecordingObserver::onDriverAttachmentCleared(event);
        if (static_cast<IDriverRepository::EvAttachment&>(event).key == "n" && last)
            std::exchange(last, nullptr)();
    }

    std::function<void()> last;
};

TEST_F(RepositoryFixture, ValueThatEndsAMatchIsToldGoneThoughItIsReplacedInTheFarewell)
{
    Replacer replacer(log_, "R");
    driver("d").offer(IInfo::IID());
    add("d");
    attach("d", "k", "1");
    attach("d", "n", "1");
    repository().addDriverRepositoryObserver(error_, "R", TOVA_UUID::INVALID(), IInfo::IID(), "", 1,
                                             false, true, &replacer);
    forget();
    driver("d").withdraw(IInfo::IID());
    replacer.last = [&] { attach("d", "k", "2"); };
    attach("d", "k", "");
    const std::string told = heard();
    EXPECT_NE(std::string::npos, told.find("k=1")) << told;
    EXPECT_EQ(told.find("k=1"), told.rfind("k=1")) << told;
    repository().removeDriverRepositoryObserver("R");
}

/// Driver x leaves from inside what happens at `moment`; freed with the outermost operation, its
/// destructor does something that the answer must know of.
struct AnswerAfterFreeing : AnswerNesting
{
    void freeing(char const* moment, Story::Reaction last)
    {
        add("x");
        told();
        drop("x");
        told();
        story().on(moment, [this] { remove("x"); });
        story().on("x.gone", std::move(last));
    }
};

TEST_F(AnswerAfterFreeing, TheAddedDriverIsTakenOut)
{
    freeing("A+d", [this] { remove("d"); });
    add("d");
    EXPECT_EQ("[add d: A+d[remove x: C-x B-x A-x] B+d C+d x.gone[remove d: C-d B-d A-d] "
              "-1<Driver 'd' does not exist>]",
              told());
    EXPECT_EQ(" ADDING DRIVER 'd' FAILED: Driver 'd' does not exist\n", monitor().takeFailures());
}

TEST_F(AnswerAfterFreeing, TheRefusedDriverIsAddedAnew)
{
    freeing("A+d", [this] { add("d"); });
    observer("B").refuse("d", "no");
    add("d");
    EXPECT_EQ("[add d: A+d[remove x: C-x B-x A-x] B!d A-d x.gone[add d: A+d B+d C+d ok] ok]",
              told());
}

TEST_F(AnswerAfterFreeing, TheNewListenerIsTakenOut)
{
    present();
    freeing("L+d", [this] { unlisten("L"); });
    listen("L", 50);
    EXPECT_EQ("[listen L: L+d[remove x: C-x B-x A-x] x.gone[unlisten L: L-d] "
              "-1<Driver repository observer 'L' does not exist>]",
              told());
    EXPECT_EQ(" ADDING LISTENER 'L' FAILED: Driver repository observer 'L' does not exist\n",
              monitor().takeFailures());
}

TEST_F(AnswerAfterFreeing, TheNewListenerIsReplaced)
{
    present();
    freeing("L+d", [this] {
        unlisten("L");
        listen("L", 50);
    });
    listen("L", 50);
    EXPECT_EQ("[listen L: L+d[remove x: C-x B-x A-x] x.gone[unlisten L: L-d][listen L: L+d ok] "
              "-1<Driver repository observer 'L' does not exist>]",
              told());
    EXPECT_EQ("d(A B C L); A B C L", left());
}

TEST_F(AnswerAfterFreeing, TheChangedDriverIsTakenOut)
{
    present();
    freeing("A+k=1", [this] { remove("d"); });
    attach("k=1");
    EXPECT_EQ("[k=1: A+k=1[remove x: C-x B-x A-x] B+k=1 C+k=1 x.gone[remove d: C-d B-d A-d] "
              "-1<Driver 'd' does not exist>]",
              told());
    EXPECT_EQ(" SETTING DRIVER 'd' ATTACHMENT k=1 FAILED: Driver 'd' does not exist\n",
              monitor().takeFailures());
}

} // namespace
