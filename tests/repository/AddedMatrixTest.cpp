#include <support/ScriptMatrix.h>

namespace
{

// B does it when it hears that d is added. It counts as told then; its snapshot is still to come.

const MatrixScene ADDED = {"B+d", "d", EVERY,
                           [](Scene& scene, Terms const& terms) {
                               prepareAll(scene, terms);
                               scene.remove("d");
                           },
                           [](Scene& scene, Terms const&) { scene.add("d"); }};

const char ALL_IN[] = "e(A B C) d m=1(A B C); A B C";

TEST(AddedMatrix, ListenersComeAndGo)
{
    checkMatrix(
        ADDED,
        {// The last comer parts first. One who leaves before its snapshot has no final one.
         {"unlisten B", NO_SNAPSHOTS, "[add d: A+d B+d[unlisten B: B-d B-e] C+d ok]",
          "e(A C) d m=1(A C); A C"},
         {"unlisten B", SNAPSHOTS, "[add d: A+d A+m=1 B+d[unlisten B: B-d B-e] C+d C+m=1 ok]",
          "e(A C) d m=1(A C); A C"},
         {"unlisten A", NO_SNAPSHOTS, "[add d: A+d B+d[unlisten A: A-d A-e] C+d ok]",
          "e(B C) d m=1(B C); B C"},
         {"unlisten A", SNAPSHOTS,
          "[add d: A+d A+m=1 B+d[unlisten A: A-m=1 A-d A-e] B+m=1 C+d C+m=1 ok]",
          "e(B C) d m=1(B C); B C"},
         // C has not met d yet.
         {"unlisten C", NO_SNAPSHOTS, "[add d: A+d B+d[unlisten C: C-e] ok]",
          "e(A B) d m=1(A B); A B"},
         {"unlisten C", SNAPSHOTS, "[add d: A+d A+m=1 B+d[unlisten C: C-e] B+m=1 ok]",
          "e(A B) d m=1(A B); A B"},
         // The later one meets the earlier one: d is not offered to M and N again.
         {"listen around", NO_SNAPSHOTS,
          "[add d: A+d B+d[listen M: M+e M+d ok][listen N: N+e N+d ok] C+d ok]",
          "e(A M B N C) d m=1(A M B N C); A M B N C"},
         {"listen around", SNAPSHOTS,
          "[add d: A+d A+m=1 B+d[listen M: M+e M+d M+m=1 ok][listen N: N+e N+d N+m=1 ok] B+m=1 "
          "C+d C+m=1 ok]",
          "e(A M B N C) d m=1(A M B N C); A M B N C"}});
}

TEST(AddedMatrix, DriversComeAndGo)
{
    checkMatrix(
        ADDED,
        {{"remove d", NO_SNAPSHOTS,
          "[add d: A+d B+d[remove d: B-d A-d] -1<Driver 'd' does not exist>]", "e(A B C); A B C"},
         {"remove d", SNAPSHOTS,
          "[add d: A+d A+m=1 B+d[remove d: B-d A-m=1 A-d] -1<Driver 'd' does not exist>]",
          "e(A B C); A B C"},
         {"remove e", NO_SNAPSHOTS, "[add d: A+d B+d[remove e: C-e B-e A-e] C+d ok]",
          "d m=1(A B C); A B C"},
         {"remove e", SNAPSHOTS, "[add d: A+d A+m=1 B+d[remove e: C-e B-e A-e] B+m=1 C+d C+m=1 ok]",
          "d m=1(A B C); A B C"},
         {"add d", NO_SNAPSHOTS,
          "[add d: A+d B+d[add d: -1<Driver already exists (CDriverRepo): d>] C+d ok]", ALL_IN},
         {"add d", SNAPSHOTS,
          "[add d: A+d A+m=1 B+d[add d: -1<Driver already exists (CDriverRepo): d>] B+m=1 C+d "
          "C+m=1 ok]",
          ALL_IN},
         {"add f", NO_SNAPSHOTS, "[add d: A+d B+d[add f: A+f B+f C+f ok] C+d ok]",
          "e(A B C) d m=1(A B C) f(A B C); A B C"},
         {"add f", SNAPSHOTS, "[add d: A+d A+m=1 B+d[add f: A+f B+f C+f ok] B+m=1 C+d C+m=1 ok]",
          "e(A B C) d m=1(A B C) f(A B C); A B C"},
         // The driver is in, so the outer call has succeeded as well.
         {"re-add d", NO_SNAPSHOTS, "[add d: A+d B+d[remove d: B-d A-d][add d: A+d B+d C+d ok] ok]",
          ALL_IN},
         {"re-add d", SNAPSHOTS,
          "[add d: A+d A+m=1 B+d[remove d: B-d A-m=1 A-d]"
          "[add d: A+d A+m=1 B+d B+m=1 C+d C+m=1 ok] ok]",
          ALL_IN},
         {"drop d", NO_SNAPSHOTS, "[add d: A+d B+d[drop d] C+d ok]", ALL_IN},
         {"drop d", SNAPSHOTS, "[add d: A+d A+m=1 B+d[drop d] B+m=1 C+d C+m=1 ok]", ALL_IN}});
}

TEST(AddedMatrix, AttachmentsChange)
{
    checkMatrix(
        ADDED,
        {// Who has no snapshots hears every change from its coming on. Who has hears of m in its
         // snapshot, as m stands then.
         {"m=2", NO_SNAPSHOTS, "[add d: A+d B+d[m=2: B-m=1 A-m=1 A+m=2 B+m=2 ok] C+d ok]",
          "e(A B C) d m=2(A B C); A B C"},
         {"m=2", SNAPSHOTS, "[add d: A+d A+m=1 B+d[m=2: A-m=1 A+m=2 ok] B+m=2 C+d C+m=2 ok]",
          "e(A B C) d m=2(A B C); A B C"},
         {"m=", NO_SNAPSHOTS, "[add d: A+d B+d[m=: B-m=1 A-m=1 ok] C+d ok]",
          "e(A B C) d m=(A B C); A B C"},
         {"m=", SNAPSHOTS, "[add d: A+d A+m=1 B+d[m=: A-m=1 ok] C+d ok]",
          "e(A B C) d m=(A B C); A B C"},
         {"j=1", NO_SNAPSHOTS, "[add d: A+d B+d[j=1: A+j=1 B+j=1 ok] C+d ok]",
          "e(A B C) d m=1 j=1(A B C); A B C"},
         {"j=1", SNAPSHOTS, "[add d: A+d A+m=1 B+d[j=1: A+j=1 ok] B+m=1 B+j=1 C+d C+m=1 C+j=1 ok]",
          "e(A B C) d m=1 j=1(A B C); A B C"}});
}

TEST(AddedMatrix, LooksAndAnswers)
{
    checkMatrix(
        ADDED,
        {{"query", NO_SNAPSHOTS, "[add d: A+d B+d[drivers: e d] C+d ok]", ALL_IN},
         {"query", SNAPSHOTS, "[add d: A+d A+m=1 B+d[drivers: e d] B+m=1 C+d C+m=1 ok]", ALL_IN},
         {"info", NO_SNAPSHOTS, "[add d: A+d B+d[info: e(A B C) d m=1(A B)] C+d ok]", ALL_IN},
         {"info", SNAPSHOTS, "[add d: A+d A+m=1 B+d[info: e(A B C) d m=1(A B)] B+m=1 C+d C+m=1 ok]",
          ALL_IN},
         // Only the right of veto makes a failure a refusal.
         {"refuse", BARE, "[add d: A+d B!d C+d ok]", ALL_IN},
         {"refuse", SNAPSHOT, "[add d: A+d A+m=1 B!d B+m=1 C+d C+m=1 ok]", ALL_IN},
         {"refuse", VETO, "[add d: A+d B!d A-d 7<no>]", "e(A B C); A B C"},
         {"refuse", VETO_SNAPSHOT, "[add d: A+d A+m=1 B!d A-m=1 A-d 7<no>]", "e(A B C); A B C"},
         // With or without the right: what is thrown rolls back.
         {"throw", NO_SNAPSHOTS, "[add d: A+d B+d A-d thrown]", "e(A B C); A B C"},
         {"throw", SNAPSHOTS, "[add d: A+d A+m=1 B+d A-m=1 A-d thrown]", "e(A B C); A B C"},
         // The call itself keeps the repository until it ends.
         {"drop repository", NO_SNAPSHOTS, "[add d: A+d B+d[drop repository] C+d gone ok]",
          "nothing; "},
         {"drop repository", SNAPSHOTS,
          "[add d: A+d A+m=1 B+d[drop repository] B+m=1 C+d C+m=1 gone ok]", "nothing; "}});
}

} // namespace
