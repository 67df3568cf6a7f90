#include "CallText.h"

namespace call_text
{
namespace
{
std::string pair(std::string const& key, std::string const& value)
{
    return " " + quoted(key) + "=" + quoted(value);
}

std::string given(std::string const& error)
{
    return error.empty() ? "" : " given " + quoted(error);
}
} // namespace

std::string added(std::string const& observer, std::string const& driver, std::string const& error)
{
    return observer + ".onDriverAdded " + driver + given(error);
}

std::string removed(std::string const& observer, std::string const& driver)
{
    return observer + ".onDriverRemoved " + driver;
}

std::string set(std::string const& observer, std::string const& driver, std::string const& key,
                std::string const& value, std::string const& error)
{
    return observer + ".onDriverAttachmentSet " + driver + pair(key, value) + given(error);
}

std::string cleared(std::string const& observer, std::string const& driver, std::string const& key,
                    std::string const& value)
{
    return observer + ".onDriverAttachmentCleared " + driver + pair(key, value);
}

void answer(Trace& trace, std::int32_t code, std::string const& before, std::string const& after)
{
    if (code != 0 || before != after)
        trace.add("  answers " + std::to_string(code) + " " + quoted(after));
}

std::string timeslots(std::string const& observer, std::string const& method,
                      std::string const& group, std::uint32_t before, std::uint32_t after,
                      std::uint32_t changed)
{
    return observer + "." + method + " " + group + " " + hex8(before) + "->" + hex8(after) + ": " +
           hex8(changed);
}

std::string seen(bool registered, std::string const& attachment, bool holdsRepository)
{
    return std::string("  sees ") + (registered ? "known " : "unknown ") + quoted(attachment) +
           (holdsRepository ? " held" : " free");
}

std::string result(std::string const& operation, std::int32_t code, std::string const& error)
{
    return operation + " = " + std::to_string(code) + " " + quoted(error);
}
} // namespace call_text
