#include "Program.h"

#include "Trace.h"

namespace
{
char const* const KINDS[] = {
    "makeDriver",      "makeGroup",      "dropDriver",    "holdDriver",     "unholdDriver",
    "setInterfaces",   "addDriver",      "removeDriver*", "removeDriver",   "getDriver",
    "makeDelegate",    "dropDelegate",   "stopDelegate",  "register",       "unregister",
    "follow",          "dropKept",       "setAttachment", "setAttachment*", "getAttachment",
    "getAttachment*",  "getInterface",   "getDrivers",    "getInterfaces",  "getInfo",
    "monitor",         "group.add",      "group.remove",  "group.set",      "group.info",
    "group.follow",    "group.dropKept", "group.react",   "timeslots",      "record.make",
    "record.listener", "record.call",
};
static_assert(sizeof KINDS / sizeof KINDS[0] == static_cast<std::size_t>(Step::Kind::END),
              "one name a kind");

const IdWords OWN_IDS[] = {
    {{{0, 0, 0, 0}}, "ZERO"},     {{{0xa0, 1, 2, 3}}, "DID_A"}, {{{0xa0, 1, 2, 3}}, "DID_A_TWIN"},
    {{{0xb0, 1, 2, 3}}, "DID_B"}, {{{0xa0, 1, 2, 4}}, "DID_C"},
};

void addNumber(std::string& text, char const* name, long long number, long long usual)
{
    if (number != usual)
        text += std::string(" ") + name + "=" + std::to_string(number);
}

void addText(std::string& text, char const* name, std::string const& value)
{
    if (!value.empty())
        text += std::string(" ") + name + "=" + quoted(value);
}

void addPolicy(std::string& text, Policy const& policy)
{
    addNumber(text, "refuses", static_cast<int>(policy.refuses), 0);
    addText(text, "of", policy.name);
    addText(text, "at", policy.value);
    addText(text, "says", policy.words);
    addNumber(text, "nth", policy.nth, 1);
    addNumber(text, "mask", policy.mask, 0);
    addNumber(text, "code", policy.code, -1);
    text += policy.silent ? " silent" : "";
    text += policy.chatters ? " chatters" : "";
    text += policy.peeks ? " peeks" : "";
    text += policy.keeps ? " keeps" : "";
    text += policy.scribbles ? " scribbles" : "";
}
} // namespace

IdWords const& ownId(int index)
{
    return index == ID_ZERO ? OWN_IDS[0] : OWN_IDS[index - ID_A + 1];
}

std::string toText(Step const& step)
{
    std::string text = KINDS[static_cast<int>(step.kind)];
    addNumber(text, "slot", step.slot, 0);
    addNumber(text, "other", step.other, 0);
    addText(text, "name", step.name);
    addText(text, "key", step.key);
    addText(text, "value", step.value);
    addText(text, "text", step.text);
    addNumber(text, "id", step.id, 0);
    addNumber(text, "iid", step.iid, 0);
    for (auto const& attribute : step.attributes)
        text += " @" + quoted(attribute.first) + "=" + quoted(attribute.second);
    addNumber(text, "number", step.number, 0);
    addNumber(text, "bits", step.bits, 0);
    addNumber(text, "more", step.more, 0);
    for (std::uint32_t limit : step.limits)
        addNumber(text, "limit", limit, 0);
    text += step.veto ? " veto" : "";
    text += step.snapshot ? " snapshot" : "";
    text += step.flag ? " flag" : "";
    addNumber(text, "alias", static_cast<int>(step.alias), 0);
    addPolicy(text, step.policy);
    for (Step const& each : step.nested)
        text += "\n      " + toText(each);
    return text;
}
