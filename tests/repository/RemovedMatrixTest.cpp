#include <support/ScriptMatrix.h>

namespace
{

// B does it when it hears that d is removed. C has parted from d, A has not. There is no answer to
// give, so nothing to refuse.

const MatrixScene REMOVED = {"B-d", nullptr, EVERY, prepareAll,
                             [](Scene& scene, Terms const&) { scene.remove("d"); }};

const char E_ONLY[] = "e(A B C); A B C";

TEST(RemovedMatrix, ListenersComeAndGo)
{
    checkMatrix(
        REMOVED,
        {// B has parted from d already.
         {"unlisten B", NO_SNAPSHOTS, "[remove d: C-d B-d[unlisten B: B-e] A-d]", "e(A C); A C"},
         {"unlisten B", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[unlisten B: B-e] A-m=1 A-d]",
          "e(A C); A C"},
         // When the removal of A returns, A has parted from all, and is not called again.
         {"unlisten A", NO_SNAPSHOTS, "[remove d: C-d B-d[unlisten A: A-d A-e]]", "e(B C); B C"},
         {"unlisten A", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[unlisten A: A-m=1 A-d A-e]]",
          "e(B C); B C"},
         {"unlisten C", NO_SNAPSHOTS, "[remove d: C-d B-d[unlisten C: C-e] A-d]", "e(A B); A B"},
         {"unlisten C", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[unlisten C: C-e] A-m=1 A-d]",
          "e(A B); A B"},
         // d is out of the table: newcomers don't meet it.
         {"listen around", NO_SNAPSHOTS,
          "[remove d: C-d B-d[listen M: M+e ok][listen N: N+e ok] A-d]", "e(A M B N C); A M B N C"},
         {"listen around", SNAPSHOTS,
          "[remove d: C-m=1 C-d B-m=1 B-d[listen M: M+e ok][listen N: N+e ok] A-m=1 A-d]",
          "e(A M B N C); A M B N C"}});
}

TEST(RemovedMatrix, DriversComeAndGo)
{
    checkMatrix(
        REMOVED,
        {// Whoever names the leaving driver first finishes its farewells.
         {"remove d", NO_SNAPSHOTS, "[remove d: C-d B-d[remove d: A-d]]", E_ONLY},
         {"remove d", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[remove d: A-m=1 A-d]]", E_ONLY},
         {"add d", NO_SNAPSHOTS, "[remove d: C-d B-d[add d: A-d A+d B+d C+d ok]]",
          "e(A B C) d m=1(A B C); A B C"},
         {"add d", SNAPSHOTS,
          "[remove d: C-m=1 C-d B-m=1 B-d[add d: A-m=1 A-d A+d A+m=1 B+d B+m=1 C+d C+m=1 ok]]",
          "e(A B C) d m=1(A B C); A B C"},
         {"re-add d", NO_SNAPSHOTS, "[remove d: C-d B-d[remove d: A-d][add d: A+d B+d C+d ok]]",
          "e(A B C) d m=1(A B C); A B C"},
         {"re-add d", SNAPSHOTS,
          "[remove d: C-m=1 C-d B-m=1 B-d[remove d: A-m=1 A-d]"
          "[add d: A+d A+m=1 B+d B+m=1 C+d C+m=1 ok]]",
          "e(A B C) d m=1(A B C); A B C"},
         {"remove e", NO_SNAPSHOTS, "[remove d: C-d B-d[remove e: C-e B-e A-e] A-d]", "; A B C"},
         {"remove e", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[remove e: C-e B-e A-e] A-m=1 A-d]",
          "; A B C"},
         {"add f", NO_SNAPSHOTS, "[remove d: C-d B-d[add f: A+f B+f C+f ok] A-d]",
          "e(A B C) f(A B C); A B C"},
         {"add f", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[add f: A+f B+f C+f ok] A-m=1 A-d]",
          "e(A B C) f(A B C); A B C"}});
}

TEST(RemovedMatrix, AttachmentsChange)
{
    checkMatrix(
        REMOVED,
        {{"m=2", NO_SNAPSHOTS, "[remove d: C-d B-d[m=2: A-d -1<Driver 'd' does not exist>]]",
          E_ONLY},
         {"m=2", SNAPSHOTS,
          "[remove d: C-m=1 C-d B-m=1 B-d[m=2: A-m=1 A-d -1<Driver 'd' does not exist>]]", E_ONLY},
         {"m=", NO_SNAPSHOTS, "[remove d: C-d B-d[m=: A-d -1<Driver 'd' does not exist>]]", E_ONLY},
         {"m=", SNAPSHOTS,
          "[remove d: C-m=1 C-d B-m=1 B-d[m=: A-m=1 A-d -1<Driver 'd' does not exist>]]", E_ONLY},
         {"j=1", NO_SNAPSHOTS, "[remove d: C-d B-d[j=1: A-d -1<Driver 'd' does not exist>]]",
          E_ONLY},
         {"j=1", SNAPSHOTS,
          "[remove d: C-m=1 C-d B-m=1 B-d[j=1: A-m=1 A-d -1<Driver 'd' does not exist>]]",
          E_ONLY}});
}

TEST(RemovedMatrix, LooksAndTheRest)
{
    checkMatrix(
        REMOVED,
        {{"query", NO_SNAPSHOTS, "[remove d: C-d B-d[drivers: e] A-d]", E_ONLY},
         {"query", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[drivers: e] A-m=1 A-d]", E_ONLY},
         {"info", NO_SNAPSHOTS, "[remove d: C-d B-d[info: e(A B C)] A-d]", E_ONLY},
         {"info", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[info: e(A B C)] A-m=1 A-d]", E_ONLY},
         // A going is finished before the exception goes on.
         {"throw", NO_SNAPSHOTS, "[remove d: C-d B-d A-d thrown]", E_ONLY},
         {"throw", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d A-m=1 A-d thrown]", E_ONLY},
         // The removal holds the driver until it has told everybody.
         {"drop d", NO_SNAPSHOTS, "[remove d: C-d B-d[drop d] A-d d.gone]", E_ONLY},
         {"drop d", SNAPSHOTS, "[remove d: C-m=1 C-d B-m=1 B-d[drop d] A-m=1 A-d d.gone]", E_ONLY},
         {"drop repository", NO_SNAPSHOTS, "[remove d: C-d B-d[drop repository] A-d gone]",
          "nothing; "},
         {"drop repository", SNAPSHOTS,
          "[remove d: C-m=1 C-d B-m=1 B-d[drop repository] A-m=1 A-d gone]", "nothing; "}});
}

} // namespace
