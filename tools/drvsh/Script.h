#ifndef DRVSH_SCRIPT_H
#define DRVSH_SCRIPT_H

#include <istream>
#include <memory>
#include <string>

/// Where commands come from: a file, texts of the command line, or standard input. Hands out line
/// by line, so that commands that are piped in run as they come.
class Script
{
public:
    /// The commands in a file. If it can't be read, `problem` says so.
    static Script file(std::string const& path);
    /// The commands in a text, which errors call `name`.
    static Script text(std::string const& name, std::string const& commands);
    /// The commands in a stream that outlives the script.
    static Script stream(std::string const& name, std::istream& stream);

    /// Fetches the next line, without its line end; what the script expects of its commands is
    /// passed over. Returns false at the end.
    bool next(std::string& line);
    /// Why the source can't be read (any further), or the empty text.
    std::string const& problem() const { return problem_; }

    std::string const& name() const { return name_; }
    /// "NAME:LINE", the line last fetched.
    std::string place() const;
    /// The folder that relative paths in the script start from, with a "/" at the end; empty for
    /// the working directory.
    std::string const& folder() const { return folder_; }

private:
    Script(std::string name, std::istream* stream) : name_(std::move(name)), stream_(stream) {}
    bool fetch(std::string& line);
    void noteFailure();

    std::string name_;
    std::string folder_;
    std::unique_ptr<std::istream> owned_;
    std::istream* stream_;
    std::string problem_;
    unsigned line_ = 0;
};

#endif
