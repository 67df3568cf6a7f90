#include "Identifiers.h"
#include "Json.h"
#include "Nearest.h"
#include "Shell.h"
#include "Text.h"

void check(XCode const& result, String const& reason)
{
    if (result.code() == 0)
        return;
    if (reason.isEmpty())
        throw CommandError("no reason given, code " + std::to_string(result.code()));
    throw CommandError(toStd(reason));
}

nlohmann::ordered_json driverJson(IDriver const& driver)
{
    return {{"name", toStd(driver.getDriverName())}, {"type", driver.getDID().name()}};
}

TOVA_UUID identifierArgument(std::string const& text)
{
    TOVA_UUID identifier;
    if (!readIdentifier(text, identifier))
        throw CommandError("'" + text + "' is no identifier, neither a known name nor a UUID" +
                           didYouMean(text, identifierNames()));
    return identifier;
}

IDriverRepository::Attributes attributeArguments(std::vector<std::string> const& arguments)
{
    IDriverRepository::Attributes attributes;
    for (std::string const& argument : arguments) {
        std::size_t const equals = argument.find('=');
        if (equals == std::string::npos)
            throw CommandError("'" + argument + "' is not KEY=VALUE");
        attributes.put(toString(argument.substr(0, equals)), toString(argument.substr(equals + 1)));
    }
    return attributes;
}

Refusals refusalArguments(std::vector<std::string> const& rules,
                          std::optional<std::string> const& text)
{
    Refusals refusals;
    for (std::string const& rule : rules)
        if (!refusals.add(rule))
            throw CommandError("'" + rule + "' says not what to refuse: 'added PREFIX', " +
                               "'set KEY=VALUE' or 'Nth'");
    if (text)
        refusals.say(*text);
    return refusals;
}
