#ifndef REPOSITORY_EXPLANATIONTEXT_H
#define REPOSITORY_EXPLANATIONTEXT_H

#include <string>

#include <drvrepo/Explain.h>

// Explanations as texts that a test compares as a whole.

/// "type any", "interface IInfo: none FAILS", "name fxs: fxs 1", "room=1: 12", one a line.
inline std::string textOf(TOVA_List<Explanation::Criterion> const& criteria)
{
    using Criterion = Explanation::Criterion;
    const auto named = [](TOVA_UUID const& id, char const* without) {
        return std::string(id == TOVA_UUID::INVALID() ? without : id.name());
    };
    std::string text;
    for (Criterion const& at : criteria) {
        switch (at.kind) {
        case Criterion::DRIVER_TYPE:
            text += "type " + named(at.wantedId, "any") + ": " + named(at.metId, "none");
            break;
        case Criterion::INTERFACE:
            text += "interface " + named(at.wantedId, "any") + ": " + named(at.metId, "none");
            break;
        case Criterion::NAME:
            text += std::string("name ") + at.wanted.cString() + ": " + at.met.cString();
            break;
        case Criterion::ATTACHMENT:
            text +=
                std::string(at.key.cString()) + "=" + at.wanted.cString() + ": " + at.met.cString();
            break;
        }
        text += at.holds ? "\n" : " FAILS\n";
    }
    return text;
}

/// "never offered", "inactive, count 1", "active, count 2", and behind it "selected" or not, and
/// whom notifications reach if that is nobody.
inline std::string textOf(Explanation const& explanation)
{
    char const* const states[] = {"never offered", "inactive", "active"};
    char const* const delegates[] = {", no delegate", ", stopped", ""};
    return states[explanation.state] + std::string(", count ") + std::to_string(explanation.count) +
           (explanation.selected ? ", selected" : ", not selected") +
           delegates[explanation.delegate];
}

/// As RecordingObserver writes it: "added fxs 1", "set fxs 1 key=value", one a line.
inline std::string textOf(WhatIf::Notification const& told, String const& driver)
{
    char const* const verbs[] = {"added ", "removed ", "set ", "cleared "};
    std::string text = std::string(verbs[told.kind]) + driver.cString();
    if (told.kind == CDriverRepository::Listener::ATTACHMENT_SET ||
        told.kind == CDriverRepository::Listener::ATTACHMENT_CLEARED)
        text += std::string(" ") + told.key.cString() + "=" + told.value.cString();
    return text;
}

/// The outcome, and behind a colon what would be told.
inline std::string textOf(WhatIf const& whatIf)
{
    char const* const outcomes[] = {"stays out:", "stays in:", "joins:", "leaves:", "rejoins:"};
    std::string text = outcomes[whatIf.outcome];
    for (WhatIf::Notification const& told : whatIf.told)
        text += " " + textOf(told, whatIf.driver) + ";";
    return text;
}

#endif
