#include "Explanations.h"

#include "Notice.h"
#include "Text.h"

#include <algorithm>
#include <vector>

namespace
{
using Criterion = Explanation::Criterion;

std::string quoted(String const& text)
{
    return "'" + toStd(text) + "'";
}

/// Why the criterion fails, as a part of a sentence about the driver.
std::string failureText(Criterion const& criterion)
{
    switch (criterion.kind) {
    case Criterion::DRIVER_TYPE:
        return std::string("its type is ") + criterion.metId.name() + ", not " +
               criterion.wantedId.name();
    case Criterion::INTERFACE:
        return std::string("it does not offer ") + criterion.wantedId.name();
    case Criterion::NAME:
        return "its name does not begin with " + quoted(criterion.wanted);
    case Criterion::ATTACHMENT:
        break;
    }
    return "attachment " + toStd(criterion.key) +
           (criterion.met.isEmpty() ? " is not set, and should begin with "
                                    : " is " + quoted(criterion.met) + ", and should begin with ") +
           quoted(criterion.wanted);
}

/// Why the listener is not selected: the first criterion that fails; empty when it is.
std::string reasonText(Explanation const& explanation)
{
    auto const& criteria = explanation.criteria;
    auto const fails = std::find_if(criteria.begin(), criteria.end(),
                                    [](Criterion const& at) { return !at.holds; });
    return fails != criteria.end() ? failureText(*fails) : "";
}

std::string criterionName(Criterion const& criterion)
{
    switch (criterion.kind) {
    case Criterion::DRIVER_TYPE:
        return "type";
    case Criterion::INTERFACE:
        return "interface";
    case Criterion::NAME:
        return "name";
    case Criterion::ATTACHMENT:
        break;
    }
    return "attachment";
}

std::string entryName(Explanation::State state)
{
    char const* const names[] = {"never offered", "inactive", "active"};
    return names[state];
}

std::string delegateName(Explanation::Delegate delegate)
{
    char const* const names[] = {"none", "stopped", "hearing"};
    return names[delegate];
}

std::string outcomeName(WhatIf::Outcome outcome)
{
    char const* const names[] = {"stays out", "stays in", "joins", "leaves", "rejoins"};
    return names[outcome];
}

bool isOfAttachment(WhatIf::Notification const& told)
{
    return told.kind == CDriverRepository::Listener::ATTACHMENT_SET ||
           told.kind == CDriverRepository::Listener::ATTACHMENT_CLEARED;
}

std::string word(WhatIf::Notification const& told)
{
    Notice::What const kinds[] = {Notice::What::Added, Notice::What::Removed, Notice::What::Set,
                                  Notice::What::Cleared};
    return word(kinds[told.kind]);
}

std::string wantedText(Criterion const& criterion)
{
    bool const byId =
        criterion.kind == Criterion::DRIVER_TYPE || criterion.kind == Criterion::INTERFACE;
    if (byId ? criterion.wantedId == TOVA_UUID::INVALID() : criterion.wanted.isEmpty())
        return "any";
    return byId ? criterion.wantedId.name() : "must begin with " + quoted(criterion.wanted);
}

std::string metText(Criterion const& criterion)
{
    switch (criterion.kind) {
    case Criterion::DRIVER_TYPE:
        return std::string(", is ") + criterion.metId.name();
    case Criterion::INTERFACE:
        if (criterion.wantedId == TOVA_UUID::INVALID())
            return "";
        return criterion.holds ? ", is offered" : ", is not offered";
    case Criterion::NAME:
        return ", is " + quoted(criterion.met);
    case Criterion::ATTACHMENT:
        break;
    }
    return criterion.met.isEmpty() ? ", is not set" : ", is " + quoted(criterion.met);
}

/// An identifier's name; null for the invalid one.
Json idJson(TOVA_UUID const& identifier)
{
    return identifier == TOVA_UUID::INVALID() ? Json() : Json(identifier.name());
}

Json criterionJson(Criterion const& criterion)
{
    Json json = {{"criterion", criterionName(criterion)}};
    if (criterion.kind == Criterion::ATTACHMENT)
        json["key"] = toStd(criterion.key);
    if (criterion.kind == Criterion::NAME || criterion.kind == Criterion::ATTACHMENT) {
        json["wanted"] = toStd(criterion.wanted);
        json["met"] = toStd(criterion.met);
    } else {
        json["wanted"] = idJson(criterion.wantedId);
        json["met"] = idJson(criterion.metId);
    }
    json["holds"] = criterion.holds;
    return json;
}
} // namespace

std::string shortText(Explanation const& explanation)
{
    std::string const reason = reasonText(explanation);
    switch (explanation.state) {
    case Explanation::ACTIVE:
        return reason.empty() ? "told" : "told, although " + reason;
    case Explanation::INACTIVE:
        return reason.empty() ? "not told, although its criteria hold now" : "not told: " + reason;
    case Explanation::NEVER_OFFERED:
        break;
    }
    return "not told: they have not met yet";
}

std::string verdictText(Explanation const& explanation)
{
    std::string text = shortText(explanation);
    text.insert(text.find("told") + 4, " about " + toStd(explanation.driver));
    return toStd(explanation.listener) + " is " + text;
}

std::string verdictText(WhatIf const& whatIf)
{
    std::string const would = toStd(whatIf.listener) + " would ";
    std::string const driver = toStd(whatIf.driver);
    std::string const reason = reasonText(whatIf);
    switch (whatIf.outcome) {
    case WhatIf::STAYS_OUT:
        return would + "not be told about " + driver + (reason.empty() ? "" : ": " + reason);
    case WhatIf::STAYS_IN:
        return would + (whatIf.told.isEmpty() ? "hear nothing" : "hear:");
    case WhatIf::JOINS:
        return would + "join " + driver + " and hear:";
    case WhatIf::LEAVES:
        return would + "leave " + driver + " and hear:";
    case WhatIf::REJOINS:
        break;
    }
    return would + "leave " + driver + ", join it again and hear:";
}

std::string noticesText(WhatIf const& whatIf)
{
    std::string text;
    for (WhatIf::Notification const& told : whatIf.told) {
        text += (text.empty() ? "" : ", ") + word(told);
        if (isOfAttachment(told))
            text += " " + toStd(told.key) + "=" + toStd(told.value);
    }
    return text;
}

Rows explanationRows(Explanation const& explanation)
{
    Rows rows;
    for (Criterion const& at : explanation.criteria)
        rows.emplace_back(criterionName(at) +
                              (at.kind == Criterion::ATTACHMENT ? " " + toStd(at.key) : ""),
                          wantedText(at) + metText(at) + (at.holds ? "" : ": fails"));
    rows.emplace_back("entry",
                      entryName(explanation.state) +
                          (explanation.count > 1
                               ? ", recorded " + std::to_string(explanation.count) + " times"
                               : ""));
    if (explanation.delegate != Explanation::HEARING)
        rows.emplace_back("delegate", delegateName(explanation.delegate));
    rows.emplace_back("priority", std::to_string(explanation.priority));
    rows.emplace_back("right of veto", explanation.rightOfVeto ? "yes" : "no");
    rows.emplace_back("snapshot", explanation.wantsSnapshot ? "yes" : "no");
    return rows;
}

Json explanationJson(Explanation const& explanation)
{
    Json json = {{"driver", toStd(explanation.driver)},
                 {"listener", toStd(explanation.listener)},
                 {"told", explanation.state == Explanation::ACTIVE},
                 {"selected", explanation.selected},
                 {"criteria", Json::array()}};
    for (Criterion const& at : explanation.criteria)
        json["criteria"].push_back(criterionJson(at));
    json["entry"] = entryName(explanation.state);
    json["count"] = explanation.count;
    json["delegate"] = delegateName(explanation.delegate);
    json["priority"] = explanation.priority;
    json["veto"] = explanation.rightOfVeto;
    json["snapshot"] = explanation.wantsSnapshot;
    return json;
}

Json explanationJson(WhatIf const& whatIf)
{
    Json json = explanationJson(static_cast<Explanation const&>(whatIf));
    json["outcome"] = outcomeName(whatIf.outcome);
    json["hears"] = Json::array();
    for (WhatIf::Notification const& told : whatIf.told) {
        Json notice = {{"what", word(told)}};
        if (isOfAttachment(told)) {
            notice["key"] = toStd(told.key);
            notice["value"] = toStd(told.value);
        }
        json["hears"].push_back(notice);
    }
    return json;
}
