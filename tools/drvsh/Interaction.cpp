#include "Interaction.h"

#include "LineHistory.h"
#include "LineReader.h"
#include "Shell.h"

void interact(Shell& shell, std::ostream& out, bool colours)
{
    InterruptGuard const guard;
    LineHistory history = LineHistory::ofUser();
    LineReader::Setup setup;
    setup.prompt = "drvsh> ";
    setup.colours = colours;
    setup.complete = [&shell](std::string const& line) { return complete(shell, line); };
    setup.history = history.load();
    std::unique_ptr<LineReader> const reader = makeLineReader(setup);
    out << "'help' lists the commands, " << (reader->completes() ? "Tab completes, " : "")
        << "Ctrl-D leaves.\n";
    std::string line;
    while (!shell.hasEnded() && out.flush()) {
        LineReader::Got const got = reader->read(line);
        if (got == LineReader::Got::End) {
            out << '\n';
            break;
        }
        if (got == LineReader::Got::Cancelled)
            continue;
        bool const couldKeep = history.problem().empty();
        history.add(line);
        reader->remember(line);
        if (couldKeep && !history.problem().empty())
            shell.output().complain(
                {history.file(), "the history is not kept: " + history.problem(), true});
        shell.runLine(line, "");
    }
    out.flush();
}
