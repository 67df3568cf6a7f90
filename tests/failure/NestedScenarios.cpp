#include "Scenarios.h"

namespace
{

struct Trigger
{
    char const* heard;
    void (*act)(World& world);
};

// Somebody, told of one thing, does another: each trigger meets each deed. The situation has
// drivers e and d (k=1, m=1, n=2), listeners A, B (for k=1), C, D, and N outside.
const Trigger TRIGGERS[] = {
    {"A+f", [](World& w) { w.add("f"); }},
    {"D+f", [](World& w) { w.add("f"); }},
    {"D-d", [](World& w) { w.remove("d"); }},
    {"A-d", [](World& w) { w.removeByName("d"); }},
    {"N+e", [](World& w) { w.listen("N"); }},
    {"N+d", [](World& w) { w.listen("N"); }},
    {"N+d.n=2", [](World& w) { w.listen("N"); }},
    {"A-d.m=1", [](World& w) { w.unlisten("A"); }},
    {"A-d.k=1", [](World& w) { w.set("d", "k", "12"); }},
    {"B+d", [](World& w) { w.set("d", "k", "12"); }},
    {"A+d.k=12", [](World& w) { w.set("d", "k", "12"); }},
    {"D+d.new=1", [](World& w) { w.set("d", "new", "1"); }},
};

struct Deed
{
    char const* name;
    void (*act)(World& world);
};

const Deed DEEDS[] = {
    {"removes d", [](World& w) { w.remove("d"); }},
    {"removes f", [](World& w) { w.removeByName("f"); }},
    {"removes A", [](World& w) { w.unlisten("A"); }},
    {"removes D", [](World& w) { w.unlisten("D"); }},
    {"registers M", [](World& w) { w.listen("M"); }},
    {"registers A anew",
     [](World& w) {
         w.unlisten("A");
         w.listen("A");
     }},
    {"adds g", [](World& w) { w.add("g"); }},
    {"adds d anew",
     [](World& w) {
         w.remove("d");
         w.add("d");
     }},
    {"clears k", [](World& w) { w.set("d", "k", ""); }},
    {"sets k", [](World& w) { w.set("d", "k", "13"); }},
    {"sets m", [](World& w) { w.set("d", "m", "3"); }},
    {"sets p", [](World& w) { w.set("d", "p", "1"); }},
};

void furnish(World& w)
{
    w.plan("A", 10, Terms().veto().snapshot());
    w.plan("B", 20, Terms().veto().snapshot().attribute("k", "1"));
    w.plan("C", 30, Terms());
    w.plan("D", 40, Terms().veto().snapshot());
    w.plan("M", 15, Terms().veto().snapshot().attribute("m", "1"));
    w.plan("N", 25, Terms().veto().snapshot());
    // The listeners bring room for three drivers. There are two, so that a third who comes from
    // inside takes what the one outside has counted on.
    for (char const* name : {"x", "y", "z"})
        w.add(name);
    for (char const* name : {"A", "B", "C", "D"})
        w.listen(name);
    for (char const* name : {"x", "y", "z"})
        w.remove(name);
    w.add("e");
    w.add("d");
    w.set("d", "k", "1");
    w.set("d", "m", "1");
    w.set("d", "n", "2");
    w.publish("g", "m", "1");
    w.driver("f");
}

template <std::size_t TRIGGER, std::size_t DEED> Scenario make()
{
    static const std::string name = std::string(TRIGGERS[TRIGGER].heard) + " " + DEEDS[DEED].name;
    return {name.c_str(), Kind::NESTED,
            [](World& w) {
                furnish(w);
                w.on(TRIGGERS[TRIGGER].heard, [&w] { DEEDS[DEED].act(w); });
            },
            TRIGGERS[TRIGGER].act};
}

template <std::size_t TRIGGER, std::size_t... DEED>
void makeRow(std::vector<Scenario>& all, std::index_sequence<DEED...>)
{
    (all.push_back(make<TRIGGER, DEED>()), ...);
}

template <std::size_t... TRIGGER>
void makeAll(std::vector<Scenario>& all, std::index_sequence<TRIGGER...>)
{
    (makeRow<TRIGGER>(all, std::make_index_sequence<std::size(DEEDS)>()), ...);
}

/// Observers a and b with the right of veto, c without; one changes the group from inside.
void observed(World& w)
{
    w.planObserver("a", 10, true, false);
    w.planObserver("c", 20, false, false);
    w.planObserver("b", 30, true, false);
    w.planObserver("n", 15, true, true);
    for (char const* name : {"a", "b", "c"})
        w.observe(name);
    w.timeslots(0x0f);
}

void addGroups(std::vector<Scenario>& all)
{
    all.push_back({"a adds timeslots while some are added", Kind::NESTED,
                   [](World& w) {
                       observed(w);
                       w.on("a+f->ff", [&w] { w.timeslots(0xfff); });
                   },
                   [](World& w) { w.timeslots(0xf0); }});
    all.push_back({"b removes timeslots while some are added", Kind::NESTED,
                   [](World& w) {
                       observed(w);
                       w.on("b+f->ff", [&w] { w.timeslots(0x1f); });
                   },
                   [](World& w) { w.timeslots(0xff); }});
    all.push_back({"c adds timeslots while some are removed", Kind::NESTED,
                   [](World& w) {
                       observed(w);
                       w.on("c-f->1", [&w] { w.timeslots(0x3); });
                   },
                   [](World& w) { w.timeslots(0x1); }});
    all.push_back({"c registers n while some are added", Kind::NESTED,
                   [](World& w) {
                       observed(w);
                       w.on("c+f->ff", [&w] { w.observe("n"); });
                   },
                   [](World& w) { w.timeslots(0xff); }});
    all.push_back({"b leaves the group while some are added", Kind::NESTED,
                   [](World& w) {
                       observed(w);
                       w.on("b+f->ff", [&w] { w.unobserve("b", true); });
                   },
                   [](World& w) { w.timeslots(0xff); }});
}

} // namespace

std::vector<Scenario> const& nestedScenarios()
{
    static const std::vector<Scenario> scenarios = [] {
        std::vector<Scenario> all;
        makeAll(all, std::make_index_sequence<std::size(TRIGGERS)>());
        addGroups(all);
        return all;
    }();
    return scenarios;
}
