#include "FileOutput.h"
#include "Files.h"
#include "Interaction.h"
#include "JsonNarrator.h"
#include "Script.h"
#include "ScriptTrial.h"
#include "SequencePicture.h"
#include "Shell.h"
#include "TextNarrator.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <unistd.h>

namespace
{
constexpr int FAILED = 1;
constexpr int MISUSED = 2;

struct Options
{
    std::vector<std::string> files;
    std::vector<std::string> commands;
    std::optional<unsigned> log;
    bool keepGoing = false;
    bool echo = false;
    bool json = false;
    std::optional<std::string> picture;
    bool interactive = false;
    bool test = false;
    bool rewrite = false;
};

void declare(Arguments& arguments, Options& options)
{
    arguments.rest("FILE", options.files, 0, "A script, '-' for standard input");
    arguments.repeated("-c,--command", "TEXT", options.commands,
                       "Commands, one a line; run after the files");
    arguments.flag("-k,--keep-going", options.keepGoing, "Go on after a command that fails");
    arguments.flag("-e,--echo", options.echo, "Show every command before it runs");
    arguments.numberOrNone("--log", options.log,
                           "Show the library's log lines, debug lines up to verbosity N (0)");
    arguments.flag("--json", options.json, "Tell all by JSON, an object a line");
    arguments.option("--sequence", "FILE.svg", options.picture,
                     "Draw who told whom as a sequence diagram");
    arguments.flag("-i,--interactive", options.interactive,
                   "Then take commands from the terminal, as without FILE and -c");
    arguments.flag("--test", options.test,
                   "Compare what each FILE tells with what it expects, and show how it differs");
    arguments.flag("--rewrite", options.rewrite,
                   "Write what each FILE tells into it, as what it expects");
    arguments.footer("Without FILE and -c, commands are read from standard input; 'help' is one "
                     "of them.\n"
                     "Exit status: 0 all commands went well, 1 a command failed or a script "
                     "can't be read,\n2 drvsh was called wrongly.");
}

bool isTerminal(int descriptor)
{
    return ::isatty(descriptor) == 1;
}

/// Whether somebody at a terminal gives commands.
bool isInteractive(Options const& options)
{
    bool const isAlone = options.files.empty() && options.commands.empty();
    bool const hasTerminal = isTerminal(STDIN_FILENO) && isTerminal(STDOUT_FILENO);
    if (options.interactive && !hasTerminal)
        throw UsageError("--interactive: standard input and output are no terminal");
    return options.interactive || (isAlone && hasTerminal);
}

/// Whether colours help on a terminal.
bool wantsColours()
{
    char const* const unwanted = std::getenv("NO_COLOR");
    char const* const terminal = std::getenv("TERM");
    return (unwanted == nullptr || *unwanted == '\0') && terminal != nullptr &&
           std::strcmp(terminal, "dumb") != 0;
}

std::vector<Script> scripts(Options const& options)
{
    std::vector<Script> all;
    for (std::string const& file : options.files)
        all.push_back(file == "-" ? Script::stream("<stdin>", std::cin) : Script::file(file));
    std::string text;
    for (std::string const& commands : options.commands)
        text += commands + "\n";
    if (!text.empty())
        all.push_back(Script::text("-c", text));
    if (all.empty() && !isInteractive(options))
        all.push_back(Script::stream("<stdin>", std::cin));
    return all;
}

/// Runs all scripts until one fails. Returns whether all went well.
bool run(Shell& shell, Options const& options, std::ostream const& out)
{
    bool good = true;
    for (Script& script : scripts(options)) {
        good = shell.run(script, options.keepGoing) && good;
        if ((!good && !options.keepGoing) || shell.hasEnded() || !out)
            break;
    }
    return good;
}

/// Throws UsageError if options don't go together.
void checkTrial(Options const& options)
{
    std::string const name = options.test ? "--test" : "--rewrite";
    if (options.test && options.rewrite)
        throw UsageError("--test and --rewrite don't go together");
    if (options.files.empty())
        throw UsageError(name + ": a FILE is missing");
    if (!options.commands.empty() || options.log || options.keepGoing || options.echo ||
        options.json || options.picture || options.interactive)
        throw UsageError(name + " takes only files");
}

bool runScripts(Options const& options, std::ostream& out)
{
    TextNarrator text(out, std::cerr);
    if (options.echo)
        text.showCommands(TextNarrator::Commands::All);
    bool const colours = wantsColours() && isTerminal(STDOUT_FILENO);
    text.useColours(colours, wantsColours() && isTerminal(STDERR_FILENO));
    JsonNarrator json(out, std::cerr);
    Sequence sequence;
    sequence.showCommands(options.echo);
    bool good = false;
    {
        Shell shell(options.json ? static_cast<Narrator&>(json) : text);
        if (options.picture)
            shell.output().add(sequence);
        if (options.log)
            shell.showLog(*options.log);
        good = run(shell, options, out);
        if (isInteractive(options) && !shell.hasEnded()) {
            text.showCommands(TextNarrator::Commands::None);
            interact(shell, out, colours);
        }
    }
    if (options.picture) {
        std::string const problem = writeFile(*options.picture, sequencePicture(sequence));
        if (!problem.empty())
            throw std::runtime_error(*options.picture + ": can't be written: " + problem);
    }
    return good;
}

bool runAll(Options const& options, std::ostream& out)
{
    if (!options.test && !options.rewrite)
        return runScripts(options, out);
    checkTrial(options);
    return (options.test ? testScripts : rewriteScripts)(options.files, out);
}
} // namespace

int main(int argc, char** argv)
{
    // Writing into a pipe that nobody reads any more is an error like any other.
    std::signal(SIGPIPE, SIG_IGN);
    FileOutput file(STDOUT_FILENO);
    std::ostream out(&file);
    try {
        Arguments arguments("drvsh", "A shell to look at and try a registry of drivers.");
        Options options;
        declare(arguments, options);
        bool good = true;
        if (arguments.parse({argv + 1, argv + argc}))
            good = runAll(options, out);
        else
            out << arguments.help() << '\n';
        if (out.flush())
            return good ? 0 : FAILED;
        std::cerr << "drvsh: the output can't be written: " << std::strerror(file.error()) << '\n';
    } catch (UsageError const& error) {
        std::cerr << "drvsh: " << error.what() << "\nTry 'drvsh --help'.\n";
        return MISUSED;
    } catch (std::exception const& error) {
        out.flush();
        std::cerr << "drvsh: " << error.what() << '\n';
    }
    return FAILED;
}
