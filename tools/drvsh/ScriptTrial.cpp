#include "ScriptTrial.h"

#include "Difference.h"
#include "Expectations.h"
#include "Files.h"
#include "Shell.h"
#include "TextNarrator.h"

#include <filesystem>
#include <sstream>

namespace
{
/// Lets a folder be the working folder while it lives.
class WorkingFolder
{
public:
    explicit WorkingFolder(std::filesystem::path const& folder)
        : before_(std::filesystem::current_path())
    {
        if (!folder.empty())
            std::filesystem::current_path(folder);
    }
    WorkingFolder(WorkingFolder const&) = delete;
    WorkingFolder& operator=(WorkingFolder const&) = delete;
    ~WorkingFolder()
    {
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
    }

private:
    std::filesystem::path before_;
};

/// A script that says what it expects, and what it told when it ran.
struct ScriptRun
{
    std::string text;
    std::vector<Expectation> expectations;
    std::vector<std::vector<std::string>> transcripts;
};

/// Returns why the script can't be run, or the empty text.
std::string run(std::string const& file, ScriptRun& result)
{
    std::string problem = readFile(file, result.text);
    if (!problem.empty())
        return file + ": can't be read: " + problem;
    problem = readExpectations(result.text, result.expectations);
    if (!problem.empty())
        return file + ":" + problem;
    WorkingFolder const folder(std::filesystem::path(file).parent_path());
    std::ostringstream told;
    TextNarrator narrator(told, told);
    Shell shell(narrator);
    for (Expectation const& expectation : result.expectations) {
        for (std::string const& command : expectation.commands)
            shell.runLine(command, "");
        result.transcripts.push_back(linesOf(told.str()));
        told.str("");
    }
    return "";
}

/// How what came differs from what was expected; the empty text if it doesn't.
std::string compared(std::string const& file, ScriptRun const& script)
{
    bool expects = false;
    std::string text;
    for (std::size_t i = 0; i < script.expectations.size(); ++i) {
        Expectation const& expectation = script.expectations[i];
        expects = expects || !expectation.fence.empty();
        if (expectation.expected != script.transcripts[i])
            text += file + ":" + std::to_string(expectation.line) + ": not as expected\n" +
                    difference(expectation.expected, script.transcripts[i]);
    }
    return expects ? text : file + ": expects nothing; --rewrite adds what it tells\n" + text;
}

std::string counted(std::size_t count, std::string const& what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}
} // namespace

bool testScripts(std::vector<std::string> const& files, std::ostream& out)
{
    std::size_t failed = 0;
    std::size_t transcripts = 0;
    for (std::string const& file : files) {
        ScriptRun script;
        std::string const problem = run(file, script);
        std::string const differences = problem.empty() ? compared(file, script) : problem + "\n";
        for (Expectation const& expectation : script.expectations)
            transcripts += expectation.fence.empty() ? 0 : 1;
        failed += differences.empty() ? 0 : 1;
        out << differences;
    }
    if (failed != 0)
        out << failed << " of " << counted(files.size(), "script") << " failed\n";
    else
        out << counted(files.size(), "script") << ", " << counted(transcripts, "transcript")
            << " as expected\n";
    return failed == 0;
}

bool rewriteScripts(std::vector<std::string> const& files, std::ostream& out)
{
    bool good = true;
    for (std::string const& file : files) {
        ScriptRun script;
        std::string problem = run(file, script);
        std::string const text = withTranscripts(script.expectations, script.transcripts);
        if (problem.empty() && text != script.text) {
            problem = replaceFile(file, text);
            if (problem.empty())
                out << file << ": rewritten\n";
            else
                problem = file + ": can't be written: " + problem;
        }
        if (!problem.empty())
            out << problem << '\n';
        good = good && problem.empty();
    }
    return good;
}
