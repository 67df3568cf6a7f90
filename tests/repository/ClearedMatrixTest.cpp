#include <support/ScriptMatrix.h>

namespace
{

// B does it when it hears that k=1 is cleared. C has heard of that, A has not. There is no answer
// to give, so nothing to refuse.

const MatrixScene CLEARED = {"B-k=1", nullptr, EVERY,
                             [](Scene& scene, Terms const& terms) {
                                 prepareAll(scene, terms);
                                 scene.attach("k=1");
                             },
                             [](Scene& scene, Terms const&) { scene.attach("k="); }};

const char ALL_IN[] = "e(A B C) d m=1 k=(A B C); A B C";

TEST(ClearedMatrix, ListenersComeAndGo)
{
    checkMatrix(
        CLEARED,
        {{"unlisten B", NO_SNAPSHOTS, "[k=: C-k=1 B-k=1[unlisten B: B-d B-e] A-k=1 ok]",
          "e(A C) d m=1 k=(A C); A C"},
         {"unlisten B", SNAPSHOTS, "[k=: C-k=1 B-k=1[unlisten B: B-m=1 B-d B-e] A-k=1 ok]",
          "e(A C) d m=1 k=(A C); A C"},
         // A still holds k=1, which its final snapshot takes back.
         {"unlisten A", NO_SNAPSHOTS, "[k=: C-k=1 B-k=1[unlisten A: A-d A-e] ok]",
          "e(B C) d m=1 k=(B C); B C"},
         {"unlisten A", SNAPSHOTS, "[k=: C-k=1 B-k=1[unlisten A: A-k=1 A-m=1 A-d A-e] ok]",
          "e(B C) d m=1 k=(B C); B C"},
         {"unlisten C", NO_SNAPSHOTS, "[k=: C-k=1 B-k=1[unlisten C: C-d C-e] A-k=1 ok]",
          "e(A B) d m=1 k=(A B); A B"},
         {"unlisten C", SNAPSHOTS, "[k=: C-k=1 B-k=1[unlisten C: C-m=1 C-d C-e] A-k=1 ok]",
          "e(A B) d m=1 k=(A B); A B"},
         // Newcomers find k cleared; M stands before A's turn and is passed over.
         {"listen around", NO_SNAPSHOTS,
          "[k=: C-k=1 B-k=1[listen M: M+e M+d ok][listen N: N+e N+d ok] A-k=1 ok]",
          "e(A M B N C) d m=1 k=(A M B N C); A M B N C"},
         {"listen around", SNAPSHOTS,
          "[k=: C-k=1 B-k=1[listen M: M+e M+d M+m=1 ok][listen N: N+e N+d N+m=1 ok] A-k=1 ok]",
          "e(A M B N C) d m=1 k=(A M B N C); A M B N C"}});
}

TEST(ClearedMatrix, DriversComeAndGo)
{
    checkMatrix(
        CLEARED,
        {{"remove d", NO_SNAPSHOTS,
          "[k=: C-k=1 B-k=1[remove d: C-d B-d A-d] -1<Driver 'd' does not exist>]",
          "e(A B C); A B C"},
         {"remove d", SNAPSHOTS,
          "[k=: C-k=1 B-k=1[remove d: C-m=1 C-d B-m=1 B-d A-k=1 A-m=1 A-d] "
          "-1<Driver 'd' does not exist>]",
          "e(A B C); A B C"},
         {"remove e", EVERY, "[k=: C-k=1 B-k=1[remove e: C-e B-e A-e] A-k=1 ok]",
          "d m=1 k=(A B C); A B C"},
         {"add d", EVERY,
          "[k=: C-k=1 B-k=1[add d: -1<Driver already exists (CDriverRepo): d>] A-k=1 ok]", ALL_IN},
         {"add f", EVERY, "[k=: C-k=1 B-k=1[add f: A+f B+f C+f ok] A-k=1 ok]",
          "e(A B C) d m=1 k=(A B C) f(A B C); A B C"},
         {"re-add d", NO_SNAPSHOTS,
          "[k=: C-k=1 B-k=1[remove d: C-d B-d A-d][add d: A+d B+d C+d ok] "
          "-1<Driver 'd' does not exist>]",
          "e(A B C) d m=1(A B C); A B C"},
         {"re-add d", SNAPSHOTS,
          "[k=: C-k=1 B-k=1[remove d: C-m=1 C-d B-m=1 B-d A-k=1 A-m=1 A-d]"
          "[add d: A+d A+m=1 B+d B+m=1 C+d C+m=1 ok] -1<Driver 'd' does not exist>]",
          "e(A B C) d m=1(A B C); A B C"},
         {"drop d", EVERY, "[k=: C-k=1 B-k=1[drop d] A-k=1 ok]", ALL_IN}});
}

TEST(ClearedMatrix, AttachmentsChange)
{
    checkMatrix(
        CLEARED,
        {// All had heard of m and k alike, so snapshots make no difference here. A change of the
         // same key first finishes telling that the old value is gone.
         {"k=2", EVERY, "[k=: C-k=1 B-k=1[k=2: A-k=1 A+k=2 B+k=2 C+k=2 ok] ok]",
          "e(A B C) d m=1 k=2(A B C); A B C"},
         {"k=1", EVERY, "[k=: C-k=1 B-k=1[k=1: A-k=1 A+k=1 B+k=1 C+k=1 ok] ok]",
          "e(A B C) d m=1 k=1(A B C); A B C"},
         {"k=", EVERY, "[k=: C-k=1 B-k=1[k=: A-k=1 ok] ok]", ALL_IN},
         // A change of another key simply runs.
         {"j=1", EVERY, "[k=: C-k=1 B-k=1[j=1: A+j=1 B+j=1 C+j=1 ok] A-k=1 ok]",
          "e(A B C) d m=1 k= j=1(A B C); A B C"},
         {"m=2", EVERY, "[k=: C-k=1 B-k=1[m=2: C-m=1 B-m=1 A-m=1 A+m=2 B+m=2 C+m=2 ok] A-k=1 ok]",
          "e(A B C) d m=2 k=(A B C); A B C"},
         {"m=", EVERY, "[k=: C-k=1 B-k=1[m=: C-m=1 B-m=1 A-m=1 ok] A-k=1 ok]",
          "e(A B C) d m= k=(A B C); A B C"}});
}

TEST(ClearedMatrix, LooksAndTheRest)
{
    checkMatrix(CLEARED, {{"query", EVERY, "[k=: C-k=1 B-k=1[drivers: e d] A-k=1 ok]", ALL_IN},
                          {"info", EVERY,
                           "[k=: C-k=1 B-k=1[info: e(A B C) d m=1 k=(A B C)] A-k=1 ok]", ALL_IN},
                          // A going is finished before the exception goes on.
                          {"throw", EVERY, "[k=: C-k=1 B-k=1 A-k=1 thrown]", ALL_IN},
                          {"drop repository", EVERY,
                           "[k=: C-k=1 B-k=1[drop repository] A-k=1 gone ok]", "nothing; "}});
}

} // namespace
