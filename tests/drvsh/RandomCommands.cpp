#include "RandomCommands.h"

#include <drvsh/Words.h>

namespace
{
// What stands for an argument: d driver, g group, l listener, o observer, k key, v value,
// t timeslots, i identifier, n number, p prefix, C criteria, R refusals, x any text.
char const* const FORMS[] = {
    "driver add d",
    "driver add d --did i",
    "driver add d --iface i i",
    "driver add d --again",
    "driver remove d",
    "driver remove d --other",
    "driver show d",
    "drivers",
    "drivers --json",
    "find C",
    "find C --json",
    "listen l C",
    "listen l C --priority n",
    "listen l C --veto --priority n R",
    "listen l C --snapshot --veto R",
    "listen l --snapshot R",
    "unlisten l",
    "listeners",
    "attach d k v",
    "attach d k v",
    "attach d k v",
    "detach d k",
    "get d k",
    "attachments d",
    "group add g t",
    "group set g t",
    "group set g t",
    "group show g",
    "groups --json",
    "group observe g o --priority n",
    "group observe g o --priority n --veto R",
    "group observe g o --current --veto R",
    "group unobserve g o",
    "group unobserve g o --current",
    "driver remove g",
    "explain d l",
    "explain d l --if k=v",
    "who d",
    "whom l",
    "info",
    "info --depth n --detail n --json",
    "name build x n n / x",
    "name split x",
    "name rebuild d x",
    "port x",
    "timeslots t",
    "echo x x",
    "log n",
    "log off",
    "fails driver add d",
    "help",
    "help x",
    "load x",
};

char const* const DRIVERS[] = {"fxs 1", "fxs 2", "e1t1 1", "e1t1 2", "bri", "", "x/y z"};
char const* const GROUPS[] = {"e1t1 1/B-CHANNELS", "g", "fxs 1"};
char const* const NAMES[] = {"a", "b", "c", "desk", "guard"};
char const* const KEYS[] = {"room", "role", "k"};
char const* const VALUES[] = {"1", "12", "", "master", "left side"};
char const* const TIMESLOTS[] = {"0-3", "4-7", "1-15;17-31", "16",   "",   "0;31",
                                 "5",   "3-1", "0x0000000F", "0-31", "32", "x"};
char const* const IDENTIFIERS[] = {"DID_FXS",
                                   "DID_E1T1",
                                   "IInfo",
                                   "IDriver",
                                   "IChannelGroup",
                                   "INVALID",
                                   "14bbd19f-4ac5-6360-5b5f-1ca518e3b90f",
                                   "IInf"};
char const* const NUMBERS[] = {"0", "1", "2", "5", "4294967295", "4294967296", "-", "x"};
char const* const PREFIXES[] = {"", "f", "fxs ", "e1t1 1", "nothing"};
char const* const RULES[] = {"added",      "added fxs", "added 4-7", "set room",
                             "set room=1", "2nd",       "7",         "nonsense"};
} // namespace

std::string RandomCommands::line()
{
    std::string line = oneIn(20) ? nonsense() : command();
    if (oneIn(10))
        spoil(line);
    return line;
}

std::string RandomCommands::command()
{
    std::string const form = oneOf(FORMS);
    std::string line;
    for (std::size_t i = 0; i < form.size(); ++i) {
        bool const standsAlone = (i == 0 || form[i - 1] == ' ' || form[i - 1] == '=') &&
                                 (i + 1 == form.size() || form[i + 1] == ' ' || form[i + 1] == '=');
        line += standsAlone && form[i] != '/' ? argument(form[i]) : std::string(1, form[i]);
    }
    return line;
}

std::string RandomCommands::argument(char kind)
{
    switch (kind) {
    case 'd':
        return quoted(oneOf(DRIVERS));
    case 'g':
        return quoted(oneOf(GROUPS));
    case 'l':
    case 'o':
        return oneOf(NAMES);
    case 'k':
        return oneOf(KEYS);
    case 'v':
        return quoted(oneOf(VALUES));
    case 't':
        return quoted(oneOf(TIMESLOTS));
    case 'i':
        return oneOf(IDENTIFIERS);
    case 'n':
        return oneOf(NUMBERS);
    case 'C':
        return criteria();
    case 'R':
        return refusals();
    default:
        return quoted(nonsense());
    }
}

std::string RandomCommands::criteria()
{
    std::string text;
    if (oneIn(3))
        text += " --prefix " + quoted(oneOf(PREFIXES));
    if (oneIn(4))
        text += " --did " + oneOf(IDENTIFIERS);
    if (oneIn(4))
        text += " --iface " + oneOf(IDENTIFIERS);
    if (oneIn(3))
        text += " --attr " + quoted(oneOf(KEYS) + "=" + oneOf(VALUES));
    return text;
}

std::string RandomCommands::refusals()
{
    std::string text;
    for (unsigned count = below(3); count > 0; --count)
        text += " --refuse " + quoted(oneOf(RULES));
    return oneIn(3) ? text + " --say " + quoted(nonsense()) : text;
}

std::string RandomCommands::nonsense()
{
    std::string text;
    for (unsigned length = below(12); length > 0; --length) {
        char const c = static_cast<char>(below(256));
        text += c == '\n' ? ' ' : c;
    }
    return text;
}

void RandomCommands::spoil(std::string& line)
{
    std::size_t const at = below(static_cast<unsigned>(line.size()) + 1);
    switch (below(4)) {
    case 0:
        line.insert(at, oneIn(2) ? "'" : "\"");
        break;
    case 1:
        line.erase(at, 1 + below(5));
        break;
    case 2:
        line.insert(at, nonsense());
        break;
    default:
        line.insert(at, line.substr(at / 2));
    }
}
