#ifndef DRVSH_LINEHISTORY_H
#define DRVSH_LINEHISTORY_H

#include <string>
#include <vector>

/// The lines that were typed, kept in a file from one session to the next, one a line. Sessions
/// that run side by side add to the same file.
class LineHistory
{
public:
    /// Kept in the user's folder for states; not at all if there is no such folder.
    static LineHistory ofUser();
    /// Kept in that file; its folder is made when it is needed, for the user alone. Empty: not
    /// kept.
    explicit LineHistory(std::string file) : file_(std::move(file)) {}

    /// The lines that are kept, the oldest first; the last thousand of them. Those that are older
    /// are dropped from the file once they are as many again.
    std::vector<std::string> load() const;
    /// Keeps a line, unless it is empty, holds a NUL, or is the same as the last one.
    void add(std::string const& line);

    /// Where it is kept.
    std::string const& file() const { return file_; }
    /// Why it can't be kept, or the empty text.
    std::string const& problem() const { return problem_; }

private:
    std::string file_;
    std::string last_;
    std::string problem_;
};

#endif
