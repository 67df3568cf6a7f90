#ifndef BENCH_CASES_H
#define BENCH_CASES_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "Works.h"

/// One work on one system.
struct Case
{
    std::string work;
    std::string system;
    bool growsWithN; // whether the number of drivers means anything to it
    bool growsWithL; // and that of listeners
    std::unique_ptr<Work> (*make)(unsigned n, unsigned l);
};

using Cases = std::vector<Case>;

// These fill a registry: for what it takes, not for how long that takes.
constexpr char FILL[] = "fill";
constexpr char FILL_NEW[] = "fill-new";

template <class W> std::unique_ptr<Work> makeWork(unsigned n, unsigned l)
{
    return std::make_unique<W>(n, l);
}

/// Adds all works on a system.
template <class S> void addSystem(Cases& cases)
{
    const bool n = true;
    const bool l = true;
    cases.push_back({"W1", S::name(), n, !l, makeWork<LookUp<S>>});
    cases.push_back({"W1-text", S::name(), n, !l, makeWork<LookUpByCText<S>>});
    cases.push_back({"W2", S::name(), n, l, makeWork<AddRemove<S, true>>});
    cases.push_back({"W3", S::name(), n, l, makeWork<AddRemove<S, false>>});
    cases.push_back({"W4", S::name(), n, l, makeWork<Change<S>>});
    cases.push_back({"W5-narrow", S::name(), n, !l, makeWork<Query<S, true>>});
    cases.push_back({"W5-broad", S::name(), n, !l, makeWork<Query<S, false>>});
    cases.push_back({"W6-accepted", S::name(), !n, l, makeWork<Broadcast<S, false>>});
    cases.push_back({"W6-refused", S::name(), !n, l, makeWork<Broadcast<S, true>>});
    cases.push_back({"W7", S::name(), n, !l, makeWork<Register<S, false>>});
    cases.push_back({FILL, S::name(), n, l, makeWork<Fill<S, false>>});
    cases.push_back({FILL_NEW, S::name(), n, l, makeWork<Fill<S, true>>});
}

// One function a system, in a source file of its own.
void addLibrary(Cases& cases);
void addD1(Cases& cases);
void addD2(Cases& cases);
void addC1(Cases& cases);
void addE1(Cases& cases);
void addE2(Cases& cases);
void addE3(Cases& cases);

/// A case at one size, as a program reads it: "WORK SYSTEM N L OPERATIONS".
struct Order
{
    std::string work;
    std::string system;
    unsigned n = 0;
    unsigned l = 0;
    unsigned operations = 0;

    std::string text() const;
    /// Failure: ends the program, if there is no such case.
    std::unique_ptr<Work> make(Cases const& cases) const;
};

/// False at the end.
bool read(std::istream& in, Order& order);

#endif
