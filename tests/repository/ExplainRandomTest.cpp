#include <algorithm>
#include <memory>
#include <random>
#include <sstream>

#include <drvrepo/DriverWrapper.h>
#include <support/RepositoryFixture.h>

#include "ExplanationText.h"

namespace
{

using Rng = std::mt19937;

std::uint32_t below(Rng& rng, std::uint32_t limit)
{
    return static_cast<std::uint32_t>(rng() % limit);
}

TOVA_UUID const& typeOf(std::uint32_t which)
{
    static const TOVA_UUID types[] = {TOVA_UUID::create(1, 1, 1, 1, "one"),
                                      TOVA_UUID::create(2, 2, 2, 2, "two"), TOVA_UUID::INVALID()};
    return types[which];
}

// Few and overlapping, so that criteria hold about as often as they fail.
char const* const NAMES[] = {"fxs 1", "fxs 12", "e1t1 1"};
char const* const PREFIXES[] = {"", "", "fxs", "fxs 1", "e"};
char const* const KEYS[] = {"k", "l", "m", ""};
char const* const VALUES[] = {"", "1", "12", "2"};
char const* const LISTENERS[] = {"a", "b", "c", "d"};

template <std::size_t N> char const* pick(Rng& rng, char const* const (&from)[N])
{
    return from[below(rng, N)];
}

/// Lets the driver offer an interface, or not.
void toggle(TestDriver& driver, TOVA_UUID const& iid)
{
    if (driver.queryInterface(iid, nullptr).code() == 0)
        driver.withdraw(iid);
    else
        driver.offer(iid);
}

Terms randomTerms(Rng& rng)
{
    Terms terms;
    terms.did(typeOf(below(rng, 4) == 0 ? below(rng, 2) : 2));
    terms.iid(typeOf(below(rng, 3) == 0 ? below(rng, 2) : 2));
    terms.prefix(pick(rng, PREFIXES));
    for (std::uint32_t i = below(rng, 3); i > 0; --i)
        terms.attribute(pick(rng, KEYS), pick(rng, VALUES));
    if (below(rng, 2) == 0)
        terms.snapshot();
    if (below(rng, 2) == 0)
        terms.veto();
    return terms;
}

using Heard = std::map<std::string, std::string>;

/// A registry that random steps change; the same seed makes the same.
class Scene
{
public:
    Scene() : repository_(new TestRepository(loop_))
    {
        for (char const* name : NAMES)
            drivers_.emplace_back(new TestDriver(name, typeOf(name[0] == 'f' ? 0 : 1)));
        for (char const* name : LISTENERS)
            observers_.push_back(std::make_unique<RecordingObserver>(log_, name));
    }
    ~Scene()
    {
        for (char const* name : LISTENERS)
            repository_.get()->removeDriverRepositoryObserver(name);
        for (char const* name : NAMES)
            repository_.get()->removeDriver(String(name));
    }

    CDriverRepository& repository() const { return *repository_; }

    void step(Rng& rng)
    {
        const std::uint32_t who = below(rng, 3);
        const std::uint32_t listener = below(rng, 4);
        const Terms terms = randomTerms(rng).priority(below(rng, 3));
        String error;
        switch (below(rng, 6)) {
        case 0:
            repository().addDriver(error, drivers_[who].get());
            break;
        case 1:
            repository().removeDriver(drivers_[who].get());
            break;
        case 2:
            toggle(*drivers_[who], typeOf(listener % 2));
            break;
        case 3:
            repository().removeDriverRepositoryObserver(LISTENERS[listener]);
            break;
        default:
            terms.listen(error, repository(), LISTENERS[listener], observers_[listener].get());
        }
        log_.take();
    }

    /// Sets an attachment; what the observer of each name heard.
    Heard set(char const* driver, char const* key, char const* value)
    {
        String error;
        repository().setDriverAttachment(error, String(driver), key, value);
        std::istringstream lines(log_.take());
        Heard heard;
        for (char const* name : LISTENERS)
            heard[name];
        for (std::string line; std::getline(lines, line);)
            heard[line.substr(0, 1)] += " " + line.substr(3) + ";";
        return heard;
    }

private:
    TYEventLoop loop_;
    EventLog log_;
    std::vector<std::unique_ptr<RecordingObserver>> observers_;
    std::vector<TYPtr<TestDriver>> drivers_;
    TYPtr<TestRepository> repository_;
};

std::string told(WhatIf const& whatIf)
{
    const std::string text = textOf(whatIf);
    return text.substr(text.find(':') + 1);
}

// Two registries take the same steps. One is asked what a change would tell, the other makes it,
// and hears it; then the first makes it as well.
TEST(ExplainRandom, WhatIfIsWhatHappens)
{
    std::uint64_t compared = 0;
    std::map<std::uint32_t, int> outcomes;
    for (std::uint32_t seed = 0; seed < 800; ++seed) {
        SCOPED_TRACE(seed);
        Rng steps(seed);
        Rng copiedSteps(seed);
        Scene asked;
        Scene changed;
        for (int i = 0; i < 40; ++i) {
            asked.step(steps);
            changed.step(copiedSteps);
            char const* const driver = pick(steps, NAMES);
            char const* const key = pick(steps, KEYS);
            char const* const value = pick(steps, VALUES);
            copiedSteps = steps;
            std::map<std::string, WhatIf> foretold;
            String error;
            for (char const* listener : LISTENERS) {
                WhatIf whatIf;
                if (explain(error, asked.repository(), driver, listener, key, value, whatIf)
                        .code() == 0)
                    foretold[listener] = whatIf;
            }
            const Heard heard = changed.set(driver, key, value);
            for (auto const& at : foretold) {
                ASSERT_EQ(heard.at(at.first), told(at.second)) << at.first << " " << driver;
                Explanation after;
                ASSERT_EQ(
                    0,
                    explain(error, changed.repository(), driver, at.first.c_str(), after).code());
                ASSERT_EQ(after.selected, at.second.selected);
                ASSERT_EQ(textOf(after.criteria), textOf(at.second.criteria));
                ASSERT_EQ(after.state == Explanation::ACTIVE,
                          at.second.outcome == WhatIf::STAYS_IN ||
                              at.second.outcome == WhatIf::JOINS ||
                              at.second.outcome == WhatIf::REJOINS);
                ++outcomes[at.second.outcome];
                ++compared;
            }
            ASSERT_EQ(heard, asked.set(driver, key, value)) << "asking changed something";
        }
    }
    EXPECT_GT(compared, 5000u);
    for (std::uint32_t outcome :
         {WhatIf::STAYS_OUT, WhatIf::STAYS_IN, WhatIf::JOINS, WhatIf::LEAVES, WhatIf::REJOINS})
        EXPECT_GT(outcomes[outcome], 10) << outcome;
}

/// How a record of the same driver and attachments, and a listener with the same criteria, are
/// matched.
bool talksTo(TestDriver& driver,
             std::vector<std::pair<char const*, char const*>> const& attachments,
             Terms const& terms)
{
    CDriverRepository::DriverWrapper record(nullptr, &driver);
    String error;
    for (auto const& at : attachments)
        record.setAttachment(error, at.first, at.second);
    const CDriverRepository::Listener listener("x", terms.did(), terms.iid(), terms.prefix(),
                                               terms.attributes(), 0, false, false, nullptr);
    return record.talksTo(&listener);
}

TEST(ExplainRandom, SelectedIsWhatTalksToSays)
{
    int selected = 0;
    const int rounds = 20000;
    Rng rng(1);
    TYEventLoop loop;
    const TYPtr<TestRepository> repository(new TestRepository(loop));
    EventLog log;
    RecordingObserver observer(log, "x");
    String error;
    for (int i = 0; i < rounds; ++i) {
        const std::uint32_t type = below(rng, 3);
        const TYPtr<TestDriver> driver(new TestDriver(pick(rng, NAMES), typeOf(type)));
        repository.get()->addDriver(error, driver.get());
        std::vector<std::pair<char const*, char const*>> attachments;
        for (std::uint32_t n = below(rng, 4); n > 0; --n) {
            attachments.emplace_back(pick(rng, KEYS), pick(rng, VALUES));
            repository.get()->setDriverAttachment(error, driver.get(), attachments.back().first,
                                                  attachments.back().second);
        }
        const Terms terms = randomTerms(rng);
        terms.listen(error, *repository, "x", &observer);
        toggle(*driver, typeOf(below(rng, 2)));
        Explanation explanation;
        ASSERT_EQ(
            0, explain(error, *repository, driver.get()->getDriverName(), "x", explanation).code());
        ASSERT_EQ(talksTo(*driver, attachments, terms), explanation.selected)
            << textOf(explanation.criteria);
        const bool all = std::all_of(explanation.criteria.begin(), explanation.criteria.end(),
                                     [](auto const& criterion) { return criterion.holds; });
        ASSERT_EQ(all, explanation.selected);
        selected += explanation.selected;
        repository.get()->removeDriverRepositoryObserver("x");
        repository.get()->removeDriver(driver.get());
    }
    EXPECT_GT(selected, rounds / 10);
    EXPECT_LT(selected, rounds * 9 / 10);
}

} // namespace
