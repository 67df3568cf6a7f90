#include <support/ScriptMatrix.h>

namespace
{

// B's registration is removed, and B does it when it hears in its final snapshot that n=1 of d
// goes; m=1, the driver itself and driver e are still to go. There is no answer to give, so nothing
// to refuse.

const MatrixScene FINAL = {"B-n=1", nullptr, SNAPSHOTS,
                           [](Scene& scene, Terms const& terms) {
                               scene.driver("d").publish("n", "1");
                               prepareAll(scene, terms);
                           },
                           [](Scene& scene, Terms const&) { scene.unlisten("B"); }};

const char REST_IN[] = "e(A C) d m=1 n=1(A C); A C";

TEST(FinalSnapshotMatrix, ListenersComeAndGo)
{
    checkMatrix(
        FINAL,
        {// Whoever names the leaving listener first finishes its farewells.
         {"unlisten B", SNAPSHOTS, "[unlisten B: B-n=1[unlisten B: B-m=1 B-d B-e]]", REST_IN},
         {"listen B", SNAPSHOTS,
          "[unlisten B: B-n=1[listen B: B-m=1 B-d B-e B+e B+d B+m=1 B+n=1 ok]]",
          "e(A B C) d m=1 n=1(A B C); A B C"},
         {"unlisten A", SNAPSHOTS,
          "[unlisten B: B-n=1[unlisten A: A-n=1 A-m=1 A-d A-e] B-m=1 B-d B-e]",
          "e(C) d m=1 n=1(C); C"},
         {"unlisten C", SNAPSHOTS,
          "[unlisten B: B-n=1[unlisten C: C-n=1 C-m=1 C-d C-e] B-m=1 B-d B-e]",
          "e(A) d m=1 n=1(A); A"},
         {"listen around", SNAPSHOTS,
          "[unlisten B: B-n=1[listen M: M+e M+d M+m=1 M+n=1 ok][listen N: N+e N+d N+m=1 N+n=1 ok] "
          "B-m=1 B-d B-e]",
          "e(A M N C) d m=1 n=1(A M N C); A M N C"}});
}

TEST(FinalSnapshotMatrix, DriversComeAndGo)
{
    checkMatrix(
        FINAL,
        {// Everybody parts from d, in turn; B hears the rest of what it is owed.
         {"remove d", SNAPSHOTS,
          "[unlisten B: B-n=1[remove d: C-n=1 C-m=1 C-d B-m=1 B-d A-n=1 A-m=1 A-d] B-e]",
          "e(A C); A C"},
         // B has not parted from e.
         {"remove e", SNAPSHOTS, "[unlisten B: B-n=1[remove e: C-e B-e A-e] B-m=1 B-d]",
          "d m=1 n=1(A C); A C"},
         {"add d", SNAPSHOTS,
          "[unlisten B: B-n=1[add d: -1<Driver already exists (CDriverRepo): d>] B-m=1 B-d B-e]",
          REST_IN},
         // B is out of the list: newcomers don't meet it.
         {"add f", SNAPSHOTS, "[unlisten B: B-n=1[add f: A+f C+f ok] B-m=1 B-d B-e]",
          "e(A C) d m=1 n=1(A C) f(A C); A C"},
         {"re-add d", SNAPSHOTS,
          "[unlisten B: B-n=1[remove d: C-n=1 C-m=1 C-d B-m=1 B-d A-n=1 A-m=1 A-d]"
          "[add d: A+d A+m=1 A+n=1 C+d C+m=1 C+n=1 ok] B-e]",
          REST_IN},
         {"drop d", SNAPSHOTS, "[unlisten B: B-n=1[drop d] B-m=1 B-d B-e]", REST_IN}});
}

TEST(FinalSnapshotMatrix, AttachmentsChange)
{
    checkMatrix(
        FINAL,
        {// n is gone for B; what becomes of it now is not B's business.
         {"n=2", SNAPSHOTS, "[unlisten B: B-n=1[n=2: C-n=1 A-n=1 A+n=2 C+n=2 ok] B-m=1 B-d B-e]",
          "e(A C) d m=1 n=2(A C); A C"},
         {"n=", SNAPSHOTS, "[unlisten B: B-n=1[n=: C-n=1 A-n=1 ok] B-m=1 B-d B-e]",
          "e(A C) d m=1 n=(A C); A C"},
         // B still holds m=1, and hears in its turn that it is gone.
         {"m=2", SNAPSHOTS, "[unlisten B: B-n=1[m=2: C-m=1 B-m=1 A-m=1 A+m=2 C+m=2 ok] B-d B-e]",
          "e(A C) d m=2 n=1(A C); A C"},
         {"m=", SNAPSHOTS, "[unlisten B: B-n=1[m=: C-m=1 B-m=1 A-m=1 ok] B-d B-e]",
          "e(A C) d m= n=1(A C); A C"},
         {"j=1", SNAPSHOTS, "[unlisten B: B-n=1[j=1: A+j=1 C+j=1 ok] B-m=1 B-d B-e]",
          "e(A C) d m=1 n=1 j=1(A C); A C"}});
}

TEST(FinalSnapshotMatrix, LooksAndTheRest)
{
    checkMatrix(FINAL,
                {{"query", SNAPSHOTS, "[unlisten B: B-n=1[drivers: e d] B-m=1 B-d B-e]", REST_IN},
                 // B has begun to part from d, not from e, and is in the list no more.
                 {"info", SNAPSHOTS,
                  "[unlisten B: B-n=1[info: e(A B C) d m=1 n=1(A C)] B-m=1 B-d B-e]", REST_IN},
                 {"throw", SNAPSHOTS, "[unlisten B: B-n=1 B-m=1 B-d B-e thrown]", REST_IN},
                 {"drop repository", SNAPSHOTS,
                  "[unlisten B: B-n=1[drop repository] B-m=1 B-d B-e gone]", "nothing; "}});
}

} // namespace
