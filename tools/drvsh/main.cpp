#include "FileOutput.h"
#include "JsonNarrator.h"
#include "Script.h"
#include "SequencePicture.h"
#include "Shell.h"
#include "TextNarrator.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <fstream>
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
    arguments.footer("Without FILE and -c, commands are read from standard input; 'help' is one "
                     "of them.\n"
                     "Exit status: 0 all commands went well, 1 a command failed or a script "
                     "can't be read,\n2 drvsh was called wrongly.");
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
    if (all.empty())
        all.push_back(Script::stream("<stdin>", std::cin));
    return all;
}

/// Writes a whole file. Throws std::runtime_error if that can't be done.
void writeFile(std::string const& path, std::string const& text)
{
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        throw std::runtime_error(path + ": can't be written: " + std::strerror(errno));
}

/// Runs all scripts until one fails. Returns whether all went well.
bool run(Shell& shell, Options const& options, std::ostream const& out)
{
    bool good = true;
    for (Script& script : scripts(options)) {
        good = shell.run(script, options.keepGoing) && good;
        if ((!good && !options.keepGoing) || !out)
            break;
    }
    return good;
}

int runAll(Options const& options)
{
    FileOutput file(STDOUT_FILENO);
    std::ostream out(&file);
    TextNarrator text(out, std::cerr);
    text.showCommands(options.echo);
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
    }
    if (options.picture)
        writeFile(*options.picture, sequencePicture(sequence));
    if (!out.flush()) {
        std::cerr << "drvsh: the output can't be written: " << std::strerror(file.error()) << '\n';
        return FAILED;
    }
    return good ? 0 : FAILED;
}
} // namespace

int main(int argc, char** argv)
{
    // Writing into a pipe that nobody reads any more is an error like any other.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        Arguments arguments("drvsh", "A shell to look at and try a registry of drivers.");
        Options options;
        declare(arguments, options);
        if (!arguments.parse({argv + 1, argv + argc})) {
            std::cout << arguments.help() << '\n';
            return 0;
        }
        return runAll(options);
    } catch (UsageError const& error) {
        std::cerr << "drvsh: " << error.what() << "\nTry 'drvsh --help'.\n";
        return MISUSED;
    } catch (std::exception const& error) {
        std::cerr << "drvsh: " << error.what() << '\n';
        return FAILED;
    }
}
