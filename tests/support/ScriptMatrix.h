#ifndef SUPPORT_SCRIPTMATRIX_H
#define SUPPORT_SCRIPTMATRIX_H

#include <map>
#include <string>
#include <vector>

#include <support/ScriptLeaks.h>
#include <support/ScriptScene.h>

// What a listener may do from inside a notification, one cell for each deed and for each kind of
// listener. Listeners A, B and C stand in this order; B does it. There are drivers e and d; d
// carries attachments, at least m=1, which it sets on itself when it is taken in.

/// Kinds of listeners: with or without the right of veto, with or without snapshots.
enum Rights : unsigned {
    BARE = 1,
    VETO = 2,
    SNAPSHOT = 4,
    VETO_SNAPSHOT = 8,
    NO_SNAPSHOTS = BARE | VETO,
    SNAPSHOTS = SNAPSHOT | VETO_SNAPSHOT,
    EVERY = NO_SNAPSHOTS | SNAPSHOTS
};

/// A row: what B does, the kinds of listeners for which all goes alike, what happens, and what is
/// left then. Only refusals tell the right of veto, only m=1 and its like the snapshots.
struct MatrixRow
{
    char const* deed;
    unsigned rights;
    char const* story;
    char const* left;
};

/// The notification in which B does it, and the call that brings it.
struct MatrixScene
{
    char const* notification; ///< what B says when it hears it
    char const* refusable;    ///< what B could refuse; null when it has no answer
    unsigned kinds;           ///< of listeners for which there is such a notification
    /// Prepares what was before, the call and B's deed in it excepted.
    void (*prepare)(Scene& scene, Terms const& terms);
    void (*act)(Scene& scene, Terms const& terms);
};

/// Drivers e and d, and the listeners.
inline void prepareAll(Scene& scene, Terms const& terms)
{
    scene.listen("A", 10, terms);
    scene.listen("B", 20, terms);
    scene.listen("C", 30, terms);
    scene.add("e");
    scene.add("d");
}

inline void listenAround(Scene& scene, Terms const& terms)
{
    scene.listen("M", 15, terms);
    scene.listen("N", 25, terms);
}

inline void readd(Scene& scene)
{
    scene.remove("d");
    scene.add("d");
}

/// Does what a row says. An attachment stands for its change.
inline void doDeed(Scene& scene, std::string const& deed, Terms const& terms)
{
    const std::map<std::string, Story::Reaction> deeds = {
        {"unlisten A", [&] { scene.unlisten("A"); }},
        {"unlisten B", [&] { scene.unlisten("B"); }},
        {"unlisten C", [&] { scene.unlisten("C"); }},
        {"listen B", [&] { scene.listen("B", 20, terms); }},
        {"listen around", [&] { listenAround(scene, terms); }},
        {"remove d", [&] { scene.remove("d"); }},
        {"remove e", [&] { scene.remove("e"); }},
        {"add d", [&] { scene.add("d"); }},
        {"add f", [&] { scene.add("f"); }},
        {"re-add d", [&] { readd(scene); }},
        {"query", [&] { scene.query(); }},
        {"info", [&] { scene.info(); }},
        {"throw", [] { throw Thrown("out of B"); }},
        {"drop d", [&] { scene.drop("d"); }},
        {"drop repository", [&] { scene.dropRepository(); }},
    };
    const auto found = deeds.find(deed);
    if (found != deeds.end())
        found->second();
    else
        scene.attach(deed);
}

inline Terms termsOf(unsigned rights)
{
    Terms terms;
    if ((rights & (VETO | VETO_SNAPSHOT)) != 0)
        terms.veto();
    if ((rights & SNAPSHOTS) != 0)
        terms.snapshot();
    return terms;
}

inline void checkCell(MatrixScene const& matrix, MatrixRow const& row, unsigned rights)
{
    SCOPED_TRACE(std::string(matrix.notification) + ", " + row.deed +
                 (rights & (VETO | VETO_SNAPSHOT) ? ", veto" : "") +
                 (rights & SNAPSHOTS ? ", snapshot" : ""));
    const std::string deed = row.deed;
    const LeaksWanted leaks(deed == "drop repository"); // what is registered stays, as promised
    Scene scene;
    const Terms terms = termsOf(rights);
    scene.driver("d").publish("m", "1");
    matrix.prepare(scene, terms);
    scene.told();
    if (deed == "refuse")
        scene.observer("B").refuse(matrix.refusable, "no");
    else
        scene.story().on(matrix.notification, [&] { doDeed(scene, deed, terms); });
    for (std::string const word : {"gone", "d.gone"}) // the ends that the row speaks of
        if (std::string(row.story).find(" " + word) != std::string::npos)
            scene.story().on(word, [] {});
    try {
        matrix.act(scene, terms);
    } catch (Thrown const&) {
    }
    const std::string told = scene.told();
    EXPECT_EQ(Story::tree(row.story), Story::tree(told)) << told;
    EXPECT_EQ(row.left, scene.left());
}

/// Checks every cell; the rows must have each deed for each kind of listener, once.
inline void checkMatrix(MatrixScene const& matrix, std::vector<MatrixRow> const& rows)
{
    std::map<std::string, unsigned> seen;
    for (MatrixRow const& row : rows) {
        EXPECT_EQ(0u, seen[row.deed] & row.rights) << row.deed;
        seen[row.deed] |= row.rights;
        for (unsigned rights = BARE; rights <= VETO_SNAPSHOT; rights *= 2)
            if ((row.rights & rights) != 0)
                checkCell(matrix, row, rights);
    }
    for (auto const& deed : seen)
        EXPECT_EQ(matrix.kinds, deed.second) << deed.first;
}

#endif
