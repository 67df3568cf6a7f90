#include "Scenarios.h"

namespace
{

/// Drivers e and d, the latter with attachments, and four listeners: B only for drivers with k=1.
void furnish(World& world)
{
    world.plan("A", 10, Terms().veto().snapshot());
    world.plan("B", 20, Terms().veto().snapshot().attribute("k", "1"));
    world.plan("C", 30, Terms());
    world.plan("D", 40, Terms().veto().snapshot().did(IDriver::DID_UNKNOWN()));
    world.plan("N", 25, Terms().veto().snapshot().iid(IDriver::IID()));
    for (char const* name : {"A", "B", "C", "D"})
        world.listen(name);
    world.add("e");
    world.add("d");
    world.set("d", "m", "1");
    world.set("d", "n", "2");
    world.driver("f");
}

/// The same, and B has joined driver d.
void furnishJoined(World& world)
{
    furnish(world);
    world.set("d", "k", "1");
}

template <int COUNT> void fill(World& world)
{
    furnish(world);
    for (int i = 2; i < COUNT; ++i)
        world.add(("x" + std::to_string(i)).c_str());
}

void refuseLate(World& world)
{
    furnish(world);
    world.refuse("D+f");
}

} // namespace

std::vector<Scenario> const& repositoryScenarios()
{
    static const std::vector<Scenario> scenarios = {
        {"add to nobody", Kind::COMING, [](World& w) { w.driver("f"); },
         [](World& w) { w.add("f"); }},
        {"add", Kind::COMING, furnish, [](World& w) { w.add("f"); }},
        {"add, refused late", Kind::COMING, refuseLate, [](World& w) { w.add("f"); }},
        {"add a known name", Kind::COMING, furnish, [](World& w) { w.add("d"); }},
        {"add the ninth", Kind::COMING, fill<8>, [](World& w) { w.add("f"); }},
        {"add the thirty-third", Kind::COMING, fill<32>, [](World& w) { w.add("f"); }},
        {"add a group", Kind::COMING, furnish, [](World& w) { w.add("B"); }},
        {"listen", Kind::COMING, furnish, [](World& w) { w.listen("N"); }},
        {"listen plainly", Kind::COMING, furnish, [](World& w) { w.listenPlainly("N"); }},
        {"listen by attachment", Kind::COMING,
         [](World& w) {
             furnishJoined(w);
             w.plan("N", 20, Terms().veto().snapshot().attribute("k", "1").attribute("m", ""));
         },
         [](World& w) { w.listen("N"); }},
        {"listen, refused at the second driver", Kind::COMING,
         [](World& w) {
             furnish(w);
             w.refuse("N+d");
         },
         [](World& w) { w.listen("N"); }},
        {"listen, refused in the snapshot", Kind::COMING,
         [](World& w) {
             furnish(w);
             w.refuse("N+d.n=2");
         },
         [](World& w) { w.listen("N"); }},
        {"listen under a known name", Kind::COMING, furnish, [](World& w) { w.listen("A"); }},
        {"set a new key", Kind::CHANGE, furnish, [](World& w) { w.set("d", "new", "1"); }},
        {"set the ninth key", Kind::CHANGE,
         [](World& w) {
             furnish(w);
             for (char const* key : {"3", "4", "5", "6", "7", "8"})
                 w.set("d", key, "x");
         },
         [](World& w) { w.set("d", "new", "1"); }},
        {"set the thirty-third key", Kind::CHANGE,
         [](World& w) {
             furnish(w);
             for (int key = 2; key < 32; ++key)
                 w.set("d", std::to_string(key).c_str(), "x");
         },
         [](World& w) { w.set("d", "new", "1"); }},
        {"set by driver", Kind::CHANGE, furnish, [](World& w) { w.setByDriver("d", "m", "2"); }},
        {"change a value", Kind::CHANGE, furnish, [](World& w) { w.set("d", "m", "2"); }},
        {"set, B joins", Kind::CHANGE, furnish, [](World& w) { w.set("d", "k", "1"); }},
        {"set, B joins and refuses its snapshot", Kind::CHANGE,
         [](World& w) {
             furnish(w);
             w.refuse("B+d.n=2");
         },
         [](World& w) { w.set("d", "k", "1"); }},
        {"set, refused late", Kind::CHANGE,
         [](World& w) {
             furnish(w);
             w.refuse("D+d.k=1");
         },
         [](World& w) { w.set("d", "k", "1"); }},
        {"change, refused late", Kind::CHANGE,
         [](World& w) {
             furnishJoined(w);
             w.refuse("D+d.k=12");
         },
         [](World& w) { w.set("d", "k", "12"); }},
        {"set of nobody", Kind::CHANGE, furnish, [](World& w) { w.set("nobody", "k", "1"); }},
        {"clear", Kind::GOING, furnishJoined, [](World& w) { w.set("d", "m", ""); }},
        {"clear, B leaves", Kind::GOING, furnishJoined, [](World& w) { w.set("d", "k", ""); }},
        {"remove", Kind::GOING, furnishJoined, [](World& w) { w.remove("d"); }},
        {"remove by name", Kind::GOING, furnishJoined, [](World& w) { w.removeByName("d"); }},
        {"remove a stranger", Kind::GOING, furnish, [](World& w) { w.remove("f"); }},
        {"unlisten", Kind::GOING, furnishJoined, [](World& w) { w.unlisten("A"); }},
        {"unlisten one without snapshots", Kind::GOING, furnishJoined,
         [](World& w) { w.unlisten("C"); }},
    };
    return scenarios;
}

std::vector<Scenario> const& groupScenarios()
{
    // Observers a and b with the right of veto, c without.
    static const auto observed = [](World& w) {
        w.planObserver("a", 10, true, false);
        w.planObserver("c", 20, false, false);
        w.planObserver("b", 30, true, false);
        w.planObserver("n", 15, true, true);
        w.planObserver("q", 15, false, false);
        for (char const* name : {"a", "b", "c"})
            w.observe(name);
        w.timeslots(0x0f);
    };
    static const std::vector<Scenario> scenarios = {
        {"observe", Kind::COMING, observed, [](World& w) { w.observe("q"); }},
        {"observe and be told", Kind::COMING, observed, [](World& w) { w.observe("n"); }},
        {"observe and refuse", Kind::COMING,
         [](World& w) {
             observed(w);
             w.refuse("n+0->f");
         },
         [](World& w) { w.observe("n"); }},
        {"add timeslots", Kind::CHANGE, observed, [](World& w) { w.timeslots(0xff); }},
        {"move timeslots", Kind::CHANGE, observed, [](World& w) { w.timeslots(0xf0); }},
        {"move timeslots, refused late", Kind::CHANGE,
         [](World& w) {
             observed(w);
             w.refuse("b+f->ff");
         },
         [](World& w) { w.timeslots(0xf0); }},
        {"remove timeslots", Kind::GOING, observed, [](World& w) { w.timeslots(0x01); }},
        {"unobserve", Kind::GOING, observed, [](World& w) { w.unobserve("b", false); }},
        {"unobserve and be told", Kind::GOING, observed, [](World& w) { w.unobserve("b", true); }},
    };
    return scenarios;
}

std::vector<Scenario> allScenarios()
{
    std::vector<Scenario> all = repositoryScenarios();
    for (auto const* more : {&groupScenarios(), &nestedScenarios()})
        all.insert(all.end(), more->begin(), more->end());
    return all;
}
