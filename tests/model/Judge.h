#ifndef TESTS_MODEL_JUDGE_H
#define TESTS_MODEL_JUDGE_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Judges what a registry does when calls nest, refuse and throw. It knows no library: it is told
/// what happens, one event after the other, and says which of it is against the rules:
///
///   - a listener hears of a driver in turn: coming, attachments, going; each coming has one going,
///     unless the coming was refused, or the listener joined through a change of an attachment and
///     refused its snapshot;
///   - nobody is called after its removal returned, or when its delegate was stopped;
///   - when a removal of a driver returns, all who knew that driver have been told;
///   - only who holds a value hears that it is gone, and what is told as set is set;
///   - results say what a look right afterwards says;
///   - an operation throws what the first call-out made by it threw, and nothing else;
///   - in quiet, whoever matches is active and the last word about an attachment is true.
class Judge
{
public:
    using Table = std::vector<std::pair<std::string, std::string>>;

    struct Registration
    {
        std::string name;
        int classId = 0;     ///< 0: any
        int interfaceId = 0; ///< 0: any
        std::string prefix;
        Table attributes;
        std::uint32_t priority = 0;
        bool veto = false;
        bool snapshot = false;
    };

    struct Driver
    {
        std::string name;
        int type = 0;
        std::vector<int> interfaces;
    };

    enum class Operation {
        ADD_DRIVER,
        REMOVE_DRIVER, ///< by name or by a driver of that name
        REGISTER,
        UNREGISTER,
        SET_ATTACHMENT,
        OTHER, ///< changes nothing
    };

    enum class Method {
        ADDED,
        REMOVED,
        SET,
        CLEARED,
    };

    struct Call
    {
        Operation operation = Operation::OTHER;
        int driver = -1;       ///< ADD_DRIVER
        int registration = -1; ///< REGISTER
        std::string name;      ///< of the driver, or of the listener to remove
        std::string key;
        std::string value;
    };

    struct Outcome
    {
        std::int32_t code = 0;
        int thrown = 0; ///< which exception came out, 0: none
        std::string text;
    };

    /// What a look into the registry shows.
    struct Look
    {
        int driver = -1;         ///< the driver under the name in question, -1: none
        std::string value;       ///< the attachment in question
        bool registered = false; ///< whether the listener in question stands in the list
    };

    struct ListenerState
    {
        int registration;
        std::uint32_t counts[4]; ///< by Method
    };

    struct DriverState
    {
        int driver;
        Table attachments;
        std::vector<int> active; ///< registrations
    };

    /// The whole registry while no operation runs.
    struct State
    {
        /// Drivers or the monitor called back: an attempt may have been overtaken once it was
        /// logged, and counts though nobody was called.
        bool overtaken = false;
        std::vector<ListenerState> listeners;
        std::vector<DriverState> drivers;
    };

    // Whom the story is about; the results are the numbers used below.
    int add(Registration registration);
    int add(Driver driver);

    // Operations, properly nested with calls to observers and other call-outs.
    void begin(Call const& call);
    void end(Outcome const& outcome, Look const& look);

    // Calls to the observer of a registration.
    void beginTell(int registration, Method method, int driver, std::string const& key,
                   std::string const& value, Look const& look);
    void endTell(Outcome const& outcome);

    // Calls to a driver or, `log`, to the monitor.
    void beginCallOut(bool log = false);
    void endCallOut(int thrown);

    /// A driver is being freed. An operation frees what it removed when its result stands already,
    /// so what the destructor does cannot show in the result.
    void freeing();

    /// The registration's delegate was stopped: nothing may reach it from now on.
    void stopped(int registration);

    /// Nothing runs; this is what the registry looks like.
    void quiet(State const& state);

    /// Whether some operation under way has to pass on an exception already. A second one while
    /// the first is being handled is more than anybody promises to bear.
    bool isHandlingException() const;
    bool isQuiet() const { return frames_.empty(); }

    std::vector<std::string> const& violations() const { return violations_; }

private:
    /// The last word that a listener heard about an attachment.
    struct Word
    {
        bool set = false;
        std::string value;
        long serial = 0;
    };

    /// What a listener knows of a driver.
    struct Pair
    {
        bool in = false;
        long coming = 0;       ///< when the last coming was told
        long comingBy = 0;     ///< the operation that told it
        bool byChange = false; ///< that is a change of an attachment
        bool refused = false;  ///< it refused its snapshot
        bool goesBack = false; ///< and the way back has begun
        bool aborted = false;  ///< a driver or the monitor may have thrown into its coming
        bool exempt = false;   ///< may be inactive though it matches, having refused
        bool unsure = false;   ///< it refused while its own registration was just being undone
        std::map<std::string, Word> words;
    };

    struct Frame
    {
        enum class Kind {
            OPERATION,
            TELL,
            CALL_OUT,
        };
        Kind kind = Kind::OPERATION;
        long serial = 0;
        int thrown = 0;
        // An operation.
        Call call;
        bool logged = false;      ///< its first log line is out
        bool stopped = false;     ///< a driver or the monitor threw before that
        bool freed = false;       ///< a driver was freed by it
        std::vector<int> leaving; ///< registrations that an UNREGISTER takes out
        bool sameKey = false;     ///< a change of the same attachment ran inside
        bool readded = false;     ///< a driver of that name was added inside
        bool log = false;         ///< a call-out: to the monitor
        // A call of an observer.
        int registration = -1;
        int driver = -1;
        Method method = Method::ADDED;
        std::string key;
    };

    struct Told
    {
        Registration registration;
        bool known = false;    ///< it certainly stood in the list at some time
        bool leaving = false;  ///< its removal has begun
        bool refusing = false; ///< it has refused its registration, and may count until taken out
        bool dead = false;     ///< its removal or failed registration is over
        bool muted = false;
        std::uint32_t counts[4] = {};
    };

    void violation(std::string const& what);
    std::string describe(int registration, int driver) const;
    Pair& pair(int registration, int driver) { return pairs_[{registration, driver}]; }
    Frame const* innermostOperation() const;
    long now() { return ++clock_; }

    void noteInside(Call const& call);
    void endAddDriver(Frame const& frame, Outcome const& outcome, Look const& look);
    void endRemoveDriver(Frame const& frame);
    void endRegister(Frame const& frame, Outcome const& outcome, Look const& look);
    void endUnregister(Frame const& frame);
    void endSetAttachment(Frame const& frame, Outcome const& outcome, Look const& look);
    void leaveSilently(Frame const& frame);

    void hearAdded(int registration, int driver, Look const& look);
    void hearRemoved(int registration, int driver);
    void hearSet(int registration, int driver, std::string const& key, std::string const& value,
                 Look const& look);
    void hearCleared(int registration, int driver, std::string const& key,
                     std::string const& value);
    bool dependsOn(int registration, std::string const& key) const;
    void abort(long operation);
    void refuse(Frame const& frame, bool threw);
    static bool isOwedGoing(Pair const& known);

    bool matches(Registration const& registration, Driver const& driver, Table const& table,
                 bool without, std::string const& key) const;
    void quietDriver(State const& state, DriverState const& driver);
    void quietPair(int registration, DriverState const& driver, bool active);

    std::vector<Told> registrations_;
    std::vector<Driver> drivers_;
    std::map<std::pair<int, int>, Pair> pairs_;
    std::map<std::pair<std::string, std::string>, std::vector<std::string>> everSet_;
    std::vector<Frame> frames_;
    std::vector<std::string> violations_;
    long clock_ = 0;
};

#endif
