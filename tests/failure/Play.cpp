#include "Play.h"

#include <regex>

namespace
{

std::string withoutMarks(std::string const& heard)
{
    return std::regex_replace(heard, std::regex(" failed\n"), "\n");
}

int countOf(std::string const& what, std::string const& text)
{
    int count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++count;
    return count;
}

/// Whether the call-out comes before the operation has done anything.
bool isPreliminary(std::string const& label)
{
    return std::regex_match(label,
                            std::regex("[a-z]\\.name|log: DrvRepo: (Add|Remove|Set) .*|"
                                       "log: B: (Set Timeslots|Add observer|Remove observer) .*"));
}

void look(World& world, Play& played)
{
    played.look = world.look();
    const bool withCounters = true;
    played.statistics = world.look(withCounters);
    played.heard = world.heard();
    for (std::string const& line : world.failures())
        played.failures += line + "\n";
}

} // namespace

Play play(Scenario const& scenario, Setting const& setting,
          std::function<void(std::function<void()> const&)> const& run)
{
    Play played;
    World world(setting.allMayRefuse);
    world.guarded = setting.guarded;
    world.mayMissGoings = scenario.kind == Kind::CHANGE || scenario.kind == Kind::NESTED;
    scenario.prepare(world);
    const std::string before = world.heard();
    world.callOuts.arm(setting.failing, setting.manner);
    try {
        run([&] { scenario.act(world); });
    } catch (Thrown const& thrown) {
        played.thrown = thrown.what();
    }
    world.callOuts.disarm();
    played.labels = world.callOuts.labels();
    played.outcome = world.outcome;
    look(world, played);
    played.heard = played.heard.substr(before.size());
    played.probe = world.probe();
    played.faults = world.end();
    return played;
}

Play play(Scenario const& scenario, Setting const& setting)
{
    return play(scenario, setting, [](std::function<void()> const& act) { act(); });
}

Play playNothing(Scenario const& scenario)
{
    const Scenario nothing = {scenario.name, scenario.kind, scenario.prepare, [](World&) {}};
    return play(nothing, Setting());
}

FailureCheck::FailureCheck(Scenario const& scenario)
    : scenario_(scenario), untouched_(playNothing(scenario)), good_(play(scenario, Setting()))
{
    EXPECT_EQ("", good_.faults);
    changed_ = {untouched_.look};
    if (scenario.kind != Kind::CHANGE)
        return;
    for (int n = 1; n <= callOuts(); ++n)
        changed_.insert(play(scenario, {n, Manner::REFUSE, true}).look);
}

/// Whether a listener or observer was asked.
bool FailureCheck::isComing(std::string const& label) const
{
    return label.find("log:") != 0 && label.find('+') != std::string::npos;
}

void FailureCheck::check(int failing, Play const& failed) const
{
    EXPECT_EQ("", failed.faults);
    if (scenario_.kind == Kind::NESTED)
        return;
    if (scenario_.kind == Kind::GOING)
        checkGone(failing, failed);
    else if (isComing(label(failing)))
        checkRefused(failing, failed);
    else
        checkComing(failing, failed);
}

/// A coming cut short is as if the one had refused who was being asked.
void FailureCheck::checkRefused(int failing, Play const& failed) const
{
    const Play refused = play(scenario_, {failing, Manner::REFUSE, true});
    EXPECT_EQ(refused.statistics, failed.statistics);
    EXPECT_EQ(refused.heard, failed.heard);
    EXPECT_EQ(refused.failures, failed.failures);
    EXPECT_EQ(refused.probe, failed.probe);
}

/// A going is carried out whoever throws, and everybody is told once, unless it had not begun.
void FailureCheck::checkGone(int failing, Play const& failed) const
{
    if (isPreliminary(label(failing)) && failed.heard.empty()) {
        EXPECT_EQ(untouched_.look, failed.look);
        EXPECT_EQ(untouched_.probe, failed.probe);
        return;
    }
    EXPECT_EQ(good_.look, failed.look);
    EXPECT_EQ(good_.heard, withoutMarks(failed.heard));
    EXPECT_EQ(good_.probe, failed.probe);
}

/// A coming cut short by a driver or the monitor is taken back and logged.
void FailureCheck::checkComing(int failing, Play const& failed) const
{
    const bool ofGroup = failed.labels[0].find("log: B:") == 0;
    if (scenario_.kind == Kind::COMING) {
        EXPECT_EQ(untouched_.look, failed.look);
        EXPECT_EQ(untouched_.probe, failed.probe);
        if (!isPreliminary(label(failing)) && !ofGroup) {
            EXPECT_EQ(1, countOf("DrvRepo: ADDING ", failed.failures)) << failed.failures;
        }
        return;
    }
    const bool refused = std::regex_search(failed.heard, std::regex("\\+[^\n]* failed\n"));
    if (refused && !ofGroup) {
        EXPECT_EQ(1, countOf("DrvRepo: SETTING ", failed.failures)) << failed.failures;
    }
    EXPECT_TRUE(changed_.count(failed.look) != 0 || (ofGroup && failed.look == good_.look))
        << failed.look << "\n"
        << failed.heard;
}
