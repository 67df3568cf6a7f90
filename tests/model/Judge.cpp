#include "Judge.h"

#include "Trace.h"

#include <algorithm>

namespace
{
bool startsWith(std::string const& text, std::string const& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

std::string valueOf(Judge::Table const& table, std::string const& key)
{
    for (auto const& entry : table)
        if (entry.first == key)
            return entry.second;
    return "";
}

template <class T> bool contains(std::vector<T> const& list, T const& wanted)
{
    return std::find(list.begin(), list.end(), wanted) != list.end();
}
} // namespace

void Judge::violation(std::string const& what)
{
    violations_.push_back(what);
}

std::string Judge::describe(int registration, int driver) const
{
    return "listener #" + std::to_string(registration) + " " +
           quoted(registrations_[static_cast<std::size_t>(registration)].registration.name) +
           (driver < 0 ? std::string()
                       : ", driver #" + std::to_string(driver) + " " +
                             quoted(drivers_[static_cast<std::size_t>(driver)].name));
}

int Judge::add(Registration registration)
{
    Told told;
    told.registration = std::move(registration);
    registrations_.push_back(std::move(told));
    return static_cast<int>(registrations_.size()) - 1;
}

int Judge::add(Driver driver)
{
    drivers_.push_back(std::move(driver));
    return static_cast<int>(drivers_.size()) - 1;
}

Judge::Frame const* Judge::innermostOperation() const
{
    for (auto at = frames_.rbegin(); at != frames_.rend(); ++at)
        if (at->kind == Frame::Kind::OPERATION)
            return &*at;
    return nullptr;
}

bool Judge::isHandlingException() const
{
    return std::any_of(frames_.begin(), frames_.end(),
                       [](Frame const& frame) { return frame.thrown != 0; });
}

/// Operations under way learn what happens inside them.
void Judge::noteInside(Call const& call)
{
    for (Frame& frame : frames_) {
        if (frame.kind != Frame::Kind::OPERATION)
            continue;
        if (call.operation == Operation::SET_ATTACHMENT && call.name == frame.call.name &&
            call.key == frame.call.key)
            frame.sameKey = true;
        if (call.operation == Operation::ADD_DRIVER && call.name == frame.call.name)
            frame.readded = true;
    }
}

void Judge::begin(Call const& call)
{
    noteInside(call);
    Frame frame;
    frame.serial = now();
    frame.call = call;
    if (call.operation == Operation::UNREGISTER)
        for (std::size_t i = 0; i < registrations_.size(); ++i)
            if (registrations_[i].known && registrations_[i].registration.name == call.name)
                frame.leaving.push_back(static_cast<int>(i));
    if (call.operation == Operation::SET_ATTACHMENT)
        everSet_[{call.name, call.key}].push_back(call.value);
    frames_.push_back(frame);
}

void Judge::end(Outcome const& outcome, Look const& look)
{
    const Frame frame = frames_.back();
    frames_.pop_back();
    if (outcome.thrown != frame.thrown)
        violation("an operation threw #" + std::to_string(outcome.thrown) +
                  ", its first call-out that threw #" + std::to_string(frame.thrown));
    leaveSilently(frame);
    switch (frame.call.operation) {
    case Operation::ADD_DRIVER:
        endAddDriver(frame, outcome, look);
        break;
    case Operation::REMOVE_DRIVER:
        if (!frame.stopped)
            endRemoveDriver(frame);
        break;
    case Operation::REGISTER:
        endRegister(frame, outcome, look);
        break;
    case Operation::UNREGISTER:
        if (!frame.stopped)
            endUnregister(frame);
        break;
    case Operation::SET_ATTACHMENT:
        endSetAttachment(frame, outcome, look);
        break;
    default:
        break;
    }
}

/// Who joined through this change and refused its snapshot is out now, without a word. Who met the
/// driver in this operation and refused its snapshot has been told the going.
void Judge::leaveSilently(Frame const& frame)
{
    for (auto& entry : pairs_) {
        Pair& known = entry.second;
        if (!known.in || !known.refused || known.comingBy != frame.serial)
            continue;
        if (!known.byChange && !registrations_[static_cast<std::size_t>(entry.first.first)].muted)
            violation(describe(entry.first.first, entry.first.second) +
                      ": refused its snapshot and was not told the going");
        known.in = false;
        known.exempt = true;
    }
}

void Judge::endAddDriver(Frame const& frame, Outcome const& outcome, Look const& look)
{
    if (outcome.thrown != 0 || frame.freed)
        return;
    const bool holds = look.driver == frame.call.driver && frame.call.driver >= 0;
    if (outcome.code == 0 && !holds)
        violation("addDriver says success for driver #" + std::to_string(frame.call.driver) +
                  ", which is not there");
    if (outcome.code != 0 && holds && !startsWith(outcome.text, "Driver already exists"))
        violation("addDriver says failure for driver #" + std::to_string(frame.call.driver) +
                  ", which is there");
    if (outcome.code == 0 && !outcome.text.empty())
        violation("addDriver succeeds with the text " + quoted(outcome.text));
}

/// Who joined through a change of an attachment and refused its snapshot, or was thrown out of it,
/// never hears of the going.
bool Judge::isOwedGoing(Pair const& known)
{
    return known.in && !((known.refused || known.aborted) && known.byChange);
}

void Judge::endRemoveDriver(Frame const& frame)
{
    for (auto const& entry : pairs_)
        if (isOwedGoing(entry.second) && entry.second.coming < frame.serial &&
            drivers_[static_cast<std::size_t>(entry.first.second)].name == frame.call.name &&
            !registrations_[static_cast<std::size_t>(entry.first.first)].muted)
            violation(describe(entry.first.first, entry.first.second) +
                      ": not told the going when the removal returned");
}

void Judge::endRegister(Frame const& frame, Outcome const& outcome, Look const& look)
{
    Told& told = registrations_[static_cast<std::size_t>(frame.call.registration)];
    if (outcome.code == 0 && outcome.thrown == 0) {
        told.known = true;
        if (!look.registered && !frame.freed)
            violation(describe(frame.call.registration, -1) + ": registered, but not in the list");
        if (!outcome.text.empty())
            violation("a registration succeeds with the text " + quoted(outcome.text));
        return;
    }
    told.dead = true;
    if (look.registered && !frame.freed)
        violation(describe(frame.call.registration, -1) + ": not registered, but in the list");
    for (auto const& entry : pairs_)
        if (entry.first.first == frame.call.registration && entry.second.in && !told.muted)
            violation(describe(entry.first.first, entry.first.second) +
                      ": the failed registration told no going");
}

void Judge::endUnregister(Frame const& frame)
{
    for (int leaving : frame.leaving)
        registrations_[static_cast<std::size_t>(leaving)].dead = true;
    for (auto const& entry : pairs_)
        if (contains(frame.leaving, entry.first.first) && isOwedGoing(entry.second) &&
            !registrations_[static_cast<std::size_t>(entry.first.first)].muted)
            violation(describe(entry.first.first, entry.first.second) +
                      ": not told the going when its removal returned");
}

void Judge::endSetAttachment(Frame const& frame, Outcome const& outcome, Look const& look)
{
    if (outcome.thrown != 0 || frame.freed)
        return;
    if (outcome.code == 0 && look.driver < 0)
        violation("setDriverAttachment succeeds for " + quoted(frame.call.name) +
                  ", which is not there");
    if (look.driver < 0 || frame.sameKey || frame.readded)
        return;
    const std::string expected = outcome.code == 0 ? frame.call.value : "";
    if (look.value != expected)
        violation("setDriverAttachment = " + std::to_string(outcome.code) + " left " +
                  quoted(look.value) + " instead of " + quoted(expected));
}

void Judge::beginCallOut(bool log)
{
    Frame frame;
    frame.log = log;
    frame.kind = Frame::Kind::CALL_OUT;
    frames_.push_back(frame);
}

void Judge::endCallOut(int thrown)
{
    const Frame over = frames_.back();
    frames_.pop_back();
    // A removal logs first; then the listener is out. Whoever throws before that stops it.
    if (!frames_.empty() && !frames_.back().logged && thrown != 0 &&
        over.kind == Frame::Kind::CALL_OUT) {
        frames_.back().stopped = true;
    } else if (over.log && !frames_.empty() && !frames_.back().logged) {
        frames_.back().logged = true;
        for (int leaving : frames_.back().leaving)
            registrations_[static_cast<std::size_t>(leaving)].leaving = true;
    }
    if (!frames_.empty() && thrown != 0 && over.kind == Frame::Kind::CALL_OUT)
        abort(frames_.back().serial);
    // The operation that made the call passes the first exception on.
    if (thrown != 0 && !frames_.empty() && frames_.back().thrown == 0)
        frames_.back().thrown = thrown;
}

void Judge::freeing()
{
    for (auto at = frames_.rbegin(); at != frames_.rend(); ++at) {
        if (at->kind != Frame::Kind::OPERATION)
            continue;
        at->freed = true;
        return;
    }
}

/// Whoever came last in this operation may just have been told more when somebody threw.
void Judge::abort(long operation)
{
    Pair* last = nullptr;
    for (auto& entry : pairs_) {
        Pair& known = entry.second;
        if (known.in && known.comingBy == operation &&
            (last == nullptr || last->coming < known.coming))
            last = &known;
    }
    if (last != nullptr)
        last->aborted = true;
}

void Judge::stopped(int registration)
{
    registrations_[static_cast<std::size_t>(registration)].muted = true;
}

void Judge::beginTell(int registration, Method method, int driver, std::string const& key,
                      std::string const& value, Look const& look)
{
    Told& told = registrations_[static_cast<std::size_t>(registration)];
    told.known = true;
    ++told.counts[static_cast<int>(method)];
    if (told.dead)
        violation(describe(registration, driver) + ": called after its removal returned");
    if (told.muted)
        violation(describe(registration, driver) + ": called though its delegate is stopped");
    switch (method) {
    case Method::ADDED:
        hearAdded(registration, driver, look);
        break;
    case Method::REMOVED:
        hearRemoved(registration, driver);
        break;
    case Method::SET:
        hearSet(registration, driver, key, value, look);
        break;
    case Method::CLEARED:
        hearCleared(registration, driver, key, value);
        break;
    }
    Frame frame;
    frame.kind = Frame::Kind::TELL;
    frame.serial = clock_;
    frame.registration = registration;
    frame.driver = driver;
    frame.method = method;
    frame.key = key;
    frames_.push_back(frame);
}

void Judge::endTell(Outcome const& outcome)
{
    const Frame frame = frames_.back();
    Told const& told = registrations_[static_cast<std::size_t>(frame.registration)];
    endCallOut(outcome.thrown);
    if (outcome.thrown != 0 || (told.registration.veto && outcome.code != 0))
        refuse(frame, outcome.thrown != 0);
}

void Judge::hearAdded(int registration, int driver, Look const& look)
{
    Pair& known = pair(registration, driver);
    if (isOwedGoing(known))
        violation(describe(registration, driver) + ": a second coming");
    if (look.driver != driver)
        violation(describe(registration, driver) + ": told the coming of who is not there");
    Frame const* const operation = innermostOperation();
    known = Pair();
    known.in = true;
    known.coming = now();
    known.comingBy = operation == nullptr ? 0 : operation->serial;
    known.byChange = operation != nullptr && operation->call.operation == Operation::SET_ATTACHMENT;
}

void Judge::hearRemoved(int registration, int driver)
{
    Pair& known = pair(registration, driver);
    if (!known.in && !known.unsure)
        violation(describe(registration, driver) + ": a going without a coming");
    Frame const* const operation = innermostOperation();
    if (known.in && known.refused && known.byChange && operation != nullptr &&
        operation->serial == known.comingBy)
        violation(describe(registration, driver) +
                  ": joined through a change, refused, and was told the going");
    known = Pair();
    now();
}

void Judge::hearSet(int registration, int driver, std::string const& key, std::string const& value,
                    Look const& look)
{
    Pair& known = pair(registration, driver);
    if (known.unsure)
        return;
    // From inside the log line of its refusal, others may still tell it what they change.
    if (!known.in || known.goesBack)
        violation(describe(registration, driver) + ": an attachment without a coming");
    if (value.empty())
        violation(describe(registration, driver) + ": told an empty value as set");
    if (look.driver != driver || look.value != value)
        violation(describe(registration, driver) + ": told " + quoted(key) + "=" + quoted(value) +
                  ", but it is " + quoted(look.value));
    Word& word = known.words[key];
    if (word.set)
        violation(describe(registration, driver) + ": told " + quoted(key) + "=" + quoted(value) +
                  " while it holds " + quoted(word.value));
    word = {true, value, now()};
}

bool Judge::dependsOn(int registration, std::string const& key) const
{
    return !valueOf(registrations_[static_cast<std::size_t>(registration)].registration.attributes,
                    key)
                .empty();
}

void Judge::hearCleared(int registration, int driver, std::string const& key,
                        std::string const& value)
{
    Pair& known = pair(registration, driver);
    if (known.unsure)
        return;
    if (!known.in)
        violation(describe(registration, driver) + ": a clear without a coming");
    const auto at = known.words.find(key);
    bool holds = at != known.words.end() && at->second.set && at->second.value == value;
    // A refused snapshot is taken back with its empty attachments.
    if (value.empty())
        holds = known.refused || known.aborted;
    // Without a snapshot, or for what its criteria imply, nobody was told the value.
    if (at == known.words.end() && !value.empty())
        holds = (!registrations_[static_cast<std::size_t>(registration)].registration.snapshot ||
                 dependsOn(registration, key)) &&
                contains(everSet_[{drivers_[static_cast<std::size_t>(driver)].name, key}], value);
    Frame const* const operation = innermostOperation();
    known.goesBack = known.goesBack ||
                     (known.refused && operation != nullptr && operation->serial == known.comingBy);
    if (!holds)
        violation(describe(registration, driver) + ": told that " + quoted(key) + "=" +
                  quoted(value) + " is gone, which it does not hold");
    known.words[key] = {false, "", now()};
}

/// A refusal counts while the listener stands and nothing newer was told about what it answers.
/// An exception out of a snapshot takes the coming back even then, and nobody has heard the value
/// that it threw at.
void Judge::refuse(Frame const& frame, bool threw)
{
    Pair& known = pair(frame.registration, frame.driver);
    Told& told = registrations_[static_cast<std::size_t>(frame.registration)];
    Frame const* const operation = innermostOperation();
    if (!known.in || (frame.method != Method::ADDED && frame.method != Method::SET))
        return;
    const bool joining = operation != nullptr && operation->serial == known.comingBy;
    const auto word = known.words.find(frame.key);
    const bool replaced = frame.method == Method::SET &&
                          (word == known.words.end() || word->second.serial != frame.serial);
    if (told.leaving) {
        if (threw && frame.method == Method::SET && !replaced)
            word->second = {false, "", frame.serial};
        return;
    }
    if (replaced && !(threw && joining))
        return;
    if (frame.method == Method::ADDED && known.coming != frame.serial)
        return;
    if (told.refusing) {
        known = Pair();
        known.unsure = true;
        return;
    }
    if (operation != nullptr && operation->call.operation == Operation::REGISTER &&
        operation->call.registration == frame.registration)
        told.refusing = true;
    if (frame.method == Method::ADDED) {
        const bool byChange = known.byChange;
        known = Pair();
        known.exempt = byChange;
        return;
    }
    if (!replaced)
        known.words[frame.key] = {false, "", frame.serial};
    known.refused = joining;
}
