#ifndef TESTS_MODEL_OBSERVERS_H
#define TESTS_MODEL_OBSERVERS_H

#include "Model.h"
#include "ModelGroups.h"
#include "Policy.h"

namespace model
{
/// An observer of the repository that answers by a policy and writes down what it hears.
class ScriptedObserver : public Observer
{
public:
    ScriptedObserver(Process& process, std::string label, Policy policy = Policy())
        : process_(process), label_(std::move(label)), state_(std::move(policy))
    {}

    void follow(Policy policy) { state_ = PolicyState(std::move(policy)); }

    Code onDriverAdded(std::string& error, Event const& event) override;
    void onDriverRemoved(Event const& event) override;
    Code onDriverAttachmentSet(std::string& error, Event const& event) override;
    void onDriverAttachmentCleared(Event const& event) override;

    /// Lets the kept events go, oldest first, and tells what each held.
    void dropKept();

private:
    void look(Event const& event);

    Process& process_;
    std::string label_;
    PolicyState state_;
    std::vector<Event> kept_;
};

/// The same for the observers of a channel group.
class ScriptedGroupObserver : public GroupObserver
{
public:
    ScriptedGroupObserver(Process& process, std::string label, Policy policy = Policy())
        : process_(process), label_(std::move(label)), state_(std::move(policy))
    {}

    void follow(Policy policy) { state_ = PolicyState(std::move(policy)); }

    /// What else is done at each call; true: what can be refused is refused.
    std::function<bool()> react;

    Code onTimeslotsAdded(std::string& message, TimeslotEvent const& event) override;
    void onTimeslotsAdded(TimeslotEvent const& event) override;
    void onTimeslotsRemoved(TimeslotEvent const& event) override;

    void dropKept();

private:
    bool hear(std::string const& method, TimeslotEvent const& event);

    Process& process_;
    std::string label_;
    PolicyState state_;
    std::vector<TimeslotEvent> kept_;
};

} // namespace model

#endif
