#ifndef TESTS_MODEL_FIXTURE_H
#define TESTS_MODEL_FIXTURE_H

#include "ModelObservers.h"

#include <gtest/gtest.h>

/// A repository of the model with verbs, so that a test reads as a script. A listener, its
/// observer and its driver share one name; log lines are off until a test asks for them.
class ModelFixture : public ::testing::Test
{
protected:
    ModelFixture()
    {
        process_.monitorPresent = false;
        process_.pointerText = [](void const* p) {
            return std::string(p == nullptr ? "(nil)" : "<pointer>");
        };
    }

    model::Driver& make(std::string const& name, model::Identifier const& did = {})
    {
        drivers_.push_back(std::make_unique<model::Driver>(process_, name, did, name));
        return *drivers_.back();
    }

    model::Code add(std::string const& name) { return add(make(name)); }
    model::Code add(model::Driver& driver)
    {
        const model::Code rc = repository_.addDriver(error_, &driver);
        return rc;
    }

    model::ScriptedObserver& observer(std::string const& label, Policy const& policy = {})
    {
        observers_.push_back(std::make_unique<model::ScriptedObserver>(process_, label, policy));
        return *observers_.back();
    }

    /// A listener with veto and snapshot that selects everything.
    static model::Listener wants(std::string const& name, std::uint32_t priority = 0)
    {
        model::Listener l;
        l.name = name;
        l.priority = priority;
        l.rightOfVeto = true;
        l.snapshot = true;
        return l;
    }

    model::Code listen(model::Listener const& l, Policy const& policy = {})
    {
        return repository_.addObserver(error_, l, &observer(l.name, policy));
    }
    model::Code listen(std::string const& name, std::uint32_t priority = 0,
                       Policy const& policy = {})
    {
        return listen(wants(name, priority), policy);
    }

    model::Code attach(std::string const& driver, std::string const& key, std::string const& value)
    {
        return repository_.setDriverAttachment(error_, driver, key, value);
    }

    static Policy refuseAll(std::string const& words)
    {
        Policy policy;
        policy.refuses = Policy::Refuses::ALWAYS;
        policy.words = words;
        return policy;
    }
    static Policy refuseAdded(std::string const& prefix, std::string const& words)
    {
        Policy policy = refuseAll(words);
        policy.refuses = Policy::Refuses::ADDED;
        policy.name = prefix;
        return policy;
    }
    static Policy refuseSet(std::string const& key, std::string const& value,
                            std::string const& words)
    {
        Policy policy = refuseAll(words);
        policy.refuses = Policy::Refuses::SET;
        policy.name = key;
        policy.value = value;
        return policy;
    }

    /// What happened since the last look, without setDriverRepository unless asked for.
    std::string heard(bool all = false)
    {
        std::string text;
        for (std::string const& line : process_.trace.lines())
            if (all || line.find(".setDriverRepository") == std::string::npos)
                text += line + "\n";
        process_.trace.clear();
        return text;
    }

    /// The rows as "depth.detail key=value" lines.
    std::string rows(model::InfoLimits const& limits, std::string const& prefix = "")
    {
        std::vector<model::InfoRow> list;
        repository_.getInfo(list, limits, prefix);
        return text(list);
    }
    static std::string text(std::vector<model::InfoRow> const& list)
    {
        std::string out;
        for (model::InfoRow const& row : list)
            out += std::to_string(row.depth) + "." + std::to_string(row.detail) + " " + row.key +
                   "=" + row.value + "\n";
        return out;
    }

    model::Process process_;
    model::Repository repository_{process_};
    std::string error_ = "junk";

private:
    std::vector<std::unique_ptr<model::Driver>> drivers_;
    std::vector<std::unique_ptr<model::ScriptedObserver>> observers_;
};

#endif
