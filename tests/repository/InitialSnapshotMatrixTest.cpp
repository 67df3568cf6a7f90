#include <support/ScriptMatrix.h>

namespace
{

// B registers, and does it when it hears of m=1 in its initial snapshot of d; n=1 is still to come.
// A and C know all of that.

const MatrixScene INITIAL = {
    "B+m=1", "m=1", SNAPSHOTS,
    [](Scene& scene, Terms const& terms) {
        scene.driver("d").publish("n", "1");
        prepareAll(scene, terms);
        scene.unlisten("B");
    },
    [](Scene& scene, Terms const& terms) { scene.listen("B", 20, terms); }};

const char ALL_IN[] = "e(A B C) d m=1 n=1(A B C); A B C";

TEST(InitialSnapshotMatrix, ListenersComeAndGo)
{
    checkMatrix(INITIAL,
                {// Its final snapshot takes back what it has heard.
                 {"unlisten B", SNAPSHOTS,
                  "[listen B: B+e B+d B+m=1[unlisten B: B-m=1 B-d B-e] "
                  "-1<Driver repository observer 'B' does not exist>]",
                  "e(A C) d m=1 n=1(A C); A C"},
                 {"listen B", SNAPSHOTS,
                  "[listen B: B+e B+d B+m=1"
                  "[listen B: -1<Driver repository observer 'B' already exists>] B+n=1 ok]",
                  ALL_IN},
                 {"unlisten A", SNAPSHOTS,
                  "[listen B: B+e B+d B+m=1[unlisten A: A-n=1 A-m=1 A-d A-e] B+n=1 ok]",
                  "e(B C) d m=1 n=1(B C); B C"},
                 {"unlisten C", SNAPSHOTS,
                  "[listen B: B+e B+d B+m=1[unlisten C: C-n=1 C-m=1 C-d C-e] B+n=1 ok]",
                  "e(A B) d m=1 n=1(A B); A B"},
                 {"listen around", SNAPSHOTS,
                  "[listen B: B+e B+d B+m=1[listen M: M+e M+d M+m=1 M+n=1 ok]"
                  "[listen N: N+e N+d N+m=1 N+n=1 ok] B+n=1 ok]",
                  "e(A M B N C) d m=1 n=1(A M B N C); A M B N C"}});
}

TEST(InitialSnapshotMatrix, DriversComeAndGo)
{
    checkMatrix(
        INITIAL,
        {{"remove d", SNAPSHOTS,
          "[listen B: B+e B+d B+m=1"
          "[remove d: C-n=1 C-m=1 C-d B-m=1 B-d A-n=1 A-m=1 A-d] ok]",
          "e(A B C); A B C"},
         {"remove e", SNAPSHOTS, "[listen B: B+e B+d B+m=1[remove e: C-e B-e A-e] B+n=1 ok]",
          "d m=1 n=1(A B C); A B C"},
         {"add d", SNAPSHOTS,
          "[listen B: B+e B+d B+m=1"
          "[add d: -1<Driver already exists (CDriverRepo): d>] B+n=1 ok]",
          ALL_IN},
         // B came before f, so f meets B, once.
         {"add f", SNAPSHOTS, "[listen B: B+e B+d B+m=1[add f: A+f B+f C+f ok] B+n=1 ok]",
          "e(A B C) d m=1 n=1(A B C) f(A B C); A B C"},
         {"re-add d", SNAPSHOTS,
          "[listen B: B+e B+d B+m=1"
          "[remove d: C-n=1 C-m=1 C-d B-m=1 B-d A-n=1 A-m=1 A-d]"
          "[add d: A+d A+m=1 A+n=1 B+d B+m=1 B+n=1 C+d C+m=1 C+n=1 ok] ok]",
          ALL_IN},
         {"drop d", SNAPSHOTS, "[listen B: B+e B+d B+m=1[drop d] B+n=1 ok]", ALL_IN}});
}

TEST(InitialSnapshotMatrix, AttachmentsChange)
{
    checkMatrix(
        INITIAL,
        {{"m=2", SNAPSHOTS,
          "[listen B: B+e B+d B+m=1"
          "[m=2: C-m=1 B-m=1 A-m=1 A+m=2 B+m=2 C+m=2 ok] B+n=1 ok]",
          "e(A B C) d m=2 n=1(A B C); A B C"},
         {"m=", SNAPSHOTS, "[listen B: B+e B+d B+m=1[m=: C-m=1 B-m=1 A-m=1 ok] B+n=1 ok]",
          "e(A B C) d m= n=1(A B C); A B C"},
         // B has not heard of n=1. The change tells it the new value; the snapshot does not again.
         {"n=2", SNAPSHOTS, "[listen B: B+e B+d B+m=1[n=2: C-n=1 A-n=1 A+n=2 B+n=2 C+n=2 ok] ok]",
          "e(A B C) d m=1 n=2(A B C); A B C"},
         {"n=", SNAPSHOTS, "[listen B: B+e B+d B+m=1[n=: C-n=1 A-n=1 ok] ok]",
          "e(A B C) d m=1 n=(A B C); A B C"},
         {"j=1", SNAPSHOTS, "[listen B: B+e B+d B+m=1[j=1: A+j=1 B+j=1 C+j=1 ok] B+n=1 ok]",
          "e(A B C) d m=1 n=1 j=1(A B C); A B C"}});
}

TEST(InitialSnapshotMatrix, LooksAndAnswers)
{
    checkMatrix(INITIAL,
                {{"query", SNAPSHOTS, "[listen B: B+e B+d B+m=1[drivers: e d] B+n=1 ok]", ALL_IN},
                 {"info", SNAPSHOTS,
                  "[listen B: B+e B+d B+m=1[info: e(A B C) d m=1 n=1(A B C)] B+n=1 ok]", ALL_IN},
                 {"refuse", SNAPSHOT, "[listen B: B+e B+d B!m=1 B+n=1 ok]", ALL_IN},
                 // The driver whose snapshot was refused goes first, then those accepted before.
                 {"refuse", VETO_SNAPSHOT, "[listen B: B+e B+d B!m=1 B-d B-e 7<no>]",
                  "e(A C) d m=1 n=1(A C); A C"},
                 {"throw", SNAPSHOTS, "[listen B: B+e B+d B+m=1 B-d B-e thrown]",
                  "e(A C) d m=1 n=1(A C); A C"},
                 {"drop repository", SNAPSHOTS,
                  "[listen B: B+e B+d B+m=1[drop repository] B+n=1 gone ok]", "nothing; "}});
}

} // namespace
