#include <support/ScriptMatrix.h>

namespace
{

// B does it when it hears that k=1 is set. A has heard of that, C has not. All have heard of m=1
// if they have snapshots.

const MatrixScene SET = {"B+k=1", "k=1", EVERY, prepareAll,
                         [](Scene& scene, Terms const&) { scene.attach("k=1"); }};

const char ALL_IN[] = "e(A B C) d m=1 k=1(A B C); A B C";

TEST(SetMatrix, ListenersComeAndGo)
{
    checkMatrix(
        SET,
        {{"unlisten B", NO_SNAPSHOTS, "[k=1: A+k=1 B+k=1[unlisten B: B-d B-e] C+k=1 ok]",
          "e(A C) d m=1 k=1(A C); A C"},
         {"unlisten B", SNAPSHOTS, "[k=1: A+k=1 B+k=1[unlisten B: B-k=1 B-m=1 B-d B-e] C+k=1 ok]",
          "e(A C) d m=1 k=1(A C); A C"},
         {"unlisten A", NO_SNAPSHOTS, "[k=1: A+k=1 B+k=1[unlisten A: A-d A-e] C+k=1 ok]",
          "e(B C) d m=1 k=1(B C); B C"},
         {"unlisten A", SNAPSHOTS, "[k=1: A+k=1 B+k=1[unlisten A: A-k=1 A-m=1 A-d A-e] C+k=1 ok]",
          "e(B C) d m=1 k=1(B C); B C"},
         // Only who heard a value hears that it is gone.
         {"unlisten C", NO_SNAPSHOTS, "[k=1: A+k=1 B+k=1[unlisten C: C-d C-e] ok]",
          "e(A B) d m=1 k=1(A B); A B"},
         {"unlisten C", SNAPSHOTS, "[k=1: A+k=1 B+k=1[unlisten C: C-m=1 C-d C-e] ok]",
          "e(A B) d m=1 k=1(A B); A B"},
         // Newcomers find k=1 there, and are told by their snapshot or not at all.
         {"listen around", NO_SNAPSHOTS,
          "[k=1: A+k=1 B+k=1[listen M: M+e M+d ok][listen N: N+e N+d ok] C+k=1 ok]",
          "e(A M B N C) d m=1 k=1(A M B N C); A M B N C"},
         {"listen around", SNAPSHOTS,
          "[k=1: A+k=1 B+k=1[listen M: M+e M+d M+m=1 M+k=1 ok]"
          "[listen N: N+e N+d N+m=1 N+k=1 ok] C+k=1 ok]",
          "e(A M B N C) d m=1 k=1(A M B N C); A M B N C"}});
}

TEST(SetMatrix, DriversComeAndGo)
{
    checkMatrix(
        SET,
        {{"remove d", NO_SNAPSHOTS,
          "[k=1: A+k=1 B+k=1[remove d: C-d B-d A-d] -1<Driver 'd' does not exist>]",
          "e(A B C); A B C"},
         {"remove d", SNAPSHOTS,
          "[k=1: A+k=1 B+k=1[remove d: C-m=1 C-d B-k=1 B-m=1 B-d A-k=1 A-m=1 A-d] "
          "-1<Driver 'd' does not exist>]",
          "e(A B C); A B C"},
         {"remove e", EVERY, "[k=1: A+k=1 B+k=1[remove e: C-e B-e A-e] C+k=1 ok]",
          "d m=1 k=1(A B C); A B C"},
         {"add d", EVERY,
          "[k=1: A+k=1 B+k=1[add d: -1<Driver already exists (CDriverRepo): d>] C+k=1 ok]", ALL_IN},
         {"add f", EVERY, "[k=1: A+k=1 B+k=1[add f: A+f B+f C+f ok] C+k=1 ok]",
          "e(A B C) d m=1 k=1(A B C) f(A B C); A B C"},
         // The driver is in again, but left in between, and k=1 with it.
         {"re-add d", NO_SNAPSHOTS,
          "[k=1: A+k=1 B+k=1[remove d: C-d B-d A-d][add d: A+d B+d C+d ok] "
          "-1<Driver 'd' does not exist>]",
          "e(A B C) d m=1(A B C); A B C"},
         {"re-add d", SNAPSHOTS,
          "[k=1: A+k=1 B+k=1[remove d: C-m=1 C-d B-k=1 B-m=1 B-d A-k=1 A-m=1 A-d]"
          "[add d: A+d A+m=1 B+d B+m=1 C+d C+m=1 ok] -1<Driver 'd' does not exist>]",
          "e(A B C) d m=1(A B C); A B C"},
         {"drop d", EVERY, "[k=1: A+k=1 B+k=1[drop d] C+k=1 ok]", ALL_IN}});
}

TEST(SetMatrix, AttachmentsChange)
{
    checkMatrix(
        SET,
        {// All had heard of m alike, so snapshots make no difference here. A change of the same key
         // takes the value back from those who heard it, and ends the interrupted change.
         {"k=2", EVERY, "[k=1: A+k=1 B+k=1[k=2: B-k=1 A-k=1 A+k=2 B+k=2 C+k=2 ok] ok]",
          "e(A B C) d m=1 k=2(A B C); A B C"},
         {"k=", EVERY, "[k=1: A+k=1 B+k=1[k=: B-k=1 A-k=1 ok] ok]",
          "e(A B C) d m=1 k=(A B C); A B C"},
         // That very value is on its way already.
         {"k=1", EVERY, "[k=1: A+k=1 B+k=1[k=1: ok] C+k=1 ok]", ALL_IN},
         // A change of another key simply runs.
         {"j=1", EVERY, "[k=1: A+k=1 B+k=1[j=1: A+j=1 B+j=1 C+j=1 ok] C+k=1 ok]",
          "e(A B C) d m=1 k=1 j=1(A B C); A B C"},
         {"m=2", EVERY, "[k=1: A+k=1 B+k=1[m=2: C-m=1 B-m=1 A-m=1 A+m=2 B+m=2 C+m=2 ok] C+k=1 ok]",
          "e(A B C) d m=2 k=1(A B C); A B C"},
         {"m=", EVERY, "[k=1: A+k=1 B+k=1[m=: C-m=1 B-m=1 A-m=1 ok] C+k=1 ok]",
          "e(A B C) d m= k=1(A B C); A B C"}});
}

TEST(SetMatrix, LooksAndAnswers)
{
    checkMatrix(
        SET,
        {{"query", EVERY, "[k=1: A+k=1 B+k=1[drivers: e d] C+k=1 ok]", ALL_IN},
         {"info", EVERY, "[k=1: A+k=1 B+k=1[info: e(A B C) d m=1 k=1(A B C)] C+k=1 ok]", ALL_IN},
         // Only the right of veto makes a failure a refusal. The key is left cleared.
         {"refuse", BARE | SNAPSHOT, "[k=1: A+k=1 B!k=1 C+k=1 ok]", ALL_IN},
         {"refuse", VETO | VETO_SNAPSHOT, "[k=1: A+k=1 B!k=1 A-k=1 7<no>]",
          "e(A B C) d m=1 k=(A B C); A B C"},
         // With or without the right: what is thrown rolls back.
         {"throw", EVERY, "[k=1: A+k=1 B+k=1 A-k=1 thrown]", "e(A B C) d m=1 k=(A B C); A B C"},
         {"drop repository", EVERY, "[k=1: A+k=1 B+k=1[drop repository] C+k=1 gone ok]",
          "nothing; "}});
}

} // namespace
