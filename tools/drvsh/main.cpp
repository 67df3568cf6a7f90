#include "Script.h"
#include "Shell.h"

#include <exception>
#include <iostream>

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

int runAll(Options const& options)
{
    Shell shell(std::cout, std::cerr);
    shell.output().showCommands(options.echo);
    if (options.log)
        shell.showLog(*options.log);
    bool good = true;
    for (Script& script : scripts(options)) {
        good = shell.run(script, options.keepGoing) && good;
        if (!good && !options.keepGoing)
            break;
    }
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "drvsh: the output can't be written\n";
        return FAILED;
    }
    return good ? 0 : FAILED;
}
} // namespace

int main(int argc, char** argv)
{
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
