#include "ModelObservers.h"

#include "CallText.h"

namespace model
{
void ScriptedObserver::look(Event const& event)
{
    if (state_.policy().peeks) {
        Repository& repository = *event.source;
        const bool registered = repository.getDriver(event.driver->name(), nullptr) == 0;
        process_.trace.add(call_text::seen(registered,
                                           repository.getDriverAttachment(event.driver, event.key),
                                           event.driver->repository() != nullptr));
    }
    if (state_.policy().keeps) {
        event.source->addRef();
        event.driver->addRef();
        kept_.push_back(event);
    }
}

Code ScriptedObserver::onDriverAdded(std::string& error, Event const& event)
{
    const std::string before = error;
    process_.trace.add(call_text::added(label_, event.driver->label(), error));
    look(event);
    const Code code = state_.added(event.driver->name(), error);
    call_text::answer(process_.trace, code, before, error);
    return code;
}

void ScriptedObserver::onDriverRemoved(Event const& event)
{
    process_.trace.add(call_text::removed(label_, event.driver->label()));
    look(event);
}

Code ScriptedObserver::onDriverAttachmentSet(std::string& error, Event const& event)
{
    const std::string before = error;
    process_.trace.add(
        call_text::set(label_, event.driver->label(), event.key, event.value, error));
    look(event);
    const Code code = state_.set(event.key, event.value, error);
    call_text::answer(process_.trace, code, before, error);
    return code;
}

void ScriptedObserver::onDriverAttachmentCleared(Event const& event)
{
    process_.trace.add(call_text::cleared(label_, event.driver->label(), event.key, event.value));
    look(event);
}

void ScriptedObserver::dropKept()
{
    for (Event const& event : kept_) {
        process_.trace.add(label_ + " kept " + event.driver->label() + " " + quoted(event.key) +
                           "=" + quoted(event.value));
        event.driver->release();
        event.source->release();
    }
    kept_.clear();
}

/// Returns whether a reaction wants to refuse.
bool ScriptedGroupObserver::hear(std::string const& method, TimeslotEvent const& event)
{
    process_.trace.add(call_text::timeslots(label_, method, event.source->label(), event.before,
                                            event.after, event.changed));
    if (state_.policy().peeks)
        process_.trace.add("  sees " + hex8(event.source->getTimeslots()));
    if (state_.policy().keeps) {
        event.source->addRef();
        kept_.push_back(event);
    }
    return react && react();
}

Code ScriptedGroupObserver::onTimeslotsAdded(std::string& message, TimeslotEvent const& event)
{
    const std::string before = message;
    const bool refuses = hear("onTimeslotsAdded with veto", event);
    Code code = state_.timeslots(event.changed, message);
    if (refuses)
        code = -1;
    call_text::answer(process_.trace, code, before, message);
    return code;
}

void ScriptedGroupObserver::onTimeslotsAdded(TimeslotEvent const& event)
{
    hear("onTimeslotsAdded", event);
}

void ScriptedGroupObserver::onTimeslotsRemoved(TimeslotEvent const& event)
{
    hear("onTimeslotsRemoved", event);
}

void ScriptedGroupObserver::dropKept()
{
    for (TimeslotEvent const& event : kept_) {
        process_.trace.add(call_text::timeslots(label_, "kept", event.source->label(), event.before,
                                                event.after, event.changed));
        event.source->release();
    }
    kept_.clear();
}

} // namespace model
