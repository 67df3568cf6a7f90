#ifndef TESTS_MODEL_NESTED_RUN_H
#define TESTS_MODEL_NESTED_RUN_H

#include "Judge.h"
#include "LibraryObjects.h"
#include "NestedProgram.h"

/// Runs a program with nesting calls on the library and has it judged.
class NestedRun
{
public:
    explicit NestedRun(NestedProgram const& program);
    ~NestedRun();
    NestedRun(NestedRun const&) = delete;
    NestedRun& operator=(NestedRun const&) = delete;

    /// Runs it up to the first violation. With `told`, writes the story down.
    void run(bool told = false);

    std::vector<std::string> const& violations() const { return violations_; }
    std::string const& story() const { return story_; }
    std::uint64_t calls() const { return calls_; }
    std::uint64_t hash() const { return hash_; }

private:
    class Observer;
    class Driver;
    class Repository;
    class Sink;
    class Entering;
    struct Thrown
    {
        int id;
    };
    struct Registration;
    struct Made
    {
        library::Counted count;
        Entering* entering = nullptr;
        Driver* object = nullptr; ///< null once destroyed
    };

    // What an action does.
    void perform(Action const& action);
    void makeDriver(Action const& action);
    void dropDriver(int slot);
    void addDriver(Action const& action);
    void removeDriver(Action const& action);
    void registerListener(Action const& action);
    void unregister(std::string const& name);
    void stop(Action const& action);
    void setAttachment(Action const& action);
    void look(Action const& action);
    void leave();
    void clearOut();
    template <class Body> void ignoring(Body const& body);

    /// Runs one operation of the library between the judge's begin and end.
    template <class Call> void operate(Judge::Call const& call, Call const& body);
    Judge::Look lookAfter(Judge::Call const& call);

    // What a call-out does.
    Reaction const* next(CallOut callOut);
    Judge::Outcome react(CallOut callOut);
    void callOut(CallOut kind, std::string const& what);
    Judge::Outcome tell(int registration, Judge::Method method, String* error,
                        ObserverEvent<IDriverRepository>& event);

    // Looks into the registry; nothing reacts to them.
    Judge::Look lookAt(std::string const& driver, std::string const& key);
    bool isRegistered(int registration);
    Judge::State state();
    int stoppedOne(std::string const& name) const;
    void checkQuiet();
    void checkReferences();
    int idOf(IDriver const* driver) const;

    void say(std::string const& line);
    void adoptViolations();
    void complain(std::string const& what) { violations_.push_back(what); }

    NestedProgram program_;
    Judge judge_;
    library::Counted repositoryCount_;
    Repository* repository_;
    std::unique_ptr<Sink> sink_;
    std::vector<std::unique_ptr<Made>> drivers_;               ///< by the judge's number
    std::array<int, NESTED_SLOTS> slots_;                      ///< numbers of drivers, -1: empty
    std::vector<std::unique_ptr<Registration>> registrations_; ///< by the judge's number
    std::array<std::uint32_t, static_cast<std::size_t>(CallOut::END)> ordinals_ = {};
    std::vector<std::string> violations_;
    std::string story_;
    std::uint64_t calls_ = 0;
    std::uint64_t hash_ = 14695981039346656037u;
    int depth_ = 0; ///< operations of the library under way
    int indent_ = 0;
    int looking_ = 0;       ///< above 0: call-outs are ours
    int otherCallOuts_ = 0; ///< call-outs under way that are not to an observer
    int notEntered_ = 0;    ///< additions under way that nobody was told of yet
    int lastThrown_ = 0;
    bool overtaken_ = false; ///< drivers or the monitor called back
    bool told_ = false;
    bool left_ = false; ///< the repository was given back
    bool destroyed_ = false;
};

#endif
