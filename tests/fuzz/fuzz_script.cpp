#include <sstream>

#include <drvsh/Script.h>
#include <drvsh/Shell.h>
#include <drvsh/TextNarrator.h>

#include "Fuzz.h"

// Scripts of the shell: whatever stands in them, the shell goes on, complains with the place, and
// does the same again.

namespace
{

struct Said
{
    bool good;
    std::string out;
    std::string err;
};

Said run(std::string const& commands)
{
    std::ostringstream out;
    std::ostringstream err;
    TextNarrator narrator(out, err);
    Shell shell(narrator);
    Script script = Script::text("t", commands);
    const bool keepGoing = true;
    const bool good = shell.run(script, keepGoing);
    return {good, out.str(), err.str()};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    const std::string commands = Input(data, size).rest();
    // A file of any name might be a device; and observers' addresses differ from run to run.
    if (commands.find("load") != std::string::npos)
        return 0;
    const Said said = run(commands);
    require(said.good == said.err.empty(), "complains if and only if something went wrong");
    for (std::size_t at = 0; at < said.err.size(); at = said.err.find('\n', at) + 1) {
        require(said.err.find('\n', at) != std::string::npos, "whole lines");
        if (said.err[at] != ' ')
            require(said.err.compare(at, 2, "t:") == 0, "the place of what went wrong");
    }
    const Said again = run(commands);
    require(again.good == said.good && again.err == said.err, "does the same again");
    if (said.out.find("0x") == std::string::npos)
        require(again.out == said.out, "says the same again");
    return 0;
}
