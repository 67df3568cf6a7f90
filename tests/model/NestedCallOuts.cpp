#include "NestedObjects.h"
#include "Raised.h"

// What a nested run does when the library calls out.

namespace
{
char const* const METHODS[] = {"added", "removed", "set", "cleared"};
} // namespace

Reaction const* NestedRun::next(CallOut callOut)
{
    const std::uint32_t ordinal = ordinals_[static_cast<std::size_t>(callOut)]++;
    for (Reaction const& reaction : program_.reactions)
        if (reaction.callOut == callOut && reaction.ordinal == ordinal)
            return &reaction;
    return nullptr;
}

/// What the program does at this call-out; throws if that throws.
Judge::Outcome NestedRun::react(CallOut callOut)
{
    Judge::Outcome outcome;
    Reaction const* const reaction = next(callOut);
    if (reaction == nullptr)
        return outcome;
    overtaken_ |= callOut > CallOut::CLEARED;
    for (Action const& action : reaction->actions) {
        try {
            const Raised indented(indent_);
            perform(action);
        } catch (Thrown const&) {
            if (!reaction->catches && !judge_.isHandlingException())
                throw;
        }
    }
    if (reaction->answer == Reaction::Answer::REFUSE)
        outcome.code = reaction->code;
    if (reaction->answer == Reaction::Answer::THROW && !judge_.isHandlingException())
        throw Thrown{++lastThrown_};
    return outcome;
}

/// A call of a driver or the monitor.
void NestedRun::callOut(CallOut kind, std::string const& what)
{
    if (looking_ > 0 || left_ || depth_ == 0)
        return;
    if (kind != CallOut::GET_NAME && kind != CallOut::GET_TYPE && kind != CallOut::QUERY_INTERFACE)
        say(std::string("- ") + nameOf(kind) + " " + what);
    const Raised indented(indent_);
    const Raised other(otherCallOuts_);
    if (kind == CallOut::DESTRUCTOR)
        judge_.freeing();
    judge_.beginCallOut(kind == CallOut::LOG);
    int thrown = 0;
    try {
        react(kind);
    } catch (Thrown const& exception) {
        say(std::string("throws #") + std::to_string(exception.id) + " from " + nameOf(kind));
        thrown = exception.id;
    }
    judge_.endCallOut(thrown);
    if (thrown != 0)
        throw Thrown{thrown};
}

Judge::Outcome NestedRun::tell(int registration, Judge::Method method, String* error,
                               ObserverEvent<IDriverRepository>& event)
{
    auto& ev = static_cast<IDriverRepository::EvDriver&>(event);
    const bool attachment = method == Judge::Method::SET || method == Judge::Method::CLEARED;
    std::string key;
    std::string value;
    if (attachment) {
        key = library::text(static_cast<IDriverRepository::EvAttachment&>(event).key);
        value = library::text(static_cast<IDriverRepository::EvAttachment&>(event).value);
    }
    const int driver = idOf(ev.driver.get());
    say("* #" + std::to_string(registration) + " " + METHODS[static_cast<int>(method)] + " #" +
        std::to_string(driver) + (attachment ? " " + quoted(key) + "=" + quoted(value) : ""));
    if (left_) {
        complain("listener #" + std::to_string(registration) + " is called when all were removed");
        return {};
    }
    const Raised indented(indent_);
    Entering* const entering = registrations_[static_cast<std::size_t>(registration)]->entering;
    if (entering != nullptr)
        entering->entered();
    std::string name;
    {
        const Raised looking(looking_);
        name = library::text(ev.driver.get()->getDriverName());
    }
    judge_.beginTell(registration, method, driver, key, value, lookAt(name, key));
    Judge::Outcome outcome;
    try {
        outcome = react(static_cast<CallOut>(method));
    } catch (Thrown const& thrown) {
        say("throws #" + std::to_string(thrown.id));
        outcome.thrown = thrown.id;
    }
    if (outcome.code != 0 && error != nullptr) {
        *error = "refused";
        say("refuses " + std::to_string(outcome.code));
    }
    if (!left_)
        judge_.endTell(outcome);
    if (outcome.thrown != 0)
        throw Thrown{outcome.thrown};
    return outcome;
}
