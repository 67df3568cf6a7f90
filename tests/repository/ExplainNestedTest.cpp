#include <random>
#include <stdexcept>

#include <drvrepo/Explain.h>

#include <support/RepositoryFixture.h>

namespace
{

char const* const DRIVERS[] = {"fxs 1", "fxs 2", "e1t1 1"};
char const* const LISTENERS[] = {"a", "b", "c", "d"};
char const* const KEYS[] = {"k", "l"};
char const* const VALUES[] = {"", "1", "12", "2"};

/// Random operations whose listeners refuse, throw and call in again at random. The same seed makes
/// the same story; `asks` has every listener, at each notification, ask about everybody.
class Chaos
{
public:
    Chaos(std::uint32_t seed, bool asks)
        : rng_(seed), asks_(asks), repository_(new TestRepository(loop_))
    {
        for (char const* name : DRIVERS)
            drivers_.emplace_back(new TestDriver(name));
        for (char const* name : LISTENERS) {
            observers_.push_back(std::make_unique<RecordingObserver>(log_, name));
            observers_.back()->then = [this](std::string const&) { react(); };
        }
    }
    ~Chaos()
    {
        asks_ = false;
        depth_ = DEEPEST;
        for (auto const& observer : observers_)
            observer->then = nullptr;
        for (char const* name : LISTENERS)
            repository_.get()->removeDriverRepositoryObserver(name);
        for (auto const& driver : drivers_)
            repository_.get()->removeDriver(driver.get());
    }

    void run(int steps)
    {
        for (int i = 0; i < steps; ++i) {
            RecordingObserver& observer = *observers_[below(4)];
            observer.accept();
            if (below(3) == 0)
                observer.refuse(below(2) == 0 ? "added" : "set", "no");
            step();
        }
    }
    /// What was heard and logged, and what is left.
    std::string story()
    {
        std::string text = log_.take() + monitor_.take();
        InfoContainer info;
        repository_.get()->getInfo(info, 99, 0, 99, 0, "");
        for (InfoContainer::Row const& row : info.rows())
            if (row.key != "Observer") // an address
                text += std::string(row.key.cString()) + "|" + row.value.cString() + "\n";
        return text;
    }
    int asked() const { return asked_; }

private:
    static constexpr int DEEPEST = 3;

    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(rng_() % limit); }

    void react()
    {
        if (asks_)
            ask();
        if (depth_ == DEEPEST || below(4) != 0)
            return;
        ++depth_;
        const bool throws = below(8) == 0;
        step();
        --depth_;
        if (throws)
            throw std::runtime_error("enough");
    }
    void step()
    {
        String error;
        IDriver* const driver = drivers_[below(3)].get();
        const std::uint32_t listener = below(4);
        const std::uint32_t what = below(8);
        const String key(KEYS[below(2)]);
        const String value(VALUES[below(4)]);
        ListenerTerms terms = ListenerTerms().priority(below(3)).veto().snapshot();
        if (below(2) == 0)
            terms.attribute(KEYS[below(2)], "1");
        try {
            if (what == 0)
                repository_.get()->addDriver(error, driver);
            else if (what == 1)
                repository_.get()->removeDriver(driver);
            else if (what == 2)
                repository_.get()->removeDriverRepositoryObserver(LISTENERS[listener]);
            else if (what <= 4)
                terms.listen(error, *repository_, LISTENERS[listener], observers_[listener].get());
            else
                repository_.get()->setDriverAttachment(error, driver, key, value);
        } catch (std::runtime_error const&) {
            log_.add("thrown", "");
        }
        log_.add("result", error.cString());
    }
    void ask()
    {
        String error;
        for (char const* driver : DRIVERS) {
            TOVA_List<Explanation> all;
            explainDriver(error, *repository_, driver, all);
            for (Explanation const& at : all)
                for (char const* value : VALUES) {
                    WhatIf whatIf;
                    EXPECT_EQ(0,
                              explain(error, *repository_, driver, at.listener, "k", value, whatIf)
                                  .code());
                    EXPECT_EQ(at.state, whatIf.state);
                    ++asked_;
                }
        }
        TOVA_List<Explanation> all;
        for (char const* listener : LISTENERS)
            explainListener(error, *repository_, listener, all);
    }

    std::mt19937 rng_;
    bool asks_;
    int depth_ = 0;
    int asked_ = 0;
    TYEventLoop loop_;
    EventLog log_;
    RecordingMonitor monitor_;
    std::vector<std::unique_ptr<RecordingObserver>> observers_;
    std::vector<TYPtr<TestDriver>> drivers_;
    TYPtr<TestRepository> repository_;
};

// Two registries live through the same; in one of them every callback asks about everybody.
TEST(ExplainNested, AskingFromInsideAnyCallChangesNothing)
{
    int asked = 0;
    for (std::uint32_t seed = 0; seed < 80; ++seed) {
        SCOPED_TRACE(seed);
        std::string silent;
        {
            Chaos chaos(seed, false);
            chaos.run(40);
            silent = chaos.story();
        }
        Chaos chaos(seed, true);
        chaos.run(40);
        ASSERT_EQ(silent, chaos.story());
        asked += chaos.asked();
    }
    EXPECT_GT(asked, 10000);
    EXPECT_EQ(0, TestDriver::living());
}

} // namespace
