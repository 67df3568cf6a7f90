#ifndef TESTS_FAILURE_WORLD_H
#define TESTS_FAILURE_WORLD_H

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <utility/InfoContainer.h>

#include <support/GroupFixture.h>
#include <support/RepositoryFixture.h>

#include "CallOuts.h"

/// How an operation came out: its code, and the text that it left.
struct Outcome
{
    int code = 0;
    std::string text;
};

/// A repository and a channel group with everybody around them, where each call-out may fail, and
/// which asks for no memory that the library could be refused.
///
/// At its end everything is taken out.
///
/// Everything has a short name: drivers "e", listeners "A", observers of the group "a". Verbs call
/// the library; `outcome` is that of the one that ended last.
class World
{
public:
    /// `allMayRefuse`: every listener and observer has the right of veto, whatever its plan says.
    explicit World(bool allMayRefuse = false);
    ~World();
    World(World const&) = delete;
    World& operator=(World const&) = delete;

    CallOuts callOuts;

    /// Says how listener `name` is registered, from now on.
    void plan(char const* name, unsigned priority, Terms const& terms);
    /// Says how an observer of the group is registered.
    void planObserver(char const* name, unsigned priority, bool veto, bool notifyCurrent);
    /// Lets the one who hears `what` ("A+d", "A-e.k=1", "a+f0", ...) do something, once. What it
    /// throws goes through to the library.
    void on(std::string const& what, std::function<void()> reaction);
    /// Whether who does something from inside catches what a call-out throws there.
    bool guarded = false;
    /// Whether a listener may miss a going because somebody failed while it was coming: who joins
    /// through an attachment and then refuses a part of its snapshot is not told the going.
    bool mayMissGoings = false;
    /// Lets the one who hears `what` refuse it.
    void refuse(std::string const& what) { refusals_.insert(what); }
    /// Lets a driver set an attachment on itself when a repository takes it in.
    void publish(char const* driver, char const* key, char const* value);

    void add(char const* driver);
    void remove(char const* driver);
    void removeByName(char const* driver);
    /// Registers a listener with a delegate of the world's.
    void listen(char const* name);
    /// Registers it by the form that takes an observer and makes a delegate itself.
    void listenPlainly(char const* name);
    void unlisten(char const* name);
    void set(char const* driver, char const* key, char const* value);
    void setByDriver(char const* driver, char const* key, char const* value);
    void observe(char const* name);
    void unobserve(char const* name, bool notifyCurrent);
    void timeslots(unsigned mask);

    CDriverRepository& repository() { return *repository_; }
    TestGroup& group() { return *group_.get(); }
    IDriver* driver(char const* name);
    TestDelegate* delegate(char const* name);
    /// A text that stays as long as the world.
    String const& text(std::string const& text);

    Outcome outcome;
    /// What had been asked of the heap when somebody last refused.
    std::uint64_t requestsAtRefusal = 0;

    /// What can be seen of the state without changing it: diagnostics without the addresses of
    /// observers, and without the statistics unless asked for, references, timeslots.
    std::string look(bool statistics = false);
    /// What is heard when a driver, a listener, an attachment and timeslots come and go: shows
    /// what `look` can't. Takes them all back but for the traces of attachments.
    std::string probe();
    /// What was heard, one a line.
    std::string heard() const;
    /// The log lines of the error level.
    std::vector<std::string> const& failures() const { return failures_; }
    void forget();

    /// Takes everything out, and tells what is wrong with it: references that are left, or stories
    /// that no listener may hear, each on a line; the empty text is good.
    std::string end();

private:
    class Driver;
    class Listening;
    class Observing;
    class Log;
    struct Heard
    {
        std::string what;
        bool failed; // refused, or left by an exception
        int inside;  // the index of what was being told just then, -1 without
        bool isOurs() const { return what != FAILED; }
    };
    static char const* const FAILED; // stands among what was heard where somebody failed
    struct ListenerPlan
    {
        unsigned priority = 0;
        Terms terms;
    };
    struct ObserverPlan
    {
        unsigned priority = 0;
        bool veto = false;
        bool notifyCurrent = false;
    };

    void note(XCode const& rc, String const& error);
    std::string nameOf(IDriver const* driver) const;
    std::string references() const;
    std::string liesTold() const;
    bool hear(std::string const& what, String* error);
    void react(std::function<void()> const& reaction) const;
    std::vector<Heard> settled() const;
    Listening& listening(char const* name);
    Observing& observing(char const* name);

    const bool allMayRefuse_;
    std::map<std::string, String, std::less<>> texts_;
    std::map<std::string, ListenerPlan> plans_;
    std::map<std::string, ObserverPlan> observerPlans_;
    std::map<std::string, std::function<void()>> reactions_;
    std::set<std::string> refusals_;
    std::vector<Heard> heard_;
    int telling_ = -1;
    bool ended_ = false;
    std::vector<std::string> failures_;
    std::map<std::string, std::unique_ptr<Listening>> listeners_;
    std::map<std::string, std::unique_ptr<Observing>> observers_;
    std::map<std::string, TYPtr<Driver>> drivers_;
    TYEventLoop loop_;
    TestRepository* repository_;
    TYPtr<TestGroup> group_;
    std::unique_ptr<Log> log_;
};

#endif
